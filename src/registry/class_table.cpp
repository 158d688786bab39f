// The ten classes, row by row: name, slot, dispatch id, parameters, result, whether it is a
// property, the function that carries it out, whether it writes.
//
// Slots and dispatch ids are fixed for ever: hosts may have cached them. A new method comes last in
// its class. Its slot is its place in the list, from 0; its dispatch id is the next one behind the
// greatest of the class, TransMode's own aside. Neither is ever used again for something else.
//
// Three places follow from a row, and tests print what to write there: the type library's source
// and the early-bound members (tests/registry/server_sources_test.cpp), and the interface as it was
// published (tests/registry/class_table_test.cpp), which is typed out once more so that no row
// changes by mistake.

#include <array>

#include "audit/batch_audit.h"
#include "balances/balance_update.h"
#include "balances/bill_deletion.h"
#include "balances/periods.h"
#include "billtypes/cls_cx.h"
#include "billtypes/cls_db.h"
#include "billtypes/cls_other.h"
#include "billtypes/cls_template.h"
#include "billtypes/cls_zz.h"
#include "billtypes/stock_check_bill.h"
#include "checks/credit.h"
#include "checks/overdue.h"
#include "checks/related_bills.h"
#include "checks/stock_quantity.h"
#include "checks/verification.h"
#include "pricing/limit_price.h"
#include "pricing/negative_price.h"
#include "pricing/price_lookup.h"
#include "registry/bind.h"
#include "registry/class_registry.h"

