// Letters beyond ASCII, and the check that the text is UTF-8.
#include "embedded/syntax/lexer.h"

#include <algorithm>

#include "embedded/error.h"
#include "foundation/utf8.h"

namespace tavcc::sql {
namespace {

struct Range {
  char32_t first, last;
};

// What is no letter beyond ASCII: controls, blanks, punctuation, symbols and private characters.
// Everything else counts as a letter, whatever its alphabet.
constexpr Range kNoLetters[] = {
    {0x80, 0xA9},     {0xAB, 0xB4},     {0xB6, 0xB9},     {0xBB, 0xBF},     {0xD7, 0xD7},
    {0xF7, 0xF7},     {0x1680, 0x1680}, {0x180E, 0x180E}, {0x2000, 0x206F}, {0x20A0, 0x20CF},
    {0x2190, 0x2BFF}, {0x3000, 0x3004}, {0x3008, 0x3020}, {0x3030, 0x3030}, {0x303D, 0x303F},
    {0x30A0, 0x30A0}, {0x30FB, 0x30FB}, {0xE000, 0xF8FF}, {0xFE10, 0xFE6F}, {0xFEFF, 0xFEFF},
    {0xFF00, 0xFF20}, {0xFF3B, 0xFF40}, {0xFF5B, 0xFF65}, {0xFFE0, 0xFFFF},
};

bool IsLetter(char32_t value) {
  return std::none_of(std::begin(kNoLetters), std::end(kNoLetters), [&](const Range& range) {
    return value >= range.first && value <= range.last;
  });
}

int CountLines(std::string_view text) {
  return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

[[noreturn]] void RaiseBrokenText(int line) {
  SqlError error = MakeError(errors::kNotSupported, {"text that is not UTF-8"});
  error.line = line;
  throw error;
}

void CheckEncoding(std::string_view text) {
  for (size_t at = 0; at < text.size();) {
    if (static_cast<unsigned char>(text[at]) < 0x80) {
      ++at;
      continue;
    }
    const size_t size = WholeCharacterAt(text, at).size;
    if (size == 0) RaiseBrokenText(1 + CountLines(text.substr(0, at)));
    at += size;
  }
}

}  // namespace

namespace scanning {

size_t WideLetter(std::string_view text) {
  const Utf8Character character = WholeCharacterAt(text, 0);
  return IsLetter(character.code) ? character.size : 0;
}

size_t CharacterBytes(std::string_view text) {
  return WholeCharacterAt(text, 0).size;
}

}  // namespace scanning

Lexer::Lexer(std::string_view text) : text_(text), scanner_(text) {
  CheckEncoding(text);
  for (size_t i = 0; i <= kLookAhead; ++i) Read(tokens_[i]);
}

const Token& Lexer::Take() {
  const Token& taken = tokens_[first_];
  Read(tokens_[(first_ + kLookAhead + 1) % tokens_.size()]);
  first_ = (first_ + 1) % tokens_.size();
  return taken;
}

void Lexer::Read(Token& token) {
  const RawToken raw = scanner_.Next();
  token = Token{};
  token.kind = raw.kind;
  token.doubled = raw.doubled;
  token.begin = raw.begin;
  token.end = raw.end;
  token.text = text_.substr(raw.begin, raw.end - raw.begin);
  line_ += CountLines(text_.substr(line_counted_to_, raw.begin - line_counted_to_));
  line_counted_to_ = raw.begin;
  token.line = line_;
  if (raw.kind == TokenKind::kWord) token.keyword = FindKeyword(token.text);
}

std::string_view Inside(const Token& token) {
  std::string_view text = token.text;
  if (token.kind == TokenKind::kNationalText) text.remove_prefix(1);
  if (token.kind == TokenKind::kText || token.kind == TokenKind::kNationalText ||
      token.kind == TokenKind::kQuotedName)
    return text.substr(1, text.size() - 2);
  return text;
}

std::string Unquote(const Token& token) {
  const std::string_view inside = Inside(token);
  if (!token.doubled) return std::string(inside);
  const char mark = token.text.back();
  std::string result;
  result.reserve(inside.size());
  for (size_t i = 0; i < inside.size(); ++i) {
    result += inside[i];
    if (inside[i] == mark) ++i;
  }
  return result;
}

}  // namespace tavcc::sql
