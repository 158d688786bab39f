// Walking a bound tree.
#pragma once

#include <functional>

#include "embedded/bind/bound.h"

namespace tavcc::sql {

using ExpressionVisitor = std::function<void(const BoundExpression&)>;

// Visits the expression and everything inside it, conditions and subqueries included, outermost
// first.
void ForEachExpression(const BoundExpression& expression, const ExpressionVisitor& visit);
void ForEachExpression(const BoundCondition& condition, const ExpressionVisitor& visit);
void ForEachExpression(const BoundQuery& query, const ExpressionVisitor& visit);
void ForEachExpression(const BoundFrom& from, const ExpressionVisitor& visit);

// Only the expressions directly under `expression`, and those directly under its conditions;
// subqueries are handed to `visit_query`.
void ForEachChild(const BoundExpression& expression, const ExpressionVisitor& visit,
                  const std::function<void(const BoundQuery&)>& visit_query);
void ForEachChild(const BoundCondition& condition, const ExpressionVisitor& visit,
                  const std::function<void(const BoundQuery&)>& visit_query);

// The AND that the condition is; null when it is anything else.
template <class Condition>
auto* AsConjunction(Condition& condition) {
  auto* const logical = As<BoundLogical>(condition);
  return logical != nullptr && logical->op == LogicalOperator::kAnd ? logical : nullptr;
}

// The comparison by "=" that the condition is; null when it is anything else.
inline const BoundComparison* AsEquality(const BoundCondition& condition) {
  const auto* comparison = As<BoundComparison>(condition);
  return comparison != nullptr && comparison->op == ComparisonOperator::kEqual ? comparison
                                                                               : nullptr;
}

// The operands of an AND, those of inner ones too, or the condition itself; none for null.
void ForEachConjunct(const BoundCondition* condition,
                     const std::function<void(const BoundCondition&)>& visit);

// The sources of a FROM clause, left to right.
template <class From, class Visit>
void ForEachSource(From& from, const Visit& visit) {
  if (from.source) visit(static_cast<ConstAs<From, BoundSource>&>(*from.source));
  if (from.left) ForEachSource(static_cast<From&>(*from.left), visit);
  if (from.right) ForEachSource(static_cast<From&>(*from.right), visit);
}

bool HasSource(const BoundFrom& from, const BoundSource* source);

}  // namespace tavcc::sql
