// Texts in UTF-8: whether one is, one that is made of one that is not, its characters, and their
// units in UTF-16.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tavcc {

inline constexpr uint32_t kReplacementCharacter = 0xFFFD;
inline constexpr uint32_t kFirstOfTwoUnits = 0x10000;  // from here on UTF-16 takes two units
inline constexpr uint32_t kLastCharacter = 0x10FFFF;

constexpr bool IsHighSurrogate(uint32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
constexpr bool IsLowSurrogate(uint32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}
constexpr bool IsSurrogate(uint32_t unit) {
  return IsHighSurrogate(unit) || IsLowSurrogate(unit);
}

// The two units of a character from kFirstOfTwoUnits on, and the character of two such units.
constexpr uint32_t HighSurrogateOf(uint32_t code) {
  return 0xD800 + ((code - kFirstOfTwoUnits) >> 10);
}
constexpr uint32_t LowSurrogateOf(uint32_t code) {
  return 0xDC00 + ((code - kFirstOfTwoUnits) & 0x3FF);
}
constexpr uint32_t CharacterOfPair(uint32_t high, uint32_t low) {
  return kFirstOfTwoUnits + ((high - 0xD800) << 10) + (low - 0xDC00);
}

constexpr bool IsContinuationByte(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
}

// Bytes of the character that begins with `lead`; 0 where none does.
constexpr size_t SizeByLead(char lead) {
  const auto byte = static_cast<unsigned char>(lead);
  if (byte < 0x80) return 1;
  return byte < 0xC2 ? 0 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : byte < 0xF5 ? 4 : 0;
}

struct Utf8Character {
  uint32_t code = 0;
  size_t size = 0;  // in bytes; 0 where the bytes are no UTF-8
};

// The character at `at`, which is inside the text. Half of a surrogate pair is one, too: databases
// hold them.
constexpr Utf8Character CharacterAt(std::string_view text, size_t at) {
  constexpr uint32_t kLeast[] = {0, 0, 0x80, 0x800, kFirstOfTwoUnits};
  const size_t size = SizeByLead(text[at]);
  const auto lead = static_cast<unsigned char>(text[at]);
  if (size == 1) return {lead, 1};
  if (size == 0 || text.size() - at < size) return {};
  uint32_t code = lead & (0xFFU >> (size + 1));
  for (size_t i = 1; i < size; ++i) {
    if (!IsContinuationByte(text[at + i])) return {};
    code = code << 6 | (static_cast<unsigned char>(text[at + i]) & 0x3FU);
  }
  if (code < kLeast[size] || code > kLastCharacter) return {};
  return {code, size};
}

// The same, where half of a pair is no UTF-8 either.
constexpr Utf8Character WholeCharacterAt(std::string_view text, size_t at) {
  const Utf8Character character = CharacterAt(text, at);
  return IsSurrogate(character.code) ? Utf8Character{} : character;
}

// Adds the character, or the half of a pair, to `out`.
void AppendUtf8(std::string& out, uint32_t code);

// Whether the whole text is UTF-8, without halves of pairs.
bool IsUtf8(std::string_view text);

// The text with U+FFFD for each byte that belongs to no character.
std::string RepairedUtf8(std::string_view text);

// How many characters a text that is UTF-8 has.
size_t CharacterCount(std::string_view text);

// Calls `take` with each unit of the text in UTF-16. A byte that is no UTF-8 is one unit: what
// `unit_of` makes of it.
template <class UnitOf, class Take>
void ForEachUnit(std::string_view text, const UnitOf& unit_of, const Take& take) {
  for (size_t at = 0; at < text.size();) {
    const Utf8Character character = CharacterAt(text, at);
    at += character.size == 0 ? 1 : character.size;
    if (character.size == 0) {
      take(unit_of(text[at - 1]));
    } else if (character.code < kFirstOfTwoUnits) {
      take(character.code);
    } else {
      take(HighSurrogateOf(character.code));
      take(LowSurrogateOf(character.code));
    }
  }
}

// The text of `count` units of UTF-16, which `unit(i)` gives. A half of a pair becomes U+FFFD.
template <class Unit>
std::string TextOfUnits(size_t count, const Unit& unit) {
  std::string text;
  text.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    const uint32_t code = unit(i);
    if (IsHighSurrogate(code) && i + 1 < count && IsLowSurrogate(unit(i + 1))) {
      AppendUtf8(text, CharacterOfPair(code, unit(++i)));
    } else {
      AppendUtf8(text, IsSurrogate(code) ? kReplacementCharacter : code);
    }
  }
  return text;
}

}  // namespace tavcc
