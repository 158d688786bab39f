#include "odbc/procedure_batch.h"

#include <cmath>
#include <cstdio>

#include "foundation/error.h"
#include "foundation/text.h"

namespace tavcc::odbc {
namespace {

// Enough decimals to bring any of them back as it was.
std::string FloatLiteral(double number) {
  if (!std::isfinite(number)) throw AutomationError(RuntimeError::kOverflow);
  char text[40];
  std::snprintf(text, sizeof(text), "%.16e", number);
  for (char& c : text) {
    if (c == ',') c = '.';  // whatever the locale
  }
  return text;
}

std::string TextLiteral(std::string_view text) {
  std::string literal = "N'";
  for (const char c : text) literal.append(c == '\'' ? 2 : 1, c);
  return literal + "'";
}

std::string DateLiteral(DateTime date) {
  const DateTime::Parts p = date.ToParts();
  char text[40];
  std::snprintf(text, sizeof(text), "'%04d-%02d-%02dT%02d:%02d:%02d.%03d'", p.year, p.month, p.day,
                p.hour, p.minute, p.second, p.millisecond);
  return text;
}

std::string Literal(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kEmpty:
    case Value::Kind::kNull:
      return "NULL";
    case Value::Kind::kMissing:
      return "DEFAULT";
    case Value::Kind::kBoolean:
      return value.boolean() ? "1" : "0";
    case Value::Kind::kInteger:
      return std::to_string(value.integer());
    case Value::Kind::kLong:
      return std::to_string(value.long_integer());
    case Value::Kind::kDouble:
      return FloatLiteral(value.number());
    case Value::Kind::kDecimal:
      return value.decimal().ToText();
    case Value::Kind::kDate:
      return DateLiteral(value.date());
    case Value::Kind::kText:
      return TextLiteral(value.text());
    case Value::Kind::kObject:
      break;
  }
  throw AutomationError(RuntimeError::kTypeMismatch);
}

std::string TypeOf(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kBoolean:
      return "bit";
    case Value::Kind::kInteger:
      return "smallint";
    case Value::Kind::kLong:
      return "int";
    case Value::Kind::kDouble:
      return "float";
    case Value::Kind::kDecimal:
      return Cat("decimal(", Decimal::kMaxPrecision, ",", value.decimal().scale(), ")");
    case Value::Kind::kDate:
      return "datetime";
    default:
      return "nvarchar(max)";
  }
}

}  // namespace

std::string ProcedureBatch(std::string_view name, std::span<const ProcedureParameter> parameters) {
  std::string declarations, arguments, outputs;
  int32_t number = 0;
  for (const ProcedureParameter& parameter : parameters) {
    CatTo(arguments, arguments.empty() ? " " : ", ", parameter.name, " = ");
    if (!parameter.output) {
      arguments += Literal(parameter.value);
      continue;
    }
    const std::string variable = Cat("@out", ++number);
    const std::string start = parameter.value.IsMissing() ? "NULL" : Literal(parameter.value);
    CatTo(declarations, "DECLARE ", variable, " ", TypeOf(parameter.value), "\r\nSET ", variable,
          " = ", start, "\r\n");
    CatTo(arguments, variable, " OUTPUT");
    CatTo(outputs, outputs.empty() ? "\r\nSELECT " : ", ", variable, " AS [", parameter.name, "]");
  }
  return Cat(declarations, "EXEC ", name, arguments, outputs);
}

}  // namespace tavcc::odbc
