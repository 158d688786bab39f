// Identity values: what was given out stays given out, also when its row is rolled back.
//
// SQLite keeps the last value of each table in its table sqlite_sequence, which is rolled back like
// any other.
#include <sqlite3.h>

#include <utility>

#include "embedded/catalog/catalog.h"

namespace tavcc::sql {
int64_t Catalog::Number(const Table& table) const {
  const SqliteStatement select =
      store_.Prepare("SELECT seq FROM " + std::string(table.PhysicalSchema()) +
                     "sqlite_sequence WHERE name=" + QuoteText(table.PhysicalName()));
  return store_.Step(select.get()) ? sqlite3_column_int64(select.get(), 0)
                                   : NumberBeforeFirst(table);
}

void Catalog::SetNumber(const Table& table, int64_t number) {
  if (table.IsStored()) store_.MarkChange();
  const std::string name = QuoteText(table.PhysicalName());
  const std::string sequence = std::string(table.PhysicalSchema()) + "sqlite_sequence";
  store_.Run("UPDATE " + sequence + " SET seq=" + std::to_string(number) + " WHERE name=" + name);
  if (sqlite3_changes(store_.handle()) > 0) return;
  store_.Run("INSERT INTO " + sequence + "(name,seq) VALUES(" + name + ',' +
             std::to_string(number) + ')');
}

std::unordered_map<std::string, int64_t> Catalog::ReadNumbers() const {
  std::unordered_map<std::string, int64_t> numbers;
  for (const std::string schema : {"main.", "temp."}) {
    const bool any = store_.QueryInteger("SELECT count(*) FROM " + schema +
                                         "sqlite_master WHERE name='sqlite_sequence'") > 0;
    if (!any) continue;
    const SqliteStatement select =
        store_.Prepare("SELECT name,seq FROM " + schema + "sqlite_sequence");
    while (store_.Step(select.get())) {
      const auto* name = reinterpret_cast<const char*>(sqlite3_column_text(select.get(), 0));
      numbers[schema + QuoteName(name)] = sqlite3_column_int64(select.get(), 1);
    }
  }
  return numbers;
}

void Catalog::SaveNumbers() {
  numbers_ = ReadNumbers();
}

void Catalog::KeepNumber(const Table& table, const std::unordered_map<std::string, int64_t>& now) {
  if (table.identity_column < 0) return;
  const auto before = numbers_.find(table.physical);
  if (before == numbers_.end()) return;
  const auto after = now.find(table.physical);
  const int64_t number = after == now.end() ? NumberBeforeFirst(table) : after->second;
  if (table.IsLaterIdentity(before->second, number)) SetNumber(table, before->second);
}

void Catalog::RestoreNumbers() {
  if (numbers_.empty()) return;
  const auto now = ReadNumbers();
  // A transaction of its own, where the one that was rolled back is gone altogether.
  const bool alone = shared_ && !store_.InTransaction() && now != numbers_;
  try {
    if (alone) store_.RunCached("BEGIN IMMEDIATE");
    for (const auto& [name, object] : objects_) {
      if (object->table) KeepNumber(*object->table, now);
    }
    for (const Scope& scope : scopes_) {
      for (const auto& [name, table] : scope.tables) KeepNumber(*table, now);
    }
    if (alone) store_.RunCached("COMMIT");
  } catch (const SqlError&) {
    // The rollback itself is done: numbers that are given out once more are the lesser evil.
    if (!alone) throw;
    if (store_.InTransaction()) store_.RunCached("ROLLBACK");
  }
  numbers_.clear();
}

}  // namespace tavcc::sql
