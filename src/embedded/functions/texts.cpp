// Text functions. Lengths and positions count UTF-16 units.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string>

#include "embedded/functions/collation.h"
#include "embedded/functions/support.h"
#include "embedded/types/number_text.h"
#include "embedded/types/text_units.h"

namespace tavcc::sql::internal {
namespace {

bool IsBinaryValue(sqlite3_value* value) {
  return sqlite3_value_type(value) == SQLITE_BLOB;
}

// Units `begin` up to `end` of the argument; bytes of a binary one.
void ReturnPart(Context context, sqlite3_value* value, size_t begin, size_t end) {
  if (IsBinaryValue(value)) {
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
    const auto size = static_cast<size_t>(sqlite3_value_bytes(value));
    begin = std::min(begin, size);
    end = std::clamp(end, begin, size);
    sqlite3_result_blob64(context, size == 0 ? "" : bytes + begin, end - begin, SQLITE_TRANSIENT);
    return;
  }
  const std::string_view text = TextOf(value);
  const size_t first = ByteOfUnit(text, begin);
  const std::string_view rest = text.substr(first);
  ReturnText(context, rest.substr(0, ByteOfUnit(rest, end - begin)));
}

void Left(Context context, int, Arguments arguments) {
  const int64_t count = sqlite3_value_int64(arguments[1]);
  if (count < 0) return Fail(context, errors::kInvalidLength);
  ReturnPart(context, arguments[0], 0, static_cast<size_t>(count));
}

size_t UnitsOf(sqlite3_value* value) {
  if (IsBinaryValue(value)) return static_cast<size_t>(sqlite3_value_bytes(value));
  return CountUnits(TextOf(value));
}

void Right(Context context, int, Arguments arguments) {
  const int64_t count = sqlite3_value_int64(arguments[1]);
  if (count < 0) return Fail(context, errors::kInvalidLengthOf, {"RIGHT"});
  const size_t units = UnitsOf(arguments[0]);
  ReturnPart(context, arguments[0], units - std::min(units, static_cast<size_t>(count)), units);
}

// SUBSTRING('abc', 0, 2) is 'a': position 0 is before the text and takes one of the two.
void Substring(Context context, int, Arguments arguments) {
  constexpr int64_t kFar = int64_t{1} << 40;
  const int64_t start = std::clamp<int64_t>(sqlite3_value_int64(arguments[1]), -kFar, kFar);
  const int64_t length = std::min<int64_t>(sqlite3_value_int64(arguments[2]), kFar);
  if (length < 0) return Fail(context, errors::kInvalidLength);
  const int64_t begin = std::max<int64_t>(start - 1, 0);
  const int64_t end = std::max(start - 1 + length, begin);
  ReturnPart(context, arguments[0], static_cast<size_t>(begin), static_cast<size_t>(end));
}

void Length(Context context, int, Arguments arguments) {
  if (IsBinaryValue(arguments[0])) {
    return sqlite3_result_int(context, sqlite3_value_bytes(arguments[0]));
  }
  const size_t units = CountUnits(TrimTrailingBlanks(TextOf(arguments[0])));
  sqlite3_result_int64(context, static_cast<int64_t>(units));
}

void DataLength(Context context, int, Arguments arguments) {
  const auto units = static_cast<int64_t>(UnitsOf(arguments[0]));
  const bool binary = IsBinaryValue(arguments[0]);
  sqlite3_result_int64(context, binary ? units : units * sqlite3_value_int(arguments[1]));
}

void TrimLeft(Context context, int, Arguments arguments) {
  const std::string_view text = TextOf(arguments[0]);
  ReturnText(context, text.substr(std::min(text.find_first_not_of(' '), text.size())));
}

void TrimRight(Context context, int, Arguments arguments) {
  ReturnText(context, TrimTrailingBlanks(TextOf(arguments[0])));
}

template <uint32_t (*map)(uint32_t)>
void MapLetters(Context context, int, Arguments arguments) {
  const std::string_view text = TextOf(arguments[0]);
  std::string mapped;
  mapped.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    const Utf8Character character = DecodeAt(text, at);
    const uint32_t code = map(character.code);
    if (code == character.code) {
      mapped.append(text.substr(at, character.size));
    } else {
      AppendUtf8(mapped, code);
    }
    at += character.size;
  }
  ReturnText(context, mapped);
}

void Reverse(Context context, int, Arguments arguments) {
  const std::string_view text = TextOf(arguments[0]);
  std::string reversed(text.size(), ' ');
  size_t end = text.size();
  for (size_t at = 0; at < text.size();) {
    const size_t size = DecodeAt(text, at).size;
    end -= size;
    text.copy(reversed.data() + end, size, at);
    at += size;
  }
  ReturnText(context, reversed);
}

void Stuff(Context context, int, Arguments arguments) {
  if (AnyNull(3, arguments)) return;
  const std::string_view text = TextOf(arguments[0]);
  const int64_t start = sqlite3_value_int64(arguments[1]);
  const int64_t length = sqlite3_value_int64(arguments[2]);
  const auto units = static_cast<int64_t>(CountUnits(text));
  if (start < 1 || start > units || length < 0) return;
  const size_t begin = ByteOfUnit(text, static_cast<size_t>(start - 1));
  const std::string_view rest = text.substr(begin);
  std::string result(text.substr(0, begin));
  if (sqlite3_value_type(arguments[3]) != SQLITE_NULL) result.append(TextOf(arguments[3]));
  result.append(rest.substr(ByteOfUnit(rest, static_cast<size_t>(length))));
  ReturnText(context, result);
}

// What the server cuts a text to that is of no (max) type.
constexpr int64_t kMostUnits = 8000;

void Replicate(Context context, int count, Arguments arguments) {
  const std::string_view text = TextOf(arguments[0]);
  int64_t times = sqlite3_value_int64(arguments[1]);
  if (times < 0) return;
  const auto units = static_cast<int64_t>(CountUnits(text));
  const int64_t given =
      count == 3 ? std::min<int64_t>(sqlite3_value_int64(arguments[2]), kMostUnits) : kMostUnits;
  const int64_t limit =
      given >= 0 ? given
                 : sqlite3_limit(sqlite3_context_db_handle(context), SQLITE_LIMIT_LENGTH, -1) / 4;
  if (units == 0) return ReturnText(context, "");
  const bool cut = times > limit / units;
  if (cut && given < 0) return sqlite3_result_error_toobig(context);
  if (cut) times = limit / units + 1;
  std::string result;
  result.reserve(text.size() * static_cast<size_t>(times));
  for (int64_t i = 0; i < times; ++i) result.append(text);
  if (cut) result.resize(ByteOfUnit(result, static_cast<size_t>(limit)));
  ReturnText(context, result);
}

void Space(Context context, int, Arguments arguments) {
  const int64_t count = sqlite3_value_int64(arguments[0]);
  if (count < 0) return;
  ReturnText(context, std::string(static_cast<size_t>(std::min(count, kMostUnits)), ' '));
}

template <int64_t last>
void Character(Context context, int, Arguments arguments) {
  const int64_t code = sqlite3_value_int64(arguments[0]);
  const bool half_of_pair = code >= 0xd800 && code <= 0xdfff;
  if (code < 0 || code > last || half_of_pair) return;
  std::string text;
  AppendUtf8(text, static_cast<uint32_t>(code));
  ReturnText(context, text);
}

// A character outside the first 256 has no code of one byte: it counts as "?".
void Ascii(Context context, int, Arguments arguments) {
  const std::string_view text = TextOf(arguments[0]);
  if (text.empty()) return;
  const uint32_t code = DecodeAt(text, 0).code;
  sqlite3_result_int(context, code < 256 ? static_cast<int>(code) : '?');
}

void Unicode(Context context, int, Arguments arguments) {
  const std::string_view text = TextOf(arguments[0]);
  if (text.empty()) return;
  uint32_t code = DecodeAt(text, 0).code;
  if (code >= kFirstOfTwoUnits) code = HighSurrogateOf(code);  // the first unit of the pair
  sqlite3_result_int64(context, code);
}

void NumberAsText(Context context, int count, Arguments arguments) {
  constexpr int kDefaultLength = 10, kMostDecimals = 16;
  const double value = sqlite3_value_double(arguments[0]);
  const int length = count > 1 ? sqlite3_value_int(arguments[1]) : kDefaultLength;
  int decimals = count > 2 ? std::min(sqlite3_value_int(arguments[2]), kMostDecimals) : 0;
  if (length <= 0 || length > kMostUnits || decimals < 0) return;
  char buffer[400];
  const auto width = static_cast<size_t>(length);
  for (;; --decimals) {
    const int size = std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    const std::string_view text(buffer, static_cast<size_t>(size));
    if (text.size() <= width) {
      return ReturnText(context, std::string(width - text.size(), ' ').append(text));
    }
    if (decimals == 0) return ReturnText(context, std::string(width, '*'));
  }
}

void Concatenate(Context context, int, Arguments arguments) {
  std::string text(TextOf(arguments[0]));
  text.append(TextOf(arguments[1]));
  const int64_t length = sqlite3_value_int64(arguments[2]);
  if (length >= 0) text.resize(ByteOfUnit(text, static_cast<size_t>(length)));
  ReturnText(context, text);
}

// What any numeric type would read, and the bare signs that money reads as 0.
void IsNumericText(Context context, int, Arguments arguments) {
  int result = 0;
  if (!AnyNull(1, arguments)) {
    const std::string_view text = TrimBlanks(TextOf(arguments[0]));
    const bool sign =
        text.size() == 1 && std::string_view("+-.,$").find(text) != std::string_view::npos;
    double number = 0;
    WideInteger coefficient;
    int scale = 0;
    const bool read = ReadFloat(text, &number) == NumberReading::kOk ||
                      ReadMoney(text, &coefficient, &scale) == NumberReading::kOk;
    result = !text.empty() && (sign || read) ? 1 : 0;
  }
  sqlite3_result_int(context, result);
}

// clang-format off
constexpr auto kTextFunctions = std::to_array<ScalarEntry>({
    {"t_left", 2, Strict<Left>},                {"t_right", 2, Strict<Right>},
    {"t_substring", 3, Strict<Substring>},      {"t_len", 1, Strict<Length>},
    {"t_datalength", 2, Strict<DataLength>},    {"t_ltrim", 1, Strict<TrimLeft>},
    {"t_rtrim", 1, Strict<TrimRight>},          {"t_upper", 1, Strict<MapLetters<UpperOf>>},
    {"t_lower", 1, Strict<MapLetters<LowerOf>>}, {"t_reverse", 1, Strict<Reverse>},
    {"t_stuff", 4, Guarded<Stuff>},             {"t_replicate", 2, Strict<Replicate>},
    {"t_replicate", 3, Strict<Replicate>},      {"t_space", 1, Strict<Space>},
    {"t_char", 1, Strict<Character<255>>},      {"t_nchar", 1, Strict<Character<65535>>},
    {"t_ascii", 1, Strict<Ascii>},              {"t_unicode", 1, Strict<Unicode>},
    {"t_str", 1, Strict<NumberAsText>},         {"t_str", 2, Strict<NumberAsText>},
    {"t_str", 3, Strict<NumberAsText>},         {"t_concat", 3, Strict<Concatenate>},
    {"t_isnumeric", 1, Guarded<IsNumericText>},
});
// clang-format on

}  // namespace

std::span<const ScalarEntry> TextFunctions() {
  return kTextFunctions;
}

}  // namespace tavcc::sql::internal
