// The keys, dictionary by dictionary; below them, which parameter holds which dictionary.
#include "registry/dictionary_keys.h"

#include <algorithm>

#include "foundation/bill_kinds.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

using namespace class_type;
using enum KeyType;
using enum KeyUse;

// ---- Bills --------------------------------------------------------------------------------------

constexpr int32_t kWithBalance[] = {kPurchaseBill, kPurchaseRebate, kSalesBill, kSalesRebate};
constexpr int32_t kOtherReceiptsAndIssues[] = {kOtherReceipt, kOtherIssue};

constexpr DictionaryKey kClassType{"ClassTypeID", kLong, kNeeded, "the bill's class type"};
constexpr DictionaryKey kBillID{"BillInterID", kLong, kNeeded, "the bill's id (FID)"};
constexpr DictionaryKey kBillType{"BillType", kLong, kNeeded, "the bill's type (FBillTypeID)"};
constexpr DictionaryKey kHeadTable{"HeadTableName", kText, kNeeded,
                                   "the table of the bill's head; goes into statements as it is"};
constexpr DictionaryKey kOrBillType{"BillTypeID", kLong, kOptional,
                                    "the bill's type; BillType counts where there is none"};
constexpr DictionaryKey kOrElseBillType{"BillType", kLong, kOptional,
                                        "the bill's type, where there is no BillTypeID"};
constexpr DictionaryKey kPartner{"CustOrSupplyID", kLong, kNeeded,
                                 "the bill's customer or supplier"};
constexpr DictionaryKey kAmount{"AllAmount", kNumber, kNeeded, "the bill's amount"};
constexpr DictionaryKey kCustomer{
    "CustID", kLong, kNeeded, "the customer; 0 for none", {}, kOtherReceiptsAndIssues};
constexpr DictionaryKey kSupplier{
    "SupplyID", kLong, kNeeded, "the supplier; 0 for none", {}, kOtherReceiptsAndIssues};

// The batch audit, with what its checks read.
constexpr DictionaryKey kAuditedBill[] = {
    kClassType,
    kBillID,
    kBillType,
    kHeadTable,
    {"BillNo", kText, kNeeded, "the bill's number, for the line that tells its outcome"},
    {"CustOrSupplyID", kLong, kNeeded, "the bill's customer or supplier", {}, kWithBalance},
    {"AllAmount", kNumber, kNeeded, "the bill's amount", {}, kWithBalance},
    {"FNeutralizeAmount", kNumber, kOptional,
     "the prepayments that the bill uses up; 0 where there is none"},
    kOrBillType,
    {"CustID", kLong, kOptional, "the customer, for the credit check of other receipts and issues"},
    {"SupplyID", kLong, kOptional, "the supplier, likewise"},
    {"Price", kNumber, kOptional, "with it, the price check looks at a line, see CheckLimitPrice"},
};

constexpr DictionaryKey kAuditResult[] = {
    {"BillInfo", kText, kOptional,
     "in: earlier outcomes; out: a line a bill more, each before a |"},
    {"ErrorMsg", kText, kWritten, "why the run ended before its last bill; empty where it did not"},
    {"SuccessCount", kLong, kWritten, "how many bills passed"},
    {"FailCount", kLong, kWritten, "how many bills were refused"},
    {"NegItemID", kText, kWritten, "the items that lack stock, with commas between them"},
};

constexpr DictionaryKey kVerifiedBill[] = {kClassType, kBillID, kHeadTable, kBillType};
constexpr DictionaryKey kOwnAuditedBill[] = {kHeadTable, kBillID};
constexpr DictionaryKey kTypedBill[] = {kClassType, kBillType};
constexpr DictionaryKey kTypedBillWithID[] = {kClassType, kBillID, kBillType};
constexpr DictionaryKey kInvoicedBill[] = {kClassType, kBillID};
constexpr DictionaryKey kBillAlone[] = {kBillID};

constexpr DictionaryKey kCreditBill[] = {kClassType,  kPartner,        kAmount,  kCustomer,
                                         kOrBillType, kOrElseBillType, kSupplier};
constexpr DictionaryKey kOverdueBill[] = {
    kClassType,
    kPartner,
    {"AllAmount", kNumber, kOptional, "must be a number; the check does not depend on it"},
    kOrBillType,
    kOrElseBillType};

constexpr DictionaryKey kDeletedBill[] = {
    kBillID,
    kHeadTable,
    {"Entry1TableName", kText, kOptional, "a table of entries, which is emptied of the bill's"},
    {"Entry2TableName", kText, kOptional, "a second one"},
};

