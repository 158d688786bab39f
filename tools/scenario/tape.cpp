#include "scenario/tape.h"

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <string_view>
#include <utility>

#include "language/language.h"
#include "scenario/scenario.h"
#include "scenario/values.h"

namespace tavcc {
namespace {

bool IsTheOne(const std::vector<ConnectionError>& errors, const AutomationError& error) {
  return errors.size() == 1 && errors[0].number == error.number() &&
         errors[0].source == error.source() && errors[0].description == error.description() &&
         errors[0].sql_state.empty();
}

Json ErrorsJson(const std::vector<ConnectionError>& errors) {
  Json list = Json::array();
  for (const ConnectionError& error : errors) {
    list.push_back({{"number", error.number},
                    {"source", error.source},
                    {"description", error.description},
                    {"state", error.sql_state}});
  }
  return list;
}

Json ParametersJson(const std::vector<ProcedureParameter>& parameters) {
  Json json = Json::object();
  for (const ProcedureParameter& parameter : parameters) {
    json[parameter.name] = ExactJson(parameter.value);
  }
  return json;
}

Json RowsJson(const AnswerRows& answer) {
  Json rows = Json::array();
  for (const std::vector<Value>& row : answer.rows) {
    Json fields = Json::array();
    for (const Value& value : row) fields.push_back(ExactJson(value));
    rows.push_back(std::move(fields));
  }
  return rows;
}

Json StatementJson(const LoggedStatement& statement) {
  Json json = Json::object();
  json[statement.is_procedure ? "procedure" : "sql"] = statement.text;
  if (statement.is_procedure) {
    json["parameters"] = ParametersJson(statement.parameters);
    if (!statement.outputs.empty()) json["outputs"] = ParametersJson(statement.outputs);
  }
  if (statement.answer != nullptr) {
    json["columns"] = statement.answer->columns;
    json["rows"] = RowsJson(*statement.answer);
  }
  if (statement.error) json["error"] = ErrorJson(*statement.error);
  const bool told =
      statement.error ? IsTheOne(statement.errors, *statement.error) : statement.errors.empty();
  if (!told) json["errors"] = ErrorsJson(statement.errors);
  return json;
}

// One object of the tape, whose keys are known and of their kind.
class Entry {
 public:
  Entry(const Json& json, std::initializer_list<const char*> keys) : json_(json) {
    if (!json.is_object()) throw JsonError(Say("must be an object, not {}", Show(json)));
    const std::vector<std::string> known(keys.begin(), keys.end());
    for (const auto& [key, value] : json.items()) {
      if (std::ranges::find(known, key) == known.end()) {
        throw JsonError(Say("unknown key \"{}\"{}", key, DidYouMean(key, known)));
      }
    }
  }

  const Json* Find(const char* key) const { return json_.find(key); }

  std::string Text(const char* key) const {
    const Json& value = Required(key);
    if (!value.is_string()) throw JsonError(Say("key \"{}\": must be a text", key));
    return value.get<std::string>();
  }
  int32_t Number(const char* key) const {
    const Json& value = Required(key);
    if (!IsWholeNumber(value, INT32_MIN, INT32_MAX)) {
      throw JsonError(Say("key \"{}\": must be a 32-bit integer", key));
    }
    return value.get<int32_t>();
  }
  // The list under the key; none when there is no key.
  const Json& List(const char* key) const {
    static const Json none = Json::array();
    const Json* const value = Find(key);
    if (value != nullptr && !value->is_array()) {
      throw JsonError(Say("key \"{}\": must be a list", key));
    }
    return value == nullptr ? none : *value;
  }

 private:
  const Json& Required(const char* key) const {
    const Json* const value = Find(key);
    if (value == nullptr) throw JsonError(Say("the key \"{}\" is missing", key));
    return *value;
  }

