// The objects of the store: its tables, views and procedures.
//
// They are rows of a table of ours in the store, each with the T-SQL that makes it again. The rows
// are read once; what one of them stands for is parsed when its name is first asked for. A change
// is written through to the store and can be undone.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "embedded/catalog/identity_values.h"
#include "embedded/catalog/sqlite.h"
#include "embedded/catalog/table.h"
#include "embedded/catalog/undo_log.h"
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

class StoredObjects {
 public:
  // Reads the store's objects. `shared`: whether other processes may change them meanwhile.
  StoredObjects(SqliteConnection& store, bool shared, UndoLog& undo);

  // The statements that make an empty store.
  static std::string NewStoreText();

  // Null when there is none. Errors: 50002 for a definition that cannot be read.
  CatalogObjectPtr Find(const std::string& name) const;
  // Its number; 0 when there is none.
  int64_t IdOf(const std::string& name) const;
  template <class Visitor>
  void ForEachObject(const Visitor& visit) const {
    for (const auto& [name, object] : objects_) visit(Known(*object));
  }
  // Only those that were asked for.
  void ForEachKnownTable(const TableVisitor& visit) const;

  // Grows with every change of what a name stands for.
  uint64_t changes() const { return changes_; }

  // Takes note of what other processes changed.
  void Refresh();
  // After a rollback nothing is known of what other processes changed.
  void ForgetVersions();

  // Errors: 2714 when the name is taken.
  void CheckNameIsFree(const std::string& name) const;
  // Adds a table, or puts it in place of the one of its name.
  void Put(const TablePtr& table);
  // Adds a view or a procedure. Errors: 2714; those of the parser.
  void Add(const std::string& name, const std::string& definition);
  void Drop(const CatalogObject& object);

 private:
  // None of the three of an object is set before it was asked for.
  using ObjectPtr = std::shared_ptr<CatalogObject>;

  void Load();
  const CatalogObject& Known(CatalogObject& object) const;
  void Write(ObjectPtr object);
  void Set(const std::string& folded, ObjectPtr object);
  void IncrementVersion();

  SqliteConnection& store_;
  const bool shared_;
  UndoLog& undo_;
  std::unordered_map<std::string, ObjectPtr> objects_;  // by folded name
  SqliteStatement data_version_;
  int64_t seen_data_version_ = -1, seen_version_ = -1;
  uint64_t changes_ = 1;
};

}  // namespace tavcc::sql
