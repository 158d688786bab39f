#include "checks/related_bills.h"

#include <optional>
#include <string_view>

#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/text.h"
#include "foundation/trap.h"

namespace tavcc {

namespace {

// A stock bill in the database, asked through the connection of the kept context. Every question is
// one statement, whose rows are let go of before the next.
class StockBill {
 public:
  StockBill(PlugIn& self, int32_t class_type, int32_t id)
      : self_(self), cn_(self.db_context().GetConnection()), class_type_(class_type), id_(id) {
    self_.db_context().ReadySecond();
  }

  RecordsetPtr Ask(const SqlText& question) const { return cn_->Execute(question); }
  bool HasRow(const SqlText& question) const { return !Ask(question)->AtEnd(); }

  // A bill without a row is not audited; its period decides.
  bool IsAudited() const;
  RecordsetPtr AuditorAndVoucher() const;
  // Whether the current user made the bill and somebody else has to audit it. The two differ only
  // in how they look the setting up. Unlike in the generic gate, no setting is no rule.
  bool IsOwn() const { return IsOwn(Ask(SingleManBatch())); }
  bool IsOwnByPattern() const { return IsOwn(Ask(SingleManPatternBatch())); }
  bool IsBeforeCurrentPeriod() const;

 private:
  std::string SingleManBatch() const;
  std::string SingleManPatternBatch() const;
  bool IsOwn(const RecordsetPtr& same_and_maker) const;

