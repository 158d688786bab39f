// What the library sends to the database: the log, and the connection that writes it.
#include "host/statement_log.h"

#include <utility>

#include "foundation/text.h"
#include "host/connection_wrapper.h"
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
  EndRows();
  sent_ = 0;
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

std::optional<StatementFault> StatementLog::TakeFault() {
  if (!fault_ || --statements_to_fault_ > 0) return std::nullopt;
  return std::exchange(fault_, std::nullopt);
}

RecordsetPtr StatementLog::Add(LoggedStatement statement, RecordsetPtr rows) {
  statement.number = ++sent_;
  if (statement.error) NoteFailure(statement.text, *statement.error, statement.from);
  if (rows != nullptr && observer_.rows > 0 && rows->IsOpen()) {
    const auto seen = std::make_shared<SeenRows>();
    statement.seen = seen;
    std::function<void()> done;
    if (observer_.rows_seen) {
      done = [statement, rows_seen = observer_.rows_seen] { rows_seen(statement); };
    }
    rows = row_watch_.Watch(std::move(rows), observer_.rows, seen, std::move(done));
  }
  if (observer_.sent) observer_.sent(statement);
  if (keeps_) statements_.push_back(std::move(statement));
  return rows;
}

void StatementLog::AddReadyCall(ReadyCall::Member member, int context) {
  if (keeps_) ready_calls_.push_back({member, context, statements_.size()});
}

void StatementLog::AddSetting(std::string_view category, std::string_view key, const Value& value) {
  if (keeps_) settings_.push_back({std::string(category), std::string(key), value});
}

void StatementLog::NoteFailure(std::string_view what, const AutomationError& error, CallSite from) {
  if (!first_failure_) first_failure_.emplace(Failure{std::string(what), error, from});
}

namespace {

std::vector<ProcedureParameter> Those(std::span<const ProcedureParameter> parameters, bool output) {
  std::vector<ProcedureParameter> those;
  for (const ProcedureParameter& parameter : parameters) {
    if (parameter.output == output) those.push_back(parameter);
  }
  return those;
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

class LoggedConnection final : public ConnectionWrapper {
 public:
  LoggedConnection(ConnectionPtr connection, StatementLog& log)
      : ConnectionWrapper(std::move(connection)), log_(log) {}

  RecordsetPtr Execute(const SqlText& sql) override {
    return Send({.text = std::string(sql.text), .from = sql.from},
                [&](LoggedStatement&) { return ConnectionWrapper::Execute(sql); });
  }

  RecordsetPtr OpenClientRecordset(const SqlText& sql) override {
    return Send({.text = std::string(sql.text), .from = sql.from},
                [&](LoggedStatement&) { return ConnectionWrapper::OpenClientRecordset(sql); });
  }

  void CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) override {
    Send({.is_procedure = true,
          .text = std::string(name.text),
          .from = name.from,
          .parameters = Those(parameters, false)},
         [&](LoggedStatement& statement) {
           ConnectionWrapper::CallProcedure(name, parameters);
           statement.outputs = Those(parameters, true);
           return RecordsetPtr();
         });
  }

  std::vector<ConnectionError> Errors() const override {
    if (!reported_) return ConnectionWrapper::Errors();
    return {{reported_->number(), reported_->source(), reported_->description(), ""}};
  }

 private:
  template <class Run>
  RecordsetPtr Send(LoggedStatement sent, Run run) {
    const std::optional<StatementFault> fault = log_.TakeFault();
    const auto is = [&](FaultKind kind) { return fault && fault->kind == kind; };
    reported_.reset();
    if (is(FaultKind::kRaised) || is(FaultKind::kLeft)) reported_ = fault->error;
    return log_.Send(std::move(sent), [&](LoggedStatement& statement) {
      if (is(FaultKind::kRaised)) throw AutomationError(fault->error);
      RecordsetPtr rows = run(statement);
      if (rows != nullptr && rows->IsOpen()) statement.rows = rows->RecordCount();
      return fault ? Faulty(std::move(rows), fault->kind) : rows;
    });
  }

  StatementLog& log_;
  std::optional<AutomationError> reported_;  // by order, of the last statement
};

}  // namespace

ConnectionPtr LogStatements(ConnectionPtr connection, StatementLog& log) {
  return std::make_shared<LoggedConnection>(std::move(connection), log);
}

}  // namespace tavcc
