#include "embedded/catalog/identity_values.h"

#include <sqlite3.h>

namespace tavcc::sql {

int64_t IdentityValues::Last(const Table& table) const {
  const SqliteStatement select =
      store_.Prepare("SELECT seq FROM " + std::string(table.PhysicalSchema()) +
                     "sqlite_sequence WHERE name=" + QuoteText(table.PhysicalName()));
  return store_.Step(select.get()) ? sqlite3_column_int64(select.get(), 0)
                                   : IdentityBeforeFirst(table);
}

void IdentityValues::SetLast(const Table& table, int64_t number) {
  if (table.IsStored()) store_.MarkChange();
  const std::string name = QuoteText(table.PhysicalName());
  const std::string sequence = std::string(table.PhysicalSchema()) + "sqlite_sequence";
  store_.Run("UPDATE " + sequence + " SET seq=" + std::to_string(number) + " WHERE name=" + name);
  if (sqlite3_changes(store_.handle()) > 0) return;
  store_.Run("INSERT INTO " + sequence + "(name,seq) VALUES(" + name + ',' +
             std::to_string(number) + ')');
}

void IdentityValues::Restart(const Table& table) {
  if (table.identity_column >= 0) SetLast(table, IdentityBeforeFirst(table));
}

IdentityValues::Numbers IdentityValues::Read() const {
  struct Schema {
    const char* name;
    const char* all;
  };
  static constexpr Schema kSchemas[] = {
      {"main", "SELECT name,seq FROM main.sqlite_sequence"},
      {"temp", "SELECT name,seq FROM temp.sqlite_sequence"},
  };
  Numbers numbers;
  for (const Schema& schema : kSchemas) {
    // SQLite makes its table with the first table that deals out numbers.
    if (!store_.HasColumn(schema.name, "sqlite_sequence", "seq")) continue;
    store_.ReadCached(schema.all, [&](sqlite3_stmt* row) {
      const auto* name = reinterpret_cast<const char*>(sqlite3_column_text(row, 0));
      numbers[std::string(schema.name) + '.' + QuoteName(name)] = sqlite3_column_int64(row, 1);
    });
  }
  return numbers;
}

void IdentityValues::Save() {
  saved_ = Read();
}

void IdentityValues::RestoreTable(const Table& table, const Numbers& now) {
  if (table.identity_column < 0) return;
  const auto before = saved_.find(table.physical);
  if (before == saved_.end()) return;
  const auto after = now.find(table.physical);
  const int64_t number = after == now.end() ? IdentityBeforeFirst(table) : after->second;
  if (table.IsLaterIdentity(before->second, number)) SetLast(table, before->second);
}

void IdentityValues::Restore(const std::function<void(const TableVisitor&)>& for_each_table) {
  if (saved_.empty()) return;
  const Numbers now = Read();
  // A transaction of its own, where the one that was rolled back is gone altogether.
  const bool alone = shared_ && !store_.InTransaction() && now != saved_;
  try {
    if (alone) store_.RunCached("BEGIN IMMEDIATE");
    for_each_table([&](const Table& table) { RestoreTable(table, now); });
    if (alone) store_.RunCached("COMMIT");
  } catch (const SqlError&) {
    // The rollback itself is done: numbers that are given out once more are the lesser evil.
    if (!alone) throw;
    if (store_.InTransaction()) store_.RunCached("ROLLBACK");
  }
  saved_.clear();
}

}  // namespace tavcc::sql
