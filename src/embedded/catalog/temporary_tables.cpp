#include "embedded/catalog/temporary_tables.h"

#include <sqlite3.h>

#include <algorithm>

#include "embedded/catalog/names.h"
#include "embedded/types/sqlite_value.h"

namespace tavcc::sql {
namespace {

// Emptied tables that are kept at most; beyond it they are dropped for good.
constexpr size_t kPoolSize = 128;

// Tells SQLite's planner that the table is small, which it would otherwise take for a large one:
// the rows of a bill are to look up the inventory, not the other way round.
std::string SmallTableText(const std::string& physical) {
  return "INSERT INTO temp.sqlite_stat1 VALUES(" + QuoteText(physical) +
         ",NULL,'20');ANALYZE temp.sqlite_schema;";
}

}  // namespace

TemporaryTables::TemporaryTables(SqliteConnection& store, IdentityValues& identities, UndoLog& undo)
    : store_(store), identities_(identities), undo_(undo) {
  PushScope();
}

TablePtr TemporaryTables::Find(const std::string& name) const {
  const std::string folded = FoldName(name);
  for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
    const auto found = scope->tables.find(folded);
    if (found != scope->tables.end()) return found->second;
    if (name.front() == '@') break;
  }
  return nullptr;
}

void TemporaryTables::ForEachTable(const TableVisitor& visit) const {
  for (const Scope& scope : scopes_) {
    for (const auto& [name, table] : scope.tables) visit(*table);
  }
}

void TemporaryTables::PushScope() {
  scopes_.push_back(Scope{next_scope_++, {}});
}

void TemporaryTables::PopScope() {
  ReleaseVariables();
  while (!scopes_.back().tables.empty()) Drop(scopes_.back().tables.begin()->second);
  scopes_.pop_back();
}

void TemporaryTables::Clear() {
  while (scopes_.size() > 1) PopScope();
  ReleaseVariables();
  while (!scopes_.back().tables.empty()) Drop(scopes_.back().tables.begin()->second);
}

TemporaryTables::Scope* TemporaryTables::FindScope(uint64_t id) {
  const auto found = std::ranges::find(scopes_, id, &Scope::id);
  return found == scopes_.end() ? nullptr : &*found;
}

void TemporaryTables::Put(uint64_t scope, const std::string& folded, const TablePtr& table) {
  if (Scope* at = FindScope(scope)) at->tables[folded] = table;
  ++changes_;
}

void TemporaryTables::Remove(uint64_t scope, const std::string& folded) {
  if (Scope* at = FindScope(scope)) at->tables.erase(folded);
  ++changes_;
}

// ---- The pool ----

TablePtr TemporaryTables::FromPool(const Table& definition) {
  const auto found = pool_.find(definition.definition);
  if (found == pool_.end() || found->second.empty()) return nullptr;
  TablePtr table = std::move(found->second.back());
  found->second.pop_back();
  --pooled_;
  return table;
}

void TemporaryTables::ToPool(const TablePtr& table) {
  pool_[table->definition].push_back(table);
  ++pooled_;
}

void TemporaryTables::ForgetPooled(const TablePtr& table) {
  const auto found = pool_.find(table->definition);
  if (found == pool_.end()) return;
  if (std::erase(found->second, table) > 0) --pooled_;
}

void TemporaryTables::Truncate(const Table& table) {
  SqliteStatement& statement = empty_statements_[table.physical];
  if (!statement) statement = store_.Prepare("DELETE FROM " + table.physical);
  store_.Step(statement.get());
  sqlite3_reset(statement.get());
  identities_.Restart(table);
}

void TemporaryTables::TrimPool() {
  if (pool_.size() <= kPoolSize && pooled_ <= kPoolSize) return;
  for (auto& [definition, tables] : pool_) {
    for (const TablePtr& table : tables) {
      empty_statements_.erase(table->physical);
      store_.Run("DROP TABLE " + table->physical);
    }
  }
  pool_.clear();
  pooled_ = 0;
}

// ---- Temporary tables ----

TablePtr TemporaryTables::Make(const Table& definition) {
  auto table = std::make_shared<Table>(definition);
  table->number = next_number_++;
  table->physical = "temp." + QuoteName("t" + std::to_string(table->number));
  MakeInStore(*table);
  return table;
}

void TemporaryTables::MakeInStore(const Table& table) {
  const std::string physical(table.PhysicalName());
  store_.Run(PhysicalDefinition(table, "temp", physical) + SmallTableText(physical));
}

