#include "tavcc/demo_batch.h"

#include <fmt/core.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "foundation/conversions.h"
#include "host/ledger_check.h"
#include "language/language.h"
#include "scenario/runner.h"
#include "scenario/values.h"
#include "tavcc/answer.h"
#include "tavcc/batch_report.h"
#include "tavcc/bills.h"
#include "tavcc/changes.h"
#include "tavcc/output.h"
#include "tavcc/table.h"
#include "tavcc/trace.h"

namespace tavcc {
namespace {

constexpr std::string_view kAuditedBills =
    "SELECT FID FROM T_CC_StockBill WHERE FStatus = 1 AND FCheckerID = 16394"
    " UNION ALL SELECT FID FROM T_CC_ZZCX WHERE FStatus = 1"
    " UNION ALL SELECT FID FROM t_CG_Order WHERE FStatus = 1"
    " UNION ALL SELECT FID FROM t_XS_Order WHERE FStatus = 1";

constexpr std::string_view kStock =
    "SELECT i.FName AS FItem, s.FName AS FStock, v.FBatchNo, ISNULL(a.FName, '') AS FAux,"
    " SUM(v.FQty) AS FQty, SUM(v.FBal) AS FBal"
    " FROM T_CC_Inventory v INNER JOIN t_ICItem i ON v.FItemID = i.FItemID"
    " INNER JOIN t_Stock s ON v.FStockID = s.FItemID"
    " LEFT JOIN t_AuxItem a ON v.FAuxPropID = a.FItemID"
    " GROUP BY v.FItemID, i.FName, v.FStockID, s.FName, v.FBatchNo, a.FName"
    " ORDER BY v.FItemID, v.FStockID, v.FBatchNo, a.FName";

constexpr std::string_view kBalances =
    "SELECT FName, FCurReceAmount, FCurPrepAmount, FPrepCheckAmount, FUnPrepCheckAmount"
    " FROM t_Organization"
    " UNION ALL "
    "SELECT FName, FCurReceAmount, FCurPrepAmount, FPrepCheckAmount, FUnPrepCheckAmount"
    " FROM t_Supplier"
    " ORDER BY FName, FCurReceAmount, FCurPrepAmount";

// With the two above, all that an audit changes and an un-audit brings back. Without an order of
// all of it, a server may give the same rows in another one.
constexpr std::string_view kStates =
    "SELECT FID, FStatus, FCheckerID FROM T_CC_StockBill"
    " UNION ALL SELECT FID, FStatus, FCheckerID FROM T_CC_ZZCX"
    " UNION ALL SELECT FID, FStatus, FCheckerID FROM t_CG_Order"
    " UNION ALL SELECT FID, FStatus, FCheckerID FROM t_XS_Order"
    " ORDER BY FID, FStatus, FCheckerID";
constexpr std::string_view kOrderQuantities =
    "SELECT FID, FEntryID, FCgOrderQty, FBaseCgOrderQty, FInTotalQty FROM t_CG_OrderEntry"
    " UNION ALL "
    "SELECT FID, FEntryID, FXSOrderQty, FBaseXSOrderQty, FInTotalQty FROM t_XS_OrderEntry"
    " ORDER BY FID, FEntryID, FCgOrderQty, FInTotalQty";

class BatchStory {
 public:
  BatchStory(Erp& erp, const CommonOptions& options, DemoReport* page)
      : erp_(erp), options_(options), page_(page) {}

  Json Tell();

 private:
  RecordsetPtr Query(std::string_view sql) { return erp_.connection()->Execute(sql); }
  Json Rows(std::string_view sql) { return RowsJson(*Query(sql), RowForm::kArrays); }
  Json State() { return {Rows(kStock), Rows(kBalances), Rows(kStates), Rows(kOrderQuantities)}; }
  std::vector<Bill> OpenBills();
  std::vector<Bill> AuditedBills(const std::vector<Bill>& bills);
  // The answer; what is seen of the batch goes to `report`, where there is one.
  Json Audit(const std::vector<Bill>& bills, int check_type, BatchReport* report);
  Answer Send(const std::vector<Bill>& bills, int check_type, BatchReport* report);
  void PrintAnswer(const Json& answer);
  void PrintStock(const ChangeTable& stock);
  void CheckLedgerHolds();

