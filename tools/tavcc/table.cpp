#include "tavcc/table.h"

#include <algorithm>
#include <cstdint>

namespace tavcc {
namespace {

struct Range {
  uint32_t first;
  uint32_t last;
};

// East Asian Wide and Fullwidth of the Unicode Standard, as far as such texts use them.
constexpr Range kWide[] = {
    {0x1100, 0x115F},    // Hangul Jamo
    {0x2E80, 0x303E},    // CJK radicals, CJK symbols and punctuation
    {0x3041, 0x33FF},    // Kana to CJK compatibility
    {0x3400, 0x4DBF},    // CJK extension A
    {0x4E00, 0x9FFF},    // CJK unified ideographs
    {0xA000, 0xA4CF},    // Yi
    {0xAC00, 0xD7A3},    // Hangul syllables
    {0xF900, 0xFAFF},    // CJK compatibility ideographs
    {0xFE30, 0xFE4F},    // CJK compatibility forms
    {0xFF00, 0xFF60},    // Fullwidth forms
    {0xFFE0, 0xFFE6},    // Fullwidth signs
    {0x1F300, 0x1F64F},  // pictographs
    {0x20000, 0x3FFFD},  // CJK extensions B and later
};
constexpr Range kCombining[] = {{0x0300, 0x036F}, {0x200B, 0x200F}, {0xFE00, 0xFE0F}};

template <size_t N>
bool IsIn(uint32_t code, const Range (&ranges)[N]) {
  return std::any_of(std::begin(ranges), std::end(ranges),
                     [&](const Range& range) { return range.first <= code && code <= range.last; });
}

// The code point at `at`, which moves behind it. A broken byte counts as one character.
uint32_t NextCodePoint(std::string_view text, size_t& at) {
  const auto lead = static_cast<unsigned char>(text[at++]);
  int more = 0;
  uint32_t code = lead;
  if (lead >= 0xF0) {
    more = 3;
    code = lead & 0x07U;
  } else if (lead >= 0xE0) {
    more = 2;
    code = lead & 0x0FU;
  } else if (lead >= 0xC0) {
    more = 1;
    code = lead & 0x1FU;
  }
  for (; more > 0 && at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80;
       --more) {
    code = code << 6U | (static_cast<unsigned char>(text[at++]) & 0x3FU);
  }
  return code;
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
    const uint32_t code = NextCodePoint(utf8, at);
    width += IsIn(code, kCombining) ? 0 : IsIn(code, kWide) ? 2 : 1;
  }
  return width;
}

std::string Padded(std::string_view utf8, size_t width) {
  const size_t used = DisplayWidth(utf8);
  return std::string(utf8) + std::string(used < width ? width - used : 0, ' ');
}

std::string Table::ToText(std::string_view indent) const {
  const size_t columns = rows_.front().size();
  std::vector<size_t> widths(columns, 0);
  std::vector<bool> numeric(columns, rows_.size() > 1);
  for (size_t r = 0; r < rows_.size(); ++r) {
    for (size_t c = 0; c < columns; ++c) {
      widths[c] = std::max(widths[c], DisplayWidth(rows_[r][c]));
      if (r > 0 && !rows_[r][c].empty()) numeric[c] = numeric[c] && IsNumber(rows_[r][c]);
    }
  }
  std::string text;
  const auto add_line = [&](const auto& cell_text) {
    std::string line(indent);
    for (size_t c = 0; c < columns; ++c) {
      if (c > 0) line += "  ";
      line += cell_text(c);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + "\n";
  };
  for (size_t r = 0; r < rows_.size(); ++r) {
    add_line([&](size_t c) {
      const std::string& cell = rows_[r][c];
      if (!numeric[c]) return Padded(cell, widths[c]);
      return std::string(widths[c] - DisplayWidth(cell), ' ') + cell;
    });
    if (r == 0) add_line([&](size_t c) { return std::string(widths[c], '-'); });
  }
  return text;
}

}  // namespace tavcc
