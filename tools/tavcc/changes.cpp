#include "tavcc/changes.h"

#include <fmt/core.h>

#include <map>
#include <utility>

#include "language/language.h"
#include "tavcc/output.h"

namespace tavcc {
namespace {

// The rows as they are now, in `after`.
ChangeTable Look(Connection& cn, const WatchedRows& watched) {
  ChangeTable table{watched.title, watched.key_columns, watched.value_columns, watched.amounts, {}};
  const RecordsetPtr rows = cn.Execute(watched.query);
  for (; !rows->AtEnd(); rows->MoveNext()) {
    ChangeTable::Row& row = table.rows.emplace_back();
    int i = 0;
    for (; i < static_cast<int>(watched.key_columns.size()); ++i) {
      row.key.push_back(rows->Field(i));
    }
    for (; i < rows->FieldCount(); ++i) row.after.push_back(rows->Field(i));
  }
  return table;
}

}  // namespace

std::string CellText(const Value& value) {
  return value.IsNull() ? "" : PlainText(value);
}

std::vector<std::string> CellTexts(const std::vector<Value>& values) {
  std::vector<std::string> texts;
  for (const Value& value : values) texts.push_back(CellText(value));
  return texts;
}

WatchedRows StockRows(const std::string& items) {
  return {Translatable("Stock on hand"),
          {"item", "name", "stock", "batch", "aux"},
          {"quantity", "value"},
          fmt::format("SELECT i.FNumber, i.FName, s.FName, v.FBatchNo, ISNULL(a.FName, ''),"
                      " SUM(v.FQty), SUM(v.FBal) FROM T_CC_Inventory v"
                      " INNER JOIN t_ICItem i ON v.FItemID = i.FItemID"
                      " LEFT JOIN t_Stock s ON v.FStockID = s.FItemID"
                      " LEFT JOIN t_AuxItem a ON v.FAuxPropID = a.FItemID{}"
                      " GROUP BY v.FItemID, i.FNumber, i.FName, v.FStockID, s.FName, v.FBatchNo,"
                      " v.FAuxPropID, a.FName"
                      " ORDER BY v.FItemID, v.FStockID, v.FBatchNo, v.FAuxPropID",
                      items.empty() ? "" : fmt::format(" WHERE v.FItemID IN ({})", items))};
}

RowComparison::RowComparison(Connection& cn, WatchedRows watched)
    : watched_(std::move(watched)), before_(Look(cn, watched_)) {}

ChangeTable RowComparison::Changes(Connection& cn) const {
  ChangeTable after = Look(cn, watched_);
  std::map<std::vector<std::string>, const ChangeTable::Row*> gone;
  for (const ChangeTable::Row& row : before_.rows) gone.emplace(CellTexts(row.key), &row);
  for (ChangeTable::Row& row : after.rows) {
    const auto old = gone.find(CellTexts(row.key));
    if (old == gone.end()) continue;
    row.before = old->second->after;
    gone.erase(old);
  }
  for (const auto& [key, row] : gone) after.rows.push_back({row->key, row->after, {}});
  std::erase_if(after.rows, [](const ChangeTable::Row& row) { return row.before == row.after; });
  return after;
}

std::vector<std::string> ChangeHeader(const ChangeTable& table) {
  std::vector<std::string> header;
  for (const auto* const columns : {&table.key_columns, &table.value_columns}) {
    for (const std::string& column : *columns) header.push_back(Translated(column));
  }
  return header;
}

std::vector<std::vector<std::string>> ChangeRows(const ChangeTable& table) {
  const auto cell = [](const std::vector<Value>& cells, size_t i) {
    return i < cells.size() ? CellText(cells[i]) : Translated("none");
  };
  std::vector<std::vector<std::string>> rows;
  for (const ChangeTable::Row& row : table.rows) {
    std::vector<std::string>& cells = rows.emplace_back(CellTexts(row.key));
    for (size_t i = 0; i < table.value_columns.size(); ++i) {
      const std::string before = cell(row.before, i);
      const std::string after = cell(row.after, i);
      cells.push_back(before == after ? before : fmt::format("{} → {}", before, after));
    }
  }
  return rows;
}

}  // namespace tavcc
