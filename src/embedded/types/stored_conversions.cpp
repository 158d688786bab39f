#include "embedded/types/stored_conversions.h"

#include <algorithm>

#include "embedded/error.h"
#include "embedded/types/convert.h"
#include "embedded/types/decimal_math.h"
#include "embedded/types/stored_view.h"
#include "embedded/types/text_units.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql {
namespace {

Decimal ToDecimal(const StoredView& cell, int scale) {
  if (cell.kind == StoredView::Kind::kInteger) return Decimal::FromScaled(cell.integer, scale);
  // A stored decimal has at most 38 digits, so its text is always one.
  return *Decimal::Parse(DecimalText(CoefficientOf(cell), scale));
}

StoredValue FromDecimal(const Decimal& value) {
  const auto& limbs = value.limbs();
  WideInteger coefficient = WideInteger::FromInt64(0);
  for (size_t i = limbs.size(); i-- > 0;) {
    coefficient = WideInteger::Multiply(coefficient, WideInteger::FromInt64(int64_t{1} << 32));
    coefficient.Add(WideInteger::FromInt64(limbs[i]));
  }
  if (value.IsNegative()) coefficient.Negate();
  Scratch scratch;
  return ToStored(StoreCoefficient(coefficient, &scratch));
}

}  // namespace

StoredValue ConvertStored(const StoredValue& value, const SqlType& from, const SqlType& to,
                          ConvertMode mode, int style) {
  Scratch scratch;
  StoredView out;
  SqlError error;
  if (!ConvertView(FromStored(value), from, to, mode, style, &scratch, &out, &error)) throw error;
  return ToStored(out);
}

Value ToValue(const StoredValue& value, const SqlType& type) {
  if (value.IsNull()) return Null{};
  if (IsBinary(type.kind)) RaiseUnsupported("a value of type " + TypeText(type));
  switch (type.kind) {
    case TypeKind::kBit:
      return value.integer() != 0;
    case TypeKind::kTinyInt:
    case TypeKind::kSmallInt:
      return static_cast<int16_t>(value.integer());
    case TypeKind::kInt:
      return static_cast<int32_t>(value.integer());
    case TypeKind::kBigInt:
    case TypeKind::kSmallMoney:
    case TypeKind::kMoney:
    case TypeKind::kDecimal:
      return ToDecimal(FromStored(value), StoredScale(type));
    case TypeKind::kReal:
    case TypeKind::kFloat:
      return value.real();
    case TypeKind::kDate:
    case TypeKind::kSmallDateTime:
    case TypeKind::kDateTime:
      return DateTime::FromTicks(value.integer());
    default:
      return value.text();
  }
}

TypedValue FromValue(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kEmpty:
    case Value::Kind::kNull:
    case Value::Kind::kMissing:
      return {};
    case Value::Kind::kBoolean:
      return {Type(TypeKind::kBit), int64_t{value.boolean()}};
    case Value::Kind::kInteger:
      return {Type(TypeKind::kSmallInt), int64_t{value.integer()}};
    case Value::Kind::kLong:
      return {kIntType, int64_t{value.long_integer()}};
    case Value::Kind::kDouble:
      return {Type(TypeKind::kFloat), value.number()};
    case Value::Kind::kDecimal:
      return {DecimalType(Decimal::kMaxPrecision, value.decimal().scale()),
              FromDecimal(value.decimal())};
    case Value::Kind::kDate:
      return {Type(TypeKind::kDateTime), value.date().ticks()};
    case Value::Kind::kText: {
      const size_t units = CountUnits(value.text());
      const int length = units > 4000 ? SqlType::kMax : std::max(static_cast<int>(units), 1);
      return {TextType(TypeKind::kNVarChar, length), value.text()};
    }
    case Value::Kind::kObject:
      break;
  }
  RaiseUnsupported("an object as a parameter");
}

std::string DisplayText(const StoredValue& value, const SqlType& type) {
  if (value.IsNull()) return "NULL";
  if (IsText(type.kind)) return value.text();
  constexpr int kOdbcCanonical = 121;
  constexpr int kAllDigitsOfMoney = 2;
  constexpr int kAllDigitsOfFloat = 3;
  int style = kNoStyle;
  if (IsDate(type.kind)) style = kOdbcCanonical;
  if (IsMoney(type.kind)) style = kAllDigitsOfMoney;
  if (IsApproximate(type.kind)) style = kAllDigitsOfFloat;
  if (IsBinary(type.kind)) style = 1;
  return ConvertStored(value, type, TextType(TypeKind::kVarChar, SqlType::kMax), ConvertMode::kCast,
                       style)
      .text();
}

}  // namespace tavcc::sql
