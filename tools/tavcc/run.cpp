// tavcc run: runs scenario files, and takes what came for what is expected.
#include <fmt/core.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <mutex>
#include <random>
#include <thread>

#include "foundation/connection_string.h"
#include "foundation/text.h"
#include "language/language.h"
#include "odbc/odbc.h"
#include "scenario/accept.h"
#include "scenario/compare_backends.h"
#include "scenario/embedded_backend.h"
#include "scenario/known_differences.h"
#include "scenario/own_database_backend.h"
#include "scenario/prepared_backend.h"
#include "scenario/runner.h"
#include "scenario/scenario.h"
#include "tavcc/command.h"
#include "tavcc/database.h"
#include "tavcc/file.h"
#include "tavcc/html/run_page.h"
#include "tavcc/junit.h"
#include "tavcc/output.h"
#include "tavcc/progress.h"
#include "tavcc/review.h"
#include "tavcc/scenario_outcome.h"
#include "tavcc/trace.h"

namespace tavcc {
namespace {

// What one thread runs scenarios on.
struct Workplace {
  std::unique_ptr<CallWatch> calls;   // null unless a page is to tell of them
  std::unique_ptr<Backend> embedded;  // null unless compared with
  std::unique_ptr<Backend> backend;
  std::unique_ptr<Backend> own;  // null where none was asked for
};

class ScenarioRun {
 public:
  ScenarioRun(const CommonOptions& common, const RunOptions& options)
      : common_(common), options_(options), server_(ServerOf(common)) {
    RefuseWhatDoesNotGoTogether();
  }

  Exit All();

 private:
  bool Accepts() const { return options_.update || options_.review; }

  void RefuseWhatDoesNotGoTogether() const {
    if (options_.compare && !server_) {
      throw CommandError(Say("--compare wants a server: give --dsn STRING"));
    }
    if (options_.own_database && !server_) {
      throw CommandError(Say("--own-database wants a server: give --dsn STRING"));
    }
    RequireOwnFile(options_.html_file,
                   {common_.dsn_file, options_.junit_file, options_.known_file});
    if (!common_.db.empty()) {
      throw CommandError(Say(
          "--db: every scenario has a database of its own; --dsn STRING runs them on a server"));
    }
    if (options_.jobs > 1 && (server_ || common_.trace)) {
      throw CommandError(Say("-j goes with neither a server nor --trace"));
    }
    if (Accepts() && (server_ || options_.jobs > 1 || common_.json)) {
      throw CommandError(Say("--update and --review go with no server, no -j and no --json"));
    }
  }

  // What --compare sets beside the server is always the embedded database.
  Workplace Open() const {
    StatementObserver trace = TraceOf(common_);
    Workplace place;
    if (!options_.html_file.empty()) {
      place.calls = std::make_unique<CallWatch>(trace, 0);
      trace = place.calls->observer();
    }
    if (options_.compare) place.embedded = MakeEmbeddedBackend();
    if (!server_) {
      place.backend = MakeEmbeddedBackend(trace);
      return place;
    }
    const std::string dsn = MaskPassword(server_->connection_string);
    const auto open = [odbc = *server_](std::string_view) { return OpenOdbc(odbc); };
    place.backend = MakePreparedBackend(OnSqlServer(dsn, open, ReopenOdbc), trace);
    if (options_.own_database) {
      place.own = MakeOwnDatabaseBackend({dsn, open, ReopenOdbc, NewName()}, trace);
    }
    return place;
  }

  static std::string NewName() {
    return fmt::format("tavcc_scenario_{:08x}", std::random_device()());
  }

  bool IsWanted(const std::string& file) const;
  ScenarioOutcome RunFile(const std::string& file, const Workplace& place);
  void Tell(const Scenario& scenario, Backend& backend, const Workplace& place, Skipped& skipped,
            ScenarioOutcome& outcome);
  std::vector<ScenarioOutcome> RunFiles(const std::vector<std::string>& files);
  void TellOfFailure(const ScenarioOutcome& outcome) const;
  void Accept(std::vector<ScenarioOutcome>& outcomes);
  std::string SummaryText(size_t files, size_t failed) const;
  void PrintSummary(const std::vector<ScenarioOutcome>& outcomes, size_t failed) const;
  void PrintJson(const std::vector<ScenarioOutcome>& outcomes) const;
  void PrintList(const std::vector<std::string>& files) const;

