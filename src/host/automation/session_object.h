// What a script has of the reference host beside the host's components: a database to work on, and
// a way to print Chinese.
#pragma once

#include "automation/border/platform.h"

namespace tavcc::host_automation {

// "TavReferenceHost.Session": opens an embedded ERP database and serves the calling thread from it
// until it is released. Members: OpenSample(path) makes a new database with the sample company
// (":memory:" for one that nobody keeps); Open(path) opens an existing one; Dsn; Connection;
// UserID (read and written); Query(sql) returns a recordset; BeginTransaction, Commit, Rollback.
IDispatch* NewSession();

// "TavReferenceHost.Output": Write(text) puts a line in UTF-8 on the standard output.
IDispatch* NewOutput();

}  // namespace tavcc::host_automation
