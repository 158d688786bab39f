#include "tavcc/html/trace_page.h"

#include <fmt/core.h>

#include "language/language.h"
#include "registry/refusals.h"
#include "tavcc/answer.h"
#include "tavcc/answer_text.h"
#include "tavcc/html/ladder.h"
#include "tavcc/html/page.h"
#include "tavcc/html/table.h"

namespace tavcc {
namespace {

// ---- The call ----------------------------------------------------------------------------------

void WriteArguments(HtmlWriter& html, const TraceReport& report) {
  if (report.arguments.empty()) return;
  const auto list = html.Open("dl", {{"class", "arguments"}});
  for (const auto& [name, value] : report.arguments) {
    WriteTerm(html, name, [&html, &value = value] { WriteCode(html, value); });
    html.EndLine();
  }
}

std::string BeginText(const TracedCall& trace) {
  if (!trace.end) return trace.started;
  return fmt::format("{}, {}", trace.started, DurationText(trace.end->milliseconds));
}

bool StopsAtAGate(const TraceReport& report) {
  for (const TraceReport::Walk& walk : report.walks) {
    if (FirstStop(walk.gates) != nullptr) return true;
  }
  return false;
}

// What the call said; where no gate tells it below, with cause and remedy.
void WriteMessage(HtmlWriter& html, const TraceReport& report) {
  if (report.message.empty()) return;
  if (report.verdict != Exit::kPassed && !StopsAtAGate(report)) {
    return WriteWhy(html, {report.message, {}, FindRefusal(report.message)});
  }
  for (const std::string& line : BillLines(report.message)) {
    html.Leaf("p", line, {{"class", "faint"}});
  }
}

void WriteCall(HtmlWriter& html, const TraceReport& report) {
  const char* const verdict = VerdictText(report.verdict);
  {
    const auto line = html.Open("p");
    html.Leaf("span", Translated(verdict), {{"class", std::string("verdict ") + verdict}});
    html.Text(", " + BeginText(report.trace));
  }
  WriteMessage(html, report);
  WriteArguments(html, report);
  if (report.trace.left_out > 0) {
    html.Leaf("p", Say("{} lines were left out: the file was full", report.trace.left_out));
  }
}

// ---- Gates and statements ----------------------------------------------------------------------

std::string AnchorOfWalk(const TraceReport& report, const TraceReport::Walk& walk) {
  return fmt::format("w{}", &walk - report.walks.data());
}

void WriteBesideGates(HtmlWriter& html, const TraceReport& report, const TraceReport::Walk& walk,
                      std::string_view heading) {
  if (walk.beside.empty()) return;
  html.Leaf(heading, StatementsTitle(report, walk));
  WriteSentStatements(html, walk.beside);
}

void WriteWalk(HtmlWriter& html, const TraceReport& report, const TraceReport::Walk& walk) {
  if (walk.gates.empty()) return WriteBesideGates(html, report, walk, "h2");
  const auto article = html.Open("article", {{"id", AnchorOfWalk(report, walk)}});
  html.Leaf("h2", GatesTitle(walk));
  if (const Rung* const stop = FirstStop(walk.gates)) {
    WriteWhy(html, {stop->message, stop->reasons, stop->refusal});
  }
  WriteLadder(html, walk.gates);
  WriteBesideGates(html, report, walk, "h3");
}

void WriteBillsOfTrace(HtmlWriter& html, const TraceReport& report) {
  if (report.walks.size() < 3) return;  // the first has no bill
  const auto nav = html.Open("nav", {{"aria-label", Translated("Bills")}});
  const auto list = html.Open("ul");
  for (const TraceReport::Walk& walk : report.walks) {
    if (walk.gates.empty()) continue;
    const Rung* const stop = FirstStop(walk.gates);
    const auto item = html.Open("li");
    WriteMark(html, AnswerText(stop == nullptr ? Rung::Answer::kPassed : stop->answer));
    html.Text(" ");
    html.Leaf("a", GatesTitle(walk), {{"href", "#" + AnchorOfWalk(report, walk)}});
  }
}

}  // namespace

std::string TracePage(const TraceReport& report) {
  return HtmlPage(report.trace.call, [&](HtmlWriter& html) {
    WriteCall(html, report);
    WriteBillsOfTrace(html, report);
    for (const TraceReport::Walk& walk : report.walks) {
      WriteWalk(html, report, walk);
      html.EndLine();
    }
  });
}

}  // namespace tavcc
