// What became of a batch of bills that was sent, bill by bill.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "host/erp.h"
#include "tavcc/answer.h"
#include "tavcc/bills.h"
#include "tavcc/call_watch.h"
#include "tavcc/changes.h"

namespace tavcc {

// The method that audits and un-audits a batch.
inline constexpr const char* kBatchAudit = "PublicSysInfo.AuditBill";
// The dictionary with the outcomes, among the arguments of the batch audit.
inline constexpr size_t kBatchResults = 4;

// What became of one bill.
struct BillOutcome {
  Exit verdict = Exit::kFailed;
  std::string text;
};

// A line of the batch audit's answer for each bill; none for those behind the one at which the run
// ended.
std::vector<BillOutcome> OutcomesOf(std::span<const Bill> bills, const Answer& answer);

// A bill of a report, with what was seen of it on its way.
struct ReportedBill {
  Bill bill;
  BillOutcome outcome;
  std::vector<Rung> gates;  // that were asked, as far as the run came
};

// A batch, for a page.
struct BatchReport {
  std::string title;
  std::vector<ReportedBill> bills;
  std::vector<NamedStretch> sent;  // by bill, and what was sent before the bills of a call
  std::string failures;            // what the calls that failed failed by
  ChangeTable stock;               // on hand, before and after
  std::string ending;              // what was kept of it, where that is to be said

  size_t Count(Exit verdict) const;
};

// Gathers a report while the calls are made.
class BatchWatch {
 public:
  // `bills` are those that will be sent; `other` watches their calls too. Errors: the database's.
  BatchWatch(Erp& erp, StatementObserver other, std::string title, const std::vector<Bill>& bills);

  // For the calls, each of which stands between the two. The reasons of refusals are asked of the
  // database. Errors: the database's.
  StatementObserver observer() { return watch_.observer(); }
  void BeginCall() { watch_.Begin(); }
  void EndCall(std::span<const Bill> bills, std::span<const BillOutcome> outcomes);

  // Of the calls so far, with the stock as it is now. Errors: the database's.
  BatchReport& Report();

 private:
  ConnectionPtr Unlogged() const { return erp_.host().GetUnloggedConnection(erp_.dsn()); }

  Erp& erp_;
  CallWatch watch_;
  const RowComparison stock_;
  BatchReport report_;
};

}  // namespace tavcc
