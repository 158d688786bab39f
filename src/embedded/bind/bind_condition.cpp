// Binding of conditions.
#include <algorithm>
#include <utility>

#include "embedded/bind/binder.h"

namespace tavcc::sql {
namespace {

bool IsExact(const SqlType& type) {
  return IsInteger(type.kind) || IsScaled(type.kind);
}

}  // namespace

BoundConditionPtr Binder::BindTest(const Condition& condition) {
  return Bind(condition, Scope{});
}

BoundConditionPtr Binder::Bind(const Condition& condition, const Scope& scope) {
  switch (condition.kind) {
    case Condition::Kind::kComparison: {
      const auto& comparison = static_cast<const ComparisonCondition&>(condition);
      return Compare(comparison.op, Bind(*comparison.left, scope), Bind(*comparison.right, scope));
    }
    case Condition::Kind::kAnd:
    case Condition::Kind::kOr: {
      auto bound = std::make_unique<BoundLogical>(condition.kind == Condition::Kind::kAnd
                                                      ? BoundCondition::Kind::kAnd
                                                      : BoundCondition::Kind::kOr);
      for (const auto& operand : static_cast<const LogicalCondition&>(condition).operands) {
        bound->operands.push_back(Bind(*operand, scope));
      }
      return bound;
    }
    case Condition::Kind::kNot: {
      auto bound = std::make_unique<BoundNot>();
      bound->operand = Bind(*static_cast<const NotCondition&>(condition).operand, scope);
      return bound;
    }
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
  left = LoosenCompared(std::move(left), right->type);
  right = LoosenCompared(std::move(right), left->type);
  const SqlType common = CommonType(left->type, right->type);
  auto bound = std::make_unique<BoundComparison>();
  bound->op = op;
  // Exact numbers are compared at their own scales.
  const bool exact = IsExact(left->type) && IsExact(right->type);
  if (exact && IsScaled(common.kind)) {
    left = ScaleCompared(std::move(left), right->type);
    right = ScaleCompared(std::move(right), left->type);
  } else if (left->type.kind != common.kind || right->type.kind != common.kind) {
    const auto same_kind = [&](const SqlType& type) { return type.kind == common.kind; };
    if (!same_kind(left->type)) left = ConvertImplicitly(std::move(left), common);
    if (!same_kind(right->type)) right = ConvertImplicitly(std::move(right), common);
  }
  bound->left = std::move(left);
  bound->right = std::move(right);
  return bound;
}

BoundConditionPtr Binder::BindBetween(const BetweenCondition& between, const Scope& scope) {
  // x BETWEEN a AND b is x >= a AND x <= b, each with its own conversions.
  auto both = std::make_unique<BoundLogical>(BoundCondition::Kind::kAnd);
  both->operands.push_back(Compare(ComparisonOperator::kGreaterEqual, Bind(*between.operand, scope),
                                   Bind(*between.low, scope)));
  both->operands.push_back(Compare(ComparisonOperator::kLessEqual, Bind(*between.operand, scope),
                                   Bind(*between.high, scope)));
  if (!between.negated) return both;
  auto bound = std::make_unique<BoundNot>();
  bound->operand = std::move(both);
  return bound;
}

BoundConditionPtr Binder::BindInList(const InListCondition& in, const Scope& scope) {
  auto operand = Bind(*in.operand, scope);
  std::vector<BoundExpressionPtr> values;
  SqlType common = operand->type;
  for (const auto& value : in.values) {
    values.push_back(Bind(*value, scope));
    LoosenText(*values.back());
    common = CommonType(common, values.back()->type);
  }
  const auto same = [&](const SqlType& type) {
    return IsText(common.kind) ? type.kind == common.kind : type == common;
  };
  auto bound = std::make_unique<BoundInList>();
  bound->negated = in.negated;
  bound->operand =
      same(operand->type) ? std::move(operand) : ConvertImplicitly(std::move(operand), common);
  for (auto& value : values) {
    bound->values.push_back(same(value->type) ? std::move(value)
                                              : ConvertImplicitly(std::move(value), common));
  }
  return bound;
}

BoundConditionPtr Binder::BindInQuery(const InQueryCondition& in, const Scope& scope) {
  auto operand = Bind(*in.operand, scope);
  auto query = BindInner(*in.query, &scope);
  if (query->columns.size() != 1) Raise(errors::kSubqueryWithSeveralColumns);
  const SqlType type = query->columns[0].type;
  const SqlType common = CommonType(operand->type, type);
  const auto same = [&](const SqlType& other) {
    return IsText(common.kind) ? other.kind == common.kind : other == common;
  };
  if (!same(type)) {
    CheckImplicit(type, common);
    ConvertColumns(*query, {common});
  }
  auto bound = std::make_unique<BoundInQuery>();
  bound->operand =
      same(operand->type) ? std::move(operand) : ConvertImplicitly(std::move(operand), common);
  bound->query = std::move(query);
  bound->negated = in.negated;
  return bound;
}

BoundConditionPtr Binder::BindLike(const LikeCondition& like, const Scope& scope) {
  const auto text = [&](const Expression& expression) {
    auto value = Bind(expression, scope);
    LoosenText(*value);
    return IsText(value->type.kind)
               ? std::move(value)
               : ConvertImplicitly(std::move(value), TextType(TypeKind::kVarChar, 8000));
  };
  auto bound = std::make_unique<BoundLike>();
  bound->operand = text(*like.operand);
  bound->pattern = text(*like.pattern);
  if (like.escape) bound->escape = text(*like.escape);
  bound->negated = like.negated;
  return bound;
}

}  // namespace tavcc::sql
