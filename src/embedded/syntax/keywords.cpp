// A hash table over the keywords, made when the program is compiled.
#include "embedded/syntax/keywords.h"

#include <array>
#include <cstddef>

namespace tavcc::sql {
namespace {

struct Entry {
  std::string_view word;
  Keyword keyword = Keyword::kNone;
};

// The names of types that take arguments in brackets.
// clang-format off
#define TAVCC_SQL_TYPE_NAMES(X) \
  X(BINARY) X(CHAR) X(CHARACTER) X(DATETIME2) X(DATETIMEOFFSET) X(DEC) X(DECIMAL) X(FLOAT) \
  X(NCHAR) X(NUMERIC) X(NVARCHAR) X(TIME) X(VARBINARY) X(VARCHAR)

constexpr Entry kEntries[] = {
#define TAVCC_SQL_ENTRY(word) {#word, Keyword::k##word},
    TAVCC_SQL_RESERVED_WORDS(TAVCC_SQL_ENTRY)
#undef TAVCC_SQL_ENTRY
#define TAVCC_SQL_ENTRY(word) {#word, Keyword::kTypeName},
    TAVCC_SQL_TYPE_NAMES(TAVCC_SQL_ENTRY)
#undef TAVCC_SQL_ENTRY
};
// clang-format on

constexpr size_t kShortest = 2, kLongest = 30;  // less than 32: see kLengths
constexpr size_t kSlots = 1024;                 // a power of two, several times the number of words

constexpr unsigned Upper(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 'a' && byte <= 'z' ? byte - 32u : byte;
}

// Looks at four letters only: a word is hashed far more often than it is a keyword.
constexpr size_t Hash(std::string_view word) {
  const unsigned first = Upper(word.front()), last = Upper(word.back());
  const unsigned second = Upper(word[1]), middle = Upper(word[word.size() / 2]);
  return (word.size() * 131 + first * 31 + second * 17 + middle * 7 + last * 57) & (kSlots - 1);
}

// For each pair of first letters, the lengths of the keywords that begin so. Most names of columns
// and tables are told from all keywords by it alone.
constexpr size_t Pair(std::string_view word) {
  return (Upper(word[0]) & 31u) << 5 | (Upper(word[1]) & 31u);
}

constexpr auto kLengths = [] {
  std::array<uint32_t, 1024> lengths{};
  for (const Entry& entry : kEntries) lengths[Pair(entry.word)] |= 1u << entry.word.size();
  return lengths;
}();

constexpr auto kTable = [] {
  std::array<uint8_t, kSlots> table{};  // 1 + index of the entry, 0 for none
  for (size_t i = 0; i < std::size(kEntries); ++i) {
    size_t at = Hash(kEntries[i].word);
    while (table[at] != 0) at = (at + 1) & (kSlots - 1);
    table[at] = static_cast<uint8_t>(i + 1);
  }
  return table;
}();
static_assert(std::size(kEntries) < 255);

bool SameWord(std::string_view word, std::string_view upper) {
  if (word.size() != upper.size()) return false;
  for (size_t i = 0; i < word.size(); ++i)
    if (Upper(word[i]) != static_cast<unsigned char>(upper[i])) return false;
  return true;
}

}  // namespace

Keyword FindKeyword(std::string_view word) {
  if (word.size() < kShortest || word.size() > kLongest) return Keyword::kNone;
  if ((kLengths[Pair(word)] >> word.size() & 1) == 0) return Keyword::kNone;
  for (size_t at = Hash(word); kTable[at] != 0; at = (at + 1) & (kSlots - 1)) {
    const Entry& entry = kEntries[kTable[at] - 1u];
    if (SameWord(word, entry.word)) return entry.keyword;
  }
  return Keyword::kNone;
}

std::string_view KeywordText(Keyword keyword) {
  for (const Entry& entry : kEntries)
    if (entry.keyword == keyword) return entry.word;
  return {};
}

}  // namespace tavcc::sql
