#include "tavcc/table.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <span>

#include "foundation/utf8.h"
#include "tavcc/unicode_widths.h"

namespace tavcc {
namespace {

bool IsIn(uint32_t code, std::span<const CodeRange> ranges) {
  const auto above = std::ranges::upper_bound(ranges, code, {}, &CodeRange::first);
  return above != ranges.begin() && code <= std::prev(above)->last;
}

// "01.001" is an item's number, not a quantity.
bool IsNumber(const std::string& cell) {
  const bool code = cell.size() > 1 && cell[0] == '0' && cell[1] != '.';
  return !code && !cell.empty() && cell.find_first_not_of("+-.0123456789") == std::string::npos &&
         cell.find_first_of("0123456789") != std::string::npos;
}

}  // namespace

size_t DisplayWidth(std::string_view utf8) {
  size_t width = 0;
  for (size_t at = 0; at < utf8.size();) {
    const auto [code, size] = CharacterAt(utf8, at);
    at += std::max<size_t>(size, 1);
    // The first of the table's; what lies below is plain text, most of all.
    const bool plain = code < kZeroWidthCharacters[0].first;
    width += plain ? 1 : IsIn(code, kZeroWidthCharacters) ? 0 : IsIn(code, kWideCharacters) ? 2 : 1;
  }
  return width;
}

std::string Padded(std::string_view utf8, size_t width) {
  const size_t used = DisplayWidth(utf8);
  return std::string(utf8) + std::string(used < width ? width - used : 0, ' ');
}

namespace {

// Whether all cells but the header's are numbers, where any is; empty ones and NULL are none.
bool IsNumeric(std::span<const std::vector<std::string>> rows, size_t column) {
  bool any_null = false, any_number = false;
  for (const std::vector<std::string>& row : rows.subspan(1)) {
    const std::string& cell = row[column];
    const bool number = IsNumber(cell);
    any_number = any_number || number;
    any_null = any_null || cell == kNullText;
    if (!number && !cell.empty() && cell != kNullText) return false;
  }
  return rows.size() > 1 && (any_number || !any_null);
}

}  // namespace

TableLayout::TableLayout(std::span<const std::vector<std::string>> rows) {
  for (size_t column = 0; column < rows.front().size(); ++column) {
    size_t& width = widths_.emplace_back(0);
    for (const auto& row : rows) width = std::max(width, DisplayWidth(row[column]));
    numeric_.push_back(IsNumeric(rows, column));
  }
}

std::string TableLayout::Cell(const std::string& cell, size_t column) const {
  if (!numeric_[column]) return Padded(cell, widths_[column]);
  const size_t used = DisplayWidth(cell);
  return std::string(used < widths_[column] ? widths_[column] - used : 0, ' ') + cell;
}

std::string TableLayout::Line(const std::vector<std::string>& cells) const {
  std::string line;
  for (size_t c = 0; c < cells.size(); ++c) {
    if (c > 0) line += "  ";
    line += Cell(cells[c], c);
  }
  return line.erase(line.find_last_not_of(' ') + 1);
}

std::string TableLayout::Rule() const {
  std::vector<std::string> dashes;
  for (const size_t width : widths_) dashes.emplace_back(width, '-');
  std::string line;
  for (const std::string& dash : dashes) line += (line.empty() ? "" : "  ") + dash;
  return line;
}

std::string Table::ToText(std::string_view indent) const {
  const TableLayout layout(rows_);
  std::string text;
  const auto add = [&](const std::string& line) { text += std::string(indent) + line + "\n"; };
  for (const std::vector<std::string>& row : rows_) {
    add(layout.Line(row));
    if (&row == &rows_.front()) add(layout.Rule());
  }
  return text;
}

}  // namespace tavcc
