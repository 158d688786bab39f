// Folding and comparison.
#include "embedded/functions/collation.h"

#include <algorithm>
#include <array>

#include "embedded/functions/functions.h"
#include "embedded/types/stored_view.h"
#include "embedded/types/text_units.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql {
namespace internal {
namespace {

// Capitals of one block that stand `step` apart, each with its small letter `offset` behind it.
struct LetterRange {
  uint32_t first, last;
  uint32_t step;
  uint32_t offset;
};

// clang-format off
constexpr auto kCapitals = std::to_array<LetterRange>({
    {0x41, 0x5a, 1, 32},      // A-Z
    {0xc0, 0xd6, 1, 32},      // À-Ö
    {0xd8, 0xde, 1, 32},      // Ø-Þ
    {0x100, 0x12e, 2, 1},     // Latin Extended-A, capital and small by turns
    {0x132, 0x136, 2, 1},
    {0x139, 0x147, 2, 1},
    {0x14a, 0x176, 2, 1},
    {0x179, 0x17d, 2, 1},
    {0x391, 0x3a1, 1, 32},    // Greek
    {0x3a3, 0x3ab, 1, 32},
    {0x400, 0x40f, 1, 80},    // Cyrillic
    {0x410, 0x42f, 1, 32},
    {0xff21, 0xff3a, 1, 32},  // full-width A-Z
});
// clang-format on

constexpr std::array<unsigned char, 128> kAsciiFold = [] {
  std::array<unsigned char, 128> fold{};
  for (size_t i = 0; i < fold.size(); ++i) {
    fold[i] = static_cast<unsigned char>(i >= 'A' && i <= 'Z' ? i + 32 : i);
  }
  return fold;
}();

constexpr unsigned char At(std::string_view text, size_t at) {
  return static_cast<unsigned char>(text[at]);
}

// What is left over of the longer text against the blanks that the shorter one is padded with.
int CompareWithBlanks(std::string_view rest) {
  for (size_t at = 0; at < rest.size();) {
    const Utf8Character character = FoldedAt(rest, at);
    if (character.code != ' ') return character.code < ' ' ? -1 : 1;
    at += character.size;
  }
  return 0;
}

}  // namespace

uint32_t LowerOf(uint32_t code) {
  for (const LetterRange& range : kCapitals) {
    if (code < range.first) return code;
    if (code <= range.last)
      return (code - range.first) % range.step == 0 ? code + range.offset : code;
  }
  return code;
}

uint32_t UpperOf(uint32_t code) {
  for (const LetterRange& range : kCapitals) {
    const uint32_t capital = code - range.offset;
    if (code >= range.offset && capital >= range.first && capital <= range.last &&
        (capital - range.first) % range.step == 0) {
      return capital;
    }
  }
  return code;
}

uint32_t FoldOf(uint32_t code) {
  constexpr uint32_t kFirstFullWidth = 0xff01, kLastFullWidth = 0xff5e, kToHalfWidth = 0xfee0;
  constexpr uint32_t kIdeographicBlank = 0x3000;
  if (code >= kFirstFullWidth && code <= kLastFullWidth) code -= kToHalfWidth;
  if (code == kIdeographicBlank) return ' ';
  return LowerOf(code);
}

Utf8Character FoldedAt(std::string_view text, size_t at) {
  const unsigned char byte = At(text, at);
  if (byte < 0x80) return {kAsciiFold[byte], 1};
  Utf8Character character = DecodeAt(text, at);
  character.code = FoldOf(character.code);
  return character;
}

size_t MatchAt(std::string_view text, size_t at, std::string_view pattern) {
  const size_t start = at;
  for (size_t p = 0; p < pattern.size();) {
    if (at >= text.size()) return std::string_view::npos;
    const Utf8Character a = FoldedAt(text, at);
    const Utf8Character b = FoldedAt(pattern, p);
    if (a.code != b.code) return std::string_view::npos;
    at += a.size;
    p += b.size;
  }
  return at - start;
}

}  // namespace internal

int CompareText(std::string_view a, std::string_view b) {
  using internal::FoldedAt;
  // Equal bytes fold equally; go back to where the first differing character begins.
  size_t same = static_cast<size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
  const auto is_inside = [](std::string_view text, size_t at) {
    return at < text.size() && (internal::At(text, at) & 0xc0) == 0x80;
  };
  while (same > 0 && (is_inside(a, same) || is_inside(b, same))) --same;
  size_t i = same, j = same;
  while (i < a.size() && j < b.size()) {
    const Utf8Character x = FoldedAt(a, i);
    const Utf8Character y = FoldedAt(b, j);
    if (x.code != y.code) return x.code < y.code ? -1 : 1;
    i += x.size;
    j += y.size;
  }
  if (i < a.size()) return internal::CompareWithBlanks(a.substr(i));
  return -internal::CompareWithBlanks(b.substr(j));
}

int CompareStored(const StoredValue& a, const StoredValue& b, const SqlType& type) {
  if (IsText(type.kind) || type.kind == TypeKind::kUniqueIdentifier) {
    return CompareText(a.text(), b.text());
  }
  if (IsApproximate(type.kind)) return a.real() < b.real() ? -1 : a.real() > b.real() ? 1 : 0;
  if (IsBinary(type.kind)) return std::clamp(a.blob().compare(b.blob()), -1, 1);
  return WideInteger::Compare(CoefficientOf(FromStored(a)), CoefficientOf(FromStored(b)));
}

}  // namespace tavcc::sql
