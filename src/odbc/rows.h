// Rows read whole, behind the port.
#pragma once

#include <string>
#include <vector>

#include "foundation/recordset.h"

namespace tavcc::odbc {

struct Rows {
  std::vector<std::string> names;  // of the columns; no result has none
  std::vector<Value> cells;        // row by row

  bool IsResult() const { return !names.empty(); }
  size_t count() const { return IsResult() ? cells.size() / names.size() : 0; }
};

// The rows as a recordset; a closed one where there is no result.
RecordsetPtr MakeRecordset(Rows rows);

}  // namespace tavcc::odbc
