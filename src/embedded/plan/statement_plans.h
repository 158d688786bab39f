// What the plan of each kind of statement has beyond what all plans have.
#pragma once

#include <memory>
#include <vector>

#include "embedded/plan/plan.h"
#include "embedded/plan/result_shape.h"

namespace tavcc::sql {

// A SELECT whose rows go to the client, or to a cursor.
struct QueryPlan final : Plan {
  std::shared_ptr<const ResultShape> shape;
};

// SELECT @v = …
struct AssigningPlan final : Plan {
  std::vector<int> targets;      // variables by item
  bool live = false;             // its rows read the variables that they assign
  std::vector<StoredValue> row;  // read last, while it runs
};

// SELECT … INTO: the table that is to be made.
struct IntoPlan final : Plan {
  TablePtr definition;
};

// A value or a condition that is computed without a table.
struct ValuePlan final : Plan {
  SqlType type;  // of the value
};

struct InsertPlan final : Plan {
  TablePtr table;
  std::vector<int> columns;     // that it writes, in their order
  bool draws_identity = false;  // it writes the identity values itself
};

// UPDATE, DELETE
struct ChangePlan final : Plan {
  TablePtr table;
};

// An UPDATE in steps: a query for the new values (see update_steps.h).
struct NewValuesPlan final : Plan {
  TablePtr table;
  std::vector<int> columns;  // that the values are for; -1 where one is for a variable alone
};

}  // namespace tavcc::sql
