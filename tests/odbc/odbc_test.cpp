// The connection over ODBC, on SQLite's driver: what does not depend on the server's dialect.
#include "odbc/odbc.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "foundation/error.h"
#include "odbc/support.h"

namespace tavcc {
namespace {

using testing::ErrorOf;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* kDriver = "Driver=SQLite3;Database=";

class OdbcTest : public ::testing::Test {
 protected:
  void SetUp() override {
    static const bool installed = testing::DriverIsInstalled(std::string(kDriver) + ":memory:");
    if (!installed) GTEST_SKIP() << "the driver of package libsqliteodbc is missing";
    session_ = OpenOdbc({kDriver + file_});
  }
  ~OdbcTest() override {
    session_.reset();
    std::filesystem::remove(file_);
  }

  Value Answer(const std::string& sql) { return session_->Execute(sql)->Field(0); }

  const std::string file_ = ::testing::TempDir() + "odbc_" +
                            ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".db";
  ConnectionPtr session_;
};

TEST_F(OdbcTest, ReadsEachKindOfValue) {
  session_->Execute(
      "create table T(A integer, B bit, C float, D timestamp, E varchar(20), F bigint, G smallint)");
  session_->Execute(
      "insert into T values(7, 1, 1.5, '2026-03-15 10:11:12.337', 'x', 9007199254740993, -3)");
  const RecordsetPtr row = session_->Execute("select * from T");
  EXPECT_EQ(row->Field("A"), Value(int32_t{7}));
  EXPECT_EQ(row->Field("B"), Value(true));
  EXPECT_EQ(row->Field("C"), Value(1.5));
  EXPECT_EQ(row->Field("D"), Value(*DateTime::Parse("2026-03-15 10:11:12.337")));
  EXPECT_EQ(row->Field("E"), Value("x"));
  EXPECT_EQ(row->Field("F"), Value(Decimal(int64_t{9007199254740993})));
  EXPECT_EQ(row->Field("G"), Value(int16_t{-3}));
}

// Where a pattern is asked for, "_" stands for any character.
TEST_F(OdbcTest, ColumnsAreThoseOfOneTable) {
  session_->Execute("create table T_A(Own integer)");
  session_->Execute("create table TXA(Other integer)");
  session_->Execute("create table T_AB(Longer integer)");
  const BatchSessionPtr batches = OpenOdbc({kDriver + file_});
  EXPECT_EQ(batches->Columns("T_A"), std::vector<std::string>{"Own"});
  EXPECT_EQ(batches->Columns("t_a"), std::vector<std::string>{"Own"});
  EXPECT_EQ(batches->Columns("TXA"), std::vector<std::string>{"Other"});
  EXPECT_EQ(batches->Columns("T%"), std::vector<std::string>{});
  EXPECT_EQ(batches->Definition("T_A"), "CREATE TABLE T_A (\n  Own INTEGER NULL\n)");
  EXPECT_EQ(batches->Definition("T_"), "");
}

TEST_F(OdbcTest, NullsOfEachKind) {
  session_->Execute(
      "create table T(A integer, B bit, C float, D timestamp, E varchar(20), F bigint)");
  session_->Execute("insert into T values(null, null, null, null, null, null)");
  const RecordsetPtr row = session_->Execute("select * from T");
  for (int i = 0; i < row->FieldCount(); ++i) EXPECT_TRUE(row->Field(i).IsNull()) << i;
}

TEST_F(OdbcTest, UnicodeBothWays) {
  for (const char* text : {"单据已审核", "𠀀😀 beyond the basic plane", "ÄÖÜ", "it''s"}) {
    std::string expected = text;
    if (const size_t quote = expected.find("''"); quote != std::string::npos) {
      expected.erase(quote, 1);
    }
    EXPECT_EQ(Answer(std::string("select '") + text + "'"), Value(expected));
  }
  EXPECT_EQ(session_->Execute("select 1 as \"数量\"")->FieldName(0), "数量");
}

TEST_F(OdbcTest, LongTextInPieces) {
  // Each piece but the first would begin in the middle of a character, were it cut by bytes.
  std::string text = "x";
  while (text.size() < 1'000'000) text += "单😀";
  session_->Execute("create table T(A text)");
  session_->Execute("insert into T values('" + text + "')");
  EXPECT_EQ(Answer("select A from T").text(), text);
}

TEST_F(OdbcTest, ARecordsetOutlivesItsConnection) {
  const RecordsetPtr rows = session_->Execute("select 1 as A union all select 2 order by A");
  session_->Close();
  EXPECT_EQ(rows->RecordCount(), 2);
  rows->MoveNext();
  EXPECT_EQ(rows->Field("a"), Value(int32_t{2}));
  rows->MoveNext();
  EXPECT_TRUE(rows->AtEnd());
  EXPECT_EQ(ErrorOf([&] { rows->Field(0); })->number(), 3021);
  EXPECT_EQ(ErrorOf([&] { rows->Field("B"); })->number(), 3265);
}

TEST_F(OdbcTest, AStatementWithoutRowsGivesAClosedRecordset) {
  EXPECT_FALSE(session_->Execute("create table T(A int)")->IsOpen());
  EXPECT_FALSE(session_->Execute("update T set A = 1")->IsOpen());
  EXPECT_TRUE(session_->Execute("select * from T")->AtEnd());
  EXPECT_TRUE(session_->Errors().empty());
}

TEST_F(OdbcTest, AnErrorHasNumberStateAndPlainText) {
  const auto error = ErrorOf([&] { session_->Execute("select * from NoTable"); });
  ASSERT_TRUE(error);
  EXPECT_NE(error->number(), 0);
  EXPECT_THAT(error->description(), HasSubstr("no such table: NoTable"));
  EXPECT_THAT(error->description(), Not(HasSubstr("[SQLite]")));
  ASSERT_EQ(session_->Errors().size(), 1u);
  EXPECT_EQ(session_->Errors()[0].number, error->number());
  EXPECT_EQ(session_->Errors()[0].description, error->description());
  EXPECT_EQ(session_->Errors()[0].sql_state.size(), 5u);
  EXPECT_EQ(Answer("select 5"), Value(int32_t{5}));
  EXPECT_TRUE(session_->Errors().empty());
}

TEST_F(OdbcTest, ABinaryColumnIsRefusedByName) {
  session_->Execute("create table T(Picture blob)");
  session_->Execute("insert into T values(x'00ff')");
  const auto error = ErrorOf([&] { session_->Execute("select * from T"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 13);
  EXPECT_THAT(error->description(), HasSubstr("Picture"));
}

TEST_F(OdbcTest, AClosedSessionRefusesAndCanBeOpenedAgain) {
  session_->Execute("create table T(A int)");
  session_->Execute("begin transaction");
  session_->Execute("insert into T values(1)");
  session_->Close();
  session_->Close();
  EXPECT_EQ(session_->State(), Connection::kStateClosed);
  EXPECT_EQ(ErrorOf([&] { session_->Execute("select 1"); })->number(), 3704);
  EXPECT_EQ(ErrorOf([&] { session_->CallProcedure("p", {}); })->number(), 3704);
  ReopenOdbc(*session_);
  EXPECT_EQ(session_->State(), Connection::kStateOpen);
  EXPECT_TRUE(session_->Execute("select * from T")->AtEnd()) << "the transaction was kept";
}

TEST_F(OdbcTest, AWrongDatabaseSaysWhyAndKeepsThePassword) {
  const auto error =
      ErrorOf([] { OpenOdbc({std::string(kDriver) + "/no/such/folder/x.db;PWD={se;cret}"}); });
  ASSERT_TRUE(error);
  EXPECT_THAT(error->description(), HasSubstr("/no/such/folder/x.db"));
  EXPECT_THAT(error->description(), HasSubstr("PWD=***"));
  EXPECT_THAT(error->description(), Not(HasSubstr("cret")));
}

TEST(OdbcWithoutADriver, TheDriverManagerSaysWhy) {
  const auto error = ErrorOf([] { OpenOdbc({"Driver=NoSuchDriver;UID=sa;Password=secret"}); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kDriverError);
  EXPECT_THAT(error->description(), HasSubstr("NoSuchDriver"));
  EXPECT_THAT(error->description(), Not(HasSubstr("[unixODBC]")));
  EXPECT_THAT(error->description(), Not(HasSubstr("secret")));
}

}  // namespace
}  // namespace tavcc
