#include "audit/batch_audit.h"

#include <string>

#include "audit/audited_bill.h"
#include "audit/batch_result.h"
#include "audit/credit_and_price.h"
#include "audit/head_status.h"
#include "audit/inventory_posting.h"
#include "audit/invoice_status.h"
#include "audit/negative_stock.h"
#include "audit/order_quantities.h"
#include "audit/partner_balance.h"
#include "audit/price_history.h"
#include "audit/temp_bill_table.h"
#include "audit/value_posting.h"
#include "checks/stock_quantity.h"
#include "checks/verification.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/nothing.h"
#include "foundation/text.h"
#include "foundation/trap.h"

namespace tavcc {

namespace {

constexpr int16_t kAllPassed = 1;
constexpr int16_t kSomeRefused = 0;
constexpr int16_t kRunEnded = -1;

// Bills of this type are neither held against the stock nor posted.
constexpr int32_t kStocklessType = 3003;

enum class Course { kPassed, kRefused, kEndsRun };

struct Outcome {
  Course course;
  std::string text;  // the outcome as the bill's line says it, or why the run ends
};

Outcome Refused(std::string text) {
  return {Course::kRefused, std::move(text)};
}

Outcome RefusedBecause(std::string_view reason) {
  return Refused(Cat("审核失败！失败原因：", reason, "|"));
}

// What a gate that did not pass means for the bill: a refusal, or the end of the run.
Outcome Stopped(int16_t answer, std::string message) {
  if (answer == check_result::kBlocked) return RefusedBecause(message);
  return {Course::kEndsRun, std::move(message)};
}

class BatchAudit {
 public:
  BatchAudit(PlugIn& self, std::string_view sDsn, int16_t CheckType, bool BatchCheck,
             bool NeedCheckDaily, bool NeedCheckCrdPrc)
      : self_(self),
        host_(self.host()),
        sDsn_(sDsn),
        check_type_(CheckType),
        batch_check_(BatchCheck),
        need_check_daily_(NeedCheckDaily),
        need_check_crd_prc_(NeedCheckCrdPrc) {}

  // Runs the whole batch. Errors: those of the ports; `result` then holds what came before.
  int16_t Run(const Vector& bills, Dictionary& dct, BatchResult& result);

 private:
  Outcome Audit(const AuditedBill& bill, std::vector<int32_t>& negative_items);
  Outcome NegativeStockOutcome(const AuditedBill& bill, std::vector<int32_t>& negative_items);
  bool IsRejected(const AuditedBill& bill);
  bool LacksSerialNumbers(const AuditedBill& bill);
  void KeepBooks(const AuditedBill& bill);
  bool PostStock(const AuditedBill& bill, std::string& message);

