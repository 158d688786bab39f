// Conditions as SQLite's text.
#include <algorithm>
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

bool AreSame(const BoundExpression& a, const BoundExpression& b) {
  const BoundColumn* left = AsColumn(a);
  const BoundColumn* right = AsColumn(b);
  return left && right && left->source == right->source && left->column == right->column;
}

// Whether both say the same "column = column".
bool AreSameJoin(const BoundCondition& a, const BoundCondition& b) {
  if (a.kind != BoundCondition::Kind::kComparison || b.kind != a.kind) return false;
  const auto& left = static_cast<const BoundComparison&>(a);
  const auto& right = static_cast<const BoundComparison&>(b);
  return left.op == ComparisonOperator::kEqual && right.op == left.op &&
         AreSame(*left.left, *right.left) && AreSame(*left.right, *right.right);
}

using Conjuncts = std::vector<const BoundCondition*>;

bool Holds(const Conjuncts& conjuncts, const BoundCondition& join) {
  return std::ranges::any_of(
      conjuncts, [&](const BoundCondition* conjunct) { return AreSameJoin(*conjunct, join); });
}

}  // namespace

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

std::string Emitter::Comparison(const BoundComparison& comparison) {
  const std::string_view op = kOperators[static_cast<size_t>(comparison.op)];
  if (IsNative(comparison)) {
    return '(' + Collated(*comparison.left) + std::string(op) + Expression(*comparison.right) + ')';
  }
  const int64_t shape = DecimalShape(StoredScale(comparison.left->type),
                                     StoredScale(comparison.right->type), DecimalType(38, 0));
  return "(t_cmp_decimal(" + Expression(*comparison.left) + ',' + Expression(*comparison.right) +
         ',' + std::to_string(shape) + ')' + std::string(op) + "0)";
}

// (a.x = b.x AND p) OR (a.x = b.x AND q) is a.x = b.x AND (p OR q), also where nulls are met.
// SQLite finds the index of a join only in the second form.
std::string Emitter::Disjunction(const BoundLogical& disjunction) {
  std::vector<Conjuncts> operands;
  for (const auto& operand : disjunction.operands) {
    Conjuncts& conjuncts = operands.emplace_back();
    ForEachConjunct(operand.get(),
                    [&](const BoundCondition& conjunct) { conjuncts.push_back(&conjunct); });
  }
  Conjuncts joins;
  for (const BoundCondition* conjunct : operands.front()) {
    if (AreSameJoin(*conjunct, *conjunct) &&
        std::ranges::all_of(operands, [&](const auto& other) { return Holds(other, *conjunct); })) {
      joins.push_back(conjunct);
    }
  }
  std::string out = "(";
  for (const BoundCondition* join : joins) out += Condition(*join) + " AND ";
  if (!joins.empty()) out += '(';
  std::vector<std::string> alternatives;
  for (const Conjuncts& conjuncts : operands) {
    std::vector<std::string> rest;
    for (const BoundCondition* conjunct : conjuncts) {
      if (!Holds(joins, *conjunct)) rest.push_back(Condition(*conjunct));
    }
    const std::string all = Joined(rest, " AND ");
    alternatives.push_back(rest.empty() ? "1" : rest.size() == 1 ? all : '(' + all + ')');
  }
  return out + Joined(alternatives, " OR ") + (joins.empty() ? ")" : "))");
}

// Where any of them is nchar or nvarchar, all are, and then trailing blanks of the text count.
std::string Emitter::Like(const BoundLike& like) {
  const auto is_national = [](const BoundExpression& text) {
    return IsNationalText(text.type.kind);
  };
  const bool national = is_national(*like.operand) || is_national(*like.pattern) ||
                        (like.escape && is_national(*like.escape));
  raises_ = raises_ || like.escape != nullptr;
  return std::string(like.negated ? "(NOT " : "(") + (national ? "t_like(" : "t_like_char(") +
         Expression(*like.operand) + ',' + Expression(*like.pattern) +
         (like.escape ? ',' + Expression(*like.escape) : std::string()) + "))";
}

// NOT NOT x is x, also where x is unknown.
std::string Emitter::Negation(const BoundCondition& operand) {
  if (operand.kind == BoundCondition::Kind::kNot) {
    return Condition(*static_cast<const BoundNot&>(operand).operand);
  }
  return "(NOT " + Condition(operand) + ')';
}

std::string Emitter::Condition(const BoundCondition& condition) {
  return Apart([&] { return Test(condition); });
}

std::string Emitter::Test(const BoundCondition& condition) {
  switch (condition.kind) {
    case BoundCondition::Kind::kComparison:
      return Comparison(static_cast<const BoundComparison&>(condition));
    case BoundCondition::Kind::kAnd: {
      std::vector<std::string> operands;
      for (const auto& operand : static_cast<const BoundLogical&>(condition).operands) {
        operands.push_back(Condition(*operand));
      }
      return '(' + Joined(operands, " AND ") + ')';
    }
    case BoundCondition::Kind::kOr:
      return Disjunction(static_cast<const BoundLogical&>(condition));
    case BoundCondition::Kind::kNot:
      return Negation(*static_cast<const BoundNot&>(condition).operand);
    case BoundCondition::Kind::kIsNull: {
      const auto& is_null = static_cast<const BoundIsNull&>(condition);
      return '(' + Expression(*is_null.operand) + (is_null.negated ? " IS NOT NULL)" : " IS NULL)");
    }
    case BoundCondition::Kind::kInList: {
      const auto& in = static_cast<const BoundInList&>(condition);
      std::string out = '(' + Collated(*in.operand) + (in.negated ? " NOT IN (" : " IN (");
      for (const auto& value : in.values) {
        if (&value != &in.values.front()) out += ',';
        out += Expression(*value);
      }
      return out + "))";
    }
    case BoundCondition::Kind::kInQuery: {
      const auto& in = static_cast<const BoundInQuery&>(condition);
      return '(' + Collated(*in.operand) + (in.negated ? " NOT IN (" : " IN (") +
             Subquery(*in.query) + "))";
    }
    case BoundCondition::Kind::kLike:
      return Like(static_cast<const BoundLike&>(condition));
    case BoundCondition::Kind::kExists:
      break;
  }
  return "EXISTS(" + Subquery(*static_cast<const BoundExists&>(condition).query) + ')';
}

}  // namespace tavcc::sql
