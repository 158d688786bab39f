// To binary, and from binary to what is no whole number.
//
// Texts keep their first bytes and get zeros behind; everything else keeps its last bytes and gets
// zeros in front. A decimal is its precision, its scale, a zero, its sign (1 for positive), and its
// digits as a number of 4, 8, 12 or 16 bytes, the lowest first.
#include <algorithm>
#include <bit>

#include "embedded/types/calendar.h"
#include "embedded/types/convert.h"
#include "embedded/types/convert_internal.h"
#include "embedded/types/decimal_math.h"
#include "embedded/types/text_units.h"

namespace tavcc::sql::internal {
namespace {

constexpr size_t kDecimalHead = 4;

void AppendNumber(uint64_t value, size_t width, std::string* out) {
  for (size_t i = width; i-- > 0;) out->push_back(static_cast<char>(value >> (8 * i)));
}

// The last bytes as a number, the highest first.
uint64_t ReadNumber(std::string_view bytes, size_t width) {
  uint64_t value = 0;
  for (const char byte : bytes.substr(bytes.size() - std::min(width, bytes.size()))) {
    value = value << 8 | static_cast<unsigned char>(byte);
  }
  return value;
}

size_t WidthOf(TypeKind kind) {
  switch (kind) {
    case TypeKind::kBigInt:
    case TypeKind::kMoney:
    case TypeKind::kFloat:
    case TypeKind::kDateTime:
      return 8;
    case TypeKind::kInt:
    case TypeKind::kSmallMoney:
    case TypeKind::kReal:
    case TypeKind::kSmallDateTime:
      return 4;
    default:
      return kind == TypeKind::kSmallInt ? 2 : 1;
  }
}

void AppendDecimal(const WideInteger& value, const SqlType& type, std::string* out) {
  unsigned char blob[WideInteger::kBlobSize];
  WideInteger magnitude = value;
  if (value.IsNegative()) magnitude.Negate();
  magnitude.ToBlob(blob);
  const size_t width = type.precision <= 9    ? 4
                       : type.precision <= 19 ? 8
                       : type.precision <= 28 ? 12
                                              : 16;
  out->push_back(static_cast<char>(type.precision));
  out->push_back(static_cast<char>(type.scale));
  out->push_back(0);
  out->push_back(value.IsNegative() ? 0 : 1);
  for (size_t i = 0; i < width; ++i)
    out->push_back(static_cast<char>(blob[WideInteger::kBlobSize - 1 - i]));
}

uint64_t PlainBits(const Conversion& c) {
  if (c.from.kind == TypeKind::kFloat) return std::bit_cast<uint64_t>(c.in.real);
  if (c.from.kind == TypeKind::kReal) {
    return std::bit_cast<uint32_t>(static_cast<float>(c.in.real));
  }
  if (!IsDate(c.from.kind)) return static_cast<uint64_t>(c.in.integer);
  const int64_t day = DayOfTicks(c.in.integer);
  const int64_t rest = c.in.integer - day * kTicksPerDay;
  if (c.from.kind == TypeKind::kDateTime) {
    return static_cast<uint64_t>(day) << 32 | static_cast<uint64_t>(rest);
  }
  return static_cast<uint64_t>(day) << 16 | static_cast<uint64_t>(rest / kTicksPerMinute);
}

int DigitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// False when the text is no row of pairs of hexadecimal digits, after 0x in style 1.
bool ReadHexadecimal(std::string_view text, bool prefixed, std::string* out) {
  if (prefixed) {
    if (!text.starts_with("0x") && !text.starts_with("0X")) return false;
    text.remove_prefix(2);
  }
  if (text.size() % 2 != 0) return false;
  for (size_t i = 0; i < text.size(); i += 2) {
    const int high = DigitOf(text[i]), low = DigitOf(text[i + 1]);
    if (high < 0 || low < 0) return false;
    out->push_back(static_cast<char>(high * 16 + low));
  }
  return true;
}

void AppendUtf16(std::string_view text, std::string* out) {
  const auto unit = [&](uint32_t code) {
    out->push_back(static_cast<char>(code));
    out->push_back(static_cast<char>(code >> 8));
  };
  ForEachUnit(
      text, [](char byte) { return static_cast<unsigned char>(byte); }, unit);
}

// The text's bytes; false with the error set when it is not as its style says.
bool TextBytes(const Conversion& c, std::string* out) {
  if (c.style == 1 || c.style == 2) {
    if (ReadHexadecimal(TrimTrailingBlanks(c.in.bytes), c.style == 1, out)) return true;
    return c.Fail(errors::kConversionError, {KindText(c.from.kind), KindText(c.to.kind)});
  }
  if (IsNationalText(c.from.kind)) {
    AppendUtf16(c.in.bytes, out);
  } else {
    out->assign(c.in.bytes);
  }
  return true;
}

bool ReturnFirstBytes(const Conversion& c) {
  std::string& bytes = c.scratch->text;
  const auto length = static_cast<size_t>(std::max(c.to.length, 0));
  if (c.to.length != SqlType::kMax && bytes.size() > length) {
    if (c.mode == ConvertMode::kAssign) return c.Fail(errors::kTruncation, {});
    bytes.resize(length);
  }
  if (c.to.kind == TypeKind::kBinary && bytes.size() < length) bytes.resize(length, '\0');
  return c.Return(StoredView::Binary(bytes));
}

bool ReturnLastBytes(const Conversion& c) {
  std::string& bytes = c.scratch->text;
  const auto length = static_cast<size_t>(std::max(c.to.length, 0));
  const bool bounded = c.to.length != SqlType::kMax;
  if (bounded && bytes.size() > length) bytes.erase(0, bytes.size() - length);
  const bool pad = c.to.kind == TypeKind::kBinary && bytes.size() < length;
  if (pad) bytes.insert(0, length - bytes.size(), '\0');
  return c.Return(StoredView::Binary(bytes));
}

// False when the bytes are no decimal's.
bool ReadDecimalBytes(std::string_view bytes, WideInteger* value, int* scale) {
  if (bytes.size() < kDecimalHead + 4 || bytes.size() > kDecimalHead + 16) return false;
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(bytes[i]); };
  *scale = byte(1);
  if (byte(0) < 1 || byte(0) > 38 || *scale > byte(0) || byte(3) > 1) return false;
  unsigned char blob[WideInteger::kBlobSize] = {1};
  for (size_t i = kDecimalHead; i < bytes.size(); ++i) {
    blob[WideInteger::kBlobSize - 1 - (i - kDecimalHead)] = byte(i);
  }
  *value = WideInteger::FromBlob(blob);
  if (!value->FitsDigits(byte(0))) return false;
  if (byte(3) == 0) value->Negate();
  return true;
}

}  // namespace

