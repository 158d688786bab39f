// Conversions that the statement leaves to the server.
#include <utility>

#include "embedded/bind/binder.h"
#include "embedded/bind/walk.h"
#include "embedded/types/stored_form.h"

namespace tavcc::sql {
namespace {

// Texts of this length are of one type in all comparisons, plain or national.
constexpr int kLongestGeneral = 4000;

// The literal that `value` is, also below a sign, when it can be exchanged and its type has a
// length, or a precision and a scale. Null when it is none.
BoundLiteral* LiteralOfManyTypes(BoundExpression& value) {
  if (const auto* unary = As<BoundUnary>(value)) {
    return unary->type.kind == TypeKind::kDecimal ? LiteralOfManyTypes(*unary->operand) : nullptr;
  }
  auto* const literal = As<BoundLiteral>(value);
  const bool many = value.type.kind == TypeKind::kDecimal || IsText(value.type.kind);
  return literal != nullptr && literal->slot >= 0 && many ? literal : nullptr;
}

// The type in which a number literal is compared with exact numbers of type `other`: of the same
// scale, so that SQLite compares two stored values, and with room for the literal where `other` has
// none.
SqlType ComparedType(const SqlType& literal, const SqlType& other) {
  constexpr int kStoredAsInteger = 18, kMost = 38;
  const int scale = StoredScale(other);
  if (!IsMoney(other.kind) && NeverFails(literal, other, ConvertMode::kCast)) return other;
  const SqlType small = DecimalType(kStoredAsInteger, std::min(scale, kStoredAsInteger));
  const bool fits = AlwaysStoredAsInteger(other) && NeverFails(literal, small, ConvertMode::kCast);
  return fits ? small : DecimalType(kMost, scale);
}

BoundExpressionPtr Converted(BoundExpressionPtr value, const SqlType& to, ConvertMode mode) {
  if (auto* const unary = As<BoundUnary>(*value)) {
    unary->operand = Converted(std::move(unary->operand), to, mode);
    unary->type = to;
    return value;
  }
  // Also where the types are the same: the next literal's may be another.
  auto converted = std::make_unique<BoundConvert>(std::move(value), to);
  converted->mode = mode;
  return converted;
}

}  // namespace

bool LiteralTypeGuard::Includes(const SqlType& type) const {
  return type == known ||
         (NeverFails(type, to, mode) && (!lossless || type.scale <= StoredScale(to)));
}

BoundExpressionPtr Binder::ConvertLiteral(BoundExpressionPtr value, const SqlType& to, Place place,
                                          ConvertMode mode) {
  const BoundLiteral* literal = LiteralOfManyTypes(*value);
  if (literal == nullptr) return value;
  const bool bare = literal == value.get();
  if (!bare && to.kind != TypeKind::kDecimal) return value;
  if (HowConvertible(literal->type, to) != Convertibility::kImplicit) return value;
  const auto slot = static_cast<size_t>(literal->slot);
  if (place != kValueAlone || !bare) {
    if (!NeverFails(literal->type, to, mode)) return value;
    result_.type_guards.push_back({slot, to, mode, false, literal->type});
  }
  --result_.type_dependents[slot];
  return Converted(std::move(value), to, mode);
}

BoundExpressionPtr Binder::GeneralizeCompared(BoundExpressionPtr value, const SqlType& other) {
  const BoundLiteral* literal = LiteralOfManyTypes(*value);
  if (literal == nullptr) return value;
  if (IsText(literal->type.kind)) {
    GeneralizeText(*value);
    return value;
  }
  if (IsApproximate(other.kind)) return ConvertLiteral(std::move(value), other, kAmongRows);
  if (!IsScaled(other.kind)) return value;
  const LiteralTypeGuard fit{static_cast<size_t>(literal->slot), ComparedType(literal->type, other),
                             ConvertMode::kCast, true, SqlType{}};
  if (!fit.Includes(literal->type)) return value;
  result_.type_guards.push_back(fit);
  --result_.type_dependents[fit.slot];
  return Converted(std::move(value), fit.to, fit.mode);
}

// Money is of higher precedence than int, so the int has to fit; a decimal gets the digits it
// lacks.
BoundExpressionPtr Binder::ScaleCompared(BoundExpressionPtr value, const SqlType& other) {
  if (value->kind != BoundExpression::Kind::kLiteral || !IsInteger(value->type.kind)) return value;
  const SqlType type = IsMoney(other.kind) ? other : ComparedType(value->type, other);
  const bool fits = IsMoney(other.kind) || NeverFails(value->type, type, ConvertMode::kCast);
  return fits ? Convert(std::move(value), type) : std::move(value);
}

void Binder::GeneralizeText(BoundExpression& value) {
  BoundLiteral* literal = LiteralOfManyTypes(value);
  if (literal == nullptr || !IsText(literal->type.kind)) return;
  if (literal->type.length == SqlType::kMax || literal->type.length > kLongestGeneral) return;
  const auto slot = static_cast<size_t>(literal->slot);
  literal->type.length = kLongestGeneral;
  result_.type_guards.push_back({slot, literal->type, ConvertMode::kAssign, false, SqlType{}});
  --result_.type_dependents[slot];
}

BoundExpressionPtr Binder::Convert(BoundExpressionPtr value, const SqlType& to, ConvertMode mode) {
  if (value->type == to) return value;
  if (value->type.kind == TypeKind::kNull) {
    value->type = to;
    return value;
  }
  auto converted = std::make_unique<BoundConvert>(std::move(value), to);
  converted->mode = mode;
  return converted;
}

BoundExpressionPtr Binder::ConvertImplicitly(BoundExpressionPtr value, const SqlType& to) {
  if (value->type.kind != TypeKind::kNull) CheckImplicit(value->type, to);
  return Convert(std::move(value), to);
}

BoundExpressionPtr Binder::ConvertToText(BoundExpressionPtr value) {
  return IsText(value->type.kind)
             ? std::move(value)
             : ConvertImplicitly(std::move(value), TextType(TypeKind::kVarChar, 8000));
}

void Binder::NoteDependence(const BoundExpression& expression, LiteralDependence use) {
  ForEachExpression(expression, [&](const BoundExpression& inner) {
    const auto* literal = As<BoundLiteral>(inner);
    if (literal == nullptr || literal->slot < 0) return;
    LiteralDependence& known = result_.dependences[static_cast<size_t>(literal->slot)];
    known = std::max(known, use);
  });
}

void Binder::ConvertColumns(BoundQuery& query, const std::vector<SqlType>& types) {
  if (query.select) {
    for (size_t i = 0; i < types.size(); ++i) {
      auto& expression = query.select->items[i].expression;
      expression = Convert(std::move(expression), types[i]);
    }
  } else {
    ConvertColumns(*query.left, types);
    ConvertColumns(*query.right, types);
  }
  for (size_t i = 0; i < types.size(); ++i) query.columns[i].type = types[i];
}

}  // namespace tavcc::sql
