#include "odbc/rows.h"

#include <memory>
#include <utility>

#include "foundation/in_memory_recordset.h"

namespace tavcc::odbc {

RecordsetPtr MakeRecordset(Rows rows) {
  return std::make_shared<InMemoryRecordset<Rows>>(std::move(rows));
}

}  // namespace tavcc::odbc
