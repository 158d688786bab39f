// Binding of conditions.
#include <algorithm>
#include <utility>

#include "embedded/bind/binder.h"

namespace tavcc::sql {
namespace {

// Texts of one kind are compared whatever their lengths.
bool IsComparedAs(const SqlType& type, const SqlType& common) {
  return IsText(common.kind) ? type.kind == common.kind : type == common;
}

}  // namespace

BoundConditionPtr Binder::BindCondition(const Condition& condition) {
  return Bind(condition, Scope{});
}

BoundConditionPtr Binder::Bind(const Condition& condition, const Scope& scope) {
  switch (condition.kind) {
    case Condition::Kind::kComparison: {
      const auto& comparison = static_cast<const ComparisonCondition&>(condition);
      return Compare(comparison.op, Bind(*comparison.left, scope), Bind(*comparison.right, scope));
    }
    case Condition::Kind::kLogical: {
      const auto& logical = static_cast<const LogicalCondition&>(condition);
      auto bound = std::make_unique<BoundLogical>(logical.op);
      for (const auto& operand : logical.operands) bound->operands.push_back(Bind(*operand, scope));
      return bound;
    }
    case Condition::Kind::kNot:
      return std::make_unique<BoundNot>(
          Bind(*static_cast<const NotCondition&>(condition).operand, scope));
    case Condition::Kind::kIsNull: {
      const auto& is_null = static_cast<const IsNullCondition&>(condition);
      auto bound = std::make_unique<BoundIsNull>();
      bound->operand = Bind(*is_null.operand, scope);
      bound->negated = is_null.negated;
      return bound;
    }
    case Condition::Kind::kBetween:
      return BindBetween(static_cast<const BetweenCondition&>(condition), scope);
    case Condition::Kind::kInList:
      return BindInList(static_cast<const InListCondition&>(condition), scope);
    case Condition::Kind::kInQuery:
      return BindInQuery(static_cast<const InQueryCondition&>(condition), scope);
    case Condition::Kind::kLike:
      return BindLike(static_cast<const LikeCondition&>(condition), scope);
    case Condition::Kind::kExists:
      break;
  }
  auto bound = std::make_unique<BoundExists>();
  bound->query = BindInner(*static_cast<const ExistsCondition&>(condition).query, &scope);
  return bound;
}

BoundConditionPtr Binder::Compare(ComparisonOperator op, BoundExpressionPtr left,
                                  BoundExpressionPtr right) {
  left = GeneralizeCompared(std::move(left), right->type);
  right = GeneralizeCompared(std::move(right), left->type);
  const SqlType common = CommonType(left->type, right->type);
  // Exact numbers are compared at their own scales.
  const bool exact = IsExact(left->type.kind) && IsExact(right->type.kind);
  if (exact && IsScaled(common.kind)) {
    left = ScaleCompared(std::move(left), right->type);
    right = ScaleCompared(std::move(right), left->type);
  } else {
    if (left->type.kind != common.kind) left = ConvertImplicitly(std::move(left), common);
    if (right->type.kind != common.kind) right = ConvertImplicitly(std::move(right), common);
  }
  return std::make_unique<BoundComparison>(op, std::move(left), std::move(right));
}

BoundConditionPtr Binder::BindBetween(const BetweenCondition& between, const Scope& scope) {
  // x BETWEEN a AND b is x >= a AND x <= b, each with its own conversions.
  auto both = std::make_unique<BoundLogical>(LogicalOperator::kAnd);
  both->operands.push_back(Compare(ComparisonOperator::kGreaterEqual, Bind(*between.operand, scope),
                                   Bind(*between.low, scope)));
  both->operands.push_back(Compare(ComparisonOperator::kLessEqual, Bind(*between.operand, scope),
                                   Bind(*between.high, scope)));
  if (!between.negated) return both;
  return std::make_unique<BoundNot>(std::move(both));
}

BoundExpressionPtr Binder::ConvertCompared(BoundExpressionPtr value, const SqlType& common) {
  return IsComparedAs(value->type, common) ? std::move(value)
                                           : ConvertImplicitly(std::move(value), common);
}

BoundConditionPtr Binder::BindInList(const InListCondition& in, const Scope& scope) {
  auto operand = Bind(*in.operand, scope);
  std::vector<BoundExpressionPtr> values;
  SqlType common = operand->type;
  for (const auto& value : in.values) {
    values.push_back(Bind(*value, scope));
    GeneralizeText(*values.back());
    common = CommonType(common, values.back()->type);
  }
  auto bound = std::make_unique<BoundInList>();
  bound->negated = in.negated;
  bound->operand = ConvertCompared(std::move(operand), common);
  for (auto& value : values) bound->values.push_back(ConvertCompared(std::move(value), common));
  return bound;
}

BoundConditionPtr Binder::BindInQuery(const InQueryCondition& in, const Scope& scope) {
  auto operand = Bind(*in.operand, scope);
  auto query = BindInner(*in.query, &scope);
  if (query->columns.size() != 1) Raise(errors::kSubqueryWithSeveralColumns);
  const SqlType type = query->columns[0].type;
  const SqlType common = CommonType(operand->type, type);
  if (!IsComparedAs(type, common)) {
    CheckImplicit(type, common);
    ConvertColumns(*query, {common});
  }
  auto bound = std::make_unique<BoundInQuery>();
  bound->operand = ConvertCompared(std::move(operand), common);
  bound->query = std::move(query);
  bound->negated = in.negated;
  return bound;
}

BoundConditionPtr Binder::BindLike(const LikeCondition& like, const Scope& scope) {
  const auto text = [&](const Expression& expression) {
    auto value = Bind(expression, scope);
    GeneralizeText(*value);
    return ConvertToText(std::move(value));
  };
  auto bound = std::make_unique<BoundLike>();
  bound->operand = text(*like.operand);
  bound->pattern = text(*like.pattern);
  if (like.escape) bound->escape = text(*like.escape);
  bound->negated = like.negated;
  return bound;
}

}  // namespace tavcc::sql
