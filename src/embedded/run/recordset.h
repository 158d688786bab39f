// The rows of a result, read whole, behind the port.
#pragma once

#include <memory>
#include <vector>

#include "embedded/run/plan.h"
#include "foundation/recordset.h"

namespace tavcc::sql {

struct Rows {
  std::shared_ptr<const ResultShape> shape;
  std::vector<StoredValue> cells;  // row by row
  size_t count = 0;
};

RecordsetPtr MakeRecordset(Rows rows);
// The recordset of a batch that returned no rows.
RecordsetPtr ClosedRecordset();

}  // namespace tavcc::sql
