#include "tavcc/html/explanation_page.h"

#include <fmt/core.h>

#include <algorithm>

#include "language/language.h"
#include "tavcc/answer.h"
#include "tavcc/html/bars.h"
#include "tavcc/html/ladder.h"
#include "tavcc/html/page.h"
#include "tavcc/html/timeline.h"

namespace tavcc {
namespace {

std::string AnchorOf(const Explanation& explanation) {
  return fmt::format("b{}-{}", explanation.bill.class_type, explanation.bill.id);
}

// A part of the ladder has a title where it has gates to show.
void WriteLadderPart(HtmlWriter& html, const char* title, const std::vector<Rung>& ladder) {
  if (std::ranges::none_of(ladder, [](const Rung& rung) { return IsShown(rung, false); })) return;
  html.Leaf("h3", Translated(title));
  WriteLadder(html, ladder);
}

// What stops the bill, before all else.
void WriteFirstStop(HtmlWriter& html, const Explanation& explanation) {
  for (const auto* ladder : {&explanation.batch, &explanation.host, &explanation.own}) {
    const Rung* const rung = FirstStop(*ladder);
    if (rung != nullptr) return WriteWhy(html, {rung->message, rung->reasons, rung->refusal});
  }
}

void WriteTrial(HtmlWriter& html, const Explanation& explanation) {
  const std::string doing = Translated(DirectionText(explanation));
  if (!explanation.trial.changes.empty()) {
    html.Leaf("h3", Say("What the {} would change", doing));
    for (const ChangeTable& table : explanation.trial.changes) WriteChanges(html, table);
  }
  if (TotalOf(explanation.trial.sent).count == 0) return;
  html.Leaf("h3", Say("Statements of the {} that was tried", doing));
  WriteStatements(html, explanation.trial.sent);
}

void WriteBill(HtmlWriter& html, const Explanation& explanation) {
  const auto article = html.Open("article", {{"id", AnchorOf(explanation)}});
  html.Leaf("h2", Described(explanation.bill));
  html.Leaf("p", VerdictLine(explanation),
            {{"class", std::string("verdict ") + VerdictText(explanation.trial.verdict)}});
  if (!explanation.trial.line.empty()) {
    html.Leaf("p", explanation.trial.line, {{"class", "faint"}});
  }
  WriteFirstStop(html, explanation);
  WriteLadderPart(html, Translatable("Gates of the batch audit"), explanation.batch);
  WriteLadderPart(html, Translatable("What a host asks beside it"), explanation.host);
  WriteLadderPart(html, Translatable("The bill's own class, where it is audited alone"),
                  explanation.own);
  WriteTrial(html, explanation);
}

void WriteContents(HtmlWriter& html, const std::vector<Explanation>& explanations) {
  const auto nav = html.Open("nav", {{"aria-label", Translated("Bills")}});
  const auto list = html.Open("ul");
  for (const Explanation& each : explanations) {
    const auto item = html.Open("li");
    WriteMark(html, VerdictText(each.Verdict()));
    html.Text(" ");
    html.Leaf("a", each.bill.number, {{"href", "#" + AnchorOf(each)}});
  }
}

std::string TitleOf(const std::vector<Explanation>& explanations) {
  std::string numbers;
  for (const Explanation& each : explanations) {
    numbers += (numbers.empty() ? "" : ", ") + each.bill.number;
  }
  return explanations.front().direction < 0 ? Say("May it be un-audited? {}", numbers)
                                            : Say("May it be audited? {}", numbers);
}

}  // namespace

std::string ExplanationPage(const std::vector<Explanation>& explanations) {
  return HtmlPage(TitleOf(explanations), [&](HtmlWriter& html) {
    if (explanations.size() > 1) WriteContents(html, explanations);
    for (const Explanation& each : explanations) WriteBill(html, each);
  });
}

}  // namespace tavcc
