// The form is a text that was met with the places of its literals: what lies between them is
// compared as bytes.
//
// That is enough to know that the tokens are the same. A token ends where the next character cannot
// belong to it, and what that next character is changes only at the border to a literal: a literal
// is read anew by the scanner's own rules, must be of the same kind, and begins with a character of
// the same sort, so that it neither joins what stands before it nor takes what stands behind it.
#include "embedded/plan/text_form.h"

#include <algorithm>
#include <cstring>

#include "embedded/syntax/lexer.h"
#include "embedded/types/literals.h"

namespace tavcc::sql {
namespace {

using Form = LiteralExpression::Form;

constexpr size_t kMaxPrecision = SqlType::kMaxPrecision;

bool IsWide(std::string_view number) {
  constexpr std::string_view kLargestInt = "2147483647";
  if (number.size() < kLargestInt.size()) return false;
  const std::string_view digits =
      number.substr(std::min(number.find_first_not_of('0'), number.size()));
  return digits.size() > kLargestInt.size() ||
         (digits.size() == kLargestInt.size() && digits > kLargestInt);
}

bool IsTooPrecise(std::string_view number) {
  return number.size() > kMaxPrecision && LiteralPrecision(number) > kMaxPrecision;
}

struct TextShape {
  size_t units = 0;  // of UTF-16
  uint32_t line_ends = 0;
  bool well_formed = true;
};

constexpr bool IsPlain(char c) {
  return static_cast<unsigned char>(c) < 0x80 && c != '\n' && c != '\'';
}

// Where in `text` from `at` on the characters end that count for one unit and nothing else.
size_t PlainEnd(std::string_view text, size_t at) {
  while (at < text.size() && IsPlain(text[at])) ++at;
  return at;
}

TextShape Measure(std::string_view text) {
  TextShape shape;
  for (size_t i = 0; i < text.size();) {
    const size_t plain = PlainEnd(text, i);
    shape.units += plain - i;
    i = plain;
    if (i == text.size()) break;
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x80) {
      shape.line_ends += byte == '\n';
      ++shape.units;
      ++i;
      continue;
    }
    const size_t bytes = scanning::CharacterBytes(text.substr(i));
    if (bytes == 0) {
      shape.well_formed = false;
      return shape;
    }
    shape.units += bytes == 4 ? 2 : 1;
    i += bytes;
  }
  return shape;
}

// The literal that stands at `at`, when it is of this kind.
scanning::Extent ReadLiteral(TokenKind kind, std::string_view text, size_t at) {
  constexpr scanning::Extent kNone{};
  const auto is = [&](size_t place, char c) { return place < text.size() && text[place] == c; };
  switch (kind) {
    case TokenKind::kText:
      return is(at, '\'') ? scanning::ReadQuoted(kind, text, at + 1, '\'') : kNone;
    case TokenKind::kNationalText:
      return (is(at, 'N') || is(at, 'n')) && is(at + 1, '\'')
                 ? scanning::ReadQuoted(kind, text, at + 2, '\'')
                 : kNone;
    default: {
      const size_t digit = is(at, '.') ? at + 1 : at;
      const bool number = digit < text.size() && scanning::ClassOf(text[digit]) & scanning::kDigit;
      return number ? scanning::ReadNumber(text, at) : kNone;
    }
  }
}

// The short way of most numbers. Returns where the number ends, 0 when it is another one.
template <bool decimal>
size_t ReadPlainNumber(std::string_view text, size_t at, ParameterizedLiteral& literal) {
  const char* const begin = text.data() + at;
  const char* const most = begin + std::min<size_t>(text.size() - at, decimal ? 18 : 9);
  const char* end = begin;
  uint64_t number = 0;
  const auto take_digits = [&] {
    for (; end < most; ++end) {
      const unsigned digit = static_cast<unsigned char>(*end) - unsigned{'0'};
      if (digit > 9) return;
      number = number * 10 + digit;
    }
  };
  take_digits();
  if (end == begin) return 0;
  const auto whole = static_cast<int>(end - begin);
  if (decimal) {
    if (end == most || *end != '.') return 0;
    ++end;
    take_digits();
  }
  const auto all = static_cast<int>(end - begin);
  if (at + static_cast<size_t>(all) < text.size()) {
    const unsigned char next = static_cast<unsigned char>(*end);
    if (scanning::ClassOf(*end) & scanning::kDigit || next == '.' || (next | 0x20) == 'e' ||
        (next | 0x20) == 'x') {
      return 0;
    }
  }
  const bool led_by_zero = *begin == '0';
  literal.form = decimal ? Form::kDecimal : Form::kInteger;
  literal.plain = !decimal || !led_by_zero || whole == 1;
  literal.number = static_cast<int64_t>(number);
  if (decimal) {
    literal.scale = all - whole - 1;
    literal.digits = all - 1 - (led_by_zero ? 1 : 0);
  }
  literal.text = text.substr(at, static_cast<size_t>(all));
  return at + static_cast<size_t>(all);
}

// The same of a text without doubled quotes, line ends and characters beyond ASCII.
size_t ReadPlainText(std::string_view text, size_t at, ParameterizedLiteral& literal) {
  if (text[at] != '\'') return 0;
  const size_t end = PlainEnd(text, at + 1);
  if (end >= text.size() || text[end] != '\'') return 0;
  if (end + 1 < text.size() && text[end + 1] == '\'') return 0;
  literal.form = Form::kText;
  literal.doubled = false;
  literal.plain = false;
  literal.units = end - at - 1;
  literal.text = text.substr(at + 1, literal.units);
  return end + 1;
}

// The kind of token that begins with this character, as far as literals go.
TokenKind KindAt(std::string_view text, size_t at) {
  if (text[at] == '\'') return TokenKind::kText;
  if (text[at] == 'N' || text[at] == 'n') return TokenKind::kNationalText;
  return scanning::ReadNumber(text, at).kind;
}

}  // namespace

