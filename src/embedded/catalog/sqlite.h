// The thin layer over SQLite's C API: owned handles, and failures as SqlErrors.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
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

// Where a store is and how it is opened.
struct StoreLocation {
  std::string path;        // as the user named it
  bool shared = false;     // a file: other processes may be at work on it
  bool read_only = false;  // as it stands: nobody can write a journal beside it
  int wait_seconds = 0;    // how long another process's lock is waited for
  // What a store in memory begins with; null where that is nothing.
  std::shared_ptr<const std::string> image = nullptr;
};

// One connection to a store, with the dialect's functions registered on it.
class SqliteConnection {
 public:
  // Opens the store. A file must exist. Errors: SqlError kStoreFailure.
  explicit SqliteConnection(StoreLocation location);
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;
  ~SqliteConnection();

  sqlite3* handle() const { return handle_; }
  FunctionSession& functions() { return functions_; }

  // Errors of all five: as Step.
  SqliteStatement Prepare(std::string_view sql);
  void Run(std::string_view sql);
  int64_t QueryInteger(std::string_view sql);
  // As Run, for the few texts that are run over and over: `sql` is a literal.
  void RunCached(const char* sql);
  // The same for what gives rows, each of which is handed to `read`.
  void ReadCached(const char* sql, const std::function<void(sqlite3_stmt* row)>& read);

  // Whether the schema ("main", "temp") holds the table with the column, as far as this connection
  // has read it: what another process made since is unknown until a statement runs.
  bool HasColumn(const char* schema, const char* table, const char* column) const;

  // Steps a statement: true while there is a row. On failure the statement is reset and its error
  // thrown: the server's where a function of the dialect raised it; 1222 when another process did
  // not let go of the file in time, 1205 when waiting for it could not end, 3960 when the file was
  // changed since the transaction began to read; kStoreFailure, naming the file, for all that the
  // server has no error for: no room, no memory, a disk that fails, a damaged or read-only file.
  bool Step(sqlite3_stmt* statement);

  // The error for the failure that SQLite has just reported.
  SqlError TakeError(int code);

  // The error for contents that cannot be what was stored: "the file is damaged: …".
  SqlError Damage(const std::string& what) const;

  bool InTransaction() const;

  // To be called before a transaction first changes the file: the journal then tells whose it is
  // (see session/journal.h). Does nothing in memory, or when it was called in this transaction
  // before.
  void MarkChange();

  // As the wait for a lock goes on: whether to try again. Called by SQLite.
  bool GoOnWaiting(int tries);

  // Ends the statement that runs, with the error kInterrupted, and any wait for a lock. From any
  // thread; holds until it is forgotten.
  void Interrupt();
  bool IsInterrupted() const { return interrupted_.load(std::memory_order_relaxed); }
  void ForgetInterrupt() { interrupted_.store(false, std::memory_order_relaxed); }

 private:
  void Open();
  void TakeImage(const std::string& image);
  SqlError LockError(int code);
  SqlError FailureOf(int code) const;
  // A failure of the store, with the name of its file before it.
  SqlError Failure(const std::string& text) const;

  const StoreLocation location_;
  sqlite3* handle_ = nullptr;
  FunctionSession functions_;
  std::unordered_map<std::string_view, SqliteStatement> cached_;
  SqliteStatement mark_;
  bool marked_ = false;
  std::chrono::steady_clock::time_point waiting_since_;
  bool waited_in_vain_ = false;
  std::atomic<bool> interrupted_ = false;
};

// A row that SQLite refuses: the message names the columns, the statement knows the rest of the
// server's error (515, 2627, 2601).
inline constexpr int kNullRefused = -1;
inline constexpr int kDuplicateRefused = -2;
// A statement that Interrupt ended: no error that anybody is told of.
inline constexpr int kInterrupted = -3;

// `name` as an identifier of SQLite.
std::string QuoteName(std::string_view name);
// `text` as a literal of SQLite.
std::string QuoteText(std::string_view text);
// A stored value as a literal of SQLite.
std::string QuoteValue(const StoredValue& value);

}  // namespace tavcc::sql
