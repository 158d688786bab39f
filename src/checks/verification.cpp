#include "checks/verification.h"

#include <optional>

#include "balances/periods.h"
#include "checks/related_bills.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/ladder.h"
#include "foundation/text.h"
#include "foundation/trap.h"

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
  Verification(PlugIn& self, std::string_view sDsn, const Dictionary& oDict, int16_t direction,
               bool check_daily)
      : self_(self),
        sDsn_(sDsn),
        oDict_(oDict),
        bill_(ReadBill(oDict)),
        direction_(direction),
        check_daily_(check_daily) {}

  Verdict Exists();
  Verdict State();
  Verdict Voucher();
  Verdict Maker();
  Verdict Prices();
  Verdict Period();
  Verdict DownstreamBills();
  Verdict DownstreamPayments();
  Verdict DayEnd();
  Verdict RelatedBills();
  Ladder RelatedBillGates() const;

 private:
  bool IsAudit() const { return direction_ == kAudit; }
  bool IsUnAudit() const { return direction_ == kUnAudit; }
  RecordsetPtr Ask(const SqlText& question) const {
    return ExecuteSQL(self_.host(), sDsn_, question);
  }
  bool HasRow(const SqlText& question) const { return !Ask(question)->AtEnd(); }

  // The bill's head, read once. Errors: 3021 where there is none.
  const Head& ReadHead();
  int32_t BillType() const { return ToLong(oDict_.Item("BillType")); }

  PlugIn& self_;
  std::string sDsn_;
  const Dictionary& oDict_;
  Bill bill_;
  int16_t direction_;
  bool check_daily_;
  std::optional<Head> head_;
};

