// Rows as a text table with aligned columns.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tavcc {

// Columns that a terminal needs for the text, by Unicode's data: 2 for a wide character (Chinese,
// full-width forms), 0 for a combining one, 1 for any other.
size_t DisplayWidth(std::string_view utf8);

// The text with blanks behind it up to the width.
std::string Padded(std::string_view utf8, size_t width);

// What NULL is shown as.
inline constexpr std::string_view kNullText = "NULL";

// How wide the columns of some rows are, the first of which is their header. Columns that hold
// nothing but numbers are aligned to the right.
class TableLayout {
 public:
  explicit TableLayout(std::span<const std::vector<std::string>> rows);

  const std::vector<size_t>& widths() const { return widths_; }
  // Filled up to the column's width, where it is not wider.
  std::string Cell(const std::string& cell, size_t column) const;
  // A row, and the line below the header; without an end.
  std::string Line(const std::vector<std::string>& cells) const;
  std::string Rule() const;

 private:
  std::vector<size_t> widths_;
  std::vector<bool> numeric_;
};

class Table {
 public:
  explicit Table(std::vector<std::string> header) : rows_{std::move(header)} {}
  // As many cells as the header has.
  void Add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
  // Header, a rule, and the rows; each line begins with `indent` and ends with a line feed.
  std::string ToText(std::string_view indent = "") const;

 private:
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace tavcc
