// The embedded database: SQL Server's dialect on SQLite, usable by itself as a Connection.
//
// A Database is one store, in memory or in a file; a session is a Connection to it with its own
// temporary tables, variables of the moment and transaction.
#pragma once

#include <memory>
#include <string>

#include "embedded/open_options.h"
#include "foundation/batch_session.h"

namespace tavcc::sql {

class Database {
 public:
  virtual ~Database() = default;

  // Opens a store. A file that nobody may write is read as it stands. Errors: AutomationError with
  // one line that names the file and what is wrong with it (missing, unreadable, damaged, no
  // database of this kind, beside another file's journal); the file stays untouched.
  static std::shared_ptr<Database> Open(const OpenOptions& options);

  // A new session. It keeps the store alive. Sessions of one Database belong to one thread.
  virtual BatchSessionPtr NewSession() = 0;

  // Opens a session again that was closed; its temporary tables and its transaction are gone.
  virtual void Reopen(Connection& session) = 0;

  // Runs a script: batches separated by lines that hold only the word GO. Stops at the first error,
  // whose description then begins with the number of the line on which its batch starts.
  virtual void RunScript(std::string_view script) = 0;

  // All that a database in memory holds, to open others with (OpenOptions::image): that is quicker
  // than to run the script again that made it. What a session keeps for itself, such as temporary
  // tables, is not in it; nor may a transaction be open. Errors: AutomationError.
  virtual std::string Image() = 0;

  // Makes a file of a database in memory, whole or not at all: it gets its name when it is
  // complete, and journals of an earlier file of that name are removed with it. Only its own size
  // is needed on the disk. Errors: AutomationError naming the file, which is left as it is where
  // there is one.
  virtual void SaveAs(const std::string& path) = 0;
};

}  // namespace tavcc::sql
