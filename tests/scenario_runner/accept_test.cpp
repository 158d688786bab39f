// Taking what came for what is expected: JSON that is changed in place, and scenarios.
#include "scenario/accept.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/embedded_backend.h"
#include "scenario/json_edit.h"
#include "scenario/runner.h"
#include "scenario/word_diff.h"
#include "scenario_runner/fake_backend.h"

namespace tavcc::testing {
namespace {

std::string Edited(std::string_view text, std::string_view updated) {
  return Rewritten(text, ParseJson(updated));
}

TEST(Rewritten, LeavesWhatStays) {
  const std::string text = "{ \"a\" : 1,\n\t\"b\":[1 ,2],\"c\" :{\"x\": \"\\u5355\"}}\n";
  EXPECT_EQ(Edited(text, R"({"a": 1, "b": [1, 2], "c": {"x": "单"}})"), text);
  EXPECT_EQ(Edited(text, R"({"a": 1, "b": [1, 3], "c": {"x": "单"}})"),
            "{ \"a\" : 1,\n\t\"b\":[1 ,3],\"c\" :{\"x\": \"\\u5355\"}}\n");
}

TEST(Rewritten, ElementsGoAndComeOnLinesOfTheirOwn) {
  const std::string text =
      "{\n"
      "  \"statements\": [\n"
      "    \"one\",\n"
      "    \"two\",\n"
      "    \"three\"\n"
      "  ]\n"
      "}\n";
  EXPECT_EQ(Edited(text, R"({"statements": ["one", "new", "two", "three"]})"),
            "{\n"
            "  \"statements\": [\n"
            "    \"one\",\n"
            "    \"new\",\n"
            "    \"two\",\n"
            "    \"three\"\n"
            "  ]\n"
            "}\n");
  EXPECT_EQ(Edited(text, R"({"statements": ["two", "three", "four"]})"),
            "{\n"
            "  \"statements\": [\n"
            "    \"two\",\n"
            "    \"three\",\n"
            "    \"four\"\n"
            "  ]\n"
            "}\n");
  EXPECT_EQ(Edited(text, R"({"statements": []})"), "{\n  \"statements\": []\n}\n");
}

TEST(Rewritten, ElementsStayOnALineWhereTheyAre) {
  EXPECT_EQ(
      Edited(R"({"rows": [[1, "a"], [2, "b"]]})", R"({"rows": [[1, "a"], [5, "b"], [3, null]]})"),
      R"({"rows": [[1, "a"], [5, "b"], [3, null]]})");
  EXPECT_EQ(Edited(R"({"rows": []})", R"({"rows": [[1], [2]]})"), R"({"rows": [[1], [2]]})");
}

TEST(Rewritten, BreaksALineThatGrowsTooLong) {
  const std::string longer(60, 'x');
  EXPECT_EQ(Edited("{\n  \"statements\": [\"a\"]\n}",
                   R"({"statements": ["a", ")" + longer + R"(", ")" + longer + R"("]})"),
            "{\n  \"statements\": [\n    \"a\",\n    \"" + longer + "\",\n    \"" + longer +
                "\"\n  ]\n}");
}

TEST(Rewritten, MembersGoAndCome) {
  const std::string text = R"({"call": "x", "expect": {"result": true, "m": ""}, "note": "n"})";
  EXPECT_EQ(Edited(text, R"({"call": "x", "note": "n", "error": {"number": 5}})"),
            R"({"call": "x", "note": "n", "error": {"number": 5}})");
  EXPECT_EQ(Edited("{\n  \"call\": \"x\",\n  \"note\": \"n\"\n}",
                   R"({"call": "x", "note": "n", "rows": [[1]]})"),
            "{\n  \"call\": \"x\",\n  \"note\": \"n\",\n  \"rows\": [[1]]\n}");
  EXPECT_EQ(Edited(text, R"({"note": "n"})"), R"({"note": "n"})") << "the first ones go, too";
}

TEST(WordDiff, MarksWordsAndShowsLineBreaks) {
  EXPECT_EQ(WordDiff("where FID=1", "where  FID=12"), "where {+ +}FID=[-1-]{+12+}");
  EXPECT_EQ(WordDiff("a\r\nb", "a\r\nc"), "a\\r\\n\n[-b-]{+c+}");
  EXPECT_EQ(WordDiff("已审核", "已反审核"), "已{+反+}审核");
}

constexpr const char* kSelect = "Select FStatus,FVoucherID From T_CC_ZZCX where FID=1";
constexpr const char* kUpdate =
    "Update T_CC_ZZCX set FCheckerID=2,FCheckDate=GetDate(),FStatus=1  where FID=1";

// The text after accepting, which must then pass and change no more.
std::string AcceptedText(const std::string& text) {
  FakeBackend backend;
  const Acceptance acceptance = AcceptScenario("f.json", text, backend);
  EXPECT_THAT(acceptance.notes, ::testing::IsEmpty());
  const Scenario scenario = ParseScenario("f.json", acceptance.text);
  EXPECT_EQ(DescribeFailures(scenario, RunScenario(scenario, backend)), "");
  EXPECT_EQ(AcceptScenario("f.json", acceptance.text, backend).text, acceptance.text);
  return acceptance.text;
}

std::string File(const std::string& steps) {
  return "{\n  \"name\": \"n\",\n  \"steps\": [\n" + steps + "\n  ]\n}\n";
}

TEST(AcceptScenario, LeavesAPassingOneAlone) {
  const std::string text =
      File(R"(    {"call": "cls_CX.AuditBill", "args": {"lngFID": 1, "lngUserID": 2},
     "expect": {"result": true},
     "sweep": {"expect": {"result": false, "strReturnMsg": "disk full"}}})");
  EXPECT_EQ(AcceptedText(text), text);
}

TEST(AcceptScenario, TakesResultsRowsErrorsAndStatements) {
  const std::string call = R"("call": "cls_CX.AuditBill", "args": {"lngFID": 1, "lngUserID": 2})";
  EXPECT_EQ(
      AcceptedText(File("    {" + call + R"(, "expect": {"result": false, "strReturnMsg": "no"},
     "statements": [
       ")" + kSelect + R"(",
       "gone"
     ]},
    {"query": "status", "rows": [[0], [2]]},
    {"query": "broken", "rows": []},
    {"query": "status", "rows": [[1], [1], [2]], "error": {"number": 208}})")),
      File("    {" + call + R"(, "expect": {"result": true, "strReturnMsg": ""},
     "statements": [
       ")" +
           kSelect + R"(",
       ")" +
           kUpdate + R"("
     ]},
    {"query": "status", "rows": [[1], [1], [2]]},
    {
      "query": "broken",
      "error": {"number": 208, "source": "", "description": "Invalid object name 'broken'."}
    },
    {"query": "status", "rows": [[1], [1], [2]]})"));
}

TEST(AcceptScenario, AFailingStatementIsFoundByItsText) {
  const std::string call = R"("call": "cls_CX.AuditBill", "args": {"lngFID": 1, "lngUserID": 2})";
  const std::string expected = R"(, "expect": {"result": false, "strReturnMsg": "disk full"}})";
  // The rule sent its update first when the file was written.
  EXPECT_EQ(AcceptedText(File("    {" + call + R"(, "fail": {"at": 1}, "statements": [")" +
                              kUpdate + R"("])" + expected)),
            File("    {" + call + R"(, "fail": {"at": 2}, "statements": [")" + kSelect + R"(", ")" +
                 kUpdate + R"("])" + expected));
}

