#include "checks/related_bills.h"

#include <string_view>

#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/text.h"
#include "foundation/trap.h"
#include "foundation/verdict.h"

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

  RecordsetPtr Ask(std::string_view question) const { return cn_->Execute(question); }
  bool HasRow(std::string_view question) const { return !Ask(question)->AtEnd(); }

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

// What auditing a bill asks, in the words of its gate.
struct AuditWording {
  std::string_view own_bill;
  std::string_view earlier_period;
};

Verdict CheckAudit(const StockBill& bill, bool (StockBill::*is_own)() const,
                   const AuditWording& wording) {
  if (bill.IsAudited()) return Refuse("单据已经审核,不能再审核。");
  if ((bill.*is_own)()) return Refuse(std::string(wording.own_bill));
  if (bill.IsBeforeCurrentPeriod()) return Refuse(std::string(wording.earlier_period));
  return Pass();
}

enum class OwnBillRule { kEnforced, kNone };

Verdict CheckUnAudit(const StockBill& bill, OwnBillRule own_bill_rule) {
  {
    const RecordsetPtr head = bill.AuditorAndVoucher();
    if (head->AtEnd()) return Refuse("当前单据不存在或已经被删除。");
    if (NumberOrZero(head->Field(0)) == 0) return Refuse("单据尚未审核,不能反审核。");
    if (NumberOrZero(head->Field(1)) > 0) return Refuse("单据已经生成凭证,请先删除凭证。");
  }
  if (own_bill_rule == OwnBillRule::kEnforced && bill.IsOwn()) {
    return Refuse("不能反审核自己的单据。");
  }
  if (bill.IsBeforeCurrentPeriod()) return Refuse("不能反审核以前期间的单据。");
  return Pass();
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

// A check as a public method: the verdict's message, or the preamble and an error's description.
template <class Check>
bool AnswerCheck(std::string& sMsg, std::string_view error_preamble, Check&& check) {
  return Trap(
      [&] {
        Verdict verdict = check();
        if (!verdict.passed) sMsg = std::move(verdict.message);
        return verdict.passed;
      },
      [&](const AutomationError& error) {
        sMsg = Cat(error_preamble, error.description());
        return false;
      });
}

constexpr std::string_view kCheckError = "单据合法性检查出错，错误描述：";

}  // namespace

bool CanCheckGH(PlugIn& self, int32_t ClassBillType, int32_t BillTypeID, int32_t BillInterID,
                int32_t Check, std::string& sMsg) {
  return AnswerCheck(sMsg, kCheckError, [&] {
    const StockBill bill(self, ClassBillType, BillInterID);
    if (Check == kAudit) {
      return CheckAudit(
          bill, &StockBill::IsOwn,
          {.own_bill = "不能审核自己的单据。", .earlier_period = "不能审核以前期间的单据。"});
    }
    Verdict verdict = CheckUnAudit(bill, OwnBillRule::kEnforced);
    if (!verdict.passed) return verdict;
    if ((BillTypeID == 2011 || BillTypeID == 2013) &&
        HasDownstreamBill(bill, class_type::kPurchaseBill, BillInterID)) {
      return Refuse("单据已被其他单据关联,请先删除下游单据。");
    }
    if (BillTypeID == 2013 && ReversalHasVoucher(bill, BillInterID)) {
      return Refuse("估价冲回单对应红单已经生成凭证，请先删除凭证。");
    }
    if (ClassBillType == class_type::kPurchaseBill && IsPaid(bill, ClassBillType, BillInterID)) {
      return Refuse("购货单已经被付款，不允许反审核，请检查。");
    }
    return Pass();
  });
}

bool CanCheckGJ(PlugIn& self, int32_t ClassBillType, int32_t BillTypeID, int32_t BillInterID,
                int32_t Check, std::string& sMsg) {
  return AnswerCheck(sMsg, kCheckError, [&] {
    // Bills of this type are made by the system itself.
    if (BillTypeID == 2032) return Refuse("机制单据，不能进行审核、反审核操作。");
    const StockBill bill(self, ClassBillType, BillInterID);
    if (Check == kAudit) {
      return CheckAudit(bill, &StockBill::IsOwn,
                        {.own_bill = "不能审核自己的单据。",
                         .earlier_period = "不能审核非以前期间的单据。"});  // as stored
    }
    Verdict verdict = CheckUnAudit(bill, OwnBillRule::kEnforced);
    if (!verdict.passed) return verdict;
    if (BillTypeID == 2030 && HasDownstreamBill(bill, class_type::kPurchaseEstimate, BillInterID)) {
      return Refuse("单据已被其他单据关联,请先删除下游单据。");
    }
    return Pass();
  });
}

bool CanCheckFL(PlugIn& self, int32_t ClassBillType, int32_t /*BillTypeID*/, int32_t BillInterID,
                int32_t Check, std::string& sMsg) {
  return AnswerCheck(sMsg, kCheckError, [&] {
    if (Check != kUnAudit) return Pass();
    const StockBill bill(self, ClassBillType, BillInterID);
    if (ClassBillType == class_type::kPurchaseRebate) {
      return IsPaid(bill, ClassBillType, BillInterID)
                 ? Refuse("采购返利单已经被付款，不允许反审核，请检查。")
                 : Pass();
    }
    return IsReceived(bill, ClassBillType, BillInterID)
               ? Refuse("销售返利单已经被收款，不允许反审核，请检查。")
               : Pass();
  });
}

bool OtherBillCanCheck(PlugIn& self, int32_t ClassBillType, int32_t BillInterID, int32_t Check,
                       std::string& sMsg) {
  // "错误" where the other gates say "出错": as stored.
  return AnswerCheck(sMsg, "单据合法性检查错误，错误描述：", [&] {
    const StockBill bill(self, ClassBillType, BillInterID);
    if (Check == kAudit) {
      return CheckAudit(
          bill, &StockBill::IsOwnByPattern,
          {.own_bill = "审核和制单不能是同一人。", .earlier_period = "不能审核以前期间的单据。"});
    }
    return CheckUnAudit(bill, OwnBillRule::kNone);
  });
}

int32_t WhetherBillInvoiceStatus(PlugIn& self, Dictionary& oDict, std::string& strRtnTempMsg) {
  return Trap(
      [&] {
        const int32_t bill_id = ToLong(oDict.Item("BillInterID"));
        const int32_t class_type = ToLong(oDict.Item("ClassTypeID"));
        const StockBill bill(self, class_type, bill_id);
        if (!bill.HasRow(Cat("select top 1 1 from t_cc_stockbill where (FInvoiceAmt<>0) and FID=",
                             bill_id, " and FClassTypeID=", class_type))) {
          return 0;
        }
        strRtnTempMsg = "单据有开票记录，不能反审核！";
        return 1;
      },
      [&](const AutomationError& error) {
        strRtnTempMsg = error.description();
        return -1;
      });
}

}  // namespace tavcc
