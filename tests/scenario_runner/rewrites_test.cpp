// All scenarios on the embedded database without its rewrites: none is needed for an answer. Each
// runs without all of them and, where not everything is tried, without one of them in turn.
#include <gtest/gtest.h>

#include "embedded/rewrite/rewrite.h"
#include "scenario/embedded_backend.h"
#include "scenario/runner.h"
#include "support/source_dir.h"
#include "support/without_rewrite.h"

namespace tavcc {
namespace {

std::vector<std::string> AllScenarios() {
  return ScenarioFiles({(SourceDir() / "tests/scenarios").string()});
}

void ExpectToPass(const std::vector<std::string>& files) {
  const auto backend = MakeEmbeddedBackend();
  for (const std::string& file : files) {
    const Scenario scenario = LoadScenario(file);
    const auto failures = RunScenario(scenario, *backend);
    if (!failures.empty()) ADD_FAILURE() << DescribeFailures(scenario, failures);
  }
}

class ScenariosWithout : public ::testing::TestWithParam<std::string_view> {};

TEST_P(ScenariosWithout, Pass) {
  const std::string_view names[] = {GetParam()};
  const sql::RewritesOff off(names);
  ExpectToPass(testing::ShareOf(AllScenarios(), sql::RewriteNames(), GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Rewrites, ScenariosWithout,
                         ::testing::ValuesIn(sql::RewriteNames().begin(),
                                             sql::RewriteNames().end()),
                         tavcc::testing::IdentifierOf);

TEST(Scenarios, PassWithoutAnyRewrite) {
  const sql::RewritesOff off(sql::RewriteNames());
  ExpectToPass(AllScenarios());
}

}  // namespace
}  // namespace tavcc
