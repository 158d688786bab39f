#include "tavcc/sql/error_place.h"

#include <fmt/core.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "embedded/syntax/scanner.h"
#include "foundation/text.h"
#include "tavcc/sql/words.h"

namespace tavcc {
namespace {

using sql::TokenKind;

// What stands between single or double quotation marks: names and words of the text.
std::vector<std::string_view> QuotedWords(std::string_view text) {
  std::vector<std::string_view> words;
  for (size_t at = 0; (at = text.find_first_of("'\"", at)) != std::string_view::npos;) {
    const size_t end = text.find(text[at], at + 1);
    if (end == std::string_view::npos) break;
    if (end > at + 1) words.push_back(text.substr(at + 1, end - at - 1));
    at = end + 1;
  }
  return words;
}

// Where the word stands by itself, without regard to letter case of ASCII.
size_t FindWord(std::string_view text, std::string_view word) {
  for (size_t at = 0; at + word.size() <= text.size(); ++at) {
    const size_t end = at + word.size();
    if (!EqualsIgnoringCase(text.substr(at, word.size()), word)) continue;
    const bool begins = at == 0 || !IsPartOfWord(text[at - 1]) || !IsPartOfWord(word.front());
    const bool ends = end == text.size() || !IsPartOfWord(text[end]) || !IsPartOfWord(word.back());
    if (begins && ends) return at;
  }
  return std::string_view::npos;
}

std::vector<std::string_view> PartsOf(std::string_view name) {
  std::vector<std::string_view> parts;
  for (size_t at = 0; at <= name.size();) {
    const size_t end = std::min(name.find('.', at), name.size());
    parts.push_back(name.substr(at, end - at));
    at = end + 1;
  }
  return parts;
}

// The text of a batch, cut into tokens: what stands in a comment is in none of them.
class TokenizedText {
 public:
  explicit TokenizedText(std::string_view text) : text_(text) {
    sql::Scanner scanner(text_);
    for (auto token = scanner.Next(); token.kind != TokenKind::kEnd; token = scanner.Next()) {
      tokens_.push_back(token);
    }
  }

  // Where the name begins at `from` or behind it, else where a text has the word in it.
  std::optional<size_t> Find(std::string_view word, size_t from) const {
    const std::vector<std::string_view> parts = PartsOf(word);
    if (const auto at = FindName(parts, from)) return at;
    if (parts.size() > 1) {
      if (const auto at = FindName({parts.back()}, from)) return at;
    }
    for (const sql::RawToken& token : tokens_) {
      if (token.begin < from || !IsText(token)) continue;
      if (const auto at = FindInside(token, word)) return at;
    }
    return std::nullopt;
  }

  // Where the word stands in a text that is executed.
  std::optional<size_t> FindExecuted(std::string_view word) const {
    for (size_t i = 0; i < tokens_.size(); ++i) {
      if (!IsText(tokens_[i]) || !IsExecuted(i)) continue;
      if (const auto at = FindInside(tokens_[i], word)) return at;
    }
    return std::nullopt;
  }

  // Whether the batch executes texts, of whatever they are made.
  bool Executes() const {
    for (size_t i = 0; i < tokens_.size(); ++i) {
      if (IsExecuted(i)) return true;
    }
    return false;
  }

 private:
  static bool IsText(const sql::RawToken& token) {
    return token.kind == TokenKind::kText || token.kind == TokenKind::kNationalText ||
           token.kind == TokenKind::kUnclosedQuote;
  }

  std::string_view TextOf(const sql::RawToken& token) const {
    return text_.substr(token.begin, token.end - token.begin);
  }

  bool Is(size_t token, std::string_view word) const {
    return token < tokens_.size() && EqualsIgnoringCase(TextOf(tokens_[token]), word);
  }

  // As messages write it, without brackets or quotation marks.
  std::string_view NameOf(const sql::RawToken& token) const {
    const std::string_view text = TextOf(token);
    return token.kind == TokenKind::kQuotedName ? text.substr(1, text.size() - 2) : text;
  }

  bool IsExecuted(size_t token) const {
    if (token == 0) return false;
    if (Is(token - 1, "sp_executesql")) return true;
    return token > 1 && Is(token - 1, "(") && (Is(token - 2, "exec") || Is(token - 2, "execute"));
  }

