// Comparing two backends: what is a difference, and which are known.
#include "scenario/compare_backends.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/embedded_backend.h"
#include "scenario/known_differences.h"

namespace tavcc {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

// A backend whose databases start with one more statement.
class ChangedBackend final : public Backend {
 public:
  explicit ChangedBackend(std::string sql)
      : sql_(std::move(sql)), backend_(MakeEmbeddedBackend()) {}
  std::unique_ptr<BackendSession> Open(const StartState& start) override {
    StartState changed = start;
    changed.sql.push_back(sql_);
    return backend_->Open(changed);
  }
  bool FixesClock() const override { return fixes_clock; }

  bool fixes_clock = true;

 private:
  const std::string sql_;
  const std::unique_ptr<Backend> backend_;
};

Scenario AuditOfOneBill() {
  return ParseScenario("folder/audit.json", R"json({
    "name": "audit", "sql": ["insert into T_CC_ZZCX(FID) values(1)"], "steps": [
      {"call": "cls_CX.AuditBill", "args": {"lngFID": 1, "lngUserID": 2}},
      {"query": "select FStatus from T_CC_ZZCX"},
      {"needs_clock": true, "query": "select FCheckDate from T_CC_ZZCX"}]})json");
}

TEST(CompareBackends, TheSameIsNoDifference) {
  const auto first = MakeEmbeddedBackend();
  const auto second = MakeEmbeddedBackend();
  EXPECT_THAT(CompareBackends(AuditOfOneBill(), *first, *second), IsEmpty());
}

TEST(CompareBackends, NamesResultMessageStatementsAndRows) {
  const auto first = MakeEmbeddedBackend();
  ChangedBackend second("update T_CC_ZZCX set FVoucherID=7");
  const auto differences = CompareBackends(AuditOfOneBill(), *first, second);
  ASSERT_EQ(differences.size(), 5u);
  EXPECT_EQ(differences[0].text, "result: true / false");
  EXPECT_THAT(differences[1].text, HasSubstr("strReturnMsg: \"\" / \"该单据已生成凭证"));
  EXPECT_THAT(differences[2].text, HasSubstr("statement 2: \"Update T_CC_ZZCX set"));
  EXPECT_THAT(differences[2].text, HasSubstr(" / none"));
  EXPECT_EQ(differences[3].text, "rows: [[1]] / [[0]]");
  EXPECT_EQ(differences[3].step, 2);
  EXPECT_EQ(differences[4].text, R"(rows: [[{"date":"2026-03-15 10:00:00"}]] / [[null]])");
}

TEST(CompareBackends, WhatNeedsTheClockIsLeftOutWhereItRuns) {
  const auto first = MakeEmbeddedBackend();
  ChangedBackend second("update T_CC_ZZCX set FVoucherID=7");
  second.fixes_clock = false;
  Skipped skipped;
  EXPECT_EQ(CompareBackends(AuditOfOneBill(), *first, second, &skipped).size(), 4u);
  ASSERT_EQ(skipped.for_clock.size(), 1u);
  EXPECT_THAT(skipped.for_clock[0], HasSubstr("step 3"));
}

TEST(CompareBackends, AStartThatFailsIsADifference) {
  const auto first = MakeEmbeddedBackend();
  ChangedBackend second("update NoTable set A=1");
  const auto differences = CompareBackends(AuditOfOneBill(), *first, second);
  ASSERT_EQ(differences.size(), 1u);
  EXPECT_EQ(differences[0].step, 0);
  EXPECT_THAT(differences[0].text, HasSubstr("208"));
}

TEST(CompareBackends, NamesColumnsThatAreCalledOtherwise) {
  const Scenario scenario = ParseScenario("folder/names.json", R"json({
    "name": "names", "steps": [{"query": "select * from #t"}]})json");
  ChangedBackend first("select 1 as A into #t");
  ChangedBackend second("select 1 as B into #t");
  const auto differences = CompareBackends(scenario, first, second);
  ASSERT_EQ(differences.size(), 1u);
  EXPECT_EQ(differences[0].text, R"(columns of rows: ["A"] / ["B"])");
}

TEST(CompareBackends, MomentsAreComparedToTheMillisecond) {
  const Scenario scenario = ParseScenario("folder/moments.json", R"json({
    "name": "moments", "steps": [{"query": "select * from #t"}]})json");
  ChangedBackend first("select cast('2026-03-15 00:00:00.003' as datetime) as A into #t");
  ChangedBackend second("select cast('2026-03-15 00:00:00.007' as datetime) as A into #t");
  const auto differences = CompareBackends(scenario, first, second);
  ASSERT_EQ(differences.size(), 1u);
  EXPECT_EQ(
      differences[0].text,
      R"(rows: [[{"date":"2026-03-15 00:00:00.003"}]] / [[{"date":"2026-03-15 00:00:00.007"}]])");
}

TEST(CompareBackends, SweepsAreComparedWithEachStatementFailing) {
  const Scenario scenario = ParseScenario("folder/sweep.json", R"json({
    "name": "sweep", "sql": ["insert into T_CC_ZZCX(FID) values(1)"], "steps": [
      {"call": "cls_CX.AuditBill", "args": {"lngFID": 1, "lngUserID": 2},
       "sweep": {"then": [{"query": "select FID from T_CC_ZZCX where FStatus=0"}]}},
      {"query": "select a.FID from T_CC_ZZCX a, T_CC_ZZCX b where b.FStatus=1"}]})json");
  const auto first = MakeEmbeddedBackend();
  const auto same = MakeEmbeddedBackend();
  EXPECT_THAT(CompareBackends(scenario, *first, *same), IsEmpty());
  ChangedBackend second("insert into T_CC_ZZCX(FID) values(9)");
  const auto differences = CompareBackends(scenario, *first, second);
  ASSERT_EQ(differences.size(), 3u);
  EXPECT_EQ(differences[0].text, "statement 1 failing, rows: [[1]] / [[1],[9]]");
  EXPECT_EQ(differences[1].text, "statement 2 failing, rows: [[1]] / [[1],[9]]");
  EXPECT_EQ(differences[1].step, 1);
  // Behind the sweep the bill is audited.
  EXPECT_EQ(differences[2].text, "rows: [[1]] / [[1],[9]]");
  EXPECT_EQ(differences[2].step, 2);
}

TEST(KnownDifferences, AreLeftOutAndMarked) {
  auto known = ParseKnownDifferences("known.txt",
                                     "# this server\n\n"
                                     "audit.json | 1 | result: | it answers otherwise\n"
                                     "* | 2 | rows: | it counts otherwise\n"
                                     "audit.json | 3 | * | never\n");
  const std::string text = DescribeDifferences(
      AuditOfOneBill(), {{1, "result: true / false"}, {1, "error: a / b"}, {2, "rows: 1 / 2"}},
      known);
  EXPECT_EQ(text, "folder/audit.json: audit\n  step 1: error: a / b\n");
  EXPECT_TRUE(known[0].met);
  EXPECT_TRUE(known[1].met);
  EXPECT_FALSE(known[2].met);
  EXPECT_EQ(known[2].line, 5);
}

TEST(KnownDifferences, EachHasAReason) {
  for (const char* line :
       {"audit.json | 1 | result:", "audit.json | 1 | result: | ", "x", "| | |"}) {
    EXPECT_THROW(ParseKnownDifferences("known.txt", line), ScenarioError) << line;
  }
}

}  // namespace
}  // namespace tavcc
