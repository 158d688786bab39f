#include "host/trace_lines.h"

#include <cstdio>

#include "foundation/dictionary.h"
#include "foundation/text.h"
#include "foundation/vector.h"

namespace tavcc {
namespace {

std::string DoubleText(double number) {
  char text[40];
  std::snprintf(text, sizeof(text), "%.17g", number);
  return text;
}

std::string Milliseconds(double milliseconds) {
  char text[40];
  std::snprintf(text, sizeof(text), "%.3f", milliseconds);
  return text;
}

std::string ObjectText(const ObjectPtr& object) {
  if (object == nullptr) return "null";
  if (const auto* vector = dynamic_cast<const Vector*>(object.get())) {
    std::string text;
    for (int i = vector->LBound(); i <= vector->UBound(); ++i) {
      CatTo(text, text.empty() ? "" : ",", JsonText(vector->Item(i)));
    }
    return Cat("[", text, "]");
  }
  if (dynamic_cast<const Dictionary*>(object.get()) != nullptr) return "\"a dictionary\"";
  if (dynamic_cast<const Recordset*>(object.get()) != nullptr) return "\"a recordset\"";
  return "\"an object\"";
}

std::string ParametersText(const std::vector<ProcedureParameter>& parameters) {
  std::string text;
  for (const ProcedureParameter& parameter : parameters) {
    CatTo(text, text.empty() ? "" : ",", JsonQuoted(parameter.name), ":",
          JsonText(parameter.value));
  }
  return Cat("{", text, "}");
}

}  // namespace

std::string JsonQuoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (byte < 0x20) {
      char code[8];
      std::snprintf(code, sizeof(code), "\\u%04x", byte);
      out += code;
    } else {
      out += c;
    }
  }
  return out += '"';
}

std::string JsonText(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kEmpty:
    case Value::Kind::kNull:
    case Value::Kind::kMissing:
      return "null";
    case Value::Kind::kBoolean:
      return value.boolean() ? "true" : "false";
    case Value::Kind::kInteger:
      return Cat(int32_t{value.integer()});
    case Value::Kind::kLong:
      return Cat(value.long_integer());
    case Value::Kind::kDouble:
      return DoubleText(value.number());
    case Value::Kind::kDecimal:
      return Cat("{\"decimal\":", JsonQuoted(value.decimal().ToText()), "}");
    case Value::Kind::kDate:
      return Cat("{\"date\":", JsonQuoted(value.date().ToText()), "}");
    case Value::Kind::kText:
      return JsonQuoted(value.text());
    case Value::Kind::kObject:
      return ObjectText(value.object());
  }
  return "null";
}

std::string ErrorText(const AutomationError& error) {
  return Cat("{\"number\":", error.number(), ",\"source\":", JsonQuoted(error.source()),
             ",\"description\":", JsonQuoted(error.description()), "}");
}

std::string StatementLine(const LoggedStatement& statement) {
  std::string line =
      Cat("{\"statement\":", statement.number,
          statement.is_procedure ? ",\"procedure\":" : ",\"sql\":", JsonQuoted(statement.text));
  if (statement.is_procedure) {
    CatTo(line, ",\"parameters\":", ParametersText(statement.parameters),
          ",\"outputs\":", ParametersText(statement.outputs));
  }
  CatTo(line, ",\"from\":", JsonQuoted(PlaceText(statement.from)));
  if (statement.rows >= 0) CatTo(line, ",\"rows\":", statement.rows);
  CatTo(line, ",\"milliseconds\":", Milliseconds(statement.milliseconds));
  if (statement.error) CatTo(line, ",\"error\":", ErrorText(*statement.error));
  return line += '}';
}

std::string RowsLine(const LoggedStatement& statement) {
  std::string columns;
  for (const std::string& column : statement.seen->columns) {
    CatTo(columns, columns.empty() ? "" : ",", JsonQuoted(column));
  }
  std::string rows;
  for (const std::vector<Value>& row : statement.seen->rows) {
    std::string fields;
    for (const Value& field : row) CatTo(fields, fields.empty() ? "" : ",", JsonText(field));
    CatTo(rows, rows.empty() ? "" : ",", "[", fields, "]");
  }
  return Cat("{\"rows_of\":", statement.number, ",\"columns\":[", columns, "],\"rows\":[", rows,
             "],\"count\":", statement.seen->count,
             ",\"to_the_end\":", statement.seen->to_the_end ? "true" : "false", "}");
}

std::string SettingsLine(std::span<const LoggedSetting> settings) {
  std::string list;
  for (const LoggedSetting& setting : settings) {
    CatTo(list, list.empty() ? "" : ",", "{\"category\":", JsonQuoted(setting.category),
          ",\"key\":", JsonQuoted(setting.key), ",\"value\":", JsonText(setting.value), "}");
  }
  return Cat("{\"settings\":[", list, "]}");
}

}  // namespace tavcc
