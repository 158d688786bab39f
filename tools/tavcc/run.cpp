// tavcc run: runs scenario files.
#include <fmt/core.h>

#include <random>

#include "odbc/connection_string.h"
#include "odbc/odbc.h"
#include "scenario/compare_roads.h"
#include "scenario/embedded_roads.h"
#include "scenario/known_differences.h"
#include "scenario/own_database_roads.h"
#include "scenario/prepared_roads.h"
#include "scenario/runner.h"
#include "scenario/scenario.h"
#include "tavcc/command.h"
#include "tavcc/database.h"
#include "tavcc/output.h"
#include "tavcc/progress.h"

namespace tavcc {
namespace {

class ScenarioRun {
 public:
  ScenarioRun(const CommonOptions& common, const RunOptions& options)
      : common_(common), options_(options) {}

  Exit All();

 private:
  // What --compare sets beside the server is always the embedded database.
  void OpenRoads() {
    const StatementObserver trace = common_.trace ? StatementObserver(TraceStatement) : nullptr;
    if (options_.compare) embedded_ = MakeEmbeddedRoads();
    const auto server = ServerOf(common_);
    if (!server) {
      if (options_.compare) throw CommandError("--compare wants a server: give --dsn STRING");
      if (options_.own_database)
        throw CommandError("--own-database wants a server: give --dsn STRING");
      roads_ = MakeEmbeddedRoads(trace);
      return;
    }
    const std::string dsn = MaskPassword(server->connection_string);
    const auto open = [odbc = *server](std::string_view) { return OpenOdbc(odbc); };
    roads_ = MakePreparedRoads(OnSqlServer(dsn, open, ReopenOdbc), trace);
    if (options_.own_database)
      own_ = MakeOwnDatabaseRoads({dsn, open, ReopenOdbc, NewName()}, trace);
  }

  static std::string NewName() {
    return fmt::format("tavcc_scenario_{:08x}", std::random_device()());
  }

  // What is wrong with the file or came out otherwise than it says; empty when nothing.
  std::string RunFile(const std::string& file) {
    try {
      const Scenario scenario = LoadScenario(file);
      Skipped skipped;
      std::string failure = Tell(scenario, *roads_, skipped);
      if (own_ != nullptr && !skipped.for_obstacle.empty()) {
        skipped = {};
        failure = Tell(scenario, *own_, skipped);
      }
      for (const auto* lines : {&skipped.for_clock, &skipped.for_obstacle}) {
        skipped_.insert(skipped_.end(), lines->begin(), lines->end());
      }
      return failure;
    } catch (const ScenarioError& error) {
      return std::string(error.what()) + "\n";
    }
  }

  std::string Tell(const Scenario& scenario, Roads& roads, Skipped& skipped) {
    if (options_.compare) {
      return DescribeDifferences(scenario, CompareRoads(scenario, *embedded_, roads, &skipped),
                                 known_);
    }
    const auto failure = RunScenario(scenario, roads, &skipped);
    return failure ? DescribeFailure(scenario, *failure) : "";
  }

  void PrintSummary(size_t files, size_t failed) const {
    if (failed == 0) {
      Print(fmt::format("{} scenario{} {}\n", files, files == 1 ? "" : "s",
                        options_.compare ? "compared without a difference" : "passed"));
    } else {
      Print(fmt::format("{} of {} scenarios {}\n", failed, files,
                        options_.compare ? "differ" : "failed"));
    }
    for (const std::string& line : skipped_) Print(fmt::format("skipped: {}\n", line));
    for (const KnownDifference& known : known_) {
      if (!known.met) {
        Print(fmt::format("known, but did not occur: {}, line {}\n", options_.known_file,
                          known.line));
      }
    }
  }

  const CommonOptions& common_;
  const RunOptions& options_;
  std::vector<KnownDifference> known_;
  std::unique_ptr<Roads> embedded_;  // null unless compared with
  std::unique_ptr<Roads> roads_;
  std::unique_ptr<Roads> own_;  // null where none was asked for
  std::vector<std::string> skipped_;
};

Exit ScenarioRun::All() {
  const std::vector<std::string> files = ScenarioFiles(options_.paths);
  if (!options_.known_file.empty()) {
    if (!options_.compare) throw CommandError("--known goes with --compare");
    known_ = ParseKnownDifferences(options_.known_file, ReadTextFile(options_.known_file));
  }
  OpenRoads();
  Json report = Json::array();
  size_t failed = 0;
  {
    Progress progress(files.size());
    for (size_t i = 0; i < files.size(); ++i) {
      progress.Show(i, files[i]);
      const std::string failure = RunFile(files[i]);
      failed += failure.empty() ? 0 : 1;
      Json& entry = report.push_back({{"file", files[i]}, {"passed", failure.empty()}});
      if (!failure.empty()) entry["failure"] = failure;
      if (!failure.empty() && !common_.json) {
        PrintAside(fmt::format("{} {}", options_.compare ? "DIFFERS" : "FAILED", failure));
      }
    }
  }
  if (common_.json) {
    Print(fmt::format("{}\n", Show(report, 2)));
  } else {
    PrintSummary(files.size(), failed);
  }
  return failed == 0 ? Exit::kPassed : Exit::kFailed;
}

}  // namespace

Exit RunCommand(const CommonOptions& common, const RunOptions& options) {
  return ScenarioRun(common, options).All();
}

}  // namespace tavcc
