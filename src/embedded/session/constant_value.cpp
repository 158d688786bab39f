#include "embedded/session/constant_value.h"

#include "embedded/error.h"
#include "embedded/types/literals.h"

namespace tavcc::sql {

TypedValue ConstantValue(const Expression& expression) {
  if (const auto* literal = As<LiteralExpression>(expression)) {
    return EvaluateLiteral(literal->form, literal->text);
  }
  if (const auto* unary = As<UnaryExpression>(expression)) {
    TypedValue value = ConstantValue(*unary->operand);
    if (unary->op == UnaryExpression::Operator::kPlus) return value;
    if (unary->op == UnaryExpression::Operator::kMinus) {
      if (value.value.kind() == StoredValue::Kind::kInteger) {
        value.value = StoredValue(-value.value.integer());
        return value;
      }
      if (value.value.kind() == StoredValue::Kind::kReal) {
        value.value = StoredValue(-value.value.real());
        return value;
      }
    }
  }
  RaiseUnsupported("a parameter default of this form");
}

}  // namespace tavcc::sql
