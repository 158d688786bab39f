// The session's transaction: the server's counting over SQLite's one transaction, savepoints, and
// statements that are whole or not at all.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "embedded/catalog/catalog.h"
#include "embedded/catalog/sqlite.h"

namespace tavcc::sql {

class Transaction {
 public:
  Transaction(SqliteConnection& store, Catalog& catalog, bool shared)
      : store_(store), catalog_(catalog), shared_(shared) {}

  int count() const { return count_; }  // @@TRANCOUNT
  bool IsOpen() const { return count_ > 0; }

  // `snapshot`: it waits for nobody until it writes.
  void Begin(const std::string& name, bool snapshot);
  void Commit();                           // error 3902
  void Rollback(const std::string& name);  // errors 3903, 6401
  void RollbackAll();
  void Save(const std::string& name);  // error 628

 private:
  friend class StatementGuard;
  struct SavePoint {
    std::string name;
    size_t mark;
  };

  SqliteConnection& store_;
  Catalog& catalog_;
  const bool shared_;
  int count_ = 0;
  std::string name_;
  std::vector<SavePoint> save_points_;
};

// Makes one statement whole: what it did to store and catalog is undone unless Commit is called.
class StatementGuard {
 public:
  // `store`: whether the store's own file is changed, not only temporary tables.
  StatementGuard(Transaction& transaction, bool store);
  StatementGuard(const StatementGuard&) = delete;
  StatementGuard& operator=(const StatementGuard&) = delete;
  ~StatementGuard();
  void Commit();

 private:
  SqliteConnection& store_;
  Catalog& catalog_;
  const bool own_transaction_;
  const size_t mark_;
  bool committed_ = false;
};

}  // namespace tavcc::sql
