// Conditions as SQLite's text.
#include <vector>

#include "embedded/emit/emitter_impl.h"
#include "embedded/functions/functions.h"

namespace tavcc::sql {
namespace {

constexpr std::string_view kOperators[] = {" = ", " <> ", " < ", " <= ", " > ", " >= "};

// Whether SQLite's own comparison of the stored forms is the comparison of the values.
bool IsNative(const BoundComparison& comparison) {
  const SqlType& left = comparison.left->type;
  const SqlType& right = comparison.right->type;
  if (!IsScaled(left.kind) && !IsScaled(right.kind)) return true;
  if (StoredScale(left) != StoredScale(right)) return false;
  const bool equality =
      comparison.op == ComparisonOperator::kEqual || comparison.op == ComparisonOperator::kNotEqual;
  return equality || (AlwaysStoredAsInteger(left) && AlwaysStoredAsInteger(right));
}

}  // namespace

std::string Emitter::Comparison(const BoundComparison& comparison) {
  const std::string_view op = kOperators[static_cast<size_t>(comparison.op)];
  const bool native = IsNative(comparison);
  const std::string left = native ? Collated(*comparison.left) : Expression(*comparison.left);
  const std::string right = Expression(*comparison.right);
  if (native) return '(' + left + std::string(op) + right + ')';
  const int64_t shape = DecimalShape(StoredScale(comparison.left->type),
                                     StoredScale(comparison.right->type), DecimalType(38, 0));
  return "(t_cmp_decimal(" + left + ',' + right + ',' + std::to_string(shape) + ')' +
         std::string(op) + "0)";
}

std::string Emitter::Operands(const BoundLogical& logical) {
  std::vector<std::string> operands;
  for (const auto& operand : logical.operands) operands.push_back(Condition(*operand));
  return '(' + Joined(operands, logical.op == LogicalOperator::kAnd ? " AND " : " OR ") + ')';
}

// Where any of them is nchar or nvarchar, all are, and then trailing blanks of the text count.
std::string Emitter::Like(const BoundLike& like) {
  const auto is_national = [](const BoundExpression& text) {
    return IsNationalText(text.type.kind);
  };
  const bool national = is_national(*like.operand) || is_national(*like.pattern) ||
                        (like.escape && is_national(*like.escape));
  raises_ = raises_ || like.escape != nullptr;
  std::string out = like.negated ? "(NOT " : "(";
  out += (national ? "t_like(" : "t_like_char(") + Expression(*like.operand);
  out += ',' + Expression(*like.pattern);
  if (like.escape) out += ',' + Expression(*like.escape);
  return out + "))";
}

// NOT NOT x is x, also where x is unknown.
std::string Emitter::Negation(const BoundCondition& operand) {
  if (const auto* inner = As<BoundNot>(operand)) return Condition(*inner->operand);
  return "(NOT " + Condition(operand) + ')';
}

std::string Emitter::Condition(const BoundCondition& condition) {
  return InOwnStep([&] { return ConditionOfKind(condition); });
}

std::string Emitter::ConditionOfKind(const BoundCondition& condition) {
  switch (condition.kind) {
    case BoundCondition::Kind::kComparison:
      return Comparison(static_cast<const BoundComparison&>(condition));
    case BoundCondition::Kind::kLogical:
      return Operands(static_cast<const BoundLogical&>(condition));
    case BoundCondition::Kind::kNot:
      return Negation(*static_cast<const BoundNot&>(condition).operand);
    case BoundCondition::Kind::kIsNull: {
      const auto& is_null = static_cast<const BoundIsNull&>(condition);
      return '(' + Expression(*is_null.operand) + (is_null.negated ? " IS NOT NULL)" : " IS NULL)");
    }
    case BoundCondition::Kind::kInList: {
      const auto& in = static_cast<const BoundInList&>(condition);
      const std::string operand = Collated(*in.operand);
      return '(' + operand + (in.negated ? " NOT IN (" : " IN (") +
             Listed(in.values, [&](const auto& value) { return Expression(*value); }) + "))";
    }
    case BoundCondition::Kind::kInQuery: {
      const auto& in = static_cast<const BoundInQuery&>(condition);
      const std::string operand = Collated(*in.operand);
      return '(' + operand + (in.negated ? " NOT IN (" : " IN (") + Subquery(*in.query) + "))";
    }
    case BoundCondition::Kind::kLike:
      return Like(static_cast<const BoundLike&>(condition));
    case BoundCondition::Kind::kExists:
      return "EXISTS(" + Subquery(*static_cast<const BoundExists&>(condition).query) + ')';
    case BoundCondition::Kind::kIndexFilter:
      break;
  }
  // In the very words of the index.
  const auto& filter = static_cast<const BoundIndexFilter&>(condition);
  return '(' +
         PhysicalFilter(*filter.source->table, *filter.key, SourceName(*filter.source) + '.') + ')';
}

}  // namespace tavcc::sql
