#include "tavcc/output.h"

#include <system_error>
#include <utility>

#include <fmt/core.h>

#include "foundation/conversions.h"
#include "foundation/utf8.h"
#include "language/language.h"
#include "tavcc/command.h"
#include "tavcc/platform/streams.h"
#include "tavcc/table.h"

namespace tavcc {
namespace {

// What is no UTF-8 in the text is written as U+FFFD.
std::error_code Write(Stream stream, std::string_view text) {
  return IsUtf8(text) ? WriteAll(stream, text) : WriteAll(stream, RepairedUtf8(text));
}

}  // namespace

void Print(std::string_view text) {
  const std::error_code problem = Write(Stream::kOutput, text);
  if (problem) throw CommandError(Say("the output cannot be written: {}", problem.message()));
}

void PrintAside(std::string_view text) {
  Write(Stream::kErrors, text);
}

std::string InLanguage(const Bilingual& text) {
  return std::string(CurrentLanguage() == Language::kChinese ? text.chinese : text.english);
}

std::string ValueText(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kNull:
      return std::string(kNullText);
    case Value::Kind::kEmpty:
    case Value::Kind::kMissing:
      return "";
    case Value::Kind::kDecimal:
      return value.decimal().ToText();
    case Value::Kind::kObject:
      return Show(ValueJson(value));
    default:
      return ToText(value);
  }
}

std::vector<std::string> ValueTexts(const std::vector<Value>& values) {
  std::vector<std::string> texts;
  for (const Value& value : values) texts.push_back(ValueText(value));
  return texts;
}

std::string TableCell(const Value& value) {
  const std::string text = ValueText(value);
  if (!value.IsText()) return text;
  std::string cell;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20) {
      cell += {'\xE2', '\x90', static_cast<char>(0x80 + byte)};  // U+2400 and those behind it
    } else if (byte == 0x7F) {
      cell += "\xE2\x90\xA1";
    } else {
      cell += c;
    }
  }
  std::string_view inside = cell;
  while (inside.size() > 1 && inside.front() == '\'' && inside.back() == '\'') {
    inside = inside.substr(1, inside.size() - 2);
  }
  return inside == kNullText ? "'" + cell + "'" : cell;
}

std::string PlainText(const Value& value) {
  if (value.kind() != Value::Kind::kDecimal) return ValueText(value);
  return value.decimal().Normalized().ToText();
}

std::string ErrorText(const AutomationError& error) {
  return Say("error {}: {}", error.number(), error.description());
}

std::vector<std::string> FieldNames(const Recordset& rows) {
  std::vector<std::string> names;
  for (int i = 0; i < rows.FieldCount(); ++i) names.push_back(rows.FieldName(i));
  return names;
}

std::string RowsText(Recordset& rows, std::string_view indent) {
  if (rows.AtEnd()) return std::string(indent) + Translated("(no rows)") + "\n";
  Table table(FieldNames(rows));
  for (; !rows.AtEnd(); rows.MoveNext()) {
    std::vector<std::string> cells;
    for (int i = 0; i < rows.FieldCount(); ++i) cells.push_back(TableCell(rows.Field(i)));
    table.Add(std::move(cells));
  }
  return table.ToText(indent);
}

Json ValueJson(const Value& value) {
  return JsonFromValue(value, DecimalForm::kAllDigits);
}

Json RowsJson(Recordset& rows, RowForm form) {
  return JsonFromRows(rows, form, DecimalForm::kAllDigits);
}

Json RowsJson(const std::vector<std::vector<Value>>& rows) {
  Json list = Json::array();
  for (const std::vector<Value>& row : rows) {
    Json fields = Json::array();
    for (const Value& value : row) fields.push_back(ValueJson(value));
    list.push_back(std::move(fields));
  }
  return list;
}

}  // namespace tavcc