constexpr DictionaryKey kPricedBill[] = {
    kClassType,
    {"BillInterID", kLong, kOptional, "the bill's id, where its saved lines are looked at"},
    {"BillType", kLong, kOptional, "the bill's type, likewise"},
    {"Price", kNumber, kOptional, "the price of a line being entered, which is looked at instead"},
    {"Index", kNumber, kOptional, "that line's number"},
    {"ItemID", kLong, kOptional, "its item"},
    {"UnitID", kLong, kOptional, "its unit"},
    {"Coefficient", kNumber, kOptional, "base units in that unit"},
    {"CustOrSupplyID", kLong, kOptional, "the customer of a line that is sold"},
};

constexpr DictionaryKey kScannedBill[] = {
    {"ClassTypeID", kLong, kOptional, "the class type; that of the first bill counts for all"},
    {"BillType", kLong, kNeeded, "only 3001, 3010 and 0 are looked at"},
    {"BillInterID", kLong, kNeeded, "the bill's id (FID)"},
};
constexpr DictionaryKey kScannedItem[] = {
    {"FItemID", kLong, kWritten, "an item without a cost"},
    {"FNumber", kText, kWritten, "its number"},
    {"FName", kText, kWritten, "its name"},
    {"FModel", kText, kWritten, "its model"},
};

// ---- Lines of the stock check -------------------------------------------------------------------

constexpr DictionaryKey kStockLine[] = {
    {"FItemID", kLong, kNeeded, "the item"},
    {"FSCStockID", kLong, kOptional, "the stock that issues; no row of the line without the key"},
    {"FDCStockID", kLong, kOptional, "the stock that receives; likewise"},
    {"FQty", kNumber, kNeeded, "the quantity in base units"},
    {"FSecQty", kNumber, kOptional, "the second quantity; 0 where there is none"},
    {"FPrice", kNumber, kOptional, "the price of a unit; 0 where there is none"},
    {"FCoefficient", kNumber, kOptional, "base units in that unit; 1 where there is none"},
    {"FBatchNo", kText, kOptional, "the batch"},
    {"FBatchNoIndex", kText, kOptional, "the batch's place"},
    {"FAuxPropID", kLong, kOptional, "the auxiliary property; 0 where there is none"},
    {"FKFPeriod", kLong, kOptional, "shelf life in days; 0 where there is none"},
    {"FKFDate", kDate, kOptional, "production date; 1900-01-01 where there is none"},
    {"FPeriodDate", kDate, kOptional, "expiry date; likewise"},
    {"ClassTypeID", kLong, kOptional, "the line's class type; 0 where there is none"},
};

// ---- Saved bills --------------------------------------------------------------------------------

constexpr DictionaryKey kField[] = {{"FFLD", kText, kNeeded, "what the field holds"}};
constexpr DictionaryKey kPage[] = {
    {kAnyKey, kDictionary, kOptional, "a field, under the key that the Map has for it", kField}};

constexpr DictionaryKey kHeadData[] = {
    {"FID", kLong, kNeeded, "the bill's id"},
    {"FClassTypeID", kLong, kNeeded, "the bill's class type"},
    {"Page1", kDictionary, kOptional, "the head", kPage},
    {"Page2", kVector, kOptional, "the entries", kPage},
    {"Page3", kVector, kOptional, "the components of an assembly or disassembly", kPage},
};
constexpr DictionaryKey kOtherData[] = {kHeadData[0], kHeadData[1], kHeadData[2], kHeadData[3]};
constexpr DictionaryKey kTransferData[] = {
    {"FID", kLong, kNeeded, "the bill's id"},
    {"FClassTypeID", kLong, kOptional, "the bill's class type"},
    {"Page2", kVector, kOptional, "the entries", kPage},
};

constexpr DictionaryKey kColumns[] = {
    {kAnyKey, kText, kOptional, "the key under which the pages keep the column of this name"}};
constexpr DictionaryKey kTableInfo[] = {
    {"Map", kDictionary, kOptional, "from columns to keys", kColumns}};
constexpr DictionaryKey kSavedClass[] = {
    {"FTemplateID", kLong, kNeeded, "the bill's class type, which says what is done"}};

constexpr DictionaryKey kNote[] = {
    {"FEntryID", kLong, kNeeded, "the entry's id"},
    {"FNote", kText, kNeeded, "its note"},
};

// ---- Which parameter holds which
// -----------------------------------------------------------------

