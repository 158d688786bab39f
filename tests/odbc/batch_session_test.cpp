// All of a batch through FreeTDS' driver: what comes behind errors, and the end by an interrupt.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "foundation/conversions.h"
#include "odbc/odbc.h"
#include "odbc/support.h"
#include "odbc/tds_responder.h"

namespace tavcc {
namespace {

using testing::Delivery;
using ::testing::HasSubstr;
using testing::TdsAnswer;
using testing::TdsInt;
using testing::TdsType;

class Told final : public BatchReader {
 public:
  std::string text;

  void BeginRows(const std::vector<std::string>& columns) override {
    text += "columns " + columns.front() + "\n";
  }
  void Row(std::span<Value> values) override { text += "row " + ToText(values.front()) + "\n"; }
  void EndRows() override { text += "end\n"; }
  void RowCount(int64_t rows) override { text += "count " + std::to_string(rows) + "\n"; }
  void Message(const BatchMessage& message) override {
    text += (message.is_error ? "error " : "message ") + std::to_string(message.number) + " " +
            std::to_string(message.severity) + " line " + std::to_string(message.line) + " " +
            message.text + "\n";
  }
};

class OdbcBatch : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::string target =
        "Driver=FreeTDS;Server=127.0.0.1;Port=" + std::to_string(server_.port()) +
        ";UID=tester;PWD=none;TDS_Version=7.4";
    static const bool installed =
        testing::DriverIsInstalled("Driver=FreeTDS;Server=127.0.0.1;Port=1");
    if (!installed) GTEST_SKIP() << "the driver of package tdsodbc is missing";
    session_ = OpenOdbc({target});
  }

  static TdsAnswer OneRow(const char* column, int32_t number) {
    return TdsAnswer().Columns({{column, TdsType::kInt}}).Row({TdsInt(number)});
  }

  testing::TdsResponder server_;
  BatchSessionPtr session_;
};

TEST_F(OdbcBatch, ResultsCountsAndMessagesComeInTheirOrder) {
  server_.Answer("batch", TdsAnswer()
                              .Columns({{"A", TdsType::kInt}})
                              .Row({TdsInt(1)})
                              .Statement(1)
                              .Message("said")
                              .Columns({{"B", TdsType::kInt}})
                              .Row({TdsInt(2)})
                              .Row({TdsInt(3)})
                              .Statement(2)
                              .Statement(5)
                              .StatementWithoutCount());
  Told told;
  EXPECT_TRUE(session_->RunBatch("batch", told));
  EXPECT_EQ(told.text,
            "columns A\nrow 1\nend\ncount 1\nmessage 0 0 line 1 said\n"
            "columns B\nrow 2\nrow 3\nend\ncount 2\ncount 5\n");
}

TEST_F(OdbcBatch, WhatComesBehindTheFirstErrorIsToldToo) {
  server_.Answer("batch", TdsAnswer()
                              .Error(208, "Invalid object name 'X'.", 7, 42)
                              .StatementWithoutCount()
                              .Columns({{"B", TdsType::kInt}})
                              .Row({TdsInt(2)})
                              .Statement(1)
                              .Error(8134, "Divide by zero error encountered.", 1, 3)
                              .StatementWithoutCount()
                              .Statement(4));
  Told told;
  EXPECT_TRUE(session_->RunBatch("batch", told));
  EXPECT_EQ(told.text,
            "error 208 16 line 42 Invalid object name 'X'.\ncolumns B\nrow 2\nend\ncount 1\n"
            "error 8134 16 line 3 Divide by zero error encountered.\ncount 4\n");
}

TEST_F(OdbcBatch, AnInterruptCancelsAtTheServer) {
  server_.Answer("waitfor", TdsAnswer(), Delivery::kUntilCancelled);
  std::thread other([&] {
    while (server_.Received().empty()) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(200));  // the driver waits for an answer
    session_->Interrupt();
  });
  Told told;
  EXPECT_FALSE(session_->RunBatch("waitfor", told));
  other.join();
  EXPECT_EQ(told.text, "");
  EXPECT_THAT(server_.Received(), ::testing::ElementsAre("waitfor", "cancel"));
  EXPECT_TRUE(session_->RunBatch("next", told));
}

TEST_F(OdbcBatch, ALostConnectionIsTheLastMessage) {
  server_.Answer("batch", OneRow("A", 1).Statement(1), Delivery::kCutOff);
  Told told;
  session_->RunBatch("batch", told);
  EXPECT_THAT(told.text, HasSubstr("the connection to the database was lost"));
  EXPECT_EQ(session_->State(), Connection::kStateClosed);
}

}  // namespace
}  // namespace tavcc
