// Conversions that the statement leaves to the server.
#include <utility>

#include "embedded/bind/binder.h"
#include "embedded/bind/walk.h"

namespace tavcc::sql {

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

void Binder::Use(const BoundExpression& expression, LiteralUse use) {
  ForEachExpression(expression, [&](const BoundExpression& inner) {
    if (inner.kind != BoundExpression::Kind::kLiteral) return;
    const int slot = static_cast<const BoundLiteral&>(inner).slot;
    if (slot < 0) return;
    LiteralUse& known = result_.uses[static_cast<size_t>(slot)];
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
