#include "embedded/session/instructions/duplicate_key.h"

#include <sqlite3.h>

#include <algorithm>

#include "embedded/session/session_context.h"
#include "embedded/types/sqlite_value.h"
#include "embedded/types/stored_conversions.h"

namespace tavcc::sql {
namespace {

using KeyValue = std::vector<StoredValue>;

const Column& ColumnOf(const Table& table, int column) {
  return table.columns[static_cast<size_t>(column)];
}

KeyValue KeyOfRow(const PlanRun& rows, const InsertPlan& insert, const Key& key) {
  KeyValue out;
  for (const int column : key.columns) {
    const auto at = std::ranges::find(insert.columns, column);
    out.push_back(at != insert.columns.end()
                      ? rows.Column(static_cast<int>(at - insert.columns.begin()))
                      : ColumnOf(*insert.table, column).constant_default.value_or(StoredValue()));
  }
  return out;
}

bool Same(const KeyValue& a, const KeyValue& b, const Table& table, const Key& key) {
  for (size_t i = 0; i < a.size(); ++i) {
    if (a[i].IsNull() || b[i].IsNull()) {
      if (a[i].IsNull() != b[i].IsNull()) return false;
    } else if (CompareStored(a[i], b[i], ColumnOf(table, key.columns[i]).type) != 0) {
      return false;
    }
  }
  return true;
}

std::string ValueText(const KeyValue& value, const Table& table, const Key& key) {
  std::string out = "(";
  for (size_t i = 0; i < value.size(); ++i) {
    if (i > 0) out += ", ";
    out +=
        value[i].IsNull() ? "<NULL>" : DisplayText(value[i], ColumnOf(table, key.columns[i]).type);
  }
  return out + ')';
}

std::string KeyQuery(const Table& table, const Key& key) {
  std::string out = "SELECT 1 FROM " + table.physical;
  for (size_t i = 0; i < key.columns.size(); ++i) {
    out += (i == 0 ? " WHERE " : " AND ") + QuoteName(ColumnOf(table, key.columns[i]).name) +
           " IS ?" + std::to_string(i + 1);
  }
  return out;
}

bool IsTaken(SessionContext& session, sqlite3_stmt* look_up, const KeyValue& value) {
  for (size_t i = 0; i < value.size(); ++i) {
    BindStored(look_up, static_cast<int>(i) + 1, value[i]);
  }
  const bool taken = session.store.Step(look_up);
  sqlite3_reset(look_up);
  return taken;
}

// The key of `table` that SQLite's message names, by its columns ("UNIQUE constraint failed: t.a,
// t.b") or, where it is the key of the NULLs, by its index ("… failed: index 't.name.null'").
const Key* FindKey(const Table& table, std::string_view message) {
  const std::string physical(table.PhysicalName());
  for (size_t i = 0; i < table.keys.size(); ++i) {
    const Key& key = table.keys[i];
    if (key.kind == Key::Kind::kIndex) continue;
    if (message.ends_with("index '" + PhysicalIndexName(table, i, physical) + ".null'"))
      return &key;
    std::string listed;
    for (const int column : key.columns) {
      if (!listed.empty()) listed += ", ";
      listed += physical + '.' + table.columns[static_cast<size_t>(column)].name;
    }
    if (message.ends_with(": " + listed)) return &key;
  }
  return nullptr;
}

}  // namespace

std::string KeyText(const Table& table, const Key& key, std::span<const StoredValue> row) {
  KeyValue value;
  for (const int column : key.columns) value.push_back(row[static_cast<size_t>(column) + 1]);
  return ValueText(value, table, key);
}

SqlError RefusedRow(const SqlError& error, const Table& table, std::string_view verb,
                    const std::function<std::string(const Key&)>& value) {
  if (error.number != kNullRefused && error.number != kDuplicateRefused) return error;
  if (error.number == kNullRefused) {
    for (const Column& column : table.columns) {
      if (error.message.ends_with('.' + column.name)) {
        return MakeError(errors::kNullIntoColumn, {column.name, table.MessageName(), verb});
      }
    }
    return error;
  }
  const Key* key = FindKey(table, error.message);
  const std::string duplicate = key ? value(*key) : std::string("(…)");
  if (key && key->kind == Key::Kind::kUniqueIndex) {
    return MakeError(errors::kDuplicateKeyInUniqueIndex,
                     {table.MessageName(), key->name, duplicate});
  }
  const bool unique = key && key->kind == Key::Kind::kUnique;
  const std::string name =
      key && !key->name.empty() ? key->name : (unique ? "UQ_" : "PK_") + table.name;
  return MakeError(errors::kDuplicateKeyInConstraint,
                   {unique ? "UNIQUE KEY" : "PRIMARY KEY", name, table.MessageName(), duplicate});
}

std::string RepeatedKey(SessionContext& session, const Table& table,
                        const std::vector<std::string>& columns) {
  Key key;
  std::string names;
  for (const std::string& column : columns) {
    key.columns.push_back(table.FindColumn(column));
    names += (names.empty() ? "" : ",") + QuoteName(ColumnOf(table, key.columns.back()).name);
  }
  const SqliteStatement repeated = session.store.Prepare(
      "SELECT " + names + " FROM " + table.physical + " GROUP BY " + names + " HAVING count(*)>1");
  KeyValue value;
  if (!session.store.Step(repeated.get())) return "(…)";
  for (size_t i = 0; i < columns.size(); ++i) {
    value.push_back(FromSqlite(sqlite3_column_value(repeated.get(), static_cast<int>(i))));
  }
  return ValueText(value, table, key);
}

std::string DuplicateKey(SessionContext& session, const InsertPlan& insert, const Frame& frame,
                         std::span<const StoredValue> row, const Key& key, int64_t* refused) {
  const Table& table = *insert.table;
  if (insert.emitted.rows_at == std::string::npos) return "(…)";
  Plan plan;
  plan.emitted.sql = insert.emitted.sql.substr(insert.emitted.rows_at);
  plan.emitted.parameters = insert.emitted.parameters;
  const SqliteStatement look_up = session.store.Prepare(KeyQuery(table, key));
  std::vector<KeyValue> before;
  PlanRun rows(session, plan, frame, row);
  while (rows.Step()) {
    KeyValue value = KeyOfRow(rows, insert, key);
    const bool repeated = std::ranges::any_of(
        before, [&](const KeyValue& other) { return Same(value, other, table, key); });
    if (repeated || IsTaken(session, look_up.get(), value)) {
      *refused = std::ssize(before) + 1;
      return ValueText(value, table, key);
    }
    before.push_back(std::move(value));
  }
  return "(…)";
}

}  // namespace tavcc::sql
