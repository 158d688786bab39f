#include "host_calls/watched_backend.h"

#include <gtest/gtest.h>

#include <utility>

#include "scenario/embedded_backend.h"
#include "scenario/runner.h"
#include "support/source_dir.h"

namespace tavcc::testing {
namespace {

class WatchedSession final : public ErpSession {
 public:
  WatchedSession(std::unique_ptr<Erp> erp, const AroundCall& around)
      : ErpSession(std::move(erp), {}), around_(around) {}

  Value Call(const ClassDescription& cls, const Method& method,
             std::vector<Value>& arguments) override {
    return around_(cls, method, arguments, *erp().host().GetUnloggedConnection(erp().dsn()),
                   [&](std::vector<Value>& given) { return ErpSession::Call(cls, method, given); });
  }

 private:
  const AroundCall& around_;
};

class WatchedBackend final : public Backend {
 public:
  explicit WatchedBackend(const AroundCall& around) : around_(around) {}

  std::unique_ptr<BackendSession> Open(const StartState& start) override {
    return std::make_unique<WatchedSession>(MakeEmbeddedErp(start), around_);
  }

 private:
  const AroundCall& around_;
};

}  // namespace

void RunAllScenarios(const AroundCall& around) {
  WatchedBackend backend(around);
  for (const std::string& file : ScenarioFiles({(SourceDir() / "tests/scenarios").string()})) {
    Scenario scenario = LoadScenario(file);
    for (Step& step : scenario.steps) step.sweeps.clear();
    const auto failures = RunScenario(scenario, backend);
    if (!failures.empty()) ADD_FAILURE() << DescribeFailures(scenario, failures);
  }
}

}  // namespace tavcc::testing
