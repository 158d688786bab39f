#include "host_calls/watched_roads.h"

#include <gtest/gtest.h>

#include <utility>

#include "scenario/embedded_roads.h"
#include "scenario/runner.h"
#include "support/source_dir.h"

namespace tavcc::testing {
namespace {

class WatchedRoad final : public ErpRoad {
 public:
  WatchedRoad(std::unique_ptr<Erp> erp, const AroundCall& around)
      : ErpRoad(std::move(erp), {}), around_(around) {}

  Value Call(const ClassDescription& cls, const Method& method,
             std::vector<Value>& arguments) override {
    return around_(cls, method, arguments, *erp().host().GetUnloggedConnection(erp().dsn()),
                   [&](std::vector<Value>& given) { return ErpRoad::Call(cls, method, given); });
  }

 private:
  const AroundCall& around_;
};

class WatchedRoads final : public Roads {
 public:
  explicit WatchedRoads(const AroundCall& around) : around_(around) {}

  std::unique_ptr<Road> Open(const StartState& start) override {
    return std::make_unique<WatchedRoad>(MakeEmbeddedErp(start), around_);
  }

 private:
  const AroundCall& around_;
};

}  // namespace

void RunAllScenarios(const AroundCall& around) {
  WatchedRoads roads(around);
  for (const std::string& file : ScenarioFiles({(SourceDir() / "tests/scenarios").string()})) {
    Scenario scenario = LoadScenario(file);
    for (Step& step : scenario.steps) step.sweeps.clear();
    const auto failures = RunScenario(scenario, roads);
    if (!failures.empty()) ADD_FAILURE() << DescribeFailures(scenario, failures);
  }
}

}  // namespace tavcc::testing
