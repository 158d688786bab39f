// What a batch's text is apart from the values of its literals: the form by which a compiled batch
// is found again without parsing.
//
// Two texts have the same form exactly when they differ in nothing but the values of parameterized
// literals, and each literal of the one is of the same kind as its fellow of the other:
//
//   an integer     int, or decimal when it is too large for an int
//   a decimal      begun by its point or by a digit
//   a float
//   a text         plain or national, with as many line ends, so that errors of later statements
//                  name the right line
//
// Other literals (see Batch::literals) and all else, blanks and comments included, are as written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/syntax/ast.h"
#include "embedded/syntax/scanner.h"

namespace tavcc::sql {

struct ParameterizedLiteral {
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

class TextForm {
 public:
  // The form of a text that was parsed. A batch that cannot be shared has no
  // parameterized literals: only the very same text has its form.
  TextForm(std::string_view text, const Batch& batch);

  size_t literals() const { return places_.size(); }

  // Whether `text` has this form. Its literals then stand in `literals`, in the order of
  // LiteralExpression::slot, and point into the text; otherwise `literals` is without meaning.
  // Compares what lies between the literals and reads nothing but them.
  bool Matches(std::string_view text, std::vector<ParameterizedLiteral>& literals) const;

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
                   ParameterizedLiteral& literal);
  // The short way of most literals: where one of this kind ends, 0 when it takes the long one.
  static size_t ReadPlain(const Kind& kind, std::string_view text, size_t at,
                          ParameterizedLiteral& literal);

  std::string text_;
  std::vector<Place> places_;
};

// The literal's text as LiteralExpression::text has it; `scratch` is used when it differs from what
// is written.
std::string_view LiteralText(const ParameterizedLiteral& literal, std::string& scratch);

}  // namespace tavcc::sql
