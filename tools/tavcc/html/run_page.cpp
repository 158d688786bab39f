#include "tavcc/html/run_page.h"

#include <fmt/core.h>

#include <algorithm>

#include "foundation/file_path.h"
#include "language/language.h"
#include "registry/refusals.h"
#include "tavcc/answer.h"
#include "tavcc/html/bars.h"
#include "tavcc/html/ladder.h"
#include "tavcc/html/page.h"
#include "tavcc/html/table.h"
#include "tavcc/html/timeline.h"

namespace tavcc {
namespace {

constexpr double kMillisecondsOfSecond = 1000;

double EndOf(const ScenarioOutcome& outcome) {
  return outcome.begun + outcome.seconds * kMillisecondsOfSecond;
}

class RunWriter {
 public:
  RunWriter(HtmlWriter& html, const std::vector<ScenarioOutcome>& outcomes)
      : html_(html), outcomes_(outcomes) {
    for (const ScenarioOutcome& outcome : outcomes) length_ = std::max(length_, EndOf(outcome));
  }

  void Write() const {
    WriteFigures(html_, FiguresOf());
    WriteFailed();
    for (size_t first = 0; first < outcomes_.size();) {
      size_t end = first;
      while (end < outcomes_.size() && FolderOf(end) == FolderOf(first)) ++end;
      WriteFolder(first, end);
      first = end;
    }
  }

 private:
  std::string FolderOf(size_t scenario) const {
    return PathText(PathOf(outcomes_[scenario].file).parent_path());
  }

  static bool Passed(const ScenarioOutcome& outcome) { return outcome.failure.empty(); }

  Figures FiguresOf() const {
    const auto passed = std::ranges::count_if(outcomes_, Passed);
    const auto skipped = std::ranges::count_if(
        outcomes_, [](const ScenarioOutcome& outcome) { return !outcome.skipped.empty(); });
    size_t calls = 0;
    for (const ScenarioOutcome& outcome : outcomes_) calls += outcome.steps.size();
    return {
        {Translated("scenarios"), std::to_string(outcomes_.size())},
        {Translated("passed"), std::to_string(passed)},
        {Translated("failed"), std::to_string(static_cast<ptrdiff_t>(outcomes_.size()) - passed)},
        {Translated("left out in part"), std::to_string(skipped)},
        {Translated("calls"), std::to_string(calls)},
        {Translated("time"), DurationText(length_)}};
  }

  void WriteFailed() const {
    if (std::ranges::all_of(outcomes_, Passed)) return;
    const auto nav = html_.Open("nav", {{"aria-label", Translated("Scenarios that failed")}});
    const auto list = html_.Open("ul");
    for (size_t i = 0; i < outcomes_.size(); ++i) {
      if (Passed(outcomes_[i])) continue;
      const auto item = html_.Open("li");
      WriteMark(html_, "failed");
      html_.Text(" ");
      html_.Leaf("a", outcomes_[i].file, {{"href", fmt::format("#s{}", i + 1)}});
    }
  }

  void WriteFolder(size_t first, size_t end) const {
    const std::string folder = FolderOf(first);
    html_.Leaf("h2", folder.empty() ? Translated("Scenarios") : folder);
    const auto list = html_.Open("ol", {{"class", "outcomes scenarios"}});
    for (size_t i = first; i < end; ++i) {
      WriteScenario(outcomes_[i], i + 1);
      html_.EndLine();
    }
  }

  void WriteScenario(const ScenarioOutcome& outcome, size_t number) const {
    const auto item = html_.Open("li", {{"id", fmt::format("s{}", number)}});
    const auto fold = html_.Open("details", {{"open", Passed(outcome) ? "" : "open"}});
    {
      const auto summary = html_.Open("summary");
      WriteMark(html_, Passed(outcome) ? "passed" : "failed");
      html_.Leaf("h3", outcome.name.empty() ? outcome.file : outcome.name);
      html_.Leaf("span", DurationText(outcome.seconds * kMillisecondsOfSecond),
                 {{"class", "number faint"}});
      WriteTimeBar(html_, outcome.begun, EndOf(outcome), length_,
                   SpanText(outcome.begun, EndOf(outcome)));
    }
    html_.Leaf("p", outcome.file, {{"class", "faint file"}});
    if (!Passed(outcome)) WriteCodeBlock(html_, outcome.failure);
    for (const std::string& line : outcome.skipped) html_.Leaf("p", Say("skipped: {}", line));
    if (!outcome.steps.empty()) {
      const auto steps = html_.Open("ol", {{"class", "ladder steps"}});
      for (const StepOutcome& step : outcome.steps) WriteStep(step);
    }
    if (!outcome.stock.rows.empty()) WriteChanges(html_, outcome.stock);
  }

  void WriteStep(const StepOutcome& step) const {
    const auto item = html_.Open("li");
    const auto fold = html_.Open("details");
    {
      const auto summary = html_.Open("summary");
      WriteMark(html_, VerdictText(step.verdict));
      html_.Leaf("h4", fmt::format("{} {}", step.number, step.call));
      const auto beside = html_.Open("span");
      if (!step.note.empty()) html_.Leaf("span", step.note, {{"class", "note"}});
      if (!step.message.empty()) html_.Leaf("span", step.message, {{"class", "message"}});
    }
    const Refusal* const refusal = FindRefusal(step.message);
    if (step.verdict == Exit::kRefused) WriteWhy(html_, {step.message, {}, refusal});
    WriteStatements(html_, step.sent);
  }

  HtmlWriter& html_;
  const std::vector<ScenarioOutcome>& outcomes_;
  double length_ = 0;
};

std::string TitleOf(const std::vector<ScenarioOutcome>& outcomes) {
  const auto failed = std::ranges::count_if(
      outcomes, [](const ScenarioOutcome& outcome) { return !outcome.failure.empty(); });
  if (failed > 0) return Say("{} of {} scenarios failed", failed, outcomes.size());
  return outcomes.size() == 1 ? Say("1 scenario passed")
                              : Say("{} scenarios passed", outcomes.size());
}

}  // namespace

std::string RunPage(const std::vector<ScenarioOutcome>& outcomes) {
  return HtmlPage(TitleOf(outcomes), [&](HtmlWriter& html) { RunWriter(html, outcomes).Write(); });
}

}  // namespace tavcc
