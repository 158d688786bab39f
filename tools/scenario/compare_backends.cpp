#include "scenario/compare_backends.h"

#include <algorithm>
#include <optional>

#include "foundation/text.h"
#include "scenario/values.h"

namespace tavcc {
namespace {

constexpr const char* kNothingToCompare =
    ": a tape has the answers of one database: there is nothing to compare";

std::string ErrorText(const std::optional<AutomationError>& error) {
  if (!error) return "none";
  return std::to_string(error->number()) + " \"" + error->description() + "\"";
}

// The statement with its error; how many rows it had shows in what came of them.
std::string StatementText(const std::vector<LoggedStatement>& sent, size_t i) {
  if (i >= sent.size()) return "none";
  const std::string text = Show(ShowStatement(sent[i]));
  return sent[i].error ? text + " -> error " + ErrorText(sent[i].error) : text;
}

// An open recordset; null for all else.
Recordset* RowsOf(const Value& value) {
  auto* const rows = value.IsObject() ? dynamic_cast<Recordset*>(value.object().get()) : nullptr;
  return rows != nullptr && rows->IsOpen() ? rows : nullptr;
}

std::string ColumnsText(const Recordset& rows) {
  Json names = Json::array();
  for (int i = 0; i < rows.FieldCount(); ++i) names.push_back(rows.FieldName(i));
  return Show(names);
}

// Where two answers to the same question differ.
class Answers {
 public:
  // `place` leads each difference.
  Answers(int step, std::string place, std::vector<BackendDifference>& differences)
      : step_(step), place_(std::move(place)), differences_(differences) {}

  void Calls(const Method& method, const CallOutcome& first, const CallOutcome& second) {
    Texts("error", ErrorText(first.error), ErrorText(second.error));
    Values("result", first.result, second.result);
    for (size_t i = 0; i < method.parameters.size(); ++i) {
      if (!method.parameters[i].in_out) continue;
      Values(std::string(method.parameters[i].name), first.arguments[i], second.arguments[i]);
    }
    for (size_t i = 0; i < std::max(first.sent.size(), second.sent.size()); ++i) {
      Texts("statement " + std::to_string(i + 1), StatementText(first.sent, i),
            StatementText(second.sent, i));
    }
  }

  void Queries(const std::string& query, BackendSession& first, BackendSession& second) {
    std::optional<AutomationError> errors[2];
    const Value rows[] = {Ask(first, query, errors[0]), Ask(second, query, errors[1])};
    Texts("error", ErrorText(errors[0]), ErrorText(errors[1]));
    if (!errors[0] && !errors[1]) Values("rows", rows[0], rows[1]);
  }

  void Texts(const std::string& what, const std::string& first, const std::string& second) {
    if (first == second) return;
    differences_.push_back({step_, Cat(place_, what, ": ", first, " / ", second)});
  }

 private:
  static Value Ask(BackendSession& session, const std::string& query,
                   std::optional<AutomationError>& error) {
    try {
      return session.connection()->Execute(query);
    } catch (const AutomationError& raised) {
      error = raised;
      return Null{};
    }
  }

  // 7 and 7.0 are the same here, as they are for a caller. What columns are called is a difference
  // of its own.
  void Values(const std::string& what, const Value& first, const Value& second) {
    Recordset* const rows = RowsOf(first);
    Recordset* const others = RowsOf(second);
    const bool both = rows != nullptr && others != nullptr;
    if (both) Texts("columns of " + what, ColumnsText(*rows), ColumnsText(*others));
    const Json a = both ? JsonFromRows(*rows, RowForm::kArrays) : JsonFromValue(first);
    const Json b = both ? JsonFromRows(*others, RowForm::kArrays) : JsonFromValue(second);
    if (a != b) Texts(what, Show(a), Show(b));
  }

  const int step_;
  const std::string place_;
  std::vector<BackendDifference>& differences_;
};

class BackendComparison {
 public:
  BackendComparison(const Scenario& scenario, Backend& first, Backend& second, Skipped* skipped)
      : scenario_(scenario),
        first_(first),
        second_(second),
        clock_(first.FixesClock() && second.FixesClock()),
        skipped_(skipped) {}

  std::vector<BackendDifference> All();

