// Anti-joins: rows are deleted that have no match in a table which the statement uses for nothing
// else. For example
//
//   DELETE t FROM T t LEFT JOIN (SELECT K FROM A UNION ALL SELECT K FROM B GROUP BY K) u
//     ON t.K = u.K WHERE t.Q = 0 AND u.K IS NULL
//
// deletes the rows of
//
//   SELECT … FROM T t WHERE t.Q = 0
//     AND NOT EXISTS (SELECT 1 FROM A WHERE t.K = A.K) AND NOT EXISTS (SELECT 1 FROM B WHERE …)
//
// An equality on u.K matches no null, so that u.K is null only where there was no match. The query
// in place of u comes apart into its blocks, since SQLite takes a condition from outside into a
// block but not into several at once: each is then a look into an index for each row of T. It makes
// no difference to whether there is a match that a block leaves out equal rows or groups by what it
// shows; texts that a group takes for equal are equal in the comparison as well.
#include "embedded/emit/anti_join.h"

#include <algorithm>

#include "embedded/bind/same.h"
#include "embedded/bind/walk.h"
#include "embedded/emit/emitter_impl.h"
#include "embedded/types/stored_form.h"

namespace tavcc::sql {
namespace {

const BoundColumn* ColumnOf(const BoundExpression& expression, const BoundSource& source) {
  const BoundColumn* column = AsColumn(expression);
  return column != nullptr && column->source == &source ? column : nullptr;
}

template <class Tree>
bool Mentions(const Tree& tree, const BoundSource& source) {
  bool mentions = false;
  ForEachExpression(tree, [&](const BoundExpression& inner) {
    mentions = mentions || ColumnOf(inner, source) != nullptr;
  });
  return mentions;
}

// What is converted, where the other type stores it the same way.
const BoundExpression& Unconverted(const BoundExpression& expression) {
  if (expression.kind != BoundExpression::Kind::kConvert) return expression;
  const auto& convert = static_cast<const BoundConvert&>(expression);
  return IsSameStored(convert.operand->type, convert.type) ? Unconverted(*convert.operand)
                                                           : expression;
}

// The column of `source` in "column = something without source"; null when it is not of this form.
const BoundColumn* Matched(const BoundCondition& condition, const BoundSource& source) {
  if (condition.kind != BoundCondition::Kind::kComparison) return nullptr;
  const auto& comparison = static_cast<const BoundComparison&>(condition);
  if (comparison.op != ComparisonOperator::kEqual) return nullptr;
  const BoundColumn* left = ColumnOf(Unconverted(*comparison.left), source);
  const BoundColumn* right = ColumnOf(Unconverted(*comparison.right), source);
  if (left != nullptr && !Mentions(*comparison.right, source)) return left;
  if (right != nullptr && !Mentions(*comparison.left, source)) return right;
  return nullptr;
}

// Whether a condition asks that there be no match: "u.K IS NULL" for a matched column.
bool AsksForNoMatch(const BoundCondition& condition, const BoundSource& source,
                    const std::vector<int>& matched) {
  if (condition.kind != BoundCondition::Kind::kIsNull) return false;
  const auto& is_null = static_cast<const BoundIsNull&>(condition);
  const BoundColumn* column = ColumnOf(*is_null.operand, source);
  return !is_null.negated && column != nullptr &&
         std::ranges::find(matched, column->column) != matched.end();
}

// Whether grouping does no more than leave out equal rows.
bool OnlyLeavesOutEqualRows(const BoundSelect& select) {
  if (!select.grouped) return true;
  if (select.having) return false;
  return std::ranges::all_of(select.items, [&](const BoundItem& item) {
    const BoundExpression& shown = Unconverted(*item.expression);
    return shown.kind == BoundExpression::Kind::kColumn &&
           std::ranges::any_of(select.group_by,
                               [&](const auto& key) { return AreSame(*key, shown); });
  });
}

// The query that a block does no more than show: SELECT columns FROM (query).
const BoundQuery* ShownBy(const BoundSelect& select) {
  if (select.grouped || select.where || !select.from || !select.from->source) return nullptr;
  return select.from->source->query.get();
}

bool ComesApart(const BoundQuery& query) {
  if (!query.order_by.empty()) return false;
  if (!query.select) {
    return (query.set_operator == Query::SetOperator::kUnion ||
            query.set_operator == Query::SetOperator::kUnionAll) &&
           ComesApart(*query.left) && ComesApart(*query.right);
  }
  const BoundSelect& select = *query.select;
  if (select.top || !OnlyLeavesOutEqualRows(select)) return false;
  const BoundQuery* shown = ShownBy(select);
  return shown == nullptr || ComesApart(*shown);
}

}  // namespace

const BoundSource* FindAntiJoined(const BoundFrom& from, const BoundCondition* where) {
  if (from.join != BoundFrom::Join::kLeft || !from.right->source) return nullptr;
  const BoundSource& source = *from.right->source;
  if (source.query && !ComesApart(*source.query)) return nullptr;
  std::vector<int> matched;
  bool simple = true;
  ForEachConjunct(from.on.get(), [&](const BoundCondition& conjunct) {
    if (const BoundColumn* column = Matched(conjunct, source)) {
      matched.push_back(column->column);
    } else if (Mentions(conjunct, source)) {
      simple = false;
    }
  });
  bool asked = false;
  ForEachConjunct(where, [&](const BoundCondition& conjunct) {
    if (AsksForNoMatch(conjunct, source, matched)) {
      asked = true;
    } else if (Mentions(conjunct, source)) {
      simple = false;
    }
  });
  return simple && asked ? &source : nullptr;
}

std::string Emitter::AntiJoin(const BoundFrom& from, const BoundCondition* where) {
  const BoundSource& source = *from.right->source;
  Narrow(*from.left, where);
  std::vector<std::string> conditions;
  ForEachConjunct(where, [&](const BoundCondition& conjunct) {
    if (!Mentions(conjunct, source)) conditions.push_back(Condition(conjunct));
  });
  const std::string filters = IndexFilters(*from.left, where);
  if (!filters.empty()) conditions.push_back(filters);
  if (source.table) {
    conditions.push_back("NOT EXISTS(SELECT 1 FROM " + Source(source) + " WHERE " +
                         Condition(*from.on) + ')');
  } else {
    AddNoMatch(*source.query, source, *from.on, conditions);
  }
  return From(*from.left, where) + " WHERE " + Joined(conditions, " AND ");
}

// Adds "NOT EXISTS (block WHERE on)" for each block of the query that stands for `source`.
void Emitter::AddNoMatch(const BoundQuery& query, const BoundSource& source,
                         const BoundCondition& on, std::vector<std::string>& conditions) {
  if (!query.select) {
    AddNoMatch(*query.left, source, on, conditions);
    AddNoMatch(*query.right, source, on, conditions);
    return;
  }
  const BoundSelect& select = *query.select;
  shown_[&source] = &select;
  if (const BoundQuery* shown = ShownBy(select)) {
    AddNoMatch(*shown, *select.from->source, on, conditions);
  } else {
    conditions.push_back("NOT EXISTS(" + Within([&] { return MatchIn(select, on); }) + ')');
  }
  shown_.erase(&source);
}

std::string Emitter::MatchIn(const BoundSelect& select, const BoundCondition& on) {
  std::string out = "SELECT 1";
  if (!select.from) {
    out += " WHERE " + Condition(on);
    return select.where ? out + " AND " + Condition(*select.where) : out;
  }
  Narrow(*select.from, select.where.get());
  out += " FROM " + From(*select.from, select.where.get());
  return out + Where(*select.from, select.where.get(), Condition(on));
}

}  // namespace tavcc::sql
