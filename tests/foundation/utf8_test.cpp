// Texts in UTF-8 as tables: the characters of a text, bytes that are none, and UTF-16's units.
#include "foundation/utf8.h"

#include <gtest/gtest.h>

#include <vector>

namespace tavcc {
namespace {

struct CharacterCase {
  std::string_view text;
  uint32_t code;
  size_t size;
  bool whole = true;  // no half of a pair
};

// The borders of each length, from RFC 3629's table of well-formed sequences.
constexpr CharacterCase kCharacters[] = {
    {"a", 0x61, 1},
    {"\x7F", 0x7F, 1},
    {"\xC2\x80", 0x80, 2},
    {"\xDF\xBF", 0x7FF, 2},
    {"\xE0\xA0\x80", 0x800, 3},
    {"\xE5\x8D\x95x", 0x5355, 3},
    {"\xED\x9F\xBF", 0xD7FF, 3},
    {"\xED\xA0\x80", 0xD800, 3, false},
    {"\xED\xBF\xBF", 0xDFFF, 3, false},
    {"\xEE\x80\x80", 0xE000, 3},
    {"\xEF\xBF\xBF", 0xFFFF, 3},
    {"\xF0\x90\x80\x80", 0x10000, 4},
    {"\xF0\x9F\x98\x80", 0x1F600, 4},
    {"\xF4\x8F\xBF\xBF", 0x10FFFF, 4},
};

TEST(Utf8, ReadsACharacter) {
  for (const CharacterCase& row : kCharacters) {
    SCOPED_TRACE(row.text);
    const Utf8Character read = CharacterAt(row.text, 0);
    EXPECT_EQ(read.code, row.code);
    EXPECT_EQ(read.size, row.size);
    EXPECT_EQ(WholeCharacterAt(row.text, 0).size, row.whole ? row.size : 0);
    EXPECT_EQ(IsUtf8(row.text), row.whole);
    std::string written;
    AppendUtf8(written, row.code);
    EXPECT_EQ(written, row.text.substr(0, row.size));
  }
}

struct BrokenCase {
  std::string_view bytes;
  std::string_view repaired;
};

constexpr BrokenCase kBroken[] = {
    {"\x80", "\uFFFD"},
    {"\xC1\xBF", "\uFFFD\uFFFD"},                      // longer than needed
    {"\xE0\x9F\xBF", "\uFFFD\uFFFD\uFFFD"},            // likewise
    {"\xF0\x8F\xBF\xBF", "\uFFFD\uFFFD\uFFFD\uFFFD"},  // likewise
    {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond the last
    {"\xF5\x80\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},  // likewise
    {"\xE5\x8D", "\uFFFD\uFFFD"},                      // cut off
    {"\xE5x\x95", "\uFFFDx\uFFFD"},                    // interrupted
    {"a\xC3(\xE5\x8D\x95", "a\uFFFD(\xE5\x8D\x95"},    // among others
};

TEST(Utf8, NoCharacterIsAReplacementForEachByte) {
  for (const BrokenCase& row : kBroken) {
    SCOPED_TRACE(row.repaired);
    EXPECT_FALSE(IsUtf8(row.bytes));
    EXPECT_EQ(RepairedUtf8(row.bytes), row.repaired);
    EXPECT_TRUE(IsUtf8(row.repaired));
    EXPECT_EQ(RepairedUtf8(row.repaired), row.repaired);
  }
  EXPECT_EQ(CharacterAt("\xE5\x8D", 0).size, 0u);
}

TEST(Utf8, CountsCharacters) {
  EXPECT_EQ(CharacterCount(""), 0u);
  EXPECT_EQ(CharacterCount("a\xE5\x8D\x95\xF0\x9F\x98\x80"), 3u);
}

std::vector<uint32_t> UnitsOf(std::string_view text) {
  std::vector<uint32_t> units;
  ForEachUnit(
      text, [](char) { return kReplacementCharacter; },
      [&](uint32_t unit) { units.push_back(unit); });
  return units;
}

std::string TextOf(const std::vector<uint32_t>& units) {
  return TextOfUnits(units.size(), [&](size_t i) { return units[i]; });
}

TEST(Utf8, GoesToUtf16AndBack) {
  const std::vector<uint32_t> units = {0x61, 0x5355, 0xD83D, 0xDE00, 0xDBFF, 0xDFFF};
  const std::string text = "a\xE5\x8D\x95\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF";
  EXPECT_EQ(UnitsOf(text), units);
  EXPECT_EQ(TextOf(units), text);
  EXPECT_EQ(UnitsOf("a\xC3(").at(1), 0xFFFDu);
}

TEST(Utf8, HalvesOfPairsBecomeReplacements) {
  EXPECT_EQ(TextOf({0xD83D}), "\uFFFD");
  EXPECT_EQ(TextOf({0xDE00, 0xD83D, 0x61}), "\uFFFD\uFFFDa");
  EXPECT_EQ(TextOf({0xD83D, 0xD83D, 0xDE00}), "\uFFFD\xF0\x9F\x98\x80");
}

}  // namespace
}  // namespace tavcc