// The first that refuses decides.
constexpr Gate<Verification> kGates[] = {
    {"exists", &Verification::Exists},
    {"state", &Verification::State},
    {"voucher", &Verification::Voucher},
    {"maker", &Verification::Maker},
    {"zero prices", &Verification::Prices},
    {"period", &Verification::Period},
    {"downstream bills", &Verification::DownstreamBills},
    {"downstream payments", &Verification::DownstreamPayments},
    {"day-end bill", &Verification::DayEnd},
    {"related bills", &Verification::RelatedBills, &Verification::RelatedBillGates},
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

// A bill that is not there raises 3021 where its fields are read.
Head HeadFrom(const Recordset& row) {
  return {row.Field(0), row.Field(1), row.Field(2), row.Field(3)};
}

const Head& Verification::ReadHead() {
  if (!head_) head_ = HeadFrom(*Ask(HeadQuery(bill_)));
  return *head_;
}

Verdict Verification::Exists() {
  const RecordsetPtr head = Ask(HeadQuery(bill_));
  if (head->AtEnd()) return Refuse("该单据不存在！");
  head_ = HeadFrom(*head);
  return Pass();
}

Verdict Verification::State() {
  if (!IsAudit() && !IsUnAudit()) return NotAsked();
  const double status = NumberOrZero(ReadHead().status);
  if (IsAudit()) {
    return status == bill_status::kNotAudited ? Pass() : Refuse("该单据已被审核，不能再审核！");
  }
  if (status == bill_status::kNotAudited) return Refuse("该单据未审核，不能反审核！");
  if (status == bill_status::kLinked) return Refuse("该单据已关闭，不能反审核！");
  return Pass();
}

Verdict Verification::Voucher() {
  if (!IsUnAudit()) return NotAsked();
  if (NumberOrZero(ReadHead().voucher_id) > 0) return Refuse("该单据已生成凭证，不能反审核！");
  return Pass();
}

Verdict Verification::Maker() {
  if (!IsAudit()) return NotAsked();
  // Only a 1 lets one person make and audit a bill; no setting does not.
  if (NumberOrZero(GetProfile(self_.host(), sDsn_, "SingleMan", "General")) == 1) return Pass();
  if (NumberOrZero(ReadHead().biller_id) == self_.user_id()) {
    return Refuse("审核人与制单人不能为同一人！");
  }
  return Pass();
}

Verdict Verification::Prices() {
  if (!IsAudit() || !IsInArray(bill_.class_type, kWithPrices)) return NotAsked();
  const RecordsetPtr rows = Ask(ZeroPriceQuery(bill_));
  if (rows->AtEnd()) return Pass();
  std::string message = Cat("第", ToText(rows->Field(0)));
  for (rows->MoveNext(); !rows->AtEnd(); rows->MoveNext()) {
    CatTo(message, "、", ToText(rows->Field(0)));
  }
  return Refuse(message + "行商品单价为零,审核不成功！");
}

Verdict Verification::Period() {
  if (IsInArray(bill_.class_type, kWithoutPeriod)) return NotAsked();
  if (DateInCurrentPeriod(self_, sDsn_, ToDate(ReadHead().date))) return Pass();
  return IsAudit() ? Refuse("不能审核以前期间的单据！") : Refuse("不能反审核以前期间的单据！");
}

Verdict Verification::DownstreamBills() {
  if (!IsUnAudit() || !IsInArray(bill_.class_type, kSourcesOfStockBills)) return NotAsked();
  if (!HasRow(DownstreamBillQuery(bill_))) return Pass();
  return Refuse("该单据已被关联生成下游单据,不能反审核！");
}

Verdict Verification::DownstreamPayments() {
  if (!IsUnAudit() || !IsInArray(bill_.class_type, kSourcesOfPayments)) return NotAsked();
  if (!HasRow(DownstreamPaymentQuery(bill_))) return Pass();
  return Refuse("该单据已被关联生成下游单据,不能反审核！");
}

Verdict Verification::DayEnd() {
  if (!IsUnAudit() || bill_.class_type != kSalesBill || !check_daily_) return NotAsked();
  return HasRow(DayEndQuery(bill_)) ? Refuse("不能反审核日结生成的单据！") : Pass();
}

Verdict Verification::RelatedBills() {
  const int32_t class_type = bill_.class_type;
  std::string message;
  const auto answer = [&](bool allowed) { return allowed ? Pass() : Refuse(std::move(message)); };
  switch (class_type) {
    case kOtherReceipt:
    case kOtherIssue:
      return answer(OtherBillCanCheck(self_, class_type, bill_.id, direction_, message));
    case kPurchaseBill:
      return answer(CanCheckGH(self_, class_type, BillType(), bill_.id, direction_, message));
    case kPurchaseEstimate:
      return answer(CanCheckGJ(self_, class_type, BillType(), bill_.id, direction_, message));
    case kPurchaseRebate:
    case kSalesRebate:
      return answer(CanCheckFL(self_, class_type, BillType(), bill_.id, direction_, message));
    default:
      return NotAsked();
  }
}

Ladder Verification::RelatedBillGates() const {
  const int32_t class_type = bill_.class_type;
  switch (class_type) {
    case kOtherReceipt:
    case kOtherIssue:
      return OtherBillGates(self_, class_type, bill_.id, direction_);
    case kPurchaseBill:
      return PurchaseBillGates(self_, class_type, BillType(), bill_.id, direction_);
    case kPurchaseEstimate:
      return PurchaseEstimateGates(self_, class_type, BillType(), bill_.id, direction_);
    case kPurchaseRebate:
    case kSalesRebate:
      return RebateGates(self_, class_type, BillType(), bill_.id, direction_);
    default:
      return {};
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

Verdict GenericGate(PlugIn& self, const Dictionary& oDict, std::string_view sDsn, int16_t direction,
                    bool check_daily) {
  self.InitObjects(sDsn);
  Verification run(self, sDsn, oDict, direction, check_daily);
  return FirstRefusal(run, kGates);
}

Ladder GenericGates(PlugIn& self, const Dictionary& oDict, std::string_view sDsn, int16_t direction,
                    bool check_daily) {
  return LoneGates(
      kGates, "PublicSysInfo.VerifyDataBeforeAudit",
      [&self, &oDict, dsn = std::string(sDsn), direction, check_daily] {
        return Verification(self, dsn, oDict, direction, check_daily);
      },
      [&self, dsn = std::string(sDsn)](Verification&) { self.InitObjects(dsn); });
}

Verdict AuditorGate(PlugIn& self, const Dictionary& oDict, std::string_view sDsn,
                    int16_t direction) {
  self.InitObjects(sDsn);
  if (direction != kUnAudit) return NotAsked();
  const Value only_self = GetProfile(self.host(), sDsn, "UnCheckOnlySelf", "IC");
  if (NumberOrZero(only_self) != 1) return NotAsked();
  const std::string head_table = ToText(oDict.Item("HeadTableName"));
  const int32_t bill_id = ToLong(oDict.Item("BillInterID"));
  const RecordsetPtr audited_by_user =
      ExecuteSQL(self.host(), sDsn,
                 Cat("Select FStatus,FCheckerID From ", head_table, " where FID=", bill_id,
                     " and FStatus <> 0 and FCheckerID = ", int32_t{self.user_id()}));
  return audited_by_user->AtEnd() ? Refuse("不能反审核其他人审核的单据！") : Pass();
}

int16_t VerifyDataBeforeAudit(PlugIn& self, Dictionary& oDict, std::string_view sDsn,
                              int16_t intCheckType, std::string& strReturnMsg, bool bCheckDaily) {
  return AnswerCheck(strReturnMsg, [&] {
    Verdict verdict = GenericGate(self, oDict, sDsn, intCheckType, bCheckDaily);
    strReturnMsg = std::move(verdict.message);
    return verdict.passed;
  });
}

int16_t VerifyUnCheckForSelf(PlugIn& self, Dictionary& oDict, std::string_view sDsn,
                             int16_t intCheckType, std::string& strReturnMsg,
                             bool /*bCheckDaily*/) {
  return AnswerCheck(strReturnMsg, [&] {
    Verdict verdict = AuditorGate(self, oDict, sDsn, intCheckType);
    if (verdict.asked) strReturnMsg = std::move(verdict.message);
    return verdict.passed;
  });
}

}  // namespace tavcc
