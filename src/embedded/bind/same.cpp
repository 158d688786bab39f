#include "embedded/bind/same.h"

#include <algorithm>
#include <utility>

namespace tavcc::sql {
namespace {

class Comparer {
 public:
  bool Same(const BoundExpression& a, const BoundExpression& b);
  bool Same(const BoundCondition& a, const BoundCondition& b);
  bool Same(const BoundQuery& a, const BoundQuery& b);

 private:
  bool Same(const BoundColumn& a, const BoundColumn& b);
  bool Same(const BoundConvert& a, const BoundConvert& b);
  bool Same(const BoundCall& a, const BoundCall& b);
  bool Same(const BoundCase& a, const BoundCase& b);
  bool Same(const BoundAggregate& a, const BoundAggregate& b);
  bool Same(const BoundFrom& a, const BoundFrom& b);
  bool Same(const BoundSource& a, const BoundSource& b);
  bool Same(const BoundSelect& a, const BoundSelect& b);
  bool Same(const BoundTop& a, const BoundTop& b);
  bool Same(const BoundItem& a, const BoundItem& b);
  bool Same(const BoundOrder& a, const BoundOrder& b);
  bool Same(const BoundCase::When& a, const BoundCase::When& b);

  // Both are absent, or both say the same.
  template <class T>
  bool Same(const std::unique_ptr<T>& a, const std::unique_ptr<T>& b) {
    return a && b ? Same(*a, *b) : !a && !b;
  }
  template <class T>
  bool Same(const std::vector<T>& a, const std::vector<T>& b) {
    return std::ranges::equal(a, b, [&](const T& x, const T& y) { return Same(x, y); });
  }
  template <class Bound, class Tree>
  bool SameAs(const Tree& a, const Tree& b) {
    return Same(static_cast<const Bound&>(a), static_cast<const Bound&>(b));
  }