  PlugIn& self_;
  ConnectionPtr cn_;
  int32_t class_type_;
  int32_t id_;
};

bool StockBill::IsAudited() const {
  const RecordsetPtr head =
      Ask(Cat("Select IsNUll(FCheckerID,0) from t_CC_StockBIll Where FClassTypeID=", class_type_,
              " And FID=", id_));
  return !head->AtEnd() && NumberOrZero(head->Field(0)) > 0;
}

RecordsetPtr StockBill::AuditorAndVoucher() const {
  return Ask(
      Cat("Select IsNUll(FCheckerID,0),IsNUll(FVoucherID,0) from t_CC_StockBIll"
          " Where FClassTypeID=",
          class_type_, " And FID=", id_));
}

std::string StockBill::SingleManBatch() const {
  return Cat(
      "Set NoCount On   Declare @Same int\r\n"
      "Select @Same=FValue From t_systemprofile"
      " Where FCategory='General' And FKey='SingleMan' \r\n"
      "Select @Same As FSame,FBillerID from t_CC_StockBIll Where FClassTypeID=",
      class_type_, " And FID=", id_,
      "\r\n"
      "Set NoCount Off ");
}

std::string StockBill::SingleManPatternBatch() const {
  return Cat(
      "Set NoCount On   Declare @Same int\r\n"
      "Select @Same=FValue From t_systemprofile"
      " Where FCategory='General' And FKey like 'SingleMan' \r\n"
      "Select @Same As FSame,FBillerID from t_CC_StockBIll Where FClassTypeID=",
      class_type_, " And FID=", id_,
      "\r\n"
      "Set NoCount Off ");
}

bool StockBill::IsOwn(const RecordsetPtr& same_and_maker) const {
  if (same_and_maker->AtEnd()) return false;
  // Null, where there is no setting, equals nothing.
  if (!VariantEquals(same_and_maker->Field("FSame"), int32_t{0})) return false;
  return VariantEquals(same_and_maker->Field("FBillerID"), self_.user_id());
}

bool StockBill::IsBeforeCurrentPeriod() const {
  return !HasRow(
      Cat("Set NoCount On     Declare @Year int,@Period int,@Date DateTime \r\n"
          "SELECT @Year = CONVERT(INT, FValue) FROM t_SystemProfile"
          " WHERE FCategory = 'IC' AND FKey = 'CurrentYear' \r\n"
          "SELECT @Period = CONVERT(INT, FValue) FROM t_SystemProfile"
          " WHERE FCategory = 'IC' AND FKey = 'CurrentPeriod'\r\n"
          "Select @Date=FDate From t_CC_StockBill Where FClassTypeID=",
          class_type_, " And FID=", id_,
          "\r\n"
          "SELECT * FROM t_PeriodDate WHERE FYear = @Year AND FPeriod = @Period"
          " And DateDiff(Day,FStartDate,@Date)>=0 "));
}

// Stock bills that were made from this one.
bool HasDownstreamBill(const StockBill& bill, int32_t source_class, int32_t bill_id) {
  return bill.HasRow(
      Cat("Select v.FBillNO From t_CC_StockBill v"
          " Inner Join  t_CC_StockBillEntry u On v.FID=u.FID \r\n"
          "Where u.FClassID_SRC=",
          source_class, " And FID_SRC=", bill_id));
}

// The voucher of the red bill of an estimate's reversal. There has to be such a bill: without one
// the read of the first row fails, which deliberately refuses the un-audit.
bool ReversalHasVoucher(const StockBill& bill, int32_t bill_id) {
  const RecordsetPtr voucher = bill.Ask(
      Cat("Select IsNull(v2.FVoucherID,0) From t_CC_StockBill v1 \r\n"
          "Inner Join ICRelations r1 On r1.FID=v1.FID And r1.FClassTypeID=v1.FClassTypeID \r\n"
          "Inner Join ICRelations r2 On r2.FGroupNo=r1.FGroupNo \r\n"
          "Inner Join t_CC_StockBill v2"
          " On v2.FID=r2.FID And v2.FClassTypeID=r2.FClassTypeID \r\n"
          "Where v2.FBillTypeID=2032 And v1.FID=",
          bill_id));
  return NumberOrZero(voucher->Field(0)) > 0;
}

// Payable and settlement documents made from the bill. Lines end in a mix of CR LF and LF: as
// stored.
bool IsPaid(const StockBill& bill, int32_t class_type, int32_t bill_id) {
  return bill.HasRow(
      Cat("Select FSourceBillId from t_rp_pBillEntry \n"
          "Where FSourceClassTypeID=",
          class_type, " And FSourceBillID=", bill_id,
          "\r\n"
          "Union\n"
          "Select FSourceBillId from t_rp_CheckBillEntry1 \n"
          "Where FSourceClassTypeID=",
          class_type, " And FSourceBillID=", bill_id,
          "\r\n"
          "Union\n"
          "Select FSourceBillId from t_rp_CheckBillEntry2 \n"
          "Where FSourceClassTypeID=",
          class_type, " And FSourceBillID=", bill_id));
}

// Receivable and settlement documents made from the bill.
bool IsReceived(const StockBill& bill, int32_t class_type, int32_t bill_id) {
  return bill.HasRow(
      Cat("Select FSourceBillId from t_rp_rBillEntry \n"
          "Where FSourceClassTypeID=",
          class_type, " And FSourceBillID=", bill_id,
          "\r\n"
          "Union\n"
          "Select FSourceBillId from t_rp_CheckBillEntry1 \n"
          "Where FSourceClassTypeID=",
          class_type, " And FSourceBillID=", bill_id,
          "\r\n"
          "Union\n"
          "Select FSourceBillId from t_rp_CheckBillEntry2 \n"
          "Where FSourceClassTypeID=",
          class_type, " And FSourceBillID=", bill_id));
}

// What the gates of a class say, where they do not agree on the words.
struct Wording {
  std::string_view own_bill;
  std::string_view earlier_period;
};

enum class OwnBillRule { kEnforced, kOnAudit };

// What the classes' gates differ in.
struct BillClass {
  Wording on_audit;
  OwnBillRule own_bill_rule;
  bool (StockBill::*is_own)() const;
};

constexpr BillClass kPurchase{
    {.own_bill = "不能审核自己的单据。", .earlier_period = "不能审核以前期间的单据。"},
    OwnBillRule::kEnforced,
    &StockBill::IsOwn};
constexpr BillClass kEstimate{{.own_bill = "不能审核自己的单据。",
                               .earlier_period = "不能审核非以前期间的单据。"},  // as stored
                              OwnBillRule::kEnforced,
                              &StockBill::IsOwn};
constexpr BillClass kOther{
    {.own_bill = "审核和制单不能是同一人。", .earlier_period = "不能审核以前期间的单据。"},
    OwnBillRule::kOnAudit,
    &StockBill::IsOwnByPattern};
constexpr BillClass kRebate{{}, OwnBillRule::kEnforced, nullptr};

// One run of a related-bill check.
class RelatedBillCheck {
 public:
  RelatedBillCheck(PlugIn& self, const BillClass& bill_class, int32_t class_type, int32_t bill_type,
                   int32_t bill_id, int32_t direction)
      : self_(self),
        class_(bill_class),
        class_type_(class_type),
        bill_type_(bill_type),
        bill_id_(bill_id),
        direction_(direction) {}

