// What the statements of a session leave for those after them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "embedded/session/frame.h"
#include "embedded/types/sql_type.h"

namespace tavcc::sql {

struct SessionState {
  // ---- @@ROWCOUNT and its like ----
  int64_t row_count = 0;
  int fetch_status = 0;
  std::optional<int64_t> identity;
  int nesting = 0;  // procedures and dynamic batches in one another

  // ---- SET options ----
  bool no_count = false, abort_transaction_on_error = false;
  // Transactions read the file as it was when they began, and wait for nobody until they write.
  bool snapshot_isolation = false;
  struct IdentityInsert {
    std::string physical;  // the table's, empty for none
    std::string name;
  };
  IdentityInsert identity_insert;

  // ---- The statement at hand, for the functions that SQLite calls back (session_functions.h) ----
  Frame* live_frame = nullptr;  // whose variables are read and set row by row
  struct Counter {
    int64_t last = 0, step = 0;
    SqlType type;
  };
  Counter next_identity;  // what identity values go on from
};

}  // namespace tavcc::sql
