#include "tavcc/explain_trace.h"

#include <fmt/core.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "audit/class_names.h"
#include "language/language.h"
#include "scenario/scenario.h"
#include "scenario/values.h"
#include "tavcc/answer.h"
#include "tavcc/answer_text.h"
#include "tavcc/ladder_report.h"
#include "tavcc/output.h"
#include "tavcc/trace.h"
#include "tavcc/trace_file.h"

namespace tavcc {
namespace {

// ---- What the call answered --------------------------------------------------------------------

Exit VerdictOf(const TracedCall& trace, const Method& method) {
  if (!trace.end || trace.end->failure) return Exit::kFailed;
  if (trace.end->error) return tavcc::VerdictOf(method, *trace.end->error);
  // The texts among the arguments: a verdict stands in no other one.
  const Json told = ValueJson(trace.end->arguments);
  std::vector<Value> arguments;
  for (const Parameter& parameter : method.parameters) {
    const Json* const after = told.find(parameter.name);
    const bool text = after != nullptr && after->is_string();
    arguments.push_back(text ? Value(after->get<std::string>()) : Value());
  }
  return tavcc::VerdictOf(method, trace.end->result, arguments);
}

// The outcomes of a batch, or why it ended.
std::string BatchMessage(const Json& results) {
  for (const char* const key : {"ErrorMsg", "BillInfo"}) {
    const Json* const text = results.find(key);
    if (text != nullptr && text->is_string() && !text->get<std::string>().empty()) {
      return text->get<std::string>();
    }
  }
  return "";
}

// What the call said: the error that it raised or kept to itself, or the first text that it gave
// back.
std::string MessageOf(const TracedCall& trace) {
  if (!trace.end) return Translated("the trace ends before the call did");
  for (const auto* const error : {&trace.end->error, &trace.end->failure}) {
    if (*error) return ErrorText(**error);
  }
  const Json told = ValueJson(trace.end->arguments);
  for (const Json::Member& argument : told.items()) {
    if (argument.value.is_string()) return argument.value.get<std::string>();
    if (const std::string text = BatchMessage(argument.value); !text.empty()) return text;
  }
  return "";
}

// ---- The ladder --------------------------------------------------------------------------------

// The bill that the n-th list of gates is about, where the call was given a list of bills.
std::string BillOf(const TracedCall& trace, size_t ladder) {
  const Json told = ValueJson(trace.arguments);
  for (const Json::Member& argument : told.items()) {
    if (!argument.value.is_array() || ladder > argument.value.size()) continue;
    const Json& bill = argument.value[ladder - 1];
    if (!bill.is_object()) continue;
    const Json* const cls = bill.find("ClassTypeID");
    const std::string name(cls != nullptr && cls->is_number() ? ClassName(cls->get<int32_t>())
                                                              : "");
    const Json* const number = bill.find("BillNo");
    const bool named = number != nullptr && number->is_string();
    return name + (named ? " " + number->get<std::string>() : "");
  }
  return "";
}

std::string TitleOf(const TracedCall& trace, size_t ladder) {
  const std::string bill = BillOf(trace, ladder);
  return bill.empty() ? Translated("Gates:") : Say("Gates of {}:", bill);
}

// Statements that no gate sent.
std::vector<LoggedStatement> Beside(const TracedLadder& ladder) {
  std::vector<LoggedStatement> beside;
  for (const LoggedStatement& sent : ladder.statements) {
    const bool of_gate =
        std::ranges::any_of(ladder.gates, [&](const auto& gate) { return gate.name == sent.gate; });
    if (!of_gate) beside.push_back(sent);
  }
  return beside;
}

// ---- As text -----------------------------------------------------------------------------------

std::string HeadText(const TracedCall& trace, const Method& method, Exit verdict) {
  std::string text =
      fmt::format("{} {}, {}", trace.call, Translated(VerdictText(verdict)), trace.started);
  if (trace.end) text += fmt::format(", {:.1f} ms", trace.end->milliseconds);
  text += "\n";
  const Json told = ValueJson(trace.arguments);
  for (const Parameter& parameter : method.parameters) {
    const Json* const argument = told.find(parameter.name);
    if (argument == nullptr) continue;
    const std::string value =
        argument->is_string() ? argument->get<std::string>() : Show(*argument);
    text += fmt::format("  {} ={}{}\n", parameter.name, value.empty() ? "" : " ", value);
  }
  return text;
}

std::string StatementsText(const std::vector<LoggedStatement>& sent) {
  std::string text;
  for (const LoggedStatement& statement : sent)
    text += SentText(statement) + SentRowsText(statement);
  return text;
}

std::string LadderSection(const TracedCall& trace, size_t number, bool everything) {
  const TracedLadder& ladder = trace.ladders[number];
  std::string text;
  if (!ladder.gates.empty()) {
    text = fmt::format("\n{}\n\n{}", TitleOf(trace, number),
                       LadderText(RungsOf(ladder, trace.call), everything));
  }
  const std::vector<LoggedStatement> beside = Beside(ladder);
  if (beside.empty()) return text;
  const bool shown = everything || trace.ladders.size() == 1 ||
                     std::ranges::any_of(beside, [](const auto& sent) { return !!sent.error; });
  const std::string where =
      number == 0 ? Translated("before the gates") : Translated("beside the gates");
  if (!shown) {
    return text + (beside.size() == 1
                       ? Say("\n1 statement {} (--full shows them)\n", where)
                       : Say("\n{} statements {} (--full shows them)\n", beside.size(), where));
  }
  const bool no_gates = trace.ladders.size() == 1;
  const std::string title = no_gates ? Translated("Statements:") : Say("Statements {}:", where);
  return text + fmt::format("\n{}\n\n{}", title, StatementsText(beside));
}

std::string EndText(const std::string& message) {
  if (message.empty()) return "";
  std::string text = "\n" + LinePerBill(message, "");
  const Refusal* const refusal = FindRefusal(message);
  if (refusal == nullptr) return text;
  return text + Say("  [{}]\n  cause   {}\n  remedy  {}\n", refusal->name,
                    InLanguage(refusal->cause), InLanguage(refusal->remedy));
}

// ---- As JSON -----------------------------------------------------------------------------------

Json TraceJson(const TracedCall& trace, Exit verdict) {
  Json ladders = Json::array();
  Json statements = Json::array();
  for (size_t i = 0; i < trace.ladders.size(); ++i) {
    for (const LoggedStatement& sent : trace.ladders[i].statements) {
      statements.push_back(StatementJson(sent));
    }
    if (trace.ladders[i].gates.empty()) continue;
    ladders.push_back(
        {{"bill", BillOf(trace, i)}, {"gates", LadderJson(RungsOf(trace.ladders[i], trace.call))}});
  }
  Json json = {{"call", trace.call},
               {"started", trace.started},
               {"verdict", VerdictText(verdict)},
               {"message", MessageOf(trace)},
               {"arguments", ValueJson(trace.arguments)}};
  if (trace.end) {
    json["milliseconds"] = trace.end->milliseconds;
    json["result"] = ValueJson(trace.end->result);
    json["arguments_after"] = ValueJson(trace.end->arguments);
  }
  if (const std::string name = RefusalName(MessageOf(trace)); !name.empty()) json["refusal"] = name;
  json["ladders"] = std::move(ladders);
  json["statements"] = std::move(statements);
  json["left_out"] = trace.left_out;
  return json;
}

void RequireTraceAlone(const ExplainOptions& options) {
  if (!options.numbers.empty() || options.class_type || options.id || !options.html_file.empty()) {
    throw CommandError(
        Say("--trace explains the call in its file: give no bill and no --html with it"));
  }
}

MethodName MethodOf(const TracedCall& trace, const std::string& file) {
  try {
    return FindMethodByName(trace.call);
  } catch (const std::invalid_argument& error) {
    throw CommandError(Say("{}, line 1: {}", file, error.what()));
  }
}

}  // namespace

Exit ExplainTrace(const CommonOptions& common, const ExplainOptions& options) {
  RequireTraceAlone(options);
  const TracedCall trace = ReadTrace(options.trace_file);
  const Method& method = *MethodOf(trace, options.trace_file).method;
  const Exit verdict = VerdictOf(trace, method);
  if (common.json) {
    Print(Show(TraceJson(trace, verdict), 2) + "\n");
    return verdict;
  }
  std::string text = HeadText(trace, method, verdict);
  for (size_t i = 0; i < trace.ladders.size(); ++i) {
    text += LadderSection(trace, i, options.full);
  }
  if (trace.left_out > 0) {
    text += Say("\n{} lines were left out: the file was full\n", trace.left_out);
  }
  Print(text + EndText(MessageOf(trace)));
  return verdict;
}

}  // namespace tavcc
