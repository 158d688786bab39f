#include "embedded/session/instructions/update_steps.h"

#include <sqlite3.h>

#include <algorithm>

#include "embedded/session/instructions/duplicate_key.h"
#include "embedded/session/session_context.h"
#include "embedded/types/sqlite_value.h"

namespace tavcc::sql {
namespace {

using Row = std::vector<StoredValue>;

// A statement over one row, run again and again.
class RowStatement {
 public:
  RowStatement(SessionContext& session, const std::string& sql)
      : session_(session), statement_(session.store.Prepare(sql)) {}

  void Bind(int index, const StoredValue& value) { BindStored(statement_.get(), index, value); }
  void Run() {
    session_.store.Step(statement_.get());
    sqlite3_reset(statement_.get());
  }
  Row Read() {
    Row row;
    session_.store.Step(statement_.get());
    for (int i = 0; i < sqlite3_column_count(statement_.get()); ++i) {
      row.push_back(FromSqlite(sqlite3_column_value(statement_.get(), i)));
    }
    sqlite3_reset(statement_.get());
    return row;
  }

 private:
  SessionContext& session_;
  SqliteStatement statement_;
};

std::vector<Row> NewValues(SessionContext& session, NewValuesPlan& plan, Frame& frame,
                           std::span<const StoredValue> parameters) {
  std::vector<Row> rows;
  PlanRun run(session, plan, frame, parameters);
  session.state.live_frame = &frame;
  while (run.Step()) {
    Row& row = rows.emplace_back();
    for (int i = 0; i < run.ColumnCount(); ++i) row.push_back(run.Column(i));
  }
  session.state.live_frame = nullptr;
  return rows;
}

std::string Names(const Table& table) {
  std::string out;
  for (const Column& column : table.columns) out += ',' + QuoteName(column.name);
  return out;
}

std::string Places(size_t count) {
  std::string out = "?1";
  for (size_t i = 2; i <= count; ++i) out += ",?" + std::to_string(i);
  return out;
}

// All rows are taken out, then put back as they are to be: a key that is taken now is taken for
// good.
void ReplaceRows(SessionContext& session, const NewValuesPlan& plan, const std::vector<Row>& rows) {
  const Table& table = *plan.table;
  const std::string by_number = " FROM " + table.physical + " WHERE " + table.rowid + "=?1";
  RowStatement read(session, "SELECT " + table.rowid + Names(table) + by_number);
  RowStatement remove(session, "DELETE" + by_number);
  // Where a column is the row's number, both say the same.
  const bool numbered = table.rowid_column < 0;
  RowStatement write(session, "INSERT INTO " + table.physical + '(' +
                                  (numbered ? table.rowid + Names(table) : Names(table).substr(1)) +
                                  ") VALUES(" + Places(table.columns.size() + (numbered ? 1 : 0)) +
                                  ')');
  std::vector<Row> changed;
  for (const Row& row : rows) {
    read.Bind(1, row[0]);
    Row& all = changed.emplace_back(read.Read());
    for (size_t i = 0; i < plan.columns.size(); ++i) {
      if (plan.columns[i] >= 0) all[static_cast<size_t>(plan.columns[i]) + 1] = row[i + 1];
    }
  }
  for (const Row& row : rows) {
    remove.Bind(1, row[0]);
    remove.Run();
  }
  for (const Row& row : changed) {
    const Row values(row.begin() + (numbered ? 0 : 1), row.end());
    for (size_t i = 0; i < values.size(); ++i) write.Bind(static_cast<int>(i) + 1, values[i]);
    try {
      write.Run();
    } catch (const SqlError& error) {
      throw RefusedRow(error, table, "UPDATE",
                       [&](const Key& key) { return KeyText(table, key, row); });
    }
  }
}

}  // namespace

void UpdateInSteps(SessionContext& session, NewValuesPlan& plan, Frame& frame,
                   std::span<const StoredValue> row) {
  StatementGuard guard(session.transaction, plan.table->IsStored());
  const std::vector<StoredValue> before = frame.variables;
  try {
    const std::vector<Row> rows = NewValues(session, plan, frame, row);
    const bool any = std::ranges::any_of(plan.columns, [](int column) { return column >= 0; });
    if (any) ReplaceRows(session, plan, rows);
    guard.Commit();
    session.state.row_count = static_cast<int64_t>(rows.size());
  } catch (...) {
    frame.variables = before;
    throw;
  }
}

}  // namespace tavcc::sql
