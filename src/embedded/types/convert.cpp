// The fork by target type, and the targets that are no text: numbers, binary, uniqueidentifier.
#include "embedded/types/convert.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "embedded/types/calendar.h"
#include "embedded/types/convert_internal.h"
#include "embedded/types/decimal_math.h"
#include "embedded/types/number_text.h"
#include "embedded/types/text_units.h"

namespace tavcc::sql {
namespace internal {
namespace {

// ---- To whole numbers ----

bool TextOverflow(const Conversion& c) {
  const std::string_view from = KindText(c.from.kind);
  switch (c.to.kind) {
    case TypeKind::kTinyInt:
      return c.Fail(errors::kTextOverflowsInteger, {from, c.in.bytes, "INT1"}, 1);
    case TypeKind::kSmallInt:
      return c.Fail(errors::kTextOverflowsInteger, {from, c.in.bytes, "INT2"}, 2);
    case TypeKind::kInt:
      return c.Fail(errors::kTextOverflowsInt, {from, c.in.bytes});
    default:
      return c.Overflow("expression");
  }
}

bool TextToInteger(const Conversion& c) {
  int64_t value = 0;
  const NumberReading reading = ReadWhole(c.in.bytes, &value);
  if (reading == NumberReading::kNoNumber) {
    // The server has no value in this message for the one type that came later.
    if (c.to.kind == TypeKind::kBigInt) {
      return c.Fail(errors::kConversionError, {KindText(c.from.kind), KindText(c.to.kind)});
    }
    return c.Fail(errors::kTextConversionFailed,
                  {KindText(c.from.kind), c.in.bytes, KindText(c.to.kind)});
  }
  if (reading == NumberReading::kOverflow || !IsInRange(c.to.kind, value)) return TextOverflow(c);
  return c.Return(StoredView::Integer(value));
}

bool TextToBit(const Conversion& c) {
  const std::string_view text = TrimBlanks(c.in.bytes);
  const auto is = [text](std::string_view word) {
    return std::ranges::equal(text, word, [](char a, char b) { return (a | 0x20) == b; });
  };
  if (is("true")) return c.Return(StoredView::Integer(1));
  if (is("false")) return c.Return(StoredView::Integer(0));
  int64_t value = 0;
  switch (ReadWhole(text, &value)) {
    case NumberReading::kNoNumber:
      return c.Fail(errors::kTextConversionFailed,
                    {KindText(c.from.kind), c.in.bytes, KindText(c.to.kind)});
    case NumberReading::kOverflow:
      return c.Return(StoredView::Integer(1));
    case NumberReading::kOk:
      break;
  }
  return c.Return(StoredView::Integer(value != 0 ? 1 : 0));
}

bool IntegerOverflow(const Conversion& c) {
  const bool narrow = c.to.kind == TypeKind::kTinyInt || c.to.kind == TypeKind::kSmallInt;
  if (!narrow || c.from.kind == TypeKind::kBigInt) return c.Overflow("expression");
  return c.Fail(errors::kIntegerOverflow, {KindText(c.to.kind), c.in.integer},
                c.to.kind == TypeKind::kTinyInt ? 2 : 1);
}

bool FloatToInteger(const Conversion& c) {
  const double whole = std::trunc(c.in.real);
  // 2^63 is a double, so the comparison is exact on both sides.
  const bool fits = whole >= -0x1p63 && whole < 0x1p63;
  if (fits && IsInRange(c.to.kind, static_cast<int64_t>(whole))) {
    return c.Return(StoredView::Integer(static_cast<int64_t>(whole)));
  }
  if (c.to.kind == TypeKind::kBigInt) return c.Overflow("expression");
  char text[400];
  std::snprintf(text, sizeof text, "%f", c.in.real);
  int state = 3;
  if (c.to.kind == TypeKind::kTinyInt) state = 1;
  if (c.to.kind == TypeKind::kSmallInt) state = 2;
  return c.Fail(errors::kFloatOverflow, {KindText(c.to.kind), text}, state);
}

// Decimals are cut, money is rounded.
bool ScaledToInteger(const Conversion& c) {
  const int scale = StoredScale(c.from);
  WideInteger value = CoefficientOf(c.in);
  if (IsMoney(c.from.kind)) {
    value.RoundDigits(scale);
  } else {
    value.CutDigits(scale);
  }
  const auto whole = value.ToInt64();
  if (whole && IsInRange(c.to.kind, *whole)) return c.Return(StoredView::Integer(*whole));
  if (c.from.kind == TypeKind::kMoney && c.to.kind == TypeKind::kInt) {
    return c.Fail(errors::kMoneyTooLongForTextOf, {KindText(c.to.kind)});
  }
  return c.Overflow(KindText(c.from.kind));
}

bool DateToInteger(const Conversion& c) {
  const int64_t days = FloorDivide(c.in.integer + kTicksPerDay / 2, kTicksPerDay);
  if (IsInRange(c.to.kind, days)) return c.Return(StoredView::Integer(days));
  return c.Fail(errors::kIntegerOverflow, {KindText(c.to.kind), days},
                c.to.kind == TypeKind::kTinyInt ? 2 : 1);
}

bool ConvertToBit(const Conversion& c) {
  if (IsText(c.from.kind)) return TextToBit(c);
  if (IsBinary(c.from.kind)) return BinaryToInteger(c);
  const bool set = c.in.kind == StoredView::Kind::kReal   ? c.in.real != 0
                   : c.in.kind == StoredView::Kind::kBlob ? true
                                                          : c.in.integer != 0;
  return c.Return(StoredView::Integer(set ? 1 : 0));
}

// ---- To decimals and money ----

// Rounds to the target's scale and stores, or raises the overflow in the source's name.
bool ReturnScaled(const Conversion& c, WideInteger value, int scale, std::string_view source,
                  int state) {
  Rescale(&value, scale, StoredScale(c.to));
  if (!FitsScaled(value, c.to)) return c.Overflow(source, state);
  return c.Return(StoreCoefficient(value, c.scratch));
}

bool TextToScaled(const Conversion& c) {
  WideInteger value;
  int scale = 0;
  const bool money = IsMoney(c.to.kind);
  const NumberReading reading =
      money ? ReadMoney(c.in.bytes, &value, &scale) : ReadDecimal(c.in.bytes, &value, &scale);
  if (!money) {
    if (reading == NumberReading::kNoNumber) {
      return c.Fail(errors::kConversionError, {KindText(c.from.kind), KindText(c.to.kind)});
    }
    if (reading == NumberReading::kOverflow) return c.Overflow(KindText(c.from.kind), 6);
    return ReturnScaled(c, value, scale, KindText(c.from.kind), 8);
  }
  const bool small = c.to.kind == TypeKind::kSmallMoney;
  if (reading == NumberReading::kNoNumber)
    return c.Fail(small ? errors::kCharNoSmallMoney : errors::kCharNoMoney, {});
  if (reading == NumberReading::kOk) Rescale(&value, scale, StoredScale(c.to));
  if (reading == NumberReading::kOverflow || !FitsScaled(value, c.to)) {
    return c.Fail(small ? errors::kSmallMoneyOverflow : errors::kMoneyOverflow, {});
  }
  return c.Return(StoreCoefficient(value, c.scratch));
}

bool FloatToScaled(const Conversion& c) {
  constexpr double kBeyondAny = 1e39;
  if (!(std::fabs(c.in.real) < kBeyondAny)) return c.Overflow(KindText(c.from.kind), 6);
  WideInteger value;
  int scale = 0;
  DecimalOfFloat(c.in.real, &value, &scale);
  return ReturnScaled(c, value, scale, KindText(c.from.kind), 6);
}

bool DateToScaled(const Conversion& c) {
  // One digit more than the target keeps, cut with its sign, is enough to round by.
  const int scale = StoredScale(c.to) + 1;
  WideInteger days = WideInteger::FromInt64(c.in.integer);
  days.MultiplyByPowerOf10(scale);
  WideInteger quotient;
  WideInteger::Divide(days, WideInteger::FromInt64(kTicksPerDay), &quotient, nullptr);
  return ReturnScaled(c, quotient, scale, "expression", 2);
}

// ---- To floating point ----

bool ReturnFloat(const Conversion& c, double value) {
  if (c.to.kind == TypeKind::kReal) {
    if (std::fabs(value) > double{std::numeric_limits<float>::max()})
      return c.Overflow("expression");
    value = static_cast<double>(static_cast<float>(value));
  }
  return c.Return(StoredView::Real(value));
}

// ---- To uniqueidentifier ----

// 32 hexadecimal digits in groups of 8-4-4-4-12.
bool IsGuid(std::string_view text) {
  if (text.size() != 36) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
    const bool digit = std::isxdigit(static_cast<unsigned char>(text[i])) != 0;
    if (dash ? text[i] != '-' : !digit) return false;
  }
  return true;
}

}  // namespace

bool ConvertToInteger(const Conversion& c) {
  if (c.to.kind == TypeKind::kBit) return ConvertToBit(c);
  if (IsInteger(c.from.kind)) {
    return IsInRange(c.to.kind, c.in.integer) ? c.Return(c.in) : IntegerOverflow(c);
  }
  if (IsText(c.from.kind)) return TextToInteger(c);
  if (IsScaled(c.from.kind)) return ScaledToInteger(c);
  if (IsApproximate(c.from.kind)) return FloatToInteger(c);
  if (IsDate(c.from.kind)) return DateToInteger(c);
  if (IsBinary(c.from.kind)) return BinaryToInteger(c);
  return c.NotAllowed();
}

bool ConvertToScaled(const Conversion& c) {
  if (IsInteger(c.from.kind) || IsScaled(c.from.kind)) {
    return ReturnScaled(c, CoefficientOf(c.in), StoredScale(c.from), KindText(c.from.kind), 8);
  }
  if (IsText(c.from.kind)) return TextToScaled(c);
  if (IsApproximate(c.from.kind)) return FloatToScaled(c);
  if (IsDate(c.from.kind)) return DateToScaled(c);
  return BinaryToScaled(c);
}

bool ConvertToFloat(const Conversion& c) {
  if (IsApproximate(c.from.kind)) return ReturnFloat(c, c.in.real);
  if (IsInteger(c.from.kind)) return ReturnFloat(c, static_cast<double>(c.in.integer));
  if (IsScaled(c.from.kind)) {
    // Through the text: the double nearest to the exact value, not one that was divided once more.
    double value = 0;
    ReadFloat(DecimalText(CoefficientOf(c.in), StoredScale(c.from)), &value);
    return ReturnFloat(c, value);
  }
  if (IsDate(c.from.kind)) {
    return ReturnFloat(c, static_cast<double>(c.in.integer) / static_cast<double>(kTicksPerDay));
  }
  if (!IsText(c.from.kind)) return c.NotAllowed();
  double value = 0;
  switch (ReadFloat(c.in.bytes, &value)) {
    case NumberReading::kNoNumber:
      return c.Fail(errors::kConversionError, {KindText(c.from.kind), KindText(c.to.kind)});
    case NumberReading::kOverflow:
      return c.Overflow(KindText(c.from.kind));
    case NumberReading::kOk:
      break;
  }
  return ReturnFloat(c, value);
}

bool ConvertToGuid(const Conversion& c) {
  if (c.from.kind == TypeKind::kUniqueIdentifier) return c.Return(c.in);
  if (!IsText(c.from.kind)) return c.NotAllowed();
  std::string_view text = TrimTrailingBlanks(c.in.bytes);
  if (text.size() == 38 && text.front() == '{' && text.back() == '}') text = text.substr(1, 36);
  if (!IsGuid(text)) return c.Fail(errors::kTextNoUniqueIdentifier, {});
  std::string& upper = c.scratch->text;
  upper.assign(text);
  for (char& letter : upper) {
    if (letter >= 'a' && letter <= 'f') letter = static_cast<char>(letter - 32);
  }
  return c.Return(StoredView::Text(upper));
}

namespace {

// Whether the value is stored as values of its type are. Anything else is a fault of whoever says
// what type it has, and must not turn into another value.
bool HasStoredForm(const StoredView& cell, TypeKind kind) {
  using Kind = StoredView::Kind;
  if (IsText(kind) || kind == TypeKind::kUniqueIdentifier) return cell.kind == Kind::kText;
  if (IsBinary(kind)) return cell.kind == Kind::kBlob;
  if (IsApproximate(kind)) return cell.kind == Kind::kReal;
  if (IsScaled(kind) && cell.kind == Kind::kBlob)
    return cell.bytes.size() == WideInteger::kBlobSize;
  if (cell.kind != Kind::kInteger) return false;
  return !IsDate(kind) || InRangeOf(TypeKind::kDate, cell.integer);
}

}  // namespace
}  // namespace internal

