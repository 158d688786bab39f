#include "foundation/conversions.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "foundation/error.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

using Kind = Value::Kind;

[[noreturn]] void Raise(RuntimeError number) {
  throw AutomationError(number);
}

// The numeric value of a text; nothing when it is not a number text as a whole.
std::optional<double> ParseNumber(std::string_view text) {
  text = Trim(text);
  if (!text.empty() && text[0] == '+') text.remove_prefix(1);
  // from_chars also knows "inf" and "nan"; a number starts with a digit, a point or a minus sign.
  const size_t digit = text.find_first_of("0123456789.");
  if (digit > 1 || (digit == 1 && text[0] != '-')) return std::nullopt;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) Raise(RuntimeError::kOverflow);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

double RequireNumber(std::string_view text) {
  const auto value = ParseNumber(text);
  if (!value) Raise(RuntimeError::kTypeMismatch);
  return *value;
}

[[noreturn]] void RaiseNotConvertible(const Value& value) {
  switch (value.kind()) {
    case Kind::kNull:
      Raise(RuntimeError::kInvalidUseOfNull);
    case Kind::kObject:
      Raise(value.object() == nullptr ? RuntimeError::kObjectNotSet : RuntimeError::kTypeMismatch);
    default:
      Raise(RuntimeError::kTypeMismatch);
  }
}

template <class Integer>
Integer RoundToInteger(double value) {
  // The bounds are exact as doubles; the test after rounding also refuses NaN.
  const double rounded = std::nearbyint(value);
  if (!(rounded >= std::numeric_limits<Integer>::min() &&
        rounded <= std::numeric_limits<Integer>::max())) {
    Raise(RuntimeError::kOverflow);
  }
  return static_cast<Integer>(rounded);
}

template <class Integer>
Integer RoundToInteger(const Decimal& value) {
  const auto whole = value.RoundedHalfEven(0).Coefficient64();
  if (!whole || *whole < std::numeric_limits<Integer>::min() ||
      *whole > std::numeric_limits<Integer>::max()) {
    Raise(RuntimeError::kOverflow);
  }
  return static_cast<Integer>(*whole);
}

template <class Integer>
Integer ToIntegerOf(const Value& value) {
  switch (value.kind()) {
    case Kind::kInteger:
      return static_cast<Integer>(value.integer());
    case Kind::kLong:
      if constexpr (sizeof(Integer) >= sizeof(int32_t)) return value.long_integer();
      return RoundToInteger<Integer>(static_cast<double>(value.long_integer()));
    case Kind::kDecimal:
      return RoundToInteger<Integer>(value.decimal());
    default:
      return RoundToInteger<Integer>(ToDouble(value));
  }
}

bool IsNumeric(Kind kind) {
  return kind == Kind::kBoolean || kind == Kind::kInteger || kind == Kind::kLong ||
         kind == Kind::kDouble || kind == Kind::kDecimal || kind == Kind::kDate;
}

// The value with what counts as nothing made 0, ready for a numeric conversion that cannot fail on
// its form.
Value OrZero(const Value& value) {
  switch (value.kind()) {
    case Kind::kEmpty:
    case Kind::kNull:
    case Kind::kMissing:
      return int32_t{0};
    case Kind::kText:
      return ParseNumber(value.text()) ? value : Value(int32_t{0});
    default:
      return value;
  }
}

}  // namespace

int16_t ToInteger(const Value& value) {
  return ToIntegerOf<int16_t>(value);
}

int32_t ToLong(const Value& value) {
  return ToIntegerOf<int32_t>(value);
}

double ToDouble(const Value& value) {
  switch (value.kind()) {
    case Kind::kEmpty:
      return 0;
    case Kind::kBoolean:
      return value.boolean() ? -1 : 0;
    case Kind::kInteger:
      return value.integer();
    case Kind::kLong:
      return value.long_integer();
    case Kind::kDouble:
      return value.number();
    case Kind::kDecimal:
      return value.decimal().ToDouble();
    case Kind::kDate:
      return value.date().ToAutomation();
    case Kind::kText:
      return RequireNumber(value.text());
    default:
      RaiseNotConvertible(value);
  }
}

Decimal ToDecimal(const Value& value) {
  const auto decimal = ToDecimalIfItFits(value);
  if (!decimal) Raise(RuntimeError::kOverflow);
  return *decimal;
}

