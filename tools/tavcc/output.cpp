#include "tavcc/output.h"

#include <fmt/core.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "foundation/conversions.h"
#include "scenario/values.h"
#include "tavcc/command.h"
#include "tavcc/table.h"

namespace tavcc {
namespace {

std::vector<std::string> FieldNames(const Recordset& rows) {
  std::vector<std::string> names;
  for (int i = 0; i < rows.FieldCount(); ++i) names.push_back(rows.FieldName(i));
  return names;
}

// The length of the UTF-8 character that the text begins with; 0 when it begins with none.
size_t CharacterLength(std::string_view text) {
  const auto byte = [&](size_t at) { return static_cast<unsigned char>(text[at]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return 1;
  const size_t length = lead >= 0xC2 && lead < 0xE0   ? 2
                        : lead >= 0xE0 && lead < 0xF0 ? 3
                        : lead >= 0xF0 && lead < 0xF5 ? 4
                                                      : 0;
  if (length == 0 || text.size() < length) return 0;
  for (size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) return 0;
  }
  // Longer than needed, a half of a pair, or beyond the last character.
  const bool too_low = (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xF0 && byte(1) < 0x90);
  const bool too_high = (lead == 0xED && byte(1) >= 0xA0) || (lead == 0xF4 && byte(1) >= 0x90);
  return too_low || too_high ? 0 : length;
}

std::string WithReplacements(std::string_view text) {
  constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const size_t length = CharacterLength(text);
    out += length == 0 ? kReplacement : text.substr(0, length);
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return out;
}

// 0, or the number of the error that kept a part of the text from being written.
int Write(int file, std::string_view text) {
  const std::string bytes = IsUtf8(text) ? std::string(text) : WithReplacements(text);
  for (size_t done = 0; done < bytes.size();) {
    const ssize_t written = write(file, bytes.data() + done, bytes.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    done += static_cast<size_t>(written);
  }
  return 0;
}

}  // namespace

void Print(std::string_view text) {
  const int problem = Write(STDOUT_FILENO, text);
  if (problem == 0) return;
  throw CommandError("the output cannot be written: " + std::system_category().message(problem));
}

void PrintAside(std::string_view text) {
  Write(STDERR_FILENO, text);
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const size_t length = CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

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

std::string PlainText(const Value& value) {
  if (value.kind() != Value::Kind::kDecimal) return ValueText(value);
  return value.decimal().Normalized().ToText();
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

}  // namespace tavcc
