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

class RunCommand final : public Command {
 public:
  void Describe(CLI::App& app) override {
    app.add_option("SCENARIO", paths_, "Scenario files, or folders of them")->required();
    app.add_flag("--compare", compare_,
                 "Run them on the embedded database and on the server, and print what differs");
    app.add_option("--known", known_file_, "Differences that the server is known for")
        ->type_name("FILE");
    app.add_flag("--own-database", own_database_,
                 "Where an error of the server ends the transaction in which a scenario runs: run "
                 "it once more, in a database of its own");
  }

  Exit Run(const CommonOptions& options) override {
    const std::vector<std::string> files = ScenarioFiles(paths_);
    if (!known_file_.empty()) {
      if (!compare_) throw CommandError("--known goes with --compare");
      known_ = ParseKnownDifferences(known_file_, ReadTextFile(known_file_));
    }
    OpenRoads(options);
    Json report = Json::array();
    size_t failed = 0;
    {
      Progress progress(files.size());
      for (size_t i = 0; i < files.size(); ++i) {
        progress.Show(i, files[i]);
        const std::string failure = RunFile(files[i]);
        failed += failure.empty() ? 0 : 1;
        report.push_back({{"file", files[i]}, {"passed", failure.empty()}});
        if (!failure.empty()) report.back()["failure"] = failure;
        if (!failure.empty() && !options.json) {
          fmt::print(stderr, "{} {}", compare_ ? "DIFFERS" : "FAILED", failure);
        }
      }
    }
    if (options.json) {
      fmt::print("{}\n", report.dump(2));
    } else {
      PrintSummary(files.size(), failed);
    }
    return failed == 0 ? Exit::kPassed : Exit::kFailed;
  }

 private:
  // What --compare sets beside the server is always the embedded database.
  void OpenRoads(const CommonOptions& options) {
    const StatementObserver trace = options.trace ? StatementObserver(TraceStatement) : nullptr;
    if (compare_) embedded_ = MakeEmbeddedRoads();
    const auto server = ServerOf(options);
    if (!server) {
      if (compare_) throw CommandError("--compare wants a server: give --dsn STRING");
      if (own_database_) throw CommandError("--own-database wants a server: give --dsn STRING");
      roads_ = MakeEmbeddedRoads(trace);
      return;
    }
    const std::string dsn = MaskPassword(server->connection_string);
    const auto open = [odbc = *server](std::string_view) { return OpenOdbc(odbc); };
    roads_ = MakePreparedRoads(OnSqlServer(dsn, open, ReopenOdbc), trace);
    if (own_database_) own_ = MakeOwnDatabaseRoads({dsn, open, ReopenOdbc, NewName()}, trace);
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
    if (compare_) {
      return DescribeDifferences(scenario, CompareRoads(scenario, *embedded_, roads, &skipped),
                                 known_);
    }
    const auto failure = RunScenario(scenario, roads, &skipped);
    return failure ? DescribeFailure(scenario, *failure) : "";
  }

  void PrintSummary(size_t files, size_t failed) const {
    if (failed == 0) {
      fmt::print("{} scenario{} {}\n", files, files == 1 ? "" : "s",
                 compare_ ? "compared without a difference" : "passed");
    } else {
      fmt::print("{} of {} scenarios {}\n", failed, files, compare_ ? "differ" : "failed");
    }
    for (const std::string& line : skipped_) fmt::print("skipped: {}\n", line);
    for (const KnownDifference& known : known_) {
      if (!known.met) {
        fmt::print("known, but did not occur: {}, line {}\n", known_file_, known.line);
      }
    }
  }

  std::vector<std::string> paths_;
  bool compare_ = false;
  std::string known_file_;
  std::vector<KnownDifference> known_;
  std::unique_ptr<Roads> embedded_;
  bool own_database_ = false;
  std::unique_ptr<Roads> roads_;
  std::unique_ptr<Roads> own_;  // null where none was asked for
  std::vector<std::string> skipped_;
};

}  // namespace

std::unique_ptr<Command> MakeRun() {
  return std::make_unique<RunCommand>();
}

}  // namespace tavcc
