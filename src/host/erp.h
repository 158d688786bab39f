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
  // did so far, as it does on the server; when it is opened again it is in a new transaction.
  void BeginTransaction();
  void Commit();
  void Rollback();

 private:
  struct Opening {
    ConnectionOpener open;
    ConnectionReopener reopen;
  };
  static Opening OpeningOf(const sql::OpenOptions& options);
  Erp(std::string dsn, Opening opening);
  void Reopen(Connection& session);
  void EndTransaction(std::string_view statement);

  const std::string dsn_;
  const ConnectionReopener reopen_;
  StatementLog log_;
  ReferenceHost host_;
  bool in_transaction_ = false;
};

}  // namespace tavcc