  const Json& json_;
};

AutomationError ErrorFromJson(const Json& json) {
  const Entry entry(json, {"number", "source", "description"});
  return {entry.Number("number"), entry.Text("source"), entry.Text("description")};
}

std::vector<ProcedureParameter> ParametersFromJson(const Entry& entry, const char* key,
                                                   bool output) {
  const Json* const json = entry.Find(key);
  if (json == nullptr) return {};
  if (!json->is_object()) throw JsonError(Say("key \"{}\": must be an object", key));
  std::vector<ProcedureParameter> parameters;
  for (const auto& [name, value] : json->items()) {
    parameters.push_back({name, ScalarFromJson(value), output});
  }
  return parameters;
}

AnswerRowsPtr RowsFromJson(const Entry& entry) {
  if (entry.Find("columns") == nullptr && entry.Find("rows") == nullptr) return nullptr;
  const auto answer = std::make_shared<AnswerRows>();
  for (const Json& column : entry.List("columns")) {
    if (!column.is_string()) throw JsonError(Say("key \"columns\": must list texts"));
    answer->columns.push_back(column.get<std::string>());
  }
  for (const Json& fields : entry.List("rows")) {
    if (!fields.is_array() || fields.size() != answer->columns.size()) {
      throw JsonError(
          Say("key \"rows\": a row has not one field for each column: {}", Show(fields)));
    }
    std::vector<Value>& row = answer->rows.emplace_back();
    for (const Json& field : fields) row.push_back(ScalarFromJson(field));
  }
  return answer;
}

std::vector<ConnectionError> ErrorsFromJson(const Entry& statement,
                                            const std::optional<AutomationError>& raised) {
  if (statement.Find("errors") == nullptr && raised) {
    return {{raised->number(), raised->source(), raised->description(), ""}};
  }
  std::vector<ConnectionError> errors;
  for (const Json& json : statement.List("errors")) {
    const Entry entry(json, {"number", "source", "description", "state"});
    errors.push_back({entry.Number("number"), entry.Text("source"), entry.Text("description"),
                      entry.Find("state") == nullptr ? "" : entry.Text("state")});
  }
  return errors;
}

LoggedStatement StatementFromJson(const Json& json) {
  const Entry entry(
      json, {"sql", "procedure", "parameters", "outputs", "columns", "rows", "error", "errors"});
  LoggedStatement statement;
  statement.is_procedure = entry.Find("procedure") != nullptr;
  if (statement.is_procedure && entry.Find("sql") != nullptr) {
    throw JsonError(Say("has both keys \"sql\" and \"procedure\""));
  }
  statement.text = entry.Text(statement.is_procedure ? "procedure" : "sql");
  statement.parameters = ParametersFromJson(entry, "parameters", false);
  statement.outputs = ParametersFromJson(entry, "outputs", true);
  statement.answer = RowsFromJson(entry);
  if (const Json* const error = entry.Find("error")) statement.error = ErrorFromJson(*error);
  statement.errors = ErrorsFromJson(entry, statement.error);
  return statement;
}

}  // namespace

Json ListedStatement(const LoggedStatement& statement) {
  if (!statement.is_procedure) return statement.text;
  Json parameters = Json::object();
  for (const ProcedureParameter& parameter : statement.parameters) {
    parameters[parameter.name] = JsonFromValue(parameter.value);
  }
  return {{"procedure", statement.text}, {"parameters", parameters}};
}

Json ListedStatements(const Tape& tape) {
  Json statements = Json::array();
  for (const LoggedStatement& statement : tape) statements.push_back(ListedStatement(statement));
  return statements;
}

Json TapeJson(const Tape& tape) {
  Json json = Json::array();
  for (const LoggedStatement& statement : tape) json.push_back(StatementJson(statement));
  return json;
}

Tape TapeFromJson(const Json& json) {
  if (!json.is_array()) throw JsonError(Say("must be a list of statements"));
  Tape tape;
  for (const Json& statement : json) {
    try {
      tape.push_back(StatementFromJson(statement));
    } catch (const JsonError& error) {
      throw JsonError(Say("statement {}: {}", tape.size() + 1, error.what()));
    }
  }
  return tape;
}

}  // namespace tavcc
