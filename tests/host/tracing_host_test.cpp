#include "host/tracing_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/host_services.h"
#include "host/fake_session.h"
#include "host/reference_host.h"
#include "host/trace_lines.h"

namespace tavcc {
namespace {

using ::testing::ElementsAre;
using testing::FakeSession;
using testing::OneColumn;
using ::testing::SizeIs;

class TracingHostTest : public ::testing::Test {
 protected:
  TracingHostTest() {
    session_->answer = [](auto) { return std::make_shared<OneColumn>(std::vector<Value>{"1"}); };
    log_.SetObserver({.rows = 10});
  }
  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const LoggedStatement& statement : log_.statements()) texts.push_back(statement.text);
    return texts;
  }

  std::shared_ptr<FakeSession> session_ = std::make_shared<FakeSession>();
  ReferenceHost inner_{[this](std::string_view) { return session_; }};
  StatementLog log_;
  TracingHost host_{inner_, log_};
};

TEST_F(TracingHostTest, EveryWayToTheDatabaseIsInTheLog) {
  const auto context = host_.NewDbContext();
  context->Bind("db");
  context->GetConnection()->Execute("Select 1");
  ExecuteSQL(host_, "db", "Select 2");
  EXPECT_EQ(GetFirstValue(host_, "db", "Select 3"), "1");
  EXPECT_THAT(Texts(), ElementsAre("Select 1", "Select 2", "Select 3"));
  EXPECT_EQ(log_.statements()[2].seen->count, 1);
  EXPECT_EQ(log_.statements()[1].rows, 1);
}

TEST_F(TracingHostTest, SettingsAreInTheLog) {
  EXPECT_EQ(GetProfile(host_, "db", "ControlPoint", "IC"), Value("1"));
  ASSERT_THAT(log_.settings(), SizeIs(1));
  EXPECT_EQ(log_.settings()[0].category, "IC");
  EXPECT_EQ(log_.settings()[0].key, "ControlPoint");
  EXPECT_EQ(log_.settings()[0].value, Value("1"));
}

TEST_F(TracingHostTest, ErrorsAreTheHostsOwn) {
  session_->answer = [](auto) -> RecordsetPtr { throw AutomationError(208, "db", "no table"); };
  EXPECT_THROW(ExecuteSQL(host_, "db", "Select 1"), AutomationError);
  ASSERT_THAT(log_.statements(), SizeIs(1));
  EXPECT_EQ(log_.statements()[0].error->number(), 208);
}

TEST(TraceLines, ValuesHaveTheFormsOfScenarios) {
  EXPECT_EQ(JsonText(Value("a\"b\\c\r\n单")), "\"a\\\"b\\\\c\\u000d\\u000a单\"");
  EXPECT_EQ(JsonText(Value(int32_t{-7})), "-7");
  EXPECT_EQ(JsonText(Value(true)), "true");
  EXPECT_EQ(JsonText(Value(Null{})), "null");
  EXPECT_EQ(JsonText(Value(1.5)), "1.5");
  EXPECT_EQ(JsonText(Value(*Decimal::Parse("1.50"))), "{\"decimal\":\"1.50\"}");
  EXPECT_EQ(JsonText(Value(*DateTime::Parse("2026-03-15 10:00:00"))),
            "{\"date\":\"2026-03-15 10:00:00\"}");
}

TEST(TraceLines, AStatementAndItsRows) {
  const auto seen = std::make_shared<SeenRows>(
      SeenRows{{"FID", "FName"}, {{int32_t{7}, "a"}, {int32_t{8}, Null{}}}, 3, true});
  const LoggedStatement statement{.number = 2,
                                  .text = "Select 'x'",
                                  .from = {"../../src/checks/credit.cpp", 12},
                                  .rows = 3,
                                  .milliseconds = 1.25,
                                  .seen = seen};
  EXPECT_EQ(StatementLine(statement),
            "{\"statement\":2,\"sql\":\"Select 'x'\",\"from\":\"src/checks/credit.cpp:12\","
            "\"rows\":3,\"milliseconds\":1.250}");
  EXPECT_EQ(RowsLine(statement),
            "{\"rows_of\":2,\"columns\":[\"FID\",\"FName\"],\"rows\":[[7,\"a\"],[8,null]],"
            "\"count\":3,\"to_the_end\":true}");
}

TEST(TraceLines, AProcedureThatFails) {
  const LoggedStatement statement{.number = 1,
                                  .is_procedure = true,
                                  .text = "sp_Post",
                                  .parameters = {{.name = "@FID", .value = int32_t{7}}},
                                  .error = AutomationError(50000, "db", "disk full")};
  EXPECT_EQ(StatementLine(statement),
            "{\"statement\":1,\"procedure\":\"sp_Post\",\"parameters\":{\"@FID\":7},"
            "\"outputs\":{},\"from\":\"\",\"milliseconds\":0.000,\"error\":{\"number\":50000,"
            "\"source\":\"db\",\"description\":\"disk full\"}}");
}

}  // namespace
}  // namespace tavcc
