// No answer depends on a rewrite: all cases pass without any of them, and without each one; where
// not everything is tried, each case without one of them in turn.
#include <gtest/gtest.h>

#include "embedded/rewrite/rewrite.h"
#include "embedded/run/case_file.h"
#include "support/without_rewrite.h"

namespace tavcc::sql {
namespace {

std::vector<CaseName> AllCases() {
  std::vector<CaseName> cases = FindCases("run");
  for (CaseName& which : FindCases("corpus")) cases.push_back(std::move(which));
  return cases;
}

void ExpectToPass(const std::vector<CaseName>& cases) {
  for (const CaseName& which : cases) {
    EXPECT_EQ("", RunCase(which)) << which.file << ": " << which.name;
  }
}

class Without : public ::testing::TestWithParam<std::string_view> {};

TEST_P(Without, TheAnswersAreTheSame) {
  const std::string_view names[] = {GetParam()};
  const RewritesOff off(names);
  ExpectToPass(testing::ShareOf(AllCases(), RewriteNames(), GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Rewrites, Without,
                         ::testing::ValuesIn(RewriteNames().begin(), RewriteNames().end()),
                         tavcc::testing::IdentifierOf);

TEST(Rewrites, AreNeededForNoAnswer) {
  const RewritesOff off(RewriteNames());
  ExpectToPass(AllCases());
}

}  // namespace
}  // namespace tavcc::sql
