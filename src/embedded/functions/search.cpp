// Searching in text: LIKE, PATINDEX, CHARINDEX, REPLACE. All compare by the collation's folding.
#include <array>
#include <optional>
#include <string>

#include "embedded/functions/collation.h"
#include "embedded/functions/support.h"
#include "embedded/types/text_units.h"

namespace tavcc::sql::internal {
namespace {

constexpr size_t kNone = std::string_view::npos;

// A pattern of LIKE, read one element at a time: a character, "_", "%", or a set in brackets.
class Pattern {
 public:
  Pattern(std::string_view text, std::optional<uint32_t> escape) : text_(text), escape_(escape) {}

  size_t size() const { return text_.size(); }
  bool IsAnyText(size_t at) const { return at < text_.size() && text_[at] == '%' && !Escaped(at); }

  // Whether the element at `at` takes the folded character; *next is where the following one
  // begins.
  bool MatchesElement(size_t at, uint32_t code, size_t* next) const {
    const Utf8Character element = FoldedAt(text_, at);
    if (Escaped(at) && at + element.size < text_.size()) {
      const Utf8Character literal = DecodeAt(text_, at + element.size);
      *next = at + element.size + literal.size;
      return FoldOf(literal.code) == code;
    }
    if (text_[at] == '[') return MatchesSet(at, code, next);
    *next = at + element.size;
    return element.code == code || text_[at] == '_';
  }

 private:
  bool Escaped(size_t at) const {
    return escape_.has_value() && DecodeAt(text_, at).code == *escape_;
  }

  // "[a-z_]", "[^0-9]". A bracket without its end takes nothing.
  bool MatchesSet(size_t at, uint32_t code, size_t* next) const {
    size_t i = at + 1;
    const bool negated = i < text_.size() && text_[i] == '^';
    if (negated) ++i;
    bool found = false;
    for (bool first = true; i < text_.size() && (first || text_[i] != ']'); first = false) {
      if (text_[i] == ']' && !negated && first && text_.find(']', i + 1) == kNone) break;
      const uint32_t low = Element(&i);
      uint32_t high = low;
      if (i + 1 < text_.size() && text_[i] == '-' && text_[i + 1] != ']') {
        ++i;
        high = Element(&i);
      }
      found = found || (code >= low && code <= high);
    }
    if (i >= text_.size()) {
      *next = text_.size();
      return false;
    }
    *next = i + 1;
    return found != negated;
  }

  uint32_t Element(size_t* at) const {
    Utf8Character element = DecodeAt(text_, *at);
    if (Escaped(*at) && *at + element.size < text_.size()) {
      *at += element.size;
      element = DecodeAt(text_, *at);
    }
    *at += element.size;
    return FoldOf(element.code);
  }

