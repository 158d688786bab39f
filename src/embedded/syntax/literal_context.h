// Decides, token by token, which literals of a batch can be exchanged for others without compiling
// the batch anew.
//
// Most can: "where FID=7" and "where FID=8" are one compiled batch. Some are part of what the batch
// says and stay in its key: TOP counts, the arguments of types, the styles of CONVERT, ordinals of
// ORDER BY, whatever stands in a table definition, view or procedure, the filter of an index and
// what follows it, texts that are column aliases, and binary constants. An expression with a
// literal in a GROUP BY or ORDER BY list must be found again in the select list, so a batch that
// has one cannot share at all.
//
// The decision needs nothing but the tokens seen so far (and one character ahead), because the
// fingerprint makes it without a parser. The lexer asks the same class, and the parser checks it.
#pragma once

#include <array>

#include "embedded/syntax/keywords.h"
#include "embedded/syntax/scanner.h"

namespace tavcc::sql {

class LiteralContext {
 public:
  // A token that is no literal. `symbol` is the first character of a kSymbol, otherwise 0.
  void Pass(TokenKind kind, Keyword keyword, char symbol);

  // A literal; true when it can be exchanged. `next` is the first character of the token after it.
  bool Literal(TokenKind kind, char next);

  // False when a literal was met whose place forbids sharing the whole batch.
  bool shareable() const { return shareable_; }

 private:
  enum class Previous : uint8_t {
    kStart,
    kWord,     // a name that is no keyword, quoted or not
    kKeyword,  // see previous_keyword_
    kLiteral,  // also a variable: the end of a value
    kClose,    // )
    kComma,
    kDot,
    kOther,
  };
  // How far into "CREATE TABLE a.b (" or "@t TABLE (" the text is.
  enum class Table : uint8_t { kNone, kName };
  // How far into "SET option value".
  enum class Set : uint8_t { kNone, kSet, kOption };

  void PassKeyword(Keyword keyword);
  void PassSymbol(char symbol);
  void Open();
  void Shut();
  bool IsPinned(TokenKind kind, char next) const;
  bool IsTextOfAlias(char next) const;

  static constexpr int kNever = 1 << 30;
  static constexpr size_t kMaxConverts = 8;
  struct Convert {
    int depth = 0;   // of the brackets inside CONVERT(
    int commas = 0;  // at that depth
  };

  Previous previous_ = Previous::kStart;
  Keyword previous_keyword_ = Keyword::kNone;
  Table table_ = Table::kNone;
  Set set_ = Set::kNone;
  bool in_call_ = false;  // of a procedure: its arguments follow its name without brackets
  bool pin_rest_ = false;
  bool after_create_ = false;
  bool in_index_ = false;  // after CREATE INDEX, before its filter
  bool shareable_ = true;
  int depth_ = 0;
  int pinned_depth_ = kNever;  // all literals in brackets at this depth or deeper stay
  int list_depth_ = kNever;    // of the GROUP BY or ORDER BY list that the text is in
  size_t converts_ = 0;
  std::array<Convert, kMaxConverts> convert_{};
};

}  // namespace tavcc::sql
