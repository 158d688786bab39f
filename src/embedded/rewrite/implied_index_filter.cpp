// Implied index filters: an index with a filter holds few rows, but SQLite looks into it only when
// the statement says the filter in the very words of the index. With an index on t WHERE q >= -1
// AND q <= 1,
//
//   SELECT … FROM t WHERE abs(q) <= 0.5
//   SELECT … FROM t WHERE abs(q) <= 0.5 AND q >= -1 AND q <= 1
//
// It may where the filter holds for each row for which the statement's own conditions hold. What
// follows from them is read off exact numbers in their stored form; a literal that this depends on
// is noted, since the tree is then good for its value alone.
#include <algorithm>
#include <limits>
#include <optional>

#include "embedded/bind/function_rules.h"
#include "embedded/bind/walk.h"
#include "embedded/rewrite/conditions.h"
#include "embedded/rewrite/rules.h"
#include "foundation/wide_integer.h"

namespace tavcc::sql {
namespace {

using Op = ComparisonOperator;

constexpr int64_t kLowest = std::numeric_limits<int64_t>::min();
constexpr int64_t kHighest = std::numeric_limits<int64_t>::max();

// What is known of a column's stored value whenever the conditions hold: it is no null, from `low`
// to `high`, and perhaps not 0.
struct ColumnRange {
  bool any = false;
  int64_t low = kLowest, high = kHighest;
  bool not_zero = false;

