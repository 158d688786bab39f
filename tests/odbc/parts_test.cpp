// The parts of the ODBC connection that need no driver.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/error.h"
#include "odbc/diagnostics.h"
#include "odbc/procedure_batch.h"
#include "odbc/text.h"

namespace tavcc {
namespace {

using ::testing::ElementsAre;

TEST(Diagnostics, PrefixesGoButTheMessageStays) {
  struct Case {
    const char* given;
    const char* plain;
  };
  for (const Case& c : {
           Case{"[Microsoft][ODBC Driver 18 for SQL Server][SQL Server]Invalid object name 'X'.",
                "Invalid object name 'X'."},
           Case{"[FreeTDS][SQL Server][x] is no table", "[x] is no table"},
           Case{"[SQLite]no such table: X (1)", "no such table: X (1)"},
           Case{"[unixODBC][Driver Manager]Data source name not found",
                "Data source name not found"},
           Case{"[never closed", "[never closed"},
           Case{"plain", "plain"},
       }) {
    EXPECT_EQ(odbc::WithoutPrefixes(c.given), c.plain) << c.given;
  }
}

TEST(OdbcText, ThereAndBack) {
  for (const char* text : {"", "a", "é", "单据", "😀", "a😀b"}) {
    EXPECT_EQ(odbc::FromWide(odbc::ToWide(text)), text);
  }
  EXPECT_THAT(odbc::ToWide("😀"), ElementsAre(0xD83D, 0xDE00));
}

TEST(OdbcText, WhatIsNoTextBecomesTheReplacement) {
  EXPECT_THAT(odbc::ToWide("\xFF"), ElementsAre(0xFFFD));
  EXPECT_THAT(odbc::ToWide("\xC0\x80"), ElementsAre(0xFFFD, 0xFFFD));
  EXPECT_THAT(odbc::ToWide("\xE5\x8D"), ElementsAre(0xFFFD, 0xFFFD));
  const SQLWCHAR half[] = {0xD83D, 'a'};
  EXPECT_EQ(odbc::FromWide(half),
            "\xEF\xBF\xBD"
            "a");
}

TEST(ProcedureBatch, NamesEachParameterAndSelectsTheOutputs) {
  const ProcedureParameter parameters[] = {
      {"@FID", int32_t{7}},         {"@Price", *Decimal::Parse("-1.50")},
      {"@Name", "it's 单"},         {"@Day", *DateTime::Parse("2026-03-15 10:11:12")},
      {"@Nothing", Null{}},         {"@Message", "", true},
      {"@Count", int32_t{3}, true},
  };
  EXPECT_EQ(odbc::ProcedureBatch("sp_Post", parameters),
            "DECLARE @out1 nvarchar(max)\r\n"
            "SET @out1 = N''\r\n"
            "DECLARE @out2 int\r\n"
            "SET @out2 = 3\r\n"
            "EXEC sp_Post @FID = 7, @Price = -1.50, @Name = N'it''s 单',"
            " @Day = '2026-03-15T10:11:12.000', @Nothing = NULL, @Message = @out1 OUTPUT,"
            " @Count = @out2 OUTPUT\r\n"
            "SELECT @out1 AS [@Message], @out2 AS [@Count]");
}

TEST(ProcedureBatch, WithoutParameters) {
  EXPECT_EQ(odbc::ProcedureBatch("sp_Post", {}), "EXEC sp_Post");
}

TEST(ProcedureBatch, AnObjectIsATypeMismatch) {
  const ProcedureParameter parameters[] = {{"@A", ObjectPtr()}};
  EXPECT_THROW(odbc::ProcedureBatch("sp_Post", parameters), AutomationError);
}

}  // namespace
}  // namespace tavcc