bool ConvertToBinary(const Conversion& c) {
  std::string& bytes = c.scratch->text;
  if (IsBinary(c.from.kind)) {
    bytes.assign(c.in.bytes);
    return ReturnFirstBytes(c);
  }
  // The value itself may stand in the scratch.
  std::string made;
  if (IsText(c.from.kind)) {
    if (!TextBytes(c, &made)) return false;
    bytes = std::move(made);
    return ReturnFirstBytes(c);
  }
  if (c.from.kind == TypeKind::kDate || c.from.kind == TypeKind::kUniqueIdentifier) {
    return c.Fail(errors::kNotSupported, {"conversion of " + TypeText(c.from) + " to binary"});
  }
  if (c.from.kind == TypeKind::kDecimal) {
    AppendDecimal(CoefficientOf(c.in), c.from, &made);
  } else {
    AppendNumber(PlainBits(c), WidthOf(c.from.kind), &made);
  }
  bytes = std::move(made);
  return ReturnLastBytes(c);
}

// The last bytes count, as many as the target has.
bool BinaryToInteger(const Conversion& c) {
  uint64_t value = ReadNumber(c.in.bytes, WidthOf(c.to.kind));
  if (c.to.kind == TypeKind::kBit) value = value != 0 ? 1 : 0;
  if (c.to.kind == TypeKind::kInt) value = static_cast<uint64_t>(static_cast<int32_t>(value));
  if (c.to.kind == TypeKind::kSmallInt) value = static_cast<uint64_t>(static_cast<int16_t>(value));
  return c.Return(StoredView::Integer(static_cast<int64_t>(value)));
}

bool BinaryToScaled(const Conversion& c) {
  if (c.to.kind == TypeKind::kMoney) {
    return c.Return(StoredView::Integer(static_cast<int64_t>(ReadNumber(c.in.bytes, 8))));
  }
  if (c.to.kind == TypeKind::kSmallMoney) {
    return c.Return(StoredView::Integer(static_cast<int32_t>(ReadNumber(c.in.bytes, 4))));
  }
  WideInteger value;
  int scale = 0;
  if (!ReadDecimalBytes(c.in.bytes, &value, &scale)) {
    return c.Fail(errors::kConversionError, {KindText(c.from.kind), KindText(c.to.kind)});
  }
  Rescale(&value, scale, c.to.scale);
  if (!FitsScaled(value, c.to)) return c.Overflow(KindText(c.from.kind), 8);
  return c.Return(StoreCoefficient(value, c.scratch));
}

bool BinaryToDate(const Conversion& c) {
  if (c.to.kind == TypeKind::kDate) {
    return c.Fail(errors::kNotSupported, {"conversion of binary to " + TypeText(c.to)});
  }
  const uint64_t number = ReadNumber(c.in.bytes, WidthOf(c.to.kind));
  const bool small = c.to.kind == TypeKind::kSmallDateTime;
  const int64_t day = small ? static_cast<int64_t>(number >> 16)
                            : static_cast<int64_t>(static_cast<int32_t>(number >> 32));
  const int64_t rest = small ? static_cast<int64_t>(number & 0xffff) * kTicksPerMinute
                             : static_cast<int64_t>(number & 0xffffffff);
  const int64_t ticks = day * kTicksPerDay + rest;
  if (rest >= kTicksPerDay || !InRangeOf(c.to.kind, ticks)) {
    return c.Overflow(KindText(c.from.kind));
  }
  return c.Return(StoredView::Integer(ticks));
}

std::string Utf8Of(std::string_view bytes) {
  const auto unit = [&](size_t i) {
    return static_cast<uint32_t>(static_cast<unsigned char>(bytes[2 * i]) |
                                 static_cast<unsigned char>(bytes[2 * i + 1]) << 8);
  };
  return TextOfUnits(bytes.size() / 2, unit);
}

}  // namespace tavcc::sql::internal
