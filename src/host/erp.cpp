#include "host/erp.h"

#include "foundation/host_services.h"

namespace tavcc {
namespace {

constexpr std::string_view kBegin = "BEGIN TRANSACTION";
// A batch that the server aborted may have taken the transaction with it.
constexpr std::string_view kCommit = "IF @@TRANCOUNT > 0 COMMIT TRANSACTION";
constexpr std::string_view kRollback = "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION";

}  // namespace

Erp::Erp(const sql::OpenOptions& options)
    : database_(sql::Database::Open(options)),
      dsn_(options.path),
      host_([this](std::string_view) { return database_->NewSession(); },
            [this](Connection& session) { Reopen(session); }, &log_) {
  // Another host may have served this thread before.
  ReleaseHostObjects();
  host_.UseDatabase(dsn_);
}

Erp::~Erp() {
  ReleaseHostObjects();
}

void Erp::BeginTransaction() {
  connection()->Execute(kBegin);
  in_transaction_ = true;
}

void Erp::Commit() {
  EndTransaction(kCommit);
}

void Erp::Rollback() {
  EndTransaction(kRollback);
}

void Erp::EndTransaction(std::string_view statement) {
  in_transaction_ = false;
  // Opened again only now, a closed connection has no transaction to end.
  connection()->Execute(statement);
}

void Erp::Reopen(Connection& session) {
  database_->Reopen(session);
  if (in_transaction_) session.Execute(kBegin);
}

}  // namespace tavcc
