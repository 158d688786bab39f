// The backend of one database that was prepared beforehand: each session is a transaction that is
// rolled back.
//
// This is how scenarios run on a server. The clock there runs. A connection that a rule closes
// stays open underneath, since the scenario's start would go with it; its temporary tables go.
// Where an error of the server ends the transaction, what the scenario did so far is gone: the
// session then cannot go on, and a new transaction keeps the database clean.
#pragma once

#include <memory>
#include <string>

#include "scenario/erp_session.h"

namespace tavcc {

struct PreparedDatabase {
  std::string dsn;  // its name for the rules
  ConnectionOpener open;
  ConnectionReopener reopen;
  std::string at_start;  // a batch run at the start of each session
};

// The batch for SQL Server: identity columns start at 1 again.
PreparedDatabase OnSqlServer(std::string dsn, ConnectionOpener open, ConnectionReopener reopen);

// The database holds the schema and the base rows and no bill. Errors of Open, beside the
// database's: AutomationError 5 where it holds bills, and is then left as it is.
std::unique_ptr<Backend> MakePreparedBackend(PreparedDatabase database,
                                             StatementObserver observer = {});

}  // namespace tavcc
