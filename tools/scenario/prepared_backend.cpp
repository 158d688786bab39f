#include "scenario/prepared_backend.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <utility>

#include "foundation/error.h"
#include "foundation/text.h"
#include "host/connection_wrapper.h"
#include "language/language.h"
#include "scenario/start_state.h"

namespace tavcc {
namespace {

constexpr std::string_view kBegin = "BEGIN TRANSACTION";
constexpr std::string_view kBills = "SELECT COUNT(*) FROM T_CC_StockBill";
constexpr std::string_view kTransactions = "SELECT @@TRANCOUNT";

// Truncating starts the numbers again at the seed (SQL Server documentation, TRUNCATE TABLE) and is
// undone with all else. DBCC CHECKIDENT numbers otherwise where no number was ever given.
constexpr const char* kResetIdentities =
    "DECLARE @sql nvarchar(max)\r\n"
    "SET @sql = N''\r\n"
    "SELECT @sql = @sql + N'TRUNCATE TABLE [' + s.name + N'].[' + t.name + N'];'"
    " FROM sys.identity_columns c INNER JOIN sys.tables t ON t.object_id = c.object_id"
    " INNER JOIN sys.schemas s ON s.schema_id = t.schema_id\r\n"
    "EXEC(@sql)";

// The names of temporary tables that a batch has; also those that it has within a text or a
// comment.
std::set<std::string> TemporaryNames(std::string_view sql) {
  const auto belongs = [](char c) {
    return c == '#' || c == '_' || c == '@' || c == '$' || std::isalnum(static_cast<uint8_t>(c)) ||
           static_cast<uint8_t>(c) >= 0x80;
  };
  std::set<std::string> names;
  for (size_t at = 0; (at = sql.find('#', at)) != std::string_view::npos;) {
    const auto end =
        std::find_if_not(sql.begin() + static_cast<std::ptrdiff_t>(at), sql.end(), belongs);
    const auto size = static_cast<size_t>(end - sql.begin()) - at;
    if (size > 1) names.emplace(sql.substr(at, size));
    at += size;
  }
  return names;
}

// The one session at the server, as a session of the backend sees it.
class ScenarioSession final : public ConnectionWrapper {
 public:
  using ConnectionWrapper::ConnectionWrapper;

  RecordsetPtr Execute(const SqlText& sql) override {
    temporary_.merge(TemporaryNames(sql.text));
    return Guarded([&] { return ConnectionWrapper::Execute(sql); });
  }
  RecordsetPtr OpenClientRecordset(const SqlText& sql) override {
    temporary_.merge(TemporaryNames(sql.text));
    return Guarded([&] { return ConnectionWrapper::OpenClientRecordset(sql); });
  }
  void CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) override {
    Guarded([&] {
      ConnectionWrapper::CallProcedure(name, parameters);
      return RecordsetPtr();
    });
  }
  std::vector<ConnectionError> Errors() const override { return errors_; }
  int State() const override { return closed_ ? kStateClosed : ConnectionWrapper::State(); }
  void Close() override { closed_ = true; }

  void Reopen() {
    closed_ = false;
    for (const std::string& name : std::exchange(temporary_, {})) {
      inner().Execute(
          Cat("IF OBJECT_ID('tempdb..", name, "') IS NOT NULL DROP TABLE [", name, "]"));
    }
  }
  const std::string& skip_reason() const { return skip_reason_; }

 private:
  template <class Run>
  RecordsetPtr Guarded(Run run) {
    if (closed_) throw AutomationError(RuntimeError::kObjectClosed);
    errors_.clear();
    try {
      RecordsetPtr rows = run();
      errors_ = inner().Errors();
      return rows;
    } catch (const AutomationError&) {
      errors_ = inner().Errors();
      KeepInTransaction();
      throw;
    }
  }

  void KeepInTransaction() {
    if (inner().State() == kStateClosed) {
      skip_reason_ = "the connection was lost";
      return;
    }
    if (inner().Execute(kTransactions)->Field(0) != Value(int32_t{0})) return;
    inner().Execute(kBegin);
    skip_reason_ = "an error of the server ended the transaction in which the scenario runs";
  }

  bool closed_ = false;
  // Of the temporary tables that may be there. A server need not list them.
  std::set<std::string> temporary_;
  std::string skip_reason_;
  std::vector<ConnectionError> errors_;
};

class PreparedSession final : public ErpSession {
 public:
  PreparedSession(const StartState& start, std::shared_ptr<ScenarioSession> session,
                  const std::string& dsn, StatementObserver observer)
      : ErpSession(std::make_unique<Erp>(
                       dsn, [=](std::string_view) { return session; },
                       [=](Connection&) { session->Reopen(); }),
                   std::move(observer)),
        session_(session) {
    ApplyStartState(start, erp().host(), *erp().connection());
  }

  std::string SkipReason() const override { return session_->skip_reason(); }

 private:
  const std::shared_ptr<ScenarioSession> session_;
};

class PreparedBackend final : public Backend {
 public:
  PreparedBackend(PreparedDatabase database, StatementObserver observer)
      : database_(std::move(database)), observer_(std::move(observer)) {}

  // One session at a time: the next one rolls back what the last one did.
  std::unique_ptr<BackendSession> Open(const StartState& start) override {
    RequireSession();
    session_->Execute(kRollback);
    session_->Execute(kBegin);
    if (!database_.at_start.empty()) session_->Execute(database_.at_start);
    return std::make_unique<PreparedSession>(start, std::make_shared<ScenarioSession>(session_),
                                             database_.dsn, observer_);
  }
  bool FixesClock() const override { return false; }
  bool KeepsSessionsApart() const override { return false; }
  StatementObserver observer() const override { return observer_; }

  ~PreparedBackend() override {
    // What is not rolled back here goes with the session.
    try {
      if (session_ != nullptr) session_->Execute(kRollback);
    } catch (const AutomationError&) {
    }
  }

 private:
  void RequireSession() {
    if (session_ == nullptr) {
      session_ = database_.open(database_.dsn);
      if (session_->Execute(kBills)->Field(0) == Value(int32_t{0})) return;
      session_ = nullptr;
      throw AutomationError(RuntimeError::kInvalidProcedureCall,
                            Translated("the database holds bills; scenarios want one that was made "
                                       "by tavcc init without --sample"));
    }
    if (session_->State() == Connection::kStateClosed) database_.reopen(*session_);
  }

  const PreparedDatabase database_;
  const StatementObserver observer_;
  ConnectionPtr session_;
};

}  // namespace

PreparedDatabase OnSqlServer(std::string dsn, ConnectionOpener open, ConnectionReopener reopen) {
  return {std::move(dsn), std::move(open), std::move(reopen), kResetIdentities};
}

std::unique_ptr<Backend> MakePreparedBackend(PreparedDatabase database,
                                             StatementObserver observer) {
  return std::make_unique<PreparedBackend>(std::move(database), std::move(observer));
}

}  // namespace tavcc