constexpr DictionaryRow kRows[] = {
    {"PublicSysInfo", "AuditBill", "billVect", kAuditedBill},
    {"PublicSysInfo", "AuditBill", "dct", kAuditResult},
    {"PublicSysInfo", "CheckCredit", "oDict", kCreditBill},
    {"PublicSysInfo", "CheckItemStockNum", "oDict", kTypedBillWithID},
    {"PublicSysInfo", "CheckItemStockNum", "vct", kStockLine},
    {"PublicSysInfo", "CheckLimitPrice", "oDict", kPricedBill},
    {"PublicSysInfo", "SteelCheckLimitPrice", "oDict", kPricedBill},
    {"PublicSysInfo", "CheckNegPrice", "vctBill", kScannedBill},
    {"PublicSysInfo", "CheckNegPrice", "NegVct", kScannedItem},
    {"PublicSysInfo", "DeleteBill", "oDict", kDeletedBill},
    {"PublicSysInfo", "VerifyDataBeforeAudit", "oDict", kVerifiedBill},
    {"PublicSysInfo", "WhetherCheckStockNum", "oDict", kTypedBill},
    {"PublicSysInfo", "WhetherNeedCheckPrice", "oDict", kTypedBill},
    {"PublicSysInfo", "WhetherNeedCheckCredit", "oDict", kTypedBill},
    {"PublicSysInfo", "WhetherNeedUpdateStockNum", "oDict", kTypedBill},
    {"PublicSysInfo", "WhetherBillInvoiceStatus", "oDict", kInvoicedBill},
    {"PublicSysInfo", "CheckUnCheckAmountOutOfDate", "oDict", kOverdueBill},
    {"PublicSysInfo", "WhetherNeedCheckUnCheckAmountOutOfDate", "oDict", kTypedBill},
    {"PublicSysInfo", "VerifyUnCheckForSelf", "oDict", kOwnAuditedBill},
    {"cls_DB", "AfterSave", "dctClassType", kSavedClass},
    {"cls_DB", "AfterSave", "dctTableInfo", kTableInfo},
    {"cls_DB", "AfterSave", "dctData", kTransferData},
    {"cls_ZZ", "AuditBill", "oDict", kBillAlone},
    {"cls_ZZ", "VerifyDataBeforeAudit", "oDict", kBillAlone},
    {"cls_ZZ", "AfterSave", "dctTableInfo", kTableInfo},
    {"cls_ZZ", "AfterSave", "dctData", kHeadData},
    {"CheckProfit", "SaveNote", "vctEntryNotes", kNote},
    {"CheckLoss", "SaveNote", "vctEntryNotes", kNote},
    {"AdjustPrice", "SaveNote", "vctEntryNotes", kNote},
    {"clsOtherIn", "AfterSave", "dctTableInfo", kTableInfo},
    {"clsOtherIn", "AfterSave", "dctData", kOtherData},
    {"clsOtherOut", "AfterSave", "dctTableInfo", kTableInfo},
    {"clsOtherOut", "AfterSave", "dctData", kOtherData},
};

// The parameters that hold bills as many methods are given them.
bool HoldsBills(std::string_view parameter) {
  return parameter == "oDict" || parameter == "billVect" || parameter == "vctBill";
}

}  // namespace

std::string_view KeyTypeText(KeyType type) {
  switch (type) {
    case kLong:
      return "long";
    case kNumber:
      return "number";
    case kText:
      return "text";
    case kDate:
      return "date";
    case kDictionary:
      return "dictionary";
    case kVector:
      return "vector";
  }
  return "";
}

std::span<const DictionaryRow> DictionaryRows() {
  return kRows;
}

std::span<const DictionaryKey> KeysOf(const ClassDescription& cls, const Method& method,
                                      const Parameter& parameter) {
  for (const DictionaryRow& row : kRows) {
    if (row.cls == cls.name && row.method == method.name && row.parameter == parameter.name) {
      return row.keys;
    }
  }
  return {};
}

const DictionaryKey* FindKey(std::span<const DictionaryKey> keys, std::string_view name) {
  for (const DictionaryKey& key : keys) {
    if (key.name != kAnyKey && EqualsIgnoringCase(key.name, name)) return &key;
  }
  return nullptr;
}

const DictionaryKey* AnyKey(std::span<const DictionaryKey> keys) {
  const auto any = std::ranges::find(keys, kAnyKey, &DictionaryKey::name);
  return any == keys.end() ? nullptr : &*any;
}

bool IsKeyOfBills(std::string_view name) {
  return std::ranges::any_of(kRows, [&](const DictionaryRow& row) {
    return HoldsBills(row.parameter) && FindKey(row.keys, name) != nullptr;
  });
}

}  // namespace tavcc
