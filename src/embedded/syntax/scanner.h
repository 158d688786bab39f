// Cuts the text of a batch into tokens: the one place that knows the server's lexical rules.
//
// The lexer (for the parser) and the form of a text (for the cache of batches) both read with it,
// so that they cannot disagree on what a literal is. It allocates nothing and copies nothing. How
// numbers and quotations are read stands apart, for whoever knows where one begins.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "foundation/utf8.h"

namespace tavcc::sql {

enum class TokenKind : uint8_t {
  kEnd,
  kWord,           // a bare name or a keyword
  kQuotedName,     // [x] or "x"; the token's text has the marks
  kVariable,       // @x and @@x
  kInteger,        // 007
  kDecimal,        // 1. .5 1.50
  kFloat,          // 1e3 1.5E-3 and, as the server reads them, 1e and 1e+
  kBinary,         // 0x1F
  kMoney,          // $1.50
  kText,           // 'x'; the token's text has the quotes
  kNationalText,   // N'x'; the token's text has the N and the quotes
  kSymbol,         // an operator or a mark of punctuation: one or two characters
  kUnclosedQuote,  // a text or quoted name that the batch ends in
  kUnclosedComment,
};

struct RawToken {
  TokenKind kind = TokenKind::kEnd;
  bool doubled = false;  // a text or quoted name with a doubled closing mark in it
  size_t begin = 0, end = 0;
};

namespace scanning {

enum : uint8_t {
  kBlank = 1,
  kWordStart = 2,
  kWordPart = 4,
  kDigit = 8,
  kHexDigit = 16,
  kMark = 32,  // a symbol of its own, whatever follows it
};

inline constexpr std::array<uint8_t, 256> kClasses = [] {
  std::array<uint8_t, 256> classes{};
  constexpr auto at = [](char c) { return static_cast<unsigned char>(c); };
  for (const char c : {' ', '\t', '\n', '\v', '\f', '\r'}) classes[at(c)] = kBlank;
  for (unsigned c = 'a'; c <= 'z'; ++c) classes[c] = classes[c - 32] = kWordStart | kWordPart;
  for (unsigned c = '0'; c <= '9'; ++c) classes[c] = kWordPart | kDigit | kHexDigit;
  for (unsigned c = 'a'; c <= 'f'; ++c) {
    classes[c] |= kHexDigit;
    classes[c - 32] |= kHexDigit;
  }
  for (const char c : {'_', '#'}) classes[at(c)] = kWordStart | kWordPart;
  for (const char c : {'@', '$'}) classes[at(c)] = kWordPart;
  for (const char c : {'(', ')', ',', ';', '=', '<', '>', '!', '~'}) classes[at(c)] = kMark;
  return classes;
}();

inline uint8_t ClassOf(char c) {
  return kClasses[static_cast<unsigned char>(c)];
}

struct Extent {
  TokenKind kind = TokenKind::kEnd;
  bool doubled = false;  // see RawToken
  size_t end = 0;
};

inline size_t DigitsEnd(std::string_view text, size_t at) {
  while (at < text.size() && ClassOf(text[at]) & kDigit) ++at;
  return at;
}

// The number that begins at `at` with a digit, or with a point and a digit. It ends where no digit,
// point or exponent follows: in "5And" a word follows it at once. The exponent needs no digits: the
// server reads "1e" and "1e+" as 1, and "0end" as "0e", "nd".
inline Extent ReadNumber(std::string_view text, size_t at) {
  const auto is = [&](size_t place, char lower) {
    return place < text.size() && (text[place] | 0x20) == lower;
  };
  if (text[at] == '0' && is(at + 1, 'x')) {
    size_t end = at + 2;
    while (end < text.size() && ClassOf(text[end]) & kHexDigit) ++end;
    return {TokenKind::kBinary, false, end};
  }
  TokenKind kind = TokenKind::kInteger;
  size_t end = DigitsEnd(text, at);
  if (end < text.size() && text[end] == '.') {
    kind = TokenKind::kDecimal;
    end = DigitsEnd(text, end + 1);
  }
  if (is(end, 'e')) {
    kind = TokenKind::kFloat;
    ++end;
    if (end < text.size() && (text[end] == '+' || text[end] == '-')) ++end;
    end = DigitsEnd(text, end);
  }
  return {kind, false, end};
}

// The quotation whose first character behind the opening mark is at `at`: kUnclosedQuote, or `kind`
// up to the closing `mark`. Doubled, the mark is a character of the quotation.
inline Extent ReadQuoted(TokenKind kind, std::string_view text, size_t at, char mark) {
  bool doubled = false;
  for (;;) {
    const void* found =
        at < text.size() ? std::memchr(text.data() + at, mark, text.size() - at) : nullptr;
    if (found == nullptr) return {TokenKind::kUnclosedQuote, false, text.size()};
    const size_t close = static_cast<size_t>(static_cast<const char*>(found) - text.data());
    if (close + 1 >= text.size() || text[close + 1] != mark) return {kind, doubled, close + 1};
    doubled = true;
    at = close + 2;
  }
}

// The number of bytes of the letter beyond ASCII that begins at `text`, 0 when what begins there is
// no letter (a full-width blank or comma, a symbol, a broken sequence). These are in lexer.cpp.
size_t WideLetter(std::string_view text);

// The number of bytes of the character beyond ASCII that begins at `text`, 0 when it is broken.
size_t CharacterBytes(std::string_view text);

}  // namespace scanning

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  // The next token. After the end, and after an unclosed quotation or comment, always kEnd.
  RawToken Next() {
    if (!SkipBlanksAndComments()) return Close(TokenKind::kUnclosedComment, comment_begin_);
    if (at_ >= text_.size()) return {TokenKind::kEnd, false, text_.size(), text_.size()};
    const char c = text_[at_];
    const uint8_t cls = scanning::ClassOf(c);
    if (cls & scanning::kWordStart) {
      if ((c == 'N' || c == 'n') && Char(1) == '\'')
        return Quoted(TokenKind::kNationalText, at_, at_ + 2, '\'');
      return Word(TokenKind::kWord);
    }
    if (cls & scanning::kMark) return Take(TokenKind::kSymbol, at_ + 1);
    if (cls & scanning::kDigit) return Number();
    switch (c) {
      case '\'':
        return Quoted(TokenKind::kText, at_, at_ + 1, '\'');
      case '"':
        return Quoted(TokenKind::kQuotedName, at_, at_ + 1, '"');
      case '[':
        return Quoted(TokenKind::kQuotedName, at_, at_ + 1, ']');
      case '@':
        return Word(TokenKind::kVariable);
      case '$':
        return Money();
      case '.':
        return scanning::ClassOf(Char(1)) & scanning::kDigit ? Number() : Symbol();
      default:
        break;
    }
    if (static_cast<unsigned char>(c) >= 0x80 && scanning::WideLetter(text_.substr(at_)) > 0)
      return Word(TokenKind::kWord);
    return Symbol();
  }

