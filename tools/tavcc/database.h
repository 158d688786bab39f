// Opening and making database files.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "host/erp.h"
#include "odbc/odbc.h"
#include "tavcc/command.h"

namespace tavcc {

// The server of --dsn or --dsn-file, or, where no database is named, of the environment's
// TAVCC_DSN; nothing when there is none. Errors: CommandError when more than one database is named,
// or the file cannot be read or holds nothing.
std::optional<OdbcOptions> ServerOf(const CommonOptions& options);

// The database on a server, connected. Errors: those of connecting.
std::unique_ptr<Erp> OpenServer(const OdbcOptions& server);

// The named database. Errors: CommandError when none is named; those of opening it.
std::unique_ptr<Erp> OpenDatabase(const CommonOptions& options);

// The same, with the host that is asked for. Errors: CommandError also for a class type that no
// bill has, and for a published value without a name.
std::unique_ptr<Erp> OpenDatabase(const CommonOptions& options, const HostOptions& host);

// A session with the named database by itself, without a host. Errors: as OpenDatabase.
BatchSessionPtr OpenSession(const CommonOptions& options);

// How the file of --db is opened. Errors: CommandError for a name that is no file's.
sql::OpenOptions FileOptions(const CommonOptions& options);

// The ERP schema and its base rows, and the sample company where asked for.
void FillDatabase(Erp& erp, bool sample);

// Makes a database file, whole or not at all: it gets its name when it is complete. Errors:
// CommandError for a name that is no file's; AutomationError when there is a file of that name,
// which is left as it is, or none can be made.
void MakeDatabase(const std::string& file, bool sample);

// Makes the schema in a database on a server, whole or not at all. Errors: CommandError when it has
// one already, which is left as it is; the database's.
void FillServer(Erp& erp, bool sample);

}  // namespace tavcc
