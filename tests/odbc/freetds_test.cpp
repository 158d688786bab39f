// The session through FreeTDS' driver, to a server of the tests: what SQLite's driver has no word
// for.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>

#include "foundation/error.h"
#include "odbc/odbc.h"
#include "odbc/support.h"
#include "odbc/tds_responder.h"

namespace tavcc {
namespace {

using ::testing::AllOf;
using testing::Delivery;
using ::testing::ElementsAre;
using testing::ErrorOf;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::Not;
using testing::TdsAnswer;
using testing::TdsDateTime;
using testing::TdsDecimal;
using testing::TdsInt;
using testing::TdsLongText;
using testing::TdsNull;
using testing::TdsText;
using testing::TdsType;

constexpr const char* kPassword = "top;secret";

std::string Target(uint16_t port) {
  return "Driver=FreeTDS;Server=127.0.0.1;Port=" + std::to_string(port) + ";UID=tester;PWD={" +
         kPassword + "};TDS_Version=7.4";
}

auto Error(int32_t number, const char* text) {
  return AllOf(Field(&ConnectionError::number, number), Field(&ConnectionError::description, text));
}

class FreeTdsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    static const bool installed = testing::DriverIsInstalled(Target(1));
    if (!installed) GTEST_SKIP() << "the driver of package tdsodbc is missing";
    session_ = OpenOdbc({Target(server_.port())});
  }
  // The seconds until the batch, for which the server takes for ever, is given up after one.
  double SecondsUntilGivenUp(const char* batch, std::optional<AutomationError>& error) {
    session_->Close();  // the server serves one at a time
    session_ = OpenOdbc({Target(server_.port()), 15, 1});
    const auto start = std::chrono::steady_clock::now();
    error = ErrorOf([&] { session_->Execute(batch); });
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }

  testing::TdsResponder server_;
  ConnectionPtr session_;
};

TEST_F(FreeTdsTest, ABatchArrivesAsItIs) {
  const std::string batch = "Update T set F='单😀' -- {ts} ? \r\n  where  A=1";
  EXPECT_FALSE(session_->Execute(batch)->IsOpen());
  EXPECT_THAT(server_.Received(), ElementsAre(batch));
}