 private:
  char Char(size_t ahead) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }

  RawToken Take(TokenKind kind, size_t end) {
    const RawToken token{kind, false, at_, end};
    at_ = end;
    return token;
  }

  RawToken Close(TokenKind kind, size_t begin) {
    at_ = text_.size();
    return {kind, false, begin, text_.size()};
  }

  // False when a comment has no end. Comments nest.
  bool SkipBlanksAndComments() {
    while (at_ < text_.size()) {
      const char c = text_[at_];
      if (scanning::ClassOf(c) & scanning::kBlank) {
        ++at_;
      } else if (scanning::ClassOf(c) != 0) {
        return true;
      } else if (c == '-' && Char(1) == '-') {
        const size_t end = text_.find('\n', at_);
        at_ = end == std::string_view::npos ? text_.size() : end + 1;
      } else if (c == '/' && Char(1) == '*') {
        if (!SkipComment()) return false;
      } else {
        return true;
      }
    }
    return true;
  }

  bool SkipComment() {
    comment_begin_ = at_;
    size_t open = 0;
    for (size_t at = at_; at + 1 < text_.size();) {
      if (text_[at] == '/' && text_[at + 1] == '*') {
        ++open;
        at += 2;
      } else if (text_[at] == '*' && text_[at + 1] == '/') {
        at += 2;
        if (--open == 0) {
          at_ = at;
          return true;
        }
      } else {
        ++at;
      }
    }
    return false;
  }

  RawToken Word(TokenKind kind) {
    const std::string_view text = text_;
    size_t end = at_;
    for (;;) {
      while (end < text.size() && scanning::ClassOf(text[end]) & scanning::kWordPart) ++end;
      if (end == text.size() || static_cast<unsigned char>(text[end]) < 0x80) break;
      const size_t wide = scanning::WideLetter(text_.substr(end));
      if (wide == 0) break;
      end += wide;
    }
    return Take(kind, end);
  }

  RawToken Number() {
    const scanning::Extent number = scanning::ReadNumber(text_, at_);
    return Take(number.kind, number.end);
  }

  RawToken Money() {
    size_t end = scanning::DigitsEnd(text_, at_ + 1);
    if (end < text_.size() && text_[end] == '.') end = scanning::DigitsEnd(text_, end + 1);
    return Take(TokenKind::kMoney, end);
  }

  RawToken Quoted(TokenKind kind, size_t begin, size_t from, char mark) {
    const scanning::Extent quoted = scanning::ReadQuoted(kind, text_, from, mark);
    at_ = quoted.end;
    return {quoted.kind, quoted.doubled, begin, at_};
  }

  RawToken Symbol() {
    const char c = text_[at_], next = Char(1);
    if (next == '=' && std::strchr("+-*/%&|^", c) != nullptr && c != '\0')
      return Take(TokenKind::kSymbol, at_ + 2);
    if (static_cast<unsigned char>(c) < 0x80) return Take(TokenKind::kSymbol, at_ + 1);
    size_t end = at_ + 1;  // one character beyond ASCII, however many bytes it has
    while (end < text_.size() && IsContinuationByte(text_[end])) ++end;
    return Take(TokenKind::kSymbol, end);
  }

  std::string_view text_;
  size_t at_ = 0;
  size_t comment_begin_ = 0;
};

}  // namespace tavcc::sql