  // Whether SQLite stores it as a whole number and so compares it as one. A decimal of many digits
  // may be a BLOB (see stored_value.h), unless it is known to lie between two whole numbers.
  bool IsWhole(const SqlType& type) const {
    return AlwaysStoredAsInteger(type) || (low != kLowest && high != kHighest);
  }
};

// The operand of ABS; null when the expression is something else.
const BoundExpression* AbsoluteOf(const BoundExpression& expression) {
  const auto* call = As<BoundCall>(expression);
  const bool absolute = call != nullptr && call->rule->function == Function::kAbs;
  return absolute ? call->arguments[0].get() : nullptr;
}

// The literal in `expression`, also where the binder gave it the scale of what it is compared with.
const BoundLiteral* AsLiteral(const BoundExpression& expression) {
  const auto* convert = As<BoundConvert>(expression);
  if (convert == nullptr) return As<BoundLiteral>(expression);
  const bool exact = IsExact(convert->type.kind) && IsExact(convert->operand->type.kind) &&
                     StoredScale(convert->type) >= StoredScale(convert->operand->type);
  return exact ? As<BoundLiteral>(*convert->operand) : nullptr;
}

// The literal's value as a column of `type` stores it; nothing when it has more decimals.
std::optional<int64_t> AtScaleOf(const BoundLiteral& literal, const SqlType& type) {
  if (!IsExact(literal.type.kind) || literal.value.kind() != StoredValue::Kind::kInteger) return {};
  const int up = StoredScale(type) - StoredScale(literal.type);
  if (up < 0) return {};
  WideInteger value = WideInteger::FromInt64(literal.value.integer());
  value.MultiplyByPowerOf10(up);
  return value.ToInt64();
}

void NarrowRange(ColumnRange& range, Op op, int64_t value) {
  if (op == Op::kNotEqual) {
    range.not_zero = range.not_zero || value == 0;
    return;
  }
  if (op == Op::kEqual || op == Op::kGreaterEqual) range.low = std::max(range.low, value);
  if (op == Op::kEqual || op == Op::kLessEqual) range.high = std::min(range.high, value);
  // Strictly greater or less is said without the strictness where there is no next number.
  if (op == Op::kGreater) range.low = std::max(range.low, value < kHighest ? value + 1 : value);
  if (op == Op::kLess) range.high = std::min(range.high, value > kLowest ? value - 1 : value);
}

// |x| compared with a value that is not negative.
void NarrowByAbsolute(ColumnRange& range, Op op, int64_t value) {
  if (op == Op::kLess || op == Op::kLessEqual || op == Op::kEqual) {
    NarrowRange(range, Op::kGreaterEqual, -value);
    NarrowRange(range, Op::kLessEqual, value);
  }
  const bool above = op == Op::kGreater || ((op == Op::kGreaterEqual || op == Op::kEqual) && value);
  if (above || (op == Op::kNotEqual && value == 0)) range.not_zero = true;
}

Op Mirrored(Op op) {
  switch (op) {
    case Op::kLess:
      return Op::kGreater;
    case Op::kLessEqual:
      return Op::kGreaterEqual;
    case Op::kGreater:
      return Op::kLess;
    case Op::kGreaterEqual:
      return Op::kLessEqual;
    default:
      return op;
  }
}

// Adds what a condition says of the column; the slot of the literal that it says it by, -1 for a
// constant, nothing when it says nothing.
std::optional<int> InferRange(ColumnRange& range, const BoundCondition& condition,
                              const BoundSource& source, int column) {
  const auto* comparison = As<BoundComparison>(condition);
  if (comparison == nullptr) return {};
  const BoundLiteral* literal = AsLiteral(*comparison->right);
  const bool mirrored = literal == nullptr;
  if (mirrored) literal = AsLiteral(*comparison->left);
  if (literal == nullptr) return {};
  const BoundExpression& other = mirrored ? *comparison->right : *comparison->left;
  const BoundExpression* absolute = AbsoluteOf(other);
  const auto* about = As<BoundColumn>(absolute != nullptr ? *absolute : other);
  if (about == nullptr || about->source != &source || about->column != column) return {};
  if (!IsExact(about->type.kind)) return {};
  const auto value = AtScaleOf(*literal, about->type);
  if (!value || (absolute != nullptr && *value < 0)) return {};
  const Op op = mirrored ? Mirrored(comparison->op) : comparison->op;
  range.any = true;
  if (absolute != nullptr) {
    NarrowByAbsolute(range, op, *value);
  } else {
    NarrowRange(range, op, *value);
  }
  return literal->slot;
}

bool Follows(const KeyFilter& filter, const ColumnRange& range, const SqlType& type) {
  if (!range.any || filter.kind == KeyFilter::Kind::kNull) return false;
  if (filter.kind == KeyFilter::Kind::kNotNull) return true;
  if (filter.constant.kind() != StoredValue::Kind::kInteger) return false;
  const int64_t value = filter.constant.integer();
  if (filter.op == Op::kNotEqual && value == 0 && range.not_zero) return true;
  if (!range.IsWhole(type)) return false;
  switch (filter.op) {
    case Op::kEqual:
      return range.low == value && range.high == value;
    case Op::kNotEqual:
      return range.low > value || range.high < value;
    case Op::kLess:
      return range.high < value;
    case Op::kLessEqual:
      return range.high <= value;
    case Op::kGreater:
      return range.low > value;
    default:
      return range.low >= value;
  }
}

// Whether the filter follows from the conditions; adds the literals that this depends on.
bool FilterFollows(const Key& key, const BoundSource& source, const BoundCondition* where,
                   std::vector<int>& literals) {
  return std::ranges::all_of(key.filter, [&](const KeyFilter& filter) {
    ColumnRange range;
    ForEachConjunct(where, [&](const BoundCondition& conjunct) {
      const auto slot = InferRange(range, conjunct, source, filter.column);
      if (slot && *slot >= 0) literals.push_back(*slot);
    });
    return Follows(filter, range, source.columns[static_cast<size_t>(filter.column)].type);
  });
}

class ImpliedIndexFilter final : public StatementPass {
 public:
  explicit ImpliedIndexFilter(BindResult& binding) : binding_(binding) {}

 protected:
  void OnBlock(BoundFrom& from, BoundConditionPtr& where) override {
    std::vector<BoundConditionPtr> filters;
    ForEachSource(from, [&](const BoundSource& source) {
      if (!source.table) return;
      for (const Key& key : source.table->keys) {
        std::vector<int> literals;
        if (key.filter.empty() || !FilterFollows(key, source, where.get(), literals)) continue;
        filters.push_back(std::make_unique<BoundIndexFilter>(source, key));
        for (const int slot : literals) {
          binding_.dependences[static_cast<size_t>(slot)] = LiteralDependence::kValue;
        }
      }
    });
    for (auto& filter : filters) AddBehind(where, std::move(filter));
  }

 private:
  BindResult& binding_;
};

}  // namespace

std::unique_ptr<StatementPass> ImpliedIndexFilterPass(BindResult& binding) {
  return std::make_unique<ImpliedIndexFilter>(binding);
}

}  // namespace tavcc::sql
