#include "audit/batch_audit.h"

#include <memory>
#include <string>

#include "audit/audited_bill.h"
#include "audit/batch_result.h"
#include "audit/head_status.h"
#include "audit/inventory_posting.h"
#include "audit/invoice_status.h"
#include "audit/negative_stock.h"
#include "audit/order_quantities.h"
#include "audit/partner_balance.h"
#include "audit/price_history.h"
#include "audit/value_posting.h"
#include "checks/credit.h"
#include "checks/stock_quantity.h"
#include "checks/verification.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/nothing.h"
#include "foundation/temp_bill_table.h"
#include "foundation/text.h"
#include "foundation/trap.h"
#include "pricing/limit_price.h"

namespace tavcc {

namespace {

constexpr int16_t kAllPassed = 1;
constexpr int16_t kSomeRefused = 0;
constexpr int16_t kRunEnded = -1;

// Bills of this type are neither held against the stock nor posted.
constexpr int32_t kStocklessType = 3003;

enum class OutcomeKind { kPassed, kRefused, kEndsRun };

struct Outcome {
  OutcomeKind kind;
  std::string text;  // the outcome as the bill's line says it, or why the run ends
};

Outcome RefusedBecause(std::string_view reason) {
  return {OutcomeKind::kRefused, Cat("审核失败！失败原因：", reason, "|")};
}

// What a batch is told, what its bills share, and what it hands back.
struct Batch {
  PlugIn& self;
  std::string sDsn;
  int16_t check_type;
  bool batch_check;
  bool need_check_daily;
  bool need_check_crd_prc;
  ConnectionPtr cn = nullptr;
  int16_t calculate_type = 0;
  BatchResult result = {};
};

void Connect(Batch& batch) {
  batch.self.InitObjects(batch.sDsn);
  batch.self.db_context().ReadyFirst();
  batch.cn = batch.self.db_context().GetConnection();
}

void Prepare(Batch& batch) {
  batch.calculate_type = ToInteger(GetICProfile(batch.self.host(), "CalculateType", int16_t{0}));
  CreateTempBillTable(*batch.cn);
}

// One bill of a batch.
class BillAudit {
 public:
  BillAudit(std::shared_ptr<Batch> batch, Dictionary& dictionary)
      : batch_(std::move(batch)),
        self_(batch_->self),
        host_(self_.host()),
        bill_(ReadBill(dictionary, batch_->check_type)) {}

  Batch& batch() { return *batch_; }
  const AuditedBill& bill() const { return bill_; }

  Verdict Right();
  Verdict Auditor();
  Verdict Verification();
  Ladder VerificationGates() const;
  Verdict Credit();
  Verdict LimitPrices();
  Verdict NegativeStock();
  Verdict Rejected();
  Verdict SerialNumbers();

  // Asks the gates, and keeps the books of a bill that passes them. Errors: those of the ports.
  Outcome Run();

 private:
  void KeepBooks();
  bool PostStock(std::string& message);

