// The backend whose sessions each have a database of their own on a server, made for them and
// dropped behind them.
//
// Nothing is around a scenario there: no transaction that an error of the server could end, and a
// connection that a rule closes is closed. It takes longer, and the right to create databases. The
// clock there runs.
#pragma once

#include <memory>
#include <string>

#include "scenario/erp_session.h"

namespace tavcc {

struct DatabaseServer {
  std::string dsn;  // its name for the rules
  // A session in a database that stays as it is.
  ConnectionOpener open;
  ConnectionReopener reopen;
  std::string new_database;  // the name of the sessions' databases; there must be none of this name
};

// One session at a time: opening one ends the last. Errors of Open: the server's, e.g. where
// databases may not be created.
std::unique_ptr<Backend> MakeOwnDatabaseBackend(DatabaseServer server,
                                                StatementObserver observer = {});

}  // namespace tavcc
