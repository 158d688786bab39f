// Running a scenario step by step, and its sweeps.
#include "scenario/runner.h"

#include <algorithm>
#include <utility>

#include "scenario/alignment.h"
#include "scenario/tape_session.h"
#include "scenario/values.h"
#include "scenario/word_diff.h"

namespace tavcc {
namespace {

using Differences = std::vector<std::string>;

std::string ShowError(const AutomationError& error) {
  return "error " + std::to_string(error.number()) + " from \"" + error.source() + "\": \"" +
         error.description() + "\"";
}

void CompareErrors(const std::optional<ExpectedError>& expected,
                   const std::optional<AutomationError>& actual, Differences& differences) {
  if (!expected) {
    if (actual) differences.push_back("expected no error, got " + ShowError(*actual));
    return;
  }
  if (!actual) {
    differences.emplace_back("expected an error, got none");
    return;
  }
  const auto compare = [&](const char* member, const auto& wanted, const auto& got) {
    if (wanted && *wanted != got) {
      differences.push_back(std::string("error ") + member + ": expected " + Show(*wanted) +
                            ", got " + Show(got));
    }
  };
  compare("number", expected->number, actual->number());
  compare("source", expected->source, actual->source());
  compare("description", expected->description, actual->description());
}

void CompareAnswer(const Method& method, const Json& expect, const CallOutcome& outcome,
                   Differences& differences) {
  for (const auto& [name, expected] : expect.items()) {
    if (name == "result") {
      if (!outcome.error) Compare(expected, outcome.result, name, differences);
      continue;
    }
    for (size_t i = 0; i < method.parameters.size(); ++i) {
      if (method.parameters[i].name != name) continue;
      Compare(expected, outcome.arguments[i], name, differences);
    }
  }
  if (outcome.error && expect.contains("result")) {
    differences.emplace_back("result: expected " + Show(expect["result"]) +
                             ", but the call raised an error");
  }
}

bool IsSame(const Json& expected, const LoggedStatement& sent) {
  if (expected.is_string()) return !sent.is_procedure && expected == sent.text;
  if (!sent.is_procedure || expected["procedure"] != sent.text) return false;
  const Json& parameters = expected["parameters"];
  if (parameters.size() != sent.parameters.size()) return false;
  return std::all_of(sent.parameters.begin(), sent.parameters.end(), [&](const auto& parameter) {
    Differences differences;
    if (!parameters.contains(parameter.name)) return false;
    Compare(parameters[parameter.name], parameter.value, parameter.name, differences);
    return differences.empty();
  });
}

void CompareStatements(const Json& expected, const std::vector<LoggedStatement>& sent,
                       Differences& differences) {
  if (expected.size() != sent.size()) {
    differences.push_back("statements: expected " + std::to_string(expected.size()) + ", got " +
                          std::to_string(sent.size()));
  }
  const auto same = [&](size_t i, size_t j) { return IsSame(expected[i], sent[j]); };
  for (const Aligned& pair : Align(expected.size(), sent.size(), same)) {
    const auto place = [](size_t index) { return "statement " + std::to_string(index + 1) + ": "; };
    if (!pair.second) {
      differences.push_back(place(*pair.first) + "was not sent: " + Show(expected[*pair.first]));
      continue;
    }
    const LoggedStatement& statement = sent[*pair.second];
    if (!pair.first) {
      differences.push_back(place(*pair.second) +
                            "was not expected: " + Show(ShowStatement(statement)));
    } else if (const Json& wanted = expected[*pair.first]; !IsSame(wanted, statement)) {
      const bool texts = wanted.is_string() && !statement.is_procedure;
      differences.push_back(
          place(*pair.second) + "differs\n" +
          (texts ? WordDiff(wanted.get<std::string>(), statement.text)
                 : "expected " + Show(wanted) + "\ngot      " + Show(ShowStatement(statement))));
    }
  }
}

std::string NameOf(const Step& step) {
  return std::string(step.cls->name) + "." + std::string(step.method->name);
}

Differences RunQuery(BackendSession& session, const Step& step) {
  Differences differences;
  const QueryOutcome outcome = QueryStep(session, step);
  CompareErrors(step.error, outcome.error, differences);
  if (step.rows && !outcome.error) Compare(*step.rows, outcome.rows, "rows", differences);
  return differences;
}

// A tape needs no database, whichever there is.
std::unique_ptr<BackendSession> OpenSession(const Scenario& scenario, Backend& backend) {
  if (scenario.IsTape()) return MakeTapeSession(scenario.start, backend.observer());
  return backend.Open(scenario.start);
}

class Run {
 public:
  Run(const Scenario& scenario, Backend& backend, Skipped* skipped, const RunObserver& observer)
      : scenario_(scenario), backend_(backend), skipped_(skipped), observer_(observer) {}

  std::vector<StepFailure> All();

