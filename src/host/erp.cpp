#include "host/erp.h"

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "embedded/script.h"
#include "foundation/error.h"
#include "foundation/host_services.h"
#include "foundation/text.h"
#include "host/connection_wrapper.h"

namespace tavcc {
namespace {

constexpr std::string_view kBegin = "BEGIN TRANSACTION";
constexpr std::string_view kBeginSnapshot =
    "SET TRANSACTION ISOLATION LEVEL SNAPSHOT BEGIN TRANSACTION";
constexpr std::string_view kEndSnapshot =
    "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION SET TRANSACTION ISOLATION LEVEL READ COMMITTED";
// As kRollback.
constexpr std::string_view kCommit = "IF @@TRANCOUNT > 0 COMMIT TRANSACTION";

// A session that is never left without the host's transaction: an error may have made the database
// give it up, and what a rule sends after it has trapped the error would be kept at once.
class GuardedSession final : public ConnectionWrapper {
 public:
  using Renewal = std::function<std::string()>;
  GuardedSession(ConnectionPtr session, Renewal renewal)
      : ConnectionWrapper(std::move(session)), renewal_(std::move(renewal)) {}

  RecordsetPtr Execute(const SqlText& sql) override {
    return Guard([&] { return ConnectionWrapper::Execute(sql); });
  }
  RecordsetPtr OpenClientRecordset(const SqlText& sql) override {
    return Guard([&] { return ConnectionWrapper::OpenClientRecordset(sql); });
  }
  void CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) override {
    Guard([&] {
      ConnectionWrapper::CallProcedure(name, parameters);
      return RecordsetPtr();
    });
  }
  std::vector<ConnectionError> Errors() const override {
    return errors_ ? *errors_ : ConnectionWrapper::Errors();
  }

 private:
  template <class Run>
  RecordsetPtr Guard(const Run& run) {
    errors_.reset();
    try {
      return run();
    } catch (const AutomationError&) {
      Renew();
      throw;
    }
  }

  void Renew() {
    const std::string renewal = renewal_();
    if (renewal.empty() || State() != kStateOpen) return;
    errors_ = inner().Errors();
    try {
      inner().Execute(renewal);
    } catch (const AutomationError&) {
      // Then nothing more is sent: a closed session is in a transaction when it is opened again.
      Close();
    }
  }

  const Renewal renewal_;
  std::optional<std::vector<ConnectionError>> errors_;  // of the statement before the renewal
};

}  // namespace

Erp::Opening Erp::OpeningOf(const sql::OpenOptions& options) {
  const auto database = sql::Database::Open(options);
  return {[=](std::string_view) { return database->NewSession(); },
          [=](Connection& session) { database->Reopen(session); }, kBeginSnapshot};
}

Erp::Erp(const sql::OpenOptions& options) : Erp(options.path, OpeningOf(options)) {}

Erp::Erp(std::string dsn, ConnectionOpener open, ConnectionReopener reopen)
    : Erp(std::move(dsn), Opening{std::move(open), std::move(reopen), kBegin}) {}

Erp::Erp(std::string dsn, Opening opening)
    : dsn_(std::move(dsn)),
      opening_(std::move(opening)),
      host_([this](std::string_view name) { return Open(name); },
            [this](Connection& session) { Reopen(session); }, &log_) {
  // Another host may have served this thread before.
  ReleaseHostObjects();
  host_.UseOnlyDatabase(dsn_);
}

Erp::~Erp() {
  ReleaseHostObjects();
}

void Erp::RunScript(std::string_view script) {
  const ConnectionPtr session = host_.GetUnloggedConnection(dsn_);
  for (const sql::ScriptBatch& batch : sql::SplitScript(script)) {
    try {
      for (int i = 0; i < batch.times; ++i) session->Execute(batch.text);
    } catch (const AutomationError& error) {
      throw AutomationError(error.number(), error.source(),
                            Cat(batch.line, ": ", error.description()));
    }
  }
}

void Erp::BeginTransaction() {
  Begin(kBegin);
}

void Erp::BeginReading() {
  Begin(opening_.begin_reading);
}

void Erp::Begin(std::string_view statement) {
  connection()->Execute(statement);
  begin_ = statement;
}

void Erp::Commit() {
  EndTransaction(kCommit);
}

void Erp::Rollback() {
  EndTransaction(begin_ == kBeginSnapshot ? kEndSnapshot : kRollback);
}

void Erp::EndTransaction(std::string_view statement) {
  begin_ = {};
  // Opened again only now, a closed connection has no transaction to end.
  connection()->Execute(statement);
}

std::string Erp::RenewalOfTransaction() const {
  return begin_.empty() ? "" : Cat("IF @@TRANCOUNT = 0 BEGIN ", begin_, " END");
}

ConnectionPtr Erp::Open(std::string_view sDsn) {
  return std::make_shared<GuardedSession>(opening_.open(sDsn),
                                          [this] { return RenewalOfTransaction(); });
}

void Erp::Reopen(Connection& session) {
  opening_.reopen(dynamic_cast<GuardedSession&>(session).inner());
  if (!begin_.empty()) session.Execute(begin_);
}

}  // namespace tavcc
