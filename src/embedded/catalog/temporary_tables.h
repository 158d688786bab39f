// Temporary tables and table variables: the scopes that they live in, and the pool of emptied ones.
//
// They are SQLite's, but never dropped while the session lives: a dropped one is emptied and kept,
// and the next CREATE TABLE with the same text takes it up again, so that statements compiled
// against it stay good. One that a transaction made and took back is made again after it: for each
// new table SQLite compiles every statement anew, and reads the whole schema when it rolls one
// back. So of calls that are refused, only the first has that to pay.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "embedded/catalog/identity_values.h"
#include "embedded/catalog/sqlite.h"
#include "embedded/catalog/table.h"
#include "embedded/catalog/undo_log.h"

namespace tavcc::sql {

class TemporaryTables {
 public:
  TemporaryTables(SqliteConnection& store, IdentityValues& identities, UndoLog& undo);

  // "#table" of the innermost scope that has one, or "@variable" of the innermost scope; null when
  // there is none.
  TablePtr Find(const std::string& name) const;
  void ForEachTable(const TableVisitor& visit) const;

  // Grows with every change of what a name stands for.
  uint64_t changes() const { return changes_; }

  // ---- Scopes: the session, and each procedure or dynamic batch in it ----
  void PushScope();
  void PopScope();  // drops what was made in it
  void Clear();     // drops all of them, of every scope but the session's also the scope

  // ---- Tables ----
  // Errors: 2714 when the innermost scope has one of that name.
  TablePtr Create(const TablePtr& definition);
  void Drop(const TablePtr& table);
  // Puts `changed`, which is `table` with other columns or keys, in its place.
  void Replace(const TablePtr& table, const TablePtr& changed);
  // Takes all rows out; numbering begins again.
  void Truncate(const Table& table);
  // Drops emptied tables for good when there are too many of them. To be called where no
  // transaction is open, which could bring them back.
  void TrimPool();

  // ---- Table variables: no transaction undoes what is in them ----
  TablePtr CreateVariable(const TablePtr& definition);
  void ReleaseVariables();  // of the innermost scope
  // Before the store rolls back. Their rows are back with FinishRollback.
  void SaveVariables();

  // After the store and the undo log rolled back.
  void FinishRollback();

 private:
  struct Scope {
    uint64_t id = 0;
    std::unordered_map<std::string, TablePtr> tables;  // by folded name
  };
  using SavedRows = std::vector<std::vector<StoredValue>>;

  TablePtr Make(const Table& definition);
  void MakeInStore(const Table& table);  // what `physical` names, empty
  TablePtr FromPool(const Table& definition);
  void ToPool(const TablePtr& table);
  void ForgetPooled(const TablePtr& table);
  Scope* FindScope(uint64_t id);
  void Put(uint64_t scope, const std::string& folded, const TablePtr& table);
  void Remove(uint64_t scope, const std::string& folded);
  // Of a table that was made in a transaction that is rolled back: SQLite has dropped it.
  void Vanish(const TablePtr& table);
  // Where no transaction is open: what vanished is kept ready.
  void RemakeVanished();
  void RestoreVariables();

  SqliteConnection& store_;
  IdentityValues& identities_;
  UndoLog& undo_;
  std::vector<Scope> scopes_;
  std::unordered_map<std::string, std::vector<TablePtr>> pool_;  // by definition
  size_t pooled_ = 0;
  std::unordered_map<std::string, SqliteStatement> empty_statements_;  // by physical name
  std::vector<std::pair<TablePtr, SavedRows>> saved_variables_;
  std::vector<TablePtr> vanished_;  // in the rollback at hand
  uint64_t changes_ = 1, next_scope_ = 1;
  int64_t next_number_ = 1;
};

}  // namespace tavcc::sql