  std::string_view text_;
  std::optional<uint32_t> escape_;
};

// Goes back to the last "%" only: an earlier one could take no text that this one cannot.
bool Matches(std::string_view text, const Pattern& pattern, size_t p) {
  size_t t = 0;
  size_t retry_pattern = kNone, retry_text = 0;
  while (t < text.size() || p < pattern.size()) {
    if (pattern.IsAnyText(p)) {
      retry_pattern = ++p;
      retry_text = t;
      continue;
    }
    if (t < text.size() && p < pattern.size()) {
      const Utf8Character character = FoldedAt(text, t);
      size_t next = p;
      if (pattern.MatchesElement(p, character.code, &next)) {
        p = next;
        t += character.size;
        continue;
      }
    }
    if (retry_pattern == kNone || retry_text >= text.size()) return false;
    retry_text += DecodeAt(text, retry_text).size;
    t = retry_text;
    p = retry_pattern;
  }
  return true;
}

// Nothing, with the error set, when the escape is not one character.
bool ReadEscape(Context context, sqlite3_value* value, std::optional<uint32_t>* escape) {
  const std::string_view text = TextOf(value);
  const Utf8Character first = text.empty() ? Utf8Character{} : DecodeAt(text, 0);
  if (text.empty() || first.size != text.size()) {
    Fail(context, errors::kInvalidEscapeCharacter, {text, "LIKE"});
    return false;
  }
  *escape = first.code;
  return true;
}

// `padded`: of char and varchar, whose trailing blanks in the text (not in the pattern) do not
// count.
template <bool padded>
void Like(Context context, int count, Arguments arguments) {
  std::optional<uint32_t> escape;
  if (count == 3 && !ReadEscape(context, arguments[2], &escape)) return;
  const Pattern pattern(TextOf(arguments[1]), escape);
  std::string_view text = TextOf(arguments[0]);
  bool matches = Matches(text, pattern, 0);
  while (padded && !matches && text.ends_with(' ')) {
    text.remove_suffix(1);
    matches = Matches(text, pattern, 0);
  }
  sqlite3_result_int(context, matches ? 1 : 0);
}

void PatternIndex(Context context, int, Arguments arguments) {
  const std::string_view pattern_text = TextOf(arguments[0]);
  const std::string_view text = TextOf(arguments[1]);
  const Pattern pattern(pattern_text, std::nullopt);
  size_t after = 0;
  while (pattern.IsAnyText(after)) ++after;
  int64_t position = 1;
  for (size_t at = 0;; ++position) {
    if (Matches(text.substr(at), pattern, after)) return sqlite3_result_int64(context, position);
    if (after == 0 || at >= text.size()) break;
    const size_t size = DecodeAt(text, at).size;
    if (size == 4) ++position;
    at += size;
  }
  sqlite3_result_int64(context, 0);
}

// The byte at which `what` is found from `at` on, and the size of what matched.
size_t Find(std::string_view text, size_t at, std::string_view what, size_t* size) {
  while (at < text.size()) {
    *size = MatchAt(text, at, what);
    if (*size != kNone) return at;
    at += DecodeAt(text, at).size;
  }
  return kNone;
}

void CharacterIndex(Context context, int count, Arguments arguments) {
  const std::string_view what = TextOf(arguments[0]);
  const std::string_view text = TextOf(arguments[1]);
  const int64_t start = count == 3 ? sqlite3_value_int64(arguments[2]) : 1;
  const size_t from = start > 1 ? ByteOfUnit(text, static_cast<size_t>(start - 1)) : 0;
  size_t size = 0;
  const size_t found = what.empty() ? kNone : Find(text, from, what, &size);
  if (found == kNone) return sqlite3_result_int(context, 0);
  sqlite3_result_int64(context, static_cast<int64_t>(CountUnits(text.substr(0, found))) + 1);
}

void Replace(Context context, int, Arguments arguments) {
  const std::string_view text = TextOf(arguments[0]);
  const std::string_view what = TextOf(arguments[1]);
  const std::string_view with = TextOf(arguments[2]);
  std::string result;
  size_t at = 0;
  while (!what.empty()) {
    size_t size = 0;
    const size_t found = Find(text, at, what, &size);
    if (found == kNone) break;
    result.append(text.substr(at, found - at)).append(with);
    at = found + size;
  }
  if (at == 0) return sqlite3_result_value(context, arguments[0]);
  ReturnText(context, result.append(text.substr(at)));
}

constexpr auto kSearchFunctions = std::to_array<ScalarEntry>({
    {"t_like", 2, Strict<Like<false>>},
    {"t_like", 3, Strict<Like<false>>},
    {"t_like_char", 2, Strict<Like<true>>},
    {"t_like_char", 3, Strict<Like<true>>},
    {"t_patindex", 2, Strict<PatternIndex>},
    {"t_charindex", 2, Strict<CharacterIndex>},
    {"t_charindex", 3, Strict<CharacterIndex>},
    {"t_replace", 3, Strict<Replace>},
});

}  // namespace

std::span<const ScalarEntry> SearchFunctions() {
  return kSearchFunctions;
}

}  // namespace tavcc::sql::internal
