#include "host/erp.h"

#include <utility>

#include "embedded/script.h"
#include "foundation/error.h"
#include "foundation/host_services.h"
#include "foundation/text.h"

namespace tavcc {
namespace {

constexpr std::string_view kBegin = "BEGIN TRANSACTION";
// As kRollback.
constexpr std::string_view kCommit = "IF @@TRANCOUNT > 0 COMMIT TRANSACTION";

}  // namespace

Erp::Opening Erp::OpeningOf(const sql::OpenOptions& options) {
  const auto database = sql::Database::Open(options);
  return {[=](std::string_view) { return database->NewSession(); },
          [=](Connection& session) { database->Reopen(session); }};
}

Erp::Erp(const sql::OpenOptions& options) : Erp(options.path, OpeningOf(options)) {}

Erp::Erp(std::string dsn, ConnectionOpener open, ConnectionReopener reopen)
    : Erp(std::move(dsn), Opening{std::move(open), std::move(reopen)}) {}

Erp::Erp(std::string dsn, Opening opening)
    : dsn_(std::move(dsn)),
      reopen_(std::move(opening.reopen)),
      host_(
          std::move(opening.open), [this](Connection& session) { Reopen(session); }, &log_) {
  // Another host may have served this thread before.
  ReleaseHostObjects();
  host_.UseDatabase(dsn_);
}

Erp::~Erp() {
  ReleaseHostObjects();
}

void Erp::RunScript(std::string_view script) {
  const ConnectionPtr session = host_.GetUnloggedConnection(dsn_);
  for (const sql::ScriptBatch& batch : sql::SplitScript(script)) {
    try {
      session->Execute(batch.text);
    } catch (const AutomationError& error) {
      throw AutomationError(error.number(), error.source(),
                            Cat(batch.line, ": ", error.description()));
    }
  }
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
  reopen_(session);
  if (in_transaction_) session.Execute(kBegin);
}

}  // namespace tavcc
