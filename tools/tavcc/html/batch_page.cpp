#include "tavcc/html/batch_page.h"

#include <fmt/core.h>

#include "audit/class_names.h"
#include "language/language.h"
#include "tavcc/answer.h"
#include "tavcc/html/bars.h"
#include "tavcc/html/ladder.h"
#include "tavcc/html/page.h"
#include "tavcc/html/table.h"
#include "tavcc/html/timeline.h"

namespace tavcc {
namespace {

std::string AnchorOf(std::string_view anchor, const Bill& bill) {
  return fmt::format("{}{}-{}", anchor, bill.class_type, bill.id);
}

Figures FiguresOf(const BatchReport& report) {
  StatementTotal total;
  for (const NamedStretch& sent : report.sent) {
    const StatementTotal part = TotalOf({&sent.stretch, 1});
    total.count += part.count;
    total.milliseconds += part.milliseconds;
  }
  return {{Translated("bills"), std::to_string(report.bills.size())},
          {Translated("passed"), std::to_string(report.Count(Exit::kPassed))},
          {Translated("refused"), std::to_string(report.Count(Exit::kRefused))},
          {Translated("failed"), std::to_string(report.Count(Exit::kFailed))},
          {Translated("statements"), std::to_string(total.count)},
          {Translated("in the database"), DurationText(total.milliseconds)}};
}

// Those that did not pass, to go to.
void WriteStopped(HtmlWriter& html, const BatchReport& report, std::string_view anchor) {
  if (report.Count(Exit::kPassed) == report.bills.size()) return;
  const auto nav = html.Open("nav", {{"aria-label", Translated("Bills that did not pass")}});
  const auto list = html.Open("ul");
  for (const ReportedBill& bill : report.bills) {
    if (bill.outcome.verdict == Exit::kPassed) continue;
    const auto item = html.Open("li");
    WriteMark(html, VerdictText(bill.outcome.verdict));
    html.Text(" ");
    html.Leaf("a", bill.bill.number, {{"href", "#" + AnchorOf(anchor, bill.bill)}});
  }
}

Why WhyOf(const ReportedBill& bill) {
  const Rung* const rung = FirstStop(bill.gates);
  if (rung == nullptr) return {bill.outcome.text, {}, FindRefusal(bill.outcome.text)};
  return {rung->message, rung->reasons, rung->refusal};
}

void WriteOutcome(HtmlWriter& html, const ReportedBill& bill, std::string_view anchor, int level) {
  const bool passed = bill.outcome.verdict == Exit::kPassed;
  const auto item = html.Open("li", {{"id", AnchorOf(anchor, bill.bill)}});
  const auto fold = html.Open("details", {{"open", passed ? "" : "open"}});
  {
    const auto summary = html.Open("summary");
    WriteMark(html, VerdictText(bill.outcome.verdict));
    html.Leaf(HeadingTag(level), bill.bill.number);
    html.Leaf("span", ClassName(bill.bill.class_type));
    html.Leaf("span", bill.outcome.text);
  }
  if (!passed) WriteWhy(html, WhyOf(bill));
  if (bill.gates.empty()) {
    html.Leaf("p", Translated("No gate was asked."), {{"class", "faint"}});
    return;
  }
  const auto gates = html.Open("details");
  html.Leaf("summary", Translated("Gates, in the order in which they were asked"));
  WriteLadder(html, bill.gates);
}

}  // namespace

void WriteBatch(HtmlWriter& html, const BatchReport& report, std::string_view anchor, int level) {
  if (!report.ending.empty()) html.Leaf("p", report.ending, {{"class", "verdict"}});
  WriteFigures(html, FiguresOf(report));
  WriteStopped(html, report, anchor);
  if (!report.failures.empty()) WriteCodeBlock(html, report.failures);
  html.Leaf(HeadingTag(level), Translated("Bills"));
  {
    const auto list = html.Open("ol", {{"class", "outcomes bills"}});
    for (const ReportedBill& bill : report.bills) {
      WriteOutcome(html, bill, anchor, level + 1);
      html.EndLine();
    }
  }
  if (!report.stock.rows.empty()) {
    html.Leaf(HeadingTag(level), Translated("What moved in stock"));
    WriteChanges(html, report.stock);
  }
  if (report.sent.empty()) return;
  html.Leaf(HeadingTag(level), Translated("Statements and times"));
  WriteTimeline(html, report.sent);
}

std::string BatchPage(const BatchReport& report) {
  return HtmlPage(report.title, [&](HtmlWriter& html) { WriteBatch(html, report, "b", 2); });
}

}  // namespace tavcc
