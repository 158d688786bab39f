// One pass over the tokens: what is no exchangeable literal is copied, what is one leaves a mark.
//
// A mark begins with a control character, which cannot begin a token, and has a fixed length for
// its kind, so a key can be read in one way only.
#include "embedded/syntax/fingerprint.h"

#include <algorithm>

#include "embedded/syntax/literal_context.h"
#include "embedded/syntax/scanner.h"

namespace tavcc::sql {
namespace {

using Form = LiteralExpression::Form;

enum Mark : char { kInt = 1, kWideInteger, kDecimalMark, kFloatMark, kTextMark, kNationalMark };

constexpr size_t kMaxPrecision = 38;
constexpr size_t kLongestText = 8000, kLongestNational = 4000;
constexpr size_t kMostLineEnds = 255;

void Append(std::string& key, Mark mark) {
  key.push_back(mark);
}

void Append(std::string& key, Mark mark, size_t small) {
  key.push_back(mark);
  key.push_back(static_cast<char>(small));
}

std::string_view WithoutLeadingZeros(std::string_view digits) {
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
  return digits;
}

bool MarkInteger(std::string_view number, std::string& key) {
  constexpr std::string_view kLargestInt = "2147483647";
  const std::string_view digits = WithoutLeadingZeros(number);
  if (digits.size() < kLargestInt.size() ||
      (digits.size() == kLargestInt.size() && digits <= kLargestInt)) {
    Append(key, kInt);
    return true;
  }
  Append(key, kWideInteger, digits.size());
  return digits.size() <= kMaxPrecision;
}

// The precision of 0.05 is 2, of 1.50 is 3: digits without leading zeros, but all after the point.
bool MarkDecimal(std::string_view number, std::string& key) {
  const size_t point = number.find('.');
  const size_t scale = number.size() - point - 1;
  const size_t whole = WithoutLeadingZeros(number.substr(0, point)).size();
  Append(key, kDecimalMark, std::max<size_t>(whole + scale, 1));
  key.push_back(static_cast<char>(scale));
  return whole + scale <= kMaxPrecision;
}

// "1e" is a number to the server and to the parser, but to nobody else.
bool MarkFloat(std::string_view number, std::string& key) {
  Append(key, kFloatMark);
  return scanning::ClassOf(number.back()) & scanning::kDigit;
}

struct TextShape {
  size_t units = 0;  // of UTF-16
  size_t line_ends = 0;
  bool well_formed = true;
};

TextShape Measure(std::string_view text) {
  TextShape shape;
  for (size_t i = 0; i < text.size();) {
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

bool MarkText(const FingerprintLiteral& literal, std::string& key) {
  const bool national = literal.form == Form::kNationalText;
  const TextShape shape = Measure(literal.text);
  size_t units = shape.units;
  if (literal.doubled)
    units -= static_cast<size_t>(std::count(literal.text.begin(), literal.text.end(), '\'')) / 2;
  const size_t longest = national ? kLongestNational : kLongestText;
  units = std::clamp<size_t>(units, 1, longest + 1);
  Append(key, national ? kNationalMark : kTextMark, units >> 8);
  key.push_back(static_cast<char>(units & 0xFF));
  key.push_back(static_cast<char>(shape.line_ends));
  return shape.well_formed && shape.line_ends <= kMostLineEnds;
}

FingerprintLiteral LiteralOf(const RawToken& token, std::string_view written) {
  switch (token.kind) {
    case TokenKind::kInteger:
      return {Form::kInteger, false, written};
    case TokenKind::kDecimal:
      return {Form::kDecimal, false, written};
    case TokenKind::kFloat:
      return {Form::kFloat, false, written};
    case TokenKind::kText:
      return {Form::kText, token.doubled, written.substr(1, written.size() - 2)};
    default:
      return {Form::kNationalText, token.doubled, written.substr(2, written.size() - 3)};
  }
}

bool AppendMark(const FingerprintLiteral& literal, std::string& key) {
  switch (literal.form) {
    case Form::kInteger:
      return MarkInteger(literal.text, key);
    case Form::kDecimal:
      return MarkDecimal(literal.text, key);
    case Form::kFloat:
      return MarkFloat(literal.text, key);
    default:
      return MarkText(literal, key);
  }
}

bool IsPrintable(char c) {
  return c > ' ' && c < 0x7F;
}

}  // namespace

bool ComputeFingerprint(std::string_view text, Fingerprint& fingerprint) {
  fingerprint.key.clear();
  fingerprint.literals.clear();
  Scanner scanner(text);
  LiteralContext context;
  size_t copied = 0;
  for (;;) {
    const RawToken token = scanner.Next();
    const std::string_view written = text.substr(token.begin, token.end - token.begin);
    switch (token.kind) {
      case TokenKind::kEnd:
        fingerprint.key.append(text, copied);
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
        fingerprint.key.append(text, copied, token.begin - copied);
        copied = token.end;
        const FingerprintLiteral& literal =
            fingerprint.literals.emplace_back(LiteralOf(token, written));
        if (!AppendMark(literal, fingerprint.key)) return false;
      }
    }
  }
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
