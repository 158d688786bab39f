// ADO's creatable objects, over the ports: what Wine's own ADO lacks. On Windows the real ADO is
// used.
#pragma once

#include "automation/border/platform.h"
#include "foundation/connection.h"

namespace tavcc::host_automation {

// What an entry of a connection's errors stands for.
class ErrorEntry final : public Object {
 public:
  explicit ErrorEntry(ConnectionError e) : error(std::move(e)) {}
  ConnectionError error;
};

// A recordset that is opened on a connection later: CursorLocation, Open, then as one that a
// connection returned.
IDispatch* NewAdoRecordset();

// A call of a stored procedure: ActiveConnection, CommandType, CommandText, CreateParameter,
// Parameters, Execute.
IDispatch* NewAdoCommand();

}  // namespace tavcc::host_automation
