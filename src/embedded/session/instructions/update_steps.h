// An UPDATE in steps: all new values first, then the rows.
//
// SQLite checks the keys of each row as it changes it, the server those of the result: after
// "SET id = id + 1" no two rows have the same key, although each new key was another row's. And
// "SET @v = …" sets a variable with each row.
#pragma once

#include "embedded/session/plan_run.h"

namespace tavcc::sql {

// Updates the rows of `plan` (EmitUpdatedRows) in a statement of its own, and sets the row count.
// Errors: also 515, 2601 and 2627.
void UpdateInSteps(SessionContext& session, NewValuesPlan& plan, Frame& frame,
                   std::span<const StoredValue> row = {});

}  // namespace tavcc::sql
