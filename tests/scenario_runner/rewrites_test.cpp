// All scenarios on the embedded database without its rewrites: none is needed for an answer.
#include <gtest/gtest.h>

#include "embedded/rewrite/rewrite.h"
#include "scenario/embedded_roads.h"
#include "scenario/runner.h"
#include "support/source_dir.h"

namespace tavcc {
namespace {

void ExpectAllScenariosPass() {
  const auto roads = MakeEmbeddedRoads();
  for (const std::string& file : ScenarioFiles({(SourceDir() / "tests/scenarios").string()})) {
    const Scenario scenario = LoadScenario(file);
    const auto failures = RunScenario(scenario, *roads);
    if (!failures.empty()) ADD_FAILURE() << DescribeFailures(scenario, failures);
  }
}

class ScenariosWithout : public testing::TestWithParam<std::string_view> {};

TEST_P(ScenariosWithout, Pass) {
  const std::string_view names[] = {GetParam()};
  const sql::RewritesOff off(names);
  ExpectAllScenariosPass();
}

std::string Identifier(const testing::TestParamInfo<std::string_view>& info) {
  std::string name(info.param);
  std::erase(name, '-');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Rewrites, ScenariosWithout,
                         testing::ValuesIn(sql::RewriteNames().begin(), sql::RewriteNames().end()),
                         Identifier);

TEST(Scenarios, PassWithoutAnyRewrite) {
  const sql::RewritesOff off(sql::RewriteNames());
  ExpectAllScenariosPass();
}

}  // namespace
}  // namespace tavcc
