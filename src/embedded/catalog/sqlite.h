// The thin layer over SQLite's C API: owned handles, and failures as SqlErrors.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "embedded/error.h"
#include "embedded/functions/functions.h"
#include "embedded/types/stored_value.h"

struct sqlite3;
struct sqlite3_stmt;

namespace tavcc::sql {

// A prepared statement; finalized with its owner.
class SqliteStatement {
 public:
  SqliteStatement() = default;
  explicit SqliteStatement(sqlite3_stmt* statement) : statement_(statement) {}

  sqlite3_stmt* get() const { return statement_.get(); }
  explicit operator bool() const { return statement_ != nullptr; }

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

// One connection to a store, with the dialect's functions registered on it.
class SqliteConnection {
 public:
  // Opens the file as SQLite's flags say. Errors: SqlError kStoreFailure with SQLite's own words.
  SqliteConnection(const std::string& path, int flags);
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;
  ~SqliteConnection();

  sqlite3* handle() const { return handle_; }
  FunctionSession& functions() { return functions_; }

  // Errors of all three: as Check.
  SqliteStatement Prepare(std::string_view sql) const;
  void Run(std::string_view sql) const;
  int64_t QueryInteger(std::string_view sql) const;
  // As Run, for the few texts that are run over and over: `sql` is a literal.
  void RunCached(const char* sql);

  // Steps a statement: true while there is a row. On failure the statement is reset and its error
  // thrown: the server's where a function of the dialect raised it, 1205 for a lock that another
  // process did not let go, 701 and 1105 for memory and space, otherwise kStoreFailure.
  bool Step(sqlite3_stmt* statement);

  // The error for the failure that SQLite has just reported.
  SqlError TakeError(int code);

  bool InTransaction() const;

 private:
  sqlite3* handle_ = nullptr;
  FunctionSession functions_;
  std::unordered_map<std::string_view, SqliteStatement> cached_;
};

// A row that SQLite refuses: the message names the columns, the statement knows the rest of the
// server's error (515, 2627, 2601).
inline constexpr int kNullRefused = -1;
inline constexpr int kDuplicateRefused = -2;

// The store itself fails, in a way for which the server has no error: our own number.
inline constexpr int kStoreFailure = 50002;
SqlError StoreFailure(std::string message);

// `name` as an identifier of SQLite.
std::string QuoteName(std::string_view name);
// `text` as a literal of SQLite.
std::string QuoteText(std::string_view text);
// A stored value as a literal of SQLite.
std::string QuoteValue(const StoredValue& value);

}  // namespace tavcc::sql
