// Port: an open session with the ERP's database. Stands for ADODB.Connection.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "foundation/recordset.h"
#include "foundation/sql_text.h"
#include "foundation/value.h"

namespace tavcc {

// One entry of the connection's list of errors.
struct ConnectionError {
  int32_t number = 0;  // the server's number, e.g. 208
  std::string source;
  std::string description;
  std::string sql_state;      // five characters, or empty where the database has none
  ObjectPtr entry = nullptr;  // the host's own object for it, where there is one
};

// One parameter of a stored procedure; `name` includes the "@".
struct ProcedureParameter {
  std::string name;
  Value value;
  bool output = false;
};

class Connection : public Object {
 public:
  // Runs a batch and returns its first result: the rows of its first statement that returns any, or
  // a closed recordset. All of the batch has run when the call returns.
  // Errors: the first error of the batch as AutomationError with the server's number and text;
  // Errors() then lists all of them. What earlier statements of the batch did stays done, as the
  // server leaves it. Error 3704 when the connection is closed.
  virtual RecordsetPtr Execute(const SqlText& sql) = 0;

  // As Execute, with a cursor on the client's side: the recordset knows its record count.
  virtual RecordsetPtr OpenClientRecordset(const SqlText& sql) = 0;

  // Calls a stored procedure by name; output parameters get their values back in `parameters`.
  // Errors: as Execute.
  virtual void CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) = 0;

  // The errors of the last Execute, OpenClientRecordset or CallProcedure, in the order in which the
  // server reported them; empty when it had none.
  virtual std::vector<ConnectionError> Errors() const = 0;

  static constexpr int kStateClosed = 0;
  static constexpr int kStateOpen = 1;
  virtual int State() const = 0;

  // Ends the session: its temporary tables go, an open transaction is rolled back. Harmless when
  // already closed.
  virtual void Close() = 0;
};

using ConnectionPtr = std::shared_ptr<Connection>;

}  // namespace tavcc