  PlugIn& self_;
  Host& host_;
  std::string_view sDsn_;
  int16_t check_type_;
  bool batch_check_;
  bool need_check_daily_;
  bool need_check_crd_prc_;
  ConnectionPtr cn_;
  int16_t calculate_type_ = 0;
};

int16_t BatchAudit::Run(const Vector& bills, Dictionary& dct, BatchResult& result) {
  self_.InitObjects(sDsn_);
  self_.db_context().ReadyFirst();
  cn_ = self_.db_context().GetConnection();
  result.Start(dct);
  calculate_type_ = ToInteger(GetICProfile(host_, "CalculateType", int16_t{0}));
  CreateTempBillTable(*cn_);

  const int count = bills.Size();
  for (int i = 1; i <= count; ++i) {
    const auto dictionary = ToObject<Dictionary>(bills.Item(i));
    const AuditedBill bill = ReadBill(*dictionary, check_type_);
    Outcome outcome = Audit(bill, result.negative_items());
    switch (outcome.course) {
      case Course::kPassed:
        result.AddPassed(bill, outcome.text);
        break;
      case Course::kRefused:
        result.AddRefused(bill, outcome.text);
        break;
      case Course::kEndsRun:
        result.SetError(std::move(outcome.text));
        return kRunEnded;
    }
  }
  return result.HasRefusals() ? kSomeRefused : kAllPassed;
}

Outcome BatchAudit::Audit(const AuditedBill& bill, std::vector<int32_t>& negative_items) {
  if (!CheckBillRight(host_, bill.class_type, bill.bill_id)) {
    return Refused("审核失败！失败原因：您没有该单据对应基础资料的权限");
  }
  std::string message;
  if (bill.IsUnAudit()) {
    const int16_t answer =
        VerifyUnCheckForSelf(self_, bill.dictionary, sDsn_, kUnAudit, message, need_check_daily_);
    if (answer != check_result::kPassed) return Stopped(answer, std::move(message));
  }
  EmptyTempBillTable(*cn_);
  const bool moves_stock = MovesStock(bill.class_type, bill.bill_type);
  if (batch_check_) {
    const int16_t answer = VerifyDataBeforeAudit(self_, bill.dictionary, sDsn_, check_type_,
                                                 message, need_check_daily_);
    if (answer != check_result::kPassed) return Stopped(answer, std::move(message));
  }
  if (need_check_crd_prc_) {
    const int16_t answer = CheckCreditAndPrice(self_, bill, sDsn_, message);
    if (answer != check_result::kPassed) return Stopped(answer, std::move(message));
  }
  Outcome negative = NegativeStockOutcome(bill, negative_items);
  if (negative.course != Course::kPassed) return negative;
  if (IsRejected(bill)) return Refused("审核失败！失败原因：该单据为驳回状态!|");
  if (LacksSerialNumbers(bill)) return Refused("审核失败！失败原因：该单据存在未设置SN号的商品!|");

  KeepBooks(bill);
  if (moves_stock && !PostStock(bill, message)) return {Course::kEndsRun, std::move(message)};
  const std::string reason = PostValue(host_, *cn_, bill);
  if (!reason.empty()) return RefusedBecause(reason);
  return {Course::kPassed, "审核成功！"};
}

Outcome BatchAudit::NegativeStockOutcome(const AuditedBill& bill,
                                         std::vector<int32_t>& negative_items) {
  Outcome passed = {Course::kPassed, ""};
  if (bill.bill_type == kStocklessType) return passed;
  if (!ChecksStock(check_type_, bill.class_type, bill.bill_type)) return passed;
  const bool allow_negative =
      GetFirstValue(
          host_, sDsn_,
          "Select FValue from t_systemprofile where Fcategory='IC' AND FKEY='UnderStock'") == "1";
  switch (CheckNegativeStock(self_, *cn_, bill, sDsn_, allow_negative, calculate_type_,
                             negative_items)) {
    case StockAnswer::kShort:
      return Refused("审核失败！失败原因：审核出现负库存商品！|");
    case StockAnswer::kShortOfBatch:
      return Refused("审核失败！失败原因：分批认定法计价的商品,不允许负库存出库！|");
    case StockAnswer::kEnough:
      break;
  }
  return passed;
}

bool BatchAudit::IsRejected(const AuditedBill& bill) {
  const auto rejected = [&](const std::string& sql) {
    const RecordsetPtr rows = ExecuteSQL(host_, sDsn_, sql);
    return !rows->AtEnd() && NumberOrZero(rows->Field("FRejected")) != 0;
  };
  switch (bill.class_type) {
    case class_type::kSalesOrder:
      return rejected(Cat("Select FRejected From t_XS_Order Where FClassTypeID=1030001 And FID='",
                          bill.bill_id, "'"));
    case class_type::kSalesBill:
      return rejected(
          Cat("Select FRejected From t_CC_StockBill Where FClassTypeID=1030002 And FID='",
              bill.bill_id, "'"));
    default:
      return false;
  }
}

bool BatchAudit::LacksSerialNumbers(const AuditedBill& bill) {
  return !ExecuteSQL(host_, sDsn_,
                     Cat("select top 1 ti.FName,tcsben.FIndex,tcsb.FBillNo from "
                         "t_cc_stockbillentry tcsben "
                         "left join t_SerialNumList tsn on tsn.FBillID=tcsben.FID and "
                         "tsn.FBillIndexID=tcsben.FIndex and tsn.FItemID=tcsben.FItemID and "
                         "tsn.FStockID=tcsben.FSCStockID "
                         "left join t_icitem ti on ti.FItemID=tcsben.FItemID "
                         "left join t_cc_stockbill tcsb on tcsb.FID=tcsben.FID "
                         "where tcsben.FID='",
                         bill.bill_id,
                         "' "
                         "and ti.FIsSerialNumMgr=1 and isnull(tsn.FID,0)=0"))
              ->AtEnd();
}

void BatchAudit::KeepBooks(const AuditedBill& bill) {
  UpdatePartnerBalance(*cn_, bill);
  UpdatePriceHistory(*cn_, bill);
  WriteBackOrderQuantities(host_, *cn_, bill);
  SetCheckStatus(*cn_, bill, self_.user_id());
  SetInvoiceAmount(*cn_, bill);
  if (bill.IsUnAudit()) ResetInvoiceStatus(*cn_, bill);
  // Sent for every bill, whether it posts or not: what the stock check loaded must be gone.
  EmptyTempBillTable(*cn_);
  if (!bill.IsUnAudit()) return;
  cn_->Execute(
      Cat("delete from t_cc_bal where FClassTypeID=", bill.class_type, " and FID=", bill.bill_id));
  cn_->Execute(Cat("delete from ICSpeedBal where FClassTypeID=", bill.class_type,
                   " and FID=", bill.bill_id));
}

bool BatchAudit::PostStock(const AuditedBill& bill, std::string& message) {
  if (bill.class_type == class_type::kPriceAdjustment || bill.bill_type == kStocklessType) {
    return true;
  }
  if (!FillTempBill(host_, *cn_, bill.class_type, bill.bill_id, bill.bill_type, check_type_,
                    message)) {
    return false;
  }
  ApplyTempBillToInventory(*cn_);
  if (bill.IsUnAudit() && NeedsCleanInventory(bill.class_type, bill.bill_type)) {
    CleanInventory(*cn_);
  }
  return true;
}

}  // namespace

int16_t AuditBill(PlugIn& self, Vector& billVect, int16_t CheckType, std::string_view sDsn,
                  bool BatchCheck, DictionaryPtr& dct, bool NeedCheckDaily, bool NeedCheckCrdPrc) {
  Dictionary& results = dct == nullptr ? NoDictionary() : *dct;
  BatchResult result;
  const int16_t answer = Trap(
      [&] {
        return BatchAudit(self, sDsn, CheckType, BatchCheck, NeedCheckDaily, NeedCheckCrdPrc)
            .Run(billVect, results, result);
      },
      [&](const AutomationError& error) {
        result.SetError(error.description());
        return kRunEnded;
      });
  // A dictionary that takes no results leaves nobody to be told.
  return Trap([&] { return result.WriteTo(results), answer; },
              [](const AutomationError&) { return kRunEnded; });
}

}  // namespace tavcc