 private:
  void RunStep(BackendSession& session, const Step& step);
  void RunSweeps(const Step& step, int statements);
  void RunSweep(const Step& step, const Sweep& sweep, int at);
  void Fail(const Step& step, std::string what, Differences differences,
            std::vector<LoggedStatement> sent = {}) {
    failures_.push_back({step.number, std::move(what), std::move(differences), std::move(sent)});
  }
  bool IsSkipped(const Step& step) const { return step.needs_clock && !backend_.FixesClock(); }
  void SkipForClock(int step) {
    if (skipped_ != nullptr) skipped_->for_clock.push_back(NeedsClockText(scenario_, step));
  }
  void SkipRest(const std::string& what, const std::string& reason) {
    const std::string line = scenario_.file + ": " + what + ": " + reason;
    if (skipped_ != nullptr) skipped_->cut_short.push_back(line);
  }

  const Scenario& scenario_;
  Backend& backend_;
  Skipped* skipped_;
  const RunObserver& observer_;
  std::vector<StepFailure> failures_;
};

std::vector<StepFailure> Run::All() {
  if (scenario_.needs_clock && !backend_.FixesClock()) {
    SkipForClock(0);
    return {};
  }
  std::unique_ptr<BackendSession> session;
  try {
    session = OpenSession(scenario_, backend_);
  } catch (const AutomationError& error) {
    return {StepFailure{0, "the start state", {ShowError(error)}, {}}};
  }
  if (observer_.opened) observer_.opened(*session);
  for (const Step& step : scenario_.steps) {
    if (IsSkipped(step)) {
      SkipForClock(step.number);
      continue;
    }
    try {
      const size_t before = failures_.size();
      RunStep(*session, step);
      if (const std::string reason = session->SkipReason(); !reason.empty()) {
        SkipRest("from step " + std::to_string(step.number) + " on", reason);
        failures_.resize(before);
        return std::move(failures_);
      }
      // The sweeps ended this session.
      if (!step.sweeps.empty() && !backend_.KeepsSessionsApart()) {
        session = SessionBefore(scenario_, step.number + 1, backend_, backend_.FixesClock());
      }
    } catch (const JsonError& error) {
      throw ScenarioError(scenario_.file + ": step " + std::to_string(step.number) +
                          ", key \"args\": " + error.what());
    }
  }
  if (observer_.ended) observer_.ended(*session);
  return std::move(failures_);
}

void Run::RunStep(BackendSession& session, const Step& step) {
  if (!step.IsCall()) {
    Differences differences = RunQuery(session, step);
    if (!differences.empty()) Fail(step, "query " + step.query, std::move(differences));
    return;
  }
  if (observer_.calling) observer_.calling(step);
  CallOutcome outcome = CallStep(session, step, step.fail);
  if (observer_.called) observer_.called(step, outcome);
  Differences differences = StepDifferences(step, outcome);
  const int sent = static_cast<int>(outcome.sent.size());
  if (step.fail && step.fail->at > sent) {
    differences.push_back("fail: statement " + std::to_string(step.fail->at) +
                          " was to fail, but only " + std::to_string(sent) + " were sent");
  }
  if (differences.empty()) {
    if (!step.sweeps.empty()) RunSweeps(step, sent);
    return;
  }
  Fail(step, "call " + NameOf(step), std::move(differences), std::move(outcome.sent));
}

// The first statement whose failing comes out otherwise stands for all of the step.
void Run::RunSweeps(const Step& step, int statements) {
  if (statements == 0) {
    return Fail(step, "sweep", {"the call sends no statement that could fail"});
  }
  for (const Sweep& sweep : step.sweeps) {
    for (const int at : sweep.at) {
      if (at <= statements) continue;
      return Fail(step, "sweep",
                  {"statement " + std::to_string(at) + " is to fail, but only " +
                   std::to_string(statements) + " are sent"});
    }
  }
  const size_t before = failures_.size();
  for (int at = 1; at <= statements && failures_.size() == before; ++at) {
    const Sweep* const chosen = SweepFor(step, at);
    if (chosen != nullptr) RunSweep(step, *chosen, at);
  }
}

void Run::RunSweep(const Step& step, const Sweep& sweep, int at) {
  const auto session = SessionBefore(scenario_, step.number, backend_, backend_.FixesClock());
  CallOutcome outcome = CallStep(*session, step, InjectedFailure{at, sweep.failure});
  Differences differences;
  CompareOutcome(*step.method, sweep.expect, sweep.error, outcome, differences);
  for (const Step& query : sweep.then) {
    if (IsSkipped(query)) continue;
    for (const std::string& difference : RunQuery(*session, query)) {
      differences.push_back(query.query + ": " + difference);
    }
  }
  if (const std::string reason = session->SkipReason(); !reason.empty()) {
    return SkipRest("sweep of step " + std::to_string(step.number), reason);
  }
  if (differences.empty()) return;
  Fail(step, "sweep of " + NameOf(step) + ", statement " + std::to_string(at) + " failing",
       std::move(differences), std::move(outcome.sent));
}

std::string FailureText(const Scenario& scenario, const StepFailure& failure) {
  std::string text = "  ";
  if (failure.step > 0) {
    const std::string& note = scenario.steps[static_cast<size_t>(failure.step) - 1].note;
    text += "step " + std::to_string(failure.step) + (note.empty() ? "" : " (" + note + ")") + ": ";
  }
  text += failure.what + "\n";
  for (const std::string& difference : failure.differences) {
    std::string indented = difference;
    for (size_t at = 0; (at = indented.find('\n', at)) != std::string::npos; at += 7) {
      indented.replace(at, 1, "\n      ");
    }
    text += "    " + indented + "\n";
  }
  if (failure.sent.empty()) return text;
  text += "  statements sent:\n";
  int number = 0;
  for (const LoggedStatement& statement : failure.sent) {
    ++number;
    text += "    " + std::to_string(number) + "  " + Show(ShowStatement(statement));
    if (statement.error) text += "\n       -> " + ShowError(*statement.error);
    if (statement.rows >= 0) text += "\n       -> rows: " + std::to_string(statement.rows);
    text += "\n";
  }
  return text;
}

}  // namespace

CallOutcome CallStep(BackendSession& session, const Step& step,
                     const std::optional<InjectedFailure>& failure) {
  CallOutcome outcome;
  outcome.arguments =
      MakeArguments({session.host(), session.dsn(), session.connection()}, *step.method, step.args);
  if (step.tape) session.Play(*step.tape, failure);
  session.StartLog(failure);
  try {
    outcome.result = session.Call(*step.cls, *step.method, outcome.arguments);
  } catch (const AutomationError& error) {
    outcome.error = error;
  }
  outcome.sent = session.TakeLog();
  outcome.off_tape = session.TakeComplaints();
  return outcome;
}

QueryOutcome QueryStep(BackendSession& session, const Step& step) {
  try {
    return {session.connection()->Execute(step.query), std::nullopt};
  } catch (const AutomationError& error) {
    return {nullptr, error};
  }
}

void CompareOutcome(const Method& method, const Json& expect,
                    const std::optional<ExpectedError>& error, const CallOutcome& outcome,
                    std::vector<std::string>& differences) {
  differences.insert(differences.end(), outcome.off_tape.begin(), outcome.off_tape.end());
  CompareErrors(error, outcome.error, differences);
  CompareAnswer(method, expect, outcome, differences);
}

std::vector<std::string> StepDifferences(const Step& step, const CallOutcome& outcome) {
  Differences differences;
  CompareOutcome(*step.method, step.expect, step.error, outcome, differences);
  if (step.statements) CompareStatements(*step.statements, outcome.sent, differences);
  return differences;
}

std::vector<StepFailure> RunScenario(const Scenario& scenario, Backend& backend, Skipped* skipped,
                                     const RunObserver& observer) {
  return Run(scenario, backend, skipped, observer).All();
}

std::unique_ptr<BackendSession> SessionBefore(const Scenario& scenario, int number,
                                              Backend& backend, bool fixed) {
  auto session = OpenSession(scenario, backend);
  for (const Step& earlier : scenario.steps) {
    if (earlier.number >= number) break;
    if (earlier.needs_clock && !fixed) continue;
    if (earlier.IsCall()) {
      CallStep(*session, earlier, earlier.fail);
    } else {
      RunQuery(*session, earlier);
    }
  }
  return session;
}

const Sweep* SweepFor(const Step& step, int at) {
  const Sweep* chosen = nullptr;
  for (const Sweep& sweep : step.sweeps) {
    if (std::ranges::find(sweep.at, at) != sweep.at.end()) return &sweep;
    if (sweep.at.empty() && chosen == nullptr) chosen = &sweep;
  }
  return chosen;
}

std::string NeedsClockText(const Scenario& scenario, int step) {
  return scenario.file + (step == 0 ? "" : ": step " + std::to_string(step)) +
         ": needs a clock that stands still";
}

std::string ShowStatement(const LoggedStatement& statement) {
  if (!statement.is_procedure) return statement.text;
  std::string text = "procedure " + statement.text + "(";
  for (const ProcedureParameter& parameter : statement.parameters) {
    if (text.back() != '(') text += ", ";
    text += parameter.name + " = " + Show(JsonFromValue(parameter.value));
  }
  return text + ")";
}

std::string DescribeFailures(const Scenario& scenario, const std::vector<StepFailure>& failures) {
  if (failures.empty()) return "";
  std::string text = scenario.file + ": " + scenario.name + "\n";
  for (const StepFailure& failure : failures) text += FailureText(scenario, failure);
  return text;
}

}  // namespace tavcc
