#include "scenario/own_database_backend.h"

#include <utility>

#include "foundation/error.h"
#include "foundation/text.h"
#include "host/schema.h"
#include "scenario/start_state.h"

namespace tavcc {
namespace {

constexpr std::string_view kLeave = "USE master";

class OwnDatabaseSession final : public ErpSession {
 public:
  OwnDatabaseSession(const StartState& start, const ConnectionPtr& session, const std::string& use,
                     const DatabaseServer& server, StatementObserver observer)
      : ErpSession(std::make_unique<Erp>(
                       server.dsn, [=](std::string_view) { return session; },
                       [use, reopen = server.reopen](Connection& closed) {
                         reopen(closed);
                         closed.Execute(use);
                       }),
                   std::move(observer)) {
    erp().RunScript(SchemaScript());
    erp().RunScript(BaseScript());
    ApplyStartState(start, erp().host(), *erp().connection());
  }
};

class OwnDatabaseBackend final : public Backend {
 public:
  OwnDatabaseBackend(DatabaseServer server, StatementObserver observer)
      : server_(std::move(server)),
        use_(Cat("USE [", server_.new_database, "]")),
        observer_(std::move(observer)) {}

  ~OwnDatabaseBackend() override {
    try {
      Drop();
    } catch (const AutomationError&) {
      // It stays; its name says whose it is.
    }
  }

  std::unique_ptr<BackendSession> Open(const StartState& start) override {
    Drop();
    if (session_ == nullptr) session_ = server_.open(server_.dsn);
    session_->Execute(Cat("CREATE DATABASE [", server_.new_database, "]"));
    made_ = true;
    session_->Execute(use_);
    return std::make_unique<OwnDatabaseSession>(start, session_, use_, server_, observer_);
  }
  bool FixesClock() const override { return false; }
  bool KeepsSessionsApart() const override { return false; }
  StatementObserver observer() const override { return observer_; }

 private:
  void Drop() {
    if (!made_) return;
    if (session_->State() == Connection::kStateOpen) {
      // The server may take its time to notice that a session has gone.
      session_->Execute(kRollback);
      session_->Execute(kLeave);
      session_->Close();
    }
    server_.reopen(*session_);  // without the scenario's temporary tables
    session_->Execute(Cat("DROP DATABASE [", server_.new_database, "]"));
    made_ = false;
  }

  const DatabaseServer server_;
  const std::string use_;
  const StatementObserver observer_;
  ConnectionPtr session_;
  bool made_ = false;
};

}  // namespace

std::unique_ptr<Backend> MakeOwnDatabaseBackend(DatabaseServer server, StatementObserver observer) {
  return std::make_unique<OwnDatabaseBackend>(std::move(server), std::move(observer));
}

}  // namespace tavcc
