// INSERT, UPDATE and DELETE as SQLite's text.
#include <algorithm>

#include "embedded/bind/walk.h"
#include "embedded/catalog/sqlite.h"
#include "embedded/emit/emitter_impl.h"
#include "embedded/functions/functions.h"

namespace tavcc::sql {
namespace {

std::string ColumnName(const Table& table, int column) {
  return QuoteName(table.columns[static_cast<size_t>(column)].name);
}

// A column that is SQLite's row number takes a NULL for "the next number": the server's NOT NULL
// has to be said in the statement.
std::string Written(const Table& table, int column, const BoundExpression& value,
                    std::string text) {
  if (column != table.rowid_column || table.columns[static_cast<size_t>(column)].identity)
    return text;
  if (!value.nullable) return text;
  return "s_not_null(" + text + ',' + QuoteText(table.columns[static_cast<size_t>(column)].name) +
         ',' + QuoteText(table.MessageName()) + ')';
}

bool IsAlone(const BoundFrom& from) {
  return from.source != nullptr;
}

void CollectConditions(const BoundFrom& from, std::vector<const BoundCondition*>& conditions) {
  if (from.source) return;
  CollectConditions(*from.left, conditions);
  CollectConditions(*from.right, conditions);
  if (from.on) conditions.push_back(from.on.get());
}

// The number of the row that is changed.
template <class Change>
std::string RowOf(const Change& change) {
  return SourceName(*change.target) + '.' +
         (change.row_column < 0 ? change.table->rowid : 'c' + std::to_string(change.row_column));
}

class WriteEmitter : public Emitter {
 public:
  using Emitter::Emitter;
  std::string Insert(const BoundInsert& insert);
  std::string Update(const BoundUpdate& update);
  std::string UpdatedRows(const BoundUpdate& update);
  std::string Delete(const BoundDelete& remove);
  size_t rows_at() const { return rows_at_; }

 private:
  std::string InsertedRows(const BoundInsert& insert);
  std::string UpdateAlone(const BoundUpdate& update);
  std::string UpdateInner(const BoundUpdate& update);
  std::string UpdateByRowNumber(const BoundUpdate& update);
  std::string Assignments(const BoundUpdate& update);
  std::string MatchedRows(const BoundUpdate& update, const std::string& row);