  bool IsName(size_t token, const std::vector<std::string_view>& parts) const {
    if (token + 2 * (parts.size() - 1) >= tokens_.size()) return false;
    for (size_t i = 0; i < parts.size(); ++i, token += 2) {
      if (i > 0 && !Is(token - 1, ".")) return false;
      if (!EqualsIgnoringCase(NameOf(tokens_[token]), parts[i])) return false;
    }
    return true;
  }

  // A name that is given here, or that only tells whose another one is, is the last to be meant.
  std::optional<size_t> FindName(const std::vector<std::string_view>& parts, size_t from) const {
    std::optional<size_t> second;
    for (size_t i = 0; i < tokens_.size(); ++i) {
      if (tokens_[i].begin < from || !IsName(i, parts)) continue;
      const bool given = i > 0 && Is(i - 1, "as");
      if (!given && !Is(i + 2 * parts.size() - 1, ".")) return tokens_[i].begin;
      if (!second) second = tokens_[i].begin;
    }
    return second;
  }

  std::optional<size_t> FindInside(const sql::RawToken& token, std::string_view word) const {
    const size_t at = FindWord(TextOf(token), word);
    if (at == std::string_view::npos) return std::nullopt;
    return token.begin + at;
  }

  const std::string_view text_;
  std::vector<sql::RawToken> tokens_;
};

// A place in a text of several lines.
struct Spot {
  size_t line = 0;
  size_t column = 0;
};

Spot SpotAt(std::string_view text, size_t at) {
  const std::string_view before = text.substr(0, at);
  const size_t start = before.rfind('\n');
  return {static_cast<size_t>(std::ranges::count(before, '\n')),
          start == std::string_view::npos ? at : at - start - 1};
}

std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines;
  for (size_t at = 0; at <= text.size();) {
    const size_t end = std::min(text.find('\n', at), text.size());
    lines.emplace_back(text.substr(at, end - at));
    at = end + 1;
  }
  return lines;
}

size_t StartOfLine(std::string_view text, size_t line) {
  size_t at = 0;
  for (; line > 0; --line) at = text.find('\n', at) + 1;
  return at;
}

// What one of the words names, from the line on; else the beginning of the line.
std::optional<Spot> FindSpot(std::string_view text, const std::vector<std::string>& lines,
                             size_t line, const std::vector<std::string_view>& words,
                             bool or_line) {
  if (line >= lines.size()) return std::nullopt;
  const TokenizedText tokens(text);
  for (const std::string_view word : words) {
    if (const auto at = tokens.Find(word, StartOfLine(text, line))) return SpotAt(text, *at);
  }
  const size_t first = lines[line].find_first_not_of(" \t\r");
  if (!or_line || first == std::string::npos) return std::nullopt;
  return Spot{line, first};
}

std::optional<Spot> FindExecutedSpot(std::string_view text,
                                     const std::vector<std::string_view>& words) {
  const TokenizedText tokens(text);
  for (const std::string_view word : words) {
    if (const auto at = tokens.FindExecuted(word)) return SpotAt(text, *at);
  }
  return std::nullopt;
}

ErrorPlace PlaceIn(const Batch& batch, const Spot& spot) {
  return {batch.places[spot.line].ToText(), batch.lines[spot.line], spot.column};
}

}  // namespace

std::optional<ErrorPlace> FindPlace(const BatchMessage& message, const Batch& batch) {
  if (message.line < 1 || !message.procedure.empty()) return std::nullopt;
  const auto line = static_cast<size_t>(message.line - 1);
  const std::vector<std::string_view> words = QuotedWords(message.text);
  const std::string text = batch.Text();
  const bool of_batch = message.executed && message.executed->empty();
  if (!of_batch) {
    if (const auto spot = FindExecutedSpot(text, words)) return PlaceIn(batch, *spot);
  }
  if (of_batch || !message.executed) {
    const bool is_sure = of_batch || !TokenizedText(text).Executes();
    const auto spot = FindSpot(text, batch.lines, line, words, is_sure);
    return spot ? std::optional(PlaceIn(batch, *spot)) : std::nullopt;
  }
  const std::vector<std::string> lines = LinesOf(*message.executed);
  const auto spot = FindSpot(*message.executed, lines, line, words, true);
  if (!spot) return std::nullopt;
  return {{fmt::format("line {} of the executed text", spot->line + 1), lines[spot->line],
           spot->column}};
}

}  // namespace tavcc
