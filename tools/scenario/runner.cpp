// Running a scenario step by step, and its sweeps.
#include "scenario/runner.h"

#include <algorithm>
#include <utility>

#include "scenario/values.h"

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

// The texts up to where they differ, which a reader finds quickly in quoted form.
std::string FirstDifference(const std::string& expected, const std::string& actual) {
  const auto [at, other] =
      std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end());
  return "from byte " + std::to_string(at - expected.begin() + 1) + " on";
}

void CompareStatements(const Json& expected, const std::vector<LoggedStatement>& sent,
                       Differences& differences) {
  if (expected.size() != sent.size()) {
    differences.push_back("statements: expected " + std::to_string(expected.size()) + ", got " +
                          std::to_string(sent.size()));
  }
  for (size_t i = 0; i < std::max(expected.size(), sent.size()); ++i) {
    const std::string place = "statement " + std::to_string(i + 1) + ": ";
    if (i >= sent.size()) {
      differences.push_back(place + "was not sent: " + Show(expected[i]));
    } else if (i >= expected.size()) {
      differences.push_back(place + "was not expected: " + Show(ShowStatement(sent[i])));
    } else if (!IsSame(expected[i], sent[i])) {
      const bool texts = expected[i].is_string() && !sent[i].is_procedure;
      differences.push_back(
          place + "differs" +
          (texts ? " " + FirstDifference(expected[i].get<std::string>(), sent[i].text) : "") +
          "\n  expected " + Show(expected[i]) + "\n  got      " + Show(ShowStatement(sent[i])));
    }
  }
}

Differences RunQuery(Road& road, const Step& step) {
  Differences differences;
  std::optional<AutomationError> error;
  RecordsetPtr rows;
  try {
    rows = road.connection()->Execute(step.query);
  } catch (const AutomationError& raised) {
    error = raised;
  }
  CompareErrors(step.error, error, differences);
  if (step.rows && !error) Compare(*step.rows, rows, "rows", differences);
  return differences;
}

class Run {
 public:
  Run(const Scenario& scenario, Roads& roads, Skipped* skipped)
      : scenario_(scenario), roads_(roads), skipped_(skipped) {}

  std::optional<StepFailure> All();

 private:
  std::optional<StepFailure> RunStep(Road& road, const Step& step);
  std::optional<StepFailure> RunSweeps(const Step& step, int statements);
  std::optional<StepFailure> RunSweep(const Step& step, const Sweep& sweep, int at);
  bool IsSkipped(const Step& step) const { return step.needs_clock && !roads_.FixesClock(); }
  void SkipForClock(int step) {
    if (skipped_ != nullptr) skipped_->for_clock.push_back(NeedsClockText(scenario_, step));
  }
  void SkipForObstacle(const std::string& what, const std::string& obstacle) {
    const std::string line = scenario_.file + ": " + what + ": " + obstacle;
    if (skipped_ != nullptr) skipped_->for_obstacle.push_back(line);
  }

  const Scenario& scenario_;
  Roads& roads_;
  Skipped* skipped_;
};

std::optional<StepFailure> Run::All() {
  if (scenario_.needs_clock && !roads_.FixesClock()) {
    SkipForClock(0);
    return std::nullopt;
  }
  std::unique_ptr<Road> road;
  try {
    road = roads_.Open(scenario_.start);
  } catch (const AutomationError& error) {
    return StepFailure{0, "the start state", {ShowError(error)}, {}};
  }
  for (const Step& step : scenario_.steps) {
    if (IsSkipped(step)) {
      SkipForClock(step.number);
      continue;
    }
    try {
      auto failure = RunStep(*road, step);
      if (const std::string obstacle = road->Obstacle(); !obstacle.empty()) {
        SkipForObstacle("from step " + std::to_string(step.number) + " on", obstacle);
        return std::nullopt;
      }
      if (failure) return failure;
      // The sweeps ended this road.
      if (!step.sweeps.empty() && !roads_.KeepsRoadsApart()) {
        road = RoadBefore(scenario_, step.number + 1, roads_, roads_.FixesClock());
      }
    } catch (const JsonError& error) {
      throw ScenarioError(scenario_.file + ": step " + std::to_string(step.number) +
                          ", key \"args\": " + error.what());
    }
  }
  return std::nullopt;
}

