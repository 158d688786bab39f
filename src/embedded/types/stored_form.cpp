// Conversions that the stored form makes needless, and those that cannot fail.
#include "embedded/types/stored_form.h"

#include "embedded/types/type_rules.h"

namespace tavcc::sql {
namespace {

bool Fits(int from, int to) {
  return to == SqlType::kMax || (from != SqlType::kMax && from <= to);
}

bool IsFixedText(TypeKind kind) {
  return kind == TypeKind::kChar || kind == TypeKind::kNChar;
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

}  // namespace tavcc::sql
