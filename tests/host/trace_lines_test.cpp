#include "host/trace_lines.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavcc {
namespace {

struct Form {
  Value value;
  const char* text;
};

TEST(TraceLines, ValuesHaveTheFormsOfScenarios) {
  const Form forms[] = {
      {"a\"b\\c\r\n单", "\"a\\\"b\\\\c\\u000d\\u000a单\""},
      {"\xff\xe5\x8d", "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\""},
      {int32_t{-7}, "-7"},
      {int16_t{7}, "{\"integer\":7}"},
      {true, "true"},
      {Null{}, "null"},
      {Empty{}, "{\"empty\":true}"},
      {ObjectPtr(), "{\"nothing\":true}"},
      {1.5, "1.5"},
      {2.0, "2.0"},
      {1e300, "1.0000000000000001e+300"},
      {std::numeric_limits<double>::infinity(), "null"},
      {*Decimal::Parse("1.50"), "{\"decimal\":\"1.50\"}"},
      {*DateTime::Parse("2026-03-15 10:00:00"), "{\"date\":\"2026-03-15 10:00:00\"}"},
      {*DateTime::Parse("2026-03-15 00:00:00.003"), "{\"date\":\"2026-03-15 00:00:00.003\"}"},
  };
  for (const Form& form : forms) EXPECT_EQ(JsonText(form.value), form.text);
}

TEST(TraceLines, AStatementAndItsRows) {
  const auto seen = std::make_shared<SeenRows>(
      SeenRows{{"FID", "FName"}, {{int32_t{7}, "a"}, {int32_t{8}, Null{}}}, 3, true});
  LoggedStatement statement{.number = 2,
                            .text = "Select 'x'",
                            .from = {"../../src/checks/credit.cpp", 12},
                            .gate = "credit",
                            .rows = 3,
                            .milliseconds = 1.25,
                            .seen = seen};
  EXPECT_EQ(StatementLine(statement),
            "{\"statement\":2,\"sql\":\"Select 'x'\",\"from\":\"src/checks/credit.cpp:12\","
            "\"gate\":\"credit\",\"rows\":3,\"milliseconds\":1.250}");
  EXPECT_EQ(RowsLine(statement),
            "{\"rows_of\":2,\"columns\":[\"FID\",\"FName\"],\"rows\":[[7,\"a\"],[8,null]],"
            "\"count\":3,\"to_the_end\":true}");
}

// A result of an unknown number of rows is not the same as none.
TEST(TraceLines, NoResultHasNoCount) {
  LoggedStatement statement{.number = 1, .text = "x", .seen = std::make_shared<SeenRows>()};
  EXPECT_NE(StatementLine(statement).find("\"rows\":-1,"), std::string::npos);
  statement.seen = nullptr;
  EXPECT_NE(StatementLine(statement).find("\"rows\":null,"), std::string::npos);
}

TEST(TraceLines, AProcedureThatFails) {
  const LoggedStatement statement{.number = 1,
                                  .is_procedure = true,
                                  .text = "sp_Post",
                                  .parameters = {{.name = "@FID", .value = int32_t{7}}},
                                  .error = AutomationError(50000, "db", "disk full")};
  EXPECT_EQ(StatementLine(statement),
            "{\"statement\":1,\"procedure\":\"sp_Post\",\"parameters\":{\"@FID\":7},"
            "\"outputs\":{},\"from\":\"\",\"rows\":null,\"milliseconds\":0.000,"
            "\"error\":{\"number\":50000,\"source\":\"db\",\"description\":\"disk full\"}}");
}

TEST(TraceLines, WhatTheHostAnswered) {
  EXPECT_EQ(HostLine({HostQuestion::kSetting, "IC", "UnderStock", "1", "negative stock"}),
            "{\"host\":\"setting\",\"category\":\"IC\",\"key\":\"UnderStock\",\"value\":\"1\","
            "\"gate\":\"negative stock\"}");
  EXPECT_EQ(HostLine({HostQuestion::kPublished, "", "IndustryType", Empty{}}),
            "{\"host\":\"published\",\"key\":\"IndustryType\",\"value\":{\"empty\":true}}");
  EXPECT_EQ(HostLine({HostQuestion::kUser, "", "", int16_t{7}}),
            "{\"host\":\"user\",\"value\":{\"integer\":7}}");
}

TEST(TraceLines, WhatAGateAnswered) {
  EXPECT_EQ(GateLine({"credit", Pass()}), "{\"gate\":\"credit\",\"answer\":\"passed\"}");
  EXPECT_EQ(GateLine({"credit", NotAsked()}), "{\"gate\":\"credit\",\"answer\":\"not asked\"}");
  EXPECT_EQ(GateLine({"credit", std::nullopt}), "{\"gate\":\"credit\",\"answer\":\"failed\"}");
  EXPECT_EQ(GateLine({"credit", Refuse("no", {"/src/checks/credit.cpp", 116})}),
            "{\"gate\":\"credit\",\"answer\":\"refused\",\"message\":\"no\","
            "\"rule\":\"src/checks/credit.cpp:116\"}");
}

TEST(TraceLines, ErrorsThatAStatementLeft) {
  EXPECT_EQ(ErrorsLine(3, {{50000, "db", "disk full", "42000"}}),
            "{\"errors_of\":3,\"errors\":[{\"number\":50000,\"source\":\"db\","
            "\"description\":\"disk full\",\"state\":\"42000\"}]}");
}

}  // namespace
}  // namespace tavcc
