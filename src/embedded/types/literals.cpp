#include "embedded/types/literals.h"

#include <algorithm>

#include "embedded/error.h"
#include "embedded/types/number_text.h"
#include "embedded/types/stored_view.h"
#include "embedded/types/text_units.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql {
namespace {

// How many digits stand behind the point.
size_t DecimalsOf(std::string_view number) {
  const size_t point = number.find('.');
  return point == std::string_view::npos ? 0 : number.size() - point - 1;
}

SqlType NumberLiteral(std::string_view text, int64_t* value, WideInteger* coefficient) {
  const size_t precision = LiteralPrecision(text);
  int scale = 0;
  if (precision > SqlType::kMaxPrecision ||
      ReadDecimal(text, coefficient, &scale) != NumberReading::kOk) {
    Raise(errors::kNumberOutOfRange, "number", text);
  }
  // Trailing zeros count: 1.50 has two decimals.
  scale = static_cast<int>(DecimalsOf(text));
  *value = coefficient->ToInt64().value_or(0);
  return DecimalType(static_cast<int>(precision), scale);
}

TypedValue BinaryLiteral(std::string_view digits) {
  std::string bytes;
  const auto value = [](char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; };
  const size_t odd = digits.size() % 2;
  for (size_t i = 0; i < digits.size() + odd; i += 2) {
    const int high = i == 0 && odd != 0 ? 0 : value(digits[i - odd]);
    bytes.push_back(static_cast<char>(high << 4 | value(digits[i + 1 - odd])));
  }
  const int length = std::max(1, static_cast<int>(bytes.size()));
  return {TextType(TypeKind::kVarBinary, length > 8000 ? SqlType::kMax : length), Blob{bytes}};
}

}  // namespace

size_t LiteralPrecision(std::string_view number) {
  std::string_view whole = number.substr(0, number.find('.'));
  whole.remove_prefix(std::min(whole.find_first_not_of('0'), whole.size()));
  return std::max<size_t>(whole.size() + DecimalsOf(number), 1);
}

TypedValue EvaluateLiteral(LiteralForm form, std::string_view text) {
  using Form = LiteralForm;
  switch (form) {
    case Form::kNull:
      return {};
    case Form::kInteger:
    case Form::kDecimal: {
      constexpr int64_t kLargestInt = 2147483647;
      int64_t value = 0;
      WideInteger coefficient;
      const SqlType type = NumberLiteral(text, &value, &coefficient);
      const bool fits = coefficient.ToInt64() && value <= kLargestInt;
      if (form == Form::kInteger && fits) return {kIntType, value};
      Scratch scratch;
      return {type, ToStored(StoreCoefficient(coefficient, &scratch))};
    }
    case Form::kFloat: {
      double value = 0;
      if (ReadFloat(text, &value) != NumberReading::kOk) Raise(errors::kFloatOutOfRange, text, 8);
      return {Type(TypeKind::kFloat), value};
    }
    case Form::kText:
    case Form::kNationalText:
      return {TextLiteralType(form, CountUnits(text)), std::string(text)};
    case Form::kBinary:
      return BinaryLiteral(text);
  }
  return {};
}

SqlType TextLiteralType(LiteralForm form, size_t units) {
  const TypeKind kind = form == LiteralForm::kText ? TypeKind::kVarChar : TypeKind::kNVarChar;
  const int length = static_cast<int>(std::clamp<size_t>(units, 1, 1 << 20));
  return TextType(kind, length > MaxTextLength(kind) ? SqlType::kMax : length);
}

SqlType ConstantAsDecimal(int64_t value) {
  const WideInteger wide = WideInteger::FromInt64(value);
  return DecimalType(static_cast<int>(wide.Digits().size()), 0);
}

}  // namespace tavcc::sql
