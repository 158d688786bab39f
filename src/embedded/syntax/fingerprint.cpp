// The form is a text that was met with the places of its literals: what lies between them is
// compared as bytes.
//
// That is enough to know that the tokens are the same. A token ends where the next character cannot
// belong to it, and what that next character is changes only at the border to a literal: a literal
// is read anew by the scanner's own rules, must be of the same kind, and begins with a character of
// the same sort, so that it neither joins what stands before it nor takes what stands behind it.
#include "embedded/syntax/fingerprint.h"

#include <algorithm>
#include <cstring>

#include "embedded/syntax/literal_context.h"

namespace tavcc::sql {
namespace {

using Form = LiteralExpression::Form;

constexpr size_t kMaxPrecision = 38;

std::string_view WithoutLeadingZeros(std::string_view digits) {
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
  return digits;
}

bool IsWide(std::string_view number) {
  constexpr std::string_view kLargestInt = "2147483647";
  if (number.size() < kLargestInt.size()) return false;
  const std::string_view digits = WithoutLeadingZeros(number);
  return digits.size() > kLargestInt.size() ||
         (digits.size() == kLargestInt.size() && digits > kLargestInt);
}

// The precision of 0.05 is 2, of 1.50 is 3: digits without leading zeros, but all after the point.
bool IsTooPrecise(std::string_view number) {
  if (number.size() <= kMaxPrecision) return false;
  const size_t point = std::min(number.find('.'), number.size());
  const size_t scale = number.size() - std::min(point + 1, number.size());
  return WithoutLeadingZeros(number.substr(0, point)).size() + scale > kMaxPrecision;
}

struct TextShape {
  size_t units = 0;  // of UTF-16
  uint32_t line_ends = 0;
  bool well_formed = true;
};

// Whether the eight bytes at `text` are ASCII, and none of them a line end.
bool ArePlain(const char* text) {
  constexpr uint64_t kOnes = 0x0101010101010101, kHighBits = 0x8080808080808080;
  uint64_t bytes = 0;
  std::memcpy(&bytes, text, sizeof bytes);
  const uint64_t other = bytes ^ (kOnes * '\n');
  return ((bytes | ((other - kOnes) & ~other)) & kHighBits) == 0;
}

TextShape Measure(std::string_view text) {
  TextShape shape;
  for (size_t i = 0; i < text.size();) {
    if (i + 8 <= text.size() && ArePlain(text.data() + i)) {
      shape.units += 8;
      i += 8;
      continue;
    }
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

Form FormOf(TokenKind kind) {
  switch (kind) {
    case TokenKind::kInteger:
      return Form::kInteger;
    case TokenKind::kDecimal:
      return Form::kDecimal;
    case TokenKind::kFloat:
      return Form::kFloat;
    case TokenKind::kText:
      return Form::kText;
    default:
      return Form::kNationalText;
  }
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

bool IsPrintable(char c) {
  return c > ' ' && c < 0x7F;
}

}  // namespace

Fingerprint::Fingerprint(std::string_view text) : text_(text), shareable_(ReadPlaces(text)) {
  if (!shareable_) Pin();
}

void Fingerprint::Pin() {
  places_.clear();
}

std::string_view Fingerprint::Beginning() const {
  return std::string_view(text_).substr(0, places_.empty() ? text_.size() : places_[0].begin);
}

bool Fingerprint::ReadPlaces(std::string_view text) {
  Scanner scanner(text);
  LiteralContext context;
  for (;;) {
    const RawToken token = scanner.Next();
    const std::string_view written = text.substr(token.begin, token.end - token.begin);
    switch (token.kind) {
      case TokenKind::kEnd:
        return context.shareable();
      case TokenKind::kWord:
        context.Pass(token.kind, LookUpKeyword(written), 0);
        break;
      case TokenKind::kQuotedName:
      case TokenKind::kVariable:
        context.Pass(token.kind, Keyword::kNone, 0);
        break;
      case TokenKind::kSymbol:
        if (!IsPrintable(written.front())) return false;
        context.Pass(token.kind, Keyword::kNone, written.front());
        break;
      case TokenKind::kMoney:
      case TokenKind::kUnclosedQuote:
      case TokenKind::kUnclosedComment:
        return false;
      default: {
        if (!context.Literal(token.kind, scanner.PeekCharacter())) break;
        Place& place = places_.emplace_back();
        place.begin = token.begin;
        place.end = token.end;
        FingerprintLiteral literal;
        const scanning::Extent extent{token.kind, token.doubled, token.end};
        if (!Read(extent, text, token.begin, place.kind, literal)) return false;
      }
    }
  }
}

// False when the literal cannot be exchanged: it is no value, or the parser will refuse it.
bool Fingerprint::Read(const scanning::Extent& extent, std::string_view text, size_t begin,
                       Kind& kind, FingerprintLiteral& literal) {
  kind = Kind{extent.kind, false, text[begin] == '.', 0};
  literal.form = FormOf(extent.kind);
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

bool Fingerprint::Matches(std::string_view text, std::vector<FingerprintLiteral>& literals) const {
  literals.resize(places_.size());
  size_t at = 0, known = 0;
  for (size_t i = 0; i < places_.size(); ++i) {
    const Place& place = places_[i];
    const size_t between = place.begin - known;
    if (text.size() - at <= between ||
        std::memcmp(text.data() + at, text_.data() + known, between) != 0) {
      return false;
    }
    at += between;
    const scanning::Extent extent = ReadLiteral(place.kind.token, text, at);
    Kind kind;
    if (extent.kind != place.kind.token || !Read(extent, text, at, kind, literals[i]) ||
        kind != place.kind) {
      return false;
    }
    at = extent.end;
    known = place.end;
  }
  return text.substr(at) == std::string_view(text_).substr(known);
}

std::string_view LiteralText(const FingerprintLiteral& literal, std::string& scratch) {
  if (!literal.doubled) return literal.text;
  scratch.clear();
  for (size_t i = 0; i < literal.text.size(); ++i) {
    scratch += literal.text[i];
    if (literal.text[i] == '\'') ++i;
  }
  return scratch;
}

}  // namespace tavcc::sql
