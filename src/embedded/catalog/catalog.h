// The catalog of one session: what a name stands for. It looks names up among the store's objects
// and the session's own temporary tables, and changes them.
//
//   stored_objects.h     tables, views and procedures of the store
//   temporary_tables.h   temporary tables, table variables, and the scopes that they live in
//   identity_values.h    the identity values that tables have given out
//   undo_log.h           how changes are taken back when the transaction is rolled back
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/catalog/identity_values.h"
#include "embedded/catalog/sqlite.h"
#include "embedded/catalog/stored_objects.h"
#include "embedded/catalog/table.h"
#include "embedded/catalog/temporary_tables.h"
#include "embedded/catalog/undo_log.h"
#include "embedded/syntax/ast.h"

namespace tavcc::sql {

class Catalog {
 public:
  // Reads the store's objects. `shared`: whether other processes may change them meanwhile.
  Catalog(SqliteConnection& store, bool shared);
  Catalog(const Catalog&) = delete;
  Catalog& operator=(const Catalog&) = delete;

  IdentityValues& identities() { return identities_; }
  TemporaryTables& temporaries() { return temporaries_; }

  // ---- Looking up: null when there is none ----
  CatalogObjectPtr Find(const ObjectName& name) const;  // of the store only
  TablePtr FindTable(const ObjectName& name) const;     // also "#temporary" and "@variable"
  // Every object of the store, in no order.
  template <class Visitor>
  void ForEachObject(const Visitor& visit) const {
    objects_.ForEachObject(visit);
  }
  // OBJECT_ID of a name in one text; 0 when there is none.
  int64_t ObjectId(std::string_view text) const;

  // Grows with every change of what a name stands for: while it stands still, nothing that was
  // looked up needs to be looked up again.
  uint64_t epoch() const { return objects_.changes() + temporaries_.changes(); }

  // Takes note of what other processes changed. To be called where no transaction is open, or at
  // the beginning of one.
  void Refresh() { objects_.Refresh(); }

  // ---- Changing ----
  // Each change is one of the open transaction, and is undone with it (see Mark).
  // Errors: 2714 when the name is taken; those of the store.
  TablePtr CreateTable(const TablePtr& definition);
  void DropTable(const TablePtr& table);
  // Puts `changed`, which is `table` with more columns or keys, in its place.
  void AddColumns(const TablePtr& table, std::shared_ptr<Table> changed);
  void CreateIndex(const TablePtr& table, const CreateIndexStatement& index);
  // Errors: 3701 when the table has no such index.
  void DropIndex(const TablePtr& table, std::string_view index);
  void CreateView(const CreateViewStatement& view);
  void CreateProcedure(const CreateProcedureStatement& procedure);
  void DropObject(const CatalogObjectPtr& object) { objects_.Drop(*object); }

  // ---- Transactions ----
  // A point to which RollbackTo leads back; the store's own rollback stands between SaveIdentities,
  // for more than a statement also SaveVariables, and RollbackTo.
  size_t Mark() const { return undo_.Mark(); }
  void SaveVariables() { temporaries_.SaveVariables(); }
  void SaveIdentities() { identities_.Save(); }
  void RollbackTo(size_t mark);
  void Forget() { undo_.Forget(); }  // the transaction was committed

 private:
  SqliteConnection& store_;
  UndoLog undo_;
  IdentityValues identities_;
  StoredObjects objects_;
  TemporaryTables temporaries_;
};

// The parts of "a.b..[c d]". Nothing when it is no name.
std::vector<std::string> SplitName(std::string_view text);

}  // namespace tavcc::sql
