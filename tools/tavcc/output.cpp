#include "tavcc/output.h"

#include <fmt/core.h>

#include "foundation/conversions.h"
#include "scenario/runner.h"
#include "scenario/values.h"
#include "tavcc/table.h"

namespace tavcc {
namespace {

std::vector<std::string> FieldNames(const Recordset& rows) {
  std::vector<std::string> names;
  for (int i = 0; i < rows.FieldCount(); ++i) names.push_back(rows.FieldName(i));
  return names;
}

}  // namespace

std::string ValueText(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kNull:
      return "NULL";
    case Value::Kind::kEmpty:
    case Value::Kind::kMissing:
      return "";
    case Value::Kind::kDecimal:
      return value.decimal().ToText();
    case Value::Kind::kObject:
      return Show(JsonFromValue(value));
    default:
      return ToText(value);
  }
}

std::string RowsText(Recordset& rows, std::string_view indent) {
  if (rows.AtEnd()) return std::string(indent) + "(no rows)\n";
  Table table(FieldNames(rows));
  for (; !rows.AtEnd(); rows.MoveNext()) {
    std::vector<std::string> cells;
    for (int i = 0; i < rows.FieldCount(); ++i) cells.push_back(ValueText(rows.Field(i)));
    table.Add(std::move(cells));
  }
  return table.ToText(indent);
}

Json RowsJson(Recordset& rows) {
  return {{"columns", FieldNames(rows)}, {"rows", JsonFromRows(rows, RowForm::kArrays)}};
}

Json StatementJson(const LoggedStatement& statement) {
  Json json = Json::object();
  if (statement.is_procedure) {
    json["procedure"] = statement.text;
    json["parameters"] = Json::object();
    for (const ProcedureParameter& parameter : statement.parameters) {
      json["parameters"][parameter.name] = JsonFromValue(parameter.value);
    }
  } else {
    json["sql"] = statement.text;
  }
  json["rows"] = statement.rows < 0 ? Json() : Json(statement.rows);
  json["milliseconds"] = statement.milliseconds;
  if (statement.error) {
    json["error"] = {{"number", statement.error->number()},
                     {"description", statement.error->description()}};
  }
  return json;
}

void TraceStatement(const LoggedStatement& statement) {
  std::string text = ShowStatement(statement);
  for (size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 3) {
    text.replace(at, 1, "\n  ");
  }
  fmt::print(stderr, "> {}\n", text);
  if (statement.error) {
    fmt::print(stderr, "  error {}: {}", statement.error->number(), statement.error->description());
  } else if (statement.rows >= 0) {
    fmt::print(stderr, "  {} row{}", statement.rows, statement.rows == 1 ? "" : "s");
  } else {
    fmt::print(stderr, "  done");
  }
  fmt::print(stderr, ", {:.3f} ms\n", statement.milliseconds);
}

}  // namespace tavcc