TablePtr TemporaryTables::Create(const TablePtr& definition) {
  Scope& scope = scopes_.back();
  const std::string folded = FoldName(definition->name);
  if (scope.tables.contains(folded)) Raise(errors::kObjectExists, definition->name);
  TablePtr table = FromPool(*definition);
  if (table) {
    undo_.Add([this, id = scope.id, folded, table] {
      Remove(id, folded);
      ToPool(table);
    });
  } else {
    table = Make(*definition);
    undo_.Add([this, id = scope.id, folded, table] {
      Vanish(table);
      Remove(id, folded);
    });
  }
  Put(scope.id, folded, table);
  return table;
}

void TemporaryTables::Vanish(const TablePtr& table) {
  vanished_.push_back(table);
  empty_statements_.erase(table->physical);
  ForgetPooled(table);
}

void TemporaryTables::Drop(const TablePtr& table) {
  const std::string folded = FoldName(table->name);
  for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
    const auto found = scope->tables.find(folded);
    if (found == scope->tables.end()) continue;
    const TablePtr dropped = found->second;  // `table` may refer to the entry that goes
    Truncate(*dropped);
    scope->tables.erase(found);
    undo_.Add([this, id = scope->id, folded, dropped] {
      // Its rows are back. When the procedure that made it has ended meanwhile, it is only emptied.
      if (FindScope(id) == nullptr) return;
      ForgetPooled(dropped);
      Put(id, folded, dropped);
    });
    ToPool(dropped);
    ++changes_;
    return;
  }
}

void TemporaryTables::Replace(const TablePtr& table, const TablePtr& changed) {
  const std::string folded = FoldName(table->name);
  const TablePtr former = table;  // `table` may refer to the entry that changes
  for (const Scope& scope : scopes_) {
    const auto found = scope.tables.find(folded);
    if (found == scope.tables.end() || found->second != former) continue;
    undo_.Add([this, id = scope.id, folded, former] { Put(id, folded, former); });
    Put(scope.id, folded, changed);
  }
}

// ---- Table variables ----

TablePtr TemporaryTables::CreateVariable(const TablePtr& definition) {
  TablePtr table = FromPool(*definition);
  if (!table) {
    table = Make(*definition);
    undo_.Add([this, table] { Vanish(table); });
  }
  Put(scopes_.back().id, FoldName(table->name), table);
  return table;
}

void TemporaryTables::ReleaseVariables() {
  auto& tables = scopes_.back().tables;
  for (auto entry = tables.begin(); entry != tables.end();) {
    if (!entry->second->IsVariable()) {
      ++entry;
      continue;
    }
    Truncate(*entry->second);
    ToPool(entry->second);
    entry = tables.erase(entry);
    ++changes_;
  }
}

void TemporaryTables::SaveVariables() {
  saved_variables_.clear();
  for (const Scope& scope : scopes_) {
    for (const auto& [name, table] : scope.tables) {
      if (!table->IsVariable()) continue;
      SavedRows rows;
      const SqliteStatement select = store_.Prepare("SELECT * FROM " + table->physical);
      while (store_.Step(select.get())) {
        auto& row = rows.emplace_back();
        for (int i = 0; i < sqlite3_column_count(select.get()); ++i) {
          row.push_back(FromSqlite(sqlite3_column_value(select.get(), i)));
        }
      }
      saved_variables_.emplace_back(table, std::move(rows));
    }
  }
}

void TemporaryTables::RestoreVariables() {
  for (const auto& [table, rows] : saved_variables_) {
    if (std::erase(vanished_, table) > 0) {
      MakeInStore(*table);
    } else {
      Truncate(*table);
    }
    if (rows.empty()) continue;
    std::string places = "?";
    for (size_t i = 1; i < table->columns.size(); ++i) places += ",?";
    const SqliteStatement insert =
        store_.Prepare("INSERT INTO " + table->physical + " VALUES(" + places + ")");
    for (const auto& row : rows) {
      for (size_t i = 0; i < row.size(); ++i) {
        BindStored(insert.get(), static_cast<int>(i) + 1, row[i]);
      }
      store_.Step(insert.get());
      sqlite3_reset(insert.get());
    }
  }
  saved_variables_.clear();
}

void TemporaryTables::FinishRollback() {
  RestoreVariables();
  for (const auto& [definition, tables] : pool_) {
    for (const TablePtr& table : tables) Truncate(*table);
  }
  if (!store_.InTransaction()) RemakeVanished();
  vanished_.clear();
  ++changes_;
}

void TemporaryTables::RemakeVanished() {
  try {
    for (const TablePtr& table : vanished_) {
      MakeInStore(*table);
      ToPool(table);
    }
  } catch (const SqlError&) {
    // The rollback itself is done: what is not kept ready is made when it is wanted.
  }
}

}  // namespace tavcc::sql
