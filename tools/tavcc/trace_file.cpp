#include "tavcc/trace_file.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <memory>
#include <string_view>
#include <utility>

#include "host/reference_host.h"
#include "language/language.h"
#include "scenario/values.h"
#include "tavcc/command.h"

namespace tavcc {
namespace {

class Reader {
 public:
  explicit Reader(const std::string& file) : file_(file) { trace_.ladders.emplace_back(); }

  TracedCall Read() {
    const std::string text = ReadTextFile(file_);
    for (size_t at = 0; at < text.size();) {
      const size_t end = std::min(text.find('\n', at), text.size());
      ++line_;
      Take(std::string_view(text).substr(at, end - at), end == text.size());
      at = end + 1;
    }
    if (line_ == 0) throw CommandError(Say("{}: is empty, no trace of a call", file_));
    return std::move(trace_);
  }

 private:
  // The last line may be a part of one, where the process ended in the middle of it.
  void Take(std::string_view text, bool unended) {
    try {
      Sort(ParseJson(text));
    } catch (const JsonError& error) {
      if (unended && line_ > 1) return;
      throw CommandError(Say("{}, line {}: {}; a trace is what the automation server writes", file_,
                             line_, error.what()));
    }
  }

  void Sort(const Json& line) {
    const std::string kind = line.items().empty() ? "" : line.items().front().key;
    if ((line_ == 1) != (kind == "call"))
      throw JsonError(Translated("is not the first line of a trace"));
    if (kind == "call") {
      TakeBegin(line);
    } else if (kind == "ladder") {
      trace_.ladders.emplace_back();
    } else if (kind == "statement") {
      Now().statements.push_back(StatementOf(line));
    } else if (kind == "rows_of") {
      AddRows(line);
    } else if (kind == "host") {
      AddHostAnswer(line);
    } else if (kind == "gate") {
      Now().gates.push_back({line["gate"].get<std::string>(), line["answer"].get<std::string>(),
                             line.value("message", std::string()),
                             line.value("rule", std::string())});
    } else if (kind == "left_out") {
      trace_.left_out = line["left_out"].get<int32_t>();
    } else if (kind == "result" || kind == "error") {
      TakeEnd(line);
    } else if (kind == "errors_of") {
      AddErrors(line);
    } else {
      throw JsonError(Translated("is of no kind that a trace has"));
    }
  }

  Value ArgumentsOf(const Json& line) {
    if (!line["arguments"].is_object()) throw JsonError(Translated("its arguments are no object"));
    return ValueFromJson(host_, line["arguments"]);
  }

  void TakeBegin(const Json& line) {
    trace_.call = line["call"].get<std::string>();
    trace_.started = line["started"].get<std::string>();
    trace_.arguments = ArgumentsOf(line);
  }

  void TakeEnd(const Json& line) {
    TracedCall::End end;
    end.arguments = ArgumentsOf(line);
    end.milliseconds = line["milliseconds"].get<double>();
    if (const Json* const result = line.find("result")) end.result = ValueFromJson(host_, *result);
    if (const Json* const error = line.find("error")) end.error = ErrorOf(*error);
    if (const Json* const failure = line.find("failure")) end.failure = ErrorOf(*failure);
    trace_.end = std::move(end);
  }

  TracedLadder& Now() { return trace_.ladders.back(); }

  // Null for one that was left out of the trace.
  LoggedStatement* Statement(int32_t number) {
    for (TracedLadder& ladder : trace_.ladders) {
      for (LoggedStatement& statement : ladder.statements) {
        if (statement.number == number) return &statement;
      }
    }
    return nullptr;
  }

  static AutomationError ErrorOf(const Json& json) {
    return {json["number"].get<int32_t>(), json["source"].get<std::string>(),
            json["description"].get<std::string>()};
  }

  LoggedStatement StatementOf(const Json& line) {
    LoggedStatement statement;
    statement.number = line["statement"].get<int32_t>();
    statement.is_procedure = line.contains("procedure");
    statement.text = line[statement.is_procedure ? "procedure" : "sql"].get<std::string>();
    if (statement.is_procedure) {
      statement.parameters = ParametersOf(line["parameters"]);
      statement.outputs = ParametersOf(line["outputs"]);
    }
    statement.from = PlaceOf(line["from"].get<std::string>());
    statement.gate = line.value("gate", std::string());
    if (!line["rows"].is_null()) {
      statement.rows = line["rows"].get<int32_t>();
      statement.seen = std::make_shared<SeenRows>();
    }
    statement.milliseconds = line["milliseconds"].get<double>();
    if (const Json* const error = line.find("error")) statement.error = ErrorOf(*error);
    return statement;
  }

  std::vector<ProcedureParameter> ParametersOf(const Json& json) {
    std::vector<ProcedureParameter> parameters;
    for (const Json::Member& member : json.items()) {
      parameters.push_back({.name = member.key, .value = ValueFromJson(host_, member.value)});
    }
    return parameters;
  }

  // "src/checks/credit.cpp:116"
  CallSite PlaceOf(const std::string& place) {
    const size_t colon = place.rfind(':');
    if (colon == std::string::npos) return {};
    CallSite site{trace_.files.emplace_back(place.substr(0, colon)).c_str()};
    std::from_chars(place.data() + colon + 1, place.data() + place.size(), site.line);
    return site;
  }

  void AddRows(const Json& line) {
    SeenRows seen;
    for (const Json& column : line["columns"]) seen.columns.push_back(column.get<std::string>());
    for (const Json& row : line["rows"]) {
      std::vector<Value>& fields = seen.rows.emplace_back();
      for (const Json& field : row) fields.push_back(ValueFromJson(host_, field));
    }
    seen.count = line["count"].get<int32_t>();
    seen.to_the_end = line["to_the_end"].get<bool>();
    if (LoggedStatement* const statement = Statement(line["rows_of"].get<int32_t>())) {
      statement->seen = std::make_shared<SeenRows>(std::move(seen));
    }
  }

  void AddHostAnswer(const Json& line) {
    constexpr std::pair<std::string_view, HostQuestion> kWords[] = {
        {"setting", HostQuestion::kSetting}, {"published", HostQuestion::kPublished},
        {"right", HostQuestion::kRight},     {"text", HostQuestion::kText},
        {"user", HostQuestion::kUser},
    };
    const auto name = line["host"].get<std::string>();
    for (const auto& [word, question] : kWords) {
      if (word != name) continue;
      Now().host_answers.push_back(
          {question, line.value("category", std::string()), line.value("key", std::string()),
           ValueFromJson(host_, line["value"]), line.value("gate", std::string())});
    }
  }

  void AddErrors(const Json& line) {
    LoggedStatement* const statement = Statement(line["errors_of"].get<int32_t>());
    if (statement == nullptr) return;
    for (const Json& error : line["errors"]) {
      statement->errors.push_back(
          {error["number"].get<int32_t>(), error["source"].get<std::string>(),
           error["description"].get<std::string>(), error.value("state", std::string())});
    }
  }

  const std::string& file_;
  int line_ = 0;
  TracedCall trace_;
  // For the values: it has no database.
  ReferenceHost host_{[](std::string_view) { return ConnectionPtr(); }};
};

}  // namespace

TracedCall ReadTrace(const std::string& file) {
  return Reader(file).Read();
}

}  // namespace tavcc
