// Rows as a text table with aligned columns.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavcc {

// Columns that a terminal needs for the text: 2 for a wide character (Chinese, full-width forms),
// 0 for a combining one, 1 for any other.
size_t DisplayWidth(std::string_view utf8);

// The text with blanks behind it up to the width.
std::string Padded(std::string_view utf8, size_t width);

class Table {
 public:
  explicit Table(std::vector<std::string> header) : rows_{std::move(header)} {}
  // As many cells as the header has.
  void Add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
  // Header, a rule, and the rows; each line begins with `indent` and ends with a line feed. Columns
  // that hold nothing but numbers are aligned to the right.
  std::string ToText(std::string_view indent = "") const;

 private:
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace tavcc
