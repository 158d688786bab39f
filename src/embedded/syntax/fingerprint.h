// What a batch's text is apart from the values of its literals: the form by which a compiled batch
// is found again without parsing.
//
// Two texts have the same form exactly when they differ in nothing but the values of exchangeable
// literals, and each literal of the one is of the same kind as its fellow of the other:
//
//   an integer     int, or decimal when it is too large for an int
//   a decimal      begun by its point or by a digit
//   a float
//   a text         plain or national, with as many line ends, so that errors of later statements
//                  name the right line
//
// Other literals (see LiteralContext) and all else, blanks and comments included, are as written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/syntax/ast.h"
#include "embedded/syntax/scanner.h"

namespace tavcc::sql {

struct FingerprintLiteral {
  LiteralExpression::Form form = LiteralExpression::Form::kNull;
  bool doubled = false;   // a text with doubled quotes in it
  size_t units = 0;       // of a text: its length in UTF-16
  std::string_view text;  // the number as written, or what stands between the quotes
  // Of a plain number, an int or a decimal of a few digits: its digits as one number; of a decimal
  // also how many there are without a zero in front, and how many stand behind the point.
  bool plain = false;
  int64_t number = 0;
  int digits = 0, scale = 0;
};

class Fingerprint {
 public:
  // Reads the text token by token.
  explicit Fingerprint(std::string_view text);

  // False when the batch cannot share a compiled form: the text has a lexical error, or a literal
  // in a place that decides on more than a value. Only the very same text then has this form.
  //
  // A batch compiled from ParseBatch may be shared when its literal_slots is the number of literals
  // here; otherwise the parser saw a reason against it that the tokens do not show, and the
  // fingerprint must be pinned. What is compiled may not depend on a literal's value: a compiler
  // that looks at one must keep the batch to itself.
  bool shareable() const { return shareable_; }
  size_t literals() const { return places_.size(); }

  // From now on only the very same text has this form.
  void Pin();

  // Whether `text` has this form. Its literals then stand in `literals`, in the order of
  // LiteralExpression::slot, and point into the text; otherwise `literals` is without meaning.
  // Compares what lies between the literals and reads nothing but them.
  bool Matches(std::string_view text, std::vector<FingerprintLiteral>& literals) const;

  // What every text of this form begins with.
  std::string_view Beginning() const;

 private:
  // What of a literal is the same in all texts of the form.
  struct Kind {
    TokenKind token = TokenKind::kEnd;
    bool wide = false;     // an integer too large for an int
    bool pointed = false;  // a number that begins with its point
    uint32_t line_ends = 0;

    friend bool operator==(const Kind&, const Kind&) = default;
  };
  struct Place {
    Kind kind;
    size_t begin = 0, end = 0;  // in text_
  };

  static bool Read(const scanning::Extent& extent, std::string_view text, size_t begin, Kind& kind,
                   FingerprintLiteral& literal);
  // The short way of most literals: where one of this kind ends, 0 when it takes the long one.
  static size_t ReadPlain(const Kind& kind, std::string_view text, size_t at,
                          FingerprintLiteral& literal);
  bool ReadPlaces(std::string_view text);

  std::string text_;
  std::vector<Place> places_;
  bool shareable_ = false;
};

// The literal's text as LiteralExpression::text has it; `scratch` is used when it differs from what
// is written.
std::string_view LiteralText(const FingerprintLiteral& literal, std::string& scratch);

}  // namespace tavcc::sql
