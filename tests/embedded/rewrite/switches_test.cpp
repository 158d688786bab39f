// No answer depends on a rewrite: all cases pass without any of them, and without each one.
#include <gtest/gtest.h>

#include "embedded/rewrite/rewrite.h"
#include "embedded/run/case_file.h"

namespace tavcc::sql {
namespace {

void ExpectAllCasesPass() {
  for (const char* folder : {"run", "corpus"}) {
    for (const CaseName& which : FindCases(folder)) {
      EXPECT_EQ("", RunCase(which)) << which.file << ": " << which.name;
    }
  }
}

class Without : public testing::TestWithParam<std::string_view> {};

TEST_P(Without, TheAnswersAreTheSame) {
  const std::string_view names[] = {GetParam()};
  const RewritesOff off(names);
  ExpectAllCasesPass();
}

std::string Identifier(const testing::TestParamInfo<std::string_view>& info) {
  std::string name(info.param);
  std::erase(name, '-');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Rewrites, Without,
                         testing::ValuesIn(RewriteNames().begin(), RewriteNames().end()),
                         Identifier);

TEST(Rewrites, AreNeededForNoAnswer) {
  const RewritesOff off(RewriteNames());
  ExpectAllCasesPass();
}

}  // namespace
}  // namespace tavcc::sql
