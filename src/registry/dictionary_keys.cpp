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

constexpr DictionaryKey kClassType{
    "ClassTypeID", kLong, kNeeded, {"the bill's class type", "单据类型（FClassTypeID）"}};
constexpr DictionaryKey kBillID{
    "BillInterID", kLong, kNeeded, {"the bill's id (FID)", "单据内码（FID）"}};
constexpr DictionaryKey kBillType{
    "BillType", kLong, kNeeded, {"the bill's type (FBillTypeID)", "单据的业务类型（FBillTypeID）"}};
constexpr DictionaryKey kHeadTable{"HeadTableName",
                                   kText,
                                   kNeeded,
                                   {"the table of the bill's head; goes into statements as it is",
                                    "单据头所在的表；原样写入语句"}};
constexpr DictionaryKey kOrBillType{"BillTypeID",
                                    kLong,
                                    kOptional,
                                    {"the bill's type; BillType counts where there is none",
                                     "单据的业务类型；没有此键时取 BillType"}};
constexpr DictionaryKey kOrElseBillType{
    "BillType",
    kLong,
    kOptional,
    {"the bill's type, where there is no BillTypeID", "单据的业务类型，没有 BillTypeID 时使用"}};
constexpr DictionaryKey kPartner{
    "CustOrSupplyID", kLong, kNeeded, {"the bill's customer or supplier", "单据的客户或供应商"}};
constexpr DictionaryKey kAmount{"AllAmount", kNumber, kNeeded, {"the bill's amount", "单据金额"}};
constexpr DictionaryKey kCustomer{"CustID", kLong,
                                  kNeeded,  {"the customer; 0 for none", "客户；没有时为 0"},
                                  {},       kOtherReceiptsAndIssues};
constexpr DictionaryKey kSupplier{"SupplyID", kLong,
                                  kNeeded,    {"the supplier; 0 for none", "供应商；没有时为 0"},
                                  {},         kOtherReceiptsAndIssues};

// The batch audit, with what its checks read.
constexpr DictionaryKey kAuditedBill[] = {
    kClassType,
    kBillID,
    kBillType,
    kHeadTable,
    {"BillNo",
     kText,
     kNeeded,
     {"the bill's number, for the line that tells its outcome",
      "单据编号，用于说明其结果的那一行"}},
    {"CustOrSupplyID",
     kLong,
     kNeeded,
     {"the bill's customer or supplier", "单据的客户或供应商"},
     {},
     kWithBalance},
    {"AllAmount", kNumber, kNeeded, {"the bill's amount", "单据金额"}, {}, kWithBalance},
    {"FNeutralizeAmount",
     kNumber,
     kOptional,
     {"the prepayments that the bill uses up; 0 where there is none",
      "单据冲抵的预收预付款；没有此键时为 0"}},
    kOrBillType,
    {"CustID",
     kLong,
     kOptional,
     {"the customer, for the credit check of other receipts and issues",
      "客户，用于其他出入库单的信用额度检查"}},
    {"SupplyID", kLong, kOptional, {"the supplier, likewise", "供应商，用途同上"}},
    {"Price",
     kNumber,
     kOptional,
     {"with it, the price check looks at a line, see CheckLimitPrice",
      "有此键时限价检查只看一行，见 CheckLimitPrice"}},
};

constexpr DictionaryKey kAuditResult[] = {
    {"BillInfo",
     kText,
     kOptional,
     {"in: earlier outcomes; out: a line a bill more, each before a |",
      "传入：此前的结果；传出：每张单据再加一行，各以 | 结尾"}},
    {"ErrorMsg",
     kText,
     kWritten,
     {"why the run ended before its last bill; empty where it did not",
      "为何没有处理到最后一张单据；处理完则为空"}},
    {"SuccessCount", kLong, kWritten, {"how many bills passed", "通过的单据数"}},
    {"FailCount", kLong, kWritten, {"how many bills were refused", "被拒的单据数"}},
    {"NegItemID",
     kText,
     kWritten,
     {"the items that lack stock, with commas between them", "库存不足的商品，以逗号分隔"}},
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
    {"AllAmount",
     kNumber,
     kOptional,
     {"must be a number; the check does not depend on it", "必须是数字；检查结果与它无关"}},
    kOrBillType,
    kOrElseBillType};

constexpr DictionaryKey kDeletedBill[] = {
    kBillID,
    kHeadTable,
    {"Entry1TableName",
     kText,
     kOptional,
     {"a table of entries, which is emptied of the bill's", "分录表，删去其中属于该单据的分录"}},
    {"Entry2TableName", kText, kOptional, {"a second one", "第二张分录表"}},
};

constexpr DictionaryKey kPricedBill[] = {
    kClassType,
    {"BillInterID",
     kLong,
     kOptional,
     {"the bill's id, where its saved lines are looked at", "单据内码，检查已保存的分录时使用"}},
    {"BillType", kLong, kOptional, {"the bill's type, likewise", "单据的业务类型，用途同上"}},
    {"Price",
     kNumber,
     kOptional,
     {"the price of a line being entered, which is looked at instead",
      "正在录入的一行的单价；有此键时改为检查这一行"}},
    {"Index", kNumber, kOptional, {"that line's number", "该行的行号"}},
    {"ItemID", kLong, kOptional, {"its item", "该行的商品"}},
    {"UnitID", kLong, kOptional, {"its unit", "该行的单位"}},
    {"Coefficient", kNumber, kOptional, {"base units in that unit", "该单位折合的基本单位数"}},
    {"CustOrSupplyID", kLong, kOptional, {"the customer of a line that is sold", "销售行的客户"}},
};

