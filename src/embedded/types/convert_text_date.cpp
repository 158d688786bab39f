// The targets text and date.
#include <cmath>

#include "embedded/types/calendar.h"
#include "embedded/types/convert_internal.h"
#include "embedded/types/date_text.h"
#include "embedded/types/decimal_math.h"
#include "embedded/types/number_text.h"
#include "embedded/types/text_units.h"

namespace tavcc::sql::internal {
namespace {

// The calendar of styles 130 and 131. Its leap years are those of the "Kuwaiti algorithm", of which
// there is no description to go by.
constexpr bool IsHijri(int style) {
  return style == 130 || style == 131;
}

bool FailHijri(const Conversion& c) {
  return c.Fail(errors::kNotSupported,
                {"style " + std::to_string(c.style) + " of CONVERT (the Hijri calendar)"});
}

// ---- To text ----

// Fits a text into the target: cut (or refused), padded with blanks for char and nchar.
bool ReturnText(const Conversion& c, std::string_view text) {
  if (c.to.length == SqlType::kMax) return c.Return(StoredView::Text(text));
  const auto length = static_cast<size_t>(c.to.length);
  // A character has at least as many bytes as units, so a short text need not be counted.
  const bool short_enough = text.size() <= length;
  if (short_enough && !IsFixedText(c.to.kind)) return c.Return(StoredView::Text(text));
  if (!short_enough) {
    const size_t fit = ByteOfUnit(text, length);
    const std::string_view rest = text.substr(fit);
    if (c.mode == ConvertMode::kAssign && !TrimTrailingBlanks(rest).empty())
      return c.Fail(errors::kTruncation, {});
    text = text.substr(0, fit);
  }
  if (!IsFixedText(c.to.kind)) return c.Return(StoredView::Text(text));
  const size_t units = CountUnits(text);
  if (units >= length) return c.Return(StoredView::Text(text));
  std::string padded(text);
  padded.append(length - units, ' ');
  c.scratch->text = std::move(padded);
  return c.Return(StoredView::Text(c.scratch->text));
}

// What does not fit of a whole number is shown as "*", but only in char and varchar.
bool ReturnInteger(const Conversion& c) {
  std::string& text = c.scratch->text;
  text = std::to_string(c.in.integer);
  const bool fits = c.to.length == SqlType::kMax || text.size() <= static_cast<size_t>(c.to.length);
  if (!fits) {
    const bool star = !IsNationalText(c.to.kind) && c.from.kind != TypeKind::kBigInt;
    if (!star) return c.Overflow("expression");
    text = "*";
  }
  return ReturnText(c, text);
}

bool ReturnNumber(const Conversion& c, std::string_view from) {
  const std::string& text = c.scratch->text;
  if (c.to.length != SqlType::kMax && text.size() > static_cast<size_t>(c.to.length)) {
    if (IsMoney(c.from.kind)) return c.Fail(errors::kMoneyTooLongForText, {KindText(c.to.kind)});
    return c.Overflow(from, 5);
  }
  return ReturnText(c, text);
}

// Styles: 0 two decimals, 1 with commas, 2 four decimals.
std::string MoneyText(const StoredView& in, int style) {
  constexpr int kMoneyScale = 4;
  WideInteger value = CoefficientOf(in);
  const int scale = style == 2 || style == 126 ? kMoneyScale : 2;
  Rescale(&value, kMoneyScale, scale);
  std::string text = DecimalText(value, scale);
  if (style != 1) return text;
  const size_t first = value.IsNegative() ? 1 : 0;
  for (size_t at = text.find('.'); at > first + 3;) text.insert(at -= 3, 1, ',');
  return text;
}

std::string Hexadecimal(std::string_view bytes, bool prefix) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text = prefix ? "0x" : "";
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    text.push_back(kDigits[value >> 4]);
    text.push_back(kDigits[value & 15]);
  }
  return text;
}

bool DateToText(const Conversion& c) {
  std::string& text = c.scratch->text;
  text.clear();
  if (IsHijri(c.style)) return FailHijri(c);
  if (!WriteDate(c.in.integer, c.style, c.from.kind == TypeKind::kDate, &text)) {
    return c.Fail(errors::kInvalidStyle, {c.style, KindText(c.from.kind)});
  }
  return ReturnText(c, text);
}

bool GuidToText(const Conversion& c) {
  constexpr int kGuidLength = 36;
  if (c.to.length == SqlType::kMax || c.to.length >= kGuidLength) return ReturnText(c, c.in.bytes);
  return c.Overflow("expression");
}

// ---- To dates ----