  Verdict MadeBySystem();
  Verdict State();
  Verdict Voucher();
  Verdict Maker();
  Verdict Period();
  Verdict DownstreamOfPurchase();
  Verdict DownstreamOfEstimate();
  Verdict ReversalVoucher();
  Verdict PurchasePaid();
  Verdict RebatePaid();

 private:
  struct AuditorAndVoucher {
    Value auditor;
    Value voucher;
  };

  bool IsAudit() const { return direction_ == kAudit; }
  // The bill, made when the first gate asks for it: its making readies the context.
  const StockBill& bill();
  // Read once. Nothing where there is no such bill.
  std::optional<AuditorAndVoucher> ReadAuditorAndVoucher();

  PlugIn& self_;
  const BillClass& class_;
  int32_t class_type_;
  int32_t bill_type_;
  int32_t bill_id_;
  int32_t direction_;
  std::optional<StockBill> bill_;
  std::optional<AuditorAndVoucher> auditor_and_voucher_;
};

// The gates that all stock bills share stand first.
constexpr Gate<RelatedBillCheck> kPurchaseGates[] = {
    {"related: state", &RelatedBillCheck::State},
    {"related: voucher", &RelatedBillCheck::Voucher},
    {"related: maker", &RelatedBillCheck::Maker},
    {"related: period", &RelatedBillCheck::Period},
    {"related: downstream bills", &RelatedBillCheck::DownstreamOfPurchase},
    {"related: voucher of the reversal", &RelatedBillCheck::ReversalVoucher},
    {"related: payments", &RelatedBillCheck::PurchasePaid},
};
constexpr Gate<RelatedBillCheck> kEstimateGates[] = {
    {"related: made by the system", &RelatedBillCheck::MadeBySystem},
    {"related: state", &RelatedBillCheck::State},
    {"related: voucher", &RelatedBillCheck::Voucher},
    {"related: maker", &RelatedBillCheck::Maker},
    {"related: period", &RelatedBillCheck::Period},
    {"related: downstream bills", &RelatedBillCheck::DownstreamOfEstimate},
};
constexpr Gate<RelatedBillCheck> kOtherGates[] = {
    {"related: state", &RelatedBillCheck::State},
    {"related: voucher", &RelatedBillCheck::Voucher},
    {"related: maker", &RelatedBillCheck::Maker},
    {"related: period", &RelatedBillCheck::Period},
};
constexpr Gate<RelatedBillCheck> kRebateGates[] = {
    {"related: payments", &RelatedBillCheck::RebatePaid},
};

const StockBill& RelatedBillCheck::bill() {
  if (!bill_) bill_.emplace(self_, class_type_, bill_id_);
  return *bill_;
}

std::optional<RelatedBillCheck::AuditorAndVoucher> RelatedBillCheck::ReadAuditorAndVoucher() {
  if (auditor_and_voucher_) return auditor_and_voucher_;
  const RecordsetPtr head = bill().AuditorAndVoucher();
  if (!head->AtEnd()) auditor_and_voucher_ = {head->Field(0), head->Field(1)};
  return auditor_and_voucher_;
}

// Bills of this type are made by the system itself.
Verdict RelatedBillCheck::MadeBySystem() {
  return bill_type_ == 2032 ? Refuse("机制单据，不能进行审核、反审核操作。") : Pass();
}

Verdict RelatedBillCheck::State() {
  if (IsAudit()) return bill().IsAudited() ? Refuse("单据已经审核,不能再审核。") : Pass();
  const auto head = ReadAuditorAndVoucher();
  if (!head) return Refuse("当前单据不存在或已经被删除。");
  if (NumberOrZero(head->auditor) == 0) return Refuse("单据尚未审核,不能反审核。");
  return Pass();
}

Verdict RelatedBillCheck::Voucher() {
  if (IsAudit()) return NotAsked();
  const auto head = ReadAuditorAndVoucher();
  if (!head || NumberOrZero(head->voucher) <= 0) return Pass();
  return Refuse("单据已经生成凭证,请先删除凭证。");
}

Verdict RelatedBillCheck::Maker() {
  if (!IsAudit() && class_.own_bill_rule == OwnBillRule::kOnAudit) return NotAsked();
  if (IsAudit()) {
    return (bill().*class_.is_own)() ? Refuse(std::string(class_.on_audit.own_bill)) : Pass();
  }
  return bill().IsOwn() ? Refuse("不能反审核自己的单据。") : Pass();
}

Verdict RelatedBillCheck::Period() {
  if (!bill().IsBeforeCurrentPeriod()) return Pass();
  if (IsAudit()) return Refuse(std::string(class_.on_audit.earlier_period));
  return Refuse("不能反审核以前期间的单据。");
}

Verdict RelatedBillCheck::DownstreamOfPurchase() {
  if (IsAudit() || (bill_type_ != 2011 && bill_type_ != 2013)) return NotAsked();
  if (!HasDownstreamBill(bill(), class_type::kPurchaseBill, bill_id_)) return Pass();
  return Refuse("单据已被其他单据关联,请先删除下游单据。");
}

Verdict RelatedBillCheck::DownstreamOfEstimate() {
  if (IsAudit() || bill_type_ != 2030) return NotAsked();
  if (!HasDownstreamBill(bill(), class_type::kPurchaseEstimate, bill_id_)) return Pass();
  return Refuse("单据已被其他单据关联,请先删除下游单据。");
}

Verdict RelatedBillCheck::ReversalVoucher() {
  if (IsAudit() || bill_type_ != 2013) return NotAsked();
  if (!ReversalHasVoucher(bill(), bill_id_)) return Pass();
  return Refuse("估价冲回单对应红单已经生成凭证，请先删除凭证。");
}

Verdict RelatedBillCheck::PurchasePaid() {
  if (IsAudit() || class_type_ != class_type::kPurchaseBill) return NotAsked();
  if (!IsPaid(bill(), class_type_, bill_id_)) return Pass();
  return Refuse("购货单已经被付款，不允许反审核，请检查。");
}

// Any direction but un-audit passes.
Verdict RelatedBillCheck::RebatePaid() {
  if (direction_ != kUnAudit) return NotAsked();
  if (class_type_ == class_type::kPurchaseRebate) {
    if (!IsPaid(bill(), class_type_, bill_id_)) return Pass();
    return Refuse("采购返利单已经被付款，不允许反审核，请检查。");
  }
  if (!IsReceived(bill(), class_type_, bill_id_)) return Pass();
  return Refuse("销售返利单已经被收款，不允许反审核，请检查。");
}

// A check as a public method: the verdict's message, or the preamble and an error's description.
template <size_t N>
bool AnswerCheck(std::string& sMsg, std::string_view error_preamble, RelatedBillCheck check,
                 const Gate<RelatedBillCheck> (&gates)[N]) {
  return Trap(
      [&] {
        Verdict verdict = FirstRefusal(check, gates);
        if (!verdict.passed) sMsg = std::move(verdict.message);
        return verdict.passed;
      },
      [&](const AutomationError& error) {
        sMsg = Cat(error_preamble, error.description());
        return false;
      });
}

// Where a check is not told the bill's type, since it does not depend on it.
constexpr int32_t kNoBillType = 0;

constexpr std::string_view kCheckError = "单据合法性检查出错，错误描述：";

template <size_t N>
Ladder GatesOf(const Gate<RelatedBillCheck> (&gates)[N], std::string_view method,
               const RelatedBillCheck& check) {
  return LoneGates(
      gates, method, [check] { return check; }, [](RelatedBillCheck&) {});
}

}  // namespace

bool CanCheckGH(PlugIn& self, int32_t ClassBillType, int32_t BillTypeID, int32_t BillInterID,
                int32_t Check, std::string& sMsg) {
  return AnswerCheck(sMsg, kCheckError,
                     {self, kPurchase, ClassBillType, BillTypeID, BillInterID, Check},
                     kPurchaseGates);
}

bool CanCheckGJ(PlugIn& self, int32_t ClassBillType, int32_t BillTypeID, int32_t BillInterID,
                int32_t Check, std::string& sMsg) {
  return AnswerCheck(sMsg, kCheckError,
                     {self, kEstimate, ClassBillType, BillTypeID, BillInterID, Check},
                     kEstimateGates);
}

bool CanCheckFL(PlugIn& self, int32_t ClassBillType, int32_t BillTypeID, int32_t BillInterID,
                int32_t Check, std::string& sMsg) {
  return AnswerCheck(sMsg, kCheckError,
                     {self, kRebate, ClassBillType, BillTypeID, BillInterID, Check}, kRebateGates);
}

bool OtherBillCanCheck(PlugIn& self, int32_t ClassBillType, int32_t BillInterID, int32_t Check,
                       std::string& sMsg) {
  // "错误" where the other gates say "出错": as stored.
  return AnswerCheck(sMsg, "单据合法性检查错误，错误描述：",
                     {self, kOther, ClassBillType, kNoBillType, BillInterID, Check}, kOtherGates);
}

Ladder PurchaseBillGates(PlugIn& self, int32_t class_type, int32_t bill_type, int32_t bill_id,
                         int32_t direction) {
  return GatesOf(kPurchaseGates, "PublicSysInfo.CanCheckGH",
                 {self, kPurchase, class_type, bill_type, bill_id, direction});
}

Ladder PurchaseEstimateGates(PlugIn& self, int32_t class_type, int32_t bill_type, int32_t bill_id,
                             int32_t direction) {
  return GatesOf(kEstimateGates, "PublicSysInfo.CanCheckGJ",
                 {self, kEstimate, class_type, bill_type, bill_id, direction});
}

Ladder RebateGates(PlugIn& self, int32_t class_type, int32_t bill_type, int32_t bill_id,
                   int32_t direction) {
  return GatesOf(kRebateGates, "PublicSysInfo.CanCheckFL",
                 {self, kRebate, class_type, bill_type, bill_id, direction});
}

Ladder OtherBillGates(PlugIn& self, int32_t class_type, int32_t bill_id, int32_t direction) {
  return GatesOf(kOtherGates, "PublicSysInfo.OtherBillCanCheck",
                 {self, kOther, class_type, kNoBillType, bill_id, direction});
}

Verdict InvoiceGate(PlugIn& self, const Dictionary& oDict) {
  const int32_t bill_id = ToLong(oDict.Item("BillInterID"));
  const int32_t class_type = ToLong(oDict.Item("ClassTypeID"));
  const StockBill bill(self, class_type, bill_id);
  if (!bill.HasRow(Cat("select top 1 1 from t_cc_stockbill where (FInvoiceAmt<>0) and FID=",
                       bill_id, " and FClassTypeID=", class_type))) {
    return Pass();
  }
  return Refuse("单据有开票记录，不能反审核！");
}

int32_t WhetherBillInvoiceStatus(PlugIn& self, Dictionary& oDict, std::string& strRtnTempMsg) {
  return Trap(
      [&] {
        Verdict verdict = InvoiceGate(self, oDict);
        if (verdict.passed) return 0;
        strRtnTempMsg = std::move(verdict.message);
        return 1;
      },
      [&](const AutomationError& error) {
        strRtnTempMsg = error.description();
        return -1;
      });
}

}  // namespace tavcc