constexpr DictionaryKey kScannedBill[] = {
    {"ClassTypeID",
     kLong,
     kOptional,
     {"the class type; that of the first bill counts for all", "单据类型；以第一张单据的为准"}},
    {"BillType", kLong, kNeeded, {"only 3001, 3010 and 0 are looked at", "只看 3001、3010 和 0"}},
    {"BillInterID", kLong, kNeeded, {"the bill's id (FID)", "单据内码（FID）"}},
};
constexpr DictionaryKey kScannedItem[] = {
    {"FItemID", kLong, kWritten, {"an item without a cost", "没有成本的商品"}},
    {"FNumber", kText, kWritten, {"its number", "商品编码"}},
    {"FName", kText, kWritten, {"its name", "商品名称"}},
    {"FModel", kText, kWritten, {"its model", "规格型号"}},
};

// ---- Lines of the stock check -------------------------------------------------------------------

constexpr DictionaryKey kStockLine[] = {
    {"FItemID", kLong, kNeeded, {"the item", "商品"}},
    {"FSCStockID",
     kLong,
     kOptional,
     {"the stock that issues; no row of the line without the key",
      "发货仓库；没有此键则该行不产生发货记录"}},
    {"FDCStockID",
     kLong,
     kOptional,
     {"the stock that receives; likewise", "收货仓库；没有此键则不产生收货记录"}},
    {"FQty", kNumber, kNeeded, {"the quantity in base units", "基本单位数量"}},
    {"FSecQty",
     kNumber,
     kOptional,
     {"the second quantity; 0 where there is none", "辅助数量；没有此键时为 0"}},
    {"FPrice",
     kNumber,
     kOptional,
     {"the price of a unit; 0 where there is none", "单价；没有此键时为 0"}},
    {"FCoefficient",
     kNumber,
     kOptional,
     {"base units in that unit; 1 where there is none", "该单位折合的基本单位数；没有此键时为 1"}},
    {"FBatchNo", kText, kOptional, {"the batch", "批次"}},
    {"FBatchNoIndex", kText, kOptional, {"the batch's place", "批次序号"}},
    {"FAuxPropID",
     kLong,
     kOptional,
     {"the auxiliary property; 0 where there is none", "辅助属性；没有此键时为 0"}},
    {"FKFPeriod",
     kLong,
     kOptional,
     {"shelf life in days; 0 where there is none", "保质期天数；没有此键时为 0"}},
    {"FKFDate",
     kDate,
     kOptional,
     {"production date; 1900-01-01 where there is none", "生产日期；没有此键时为 1900-01-01"}},
    {"FPeriodDate",
     kDate,
     kOptional,
     {"expiry date; likewise", "有效期至；没有此键时为 1900-01-01"}},
    {"ClassTypeID",
     kLong,
     kOptional,
     {"the line's class type; 0 where there is none", "该行的单据类型；没有此键时为 0"}},
};

// ---- Saved bills --------------------------------------------------------------------------------

constexpr DictionaryKey kField[] = {
    {"FFLD", kText, kNeeded, {"what the field holds", "字段的内容"}}};
constexpr DictionaryKey kPage[] = {
    {kAnyKey,
     kDictionary,
     kOptional,
     {"a field, under the key that the Map has for it", "一个字段，键由 Map 给出"},
     kField}};

constexpr DictionaryKey kHeadData[] = {
    {"FID", kLong, kNeeded, {"the bill's id", "单据内码"}},
    {"FClassTypeID", kLong, kNeeded, {"the bill's class type", "单据类型（FClassTypeID）"}},
    {"Page1", kDictionary, kOptional, {"the head", "单据头"}, kPage},
    {"Page2", kVector, kOptional, {"the entries", "分录"}, kPage},
    {"Page3",
     kVector,
     kOptional,
     {"the components of an assembly or disassembly", "组装或拆卸的子件"},
     kPage},
};
constexpr DictionaryKey kOtherData[] = {kHeadData[0], kHeadData[1], kHeadData[2], kHeadData[3]};
constexpr DictionaryKey kTransferData[] = {
    {"FID", kLong, kNeeded, {"the bill's id", "单据内码"}},
    {"FClassTypeID", kLong, kOptional, {"the bill's class type", "单据类型（FClassTypeID）"}},
    {"Page2", kVector, kOptional, {"the entries", "分录"}, kPage},
};

constexpr DictionaryKey kColumns[] = {
    {kAnyKey,
     kText,
     kOptional,
     {"the key under which the pages keep the column of this name", "各页中保存该列所用的键"}}};
constexpr DictionaryKey kTableInfo[] = {
    {"Map", kDictionary, kOptional, {"from columns to keys", "列名到键的对照"}, kColumns}};
constexpr DictionaryKey kSavedClass[] = {
    {"FTemplateID",
     kLong,
     kNeeded,
     {"the bill's class type, which says what is done", "单据类型，决定做什么"}}};

constexpr DictionaryKey kNote[] = {
    {"FEntryID", kLong, kNeeded, {"the entry's id", "分录内码"}},
    {"FNote", kText, kNeeded, {"its note", "备注"}},
};

// ---- Which parameter holds which ----

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
