// The cases of the folders run and corpus.
#include <gtest/gtest.h>

#include "embedded/run/case_file.h"

namespace tavcc::sql {

// Where the test library looks for it, beside CaseName.
std::ostream& operator<<(std::ostream& out, const CaseName& which) {
  return out << which.name;
}

namespace {

class Cases : public ::testing::TestWithParam<CaseName> {};

TEST_P(Cases, GiveTheServersAnswer) {
  EXPECT_EQ("", RunCase(GetParam()));
}

std::string TestName(const ::testing::TestParamInfo<CaseName>& info) {
  std::string out;
  for (const char c : info.param.name) out += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
  return out + '_' + std::to_string(info.index);
}

INSTANTIATE_TEST_SUITE_P(Run, Cases, ::testing::ValuesIn(FindCases("run")), TestName);
INSTANTIATE_TEST_SUITE_P(Corpus, Cases, ::testing::ValuesIn(FindCases("corpus")), TestName);

}  // namespace
}  // namespace tavcc::sql
