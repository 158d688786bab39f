// The rows of an answer, read whole: what a tape holds, and a recordset that gives them back.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "foundation/recordset.h"

namespace tavcc {

struct AnswerRows {
  std::vector<std::string> columns;
  std::vector<std::vector<Value>> rows;
};

using AnswerRowsPtr = std::shared_ptr<const AnswerRows>;

// Reads an open recordset from its first row to its last, and leaves it on the first again. Errors:
// those of a field that cannot be read.
AnswerRows ReadWhole(Recordset& recordset);

// A recordset that stands on the first of the rows; a closed one where there are none to be had
// (null).
RecordsetPtr MakeRecordset(AnswerRowsPtr rows);

}  // namespace tavcc
