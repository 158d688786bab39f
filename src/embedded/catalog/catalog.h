// The catalog of one session: the store's tables, views and procedures, and the session's own
// temporary tables and table variables.
//
// The store's objects are rows of a table of ours in the store, each with the T-SQL that makes it
// again; they are read once and cached. Temporary tables are SQLite's, but never dropped while the
// session lives: a dropped one is emptied and kept, and the next CREATE TABLE with the same text
// takes it up again, so that statements compiled against it stay good.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "embedded/catalog/sqlite.h"
#include "embedded/catalog/table.h"
#include "embedded/syntax/ast.h"

namespace tavcc::sql {

class Program;

struct View {
  std::string name;
  std::shared_ptr<const CreateViewStatement> statement;
};

struct Procedure {
  std::string name;
  std::shared_ptr<const Batch> text;  // owns `statement`
  const CreateProcedureStatement* statement = nullptr;
  // The body as the interpreter prepared it, once it was called.
  mutable std::shared_ptr<Program> program;
};

// What a name of the store stands for: exactly one of the three is set.
struct CatalogObject {
  int64_t id = 0;
  std::string name;
  std::string definition;
  TablePtr table;
  std::shared_ptr<const View> view;
  std::shared_ptr<const Procedure> procedure;
};
using CatalogObjectPtr = std::shared_ptr<const CatalogObject>;

class Catalog {
 public:
  // Reads the store's objects. `shared`: whether other processes may change them meanwhile.
  Catalog(SqliteConnection& store, bool shared);
  ~Catalog();

  // The statements that make an empty store.
  static std::string NewStoreText();

  // ---- Looking up: null when there is none ----
  CatalogObjectPtr Find(const ObjectName& name) const;  // of the store only
  TablePtr FindTable(const ObjectName& name) const;     // also "#temporary" and "@variable"
  // OBJECT_ID of a name in one text; 0 when there is none.
  int64_t ObjectId(std::string_view text) const;

  // Grows with every change of what a name stands for: while it stands still, nothing that was
  // looked up needs to be looked up again.
  uint64_t epoch() const { return epoch_; }

  // Takes note of what other processes changed. To be called where no transaction is open, or at
  // the beginning of one.
  void Refresh();

  // ---- Changing ----
  // Each change is one of the open transaction, and is undone with it (see Mark).
  // Errors: 2714 when the name is taken; those of the store.
  TablePtr CreateTable(const TablePtr& definition);
  void DropTable(const TablePtr& table);
  // Takes all rows out; numbering begins again.
  void Truncate(const TablePtr& table) { Empty(*table); }
  // Puts `changed`, which is `table` with more columns or keys, in its place.
  TablePtr AddColumns(const TablePtr& table, std::shared_ptr<Table> changed);
  void CreateIndex(const TablePtr& table, const CreateIndexStatement& index);
  // Errors: 3701 when the table has no such index.
  void DropIndex(const TablePtr& table, std::string_view index);
  void CreateView(const CreateViewStatement& view);
  void CreateProcedure(const CreateProcedureStatement& procedure);
  void DropObject(const CatalogObjectPtr& object);  // a view or a procedure

  // ---- Scopes of temporary tables: the session, and each procedure or dynamic batch in it ----
  void PushScope();
  void PopScope();  // drops what was made in it
  void Clear();     // drops all of them, of every scope but the session's also the scope
  TablePtr TakeVariable(const TablePtr& definition);
  void ReleaseVariables();  // of the innermost scope
  // Drops emptied tables for good when there are too many of them. To be called where no
  // transaction is open, which could bring them back.
  void TrimPool();

  // ---- Identity values (numbers.cpp) ----
  // The last value that was given out.
  int64_t Number(const Table& table) const;
  void SetNumber(const Table& table, int64_t number);

  // ---- Transactions ----
  // A point to which RollBackTo leads back; the store's own rollback stands on either side:
  // SaveVariables and SaveNumbers before it, RollBackTo after it.
  size_t Mark() const { return undo_.size(); }
  void SaveVariables();
  void SaveNumbers();
  void RollBackTo(size_t mark);
  void Forget();  // the transaction was committed

 private:
  struct Scope {
    uint64_t id = 0;
    std::unordered_map<std::string, TablePtr> tables;
  };
  struct Undo {
    enum class Kind : uint8_t { kObject, kTaken, kMade, kDropped, kReplaced };
    Kind kind;
    std::string name;         // folded
    CatalogObjectPtr object;  // kObject: what stood under the name, null for nothing
    TablePtr table;           // the others; of kReplaced the former one
    uint64_t scope = 0;
  };
  using SavedRows = std::vector<std::vector<StoredValue>>;

  void Load();
  CatalogObjectPtr ReadObject(int64_t id, const std::string& name, const std::string& definition);
  void StoreObject(std::shared_ptr<CatalogObject> object);
  void SetObject(const std::string& folded, CatalogObjectPtr object);
  void RaiseIfTaken(const std::string& name) const;
  TablePtr TakeTemporary(const TablePtr& definition);
  TablePtr FromPool(const TablePtr& definition);
  void DropTemporary(const TablePtr& table);
  void ReplaceTemporary(const TablePtr& table, const TablePtr& changed);
  void ToPool(const TablePtr& table);
  void ForgetPooled(const TablePtr& table);
  void Empty(const Table& table);
  Scope* FindScope(uint64_t id);
  void UndoOne(const Undo& undo, std::vector<TablePtr>& vanished);
  void RestoreVariables(const std::vector<TablePtr>& vanished);
  void BumpVersion();
  std::unordered_map<std::string, int64_t> ReadNumbers() const;
  void RestoreNumbers();
  void KeepNumber(const Table& table, const std::unordered_map<std::string, int64_t>& now);

  SqliteConnection& store_;
  const bool shared_;
  std::unordered_map<std::string, CatalogObjectPtr> objects_;
  std::vector<Scope> scopes_;
  std::unordered_map<std::string, std::vector<TablePtr>> pool_;
  size_t pooled_ = 0;
  std::unordered_map<std::string, SqliteStatement> empty_statements_;
  std::vector<Undo> undo_;
  std::vector<std::pair<TablePtr, SavedRows>> saved_variables_;
  std::unordered_map<std::string, int64_t> numbers_;  // by physical name, before a rollback
  SqliteStatement data_version_;
  int64_t seen_data_version_ = -1, seen_version_ = -1;
  uint64_t epoch_ = 1, next_scope_ = 1, next_physical_ = 1;
};

// The parts of "a.b..[c d]". Nothing when it is no name.
std::vector<std::string> SplitName(std::string_view text);

}  // namespace tavcc::sql
