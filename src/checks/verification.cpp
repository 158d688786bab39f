#include "checks/verification.h"

#include <optional>

#include "balances/periods.h"
#include "checks/related_bills.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/text.h"
#include "foundation/trap.h"
#include "foundation/verdict.h"

namespace tavcc {

namespace {

using namespace class_type;

// Orders have no voucher.
constexpr int32_t kWithoutVoucher[] = {kSalesOrder, kPurchaseOrder};

constexpr int32_t kWithPrices[] = {kPurchaseBill, kPurchaseEstimate, kCheckGain,
                                   kOtherReceipt, kDisassembly,      kTransfer};

constexpr int32_t kWithoutPeriod[] = {kSalesOrder, kPurchaseOrder, kPurchaseRebate};

constexpr int32_t kSourcesOfStockBills[] = {kSalesOrder,    kSalesBill,    kConsignment,
                                            kPurchaseOrder, kPurchaseBill, kPurchaseEstimate};

constexpr int32_t kSourcesOfPayments[] = {kSalesBill, kPurchaseBill};

struct Bill {
  int32_t class_type;
  std::string head_table;
  int32_t id;
};

Bill ReadBill(const Dictionary& oDict) {
  return {.class_type = ToLong(oDict.Item("ClassTypeID")),
          .head_table = ToText(oDict.Item("HeadTableName")),
          .id = ToLong(oDict.Item("BillInterID"))};
}

// The head row, read by position before its rows are closed and the checks ask on.
struct Head {
  Value status;
  Value voucher_id;
  Value date;
  Value biller_id;
};

// One run of the generic gate.
class Verification {
 public:
  Verification(PlugIn& self, std::string_view sDsn, const Bill& bill, int16_t direction)
      : self_(self), sDsn_(sDsn), bill_(bill), direction_(direction) {}

  Verdict Run(bool bCheckDaily) const;

 private:
  RecordsetPtr Ask(std::string_view question) const {
    return ExecuteSQL(self_.host(), sDsn_, question);
  }
  bool HasRow(std::string_view question) const { return !Ask(question)->AtEnd(); }

  std::optional<Head> ReadHead() const;
  Verdict JudgeAudit(const Head& head) const;
  Verdict JudgeUnAudit(const Head& head) const;
  Verdict CheckPrices() const;
  bool IsBeforeCurrentPeriod(const Head& head) const;
  Verdict CheckDownstream(bool bCheckDaily) const;