  using Clock = std::chrono::steady_clock;

  const CommonOptions& common_;
  const RunOptions& options_;
  const Clock::time_point started_ = Clock::now();
  const std::optional<OdbcOptions> server_;
  std::vector<KnownDifference> known_;
};

// The scenario's name; empty for a file that is none, which running it will say.
std::string NameOf(const std::string& file) {
  try {
    return LoadScenario(file).name;
  } catch (const ScenarioError&) {
    return "";
  }
}

bool ScenarioRun::IsWanted(const std::string& file) const {
  const std::string wanted = LowerCase(options_.filter);
  return LowerCase(file).find(wanted) != std::string::npos ||
         LowerCase(NameOf(file)).find(wanted) != std::string::npos;
}

void ScenarioRun::Tell(const Scenario& scenario, Backend& backend, const Workplace& place,
                       Skipped& skipped, ScenarioOutcome& outcome) {
  if (options_.compare) {
    outcome.failure = DescribeDifferences(
        scenario, CompareBackends(scenario, *place.embedded, backend, &skipped), known_);
    return;
  }
  std::optional<ScenarioWatch> watch;
  if (place.calls != nullptr) watch.emplace(scenario, *place.calls, outcome);
  outcome.failure = DescribeFailures(
      scenario,
      RunScenario(scenario, backend, &skipped, watch ? watch->observer() : RunObserver()));
}

ScenarioOutcome ScenarioRun::RunFile(const std::string& file, const Workplace& place) {
  const auto start = Clock::now();
  ScenarioOutcome outcome;
  outcome.file = file;
  outcome.begun = std::chrono::duration<double, std::milli>(start - started_).count();
  try {
    const Scenario scenario = LoadScenario(file);
    outcome.name = scenario.name;
    Skipped skipped;
    Tell(scenario, *place.backend, place, skipped, outcome);
    if (place.own != nullptr && !skipped.cut_short.empty()) {
      skipped = {};
      Tell(scenario, *place.own, place, skipped, outcome);
    }
    for (const auto* lines : {&skipped.for_clock, &skipped.cut_short}) {
      outcome.skipped.insert(outcome.skipped.end(), lines->begin(), lines->end());
    }
  } catch (const ScenarioError& error) {
    outcome.failure = std::string(error.what()) + "\n";
  }
  const std::chrono::duration<double> took = Clock::now() - start;
  outcome.seconds = took.count();
  return outcome;
}

void ScenarioRun::TellOfFailure(const ScenarioOutcome& outcome) const {
  if (outcome.failure.empty() || common_.json || Accepts()) return;
  const std::string text = fmt::format(
      "{} {}", options_.compare ? Translated("DIFFERS") : Translated("FAILED"), outcome.failure);
  PrintAside(OutputHasColours() ? WithColours(text) : text);
}

// Outcomes in the order of the files, whichever thread ran them.
std::vector<ScenarioOutcome> ScenarioRun::RunFiles(const std::vector<std::string>& files) {
  std::vector<ScenarioOutcome> outcomes(files.size());
  Progress progress(files.size());
  std::mutex mutex;  // of what follows, and of what is printed
  std::exception_ptr error;
  size_t done = 0;
  std::atomic<size_t> next = 0;
  const auto work = [&] {
    try {
      const Workplace place = Open();
      for (size_t i = 0; (i = next++) < files.size();) {
        ScenarioOutcome outcome = RunFile(files[i], place);
        const std::lock_guard lock(mutex);
        progress.Show(++done, files[i]);
        TellOfFailure(outcome);
        outcomes[i] = std::move(outcome);
      }
    } catch (...) {
      const std::lock_guard lock(mutex);
      if (error == nullptr) error = std::current_exception();
      next = files.size();
    }
  };
  std::vector<std::thread> others;
  for (int i = 1; i < options_.jobs; ++i) others.emplace_back(work);
  work();
  for (std::thread& other : others) other.join();
  if (error != nullptr) std::rethrow_exception(error);
  return outcomes;
}

void ScenarioRun::Accept(std::vector<ScenarioOutcome>& outcomes) {
  const Workplace place = Open();
  size_t changed = 0;
  for (ScenarioOutcome& outcome : outcomes) {
    if (outcome.failure.empty()) continue;
    const std::string before = ReadTextFile(outcome.file);
    Acceptance acceptance;
    try {
      acceptance = AcceptScenario(outcome.file, before, *place.backend);
    } catch (const ScenarioError&) {
      continue;  // told with the failures
    }
    for (const std::string& note : acceptance.notes) PrintAside(note + "\n");
    if (acceptance.text == before) continue;
    const Decision decision =
        options_.review ? AskForChange(outcome.file, before, acceptance.text) : Decision::kTake;
    if (decision == Decision::kStop) break;
    if (decision == Decision::kLeave) continue;
    ReplaceFile(outcome.file, acceptance.text);
    ++changed;
    Print(Say("changed {}\n", outcome.file));
    outcome = RunFile(outcome.file, place);
  }
  Print(changed == 1 ? Say("1 file changed\n") : Say("{} files changed\n", changed));
  for (const ScenarioOutcome& outcome : outcomes) {
    if (!outcome.failure.empty()) PrintAside(Translated("FAILED") + " " + outcome.failure);
  }
}

std::string ScenarioRun::SummaryText(size_t files, size_t failed) const {
  if (failed > 0) {
    return options_.compare ? Say("{} of {} scenarios differ", failed, files)
                            : Say("{} of {} scenarios failed", failed, files);
  }
  if (options_.compare) {
    return files == 1 ? Say("1 scenario compared without a difference")
                      : Say("{} scenarios compared without a difference", files);
  }
  return files == 1 ? Say("1 scenario passed") : Say("{} scenarios passed", files);
}

void ScenarioRun::PrintSummary(const std::vector<ScenarioOutcome>& outcomes, size_t failed) const {
  const size_t files = outcomes.size();
  Print(SummaryText(files, failed) + "\n");
  for (const ScenarioOutcome& outcome : outcomes) {
    for (const std::string& line : outcome.skipped) Print(Say("skipped: {}\n", line));
  }
  for (const KnownDifference& known : known_) {
    if (!known.met) {
      Print(Say("known, but did not occur: {}, line {}\n", options_.known_file, known.line));
    }
  }
}

void ScenarioRun::PrintJson(const std::vector<ScenarioOutcome>& outcomes) const {
  Json report = Json::array();
  for (const ScenarioOutcome& outcome : outcomes) {
    Json& entry = report.push_back({{"file", outcome.file}, {"passed", outcome.failure.empty()}});
    if (!outcome.failure.empty()) entry["failure"] = outcome.failure;
  }
  Print(fmt::format("{}\n", Show(report, 2)));
}

void ScenarioRun::PrintList(const std::vector<std::string>& files) const {
  Json list = Json::array();
  std::string text;
  for (const std::string& file : files) {
    const std::string name = NameOf(file);
    list.push_back({{"file", file}, {"name", name}});
    text += fmt::format("{}: {}\n", file, name);
  }
  Print(common_.json ? Show(list, 2) + "\n" : text);
}

Exit ScenarioRun::All() {
  std::vector<std::string> files = ScenarioFiles(options_.paths);
  RequireOwnFile(options_.html_file, files);
  if (!options_.filter.empty()) {
    std::erase_if(files, [&](const std::string& file) { return !IsWanted(file); });
    if (files.empty()) {
      throw CommandError(
          Say("--filter: no scenario has \"{}\" in its path or name", options_.filter));
    }
  }
  if (options_.list) {
    PrintList(files);
    return Exit::kPassed;
  }
  if (!options_.known_file.empty()) {
    known_ = ParseKnownDifferences(options_.known_file, ReadTextFile(options_.known_file));
  }
  std::vector<ScenarioOutcome> outcomes = RunFiles(files);
  if (Accepts()) Accept(outcomes);
  const auto failed = static_cast<size_t>(std::ranges::count_if(
      outcomes, [](const ScenarioOutcome& outcome) { return !outcome.failure.empty(); }));
  if (!options_.junit_file.empty()) ReplaceFile(options_.junit_file, JunitXml(outcomes));
  if (!options_.html_file.empty()) ReplaceFile(options_.html_file, RunPage(outcomes));
  if (common_.json) {
    PrintJson(outcomes);
  } else {
    PrintSummary(outcomes, failed);
  }
  return failed == 0 ? Exit::kPassed : Exit::kFailed;
}

}  // namespace

Exit RunCommand(const CommonOptions& common, const RunOptions& options) {
  return ScenarioRun(common, options).All();
}

}  // namespace tavcc
