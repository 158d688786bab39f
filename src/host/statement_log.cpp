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
  host_answers_.clear();
  gates_.clear();
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
  statement.gate = GateNow();
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

void StatementLog::AddHostAnswer(HostQuestion question, std::string_view category,
                                 std::string_view key, const Value& value) {
  if (!keeps_ && !observer_.host_answered) return;
  HostAnswer answer{question, std::string(category), std::string(key), value, GateNow()};
  if (observer_.host_answered) observer_.host_answered(answer);
  if (keeps_) host_answers_.push_back(std::move(answer));
}

void StatementLog::BeginLadder() {
  if (gates_.empty() && observer_.ladder_begun) observer_.ladder_begun();
  gates_.emplace_back();
}

void StatementLog::EndLadder() {
  if (gates_.empty()) return;
  if (!gates_.back().name.empty()) TellGate(std::nullopt);
  gates_.pop_back();
}

void StatementLog::AskGate(std::string_view name, bool by_others) {
  if (!gates_.empty()) gates_.back() = {std::string(name), by_others};
}

void StatementLog::AnswerGate(const Verdict& verdict) {
  if (gates_.empty()) return;
  TellGate(verdict);
  gates_.back() = {};
}

void StatementLog::TellGate(std::optional<Verdict> verdict) {
  const AskedGate& gate = gates_.back();
  if (gate.by_others || !observer_.gate_answered) return;
  observer_.gate_answered({gate.name, std::move(verdict)});
}

std::string StatementLog::GateNow() const {
  for (size_t i = gates_.size(); i-- > 0;) {
    if (!gates_[i].name.empty()) return gates_[i].name;
  }
  return "";
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
    auto errors = reported_
                      ? std::vector<ConnectionError>{{reported_->number(), reported_->source(),
                                                      reported_->description(), ""}}
                      : ConnectionWrapper::Errors();
    log_.AddErrorsSeen(last_ == 0 ? log_.sent() : last_, errors);
    return errors;
  }

 private:
  template <class Run>
  RecordsetPtr Send(LoggedStatement sent, Run run) {
    log_.Announce(sent);
    const std::optional<StatementFault> fault = log_.TakeFault();
    const auto is = [&](FaultKind kind) { return fault && fault->kind == kind; };
    reported_.reset();
    if (is(FaultKind::kRaised) || is(FaultKind::kLeft)) reported_ = fault->error;
    last_ = log_.sent() + 1;
    return log_.Send(std::move(sent), [&](LoggedStatement& statement) {
      if (is(FaultKind::kRaised)) throw AutomationError(fault->error);
      RecordsetPtr rows = log_.KeepsAnswers() ? RunAndKeep(statement, run) : run(statement);
      if (rows != nullptr && rows->IsOpen()) statement.rows = rows->RecordCount();
      return fault ? Faulty(std::move(rows), fault->kind) : rows;
    });
  }

  template <class Run>
  RecordsetPtr RunAndKeep(LoggedStatement& statement, const Run& run) {
    try {
      RecordsetPtr rows = run(statement);
      if (rows != nullptr && rows->IsOpen()) {
        statement.answer = std::make_shared<AnswerRows>(ReadWhole(*rows));
      }
      statement.errors = ConnectionWrapper::Errors();
      return rows;
    } catch (const AutomationError&) {
      statement.errors = ConnectionWrapper::Errors();
      throw;
    }
  }

  StatementLog& log_;
  std::optional<AutomationError> reported_;  // by order, of the last statement
  int last_ = 0;  // the number of the last statement sent here; 0 for none
};

}  // namespace

ConnectionPtr LogStatements(ConnectionPtr connection, StatementLog& log) {
  return std::make_shared<LoggedConnection>(std::move(connection), log);
}

}  // namespace tavcc
