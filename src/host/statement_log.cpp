// What the library sends to the database: the log, and the connection that writes it.
#include "host/statement_log.h"

#include <chrono>
#include <utility>

namespace tavcc {

void StatementLog::Clear() {
  statements_.clear();
  failure_.reset();
}

void StatementLog::FailAt(int k, AutomationError error) {
  statements_to_failure_ = k;
  failure_.emplace(std::move(error));
}

void StatementLog::SetObserver(std::function<void(const LoggedStatement&)> observer) {
  observer_ = std::move(observer);
}

std::optional<AutomationError> StatementLog::TakeFailure() {
  if (!failure_ || --statements_to_failure_ > 0) return std::nullopt;
  return std::exchange(failure_, std::nullopt);
}

void StatementLog::Add(LoggedStatement statement) {
  statements_.push_back(std::move(statement));
  if (observer_) observer_(statements_.back());
}

namespace {

std::vector<ProcedureParameter> InputsOf(std::span<const ProcedureParameter> parameters) {
  std::vector<ProcedureParameter> inputs;
  for (const ProcedureParameter& parameter : parameters) {
    if (!parameter.output) inputs.push_back(parameter);
  }
  return inputs;
}

class LoggedConnection final : public Connection {
 public:
  LoggedConnection(ConnectionPtr connection, StatementLog& log)
      : connection_(std::move(connection)), log_(log) {}

  RecordsetPtr Execute(std::string_view sql) override {
    return Send({.text = std::string(sql)}, [&] { return connection_->Execute(sql); });
  }

  RecordsetPtr OpenClientRecordset(std::string_view sql) override {
    return Send({.text = std::string(sql)}, [&] { return connection_->OpenClientRecordset(sql); });
  }

  void CallProcedure(std::string_view name, std::span<ProcedureParameter> parameters) override {
    Send({.is_procedure = true, .text = std::string(name), .parameters = InputsOf(parameters)},
         [&] {
           connection_->CallProcedure(name, parameters);
           return RecordsetPtr();
         });
  }

  std::vector<ConnectionError> Errors() const override {
    if (!injected_) return connection_->Errors();
    return {{injected_->number(), injected_->source(), injected_->description(), ""}};
  }

  int State() const override { return connection_->State(); }
  void Close() override { connection_->Close(); }

 private:
  template <class Run>
  RecordsetPtr Send(LoggedStatement statement, Run run) {
    injected_ = log_.TakeFailure();
    const auto start = std::chrono::steady_clock::now();
    RecordsetPtr rows;
    try {
      if (injected_) throw AutomationError(*injected_);
      rows = run();
    } catch (const AutomationError& error) {
      statement.error = error;
      Finish(std::move(statement), start);
      throw;
    }
    if (rows != nullptr && rows->IsOpen()) statement.rows = rows->RecordCount();
    Finish(std::move(statement), start);
    return rows;
  }

  void Finish(LoggedStatement statement, std::chrono::steady_clock::time_point start) {
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    statement.milliseconds = took.count();
    log_.Add(std::move(statement));
  }

  ConnectionPtr connection_;
  StatementLog& log_;
  std::optional<AutomationError> injected_;  // in the last statement
};

}  // namespace

ConnectionPtr LogStatements(ConnectionPtr connection, StatementLog& log) {
  return std::make_shared<LoggedConnection>(std::move(connection), log);
}

}  // namespace tavcc
