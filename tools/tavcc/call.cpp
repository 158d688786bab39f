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

class CallCommand final : public Command {
 public:
  void Describe(CLI::App& app) override {
    app.add_option("CLASS.METHOD", method_, "What is called, e.g. cls_CX.AuditBill")->required();
    app.add_option("NAME=VALUE", words_, "Arguments; in/out ones start empty where not given");
    app.add_option("--args", json_file_,
                   "Arguments from a JSON file (\"-\": standard input); \"--json FILE\" behind the "
                   "method's name does the same and prints JSON")
        ->type_name("FILE");
    app.add_option("--user", user_, "The current user's id")->capture_default_str();
  }

  Exit Run(const CommonOptions& options) override {
    const MethodName name = FindMethodOrFail(method_);
    const Json given = ReadArguments(*name.method, words_, json_file_);
    RequireArguments(*name.method, given);
    const auto erp = OpenDatabase(options);
    erp->host().settings().user_id = user_;
    std::vector<Value> arguments =
        MakeArguments({erp->host(), erp->dsn(), erp->connection()}, *name.method, given);
    if (options.trace && !options.json) trace_ = TraceStatement;
    const Answer answer =
        CallInTransaction(*erp, *name.cls, *name.method, std::move(arguments), trace_);
    if (options.json) {
      fmt::print("{}\n", AnswerJson(*name.method, answer, options.trace).dump(2));
    } else {
      PrintAnswer(name, answer);
    }
    return answer.verdict;
  }

 private:
  std::string method_;
  std::vector<std::string> words_;
  std::string json_file_;
  int16_t user_ = HostSettings().user_id;
  StatementObserver trace_;
};

}  // namespace

std::unique_ptr<Command> MakeCall() {
  return std::make_unique<CallCommand>();
}

}  // namespace tavcc