  Erp& erp_;
  const CommonOptions& options_;
  DemoReport* const page_;
};

std::vector<Bill> BatchStory::OpenBills() {
  return FindBills(erp_, {.status = 0, .made_by_system = false});
}

// Those of the bills that are audited now, the last first: what one bill brought in may have been
// issued by a later one.
std::vector<Bill> BatchStory::AuditedBills(const std::vector<Bill>& bills) {
  std::vector<int32_t> audited;
  const RecordsetPtr rows = Query(kAuditedBills);
  for (; !rows->AtEnd(); rows->MoveNext()) audited.push_back(ToLong(rows->Field(0)));
  std::vector<Bill> reversed(bills.rbegin(), bills.rend());
  std::erase_if(reversed, [&](const Bill& bill) {
    return std::find(audited.begin(), audited.end(), bill.id) == audited.end();
  });
  return reversed;
}

Answer BatchStory::Send(const std::vector<Bill>& bills, int check_type, BatchReport* report) {
  const MethodName name = FindMethodByName(kBatchAudit);
  std::vector<Value> arguments =
      MakeArguments({erp_.host(), erp_.dsn(), erp_.connection()}, *name.method,
                    Json{{"CheckType", check_type}, {"BatchCheck", true}});
  const auto vector = ToObject<Vector>(arguments.front());
  for (const Bill& bill : bills) vector->Add(BillDictionary(erp_.host(), bill));
  const StatementObserver trace = TraceOf(options_);
  if (report == nullptr) {
    return CallInTransaction(erp_, *name.cls, *name.method, std::move(arguments), trace);
  }
  BatchWatch watch(erp_, trace, report->title, bills);
  watch.BeginCall();
  Answer answer =
      CallInTransaction(erp_, *name.cls, *name.method, std::move(arguments), watch.observer());
  watch.EndCall(bills, OutcomesOf(bills, answer));
  *report = std::move(watch.Report());
  return answer;
}

Json BatchStory::Audit(const std::vector<Bill>& bills, int check_type, BatchReport* report) {
  const Answer answer = Send(bills, check_type, report);
  if (answer.verdict == Exit::kFailed) {
    throw CommandError(Say("the batch failed and was undone: {}",
                           answer.failure ? answer.failure->error.description()
                                          : Translated(VerdictText(answer.verdict))));
  }
  Json results = ValueJson(answer.arguments[kBatchResults]);
  results["result"] = ValueJson(answer.result);
  return results;
}

void BatchStory::PrintAnswer(const Json& answer) {
  std::string line;
  for (const char c : answer["BillInfo"].get<std::string>()) {
    if (c != '|') {
      line += c;
      continue;
    }
    Print(fmt::format("    {}\n", line));
    line.clear();
  }
  Print(fmt::format("\n  {}\n\n", Say("passed: {}, refused: {}", answer["SuccessCount"].get<int>(),
                                      answer["FailCount"].get<int>())));
}

void BatchStory::PrintStock(const ChangeTable& stock) {
  Table table({Translated("item"), Translated("stock"), Translated("batch"), Translated("aux"),
               Translated("before"), Translated("after"), Translated("value before"),
               Translated("value after")});
  for (const ChangeTable::Row& row : stock.rows) {
    // Auditing may add stock rows, but takes none away.
    const auto before =
        row.before.empty() ? std::vector<std::string>{"0", "0"} : CellTexts(row.before);
    const std::vector<std::string> key = CellTexts(row.key), after = CellTexts(row.after);
    table.Add({key[1], key[2], key[3], key[4], before[0], after[0], before[1], after[1]});
  }
  Print(fmt::format("{}\n", table.ToText("    ")));
}

void BatchStory::CheckLedgerHolds() {
  if (!CheckLedger(*erp_.connection()).empty()) {
    throw CommandError(Say("the stock on hand is not that of the audited bills (see tavcc check)"));
  }
}

Json BatchStory::Tell() {
  const bool print = !options_.json;
  const Json before = State();
  const RowComparison stock(*erp_.connection(), StockRows(""));
  const std::vector<Bill> bills = OpenBills();
  if (page_ != nullptr) {
    page_->audit.title = Say("{} open bills are audited in one call", bills.size());
    page_->un_audit.title = Translated("The bills that passed are un-audited, the last first");
  }
  if (print) {
    Print(Say("The sample company's {} open bills, of every kind, are audited in one call.\n\n",
              bills.size()));
  }
  const Json audited = Audit(bills, 1, page_ == nullptr ? nullptr : &page_->audit);
  const Json stock_after = Rows(kStock);
  CheckLedgerHolds();
  if (print) {
    PrintAnswer(audited);
    Print(Say("  What moved in stock:\n\n"));
    PrintStock(stock.Changes(*erp_.connection()));
  }

  const std::vector<Bill> to_undo = AuditedBills(bills);
  if (print) Print(Say("The bills that passed are un-audited, the last first.\n\n"));
  const Json undone = Audit(to_undo, -1, page_ == nullptr ? nullptr : &page_->un_audit);
  CheckLedgerHolds();
  if (print) PrintAnswer(undone);
  if (State() != before) {
    throw CommandError(Say("un-auditing did not bring everything back"));
  }
  if (print) {
    Print(Say("  Stock, balances, order quantities and states are what they were.\n\n\n"));
  }
  return {{"title", "The sample company's open bills are audited and un-audited again."},
          {"method", kBatchAudit},
          {"audit", audited},
          {"stock_before", before[0]},
          {"stock_after", stock_after},
          {"un_audit", undone},
          {"brought_back", true}};
}

}  // namespace

void TellBatchAudit(Erp& erp, const CommonOptions& options, Json& record, DemoReport* page) {
  record.push_back(BatchStory(erp, options, page).Tell());
}

}  // namespace tavcc