bool ConvertView(const StoredView& in, const SqlType& from, const SqlType& to, ConvertMode mode,
                 int style, Scratch* scratch, StoredView* out, SqlError* error) {
  const internal::Conversion conversion{in, from, to, mode, style, scratch, out, error};
  if (in.kind == StoredView::Kind::kNull || from.kind == TypeKind::kNull)
    return conversion.Return({});
  if (!internal::HasStoredForm(in, from.kind)) {
    return conversion.Fail(errors::kNotSupported,
                           {"a stored form that no " + TypeText(from) + " has"});
  }
  if (HowConvertible(from, to) == Convertibility::kNever) return conversion.NotAllowed();
  if (IsText(to.kind)) return internal::ConvertToText(conversion);
  if (IsInteger(to.kind)) return internal::ConvertToInteger(conversion);
  if (IsScaled(to.kind)) return internal::ConvertToScaled(conversion);
  if (IsDate(to.kind)) return internal::ConvertToDate(conversion);
  if (IsApproximate(to.kind)) return internal::ConvertToFloat(conversion);
  if (IsBinary(to.kind)) return internal::ConvertToBinary(conversion);
  if (to.kind == TypeKind::kUniqueIdentifier) return internal::ConvertToGuid(conversion);
  return conversion.Return(in);
}

}  // namespace tavcc::sql
