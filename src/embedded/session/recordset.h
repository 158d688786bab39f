// The rows of a result, read whole, behind the port.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "embedded/plan/result_shape.h"
#include "embedded/types/stored_value.h"
#include "foundation/recordset.h"

namespace tavcc::sql {

struct Rows {
  std::shared_ptr<const ResultShape> shape;
  std::vector<StoredValue> cells;  // row by row
  size_t count = 0;

  bool IsResult() const { return shape != nullptr; }
  size_t RowCount() const { return count; }
  const std::vector<std::string>& FieldNames() const { return shape->names; }
  // Errors: that of a stored value which its type cannot say, as an AutomationError.
  Value ValueAt(size_t row, size_t field) const;
};

// Makes recordsets. One that nobody holds any more is made again of the next rows, in its memory.
class RecordsetMaker {
 public:
  RecordsetMaker();
  ~RecordsetMaker();
  RecordsetPtr Make(Rows&& rows);
  // No values, but the memory for some.
  std::vector<StoredValue> TakeCells();
  void Forget();  // gives the memory back

 private:
  bool IsFree() const;
  std::shared_ptr<class RowsRecordset> last_;
};
// The recordset of a batch that returned no rows. It stays as it is, so it may be handed out again.
RecordsetPtr ClosedRecordset();

}  // namespace tavcc::sql
