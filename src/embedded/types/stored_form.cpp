// Conversions that the stored form makes needless, and those that cannot fail.
#include "embedded/types/stored_form.h"

#include <limits>

#include "embedded/types/calendar.h"
#include "embedded/types/type_rules.h"
#include "foundation/wide_integer.h"

namespace tavcc::sql {
namespace {

bool Fits(int from, int to) {
  return to == SqlType::kMax || (from != SqlType::kMax && from <= to);
}

bool IsWithin(const StoredValue& value, int64_t least, int64_t greatest) {
  return value.kind() == StoredValue::Kind::kInteger && value.integer() >= least &&
         value.integer() <= greatest;
}

}  // namespace

bool IsSameStored(const SqlType& from, const SqlType& to) {
  if (from == to) return true;
  if (IsInteger(from.kind)) {
    if (IsInteger(to.kind)) return to.kind >= from.kind && to.kind != TypeKind::kBit;
    return to.kind == TypeKind::kDecimal && to.scale == 0 &&
           to.precision >= AsDecimal(from).precision;
  }
  if (IsScaled(from.kind)) {
    if (from.kind == TypeKind::kSmallMoney && to.kind == TypeKind::kMoney) return true;
    return to.kind == TypeKind::kDecimal && to.scale == StoredScale(from) &&
           to.precision >= AsDecimal(from).precision;
  }
  if (IsText(from.kind)) {
    if (!IsText(to.kind) || IsFixedText(to.kind)) return false;
    return Fits(from.length, to.length);
  }
  if (from.kind == TypeKind::kReal) return to.kind == TypeKind::kFloat;
  if (from.kind == TypeKind::kDate || from.kind == TypeKind::kSmallDateTime) {
    return to.kind == TypeKind::kDateTime;
  }
  return false;
}

bool NeverFails(const SqlType& from, const SqlType& to, ConvertMode mode) {
  if (IsSameStored(from, to)) return true;
  if (IsText(from.kind)) {
    return IsText(to.kind) && (mode == ConvertMode::kCast || Fits(from.length, to.length));
  }
  if (IsInteger(from.kind) && IsScaled(to.kind)) {
    const SqlType decimal = AsDecimal(to);
    return decimal.precision - decimal.scale >= AsDecimal(from).precision;
  }
  if (IsScaled(from.kind) && IsScaled(to.kind)) {
    // Rounding can carry into one more digit.
    const SqlType a = AsDecimal(from), b = AsDecimal(to);
    return b.precision - b.scale >= a.precision - a.scale + (b.scale < a.scale ? 1 : 0);
  }
  return (IsInteger(from.kind) || IsScaled(from.kind)) && IsApproximate(to.kind);
}

bool IsStoredAs(const StoredValue& value, const SqlType& type) {
  using Kind = StoredValue::Kind;
  if (value.IsNull()) return true;
  switch (type.kind) {
    case TypeKind::kNull:
      return false;
    case TypeKind::kBit:
      return IsWithin(value, 0, 1);
    case TypeKind::kTinyInt:
      return IsWithin(value, 0, std::numeric_limits<uint8_t>::max());
    case TypeKind::kSmallInt:
      return IsWithin(value, std::numeric_limits<int16_t>::min(),
                      std::numeric_limits<int16_t>::max());
    case TypeKind::kInt:
      return IsWithin(value, std::numeric_limits<int32_t>::min(),
                      std::numeric_limits<int32_t>::max());
    case TypeKind::kBigInt:
      return value.kind() == Kind::kInteger;
    case TypeKind::kDate:
    case TypeKind::kSmallDateTime:
    case TypeKind::kDateTime:
      return value.kind() == Kind::kInteger && InRangeOf(TypeKind::kDate, value.integer());
    case TypeKind::kSmallMoney:
    case TypeKind::kMoney:
    case TypeKind::kDecimal:
      return value.kind() == Kind::kInteger ||
             (value.kind() == Kind::kBlob && value.blob().size() == WideInteger::kBlobSize);
    case TypeKind::kReal:
    case TypeKind::kFloat:
      return value.kind() == Kind::kReal;
    case TypeKind::kBinary:
    case TypeKind::kVarBinary:
      return value.kind() == Kind::kBlob;
    case TypeKind::kChar:
    case TypeKind::kVarChar:
    case TypeKind::kNChar:
    case TypeKind::kNVarChar:
    case TypeKind::kUniqueIdentifier:
      return value.kind() == Kind::kText;
  }
  return false;
}

std::string_view FormText(const StoredValue& value) {
  switch (value.kind()) {
    case StoredValue::Kind::kNull:
      return "NULL";
    case StoredValue::Kind::kInteger:
    case StoredValue::Kind::kReal:
      return "a number";
    case StoredValue::Kind::kText:
      return "text";
    case StoredValue::Kind::kBlob:
      return "bytes";
  }
  return "";
}

}  // namespace tavcc::sql
