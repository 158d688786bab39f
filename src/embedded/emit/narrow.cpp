// Narrowing: a derived table that groups or gathers a whole table, and is then joined on some of
// its columns, is computed only for the keys that the other side of the join has. For example
//
//   FROM #T t LEFT JOIN (SELECT FItemID, SUM(FQty) AS Q FROM T_CC_Inventory GROUP BY FItemID) s
//     ON t.FItemID = s.FItemID
//
// reads no more of T_CC_Inventory than
//
//   … (SELECT … FROM T_CC_Inventory WHERE FItemID IN (SELECT FItemID FROM #T) GROUP BY FItemID) s …
//
// Groups with other keys can meet no row, so no answer changes. It is done only where the other
// side is likely to be small: a temporary table, or a table of which the statement names a key.
#include <algorithm>

#include "embedded/bind/same.h"
#include "embedded/bind/walk.h"
#include "embedded/catalog/sqlite.h"
#include "embedded/emit/emitter_impl.h"

namespace tavcc::sql {
namespace {

bool Mentions(const BoundCondition& condition, const BoundSource& source, bool& others) {
  bool mentions = false;
  ForEachExpression(condition, [&](const BoundExpression& inner) {
    if (inner.kind == BoundExpression::Kind::kSubquery) others = true;
    if (inner.kind != BoundExpression::Kind::kColumn) return;
    (static_cast<const BoundColumn&>(inner).source == &source ? mentions : others) = true;
  });
  if (condition.kind == BoundCondition::Kind::kExists ||
      condition.kind == BoundCondition::Kind::kInQuery) {
    others = true;
  }
  return mentions;
}

// Whether the condition is about `source` alone.
bool IsAbout(const BoundCondition& condition, const BoundSource& source) {
  bool others = false;
  return Mentions(condition, source, others) && !others;
}

bool IsConstant(const BoundExpression& expression) {
  bool constant = true;
  ForEachExpression(expression, [&](const BoundExpression& inner) {
    if (inner.kind == BoundExpression::Kind::kColumn ||
        inner.kind == BoundExpression::Kind::kSubquery) {
      constant = false;
    }
  });
  return constant;
}

// column = constant
bool NamesKey(const BoundCondition& condition, const BoundSource& source) {
  if (condition.kind != BoundCondition::Kind::kComparison) return false;
  const auto& comparison = static_cast<const BoundComparison&>(condition);
  if (comparison.op != ComparisonOperator::kEqual || !IsAbout(condition, source)) return false;
  return (comparison.left->kind == BoundExpression::Kind::kColumn &&
          IsConstant(*comparison.right)) ||
         (comparison.right->kind == BoundExpression::Kind::kColumn && IsConstant(*comparison.left));
}

bool IsSmall(const BoundSource& source, const BoundCondition* where) {
  if (source.table && (source.table->IsTemporary() || source.table->IsVariable())) return true;
  bool named = false;
  ForEachConjunct(
      where, [&](const BoundCondition& conjunct) { named = named || NamesKey(conjunct, source); });
  if (named) return true;
  if (source.table || !source.query->select || !source.query->select->from) return false;
  const BoundSelect& select = *source.query->select;
  bool small = false;
  ForEachSource(*select.from, [&](const BoundSource& inner) {
    small = small || IsSmall(inner, select.where.get());
  });
  return small;
}

// Whether the derived table is one that SQLite computes as a whole before it joins it.
bool IsGathered(const BoundSource& source) {
  if (!source.query) return false;
  return !source.query->select || source.query->select->grouped || source.query->select->distinct;
}

bool IsIn(const BoundFrom& from, const BoundSource* source) {
  bool found = false;
  ForEachSource(from, [&](const BoundSource& inner) { found = found || &inner == source; });
  return found;
}

}  // namespace

// The keys that the other side has in `column`, as a query; empty when there may be many.
std::string Emitter::KeysOf(const BoundColumn& column, const BoundCondition* where) {
  if (!IsSmall(*column.source, where)) return {};
  std::string out = "SELECT " + Column(column) + " FROM " + Source(*column.source);
  bool first = true;
  ForEachConjunct(where, [&](const BoundCondition& conjunct) {
    if (!IsAbout(conjunct, *column.source)) return;
    out += (first ? " WHERE " : " AND ") + Condition(conjunct);
    first = false;
  });
  return out;
}

// Adds "column IN (keys)" to the blocks that make up `query`. False when the column is computed, so
// that nothing can be said before it is.
bool Emitter::NarrowQuery(const BoundQuery& query, size_t column, const std::string& keys) {
  if (!query.select) {
    if (query.set_operator != Query::SetOperator::kUnion &&
        query.set_operator != Query::SetOperator::kUnionAll) {
      return false;
    }
    // One arm narrowed and the other not is right as well, only slower.
    const bool left = NarrowQuery(*query.left, column, keys);
    const bool right = NarrowQuery(*query.right, column, keys);
    return left && right;
  }
  const BoundSelect& select = *query.select;
  if (select.top) return false;
  const BoundColumn* key = AsColumn(*select.items[column].expression);
  if (key == nullptr || !select.from || !IsIn(*select.from, key->source)) return false;
  if (select.grouped) {
    const bool grouping =
        std::ranges::any_of(select.group_by, [&](const auto& by) { return AreSame(*by, *key); });
    if (!grouping) return false;
  }
  if (key->source->query &&
      NarrowQuery(*key->source->query, static_cast<size_t>(key->column), keys)) {
    return true;
  }
  std::string& condition = narrowed_[&select];
  if (!condition.empty()) condition += " AND ";
  condition += '(' + Expression(*key) + " IN (" + keys + "))";
  return true;
}

void Emitter::Narrow(const BoundFrom& from, const BoundCondition* where) {
  if (from.source || from.join == BoundFrom::Join::kFull) return;
  Narrow(*from.left, where);
  Narrow(*from.right, where);
  const bool inner = from.join != BoundFrom::Join::kLeft;
  const auto narrow = [&](const BoundFrom& gathered, const BoundFrom& other) {
    if (!gathered.source || !IsGathered(*gathered.source)) return;
    bool done = false;
    const auto by = [&](const BoundCondition& conjunct) {
      if (done || conjunct.kind != BoundCondition::Kind::kComparison) return;
      const auto& comparison = static_cast<const BoundComparison&>(conjunct);
      if (comparison.op != ComparisonOperator::kEqual) return;
      const BoundColumn* a = AsColumn(*comparison.left);
      const BoundColumn* b = AsColumn(*comparison.right);
      if (a == nullptr || b == nullptr || a->type != b->type || IsText(a->type.kind)) return;
      if (a->source == gathered.source.get()) std::swap(a, b);
      if (b->source != gathered.source.get() || !IsIn(other, a->source)) return;
      const std::string keys = KeysOf(*a, where);
      if (keys.empty()) return;
      done = NarrowQuery(*gathered.source->query, static_cast<size_t>(b->column), keys);
    };
    ForEachConjunct(from.on.get(), by);
    if (inner) ForEachConjunct(where, by);
  };
  narrow(*from.right, *from.left);
  if (inner) narrow(*from.left, *from.right);
}

}  // namespace tavcc::sql