TEST_F(FreeTdsTest, EachKindOfValue) {
  std::string longer = "x";
  while (longer.size() < 100'000) longer += "单😀";
  server_.Answer("select",
                 TdsAnswer()
                     .Columns({{"数量", TdsType::kInt},
                               {"B", TdsType::kText},
                               {"C", TdsType::kLongText},
                               {"D", TdsType::kDecimal, 10},
                               {"E", TdsType::kDateTime}})
                     .Row({TdsInt(-7), TdsText("单据😀"), TdsLongText(longer),
                           // 10^38 - 1
                           TdsDecimal(true, 0x4B3B4CA85A86C47A, 0x098A223FFFFFFFFF),
                           // 10:00:00 and one 300th
                           TdsDateTime(46094, 36000 * 300 + 1)})
                     .Row({TdsNull(TdsType::kInt), TdsText(""), TdsLongText(""),
                           TdsDecimal(false, 0, 5), TdsDateTime(-1, 0)})
                     .Row({TdsInt(0), TdsNull(TdsType::kText), TdsNull(TdsType::kLongText),
                           TdsNull(TdsType::kDecimal), TdsNull(TdsType::kDateTime)})
                     .Statement(3));
  const RecordsetPtr rows = session_->Execute("select");
  ASSERT_EQ(rows->RecordCount(), 3);
  EXPECT_EQ(rows->FieldName(0), "数量");
  EXPECT_EQ(rows->Field(0), Value(int32_t{-7}));
  EXPECT_EQ(rows->Field(1), Value("单据😀"));
  EXPECT_EQ(rows->Field(2), Value(longer));
  EXPECT_EQ(rows->Field(3), Value(*Decimal::Parse("-9999999999999999999999999999.9999999999")));
  EXPECT_EQ(rows->Field(4), Value(*DateTime::Parse("2026-03-15 10:00:00.003")));
  rows->MoveNext();
  EXPECT_TRUE(rows->Field(0).IsNull());
  EXPECT_EQ(rows->Field(1), Value(""));
  EXPECT_EQ(rows->Field(2), Value(""));
  EXPECT_EQ(rows->Field(3), Value(*Decimal::Parse("0.0000000005")));
  EXPECT_EQ(rows->Field(4), Value(*DateTime::Parse("1899-12-31")));
  rows->MoveNext();
  for (int i = 1; i < 5; ++i) EXPECT_TRUE(rows->Field(i).IsNull()) << i;
}

TEST_F(FreeTdsTest, TheFirstOfSeveralResults) {
  server_.Answer("batch", TdsAnswer()
                              .Statement(3)
                              .Columns({{"A", TdsType::kInt}})
                              .Row({TdsInt(1)})
                              .Statement(1)
                              .Columns({{"B", TdsType::kInt}})
                              .Statement(0)
                              .Statement(1));
  const RecordsetPtr rows = session_->Execute("batch");
  EXPECT_EQ(rows->FieldName(0), "A");
  EXPECT_EQ(rows->RecordCount(), 1);
  EXPECT_TRUE(session_->Errors().empty());
}

TEST_F(FreeTdsTest, AMessageIsNoError) {
  server_.Answer("print", TdsAnswer()
                              .Message("第一")
                              .Statement(0)
                              .Columns({{"A", TdsType::kInt}})
                              .Row({TdsInt(1)})
                              .Statement(1));
  EXPECT_EQ(session_->Execute("print")->RecordCount(), 1);
  EXPECT_THAT(session_->Errors(), ElementsAre(Error(0, "第一")));
}

TEST_F(FreeTdsTest, EachErrorOfABatchIsSeen) {
  server_.Answer("batch", TdsAnswer()
                              .Columns({{"A", TdsType::kInt}})
                              .Row({TdsInt(1)})
                              .Statement(1)
                              .Error(547, "第一")
                              .Statement(0)
                              .Statement(1)
                              .Error(2627, "second")
                              .Statement(0));
  const auto error = ErrorOf([&] { session_->Execute("batch"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 547);
  EXPECT_EQ(error->description(), "第一");
  EXPECT_THAT(session_->Errors(), ElementsAre(Error(547, "第一"), Error(2627, "second")));
}

TEST_F(FreeTdsTest, SoAreThoseBehindAFirstStatementThatFails) {
  server_.Answer("batch", TdsAnswer()
                              .Error(547, "first")
                              .Message("terminated")
                              .Statement(0)
                              .Columns({{"A", TdsType::kInt}})
                              .Row({TdsInt(1)})
                              .Statement(1)
                              .Error(2627, "第二")
                              .Statement(0)
                              .Statement(1));
  EXPECT_EQ(ErrorOf([&] { session_->Execute("batch"); })->number(), 547);
  EXPECT_THAT(session_->Errors(),
              ElementsAre(Error(547, "first"), Error(0, "terminated"), Error(2627, "第二")));
  EXPECT_THAT(server_.Received(), ElementsAre("batch")) << "the rest of the batch was cancelled";
  session_->Execute("next");
  EXPECT_TRUE(session_->Errors().empty());
}

TEST_F(FreeTdsTest, AnErrorBetweenTheRows) {
  server_.Answer("select", TdsAnswer()
                               .Columns({{"A", TdsType::kInt}})
                               .Row({TdsInt(1)})
                               .Error(8134, "division by zero")
                               .Statement(1)
                               .Error(547, "behind it")
                               .Statement(0));
  EXPECT_EQ(ErrorOf([&] { session_->Execute("select"); })->number(), 8134);
  EXPECT_THAT(session_->Errors(),
              ElementsAre(Error(8134, "division by zero"), Error(547, "behind it")));
}

TEST_F(FreeTdsTest, OutputParametersAreTheLastResult) {
  const std::string batch =
      "DECLARE @out1 nvarchar(max)\r\n"
      "SET @out1 = N''\r\n"
      "EXEC sp_Post @FID = 7, @Message = @out1 OUTPUT\r\n"
      "SELECT @out1 AS [@Message]";
  server_.Answer(batch, TdsAnswer()
                            .Columns({{"A", TdsType::kInt}})
                            .Row({TdsInt(1)})
                            .Statement(1)
                            .Statement(1)
                            .Columns({{"@Message", TdsType::kLongText}})
                            .Row({TdsLongText("单据已审核")})
                            .Statement(1));
  ProcedureParameter parameters[] = {{"@FID", int32_t{7}}, {"@Message", "", true}};
  session_->CallProcedure("sp_Post", parameters);
  EXPECT_EQ(parameters[1].value, Value("单据已审核"));
}

TEST_F(FreeTdsTest, AConnectionCutInTheMiddleOfAnAnswerIsLost) {
  TdsAnswer rows;
  rows.Columns({{"A", TdsType::kInt}});
  for (int i = 0; i < 100; ++i) rows.Row({TdsInt(i)});
  server_.Answer("select", rows.Statement(100), Delivery::kCutOff);
  const auto error = ErrorOf([&] { session_->Execute("select"); });
  ASSERT_TRUE(error);
  EXPECT_THAT(error->description(), HasSubstr("the connection to the database was lost"));
  EXPECT_EQ(session_->State(), Connection::kStateClosed);
  ReopenOdbc(*session_);
  EXPECT_FALSE(session_->Execute("update")->IsOpen());
}

TEST_F(FreeTdsTest, AConnectionCutBeforeTheAnswerIsLost) {
  server_.Answer("update", TdsAnswer(), Delivery::kCutOff);
  const auto error = ErrorOf([&] { session_->Execute("update"); });
  ASSERT_TRUE(error);
  EXPECT_THAT(error->description(), HasSubstr("the connection to the database was lost"));
  EXPECT_EQ(session_->State(), Connection::kStateClosed);
}

TEST_F(FreeTdsTest, ABatchThatTakesTooLongIsCancelled) {
  server_.Answer("waitfor", TdsAnswer(), Delivery::kUntilCancelled);
  std::optional<AutomationError> error;
  const double seconds = SecondsUntilGivenUp("waitfor", error);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->description(), "Timeout expired");
  EXPECT_LT(seconds, 60);
  EXPECT_THAT(server_.Received(), ElementsAre("waitfor", "cancel"));
  EXPECT_EQ(session_->State(), Connection::kStateOpen);
  EXPECT_FALSE(session_->Execute("update")->IsOpen());
}

TEST_F(FreeTdsTest, AServerThatAnswersNoMoreIsGivenUp) {
  server_.Answer("waitfor", TdsAnswer(), Delivery::kNever);
  std::optional<AutomationError> error;
  const double seconds = SecondsUntilGivenUp("waitfor", error);
  ASSERT_TRUE(error);
  EXPECT_THAT(error->description(), HasSubstr("Timeout expired"));
  EXPECT_LT(seconds, 60);
}

TEST_F(FreeTdsTest, ARefusedLoginSaysWhyAndKeepsThePassword) {
  session_->Close();  // the server serves one at a time
  server_.RefuseLogins(18456, std::string("Login failed for 'tester' with ") + kPassword);
  const auto error = ErrorOf([&] { OpenOdbc({Target(server_.port())}); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 18456);
  EXPECT_THAT(error->description(), HasSubstr("Login failed for 'tester'"));
  EXPECT_THAT(error->description(), Not(HasSubstr("secret")));
}

}  // namespace
}  // namespace tavcc