TEST(AcceptScenario, ASweepIsSharedOut) {
  const std::string call = R"("call": "cls_CX.AuditBill", "args": {"lngFID": 1, "lngUserID": 2})";
  const std::string after = R"({"query": "status", "rows": [[0], [1], [2]]})";
  EXPECT_EQ(
      AcceptedText(File("    {" + call + R"(, "sweep": {"expect": {"result": true}, "then": [)" +
                        after + "]}}")),
      File("    {" + call + R"(, "sweep": {"expect": {"result": false}, "then": [)" + after +
           "]}}"));
}

TEST(AcceptScenario, WhatCannotBeRunIsNoted) {
  FakeBackend backend;
  const std::string text =
      R"({"name": "n", "sql": ["broken"], "steps": [{"query": "status", "rows": []}]})";
  const Acceptance acceptance = AcceptScenario("f.json", text, backend);
  EXPECT_EQ(acceptance.text, text);
  ASSERT_EQ(acceptance.notes.size(), 1u);
  EXPECT_THAT(acceptance.notes[0],
              ::testing::HasSubstr("f.json: step 1: the start state cannot be made: "));
  EXPECT_THROW(AcceptScenario("f.json", "{}", backend), ScenarioError);
}

}  // namespace
}  // namespace tavcc::testing