  size_t rows_at_ = 0;
};

std::string WriteEmitter::Insert(const BoundInsert& insert) {
  const Table& table = *insert.table;
  std::string out = "INSERT INTO " + table.physical;
  if (insert.columns.empty()) return out + " DEFAULT VALUES";
  out += '(' + Listed(insert.columns, [&](int column) { return ColumnName(table, column); }) + ") ";
  rows_at_ = out.size();
  return out + InsertedRows(insert);
}

std::string WriteEmitter::InsertedRows(const BoundInsert& insert) {
  const Table& table = *insert.table;
  std::string out;
  if (insert.query) {
    const auto row_number = std::ranges::find(insert.columns, table.rowid_column);
    if (row_number == insert.columns.end() || insert.explicit_identity)
      return Subquery(*insert.query);
    // The guard of the row number stands around the query.
    out = "SELECT ";
    for (size_t i = 0; i < insert.columns.size(); ++i) {
      const std::string name = 'c' + std::to_string(i);
      if (i > 0) out += ',';
      out += Written(table, insert.columns[i], *insert.query->select->items[i].expression, name);
    }
    return out + " FROM (" + Subquery(*insert.query, true) + ')';
  }
  for (const auto& row : insert.rows) {
    out += &row == &insert.rows.front() ? "VALUES(" : ",(";
    for (size_t i = 0; i < row.size(); ++i) {
      if (i > 0) out += ',';
      out += Written(table, insert.columns[i], *row[i], Expression(*row[i], /*certain=*/true));
    }
    out += ')';
  }
  return out;
}

std::string WriteEmitter::Assignments(const BoundUpdate& update) {
  return Listed(update.assignments, [&](const BoundAssignment& assignment) {
    return ColumnName(*update.table, assignment.column) + '=' +
           Written(*update.table, assignment.column, *assignment.value,
                   Expression(*assignment.value));
  });
}

std::string WriteEmitter::UpdateAlone(const BoundUpdate& update) {
  std::string out = "UPDATE " + Source(*update.target);
  out += " SET " + Assignments(update);
  return out + Where(update.where.get());
}

// Each row of the target is met once at most: SQLite's own UPDATE … FROM.
std::string WriteEmitter::UpdateInner(const BoundUpdate& update) {
  std::string out = "UPDATE " + Source(*update.target);
  out += " SET " + Assignments(update) + " FROM ";
  bool first = true;
  ForEachSource(*update.from, [&](const BoundSource& source) {
    if (&source == update.target) return;
    if (!first) out += ',';
    first = false;
    out += Source(source);
  });
  std::vector<const BoundCondition*> conditions;
  CollectConditions(*update.from, conditions);
  if (update.where) conditions.push_back(update.where.get());
  for (size_t i = 0; i < conditions.size(); ++i) {
    out += (i == 0 ? " WHERE " : " AND ") + Condition(*conditions[i]);
  }
  return out;
}

// All new values first, by row number; of several matches of one row the first counts.
std::string WriteEmitter::UpdateByRowNumber(const BoundUpdate& update) {
  const std::string row = RowOf(update);
  std::string values = "SELECT " + row + " AS r";
  std::string assignments;
  for (size_t i = 0; i < update.assignments.size(); ++i) {
    const auto& assignment = update.assignments[i];
    const std::string name = 'c' + std::to_string(i);
    values += ',' + Expression(*assignment.value) + " AS " + name;
    if (i > 0) assignments += ',';
    assignments += ColumnName(*update.table, assignment.column) + '=' +
                   Written(*update.table, assignment.column, *assignment.value, "q." + name);
  }
  values += MatchedRows(update, row);
  return "UPDATE " + update.table->physical + " AS u SET " + assignments + " FROM (" + values +
         ") AS q WHERE q.r=u." + update.table->rowid;
}

std::string WriteEmitter::Update(const BoundUpdate& update) {
  if (!update.in_place) return UpdateByRowNumber(update);
  return IsAlone(*update.from) ? UpdateAlone(update) : UpdateInner(update);
}

// What an UPDATE joins, and which rows of it count: each row of the target once.
std::string WriteEmitter::MatchedRows(const BoundUpdate& update, const std::string& row) {
  std::string out = " FROM " + From(*update.from);
  // A view may show a row several times, or, where it joins, none.
  if (update.row_column >= 0) {
    out += " WHERE " + row + " IS NOT NULL";
    if (update.where) out += " AND " + Condition(*update.where);
  } else {
    out += Where(update.where.get());
  }
  if (!update.matches_once) out += " GROUP BY " + row;
  if (update.top) out += LimitOf(update.top, "SELECT 1" + out);
  return out;
}

std::string WriteEmitter::UpdatedRows(const BoundUpdate& update) {
  const std::string row = RowOf(update);
  std::string out = "SELECT " + row;
  for (const auto& assignment : update.assignments) {
    const std::string value = Expression(*assignment.value);
    out += ',';
    if (assignment.variable < 0) {
      out += value;
      continue;
    }
    out += "s_assign(" + std::to_string(assignment.variable) + ',' + value + ',' +
           std::to_string(TypeCode(assignment.value->type)) + ',' +
           std::to_string(TypeCode(assignment.variable_type)) + ')';
  }
  return out + MatchedRows(update, row);
}

std::string WriteEmitter::Delete(const BoundDelete& remove) {
  if (IsAlone(*remove.from) && !remove.top && remove.row_column < 0) {
    const std::string target = Source(*remove.target);
    return "DELETE FROM " + target + Where(remove.where.get());
  }
  std::string rows = "SELECT " + RowOf(remove) + " FROM " + From(*remove.from);
  rows += Where(remove.where.get());
  if (remove.top) rows += LimitOf(remove.top, rows);
  return "DELETE FROM " + remove.table->physical + " WHERE " + remove.table->rowid + " IN (" +
         rows + ')';
}

}  // namespace

Emitted EmitInsert(const BoundInsert& insert) {
  WriteEmitter emitter;
  std::string sql = emitter.Insert(insert);
  const size_t rows = insert.columns.empty() ? std::string::npos : emitter.rows_at();
  // A single row is computed before it is written.
  Emitted emitted =
      emitter.Finish(std::move(sql), insert.query != nullptr || insert.rows.size() > 1);
  emitted.rows_at = rows;
  return emitted;
}

Emitted EmitUpdate(const BoundUpdate& update) {
  WriteEmitter emitter;
  std::string sql = emitter.Update(update);
  return emitter.Finish(std::move(sql), true);
}

Emitted EmitUpdatedRows(const BoundUpdate& update) {
  WriteEmitter emitter(/*live_variables=*/true);
  std::string sql = emitter.UpdatedRows(update);
  return emitter.Finish(std::move(sql), false);
}

Emitted EmitDelete(const BoundDelete& remove) {
  WriteEmitter emitter;
  std::string sql = emitter.Delete(remove);
  return emitter.Finish(std::move(sql), true);
}

}  // namespace tavcc::sql
