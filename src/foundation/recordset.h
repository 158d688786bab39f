// Port: the rows that a statement returned, read forward. Stands for ADODB.Recordset.
#pragma once

#include <string>
#include <string_view>

#include "foundation/value.h"

namespace tavcc {

class Recordset : public Object {
 public:
  // False for the recordset of a statement that returns no rows; every other member but Close then
  // raises error 3704.
  virtual bool IsOpen() const = 0;

  // Past the last row; also true when there is no row at all.
  virtual bool AtEnd() const = 0;
  // Before the first row; true only when there is no row, since reading starts on the first.
  virtual bool AtStart() const = 0;
  // Errors: 3021 when already past the last row.
  virtual void MoveNext() = 0;
  // Back to the first row. Errors: 3021 when there is none.
  virtual void MoveFirst() = 0;

  // Rows in all, or -1 where the cursor does not know.
  virtual int RecordCount() const = 0;

  virtual int FieldCount() const = 0;
  // `index` is 0 to FieldCount() - 1; error 3265 otherwise.
  virtual std::string FieldName(int index) const = 0;
  // The current row's value. By position from 0, or by name without regard to letter case.
  // Errors: 3265 when there is no such field, then 3021 when there is no current row.
  virtual Value Field(int index) const = 0;
  virtual Value Field(std::string_view name) const = 0;

  // Cuts the tie to the connection; the rows stay readable after it is closed.
  virtual void Detach() = 0;
  virtual void Close() = 0;
};

using RecordsetPtr = std::shared_ptr<Recordset>;

}  // namespace tavcc