namespace tavcc {

namespace {

using enum ArgumentType;

constexpr bool kInOut = true;
constexpr bool kOptional = true;
constexpr int16_t kTrue = -1;
constexpr bool kWrites = true;

// ---- Parameters --------------------------------------------------------------------------------

constexpr Parameter kDsn{"sDsn", kText};
constexpr Parameter kConString{"strConString", kText};
constexpr Parameter kDictionaryIn{"oDict", kDictionary};
constexpr Parameter kCheckType{"intCheckType", kInteger};
constexpr Parameter kReturnMsg{"strReturnMsg", kText, kInOut};
constexpr Parameter kBillID{"lngFID", kLong};
constexpr Parameter kConnectionIn{"cn", kConnection};
constexpr Parameter kCheckDaily{"bCheckDaily", kBoolean, !kInOut, kOptional, kTrue};
constexpr Parameter kCg{"Cg", kBoolean, kInOut, kOptional};

constexpr Parameter kNothing[] = {{"", kVariant}};  // for methods without parameters: see None()
constexpr std::span<const Parameter> None() {
  return {kNothing, 0};
}

constexpr Parameter kOnlyConString[] = {kConString};

constexpr Parameter kBatchAudit[] = {
    {"billVect", kVector},
    {"CheckType", kInteger},
    kDsn,
    {"BatchCheck", kBoolean},
    {"dct", kDictionary, kInOut},
    {"NeedCheckDaily", kBoolean, !kInOut, kOptional, kTrue},
    {"NeedCheckCrdPrc", kBoolean, !kInOut, kOptional, kTrue},
};

constexpr Parameter kRelatedBillGate[] = {
    {"ClassBillType", kLong}, {"BillTypeID", kLong},   {"BillInterID", kLong},
    {"Check", kLong},         {"sMsg", kText, kInOut},
};

constexpr Parameter kOtherBillGate[] = {
    {"ClassBillType", kLong},
    {"BillInterID", kLong},
    {"Check", kLong},
    {"sMsg", kText, kInOut},
};

constexpr Parameter kPartnerCheck[] = {kDictionaryIn, kCheckType, kDsn, kReturnMsg, kCg};

constexpr Parameter kStockCheck[] = {
    kDictionaryIn,
    kCheckType,
    kDsn,
    kReturnMsg,
    {"rs", kRecordset, kInOut},
    {"OptAboutUnderStock", kText, !kInOut, kOptional},
    {"vct", kVector, !kInOut, kOptional},
};

constexpr Parameter kPriceLookup[] = {
    {"oConn", kConnection}, {"lItemID", kLong}, {"lUnitID", kLong}};

constexpr Parameter kLimitPrice[] = {
    kDictionaryIn, kCheckType, kDsn, kReturnMsg, {"rs", kRecordset, kInOut, kOptional}, kCg,
};

constexpr Parameter kNegativePrice[] = {kDsn, {"vctBill", kVector}, {"NegVct", kVector, kInOut}};

constexpr Parameter kDateInPeriod[] = {kConString, {"dtDate", kDate}};
constexpr Parameter kGenericDelete[] = {kDictionaryIn, kDsn, kReturnMsg};

constexpr Parameter kPeriodDates[] = {
    kConString, {"strBegDate", kText, kInOut}, {"strEndDate", kText, kInOut}};

constexpr Parameter kRebuild[] = {
    kDsn, {"sInfo", kText, kInOut}, {"oEvent", kObject, kInOut, kOptional}};

constexpr Parameter kBalance[] = {
    kDsn,
    {"lClassTypeID", kLong},
    {"lBillTypeID", kLong},
    {"lBillID", kLong},
    {"lCheckType", kLong},
    {"NeedCal", kBoolean, !kInOut, kOptional, kTrue},
};

constexpr Parameter kVerification[] = {kDictionaryIn, kDsn, kCheckType, kReturnMsg, kCheckDaily};

constexpr Parameter kGenericDeleteGate[] = {
    kBillID, kConnectionIn, kReturnMsg, {"HeadTableName", kText}};

constexpr Parameter kDirectionAndBill[] = {kCheckType, kDictionaryIn};
constexpr Parameter kNeedsCheck[] = {kDsn, kCheckType, kDictionaryIn};
constexpr Parameter kInvoiceStatus[] = {kDictionaryIn, {"strRtnTempMsg", kText, kInOut}};

constexpr Parameter kBillAudit[] = {kBillID, {"lngUserID", kLong}, kDsn, kReturnMsg};
constexpr Parameter kBillAction[] = {kBillID, kDsn, kReturnMsg};
constexpr Parameter kBillGate[] = {kBillID, kConnectionIn, kReturnMsg};

constexpr Parameter kAfterSave[] = {
    kDsn,
    {"dctClassType", kDictionary},
    {"vctClassTypeEntry", kVector},
    {"dctTableInfo", kDictionary},
    {"dctData", kDictionary},
    {"dctLink", kDictionary},
};

constexpr Parameter kBeforeDel[] = {
    kDsn, {"nClassID", kLong}, {"dctClassType", kDictionary}, {"nInterID", kLong}};

constexpr Parameter kCheckBill[] = {
    kDsn,
    {"lngInterID", kLong},
    {"CheckDir", kLong, !kInOut, kOptional, 1},
    {"strReturnMsg", kText, kInOut, kOptional},
    {"dctData", kDictionary, !kInOut, kOptional},
    {"dctClassType", kDictionary, !kInOut, kOptional},
};

constexpr Parameter kSaveNote[] = {kDsn, {"lngInterID", kLong}, {"vctEntryNotes", kObject}};
constexpr Parameter kTemplateDelete[] = {{"FID", kLong}, kDsn, kReturnMsg};

// ---- Methods -----------------------------------------------------------------------------------

constexpr Method Property(int slot) {
  return {"TransMode", slot, kTransModeDispatchId, None(), kTransactionMode, true};
}

constexpr Method kPublicSysInfo[] = {
    {"AllowMinusStockNum", 0, 0x60030003, kOnlyConString, kVariant, false,
     Bind<&AllowMinusStockNum>},
    {"AuditBill", 1, 0x60030004, kBatchAudit, kInteger, false, Bind<&AuditBill>, kWrites},
    {"CanCheckGH", 2, 0x60030005, kRelatedBillGate, kBoolean, false, Bind<&CanCheckGH>},
    {"CanCheckFL", 3, 0x60030006, kRelatedBillGate, kBoolean, false, Bind<&CanCheckFL>},
    {"CanCheckGJ", 4, 0x60030007, kRelatedBillGate, kBoolean, false, Bind<&CanCheckGJ>},
    {"CheckCredit", 5, 0x60030008, kPartnerCheck, kInteger, false, Bind<&CheckCredit>},
    {"CheckItemStockNum", 6, 0x60030009, kStockCheck, kInteger, false, Bind<&CheckItemStockNum>},
    {"GetLowPrice", 7, 0x6003000A, kPriceLookup, kDouble, false, Bind<&GetLowPrice>},
    {"GetNewPrice", 8, 0x6003000B, kPriceLookup, kDouble, false, Bind<&GetNewPrice>},
    {"CheckLimitPrice", 9, 0x6003000C, kLimitPrice, kInteger, false, Bind<&CheckLimitPrice>},
    {"SteelCheckLimitPrice", 10, 0x6003000D, kLimitPrice, kInteger, false,
     Bind<&SteelCheckLimitPrice>},
    {"CheckNegPrice", 11, 0x6003000E, kNegativePrice, kBoolean, false, Bind<&CheckNegPrice>},
    {"DateInCurrentPeriod", 12, 0x6003000F, kDateInPeriod, kBoolean, false,
     Bind<&DateInCurrentPeriod>},
    {"DeleteBill", 13, 0x60030010, kGenericDelete, kBoolean, false, Bind<&DeleteBill>, kWrites},
    {"GetPeriodStartAndEndDate", 14, 0x60030011, kPeriodDates, kVariant, false,
     Bind<&GetPeriodStartAndEndDate>},
    {"OtherBillCanCheck", 15, 0x60030012, kOtherBillGate, kBoolean, false,
     Bind<&OtherBillCanCheck>},
    {"ReBuildBal", 16, 0x60030013, kRebuild, kBoolean, false, Bind<&ReBuildBal>},
    {"UpdateBal", 17, 0x60030014, kBalance, kText, false, Bind<&UpdateBal>, kWrites},
    {"VerifyDataBeforeAudit", 18, 0x60030015, kVerification, kInteger, false,
     Bind<&VerifyDataBeforeAudit>},
    {"VerifyDataBeforeDelete", 19, 0x60030016, kGenericDeleteGate, kBoolean, false,
     Bind<&VerifyDataBeforeDelete>},
    {"WhetherCheckStockNum", 20, 0x60030023, kDirectionAndBill, kInteger, false,
     Bind<&WhetherCheckStockNum>},
    {"WhetherNeedCheckPrice", 21, 0x60030024, kNeedsCheck, kInteger, false,
     Bind<&WhetherNeedCheckPrice>},
    {"WhetherNeedCheckCredit", 22, 0x60030025, kNeedsCheck, kInteger, false,
     Bind<&WhetherNeedCheckCredit>},
    {"WhetherNeedUpdateStockNum", 23, 0x60030026, kDirectionAndBill, kInteger, false,
     Bind<&WhetherNeedUpdateStockNum>},
    {"WhetherBillInvoiceStatus", 24, 0x60030028, kInvoiceStatus, kLong, false,
     Bind<&WhetherBillInvoiceStatus>},
    Property(25),
    {"CheckUnCheckAmountOutOfDate", 26, 0x6003002B, kPartnerCheck, kInteger, false,
     Bind<&CheckUnCheckAmountOutOfDate>},
    {"WhetherNeedCheckUnCheckAmountOutOfDate", 27, 0x60030039, kNeedsCheck, kInteger, false,
     Bind<&WhetherNeedCheckUnCheckAmountOutOfDate>},
    {"VerifyUnCheckForSelf", 28, 0x6003003C, kVerification, kInteger, false,
     Bind<&VerifyUnCheckForSelf>},
};

constexpr Method kClsCX[] = {
    {"AuditBill", 0, 0x60030003, kBillAudit, kBoolean, false, Bind<&cls_cx::AuditBill>, kWrites},
    {"DeleteBill", 1, 0x60030004, kBillAction, kBoolean, false, Bind<&cls_cx::DeleteBill>, kWrites},
    {"UnAuditBill", 2, 0x60030005, kBillAction, kBoolean, false, Bind<&cls_cx::UnAuditBill>,
     kWrites},
    {"VerifyDataBeforeAudit", 3, 0x60030006, kBillGate, kBoolean, false,
     Bind<&cls_cx::VerifyDataBeforeAudit>},
    {"VerifyDataBeforeDelete", 4, 0x60030007, kBillGate, kBoolean, false,
     Bind<&cls_cx::VerifyDataBeforeDelete>},
    {"VerifyDataBeforeUnAudit", 5, 0x60030008, kBillGate, kBoolean, false,
     Bind<&cls_cx::VerifyDataBeforeUnAudit>},
    Property(6),
};

constexpr Method kClsDB[] = {
    {"AuditBill", 0, 0x60030003, kBillAudit, kBoolean, false, Bind<&cls_db::AuditBill>, kWrites},
    {"DeleteBill", 1, 0x60030004, kBillAction, kBoolean, false, Bind<&cls_db::DeleteBill>, kWrites},
    {"UnAuditBill", 2, 0x60030005, kBillAction, kBoolean, false, Bind<&cls_db::UnAuditBill>,
     kWrites},
    {"VerifyDataBeforeAudit", 3, 0x60030006, kBillGate, kBoolean, false,
     Bind<&cls_db::VerifyDataBeforeAudit>},
    {"VerifyDataBeforeDelete", 4, 0x60030007, kBillGate, kBoolean, false,
     Bind<&cls_db::VerifyDataBeforeDelete>},
    {"VerifyDataBeforeUnAudit", 5, 0x60030008, kBillGate, kBoolean, false,
     Bind<&cls_db::VerifyDataBeforeUnAudit>},
    Property(6),
    {"AfterSave", 7, 0x6003000A, kAfterSave, kVariant, false, Bind<&cls_db::AfterSave>, kWrites},
    {"BeforeDel", 8, 0x6003000B, kBeforeDel, kVariant, false, Bind<&cls_db::BeforeDel>},
};

constexpr Method kClsZZ[] = {
    {"AuditBill", 0, 0x60030003, kGenericDelete, kBoolean, false, Bind<&cls_zz::AuditBill>,
     kWrites},
    {"DeleteBill", 1, 0x60030004, kBillAction, kBoolean, false, Bind<&cls_zz::DeleteBill>, kWrites},
    {"UnAuditBill", 2, 0x60030005, kBillAction, kBoolean, false, Bind<&cls_zz::UnAuditBill>,
     kWrites},
    {"VerifyDataBeforeAudit", 3, 0x60030006, kGenericDelete, kBoolean, false,
     Bind<&cls_zz::VerifyDataBeforeAudit>},
    {"VerifyDataBeforeDelete", 4, 0x60030007, kBillGate, kBoolean, false,
     Bind<&cls_zz::VerifyDataBeforeDelete>},
    {"VerifyDataBeforeUnAudit", 5, 0x60030008, kBillAction, kBoolean, false,
     Bind<&cls_zz::VerifyDataBeforeUnAudit>},
    Property(6),
    {"BeforeDel", 7, 0x6003000A, kBeforeDel, kVariant, false, Bind<&cls_zz::BeforeDel>},
    {"AfterSave", 8, 0x6003000B, kAfterSave, kVariant, false, Bind<&cls_zz::AfterSave>, kWrites},
};

// CheckProfit, CheckLoss and AdjustPrice behave alike; they differ in their identity only.
constexpr Method kStockCheckBill[] = {
    {"CheckBill", 0, 0x60030003, kCheckBill, kLong, false, Bind<&stock_check_bill::CheckBill>,
     kWrites},
    {"SaveNote", 1, 0x60030004, kSaveNote, kBoolean, false, Bind<&stock_check_bill::SaveNote>,
     kWrites},
    Property(2),
};

constexpr Method kClsTemplate[] = {
    {"DeleteBill", 0, 0x60030003, kTemplateDelete, kBoolean, false, Bind<&cls_template::DeleteBill>,
     kWrites},
    {"VerifyDataBeforeDelete", 1, 0x60030004, kBillGate, kBoolean, false,
     Bind<&cls_template::VerifyDataBeforeDelete>},
    Property(2),
};

constexpr Method kClsOtherIn[] = {
    {"AfterSave", 0, 0x60030003, kAfterSave, kVariant, false, Bind<&cls_other_in::AfterSave>,
     kWrites},
    {"BeforeDel", 1, 0x60030004, kBeforeDel, kVariant, false, Bind<&cls_other_in::BeforeDel>},
    Property(2),
};

constexpr Method kClsOtherOut[] = {
    {"BeforeDel", 0, 0x60030003, kBeforeDel, kVariant, false, Bind<&cls_other_out::BeforeDel>},
    {"AfterSave", 1, 0x60030004, kAfterSave, kVariant, false, Bind<&cls_other_out::AfterSave>,
     kWrites},
    Property(2),
};

// ---- Classes -----------------------------------------------------------------------------------

// How the host enlists a call in its transaction; the two values are the host's own.
constexpr int32_t kRequiresTransaction = 2;
constexpr int32_t kUsesTransaction = 3;

constexpr ClassDescription kClasses[] = {
    {"PublicSysInfo", kRequiresTransaction, kPublicSysInfo},
    {"cls_CX", kUsesTransaction, kClsCX},
    {"cls_DB", kUsesTransaction, kClsDB},
    {"cls_ZZ", kUsesTransaction, kClsZZ},
    {"CheckProfit", kUsesTransaction, kStockCheckBill},
    {"CheckLoss", kUsesTransaction, kStockCheckBill},
    {"AdjustPrice", kUsesTransaction, kStockCheckBill},
    {"cls_Template", kUsesTransaction, kClsTemplate},
    {"clsOtherIn", kRequiresTransaction, kClsOtherIn},
    {"clsOtherOut", kRequiresTransaction, kClsOtherOut},
};

}  // namespace

std::span<const ClassDescription> Classes() {
  return kClasses;
}

}  // namespace tavcc
