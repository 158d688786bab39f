// The tokens of a batch as the parser wants them: with keywords known and lines counted.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "embedded/syntax/keywords.h"
#include "embedded/syntax/scanner.h"
#include "embedded/types/literals.h"

namespace tavcc::sql {

struct Token {
  TokenKind kind = TokenKind::kEnd;
  Keyword keyword = Keyword::kNone;  // of a kWord
  bool doubled = false;              // see RawToken
  int line = 1;
  size_t begin = 0, end = 0;
  std::string_view text;  // as written
};

class Lexer {
 public:
  // The text must outlive the lexer. Throws SqlError when it is not UTF-8.
  explicit Lexer(std::string_view text);

  // The token `ahead` places after the current one; `ahead` is at most kLookAhead. Never throws:
  // an unclosed quotation is a token that the parser refuses when it comes to it.
  const Token& Peek(size_t ahead = 0) { return tokens_[(first_ + ahead) % tokens_.size()]; }

  // The current token; the next one becomes current. The reference holds until the next Take.
  const Token& Take();

  std::string_view text() const { return text_; }

  static constexpr size_t kLookAhead = 2;

 private:
  void Read(Token& token);

  std::string_view text_;
  Scanner scanner_;
  int line_ = 1;
  size_t line_counted_to_ = 0;
  size_t first_ = 0;
  std::array<Token, kLookAhead + 2> tokens_;  // a ring: the token taken last, then those ahead
};

// What a token that is a literal is to the parser.
inline LiteralForm FormOf(TokenKind kind) {
  switch (kind) {
    case TokenKind::kInteger:
      return LiteralForm::kInteger;
    case TokenKind::kDecimal:
      return LiteralForm::kDecimal;
    case TokenKind::kFloat:
      return LiteralForm::kFloat;
    case TokenKind::kBinary:
      return LiteralForm::kBinary;
    case TokenKind::kText:
      return LiteralForm::kText;
    default:
      return LiteralForm::kNationalText;
  }
}

// The characters between the marks of a text or a quoted name, doubled closing marks made single.
std::string Unquote(const Token& token);

// The same without unmaking doubled marks: what error texts show.
std::string_view Inside(const Token& token);

}  // namespace tavcc::sql
