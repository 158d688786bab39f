// A table variable that is filled once, and read once by the statement after it:
//
//   INSERT @used SELECT k FROM lines
//   DELETE t FROM t LEFT JOIN @used u ON t.k = u.k WHERE t.q = 0 AND u.k IS NULL
//
//   DELETE t FROM t LEFT JOIN (SELECT k FROM lines) u ON t.k = u.k WHERE t.q = 0 AND u.k IS NULL
//
// Nobody sees the variable but the DELETE, so it need not hold the rows, and the DELETE, as an
// anti-join, looks up the few keys that it asks about. It may where every row stands in the
// variable as the query shows it: there is a value for each column, and no key or row number. Other
// reads than anti-joins are left alone, since they want the rows gathered.
#include "embedded/rewrite/read_once_variable.h"

#include <algorithm>
#include <utility>

#include "embedded/rewrite/anti_join.h"
#include "embedded/rewrite/rewrite.h"

namespace tavcc::sql {
namespace {

bool ShowsItsQuery(const BoundInsert& insert) {
  const Table& table = *insert.table;
  return insert.query && insert.query->select && table.keys.empty() && table.rowid_column < 0 &&
         insert.columns.size() == table.columns.size() &&
         std::ranges::all_of(table.columns, &Column::nullable);
}

BoundSource* FindSource(BoundFrom& from, const TablePtr& table) {
  if (from.source) return from.source->table == table ? from.source.get() : nullptr;
  BoundSource* const source = FindSource(*from.left, table);
  return source != nullptr ? source : FindSource(*from.right, table);
}

// The columns of the query in the order of the table's; `columns` are those that it fills.
void Reorder(BoundQuery& query, const std::vector<int>& columns) {
  auto& items = query.select->items;
  std::vector<BoundItem> in_order(items.size());
  for (size_t i = 0; i < items.size(); ++i) {
    in_order[static_cast<size_t>(columns[i])] = std::move(items[i]);
  }
  items = std::move(in_order);
}

}  // namespace

bool ReadInPlace(BoundInsert& insert, BoundDelete& remove) {
  if (!IsOn(RewriteRule::kReadOnceVariable) || !ShowsItsQuery(insert)) return false;
  // Rows that are found through a view are not rows of the query's tables.
  if (remove.row_column >= 0) return false;
  BoundSource* const source = FindSource(*remove.from, insert.table);
  if (source == nullptr || source == remove.target) return false;
  Reorder(*insert.query, insert.columns);
  insert.query->columns = source->columns;
  source->table = nullptr;
  source->query = std::move(insert.query);
  return FindAntiJoined(remove) != nullptr;
}

}  // namespace tavcc::sql
