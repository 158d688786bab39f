// Identity values: what was given out stays given out, also when its row is rolled back.
//
// SQLite keeps the last value of each table in its table sqlite_sequence, which is rolled back like
// any other: the values are read before a rollback and written again after it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>

#include "embedded/catalog/sqlite.h"
#include "embedded/catalog/table.h"

namespace tavcc::sql {

using TableVisitor = std::function<void(const Table&)>;

class IdentityValues {
 public:
  // `shared`: whether other processes may be at work on the store.
  IdentityValues(SqliteConnection& store, bool shared) : store_(store), shared_(shared) {}

  // The value that was given out last.
  int64_t Last(const Table& table) const;
  void SetLast(const Table& table, int64_t number);
  // The next value is the first one again.
  void Restart(const Table& table);

  // Before the store rolls back, and after it. `for_each_table` visits the tables that may have
  // given out numbers.
  void Save();
  void Restore(const std::function<void(const TableVisitor&)>& for_each_table);

 private:
  using Numbers = std::unordered_map<std::string, int64_t>;  // by physical name

  Numbers Read() const;
  void RestoreTable(const Table& table, const Numbers& now);

  SqliteConnection& store_;
  const bool shared_;
  Numbers saved_;
};

}  // namespace tavcc::sql
