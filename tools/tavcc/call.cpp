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
#include "tavcc/trace.h"

namespace tavcc {
namespace {

MethodName FindMethodOrFail(const std::string& dotted) {
  try {
    return FindMethodByName(dotted);
  } catch (const std::invalid_argument& error) {
    throw CommandError(error.what());
  }
}

// The last statement of a call that failed although none of its statements did.
std::string StatementBeforeError(const Answer& answer) {
  const bool named = answer.failure && !answer.failure->what.empty();
  if (answer.verdict != Exit::kFailed || named || answer.statements.empty()) return "";
  return ShowStatement(answer.statements.back());
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
  if (answer.failure) {
    json["failure"] = {{"number", answer.failure->error.number()},
                       {"description", answer.failure->error.description()},
                       {"at", answer.failure->what},
                       {"from", PlaceText(answer.failure->from)}};
  }
  if (const std::string last = StatementBeforeError(answer); !last.empty()) json["after"] = last;
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

// A name and its value, one below the other for rows.
std::string Named(std::string_view name, const Value& value) {
  constexpr size_t kNameWidth = 14;
  Recordset* rows = nullptr;
  HostDictionary* dictionary = nullptr;
  if (value.IsObject()) {
    rows = dynamic_cast<Recordset*>(value.object().get());
    dictionary = dynamic_cast<HostDictionary*>(value.object().get());
  }
  if (rows != nullptr && rows->IsOpen()) {
    return fmt::format("  {}\n{}", name, RowsText(*rows, "    "));
  }
  if (dictionary != nullptr) {
    std::string entries;
    for (const auto& [key, item] : dictionary->entries()) {
      entries += Named(fmt::format("{}.{}", name, key), item);
    }
    return entries;
  }
  const std::string text = ValueText(value);
  return fmt::format("  {}\n",
                     text.empty() ? std::string(name) : Padded(name, kNameWidth) + "  " + text);
}

std::string AnswerText(const MethodName& name, const Answer& answer) {
  std::string text =
      fmt::format("{}.{} {}\n", name.cls->name, name.method->name, VerdictText(answer.verdict));
  if (answer.error) {
    text += Named("error", answer.error->number());
    text += Named("source", answer.error->source());
    text += Named("description", answer.error->description());
  } else {
    text += Named("result", answer.result);
  }
  for (size_t i = 0; i < name.method->parameters.size(); ++i) {
    const Parameter& parameter = name.method->parameters[i];
    if (parameter.in_out) text += Named(parameter.name, answer.arguments[i]);
  }
  if (answer.failure) {
    const AutomationError& error = answer.failure->error;
    text += Named("failure", fmt::format("error {}: {}", error.number(), error.description()));
    if (!answer.failure->what.empty()) text += Named("at", answer.failure->what);
    if (answer.failure->from.line > 0) text += Named("from", PlaceText(answer.failure->from));
  }
  if (const std::string last = StatementBeforeError(answer); !last.empty()) {
    text += Named("after", last);
  }
  if (answer.verdict == Exit::kFailed) text += "What the call did was undone.\n";
  return text;
}

// The database is named by --db or --dsn, and the call has its one session. Takes out what the
// arguments name it.
void DropDatabaseNames(Json& given, const std::string& dsn) {
  for (const char* name : {"sDsn", "strConString"}) {
    const Json* const value = given.find(name);
    if (value == nullptr || *value == Json(dsn)) continue;
    PrintAside(fmt::format("tavcc: note: {} is not used: the call works on {}\n", name, dsn));
    given[name] = dsn;
  }
}

}  // namespace

Exit CallCommand(const CommonOptions& common, const CallOptions& options) {
  const MethodName name = FindMethodOrFail(options.method);
  Json given = ReadArguments(*name.method, options);
  RequireArguments(*name.method, given);
  const auto erp = OpenDatabase(common);
  DropDatabaseNames(given, erp->dsn());
  erp->host().settings().user_id = options.user;
  std::vector<Value> arguments =
      MakeArguments({erp->host(), erp->dsn(), erp->connection()}, *name.method, given);
  const auto print = [&](const Answer& answer) {
    try {
      Print(common.json ? Show(AnswerJson(*name.method, answer, common.trace), 2) + "\n"
                        : AnswerText(name, answer));
    } catch (const CommandError& error) {
      throw CommandError(std::string(error.what()) + "; what the call did was undone");
    }
  };
  return CallInTransaction(*erp, *name.cls, *name.method, std::move(arguments),
                           common.json ? TraceForJson(common) : TraceOf(common), print)
      .verdict;
}

}  // namespace tavcc