  PlugIn& self_;
  std::string_view sDsn_;
  const Bill& bill_;
  int16_t direction_;
};

std::string HeadQuery(const Bill& bill) {
  const std::string_view voucher =
      IsInArray(bill.class_type, kWithoutVoucher) ? "0 as FVoucherID" : " FVoucherID";
  return Cat("Select FStatus,", voucher, ",FDate,FBillerID From ", bill.head_table,
             " where FID=", bill.id);
}

// Rows without a price that touch a warehouse of type 500: the one that issues for disassembly
// bills, the one that receives for all others.
std::string ZeroPriceQuery(const Bill& bill) {
  if (bill.class_type == kDisassembly) {
    return Cat(" select  FIndex from  ", bill.head_table,
               "_Entry2 a \r\n"
               " inner join t_ICItem i on a.FItemID=i.FItemID \r\n"
               " inner join t_Stock ts on a.FSCStockID=ts.FItemID \r\n"
               " where a.FPrice=0 and ts.FTypeID=500 and FID = ",
               bill.id);
  }
  std::string query = Cat("select FIndex from  ", bill.head_table,
                          "Entry a \r\n"  // two blanks: as stored
                          " inner join t_ICItem i on a.FItemID=i.FItemID \r\n"
                          " inner join t_Stock ts on a.FDCStockID=ts.FItemID \r\n"
                          " where a.FPrice=0 and ts.FTypeID=500 and FID = ",
                          bill.id, "\r\n");
  if (bill.class_type == kTransfer) {
    CatTo(query, " And a.FID Not In(select FID from ", bill.head_table, " where FBillTypeID=1 )");
  }
  return query;
}

std::string DownstreamBillQuery(const Bill& bill) {
  return Cat("Select top 1 FID From t_CC_StockBillEntry Where FClassID_SRC=", bill.class_type,
             " And FID_SRC=", bill.id);
}

std::string DownstreamPaymentQuery(const Bill& bill) {
  return Cat("Select top 1 FID From t_RP_RBillEntry Where FSourceClassTypeID=", bill.class_type,
             " And FSourceBillID=", bill.id,
             "\r\n"
             "Union All \r\n"
             "Select top 1 FID From t_RP_CheckBillEntry1 Where FSourceClassTypeID=",
             bill.class_type, " And FSourceBillID=", bill.id,
             "\r\n"
             "Union All \r\n"
             "Select top 1 FID From t_RP_CheckBillEntry2 Where FSourceClassTypeID=",
             bill.class_type, " And FSourceBillID=", bill.id, "\r\n");
}

std::string DayEndQuery(const Bill& bill) {
  return Cat("Select top 1 FID from t_CC_StockBillEntry Where FClassID_SRC=1090001 and FID=",
             bill.id);
}

Verdict Verification::Run(bool bCheckDaily) const {
  const auto head = ReadHead();
  if (!head) return Refuse("该单据不存在！");
  if (direction_ == kUnAudit) {
    Verdict verdict = JudgeUnAudit(*head);
    if (!verdict.passed) return verdict;
  }
  if (direction_ == kAudit) {
    Verdict verdict = JudgeAudit(*head);
    if (!verdict.passed) return verdict;
    if (IsInArray(bill_.class_type, kWithPrices)) {
      verdict = CheckPrices();
      if (!verdict.passed) return verdict;
    }
  }
  if (!IsInArray(bill_.class_type, kWithoutPeriod) && IsBeforeCurrentPeriod(*head)) {
    return direction_ == kAudit ? Refuse("不能审核以前期间的单据！")
                                : Refuse("不能反审核以前期间的单据！");
  }
  return direction_ == kUnAudit ? CheckDownstream(bCheckDaily) : Pass();
}

std::optional<Head> Verification::ReadHead() const {
  const RecordsetPtr head = Ask(HeadQuery(bill_));
  if (head->AtEnd()) return std::nullopt;
  return Head{head->Field(0), head->Field(1), head->Field(2), head->Field(3)};
}

Verdict Verification::JudgeUnAudit(const Head& head) const {
  const double status = NumberOrZero(head.status);
  if (status == bill_status::kNotAudited) return Refuse("该单据未审核，不能反审核！");
  if (status == bill_status::kLinked) return Refuse("该单据已关闭，不能反审核！");
  if (NumberOrZero(head.voucher_id) > 0) return Refuse("该单据已生成凭证，不能反审核！");
  return Pass();
}

Verdict Verification::JudgeAudit(const Head& head) const {
  if (NumberOrZero(head.status) != bill_status::kNotAudited) {
    return Refuse("该单据已被审核，不能再审核！");
  }
  // Only a 1 lets one person make and audit a bill; no setting does not.
  if (NumberOrZero(GetProfile(self_.host(), sDsn_, "SingleMan", "General")) == 1) return Pass();
  if (NumberOrZero(head.biller_id) == self_.user_id()) {
    return Refuse("审核人与制单人不能为同一人！");
  }
  return Pass();
}

Verdict Verification::CheckPrices() const {
  const RecordsetPtr rows = Ask(ZeroPriceQuery(bill_));
  if (rows->AtEnd()) return Pass();
  std::string message = Cat("第", ToText(rows->Field(0)));
  for (rows->MoveNext(); !rows->AtEnd(); rows->MoveNext()) {
    CatTo(message, "、", ToText(rows->Field(0)));
  }
  return Refuse(message + "行商品单价为零,审核不成功！");
}

bool Verification::IsBeforeCurrentPeriod(const Head& head) const {
  return !DateInCurrentPeriod(self_, sDsn_, ToDate(head.date));
}

Verdict Verification::CheckDownstream(bool bCheckDaily) const {
  if (IsInArray(bill_.class_type, kSourcesOfStockBills) && HasRow(DownstreamBillQuery(bill_))) {
    return Refuse("该单据已被关联生成下游单据,不能反审核！");
  }
  if (IsInArray(bill_.class_type, kSourcesOfPayments) && HasRow(DownstreamPaymentQuery(bill_))) {
    return Refuse("该单据已被关联生成下游单据,不能反审核！");
  }
  if (bill_.class_type == kSalesBill && bCheckDaily && HasRow(DayEndQuery(bill_))) {
    return Refuse("不能反审核日结生成的单据！");
  }
  return Pass();
}

bool RelatedBillsAllow(PlugIn& self, const Dictionary& oDict, const Bill& bill, int16_t direction,
                       std::string& strReturnMsg) {
  const auto bill_type = [&] { return ToLong(oDict.Item("BillType")); };
  switch (bill.class_type) {
    case kOtherReceipt:
    case kOtherIssue:
      return OtherBillCanCheck(self, bill.class_type, bill.id, direction, strReturnMsg);
    case kPurchaseBill:
      return CanCheckGH(self, bill.class_type, bill_type(), bill.id, direction, strReturnMsg);
    case kPurchaseEstimate:
      return CanCheckGJ(self, bill.class_type, bill_type(), bill.id, direction, strReturnMsg);
    case kPurchaseRebate:
    case kSalesRebate:
      return CanCheckFL(self, bill.class_type, bill_type(), bill.id, direction, strReturnMsg);
    default:
      return true;
  }
}

// A check as a public method: an error becomes the failed answer with its description.
template <class Check>
int16_t AnswerCheck(std::string& strReturnMsg, Check&& check) {
  return Trap([&] { return check() ? check_result::kPassed : check_result::kBlocked; },
              [&](const AutomationError& error) {
                strReturnMsg = error.description();
                return check_result::kFailed;
              });
}

}  // namespace

int16_t VerifyDataBeforeAudit(PlugIn& self, Dictionary& oDict, std::string_view sDsn,
                              int16_t intCheckType, std::string& strReturnMsg, bool bCheckDaily) {
  return AnswerCheck(strReturnMsg, [&] {
    self.InitObjects(sDsn);
    const Bill bill = ReadBill(oDict);
    strReturnMsg.clear();
    Verdict verdict = Verification(self, sDsn, bill, intCheckType).Run(bCheckDaily);
    if (!verdict.passed) {
      strReturnMsg = std::move(verdict.message);
      return false;
    }
    return RelatedBillsAllow(self, oDict, bill, intCheckType, strReturnMsg);
  });
}

int16_t VerifyUnCheckForSelf(PlugIn& self, Dictionary& oDict, std::string_view sDsn,
                             int16_t intCheckType, std::string& strReturnMsg,
                             bool /*bCheckDaily*/) {
  return AnswerCheck(strReturnMsg, [&] {
    self.InitObjects(sDsn);
    if (intCheckType != kUnAudit) return true;
    const Value only_self = GetProfile(self.host(), sDsn, "UnCheckOnlySelf", "IC");
    if (NumberOrZero(only_self) != 1) return true;
    strReturnMsg.clear();
    const std::string head_table = ToText(oDict.Item("HeadTableName"));
    const int32_t bill_id = ToLong(oDict.Item("BillInterID"));
    const RecordsetPtr audited_by_user =
        ExecuteSQL(self.host(), sDsn,
                   Cat("Select FStatus,FCheckerID From ", head_table, " where FID=", bill_id,
                       " and FStatus <> 0 and FCheckerID = ", int32_t{self.user_id()}));
    if (!audited_by_user->AtEnd()) return true;
    strReturnMsg = "不能反审核其他人审核的单据！";
    return false;
  });
}

}  // namespace tavcc
