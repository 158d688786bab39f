// An ERP database with the reference host over it: what a command or a scenario works on.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "embedded/embedded.h"
#include "host/reference_host.h"

namespace tavcc {

// Rolls the transaction back; a batch that the server aborted may have taken it with it.
inline constexpr std::string_view kRollback = "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION";

class Erp {
 public:
  // On the embedded database. Errors: those of opening it.
  explicit Erp(const sql::OpenOptions& options);
  // On any database: `dsn` is its name for the rules, who never see how it is opened.
  Erp(std::string dsn, ConnectionOpener open, ConnectionReopener reopen);
  // Lets go of the host objects that the library keeps for this thread.
  ~Erp();
  Erp(const Erp&) = delete;
  Erp& operator=(const Erp&) = delete;

  // The connection string of the database.
  const std::string& dsn() const { return dsn_; }
  ReferenceHost& host() { return host_; }
  StatementLog& log() { return log_; }
  // The open connection that the host hands out for dsn().
  ConnectionPtr connection() { return host_.GetConnection(dsn_); }

  // Runs batches separated by GO. Errors: the first one's, naming the line of its batch.
  // Nothing of it is in the log.
  void RunScript(std::string_view script);

  // Opens the host's transaction around what follows. A connection that a rule closes loses what it
  // did so far, as it does on the server; when it is opened again it is in a new transaction. So is
  // one whose transaction the database gave up over an error: nothing is done outside of one.
  void BeginTransaction();
  // The same for what only reads: on the embedded database it sees the file as it is now and waits
  // for nobody who writes.
  void BeginReading();
  void Commit();
  void Rollback();

 private:
  struct Opening {
    ConnectionOpener open;
    ConnectionReopener reopen;
    std::string_view begin_reading;
  };
  static Opening OpeningOf(const sql::OpenOptions& options);
  Erp(std::string dsn, Opening opening);
  ConnectionPtr Open(std::string_view sDsn);
  void Reopen(Connection& session);
  void Begin(std::string_view statement);
  void EndTransaction(std::string_view statement);
  // The statement that gives a session a transaction where it has lost the host's; empty while
  // there is none to lose.
  std::string RenewalOfTransaction() const;

  const std::string dsn_;
  const Opening opening_;
  StatementLog log_;
  ReferenceHost host_;
  std::string_view begin_;  // how the host's transaction was begun; empty while there is none
};

}  // namespace tavcc
