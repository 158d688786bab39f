// What the statements of a session work on: the parts of the session, each an object of its own.
#pragma once

#include <map>
#include <string>

#include "embedded/bind/bound.h"
#include "embedded/catalog/catalog.h"
#include "embedded/catalog/sqlite.h"
#include "embedded/session/cursor.h"
#include "embedded/session/error_list.h"
#include "embedded/session/results.h"
#include "embedded/session/session_state.h"
#include "embedded/session/transaction.h"

namespace tavcc::sql {

struct SessionContext {
  explicit SessionContext(const StoreLocation& location);
  SessionContext(const SessionContext&) = delete;
  SessionContext& operator=(const SessionContext&) = delete;

  StoredValue ValueOf(SessionValue value, const Frame& frame) const;
  // Ends the transaction, temporary tables and cursors.
  void Clear();
  // Until it is called with null, the reader is told all that a batch gives.
  void ReportTo(BatchReader* reader);

  SqliteConnection store;
  const bool shared;  // the store is a file, which other processes may be at work on
  Catalog catalog;
  Transaction transaction;
  SessionState state;
  ErrorList errors;
  Results results;
  std::map<std::string, Cursor> cursors;  // by folded name
  int64_t compiled = 0;                   // statements so far: for tests and benchmarks
};

}  // namespace tavcc::sql
