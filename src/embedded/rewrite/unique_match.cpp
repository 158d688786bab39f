#include "embedded/rewrite/unique_match.h"

#include <algorithm>
#include <set>

#include "embedded/bind/same.h"
#include "embedded/bind/walk.h"

namespace tavcc::sql {
namespace {

using Sources = std::set<const BoundSource*>;

bool DependsOnlyOn(const BoundExpression& expression, const Sources& known) {
  bool only = true;
  ForEachExpression(expression, [&](const BoundExpression& inner) {
    if (inner.kind == BoundExpression::Kind::kSubquery) only = false;
    const auto* column = As<BoundColumn>(inner);
    if (column != nullptr && !known.contains(column->source)) only = false;
  });
  return only;
}

// Adds to `columns` the columns of `source` that an equality ties to what is known.
void TiedColumns(const BoundCondition& condition, const BoundSource& source, const Sources& known,
                 std::set<int>& columns) {
  const BoundComparison* equality = AsEquality(condition);
  if (equality == nullptr) return;
  const BoundExpression* sides[] = {equality->left.get(), equality->right.get()};
  for (int i = 0; i < 2; ++i) {
    const auto* column = As<BoundColumn>(*sides[i]);
    if (column != nullptr && column->source == &source && DependsOnlyOn(*sides[1 - i], known))
      columns.insert(column->column);
  }
}

bool Covers(const std::set<int>& columns, const std::vector<int>& key) {
  return std::ranges::all_of(key, [&](int column) { return columns.contains(column); });
}

// The columns of a grouped derived table that are its grouping keys; empty when a key is not shown.
std::vector<int> GroupingColumns(const BoundSelect& select) {
  std::vector<int> columns;
  for (const auto& key : select.group_by) {
    int found = -1;
    for (size_t i = 0; i < select.items.size(); ++i) {
      if (AreSame(*select.items[i].expression, *key)) found = static_cast<int>(i);
    }
    if (found < 0) return {};
    columns.push_back(found);
  }
  return columns;
}

bool HasKeyIn(const BoundSource& source, const std::set<int>& columns) {
  if (source.table) {
    if (columns.contains(source.table->rowid_column)) return true;
    return std::ranges::any_of(source.table->keys, [&](const Key& key) {
      return key.kind != Key::Kind::kIndex && Covers(columns, key.columns);
    });
  }
  const BoundSelect* const block = source.block();
  if (block == nullptr || !block->grouped) return false;
  if (block->group_by.empty()) return true;
  const std::vector<int> key = GroupingColumns(*block);
  return !key.empty() && Covers(columns, key);
}

void CollectOn(const BoundFrom& from, std::vector<const BoundCondition*>& conditions) {
  if (from.source) return;
  CollectOn(*from.left, conditions);
  CollectOn(*from.right, conditions);
  ForEachConjunct(from.on.get(),
                  [&](const BoundCondition& conjunct) { conditions.push_back(&conjunct); });
}

}  // namespace

bool MatchesOnce(const BoundFrom& from, const BoundCondition* where, const BoundSource& target) {
  std::vector<const BoundCondition*> conditions;
  CollectOn(from, conditions);
  ForEachConjunct(where, [&](const BoundCondition& conjunct) { conditions.push_back(&conjunct); });
  Sources known{&target};
  std::vector<const BoundSource*> open;
  ForEachSource(from, [&](const BoundSource& source) {
    if (&source != &target) open.push_back(&source);
  });
  while (!open.empty()) {
    const auto tied = std::ranges::find_if(open, [&](const BoundSource* source) {
      std::set<int> columns;
      for (const auto* condition : conditions) TiedColumns(*condition, *source, known, columns);
      return HasKeyIn(*source, columns);
    });
    if (tied == open.end()) return false;
    known.insert(*tied);
    open.erase(tied);
  }
  return true;
}

bool IsOneRow(const BoundFrom& from, const BoundCondition* where) {
  if (!from.source) return false;
  std::set<int> columns;
  ForEachConjunct(where, [&](const BoundCondition& conjunct) {
    TiedColumns(conjunct, *from.source, Sources{}, columns);
  });
  return HasKeyIn(*from.source, columns);
}

}  // namespace tavcc::sql
