// Running scenarios: which pass, which fail, and what a failure tells.
#include "scenario/runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario_runner/fake_backend.h"

namespace tavcc::testing {
namespace {

constexpr std::string_view kAudit =
    R"("call": "cls_CX.AuditBill", "args": {"lngFID": 1, "lngUserID": 2})";
constexpr std::string_view kSelect = "Select FStatus,FVoucherID From T_CC_ZZCX where FID=1";
constexpr std::string_view kUpdate =
    "Update T_CC_ZZCX set FCheckerID=2,FCheckDate=GetDate(),FStatus=1  where FID=1";

Scenario WithSteps(const std::string& steps) {
  return ParseScenario("f.json", R"({"name": "n", "steps": [)" + steps + "]}");
}

// What the scenario's first failing step tells; empty when it passes.
std::string Told(const std::string& steps) {
  FakeBackend backend;
  const Scenario scenario = WithSteps(steps);
  const auto failures = RunScenario(scenario, backend);
  return DescribeFailures(scenario, failures);
}

std::string Step(std::string_view call, std::string_view rest) {
  return "{" + std::string(call) + ", " + std::string(rest) + "}";
}

std::string Quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

TEST(RunScenario, PassesWhatComesAsExpected) {
  EXPECT_EQ(Told(Step(kAudit, R"("expect": {"result": true, "strReturnMsg": ""}, "statements": [)" +
                                  Quoted(kSelect) + "," + Quoted(kUpdate) + "]") +
                 R"(, {"query": "status", "rows": [[1], [1], [2]]})"
                 R"(, {"query": "broken", "error": {"number": 208}})"
                 R"(, {"query": "broken", "error": {}})"),
            "");
}

TEST(RunScenario, TellsStepDifferenceAndStatements) {
  EXPECT_EQ(Told(R"({"query": "status"}, )" +
                 Step(kAudit, R"("note": "case", "expect": {"result": false})")),
            "f.json: n\n"
            "  step 2 (case): call cls_CX.AuditBill\n"
            "    result: expected false, got true\n"
            "  statements sent:\n"
            "    1  " +
                Quoted(kSelect) +
                "\n       -> rows: 1\n"
                "    2  " +
                Quoted(kUpdate) + "\n       -> rows: 0\n");
}

TEST(RunScenario, RefusesWhatDiffers) {
  struct Row {
    std::string steps;
    const char* difference;
  };
  const Row rows[] = {
      {Step(kAudit, R"("expect": {"strReturnMsg": "no"})"),
       R"(strReturnMsg: expected "no", got "")"},
      {Step(kAudit, R"("statements": [])"), "statements: expected 0, got 2"},
      {Step(kAudit, R"("statements": [)" + Quoted(kSelect) + "]"), "statement 2: was not expected"},
      {Step(kAudit, R"("statements": [)" + Quoted(kSelect) + ", " + Quoted(kUpdate) + R"(, "x"])"),
       R"(statement 3: was not sent: "x")"},
      {Step(kAudit, R"("statements": [)" + Quoted(kUpdate) + ", " + Quoted(kUpdate) + "]"),
       "statement 1: differs\n"},
      {Step(kAudit,
            R"("statements": [{"procedure": "p", "parameters": {}}, )" + Quoted(kUpdate) + "]"),
       "statement 1: differs"},
      {Step(kAudit, R"("error": {})"), "expected an error, got none"},
      {Step(kAudit, R"("fail": {"at": 3})"), "fail: statement 3 was to fail, but only 2 were sent"},
      {R"({"query": "broken"})", "expected no error, got error 208"},
      {R"({"query": "broken", "error": {"number": 1}})", "error number: expected 1, got 208"},
      {R"({"query": "broken", "error": {"description": "x"}})",
       R"(error description: expected "x", got "Invalid object name 'broken'.")"},
      {R"({"query": "status", "rows": [[0], [1]]})", "rows: expected 2 rows, got 3"},
      {R"({"query": "status", "rows": [[0], [1], [1]]})", "rows row 3 FStatus: expected 1, got 2"},
  };
  for (const Row& row : rows) {
    EXPECT_THAT(Told(row.steps), ::testing::HasSubstr(row.difference)) << row.steps;
  }
}

TEST(RunScenario, MakesTheChosenStatementFail) {
  EXPECT_EQ(Told(Step(kAudit, R"("fail": {"at": 2, "number": 9, "description": "no room"},
                                "expect": {"result": false, "strReturnMsg": "no room"},
                                "statements": [)" +
                                  Quoted(kSelect) + "," + Quoted(kUpdate) + "]") +
                 R"(, {"query": "status", "rows": [[0], [1], [2]]})"),
            "");
}

TEST(RunScenario, StepsShareOneDatabase) {
  EXPECT_EQ(Told(Step(kAudit, R"("expect": {"result": true})") + "," +
                 Step(kAudit, R"("expect": {"strReturnMsg": "该单据已被审核，不能再审核！"})")),
            "");
}

TEST(RunScenario, TellsEveryFailingStep) {
  EXPECT_EQ(Told(R"({"query": "status", "rows": []}, {"query": "status"}, {"query": "broken"})"),
            "f.json: n\n"
            "  step 1: query status\n"
            "    rows: expected 0 rows, got 3\n"
            "    rows: too many: row 1 {\"FStatus\":0}\n"
            "    rows: too many: row 2 {\"FStatus\":1}\n"
            "    rows: too many: row 3 {\"FStatus\":2}\n"
            "  step 3: query broken\n"
            "    expected no error, got error 208 from \"\": \"Invalid object name 'broken'.\"\n");
}

TEST(RunScenario, AStartStateThatCannotBeMadeIsAFailure) {
  FakeBackend backend;
  const Scenario scenario = ParseScenario(
      "f.json", R"({"name": "n", "sql": ["broken"], "steps": [{"query": "status"}]})");
  const auto failures = RunScenario(scenario, backend);
  ASSERT_FALSE(failures.empty());
  EXPECT_EQ(failures.front().step, 0);
  EXPECT_THAT(failures.front().differences.front(), ::testing::HasSubstr("208"));
}

constexpr std::string_view kSweep =
    R"("sweep": {"expect": {"result": false, "strReturnMsg": "disk full"}})";

TEST(RunScenario, ASweepFailsEachStatementOnAFreshDatabase) {
  FakeBackend backend;
  const Scenario scenario = WithSteps(R"({"query": "status"},)" + Step(kAudit, kSweep));
  EXPECT_TRUE(RunScenario(scenario, backend).empty());
  EXPECT_EQ(backend.opened, 1 + 2);  // once for the steps, once for each of the two statements
}

TEST(RunScenario, ASweepTellsWhichStatementFailed) {
  EXPECT_THAT(Told(Step(kAudit, R"("sweep": {"expect": {"result": true}})")),
              ::testing::HasSubstr("sweep of cls_CX.AuditBill, statement 1 failing"));
}

TEST(RunScenario, SweepsMayNameStatementsAndLookAtTheDatabase) {
  EXPECT_EQ(Told(Step(kAudit, R"("sweep": [
                  {"at": [1], "fail": {"description": "a"}, "expect": {"strReturnMsg": "a"}},
                  {"expect": {"strReturnMsg": "disk full"},
                   "then": [{"query": "status", "rows": [[0], [1], [2]]}]}])")),
            "");
  EXPECT_THAT(Told(Step(kAudit, R"("sweep": {"then": [{"query": "status", "rows": [[1]]}]})")),
              ::testing::HasSubstr("status: rows: expected 1 rows, got 3"));
  EXPECT_THAT(Told(Step(kAudit, R"("sweep": {"at": [3], "expect": {"result": false}})")),
              ::testing::HasSubstr("statement 3 is to fail, but only 2 are sent"));
}

TEST(RunScenario, ASweepOfACallWithoutStatementsIsAFailure) {
  EXPECT_THAT(Told(R"({"call": "cls_CX.TransMode", "expect": {"result": 3},
                     "sweep": {"expect": {"result": 3}}})"),
              ::testing::HasSubstr("the call sends no statement that could fail"));
}

TEST(MakeArguments, SuppliesWhatIsNotGiven) {
  FakeBackendSession session(StartState{});
  const Supplies supplies{session.host(), session.dsn(), session.connection()};
  const MethodName audit = FindMethodByName("PublicSysInfo.AuditBill");
  const auto arguments = MakeArguments(supplies, *audit.method, ParseJson(R"({"CheckType": 1})"));
  ASSERT_EQ(arguments.size(), 7U);
  EXPECT_EQ(ToObject<Vector>(arguments[0])->Size(), 0);
  EXPECT_EQ(arguments[1], Value(1));
  EXPECT_EQ(arguments[2], Value("fake"));
  EXPECT_EQ(arguments[3], Value(false));
  EXPECT_NE(ToObject<Dictionary>(arguments[4]), nullptr);
  EXPECT_TRUE(arguments[5].IsMissing());

  const MethodName gate = FindMethodByName("cls_CX.VerifyDataBeforeAudit");
  EXPECT_NE(ToObject<Connection>(MakeArguments(supplies, *gate.method, Json::object())[1]),
            nullptr);
  EXPECT_EQ(MakeArguments(supplies, *gate.method, ParseJson(R"({"cn": null})"))[1],
            Value(ObjectPtr()));
}

TEST(DidYouMean, NamesTheNearest) {
  EXPECT_EQ(DidYouMean("cls_cy", {"PublicSysInfo", "cls_CX"}), "; did you mean cls_CX?");
  EXPECT_EQ(DidYouMean("quite else", {"PublicSysInfo", "cls_CX"}), "");
  EXPECT_EQ(DidYouMean("x", {}), "");
}

}  // namespace
}  // namespace tavcc::testing
