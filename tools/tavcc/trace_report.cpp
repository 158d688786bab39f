#include "tavcc/trace_report.h"

#include <algorithm>
#include <stdexcept>

#include "audit/class_names.h"
#include "host/host_dictionary.h"
#include "language/language.h"
#include "scenario/scenario.h"
#include "tavcc/answer.h"
#include "tavcc/output.h"

namespace tavcc {
namespace {

const Method& TracedMethod(const std::string& call, const std::string& file) {
  try {
    return *FindMethodByName(call).method;
  } catch (const std::invalid_argument& error) {
    throw CommandError(Say("{}, line 1: {}", file, error.what()));
  }
}

// The arguments of a call, one per parameter; a trace has them by name, after the call the in/out
// ones alone.
std::vector<Value> InOrder(const Method& method, const Value& named) {
  const auto& by_name = dynamic_cast<const HostDictionary&>(*named.object());
  std::vector<Value> arguments;
  for (const Parameter& parameter : method.parameters) {
    arguments.push_back(by_name.ItemOr(parameter.name, Value()));
  }
  return arguments;
}

Exit VerdictOfTrace(const TracedCall& trace, const Method& method) {
  if (!trace.end || trace.end->failure) return Exit::kFailed;
  if (trace.end->error) return VerdictOf(method, *trace.end->error);
  return VerdictOf(method, trace.end->result, InOrder(method, trace.end->arguments));
}

std::string MessageOfTrace(const TracedCall& trace, const Method& method) {
  if (!trace.end) return Translated("the trace ends before the call did");
  for (const auto* const error : {&trace.end->error, &trace.end->failure}) {
    if (*error) return ErrorText(**error);
  }
  return MessageOf(method, InOrder(method, trace.end->arguments));
}

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

std::vector<std::pair<std::string, std::string>> GivenArguments(const TracedCall& trace,
                                                                const Method& method) {
  std::vector<std::pair<std::string, std::string>> given;
  const Json told = ValueJson(trace.arguments);
  for (const Parameter& parameter : method.parameters) {
    const Json* const argument = told.find(parameter.name);
    if (argument == nullptr) continue;
    given.emplace_back(parameter.name,
                       argument->is_string() ? argument->get<std::string>() : Show(*argument));
  }
  return given;
}

}  // namespace

TraceReport ReportOf(TracedCall trace, const std::string& file) {
  const Method& method = TracedMethod(trace.call, file);
  TraceReport report;
  report.arguments = GivenArguments(trace, method);
  report.verdict = VerdictOfTrace(trace, method);
  report.message = MessageOfTrace(trace, method);
  for (size_t i = 0; i < trace.ladders.size(); ++i) {
    const TracedLadder& ladder = trace.ladders[i];
    report.walks.push_back({.bill = ladder.gates.empty() ? "" : BillOf(trace, i),
                            .gates = RungsOf(ladder, trace.call),
                            .beside = Beside(ladder)});
  }
  report.trace = std::move(trace);
  return report;
}

std::string GatesTitle(const TraceReport::Walk& walk) {
  return walk.bill.empty() ? Translated("Gates") : Say("Gates of {}", walk.bill);
}

std::string WhereBeside(const TraceReport& report, const TraceReport::Walk& walk) {
  return &walk == &report.walks.front() ? Translated("before the gates")
                                        : Translated("beside the gates");
}

std::string StatementsTitle(const TraceReport& report, const TraceReport::Walk& walk) {
  if (report.walks.size() == 1) return Translated("Statements");
  return Say("Statements {}", WhereBeside(report, walk));
}

}  // namespace tavcc
