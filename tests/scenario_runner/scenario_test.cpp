// What a malformed scenario file is told: the file, the step and the key, in one line.
#include "scenario/scenario.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace tavcc {
namespace {

struct Malformed {
  const char* text;
  const char* message;
};

constexpr Malformed kMalformed[] = {
    {"", "f.json: no JSON at line 1, column 1: "},
    {"{\n \"name\": \"x\",\n \"steps\": [}", "f.json: no JSON at line 3, column 12"},
    {"[]", "f.json: must be an object"},
    {R"({"steps": [{"query": "q"}]})", R"(f.json, key "name": is missing)"},
    {R"({"name": 1, "steps": []})", R"(f.json, key "name": must be a text)"},
    {R"({"name": "x"})", R"(f.json, key "steps": there is none)"},
    {R"({"name": "x", "name": "y"})", R"(f.json: the key "name" stands twice in one object)"},
    {R"({"name": "x", "step": []})", R"(f.json, key "step": unknown key; did you mean steps?)"},
    {R"({"name": "x", "user": "me"})", R"(f.json, key "user": must be a 32-bit integer)"},
    {R"({"name": "x", "user": 40000})", R"(f.json, key "user": must be a 16-bit integer)"},
    {R"({"name": "x", "now": "soon"})", R"(f.json, key "now": no date: soon)"},
    {R"({"name": "x", "denied_rights": 1040005})",
     R"(f.json, key "denied_rights": must be a list)"},
    {R"({"name": "x", "profile": {"UnderStock": "1"}})",
     R"(f.json, key "profile": "UnderStock" must have the form category.key)"},
    {R"({"name": "x", "profile": {"IC.UnderStock": 1}})",
     R"(f.json, key "profile": "IC.UnderStock" must be a text or null)"},
    {R"({"name": "x", "sql": [1]})", R"(f.json, key "sql": must list texts)"},
    {R"({"name": "x", "steps": [{}]})",
     R"(f.json: step 1: has neither the key "call" nor "query")"},
    {R"({"name": "x", "steps": [{"query": "q"}, {"call": "cls_CY.AuditBill"}]})",
     R"(f.json: step 2, key "call": there is no class "cls_CY"; did you mean cls_CX?)"},
    {R"({"name": "x", "steps": [{"call": "cls_CX.AuditBil"}]})",
     R"(f.json: step 1, key "call": cls_CX has no method "AuditBil"; did you mean AuditBill?)"},
    {R"({"name": "x", "steps": [{"call": "AuditBill"}]})",
     R"(f.json: step 1, key "call": "AuditBill" must have the form CLASS.METHOD)"},
    {R"({"name": "x", "steps": [{"call": "cls_CX.AuditBill", "args": {"FID": 1}}]})",
     R"(f.json: step 1, key "args": "FID" is no argument of AuditBill; did you mean lngFID?)"},
    {R"({"name": "x", "steps": [{"call": "cls_CX.AuditBill", "expect": {"rs": []}}]})",
     R"(f.json: step 1, key "expect": "rs" is neither "result" nor an argument of AuditBill)"},
    {R"({"name": "x", "steps": [{"call": "cls_CX.AuditBill", "rows": []}]})",
     R"(f.json: step 1, key "rows": unknown key)"},
    {R"({"name": "x", "steps": [{"call": "cls_CX.AuditBill", "fail": {"at": 0}}]})",
     R"(f.json: step 1, key "fail", key "at": must be the position of a statement, from 1)"},
    {R"({"name": "x", "steps": [{"call": "cls_CX.AuditBill", "statements": [{"sql": "q"}]}]})",
     R"(f.json: step 1, key "statements": each is a text or {"procedure": "name", )"},
    {R"({"name": "x", "steps": [{"call": "cls_CX.AuditBill", "error": {"text": "x"}}]})",
     R"(f.json: step 1, key "error", key "text": unknown key)"},
    {R"({"name": "x", "steps": [{"call": "cls_CX.AuditBill", "sweep": {}}]})",
     R"(f.json: step 1, key "sweep": expects nothing; give "expect", "error" or "then")"},
    {R"({"name": "x", "steps": [{"query": "q", "rows": [1]}]})",
     R"(f.json: step 1, key "rows": each row is a list of fields or an object of columns)"},
};

TEST(ParseScenario, TellsFileStepAndKeyOfWhatIsWrong) {
  for (const Malformed& malformed : kMalformed) {
    try {
      ParseScenario("f.json", malformed.text);
      ADD_FAILURE() << "was accepted: " << malformed.text;
    } catch (const ScenarioError& error) {
      EXPECT_THAT(error.what(), ::testing::StartsWith(malformed.message)) << malformed.text;
      EXPECT_THAT(error.what(), ::testing::Not(::testing::HasSubstr("\n"))) << malformed.text;
    }
  }
}

TEST(ParseScenario, StartsFromTheDefaultsThatAreNotGiven) {
  const Scenario scenario = ParseScenario("f.json", R"({"name": "x", "steps": [{"query": "q"}]})");
  EXPECT_EQ(scenario.start.user, 16394);
  EXPECT_EQ(scenario.start.now.ToText(), "2026-03-15 10:00:00");
  EXPECT_TRUE(scenario.start.profile.empty());
}

TEST(ParseScenario, ReadsTheWholeStartState) {
  const StartState start = ParseScenario("f.json", R"({
    "name": "x", "user": 7, "now": "2025-12-31 23:59:59", "denied_rights": [1040005],
    "published": {"IndustryType": 1}, "resources": {"CHS": {"a": "b"}},
    "profile": {"IC.UnderStock": "1", "IC.ControlPoint": null},
    "sql": ["one", "two"], "steps": [{"query": "q"}]})")
                               .start;
  EXPECT_EQ(start.user, 7);
  EXPECT_EQ(start.now.ToText(), "2025-12-31 23:59:59");
  EXPECT_THAT(start.denied_rights, ::testing::ElementsAre(1040005));
  EXPECT_EQ(start.published["IndustryType"], 1);
  EXPECT_EQ(start.resources.at("CHS").at("a"), "b");
  ASSERT_EQ(start.profile.size(), 2U);
  EXPECT_EQ(start.profile[0].second, "1");
  EXPECT_EQ(start.profile[1].second, std::nullopt);
  EXPECT_THAT(start.sql, ::testing::ElementsAre("one", "two"));
}

TEST(LoadScenario, NamesAFileThatCannotBeRead) {
  for (const char* file : {"/nowhere/a.json", "/"}) {
    try {
      LoadScenario(file);
      ADD_FAILURE() << file << " was read";
    } catch (const ScenarioError& error) {
      EXPECT_THAT(error.what(), ::testing::StartsWith(std::string("cannot read ") + file));
    }
  }
}

TEST(ScenarioFiles, AreThoseOfAFolderInOrder) {
  const auto folder = std::filesystem::temp_directory_path() / "tavcc_scenario_files_test";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder / "b");
  for (const char* name : {"c.json", "a.json", "b/d.json", "notes.txt"}) {
    std::ofstream(folder / name) << "{}";
  }
  EXPECT_THAT(ScenarioFiles({folder.string()}),
              ::testing::ElementsAre((folder / "a.json").string(), (folder / "b/d.json").string(),
                                     (folder / "c.json").string()));
  std::filesystem::remove_all(folder);
  EXPECT_THROW(ScenarioFiles({folder.string()}), ScenarioError);
}

}  // namespace
}  // namespace tavcc