// Rounds to what the target keeps: days, minutes, ticks.
int64_t RoundFor(TypeKind kind, int64_t ticks) {
  switch (kind) {
    case TypeKind::kDate:
      return DayOfTicks(ticks) * kTicksPerDay;
    case TypeKind::kSmallDateTime:
      return FloorDivide(ticks + kTicksPerMinute / 2, kTicksPerMinute) * kTicksPerMinute;
    default:
      return ticks;
  }
}

bool OutOfRange(const Conversion& c) {
  return c.Fail(errors::kDateOutOfRange, {KindText(c.from.kind), KindText(c.to.kind)});
}

bool TextToDate(const Conversion& c) {
  int64_t ticks = 0;
  if (IsHijri(c.style)) return FailHijri(c);
  const DateReading reading = ReadDate(c.in.bytes, c.style, &ticks);
  const bool small = c.to.kind == TypeKind::kSmallDateTime;
  if (reading == DateReading::kNoDate)
    return c.Fail(small ? errors::kTextNoSmallDateTime : errors::kTextNoDate, {});
  if (reading == DateReading::kOk) {
    ticks = RoundFor(c.to.kind, ticks);
    if (InRangeOf(c.to.kind, ticks)) return c.Return(StoredView::Integer(ticks));
  }
  // The newer type has one message for both.
  return c.to.kind == TypeKind::kDate ? c.Fail(errors::kTextNoDate, {}) : OutOfRange(c);
}

// Days since 1900-01-01, the fraction being the time of day.
bool ReturnDays(const Conversion& c, double days) {
  const double ticks = std::floor(days * static_cast<double>(kTicksPerDay) + 0.5);
  constexpr double kBeyondAny = 1e15;
  if (!(std::fabs(ticks) < kBeyondAny)) return c.Overflow("expression");
  const int64_t whole = RoundFor(c.to.kind, static_cast<int64_t>(ticks));
  return InRangeOf(c.to.kind, whole) ? c.Return(StoredView::Integer(whole))
                                     : c.Overflow("expression");
}

}  // namespace

bool ConvertToText(const Conversion& c) {
  std::string& text = c.scratch->text;
  if (IsText(c.from.kind)) return ReturnText(c, c.in.bytes);
  if (IsInteger(c.from.kind)) return ReturnInteger(c);
  if (c.from.kind == TypeKind::kDecimal) {
    text = DecimalText(CoefficientOf(c.in), c.from.scale);
    return ReturnNumber(c, KindText(c.from.kind));
  }
  if (IsMoney(c.from.kind)) {
    text = MoneyText(c.in, c.style);
    return ReturnNumber(c, KindText(c.from.kind));
  }
  if (IsApproximate(c.from.kind)) {
    text.clear();
    WriteFloat(c.in.real, c.style, &text);
    return ReturnNumber(c, "expression");
  }
  if (IsDate(c.from.kind)) return DateToText(c);
  if (c.from.kind == TypeKind::kUniqueIdentifier) return GuidToText(c);
  if (c.style == 0) {
    if (IsNationalText(c.to.kind)) text = Utf8Of(c.in.bytes);
    return ReturnText(c, IsNationalText(c.to.kind) ? std::string_view(text) : c.in.bytes);
  }
  text = Hexadecimal(c.in.bytes, c.style == 1);
  return ReturnText(c, text);
}

bool ConvertToDate(const Conversion& c) {
  if (IsDate(c.from.kind)) {
    const int64_t ticks = RoundFor(c.to.kind, c.in.integer);
    return InRangeOf(c.to.kind, ticks) ? c.Return(StoredView::Integer(ticks)) : OutOfRange(c);
  }
  if (IsText(c.from.kind)) return TextToDate(c);
  if (IsInteger(c.from.kind)) return ReturnDays(c, static_cast<double>(c.in.integer));
  if (IsApproximate(c.from.kind)) return ReturnDays(c, c.in.real);
  if (!IsScaled(c.from.kind)) return BinaryToDate(c);
  WideInteger value = CoefficientOf(c.in);
  const int scale = StoredScale(c.from);
  WideInteger ticks = WideInteger::Multiply(value, WideInteger::FromInt64(kTicksPerDay));
  Rescale(&ticks, scale, 0);
  const auto whole = ticks.ToInt64();
  constexpr int64_t kBeyondAny = 1000000000000000;
  if (!whole || *whole > kBeyondAny || *whole < -kBeyondAny) return c.Overflow("expression");
  const int64_t rounded = RoundFor(c.to.kind, *whole);
  return InRangeOf(c.to.kind, rounded) ? c.Return(StoredView::Integer(rounded))
                                       : c.Overflow("expression");
}

}  // namespace tavcc::sql::internal
