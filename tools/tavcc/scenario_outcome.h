// What a scenario came to, for the reports of a run.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "scenario/runner.h"
#include "tavcc/call_watch.h"
#include "tavcc/changes.h"
#include "tavcc/command.h"

namespace tavcc {

// What a call of it came to.
struct StepOutcome {
  int number = 0;    // of the step
  std::string call;  // "Class.Method"
  std::string note;
  Exit verdict = Exit::kFailed;
  std::string message;  // of the answer, or the error
  std::vector<Stretch> sent;
};

struct ScenarioOutcome {
  std::string file;
  std::string failure;               // what came out otherwise; empty when nothing did
  std::vector<std::string> skipped;  // what of it was left out, a line each
  double seconds = 0;
  // For a page, and empty without one:
  std::string name;
  double begun = 0;  // milliseconds since the run began
  std::vector<StepOutcome> steps;
  ChangeTable stock;  // on hand, before the first step and behind the last
};

// Watches a scenario while it runs, and tells the outcome of it.
class ScenarioWatch {
 public:
  // `calls` watches what the backend of the run send.
  ScenarioWatch(const Scenario& scenario, CallWatch& calls, ScenarioOutcome& outcome);
  RunObserver observer();

 private:
  void Called(const Step& step, const CallOutcome& call);

  const bool has_database_;
  CallWatch& calls_;
  ScenarioOutcome& outcome_;
  std::optional<RowComparison> stock_;  // where it can be looked at
};

}  // namespace tavcc
