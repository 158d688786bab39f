#include "tavcc/record.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

#include "language/language.h"
#include "scenario/embedded_backend.h"
#include "scenario/runner.h"
#include "scenario/values.h"
#include "tavcc/answer.h"
#include "tavcc/file.h"
#include "tavcc/output.h"
#include "tavcc/state_scenario.h"

namespace tavcc {
namespace {

template <class Work>
auto OrRefuse(const Work& work) {
  try {
    return work();
  } catch (const JsonError& error) {
    throw CommandError(fmt::format("--record: {}", error.what()));
  }
}

// The first line that says why a scenario fails, behind the step's.
std::string FirstDifference(const StepFailure& failure) {
  std::string line = failure.differences.front();
  std::replace(line.begin(), line.end(), '\n', ' ');
  return Say("step {}, {}: {}", failure.step, failure.what, line);
}

// What is written runs. A case whose failure lies beside its statements, as a lost connection does,
// or whose rule looks into a masked value, cannot be kept.
void RequireReplay(const std::string& file, const std::string& text) {
  const auto failures = RunScenario(ParseScenario(file, text), *MakeEmbeddedBackend());
  if (failures.empty()) return;
  throw CommandError(Say("{} is not written, since it would not replay: {}", file,
                         FirstDifference(failures.front())));
}

}  // namespace

Json WithMasks(Masks& masks, const Json& scenario, const Json& tape) {
  masks.Learn(tape);
  masks.Settle(Show(tape) + Show(scenario));
  for (const std::string& note : masks.Notes(tape)) {
    PrintAside(Say("tavcc: note: {}\n", note));
  }
  return masks.Apply(scenario);
}

void WriteRecorded(const std::string& file, const Json& scenario) {
  const std::string text = ScenarioText(scenario);
  RequireReplay(file, text);
  WriteNewFile(file, text);
  PrintAside(Say("recorded {}\n", file));
}

Recorder::Recorder(Erp& erp, const RecordOptions& options, std::string subject)
    : erp_(erp), options_(options) {
  if (!options_.masked_columns.empty() && !IsOn()) {
    throw CommandError(Say("--mask goes with --record or --record-state"));
  }
  if (!IsOn()) return;
  for (const std::string& file : {options_.tape_file, options_.state_file}) {
    if (!file.empty()) RequireNewFile(file);
  }
  if (options_.tape_file == options_.state_file) {
    throw CommandError(Say("--record and --record-state name the same file"));
  }
  recording_.name = std::move(subject);
  erp_.log().KeepAnswers();
  if (!options_.state_file.empty()) WatchRows();
}

Recorder::~Recorder() {
  erp_.log().SetLookout(nullptr);
}

// What goes wrong here is no affair of the rule that sends the statement.
void Recorder::WatchRows() {
  const RecordsetPtr now = erp_.connection()->Execute("SELECT GETDATE()");
  recording_.now = now->Field(0).date();
  touched_.emplace(erp_);
  erp_.log().SetLookout([this](const LoggedStatement& statement) {
    if (!call_ || problem_ != nullptr) return;
    try {
      const auto& sent = erp_.log().statements();
      for (; answered_ < sent.size(); ++answered_) touched_->Note(sent[answered_]);
      touched_->Look(statement);
    } catch (...) {
      problem_ = std::current_exception();
    }
  });
}

void Recorder::Begin(const ClassDescription& cls, const Method& method,
                     std::span<const Value> arguments) {
  if (!IsOn()) return;
  const std::vector<Value> untold =
      MakeArguments({erp_.host(), erp_.dsn(), nullptr}, method, Json::object());
  answered_ = 0;
  OrRefuse([&] { call_.emplace(cls, method, arguments, untold); });
}

void Recorder::End(const Answer& answer) {
  if (!IsOn()) return;
  if (problem_ != nullptr) std::rethrow_exception(problem_);
  OrRefuse([&] {
    if (answer.error) {
      call_->Raised(*answer.error, answer.arguments);
    } else {
      call_->Answered(answer.result, answer.arguments);
    }
  });
  recording_.steps.push_back(call_->step());
  recording_.tapes.push_back(answer.statements);
  const auto& answers = erp_.log().host_answers();
  recording_.answers.insert(recording_.answers.end(), answers.begin(), answers.end());
  call_.reset();
}

void Recorder::Write() {
  if (!IsOn() || recording_.steps.empty()) return;
  recording_.host = erp_.host().settings();
  OrRefuse([&] {
    const Json tape = TapeScenario(recording_);
    if (!options_.tape_file.empty()) WriteScenario(options_.tape_file, tape, tape);
    if (options_.state_file.empty()) return;
    WriteScenario(options_.state_file, StateScenario(recording_, touched_->tables()), tape);
  });
}

void Recorder::WriteScenario(const std::string& file, const Json& scenario,
                             const Json& tape) const {
  WriteRecorded(file, Masked(scenario, tape));
}

// Which values are masked is told by the tape and by the rows, whichever of them is written.
Json Recorder::Masked(const Json& scenario, const Json& tape) const {
  if (options_.masked_columns.empty()) return scenario;
  Masks masks(options_.masked_columns);
  if (touched_) {
    for (const TouchedTable& table : touched_->tables()) {
      for (const std::vector<Value>& row : table.rows) {
        for (size_t i = 0; i < row.size(); ++i) masks.Learn(table.columns[i], ExactJson(row[i]));
      }
    }
  }
  return WithMasks(masks, scenario, tape);
}

}  // namespace tavcc
