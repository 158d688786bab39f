#include "embedded/bind/walk.h"

namespace tavcc::sql {
namespace {

using QueryVisitor = std::function<void(const BoundQuery&)>;

void VisitCase(const BoundCase& expression, const ExpressionVisitor& visit,
               const QueryVisitor& visit_query) {
  for (const auto& when : expression.whens) {
    ForEachChild(*when.condition, visit, visit_query);
    visit(*when.result);
  }
  if (expression.otherwise) visit(*expression.otherwise);
}

void VisitSelect(const BoundSelect& select, const ExpressionVisitor& visit) {
  if (select.top) ForEachExpression(*select.top.count, visit);
  for (const auto& item : select.items) ForEachExpression(*item.expression, visit);
  if (select.from) ForEachExpression(*select.from, visit);
  if (select.where) ForEachExpression(*select.where, visit);
  for (const auto& key : select.group_by) ForEachExpression(*key, visit);
  if (select.having) ForEachExpression(*select.having, visit);
}

}  // namespace

void ForEachChild(const BoundExpression& expression, const ExpressionVisitor& visit,
                  const QueryVisitor& visit_query) {
  switch (expression.kind) {
    case BoundExpression::Kind::kUnary:
      visit(*static_cast<const BoundUnary&>(expression).operand);
      break;
    case BoundExpression::Kind::kArithmetic:
      visit(*static_cast<const BoundArithmetic&>(expression).left);
      visit(*static_cast<const BoundArithmetic&>(expression).right);
      break;
    case BoundExpression::Kind::kConvert: {
      const auto& convert = static_cast<const BoundConvert&>(expression);
      visit(*convert.operand);
      if (convert.style_value) visit(*convert.style_value);
      break;
    }
    case BoundExpression::Kind::kCall:
      for (const auto& argument : static_cast<const BoundCall&>(expression).arguments) {
        visit(*argument);
      }
      break;
    case BoundExpression::Kind::kCase:
      VisitCase(static_cast<const BoundCase&>(expression), visit, visit_query);
      break;
    case BoundExpression::Kind::kSubquery:
      visit_query(*static_cast<const BoundSubquery&>(expression).query);
      break;
    case BoundExpression::Kind::kAggregate: {
      const auto& aggregate = static_cast<const BoundAggregate&>(expression);
      if (aggregate.operand) visit(*aggregate.operand);
      break;
    }
    default:
      break;
  }
}

void ForEachChild(const BoundCondition& condition, const ExpressionVisitor& visit,
                  const QueryVisitor& visit_query) {
  switch (condition.kind) {
    case BoundCondition::Kind::kComparison:
      visit(*static_cast<const BoundComparison&>(condition).left);
      visit(*static_cast<const BoundComparison&>(condition).right);
      break;
    case BoundCondition::Kind::kAnd:
    case BoundCondition::Kind::kOr:
      for (const auto& operand : static_cast<const BoundLogical&>(condition).operands) {
        ForEachChild(*operand, visit, visit_query);
      }
      break;
    case BoundCondition::Kind::kNot:
      ForEachChild(*static_cast<const BoundNot&>(condition).operand, visit, visit_query);
      break;
    case BoundCondition::Kind::kIsNull:
      visit(*static_cast<const BoundIsNull&>(condition).operand);
      break;
    case BoundCondition::Kind::kInList: {
      const auto& in = static_cast<const BoundInList&>(condition);
      visit(*in.operand);
      for (const auto& value : in.values) visit(*value);
      break;
    }
    case BoundCondition::Kind::kInQuery:
      visit(*static_cast<const BoundInQuery&>(condition).operand);
      visit_query(*static_cast<const BoundInQuery&>(condition).query);
      break;
    case BoundCondition::Kind::kLike: {
      const auto& like = static_cast<const BoundLike&>(condition);
      visit(*like.operand);
      visit(*like.pattern);
      if (like.escape) visit(*like.escape);
      break;
    }
    case BoundCondition::Kind::kExists:
      visit_query(*static_cast<const BoundExists&>(condition).query);
      break;
    case BoundCondition::Kind::kIndexFilter:
      break;
  }
}

void ForEachExpression(const BoundExpression& expression, const ExpressionVisitor& visit) {
  visit(expression);
  ForEachChild(
      expression, [&](const BoundExpression& child) { ForEachExpression(child, visit); },
      [&](const BoundQuery& query) { ForEachExpression(query, visit); });
}

void ForEachExpression(const BoundCondition& condition, const ExpressionVisitor& visit) {
  ForEachChild(
      condition, [&](const BoundExpression& child) { ForEachExpression(child, visit); },
      [&](const BoundQuery& query) { ForEachExpression(query, visit); });
}

void ForEachExpression(const BoundQuery& query, const ExpressionVisitor& visit) {
  if (query.select) VisitSelect(*query.select, visit);
  if (query.left) ForEachExpression(*query.left, visit);
  if (query.right) ForEachExpression(*query.right, visit);
  for (const auto& order : query.order_by) {
    if (order.expression) ForEachExpression(*order.expression, visit);
  }
}

void ForEachExpression(const BoundFrom& from, const ExpressionVisitor& visit) {
  if (from.source && from.source->query) ForEachExpression(*from.source->query, visit);
  if (from.left) ForEachExpression(*from.left, visit);
  if (from.right) ForEachExpression(*from.right, visit);
  if (from.on) ForEachExpression(*from.on, visit);
}

const BoundColumn* AsColumn(const BoundExpression& expression) {
  return expression.kind == BoundExpression::Kind::kColumn
             ? &static_cast<const BoundColumn&>(expression)
             : nullptr;
}

void ForEachConjunct(const BoundCondition* condition,
                     const std::function<void(const BoundCondition&)>& visit) {
  if (condition == nullptr) return;
  if (condition->kind != BoundCondition::Kind::kAnd) {
    visit(*condition);
    return;
  }
  for (const auto& operand : static_cast<const BoundLogical*>(condition)->operands) {
    ForEachConjunct(operand.get(), visit);
  }
}

void ForEachSource(const BoundFrom& from, const std::function<void(const BoundSource&)>& visit) {
  if (from.source) visit(*from.source);
  if (from.left) ForEachSource(*from.left, visit);
  if (from.right) ForEachSource(*from.right, visit);
}

}  // namespace tavcc::sql
