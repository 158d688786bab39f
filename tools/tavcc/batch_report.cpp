#include "tavcc/batch_report.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

#include "foundation/conversions.h"
#include "language/language.h"
#include "tavcc/answer_text.h"
#include "tavcc/explain.h"

namespace tavcc {
namespace {

void AddReasons(Erp& erp, ReportedBill& bill) {
  for (Rung& rung : bill.gates) {
    const bool refused = rung.answer == Rung::Answer::kRefused;
    if (refused && rung.refusal != nullptr) rung.reasons = ReasonsOf(erp, bill.bill, rung);
  }
}

}  // namespace

std::vector<BillOutcome> OutcomesOf(std::span<const Bill> bills, const Answer& answer) {
  const auto dct = std::dynamic_pointer_cast<Dictionary>(answer.arguments[kBatchResults].object());
  const std::vector<std::string> lines = BillLines(ToText(dct->ItemOr("BillInfo", "")));
  const std::string error = ToText(dct->ItemOr("ErrorMsg", ""));
  std::vector<BillOutcome> outcomes(bills.size());
  for (size_t i = 0; i < bills.size(); ++i) {
    BillOutcome& outcome = outcomes[i];
    if (i < lines.size()) {
      const bool passed = lines[i].ends_with("审核成功！");
      outcome = {passed ? Exit::kPassed : Exit::kRefused, lines[i]};
    } else if (i == lines.size()) {
      outcome.text = fmt::format("{}: {}", Described(bills[i]),
                                 error.empty() ? Translated("the run ended before it") : error);
    } else {
      outcome.text = Say("{}: not reached", Described(bills[i]));
    }
    if (answer.verdict == Exit::kFailed && outcome.verdict == Exit::kPassed) {
      outcome.verdict = Exit::kFailed;
      outcome.text = Say("{} (undone)", outcome.text);
    }
  }
  return outcomes;
}

size_t BatchReport::Count(Exit verdict) const {
  return static_cast<size_t>(std::ranges::count_if(
      bills, [&](const ReportedBill& bill) { return bill.outcome.verdict == verdict; }));
}

BatchWatch::BatchWatch(Erp& erp, StatementObserver other, std::string title,
                       const std::vector<Bill>& bills)
    : erp_(erp),
      watch_(std::move(other), CallWatch::kMostRows),
      stock_(*Unlogged(), StockRows(ItemsOf(bills))) {
  report_.title = std::move(title);
}

void BatchWatch::EndCall(std::span<const Bill> bills, std::span<const BillOutcome> outcomes) {
  std::vector<Stretch> stretches = watch_.End();
  const bool failed = std::ranges::any_of(
      outcomes, [](const BillOutcome& outcome) { return outcome.verdict == Exit::kFailed; });
  if (!stretches.front().ladder.statements.empty()) {
    report_.sent.push_back({Translated("before the bills"), "", std::move(stretches.front())});
  }
  // The call walks over the gates of one bill after the other.
  for (size_t i = 0; i < bills.size(); ++i) {
    ReportedBill& bill = report_.bills.emplace_back(ReportedBill{bills[i], outcomes[i], {}});
    if (i + 1 >= stretches.size()) continue;
    Stretch& stretch = stretches[i + 1];
    bill.gates = RungsOf(stretch.ladder, kBatchAudit);
    // Behind a failure nothing more is asked of the session.
    if (!failed) AddReasons(erp_, bill);
    report_.sent.push_back({bills[i].number, VerdictText(outcomes[i].verdict), std::move(stretch)});
  }
}

BatchReport& BatchWatch::Report() {
  report_.stock = stock_.Changes(*Unlogged());
  return report_;
}

}  // namespace tavcc