 private:
  // Opens both sessions before a step; false where one cannot be opened, which is a difference of
  // its own.
  bool OpenSessions(int step);
  // How many statements the step sent on the first session.
  int CompareStep(const Step& step);
  void CompareSweep(const Step& step, const Sweep& sweep, int at);
  // Forgets the differences since `before`, and tells, where a session cannot go on.
  bool SkipsRest(size_t before, const std::string& what);
  bool IsSkipped(const Step& step) const { return step.needs_clock && !clock_; }
  void SkipForClock(int step) {
    if (skipped_ != nullptr) skipped_->for_clock.push_back(NeedsClockText(scenario_, step));
  }

  const Scenario& scenario_;
  Backend& first_;
  Backend& second_;
  const bool clock_;
  Skipped* const skipped_;
  std::unique_ptr<BackendSession> session_, other_;
  std::vector<BackendDifference> differences_;
};

std::vector<BackendDifference> BackendComparison::All() {
  if (scenario_.needs_clock && !clock_) {
    SkipForClock(0);
    return {};
  }
  if (scenario_.IsTape()) {
    if (skipped_ != nullptr) skipped_->cut_short.push_back(scenario_.file + kNothingToCompare);
    return {};
  }
  if (!OpenSessions(1)) return differences_;
  for (const Step& step : scenario_.steps) {
    if (IsSkipped(step)) {
      SkipForClock(step.number);
      continue;
    }
    const size_t before = differences_.size();
    const int statements = CompareStep(step);
    if (SkipsRest(before, "from step " + std::to_string(step.number) + " on")) break;
    for (int at = 1; at <= statements; ++at) {
      if (const Sweep* sweep = SweepFor(step, at)) CompareSweep(step, *sweep, at);
    }
    // The sweeps took the sessions.
    if (!step.sweeps.empty() && !OpenSessions(step.number + 1)) break;
  }
  return differences_;
}

bool BackendComparison::OpenSessions(int step) {
  const auto open = [&](Backend& backend, std::unique_ptr<BackendSession>& session) -> std::string {
    try {
      session = nullptr;
      session = SessionBefore(scenario_, step, backend, clock_);
      return "none";
    } catch (const AutomationError& raised) {
      return ErrorText(raised);
    }
  };
  const std::string error = open(first_, session_);
  Answers(0, "", differences_).Texts("start", error, open(second_, other_));
  return session_ != nullptr && other_ != nullptr;
}

int BackendComparison::CompareStep(const Step& step) {
  Answers answers(step.number, "", differences_);
  if (!step.IsCall()) {
    answers.Queries(step.query, *session_, *other_);
    return 0;
  }
  const CallOutcome outcome = CallStep(*session_, step, step.fail);
  answers.Calls(*step.method, outcome, CallStep(*other_, step, step.fail));
  return static_cast<int>(outcome.sent.size());
}

void BackendComparison::CompareSweep(const Step& step, const Sweep& sweep, int at) {
  if (!OpenSessions(step.number)) return;
  const size_t before = differences_.size();
  const std::string place = "statement " + std::to_string(at) + " failing, ";
  Answers answers(step.number, place, differences_);
  const InjectedFailure failure{at, sweep.failure};
  const CallOutcome outcome = CallStep(*session_, step, failure);
  answers.Calls(*step.method, outcome, CallStep(*other_, step, failure));
  for (const Step& query : sweep.then) {
    if (!IsSkipped(query)) answers.Queries(query.query, *session_, *other_);
  }
  SkipsRest(before, "sweep of step " + std::to_string(step.number));
}

bool BackendComparison::SkipsRest(size_t before, const std::string& what) {
  const std::string reason = session_->SkipReason() + other_->SkipReason();
  if (reason.empty()) return false;
  differences_.resize(before);
  const std::string line = scenario_.file + ": " + what + ": " + reason;
  if (skipped_ != nullptr) skipped_->cut_short.push_back(line);
  return true;
}

}  // namespace

std::vector<BackendDifference> CompareBackends(const Scenario& scenario, Backend& first,
                                               Backend& second, Skipped* skipped) {
  return BackendComparison(scenario, first, second, skipped).All();
}

}  // namespace tavcc
