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

// The operands of an AND, those of inner ones too, or the condition itself; none for null.
void ForEachConjunct(const BoundCondition* condition,
                     const std::function<void(const BoundCondition&)>& visit);

// The column that the expression is; null when it is anything else.
const BoundColumn* AsColumn(const BoundExpression& expression);

// The sources of a FROM clause, left to right.
void ForEachSource(const BoundFrom& from, const std::function<void(const BoundSource&)>& visit);
void ForEachSource(BoundFrom& from, const std::function<void(BoundSource&)>& visit);

}  // namespace tavcc::sql