  // The sources of the subqueries at hand, by their places.
  std::vector<std::pair<const BoundSource*, const BoundSource*>> inner_;
};

bool Comparer::Same(const BoundExpression& a, const BoundExpression& b) {
  using Kind = BoundExpression::Kind;
  if (&a == &b) return true;
  if (a.kind != b.kind || a.type != b.type) return false;
  switch (a.kind) {
    case Kind::kLiteral:
      return static_cast<const BoundLiteral&>(a).value == static_cast<const BoundLiteral&>(b).value;
    case Kind::kVariable:
      return static_cast<const BoundVariable&>(a).index ==
             static_cast<const BoundVariable&>(b).index;
    case Kind::kSessionValue:
      return static_cast<const BoundSessionValue&>(a).which ==
             static_cast<const BoundSessionValue&>(b).which;
    case Kind::kColumn:
      return SameAs<BoundColumn>(a, b);
    case Kind::kUnary: {
      const auto& x = static_cast<const BoundUnary&>(a);
      const auto& y = static_cast<const BoundUnary&>(b);
      return x.op == y.op && Same(x.operand, y.operand);
    }
    case Kind::kArithmetic: {
      const auto& x = static_cast<const BoundArithmetic&>(a);
      const auto& y = static_cast<const BoundArithmetic&>(b);
      return x.op == y.op && x.way == y.way && Same(x.left, y.left) && Same(x.right, y.right);
    }
    case Kind::kConvert:
      return SameAs<BoundConvert>(a, b);
    case Kind::kCall:
      return SameAs<BoundCall>(a, b);
    case Kind::kCase:
      return SameAs<BoundCase>(a, b);
    case Kind::kSubquery:
      return Same(static_cast<const BoundSubquery&>(a).query,
                  static_cast<const BoundSubquery&>(b).query);
    case Kind::kAggregate:
      break;
  }
  return SameAs<BoundAggregate>(a, b);
}

bool Comparer::Same(const BoundColumn& a, const BoundColumn& b) {
  if (a.column != b.column) return false;
  return a.source == b.source ||
         std::ranges::find(inner_, std::pair(a.source, b.source)) != inner_.end();
}

bool Comparer::Same(const BoundConvert& a, const BoundConvert& b) {
  return a.mode == b.mode && a.style == b.style && a.table == b.table && a.column == b.column &&
         Same(a.operand, b.operand) && Same(a.style_value, b.style_value);
}

bool Comparer::Same(const BoundCall& a, const BoundCall& b) {
  return a.rule == b.rule && a.date_part == b.date_part && Same(a.arguments, b.arguments);
}

bool Comparer::Same(const BoundCase& a, const BoundCase& b) {
  return Same(a.whens, b.whens) && Same(a.otherwise, b.otherwise);
}

bool Comparer::Same(const BoundCase::When& a, const BoundCase::When& b) {
  return Same(a.condition, b.condition) && Same(a.result, b.result);
}

bool Comparer::Same(const BoundAggregate& a, const BoundAggregate& b) {
  return a.aggregate == b.aggregate && a.distinct == b.distinct && Same(a.operand, b.operand);
}

bool Comparer::Same(const BoundCondition& a, const BoundCondition& b) {
  using Kind = BoundCondition::Kind;
  if (&a == &b) return true;
  if (a.kind != b.kind) return false;
  switch (a.kind) {
    case Kind::kComparison: {
      const auto& x = static_cast<const BoundComparison&>(a);
      const auto& y = static_cast<const BoundComparison&>(b);
      return x.op == y.op && Same(x.left, y.left) && Same(x.right, y.right);
    }
    case Kind::kAnd:
    case Kind::kOr:
      return Same(static_cast<const BoundLogical&>(a).operands,
                  static_cast<const BoundLogical&>(b).operands);
    case Kind::kNot:
      return Same(static_cast<const BoundNot&>(a).operand, static_cast<const BoundNot&>(b).operand);
    case Kind::kIsNull: {
      const auto& x = static_cast<const BoundIsNull&>(a);
      const auto& y = static_cast<const BoundIsNull&>(b);
      return x.negated == y.negated && Same(x.operand, y.operand);
    }
    case Kind::kInList: {
      const auto& x = static_cast<const BoundInList&>(a);
      const auto& y = static_cast<const BoundInList&>(b);
      return x.negated == y.negated && Same(x.operand, y.operand) && Same(x.values, y.values);
    }
    case Kind::kInQuery: {
      const auto& x = static_cast<const BoundInQuery&>(a);
      const auto& y = static_cast<const BoundInQuery&>(b);
      return x.negated == y.negated && Same(x.operand, y.operand) && Same(x.query, y.query);
    }
    case Kind::kLike: {
      const auto& x = static_cast<const BoundLike&>(a);
      const auto& y = static_cast<const BoundLike&>(b);
      return x.negated == y.negated && Same(x.operand, y.operand) && Same(x.pattern, y.pattern) &&
             Same(x.escape, y.escape);
    }
    case Kind::kExists:
      return Same(static_cast<const BoundExists&>(a).query,
                  static_cast<const BoundExists&>(b).query);
    case Kind::kIndexFilter:
      break;
  }
  const auto& x = static_cast<const BoundIndexFilter&>(a);
  const auto& y = static_cast<const BoundIndexFilter&>(b);
  return x.source == y.source && x.key == y.key;
}

// FROM first: what stands beside it speaks of its sources.
bool Comparer::Same(const BoundSelect& a, const BoundSelect& b) {
  return a.distinct == b.distinct && a.grouped == b.grouped && Same(a.from, b.from) &&
         Same(a.top, b.top) && Same(a.items, b.items) && Same(a.where, b.where) &&
         Same(a.group_by, b.group_by) && Same(a.having, b.having);
}

bool Comparer::Same(const BoundTop& a, const BoundTop& b) {
  return a.percent == b.percent && a.with_ties == b.with_ties && Same(a.count, b.count);
}

bool Comparer::Same(const BoundItem& a, const BoundItem& b) {
  return a.variable == b.variable && Same(a.expression, b.expression);
}

bool Comparer::Same(const BoundOrder& a, const BoundOrder& b) {
  return a.item == b.item && a.descending == b.descending && Same(a.expression, b.expression);
}

bool Comparer::Same(const BoundFrom& a, const BoundFrom& b) {
  return a.join == b.join && Same(a.source, b.source) && Same(a.left, b.left) &&
         Same(a.right, b.right) && Same(a.on, b.on);
}

bool Comparer::Same(const BoundSource& a, const BoundSource& b) {
  if (a.table != b.table || !Same(a.query, b.query)) return false;
  inner_.emplace_back(&a, &b);
  return true;
}

bool Comparer::Same(const BoundQuery& a, const BoundQuery& b) {
  return a.set_operator == b.set_operator && Same(a.select, b.select) && Same(a.left, b.left) &&
         Same(a.right, b.right) && Same(a.order_by, b.order_by);
}

}  // namespace

bool AreSame(const BoundExpression& a, const BoundExpression& b) {
  return Comparer().Same(a, b);
}

bool AreSame(const BoundCondition& a, const BoundCondition& b) {
  return Comparer().Same(a, b);
}

bool AreSame(const BoundQuery& a, const BoundQuery& b) {
  return Comparer().Same(a, b);
}

}  // namespace tavcc::sql
