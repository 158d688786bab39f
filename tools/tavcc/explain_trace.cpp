#include "tavcc/explain_trace.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "language/language.h"
#include "tavcc/answer.h"
#include "tavcc/answer_text.h"
#include "tavcc/file.h"
#include "tavcc/html/trace_page.h"
#include "tavcc/ladder_report.h"
#include "tavcc/output.h"
#include "tavcc/trace.h"
#include "tavcc/trace_file.h"
#include "tavcc/trace_report.h"

namespace tavcc {
namespace {

// ---- As text -----------------------------------------------------------------------------------

std::string HeadText(const TraceReport& report) {
  const TracedCall& trace = report.trace;
  std::string text =
      fmt::format("{} {}, {}", trace.call, Translated(VerdictText(report.verdict)), trace.started);
  if (trace.end) text += fmt::format(", {:.1f} ms", trace.end->milliseconds);
  text += "\n";
  for (const auto& [name, value] : report.arguments) {
    text += fmt::format("  {} ={}{}\n", name, value.empty() ? "" : " ", value);
  }
  return text;
}

std::string StatementsText(const std::vector<LoggedStatement>& sent) {
  std::string text;
  for (const LoggedStatement& statement : sent)
    text += SentText(statement) + SentRowsText(statement);
  return text;
}

std::string WalkText(const TraceReport& report, const TraceReport::Walk& walk, bool everything) {
  std::string text;
  if (!walk.gates.empty()) {
    text =
        fmt::format("\n{}\n\n{}", Say("{}:", GatesTitle(walk)), LadderText(walk.gates, everything));
  }
  if (walk.beside.empty()) return text;
  const bool shown =
      everything || report.walks.size() == 1 ||
      std::ranges::any_of(walk.beside, [](const auto& sent) { return !!sent.error; });
  if (!shown) {
    const std::string where = WhereBeside(report, walk);
    return text + (walk.beside.size() == 1 ? Say("\n1 statement {} (--full shows them)\n", where)
                                           : Say("\n{} statements {} (--full shows them)\n",
                                                 walk.beside.size(), where));
  }
  return text + fmt::format("\n{}\n\n{}", Say("{}:", StatementsTitle(report, walk)),
                            StatementsText(walk.beside));
}

std::string EndText(const std::string& message) {
  if (message.empty()) return "";
  std::string text = "\n" + LinePerBill(message, "");
  const Refusal* const refusal = FindRefusal(message);
  if (refusal == nullptr) return text;
  return text + Say("  [{}]\n  cause   {}\n  remedy  {}\n", refusal->name,
                    InLanguage(refusal->cause), InLanguage(refusal->remedy));
}

std::string TraceText(const TraceReport& report, bool everything) {
  std::string text = HeadText(report);
  for (const TraceReport::Walk& walk : report.walks) text += WalkText(report, walk, everything);
  if (report.trace.left_out > 0) {
    const std::string left_out =
        Say("{} lines were left out: the file was full", report.trace.left_out);
    text += fmt::format("\n{}\n", left_out);
  }
  return text + EndText(report.message);
}

// ---- As JSON -----------------------------------------------------------------------------------

Json TraceJson(const TraceReport& report) {
  const TracedCall& trace = report.trace;
  Json ladders = Json::array();
  Json statements = Json::array();
  for (const TracedLadder& ladder : trace.ladders) {
    for (const LoggedStatement& sent : ladder.statements) statements.push_back(StatementJson(sent));
  }
  for (const TraceReport::Walk& walk : report.walks) {
    if (walk.gates.empty()) continue;
    ladders.push_back({{"bill", walk.bill}, {"gates", LadderJson(walk.gates)}});
  }
  Json json = {{"call", trace.call},
               {"started", trace.started},
               {"verdict", VerdictText(report.verdict)},
               {"message", report.message},
               {"arguments", ValueJson(trace.arguments)}};
  if (trace.end) {
    json["milliseconds"] = trace.end->milliseconds;
    json["result"] = ValueJson(trace.end->result);
    json["arguments_after"] = ValueJson(trace.end->arguments);
  }
  if (const std::string name = RefusalName(report.message); !name.empty()) json["refusal"] = name;
  json["ladders"] = std::move(ladders);
  json["statements"] = std::move(statements);
  json["left_out"] = trace.left_out;
  return json;
}

}  // namespace

Exit ExplainTrace(const CommonOptions& common, const ExplainOptions& options) {
  RequireOwnFile(options.html_file, {options.trace_file});
  const TraceReport report = ReportOf(ReadTrace(options.trace_file), options.trace_file);
  if (!options.html_file.empty()) ReplaceFile(options.html_file, TracePage(report));
  Print(common.json ? Show(TraceJson(report), 2) + "\n" : TraceText(report, options.full));
  return report.verdict;
}

}  // namespace tavcc
