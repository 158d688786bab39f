// A session that shows all of a batch, told in one line for each thing that it tells.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "embedded/embedded.h"
#include "foundation/conversions.h"
#include "foundation/error.h"

namespace tavcc::sql {
namespace {

class Told : public BatchReader {
 public:
  std::string text;

  void BeginRows(const std::vector<std::string>& columns) override {
    text += "columns";
    for (const std::string& column : columns) text += " " + column;
    text += "\n";
  }
  void Row(std::span<Value> values) override {
    text += "row";
    for (const Value& value : values) text += " " + (value.IsNull() ? "NULL" : ToText(value));
    text += "\n";
  }
  void EndRows() override { text += "end\n"; }
  void RowCount(int64_t rows) override { text += "count " + std::to_string(rows) + "\n"; }
  void Message(const BatchMessage& message) override {
    text += message.is_error ? "error " : "message ";
    text += std::to_string(message.number) + " " + std::to_string(message.severity) + " " +
            std::to_string(message.state) + " line " + std::to_string(message.line) + " " +
            message.procedure + (message.procedure.empty() ? "" : ": ") + message.text + "\n";
  }
};

struct ToldBatch {
  const char* batch;
  const char* told;
};

constexpr ToldBatch kToldBatches[] = {
    {"select 1 as A, null as B", "columns A B\nrow 1 NULL\nend\ncount 1\n"},
    {"select n from t where n > 9", "columns n\nend\ncount 0\n"},
    {"insert t values (7) insert t values (8)", "count 1\ncount 1\n"},
    {"update t set n = n", "count 2\n"},
    {"delete t where n = 3", "count 0\n"},
    {"select n into #copy from t", "count 2\n"},
    {"set nocount on delete t where n = 3 select 1 as A", "columns A\nrow 1\nend\n"},
    {"declare @n int set @n = 1 select @n = n from t print @n", "message 0 0 1 line 1 2\n"},
    {"create table u (a int)", ""},
    {"print 'a'\nprint 'b'", "message 0 0 1 line 1 a\nmessage 0 0 1 line 2 b\n"},
    {"select 1 as A\nselect 1/0\nselect 2 as B",
     "columns A\nrow 1\nend\ncount 1\nerror 8134 16 1 line 2 Divide by zero error "
     "encountered.\ncolumns B\nrow 2\nend\ncount 1\n"},
    {"select 1 as A\nselect * from nothing\nselect 2 as B",
     "columns A\nrow 1\nend\ncount 1\nerror 208 16 1 line 2 Invalid object name 'nothing'.\n"},
    {"print 'a' select from", "error 156 15 1 line 1 Incorrect syntax near the keyword 'from'.\n"},
    {"exec p",
     "count 2\nerror 8134 16 1 line 3 p: Divide by zero error encountered.\n"
     "message 0 0 1 line 4 p: behind\n"},
    {"exec('print ''x''')", "message 0 0 1 line 1 x\n"},
    {"declare @r table (n int) insert @r exec q select count(*) as C from @r",
     "count 2\ncolumns C\nrow 2\nend\ncount 1\n"},
    {"declare c cursor for select n from t order by n open c fetch next from c close c",
     "columns n\nrow 1\nend\ncount 1\n"},
    {"raiserror('loud', 16, 4)", "error 50000 16 4 line 1 loud\n"},
    {"\nraiserror('soft', 3, 4)", "message 50000 3 4 line 2 soft\n"},
};

class BatchSessionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    session_->Execute("create table t (n int) insert t values (1) insert t values (2)");
    session_->Execute(
        "create procedure p as\nupdate t set n = n\ndeclare @x int set @x = 1/0\n"
        "print 'behind'");
    session_->Execute("create procedure q as select n from t");
  }

  std::shared_ptr<Database> database_ = Database::Open({});
  BatchSessionPtr session_ = database_->NewSession();
};

TEST_F(BatchSessionTest, TellsAllInItsOrder) {
  for (const ToldBatch& c : kToldBatches) {
    session_->Execute("begin transaction");
    Told told;
    EXPECT_TRUE(session_->RunBatch(c.batch, told)) << c.batch;
    EXPECT_EQ(told.text, c.told) << c.batch;
    session_->Execute("if @@trancount > 0 rollback set nocount off");
  }
}

TEST_F(BatchSessionTest, ARuleSeesTheFirstResultAsEver) {
  Told told;
  session_->RunBatch("select 1 as A select 2 as B", told);
  EXPECT_EQ(ToText(session_->Execute("select 3 as C select 4 as D")->Field(0)), "3");
}

TEST_F(BatchSessionTest, AnInterruptEndsLoopsAndStatements) {
  for (const char* batch : {
           "while 1=1 update t set n = n + 1",
           "while 1=1 declare @x int",
           "with r as (select 1 as n union all select n + 1 from r where n < 100000000) "
           "select count(*) from r option (maxrecursion 0)",
       }) {
    session_->Execute("begin transaction insert t values (77)");
    // Where the batch has not begun yet, an interrupt is lost.
    std::atomic<bool> ended = false;
    std::thread other([&] {
      while (!ended) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        session_->Interrupt();
      }
    });
    Told told;
    EXPECT_FALSE(session_->RunBatch(batch, told)) << batch;
    ended = true;
    other.join();
    EXPECT_EQ(told.text.find("error"), std::string::npos) << told.text.substr(0, 200);
    session_->Execute("if @@trancount > 0 rollback");
    EXPECT_EQ(ToText(session_->Execute("select count(*) from t where n = 77")->Field(0)), "0");
  }
}

class Thrower final : public Told {
 public:
  void Row(std::span<Value>) override { throw std::runtime_error("no room"); }
};

TEST_F(BatchSessionTest, WhatAReaderThrowsClosesTheSession) {
  Thrower thrower;
  EXPECT_THROW(session_->RunBatch("begin transaction insert t values (5) select n from t", thrower),
               std::runtime_error);
  EXPECT_EQ(session_->State(), Connection::kStateClosed);
  database_->Reopen(*session_);
  EXPECT_EQ(ToText(session_->Execute("select count(*) from t where n = 5")->Field(0)), "0");
}

TEST_F(BatchSessionTest, TellsWhatThereIs) {
  session_->Execute("create view v as select n as m from t");
  std::string text;
  for (const SchemaObject& object : session_->Objects()) {
    text += std::to_string(static_cast<int>(object.kind)) + object.name + " ";
  }
  EXPECT_EQ(text, "2p 2q 0t 1v ");
  EXPECT_EQ(session_->Columns("t"), std::vector<std::string>{"n"});
  EXPECT_EQ(session_->Columns("V"), std::vector<std::string>{"m"});
  EXPECT_TRUE(session_->Columns("x").empty());
  EXPECT_NE(session_->Definition("t").find("CREATE TABLE"), std::string::npos);
  EXPECT_EQ(session_->Definition("x"), "");
}

}  // namespace
}  // namespace tavcc::sql