  std::shared_ptr<Batch> batch_;
  PlugIn& self_;
  Host& host_;
  AuditedBill bill_;
};

// In the order in which a bill is asked; the first that refuses is the reason.
constexpr Gate<BillAudit> kGates[] = {
    {"right", &BillAudit::Right},
    {"auditor", &BillAudit::Auditor},
    {"verification", &BillAudit::Verification, &BillAudit::VerificationGates},
    {"credit", &BillAudit::Credit},
    {"limit prices", &BillAudit::LimitPrices},
    {"negative stock", &BillAudit::NegativeStock},
    {"rejected", &BillAudit::Rejected},
    {"serial numbers", &BillAudit::SerialNumbers},
};

Verdict BillAudit::Right() {
  if (CheckBillRight(host_, bill_.class_type, bill_.bill_id)) return Pass();
  return Refuse("您没有该单据对应基础资料的权限");
}

Verdict BillAudit::Auditor() {
  if (!bill_.IsUnAudit()) return NotAsked();
  return AuditorGate(self_, bill_.dictionary, batch_->sDsn, kUnAudit);
}

Verdict BillAudit::Verification() {
  // Sent for every bill: what the bill before has left must be gone.
  EmptyTempBillTable(*batch_->cn);
  if (!batch_->batch_check) return NotAsked();
  return GenericGate(self_, bill_.dictionary, batch_->sDsn, batch_->check_type,
                     batch_->need_check_daily);
}

Ladder BillAudit::VerificationGates() const {
  return GenericGates(self_, bill_.dictionary, batch_->sDsn, batch_->check_type,
                      batch_->need_check_daily);
}

Verdict BillAudit::Credit() {
  if (!batch_->need_check_crd_prc) return NotAsked();
  return CreditGate(self_, bill_.dictionary, bill_.check_type, batch_->sDsn);
}

Verdict BillAudit::LimitPrices() {
  if (!batch_->need_check_crd_prc) return NotAsked();
  return LimitPriceGate(self_, bill_.dictionary, bill_.check_type, batch_->sDsn);
}

Verdict BillAudit::NegativeStock() {
  if (bill_.bill_type == kStocklessType) return NotAsked();
  if (!ChecksStock(batch_->check_type, bill_.class_type, bill_.bill_type)) return NotAsked();
  const bool allow_negative =
      GetFirstValue(
          host_, batch_->sDsn,
          "Select FValue from t_systemprofile where Fcategory='IC' AND FKEY='UnderStock'") == "1";
  switch (CheckNegativeStock(self_, *batch_->cn, bill_, batch_->sDsn, allow_negative,
                             batch_->calculate_type, batch_->result.negative_items())) {
    case StockAnswer::kShort:
      return Refuse("审核出现负库存商品！");
    case StockAnswer::kShortOfBatch:
      return Refuse("分批认定法计价的商品,不允许负库存出库！");
    case StockAnswer::kEnough:
      break;
  }
  return Pass();
}

Verdict BillAudit::Rejected() {
  const auto judge = [&](const std::string& sql) {
    const RecordsetPtr rows = ExecuteSQL(host_, batch_->sDsn, sql);
    const bool rejected = !rows->AtEnd() && NumberOrZero(rows->Field("FRejected")) != 0;
    return rejected ? Refuse("该单据为驳回状态!") : Pass();
  };
  switch (bill_.class_type) {
    case class_type::kSalesOrder:
      return judge(Cat("Select FRejected From t_XS_Order Where FClassTypeID=1030001 And FID='",
                       bill_.bill_id, "'"));
    case class_type::kSalesBill:
      return judge(Cat("Select FRejected From t_CC_StockBill Where FClassTypeID=1030002 And FID='",
                       bill_.bill_id, "'"));
    default:
      return NotAsked();
  }
}

Verdict BillAudit::SerialNumbers() {
  const RecordsetPtr lacking =
      ExecuteSQL(host_, batch_->sDsn,
                 Cat("select top 1 ti.FName,tcsben.FIndex,tcsb.FBillNo from "
                     "t_cc_stockbillentry tcsben "
                     "left join t_SerialNumList tsn on tsn.FBillID=tcsben.FID and "
                     "tsn.FBillIndexID=tcsben.FIndex and tsn.FItemID=tcsben.FItemID and "
                     "tsn.FStockID=tcsben.FSCStockID "
                     "left join t_icitem ti on ti.FItemID=tcsben.FItemID "
                     "left join t_cc_stockbill tcsb on tcsb.FID=tcsben.FID "
                     "where tcsben.FID='",
                     bill_.bill_id,
                     "' "
                     "and ti.FIsSerialNumMgr=1 and isnull(tsn.FID,0)=0"));
  return lacking->AtEnd() ? Pass() : Refuse("该单据存在未设置SN号的商品!");
}

Outcome BillAudit::Run() {
  const Verdict verdict = FirstRefusal(*this, kGates);
  if (!verdict.passed) return RefusedBecause(verdict.message);

  KeepBooks();
  std::string message;
  if (MovesStock(bill_.class_type, bill_.bill_type) && !PostStock(message)) {
    return {OutcomeKind::kEndsRun, std::move(message)};
  }
  const std::string reason = PostValue(host_, *batch_->cn, bill_);
  if (!reason.empty()) return RefusedBecause(reason);
  return {OutcomeKind::kPassed, "审核成功！"};
}

void BillAudit::KeepBooks() {
  Connection& cn = *batch_->cn;
  UpdatePartnerBalance(cn, bill_);
  UpdatePriceHistory(cn, bill_);
  WriteBackOrderQuantities(host_, cn, bill_);
  SetCheckStatus(cn, bill_, self_.user_id());
  SetInvoiceAmount(cn, bill_);
  if (bill_.IsUnAudit()) ResetInvoiceStatus(cn, bill_);
  // Sent for every bill, whether it posts or not: what the stock check loaded must be gone.
  EmptyTempBillTable(cn);
  if (!bill_.IsUnAudit()) return;
  cn.Execute(Cat("delete from t_cc_bal where FClassTypeID=", bill_.class_type,
                 " and FID=", bill_.bill_id));
  cn.Execute(Cat("delete from ICSpeedBal where FClassTypeID=", bill_.class_type,
                 " and FID=", bill_.bill_id));
}

bool BillAudit::PostStock(std::string& message) {
  if (bill_.class_type == class_type::kPriceAdjustment || bill_.bill_type == kStocklessType) {
    return true;
  }
  if (!FillTempBill(host_, *batch_->cn, bill_.class_type, bill_.bill_id, bill_.bill_type,
                    batch_->check_type, message)) {
    return false;
  }
  ApplyTempBillToInventory(*batch_->cn);
  if (bill_.IsUnAudit() && NeedsCleanInventory(bill_.class_type, bill_.bill_type)) {
    CleanInventory(*batch_->cn);
  }
  return true;
}

// Runs the whole batch. Errors: those of the ports; the result then holds what came before.
int16_t RunBatch(const std::shared_ptr<Batch>& batch, const Vector& bills, Dictionary& dct) {
  Connect(*batch);
  BatchResult& result = batch->result;
  result.Start(dct);
  Prepare(*batch);
  const int count = bills.Size();
  for (int i = 1; i <= count; ++i) {
    const auto dictionary = ToObject<Dictionary>(bills.Item(i));
    BillAudit audit(batch, *dictionary);
    Outcome outcome = audit.Run();
    switch (outcome.kind) {
      case OutcomeKind::kPassed:
        result.AddPassed(audit.bill(), outcome.text);
        break;
      case OutcomeKind::kRefused:
        result.AddRefused(audit.bill(), outcome.text);
        break;
      case OutcomeKind::kEndsRun:
        result.SetError(std::move(outcome.text));
        return kRunEnded;
    }
  }
  return result.HasRefusals() ? kSomeRefused : kAllPassed;
}

}  // namespace

int16_t AuditBill(PlugIn& self, Vector& billVect, int16_t CheckType, std::string_view sDsn,
                  bool BatchCheck, DictionaryPtr& dct, bool NeedCheckDaily, bool NeedCheckCrdPrc) {
  Dictionary& results = dct == nullptr ? NoDictionary() : *dct;
  const auto batch = std::make_shared<Batch>(Batch{.self = self,
                                                   .sDsn = std::string(sDsn),
                                                   .check_type = CheckType,
                                                   .batch_check = BatchCheck,
                                                   .need_check_daily = NeedCheckDaily,
                                                   .need_check_crd_prc = NeedCheckCrdPrc});
  const int16_t answer = Trap([&] { return RunBatch(batch, billVect, results); },
                              [&](const AutomationError& error) {
                                batch->result.SetError(error.description());
                                return kRunEnded;
                              });
  // A dictionary that takes no results leaves nobody to be told.
  return Trap([&] { return batch->result.WriteTo(results), answer; },
              [](const AutomationError&) { return kRunEnded; });
}

Ladder BatchAuditGates(PlugIn& self, Dictionary& bill, int16_t CheckType, std::string_view sDsn) {
  const auto make_run = [&self, &bill, CheckType, dsn = std::string(sDsn)] {
    return BillAudit(std::make_shared<Batch>(Batch{.self = self,
                                                   .sDsn = dsn,
                                                   .check_type = CheckType,
                                                   .batch_check = true,
                                                   .need_check_daily = true,
                                                   .need_check_crd_prc = true}),
                     bill);
  };
  return LoneGates(kGates, "PublicSysInfo.AuditBill", make_run, [](BillAudit& audit) {
    Connect(audit.batch());
    Prepare(audit.batch());
  });
}

}  // namespace tavcc
