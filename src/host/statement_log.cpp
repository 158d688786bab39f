// What the library sends to the database: the log, and the connection that writes it.
#include "host/statement_log.h"

#include <chrono>
#include <utility>

#include "foundation/text.h"

#include "host/recordset_wrapper.h"

namespace tavcc {

std::string PlaceText(const CallSite& site) {
  if (site.line == 0) return "";
  // A compiler may have been given the whole path.
  std::string_view file = site.file;
  for (const std::string_view folder : {"/src/", "/tools/", "/tests/", "/bench/"}) {
    const size_t at = file.rfind(folder);
    if (at != std::string_view::npos) file.remove_prefix(at + 1);
  }
  return Cat(file, ":", site.line);
}

void StatementLog::Clear() {
  statements_.clear();
  ready_calls_.clear();
  settings_.clear();
  first_failure_.reset();
  fault_.reset();
}

void StatementLog::FailAt(int k, StatementFault fault) {
  statements_to_fault_ = k;
  fault_.emplace(std::move(fault));
}

void StatementLog::SetObserver(std::function<void(const LoggedStatement&)> observer) {
  observer_ = std::move(observer);
}

std::optional<StatementFault> StatementLog::TakeFault() {
  if (!fault_ || --statements_to_fault_ > 0) return std::nullopt;
  return std::exchange(fault_, std::nullopt);
}

void StatementLog::Add(LoggedStatement statement) {
  if (statement.error) NoteFailure(statement.text, *statement.error);
  if (observer_) observer_(statement);
  if (keeps_) statements_.push_back(std::move(statement));
}

void StatementLog::AddReadyCall(ReadyCall::Member member, int context) {
  if (keeps_) ready_calls_.push_back({member, context, statements_.size()});
}

void StatementLog::AddSetting(std::string_view category, std::string_view key, const Value& value) {
  if (keeps_) settings_.push_back({std::string(category), std::string(key), value});
}

void StatementLog::NoteFailure(std::string_view what, const AutomationError& error) {
  if (!first_failure_) first_failure_.emplace(Failure{std::string(what), error});
}

namespace {

std::vector<ProcedureParameter> InputsOf(std::span<const ProcedureParameter> parameters) {
  std::vector<ProcedureParameter> inputs;
  for (const ProcedureParameter& parameter : parameters) {
    if (!parameter.output) inputs.push_back(parameter);
  }
  return inputs;
}

// The rows of another recordset, with Null in every field. A field that is not there is an error
// as ever.
class NullRows final : public RecordsetWrapper {
 public:
  using RecordsetWrapper::RecordsetWrapper;

  Value Field(int index) const override { return RecordsetWrapper::Field(index), Null{}; }
  Value Field(std::string_view name) const override {
    return RecordsetWrapper::Field(name), Null{};
  }
};

using FaultKind = StatementFault::Kind;

RecordsetPtr Faulty(RecordsetPtr rows, FaultKind kind) {
  if (rows == nullptr || !rows->IsOpen()) return rows;
  if (kind == FaultKind::kClosed) rows->Close();
  if (kind == FaultKind::kNulls) return std::make_shared<NullRows>(std::move(rows));
  return rows;
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
    if (!reported_) return connection_->Errors();
    return {{reported_->number(), reported_->source(), reported_->description(), ""}};
  }

  int State() const override { return connection_->State(); }
  void Close() override { connection_->Close(); }

 private:
  template <class Run>
  RecordsetPtr Send(LoggedStatement statement, Run run) {
    const std::optional<StatementFault> fault = log_.TakeFault();
    const auto is = [&](FaultKind kind) { return fault && fault->kind == kind; };
    reported_.reset();
    if (is(FaultKind::kRaised) || is(FaultKind::kLeft)) reported_ = fault->error;
    const auto start = std::chrono::steady_clock::now();
    RecordsetPtr rows;
    try {
      if (is(FaultKind::kRaised)) throw AutomationError(fault->error);
      rows = run();
    } catch (const AutomationError& error) {
      statement.error = error;
      Finish(std::move(statement), start);
      throw;
    }
    if (rows != nullptr && rows->IsOpen()) statement.rows = rows->RecordCount();
    Finish(std::move(statement), start);
    return fault ? Faulty(std::move(rows), fault->kind) : rows;
  }

  void Finish(LoggedStatement statement, std::chrono::steady_clock::time_point start) {
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    statement.milliseconds = took.count();
    log_.Add(std::move(statement));
  }

  ConnectionPtr connection_;
  StatementLog& log_;
  std::optional<AutomationError> reported_;  // by order, of the last statement
};

}  // namespace

ConnectionPtr LogStatements(ConnectionPtr connection, StatementLog& log) {
  return std::make_shared<LoggedConnection>(std::move(connection), log);
}

}  // namespace tavcc
