// Temporary tables and table variables: scopes, the pool of emptied tables, and undoing.
#include <sqlite3.h>

#include <algorithm>

#include "embedded/catalog/catalog.h"
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

void Catalog::PushScope() {
  scopes_.push_back(Scope{next_scope_++, {}});
}

void Catalog::PopScope() {
  ReleaseVariables();
  while (!scopes_.back().tables.empty()) DropTemporary(scopes_.back().tables.begin()->second);
  scopes_.pop_back();
}

void Catalog::Clear() {
  while (scopes_.size() > 1) PopScope();
  ReleaseVariables();
  while (!scopes_.back().tables.empty()) DropTemporary(scopes_.back().tables.begin()->second);
}

Catalog::Scope* Catalog::FindScope(uint64_t id) {
  const auto found = std::ranges::find(scopes_, id, &Scope::id);
  return found == scopes_.end() ? nullptr : &*found;
}

// ---- The pool ----

TablePtr Catalog::FromPool(const TablePtr& definition) {
  const auto found = pool_.find(definition->definition);
  if (found == pool_.end() || found->second.empty()) return nullptr;
  TablePtr table = std::move(found->second.back());
  found->second.pop_back();
  --pooled_;
  return table;
}

void Catalog::ToPool(const TablePtr& table) {
  pool_[table->definition].push_back(table);
  ++pooled_;
}

void Catalog::ForgetPooled(const TablePtr& table) {
  const auto found = pool_.find(table->definition);
  if (found == pool_.end()) return;
  if (std::erase(found->second, table) > 0) --pooled_;
}

void Catalog::Empty(const Table& table) {
  SqliteStatement& statement = empty_statements_[table.physical];
  if (!statement) statement = store_.Prepare("DELETE FROM " + table.physical);
  store_.Step(statement.get());
  sqlite3_reset(statement.get());
  if (table.identity_column >= 0) SetNumber(table, NumberBeforeFirst(table));
}

void Catalog::TrimPool() {
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

TablePtr Catalog::TakeTemporary(const TablePtr& definition) {
  Scope& scope = scopes_.back();
  const std::string folded = FoldName(definition->name);
  if (scope.tables.contains(folded)) Raise(2714, definition->name);
  TablePtr table = FromPool(definition);
  const auto kind = table ? Undo::Kind::kTaken : Undo::Kind::kMade;
  if (!table) {
    auto made = std::make_shared<Table>(*definition);
    const std::string physical = "t" + std::to_string(next_physical_++);
    made->physical = "temp." + QuoteName(physical);
    store_.Run(PhysicalDefinition(*made, "temp", physical) + SmallTableText(physical));
    table = std::move(made);
  }
  undo_.push_back(Undo{kind, folded, nullptr, table, scope.id});
  scope.tables[folded] = table;
  ++epoch_;
  return table;
}

void Catalog::DropTemporary(const TablePtr& table) {
  const std::string folded = FoldName(table->name);
  for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
    const auto found = scope->tables.find(folded);
    if (found == scope->tables.end()) continue;
    const TablePtr dropped = std::move(found->second);  // `table` may refer to the entry that goes
    Empty(*dropped);
    scope->tables.erase(found);
    undo_.push_back(Undo{Undo::Kind::kDropped, folded, nullptr, dropped, scope->id});
    ToPool(dropped);
    ++epoch_;
    return;
  }
}

void Catalog::ReplaceTemporary(const TablePtr& table, const TablePtr& changed) {
  const std::string folded = FoldName(table->name);
  for (Scope& scope : scopes_) {
    const auto found = scope.tables.find(folded);
    if (found == scope.tables.end() || found->second != table) continue;
    found->second = changed;
    undo_.push_back(Undo{Undo::Kind::kReplaced, folded, nullptr, table, scope.id});
    ++epoch_;
  }
}

// ---- Table variables: no transaction undoes what is in them ----

TablePtr Catalog::TakeVariable(const TablePtr& definition) {
  Scope& scope = scopes_.back();
  TablePtr table = FromPool(definition);
  if (!table) {
    auto made = std::make_shared<Table>(*definition);
    const std::string physical = "t" + std::to_string(next_physical_++);
    made->physical = "temp." + QuoteName(physical);
    store_.Run(PhysicalDefinition(*made, "temp", physical) + SmallTableText(physical));
    table = std::move(made);
    undo_.push_back(Undo{Undo::Kind::kMade, FoldName(table->name), nullptr, table, scope.id});
  }
  scope.tables[FoldName(table->name)] = table;
  ++epoch_;
  return table;
}

void Catalog::ReleaseVariables() {
  auto& tables = scopes_.back().tables;
  for (auto entry = tables.begin(); entry != tables.end();) {
    if (!entry->second->IsVariable()) {
      ++entry;
      continue;
    }
    Empty(*entry->second);
    ToPool(entry->second);
    entry = tables.erase(entry);
    ++epoch_;
  }
}

void Catalog::SaveVariables() {
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

void Catalog::RestoreVariables(const std::vector<TablePtr>& vanished) {
  for (const auto& [table, rows] : saved_variables_) {
    if (std::ranges::find(vanished, table) != vanished.end()) {
      store_.Run(PhysicalDefinition(*table, "temp", table->PhysicalName()));
    } else {
      Empty(*table);
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

// ---- Undoing ----

void Catalog::UndoOne(const Undo& undo, std::vector<TablePtr>& vanished) {
  if (undo.kind == Undo::Kind::kObject) {
    if (undo.object) {
      objects_[undo.name] = undo.object;
    } else {
      objects_.erase(undo.name);
    }
    return;
  }
  Scope* scope = FindScope(undo.scope);
  const bool variable = undo.table->IsVariable();
  switch (undo.kind) {
    case Undo::Kind::kTaken:
      if (scope) scope->tables.erase(undo.name);
      ToPool(undo.table);
      break;
    case Undo::Kind::kMade:
      // SQLite has dropped it; statements that were prepared to empty it are of no use.
      vanished.push_back(undo.table);
      empty_statements_.erase(undo.table->physical);
      ForgetPooled(undo.table);
      if (scope && !variable) scope->tables.erase(undo.name);
      break;
    case Undo::Kind::kDropped:
      // Its rows are back. When the procedure that made it has ended meanwhile, it is only emptied.
      if (!scope) break;
      ForgetPooled(undo.table);
      scope->tables[undo.name] = undo.table;
      break;
    default:
      if (scope) scope->tables[undo.name] = undo.table;
  }
}

void Catalog::RollBackTo(size_t mark) {
  std::vector<TablePtr> vanished;
  while (undo_.size() > mark) {
    UndoOne(undo_.back(), vanished);
    undo_.pop_back();
  }
  RestoreVariables(vanished);
  for (const auto& [definition, tables] : pool_) {
    for (const TablePtr& table : tables) Empty(*table);
  }
  RestoreNumbers();
  if (shared_) seen_version_ = seen_data_version_ = -1;
  ++epoch_;
}

void Catalog::Forget() {
  undo_.clear();
}

}  // namespace tavcc::sql
