// tavcc call: one method call on a database.
#include <fmt/core.h>

#include "host/host_dictionary.h"
#include "scenario/runner.h"
#include "scenario/scenario.h"
#include "scenario/values.h"
#include "tavcc/answer.h"
#include "tavcc/arguments.h"
#include "tavcc/command.h"
#include "tavcc/database.h"
#include "tavcc/output.h"
#include "tavcc/table.h"

namespace tavcc {
namespace {

MethodName FindMethodOrFail(const std::string& dotted) {
  try {
    return FindMethodByName(dotted);
  } catch (const std::invalid_argument& error) {
    throw CommandError(error.what());
  }
}

Json AnswerJson(const Method& method, const Answer& answer, bool trace) {
  Json json = {{"verdict", VerdictText(answer.verdict)}};
  if (answer.error) {
    json["error"] = {{"number", answer.error->number()},
                     {"source", answer.error->source()},
                     {"description", answer.error->description()}};
  } else {
    json["result"] = JsonFromValue(answer.result);
  }
  json["arguments"] = Json::object();
  for (size_t i = 0; i < method.parameters.size(); ++i) {
    if (!method.parameters[i].in_out) continue;
    json["arguments"][std::string(method.parameters[i].name)] = JsonFromValue(answer.arguments[i]);
  }
  if (!trace) return json;
  json["statements"] = Json::array();
  for (const LoggedStatement& statement : answer.statements) {
    json["statements"].push_back(StatementJson(statement));
  }
  return json;
}

void PrintNamed(std::string_view name, const Value& value) {
  constexpr size_t kNameWidth = 14;
  Recordset* rows = nullptr;
  HostDictionary* dictionary = nullptr;
  if (value.IsObject()) {
    rows = dynamic_cast<Recordset*>(value.object().get());
    dictionary = dynamic_cast<HostDictionary*>(value.object().get());
  }
  if (rows != nullptr && rows->IsOpen()) {
    fmt::print("  {}\n{}", name, RowsText(*rows, "    "));
    return;
  }
  if (dictionary != nullptr) {
    for (const auto& [key, item] : dictionary->entries()) {
      PrintNamed(fmt::format("{}.{}", name, key), item);
    }
    return;
  }
  const std::string text = ValueText(value);
  fmt::print("  {}\n", text.empty() ? std::string(name) : Padded(name, kNameWidth) + "  " + text);
}

void PrintAnswer(const MethodName& name, const Answer& answer) {
  fmt::print("{}.{} {}\n", name.cls->name, name.method->name, VerdictText(answer.verdict));
  if (answer.error) {
    PrintNamed("error", answer.error->number());
    PrintNamed("source", answer.error->source());
    PrintNamed("description", answer.error->description());
  } else {
    PrintNamed("result", answer.result);
  }
  for (size_t i = 0; i < name.method->parameters.size(); ++i) {
    const Parameter& parameter = name.method->parameters[i];
    if (parameter.in_out) PrintNamed(parameter.name, answer.arguments[i]);
  }
}

}  // namespace

Exit CallCommand(const CommonOptions& common, const CallOptions& options) {
  const MethodName name = FindMethodOrFail(options.method);
  const Json given = ReadArguments(*name.method, options.words, options.json_file);
  RequireArguments(*name.method, given);
  const auto erp = OpenDatabase(common);
  erp->host().settings().user_id = options.user;
  std::vector<Value> arguments =
      MakeArguments({erp->host(), erp->dsn(), erp->connection()}, *name.method, given);
  const StatementObserver trace =
      common.trace && !common.json ? StatementObserver(TraceStatement) : nullptr;
  const Answer answer =
      CallInTransaction(*erp, *name.cls, *name.method, std::move(arguments), trace);
  if (common.json) {
    fmt::print("{}\n", Show(AnswerJson(*name.method, answer, common.trace), 2));
  } else {
    PrintAnswer(name, answer);
  }
  return answer.verdict;
}

}  // namespace tavcc
