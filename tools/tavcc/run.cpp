// tavcc run: runs scenario files.
#include <fmt/core.h>

#include "scenario/embedded_roads.h"
#include "scenario/runner.h"
#include "scenario/scenario.h"
#include "tavcc/command.h"
#include "tavcc/output.h"
#include "tavcc/progress.h"

namespace tavcc {
namespace {

class RunCommand final : public Command {
 public:
  void Describe(CLI::App& app) override {
    app.add_option("SCENARIO", paths_, "Scenario files, or folders of them")->required();
  }

  Exit Run(const CommonOptions& options) override {
    const std::vector<std::string> files = ScenarioFiles(paths_);
    const auto roads =
        MakeEmbeddedRoads(options.trace ? StatementObserver(TraceStatement) : nullptr);
    Json report = Json::array();
    size_t failed = 0;
    {
      Progress progress(files.size());
      for (size_t i = 0; i < files.size(); ++i) {
        progress.Show(i, files[i]);
        const std::string failure = RunFile(files[i], *roads);
        failed += failure.empty() ? 0 : 1;
        report.push_back({{"file", files[i]}, {"passed", failure.empty()}});
        if (!failure.empty()) report.back()["failure"] = failure;
        if (!failure.empty() && !options.json) fmt::print(stderr, "FAILED {}", failure);
      }
    }
    if (options.json) {
      fmt::print("{}\n", report.dump(2));
    } else if (failed == 0) {
      fmt::print("{} scenario{} passed\n", files.size(), files.size() == 1 ? "" : "s");
    } else {
      fmt::print("{} of {} scenarios failed\n", failed, files.size());
    }
    return failed == 0 ? Exit::kPassed : Exit::kFailed;
  }

 private:
  // What is wrong with the file or came out otherwise than it says; empty when nothing.
  static std::string RunFile(const std::string& file, Roads& roads) {
    try {
      const Scenario scenario = LoadScenario(file);
      const auto failure = RunScenario(scenario, roads);
      return failure ? DescribeFailure(scenario, *failure) : "";
    } catch (const ScenarioError& error) {
      return std::string(error.what()) + "\n";
    } catch (const std::exception& error) {
      return file + ": " + error.what() + "\n";
    }
  }

  std::vector<std::string> paths_;
};

}  // namespace

std::unique_ptr<Command> MakeRun() {
  return std::make_unique<RunCommand>();
}

}  // namespace tavcc