TextForm::TextForm(std::string_view text, const Batch& batch) : text_(text) {
  if (!batch.shareable) return;
  for (const size_t begin : batch.literals) {
    Place& place = places_.emplace_back();
    const scanning::Extent extent = ReadLiteral(KindAt(text, begin), text, begin);
    place.begin = begin;
    place.end = extent.end;
    ParameterizedLiteral literal;
    Read(extent, text, begin, place.kind, literal);
  }
}

std::string_view TextForm::Beginning() const {
  return std::string_view(text_).substr(0, places_.empty() ? text_.size() : places_[0].begin);
}

// False when the literal cannot be exchanged: it is no value, or the parser will refuse it.
bool TextForm::Read(const scanning::Extent& extent, std::string_view text, size_t begin, Kind& kind,
                    ParameterizedLiteral& literal) {
  kind = Kind{extent.kind, false, text[begin] == '.', 0};
  literal.form = FormOf(extent.kind);
  literal.plain = false;
  literal.doubled = extent.doubled;
  literal.text = text.substr(begin, extent.end - begin);
  switch (extent.kind) {
    case TokenKind::kInteger:
      kind.wide = IsWide(literal.text);
      return !IsTooPrecise(literal.text);
    case TokenKind::kDecimal:
      return !IsTooPrecise(literal.text);
    case TokenKind::kFloat:  // "1e" is a number to the server and to the parser, but to nobody else
      return scanning::ClassOf(literal.text.back()) & scanning::kDigit;
    default:
      break;
  }
  const size_t quote = extent.kind == TokenKind::kNationalText ? 2 : 1;
  literal.text = literal.text.substr(quote, literal.text.size() - quote - 1);
  const TextShape shape = Measure(literal.text);
  kind.line_ends = shape.line_ends;
  literal.units = shape.units;
  if (literal.doubled)
    literal.units -=
        static_cast<size_t>(std::count(literal.text.begin(), literal.text.end(), '\'')) / 2;
  return shape.well_formed;
}

size_t TextForm::ReadPlain(const Kind& kind, std::string_view text, size_t at,
                           ParameterizedLiteral& literal) {
  switch (kind.token) {
    case TokenKind::kInteger:
      return kind.wide ? 0 : ReadPlainNumber<false>(text, at, literal);
    case TokenKind::kDecimal:
      return kind.pointed ? 0 : ReadPlainNumber<true>(text, at, literal);
    case TokenKind::kText:
      return kind.line_ends == 0 ? ReadPlainText(text, at, literal) : 0;
    default:
      return 0;
  }
}

bool TextForm::Matches(std::string_view text, std::vector<ParameterizedLiteral>& literals) const {
  if (literals.size() != places_.size()) literals.resize(places_.size());
  ParameterizedLiteral* literal = literals.data();
  size_t at = 0, known = 0;
  for (const Place& place : places_) {
    const size_t between = place.begin - known;
    if (text.size() - at <= between ||
        std::memcmp(text.data() + at, text_.data() + known, between) != 0) {
      return false;
    }
    at += between;
    known = place.end;
    if (const size_t end = ReadPlain(place.kind, text, at, *literal); end > 0) {
      at = end;
      ++literal;
      continue;
    }
    const scanning::Extent extent = ReadLiteral(place.kind.token, text, at);
    Kind kind;
    if (extent.kind != place.kind.token || !Read(extent, text, at, kind, *literal++) ||
        kind != place.kind) {
      return false;
    }
    at = extent.end;
  }
  return text.substr(at) == std::string_view(text_).substr(known);
}

std::string_view LiteralText(const ParameterizedLiteral& literal, std::string& scratch) {
  if (!literal.doubled) return literal.text;
  scratch.clear();
  for (size_t i = 0; i < literal.text.size(); ++i) {
    scratch += literal.text[i];
    if (literal.text[i] == '\'') ++i;
  }
  return scratch;
}

}  // namespace tavcc::sql