std::optional<Decimal> ToDecimalIfItFits(const Value& value) {
  if (value.kind() == Kind::kDecimal) return value.decimal();
  if (value.kind() == Kind::kText) {
    if (const auto exact = Decimal::Parse(value.text())) return exact;
  }
  return Decimal::FromDouble(ToDouble(value));
}

bool ToBoolean(const Value& value) {
  if (value.kind() == Kind::kBoolean) return value.boolean();
  if (value.IsText()) {
    const std::string_view text = Trim(value.text());
    if (EqualsIgnoringCase(text, "True")) return true;
    if (EqualsIgnoringCase(text, "False")) return false;
  }
  if (value.kind() == Kind::kDecimal) return !value.decimal().IsZero();
  return ToDouble(value) != 0;
}

DateTime ToDate(const Value& value) {
  if (value.kind() == Kind::kDate) return value.date();
  if (value.IsText()) {
    const auto date = DateTime::Parse(value.text());
    if (!date) Raise(RuntimeError::kTypeMismatch);
    return *date;
  }
  const auto date = DateTime::FromAutomation(ToDouble(value));
  if (!date) Raise(RuntimeError::kOverflow);
  return *date;
}

std::string ToText(const Value& value) {
  switch (value.kind()) {
    case Kind::kEmpty:
      return "";
    case Kind::kBoolean:
      return value.boolean() ? "True" : "False";
    case Kind::kInteger:
      return Cat(int32_t{value.integer()});
    case Kind::kLong:
      return Cat(value.long_integer());
    case Kind::kDouble:
      return NumberText(value.number());
    case Kind::kDecimal:
      return Cat(value.decimal());
    case Kind::kDate:
      return value.date().ToText();
    case Kind::kText:
      return value.text();
    default:
      RaiseNotConvertible(value);
  }
}

double NumberOrZero(const Value& value) {
  return ToDouble(OrZero(value));
}
Decimal DecimalOrZero(const Value& value) {
  return ToDecimal(OrZero(value));
}
int32_t LongOrZero(const Value& value) {
  return ToLong(OrZero(value));
}

std::optional<double> SettingNumber(const Value& value) {
  if (value.IsText()) return ParseNumber(value.text());
  return NumberOrZero(value);
}

bool VariantEquals(const Value& a, const Value& b) {
  const auto is_empty_like = [](const Value& other) {
    if (other.IsEmpty()) return true;
    if (other.IsText()) return other.text().empty();
    return IsNumeric(other.kind()) && ToDouble(other) == 0;
  };
  if (a.IsEmpty()) return is_empty_like(b);
  if (b.IsEmpty()) return is_empty_like(a);
  if (a.IsText() || b.IsText()) return a.IsText() && b.IsText() && a.text() == b.text();
  if (a.IsObject() && b.IsObject()) return a.object() == b.object();
  if (!IsNumeric(a.kind()) || !IsNumeric(b.kind())) return false;
  if (a.kind() == Kind::kDecimal && b.kind() == Kind::kDecimal) return a.decimal() == b.decimal();
  return ToDouble(a) == ToDouble(b);
}

std::string NumberText(double value) {
  if (!std::isfinite(value)) Raise(RuntimeError::kOverflow);
  constexpr int kSignificant = 15;
  char buffer[40];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value),
                                 std::chars_format::scientific, kSignificant - 1)
                       .ptr;
  const std::string_view text(buffer, static_cast<size_t>(end - buffer));
  const size_t exponent_at = text.find('e');
  int point = 0;  // digits before the decimal point
  const std::string_view exponent =
      text.substr(exponent_at + (text[exponent_at + 1] == '+' ? 2 : 1));
  std::from_chars(exponent.data(), exponent.data() + exponent.size(), point);
  ++point;

  std::string digits(1, text[0]);
  digits += text.substr(2, exponent_at - 2);
  digits.erase(digits.find_last_not_of('0') + 1);
  if (digits.empty()) return "0";
  const auto count = static_cast<int>(digits.size());
  if (point <= 0) {
    digits.insert(0, static_cast<size_t>(-point), '0');
    digits.insert(0, "0.");
  } else if (point < count) {
    digits.insert(static_cast<size_t>(point), 1, '.');
  } else {
    digits.append(static_cast<size_t>(point - count), '0');
  }
  return value < 0 ? "-" + digits : digits;
}

}  // namespace tavcc
