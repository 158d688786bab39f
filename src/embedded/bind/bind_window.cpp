// Binding of window functions: aggregates with OVER, ranking, LAG and LEAD, first and last value.
//
// They are computed when grouping and HAVING are done, and so may stand in the select list and in
// ORDER BY, and may look at aggregates, but not at one another.
#include <utility>

#include "embedded/bind/binder.h"
#include "embedded/bind/function_rules.h"
#include "embedded/bind/walk.h"
#include "embedded/catalog/names.h"

namespace tavcc::sql {
namespace {

// Errors: 174, 10755.
void CheckWindowArguments(const FunctionExpression& function, const WindowRule& rule) {
  const size_t count = function.arguments.size();
  if (!function.star && count >= rule.least && count <= rule.most) return;
  const auto least = static_cast<int64_t>(rule.least);
  if (rule.least == rule.most)
    Raise(errors::kWrongArgumentCount, FoldName(function.name.last()), least);
  Raise(errors::kWindowArgumentCount, function.name.last(), least, static_cast<int64_t>(rule.most));
}

// A constant puts nothing in order. Errors: 5308, a number that could be meant for a column; 5309.
void CheckWindowOrder(const Expression& expression) {
  if (expression.kind == Expression::Kind::kUnary) {
    const auto& unary = static_cast<const UnaryExpression&>(expression);
    if (unary.operand->kind == Expression::Kind::kLiteral) Raise(errors::kConstantOrderInWindow);
  }
  if (expression.kind != Expression::Kind::kLiteral) return;
  const auto& literal = static_cast<const LiteralExpression&>(expression);
  const bool index = literal.form == LiteralExpression::Form::kInteger &&
                     literal.text.find_first_not_of('0') != std::string::npos;
  Raise(index ? errors::kOrderByPositionInWindow : errors::kConstantOrderInWindow);
}

}  // namespace

BoundExpressionPtr Binder::BindWindow(const FunctionExpression& function, const Scope& scope) {
  const std::string& name = function.name.last();
  const AggregateName* const aggregate = FindAggregate(name);
  const WindowRule* const rule = FindWindowFunction(name);
  if (aggregate == nullptr && rule == nullptr) Raise(errors::kNoWindowFunction, name);
  if (aggregates_ == nullptr || !aggregates_->windows) Raise(errors::kWindowOutsideSelect);
  if (aggregates_->inside || aggregates_->inside_window) Raise(errors::kWindowInWindow);
  if (recursion_ != nullptr && recursion_->id != 0 && recursion_->depth == 1) {
    RaiseUnsupported("a window function in the recursive part of a common table expression");
  }
  if (function.distinct) Raise(errors::kDistinctInWindow);
  const WindowClause& over = *function.over;
  if (rule != nullptr) {
    CheckWindowArguments(function, *rule);
    if (over.frame && !rule->frame) Raise(errors::kFrameNotAllowed, name);
    if (over.order_by.empty()) Raise(errors::kWindowWithoutOrderBy, name);
  }
  if (over.frame && over.order_by.empty()) Raise(errors::kFrameWithoutOrderBy);
  auto window = std::make_unique<BoundWindow>(
      rule != nullptr ? rule->function : WindowFunction::kAggregate, Type(TypeKind::kBigInt));
  if (aggregate != nullptr) window->aggregate = aggregate->aggregate;
  aggregates_->inside_window = true;
  BindWindowArguments(function, *window, scope);
  BindOver(over, *window, scope);
  aggregates_->inside_window = false;
  aggregates_->window_found = true;
  return window;
}

void Binder::BindWindowArguments(const FunctionExpression& function, BoundWindow& window,
                                 const Scope& scope) {
  if (window.function != WindowFunction::kAggregate) {
    for (size_t i = 0; i < function.arguments.size(); ++i) {
      window.arguments.push_back(BindWindowArgument(*function.arguments[i], i, window, scope));
    }
    switch (window.function) {
      case WindowFunction::kPercentRank:
      case WindowFunction::kCumeDist:
        window.type = Type(TypeKind::kFloat);
        break;
      case WindowFunction::kLag:
      case WindowFunction::kLead:
      case WindowFunction::kFirstValue:
      case WindowFunction::kLastValue:
        window.type = window.arguments[0]->type;
        break;
      default:
        window.nullable = false;
    }
    return;
  }
  window.type = kIntType;
  window.nullable = window.aggregate != Aggregate::kCount;
  if (function.star) {
    if (window.aggregate != Aggregate::kCount) Raise(errors::kSyntaxNear, "*");
    return;
  }
  if (function.arguments.size() != 1)
    Raise(errors::kWrongArgumentCount, FoldName(function.name.last()), int64_t{1});
  auto operand = Bind(*function.arguments[0], scope);
  window.type = ResolveAggregate(window.aggregate, operand->type);
  window.arguments.push_back(AggregateOperand(window.aggregate, std::move(operand), window.type));
}

// Errors: 4116 and 5312 of NTILE; those of conversions.
BoundExpressionPtr Binder::BindWindowArgument(const Expression& argument, size_t position,
                                              const BoundWindow& window, const Scope& scope) {
  auto value = Bind(argument, scope);
  if (window.function == WindowFunction::kNtile) {
    ForEachExpression(*value, [](const BoundExpression& inner) {
      if (inner.kind == BoundExpression::Kind::kColumn) Raise(errors::kNtileNotBound);
    });
    if (!IsInteger(value->type.kind)) Raise(errors::kNtileNotPositive);
    return Convert(std::move(value), Type(TypeKind::kBigInt));
  }
  if (position == 1) return ConvertImplicitly(std::move(value), Type(TypeKind::kBigInt));
  if (position == 2) {
    const SqlType& type = window.arguments[0]->type;
    return ConvertImplicitly(ConvertLiteral(std::move(value), type, kAmongRows), type);
  }
  return value;
}

void Binder::BindOver(const WindowClause& over, BoundWindow& window, const Scope& scope) {
  for (const auto& key : over.partition_by) window.partition_by.push_back(Bind(*key, scope));
  for (const OrderItem& item : over.order_by) {
    CheckWindowOrder(*item.expression);
    BoundOrder order;
    order.descending = item.descending;
    order.expression = Bind(*item.expression, scope);
    order.type = order.expression->type;
    window.order_by.push_back(std::move(order));
  }
  window.frame = over.frame;
}

}  // namespace tavcc::sql
