// Semi-join reduction: a derived table that groups or gathers a whole table, and is then joined on
// some of its columns, is computed only for the keys that the other side of the join has.
//
//   … FROM #t t LEFT JOIN (SELECT k, SUM(q) AS q FROM big GROUP BY k) s ON t.k = s.k
//   … FROM #t t LEFT JOIN (SELECT k, SUM(q) AS q FROM big
//                          WHERE k IN (SELECT k FROM #t) GROUP BY k) s ON t.k = s.k
//
// It may wherever the key is a plain column that the groups are made by: groups with other keys can
// meet no row. It is done only where the other side is likely to be small: a temporary table, or a
// table of which the statement names a key.
#include <algorithm>
#include <functional>
#include <utility>

#include "embedded/bind/same.h"
#include "embedded/bind/walk.h"
#include "embedded/rewrite/conditions.h"
#include "embedded/rewrite/copy.h"
#include "embedded/rewrite/rules.h"

namespace tavcc::sql {
namespace {

bool Mentions(const BoundCondition& condition, const BoundSource& source, bool& others) {
  bool mentions = false;
  ForEachExpression(condition, [&](const BoundExpression& inner) {
    if (inner.kind == BoundExpression::Kind::kSubquery) others = true;
    const auto* column = As<BoundColumn>(inner);
    if (column != nullptr) (column->source == &source ? mentions : others) = true;
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
  const BoundComparison* equality = AsEquality(condition);
  if (equality == nullptr || !IsAbout(condition, source)) return false;
  const auto is_key = [](const BoundExpression& column, const BoundExpression& value) {
    return column.kind == BoundExpression::Kind::kColumn && IsConstant(value);
  };
  return is_key(*equality->left, *equality->right) || is_key(*equality->right, *equality->left);
}

bool IsSmall(const BoundSource& source, const BoundCondition* where) {
  if (source.table && (source.table->IsTemporary() || source.table->IsVariable())) return true;
  bool named = false;
  ForEachConjunct(
      where, [&](const BoundCondition& conjunct) { named = named || NamesKey(conjunct, source); });
  if (named) return true;
  if (source.block() == nullptr || !source.block()->from) return false;
  const BoundSelect& select = *source.block();
  bool small = false;
  ForEachSource(*select.from, [&](const BoundSource& inner) {
    small = small || IsSmall(inner, select.where.get());
  });
  return small;
}

// Whether the derived table is one that SQLite computes as a whole before it joins it.
bool IsGathered(const BoundSource& source) {
  if (!source.query) return false;
  const BoundSelect* const block = source.block();
  return block == nullptr || block->grouped || block->distinct;
}

// The query of a derived table that stands in `from`; null for a table.
BoundQuery* FindQuery(BoundFrom& from, const BoundSource& source) {
  if (from.source) return from.source.get() == &source ? from.source->query.get() : nullptr;
  BoundQuery* const query = FindQuery(*from.left, source);
  return query != nullptr ? query : FindQuery(*from.right, source);
}

// The keys, copied anew for each block that they are asked of.
using MakeKeys = std::function<BoundQueryPtr()>;

class SemiJoinReduction final : public StatementPass {
 public:
  explicit SemiJoinReduction(BindResult& binding) : binding_(binding) {}

 protected:
  // Before the blocks further in, which get the conditions.
  void OnBlock(BoundFrom& from, BoundConditionPtr& where) override { Reduce(from, where.get()); }

 private:
  void Reduce(BoundFrom& from, const BoundCondition* where);
  void ReduceSide(BoundFrom& gathered, const BoundFrom& other, const BoundCondition* on,
                  const BoundCondition* also, const BoundCondition* where);
  bool ReduceQuery(BoundQuery& query, size_t column, const MakeKeys& keys);
  BoundQueryPtr KeysOf(const BoundColumn& column, const BoundCondition* where);

  BindResult& binding_;
};

void SemiJoinReduction::Reduce(BoundFrom& from, const BoundCondition* where) {
  if (from.source || from.join == BoundFrom::Join::kFull) return;
  Reduce(*from.left, where);
  Reduce(*from.right, where);
  const bool inner = from.join != BoundFrom::Join::kLeft;
  const BoundCondition* also = inner ? where : nullptr;
  ReduceSide(*from.right, *from.left, from.on.get(), also, where);
  if (inner) ReduceSide(*from.left, *from.right, from.on.get(), also, where);
}

// `on` and `also` are the conditions of the join, `where` those of the block.
void SemiJoinReduction::ReduceSide(BoundFrom& gathered, const BoundFrom& other,
                                   const BoundCondition* on, const BoundCondition* also,
                                   const BoundCondition* where) {
  if (!gathered.source || !IsGathered(*gathered.source)) return;
  bool done = false;
  const auto by = [&](const BoundCondition& conjunct) {
    const BoundComparison* equality = AsEquality(conjunct);
    if (done || equality == nullptr) return;
    const auto* a = As<BoundColumn>(*equality->left);
    const auto* b = As<BoundColumn>(*equality->right);
    if (a == nullptr || b == nullptr || a->type != b->type || IsText(a->type.kind)) return;
    if (a->source == gathered.source.get()) std::swap(a, b);
    if (b->source != gathered.source.get() || !HasSource(other, a->source)) return;
    if (!IsSmall(*a->source, where)) return;
    done = ReduceQuery(*gathered.source->query, static_cast<size_t>(b->column),
                       [&] { return KeysOf(*a, where); });
  };
  ForEachConjunct(on, by);
  ForEachConjunct(also, by);
}

// The keys that the other side has in `column`.
BoundQueryPtr SemiJoinReduction::KeysOf(const BoundColumn& column, const BoundCondition* where) {
  TreeCopy copy(binding_.next_source);
  auto select = std::make_unique<BoundSelect>();
  select->from = std::make_unique<BoundFrom>();
  select->from->source = copy.Copy(*column.source);
  select->items.push_back({copy.Copy(column), "", -1});
  ForEachConjunct(where, [&](const BoundCondition& conjunct) {
    if (IsAbout(conjunct, *column.source)) AddBehind(select->where, copy.Copy(conjunct));
  });
  auto keys = std::make_unique<BoundQuery>();
  keys->select = std::move(select);
  keys->columns.push_back({"", column.type, column.nullable, false});
  return keys;
}

// Adds "column IN (keys)" to the blocks that make up `query`. False when the column is computed, so
// that nothing can be said before it is.
bool SemiJoinReduction::ReduceQuery(BoundQuery& query, size_t column, const MakeKeys& keys) {
  if (!query.select) {
    if (query.recursion != 0) return false;  // rows that are left out are rows not gone on from
    if (query.set_operator != Query::SetOperator::kUnion &&
        query.set_operator != Query::SetOperator::kUnionAll) {
      return false;
    }
    // One side reduced and the other not is right as well, only slower.
    const bool left = ReduceQuery(*query.left, column, keys);
    const bool right = ReduceQuery(*query.right, column, keys);
    return left && right;
  }
  BoundSelect& select = *query.select;
  if (select.top || select.windowed) return false;
  const auto* key = As<BoundColumn>(*select.items[column].expression);
  if (key == nullptr || !select.from || !HasSource(*select.from, key->source)) return false;
  if (select.grouped) {
    const bool grouping =
        std::ranges::any_of(select.group_by, [&](const auto& by) { return AreSame(*by, *key); });
    if (!grouping) return false;
  }
  BoundQuery* const inside = FindQuery(*select.from, *key->source);
  if (inside != nullptr && ReduceQuery(*inside, static_cast<size_t>(key->column), keys)) {
    return true;
  }
  auto semi_join = std::make_unique<BoundInQuery>();
  semi_join->operand = std::make_unique<BoundColumn>(*key->source, key->column);
  semi_join->query = keys();
  AddInFront(select.where, std::move(semi_join));
  return true;
}

}  // namespace

std::unique_ptr<StatementPass> SemiJoinReductionPass(BindResult& binding) {
  return std::make_unique<SemiJoinReduction>(binding);
}

}  // namespace tavcc::sql
