// The scenario files, through COM: the same answers as on every other session, and nothing left
// behind.

#include "automation/fixture.h"
#include "scenario/runner.h"
#include "scenario/scenario.h"

namespace tavcc {
namespace {

TEST_F(AutomationTest, EveryScenarioAnswersAsOnEveryOtherBackend) {
  const auto files = ScenarioFiles({TAVCC_SCENARIOS});
  ASSERT_FALSE(files.empty());
  const auto backend = MakeComBackend();
  for (const std::string& file : files) {
    const Scenario scenario = LoadScenario(file);
    const auto failures = RunScenario(scenario, *backend);
    EXPECT_TRUE(failures.empty()) << DescribeFailures(scenario, failures);
    EXPECT_TRUE(ServerIsIdle()) << file;
    EXPECT_EQ(HostObjectsAlive(), 0) << file;
  }
  std::cout << files.size() << " scenarios\n";
}

}  // namespace
}  // namespace tavcc