std::optional<StepFailure> Run::RunStep(Road& road, const Step& step) {
  if (!step.IsCall()) {
    Differences differences = RunQuery(road, step);
    if (differences.empty()) return std::nullopt;
    return StepFailure{step.number, "query " + step.query, std::move(differences), {}};
  }
  CallOutcome outcome = CallStep(road, step, step.fail);
  Differences differences;
  CompareOutcome(*step.method, step.expect, step.error, outcome, differences);
  if (step.statements) CompareStatements(*step.statements, outcome.sent, differences);
  const int sent = static_cast<int>(outcome.sent.size());
  if (step.fail && step.fail->at > sent) {
    differences.push_back("fail: statement " + std::to_string(step.fail->at) +
                          " was to fail, but only " + std::to_string(sent) + " were sent");
  }
  if (!differences.empty()) {
    const std::string what =
        "call " + std::string(step.cls->name) + "." + std::string(step.method->name);
    return StepFailure{step.number, what, std::move(differences), std::move(outcome.sent)};
  }
  return step.sweeps.empty() ? std::nullopt : RunSweeps(step, sent);
}

std::optional<StepFailure> Run::RunSweeps(const Step& step, int statements) {
  if (statements == 0) {
    return StepFailure{step.number, "sweep", {"the call sends no statement that could fail"}, {}};
  }
  for (const Sweep& sweep : step.sweeps) {
    for (const int at : sweep.at) {
      if (at <= statements) continue;
      return StepFailure{step.number,
                         "sweep",
                         {"statement " + std::to_string(at) + " is to fail, but only " +
                          std::to_string(statements) + " are sent"},
                         {}};
    }
  }
  for (int at = 1; at <= statements; ++at) {
    const Sweep* const chosen = SweepFor(step, at);
    if (chosen == nullptr) continue;
    if (auto failure = RunSweep(step, *chosen, at)) return failure;
  }
  return std::nullopt;
}

std::optional<StepFailure> Run::RunSweep(const Step& step, const Sweep& sweep, int at) {
  const auto road = RoadBefore(scenario_, step.number, roads_, roads_.FixesClock());
  CallOutcome outcome = CallStep(*road, step, InjectedFailure{at, sweep.failure});
  Differences differences;
  CompareOutcome(*step.method, sweep.expect, sweep.error, outcome, differences);
  for (const Step& query : sweep.then) {
    if (IsSkipped(query)) continue;
    for (const std::string& difference : RunQuery(*road, query)) {
      differences.push_back(query.query + ": " + difference);
    }
  }
  if (const std::string obstacle = road->Obstacle(); !obstacle.empty()) {
    SkipForObstacle("sweep of step " + std::to_string(step.number), obstacle);
    return std::nullopt;
  }
  if (differences.empty()) return std::nullopt;
  return StepFailure{step.number,
                     "sweep of " + std::string(step.cls->name) + "." +
                         std::string(step.method->name) + ", statement " + std::to_string(at) +
                         " failing",
                     std::move(differences), std::move(outcome.sent)};
}

}  // namespace

CallOutcome CallStep(Road& road, const Step& step, const std::optional<InjectedFailure>& failure) {
  CallOutcome outcome;
  outcome.arguments =
      MakeArguments({road.host(), road.dsn(), road.connection()}, *step.method, step.args);
  road.StartLog(failure);
  try {
    outcome.result = road.Call(*step.cls, *step.method, outcome.arguments);
  } catch (const AutomationError& error) {
    outcome.error = error;
  }
  outcome.sent = road.TakeLog();
  return outcome;
}

void CompareOutcome(const Method& method, const Json& expect,
                    const std::optional<ExpectedError>& error, const CallOutcome& outcome,
                    std::vector<std::string>& differences) {
  CompareErrors(error, outcome.error, differences);
  CompareAnswer(method, expect, outcome, differences);
}

std::optional<StepFailure> RunScenario(const Scenario& scenario, Roads& roads, Skipped* skipped) {
  return Run(scenario, roads, skipped).All();
}

std::unique_ptr<Road> RoadBefore(const Scenario& scenario, int number, Roads& roads, bool fixed) {
  auto road = roads.Open(scenario.start);
  for (const Step& earlier : scenario.steps) {
    if (earlier.number >= number) break;
    if (earlier.needs_clock && !fixed) continue;
    if (earlier.IsCall()) {
      CallStep(*road, earlier, earlier.fail);
    } else {
      RunQuery(*road, earlier);
    }
  }
  return road;
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

std::string DescribeFailure(const Scenario& scenario, const StepFailure& failure) {
  std::string text = scenario.file + ": " + scenario.name + "\n";
  text += "  ";
  if (failure.step > 0) {
    const std::string& note = scenario.steps[static_cast<size_t>(failure.step) - 1].note;
    text += "step " + std::to_string(failure.step) + (note.empty() ? "" : " (" + note + ")") + ": ";
  }
  text += failure.what + "\n";
  for (const std::string& difference : failure.differences) {
    std::string indented = difference;
    for (size_t at = 0; (at = indented.find('\n', at)) != std::string::npos; at += 5) {
      indented.replace(at, 1, "\n    ");
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

}  // namespace tavcc
