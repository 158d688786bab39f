// The table of errors: wording, and what an error does to its batch.
//
// Wording and severity come from the "Database engine events and errors" pages (sys.messages). How
// far an error reaches comes from "SET XACT_ABORT (Transact-SQL)" and from Erland Sommarskog's
// "Error and Transaction Handling in SQL Server", Part Two: most errors end their statement, errors
// of names and types end the scope, failed conversions end the batch and roll the transaction back.
#include "embedded/error.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tavcc::sql {
namespace {

// By the server's number.
SqlError Made(int number, std::initializer_list<ErrorArgument> arguments = {}) {
  return MakeError(static_cast<errors::Number>(number), arguments);
}

struct Wording {
  SqlError error;
  int severity;
  AfterError after;
  std::string_view message;
};

TEST(Errors, WordingSeverityAndReach) {
  using enum AfterError;
  const Wording cases[] = {
      {Made(102, {"from"}), 15, kEndScope, "Incorrect syntax near 'from'."},
      {Made(105, {"abc"}), 15, kEndScope,
       "Unclosed quotation mark after the character string 'abc'."},
      {Made(113), 15, kEndScope, "Missing end comment mark '*/'."},
      {Made(137, {"@x"}), 15, kEndScope, "Must declare the scalar variable \"@x\"."},
      {Made(156, {"where"}), 15, kEndScope, "Incorrect syntax near the keyword 'where'."},
      {Made(195, {"foo", "built-in function name"}), 15, kEndScope,
       "'foo' is not a recognized built-in function name."},
      {Made(201, {"p", "@a"}), 16, kNextStatement,
       "Procedure or function 'p' expects parameter '@a', which was not supplied."},
      {Made(206, {"int", "date"}), 16, kEndScope,
       "Operand type clash: int is incompatible with date"},
      {Made(207, {"FBasePrice"}), 16, kEndScope, "Invalid column name 'FBasePrice'."},
      {Made(208, {"X"}), 16, kEndScope, "Invalid object name 'X'."},
      {Made(241), 16, kEndTransaction,
       "Conversion failed when converting date and/or time from character string."},
      {Made(245, {"varchar", "abc", "int"}), 16, kEndTransaction,
       "Conversion failed when converting the varchar value 'abc' to data type int."},
      {Made(266, {1, 0}), 16, kNextStatement,
       "Transaction count after EXECUTE indicates a mismatching number of BEGIN and COMMIT "
       "statements. Previous count = 1, current count = 0."},
      {Made(402, {"bit", "bit", "add"}), 16, kEndScope,
       "The data types bit and bit are incompatible in the add operator."},
      {Made(512), 16, kNextStatement,
       "Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, "
       "<, <= , >, >= or when the subquery is used as an expression."},
      {Made(515, {"a", "db.dbo.t", "INSERT"}), 16, kNextStatement,
       "Cannot insert the value NULL into column 'a', table 'db.dbo.t'; column does not allow nulls. "
       "INSERT fails."},
      {Made(544, {"t"}), 16, kNextStatement,
       "Cannot insert explicit value for identity column in table 't' when IDENTITY_INSERT is set to "
       "OFF."},
      {Made(2627, {"PRIMARY KEY", "PK_t", "dbo.t", "(1)"}), 14, kNextStatement,
       "Violation of PRIMARY KEY constraint 'PK_t'. Cannot insert duplicate key in object 'dbo.t'. The "
       "duplicate key value is (1)."},
      {Made(2628, {"db.dbo.t", "c", "abc"}), 16, kNextStatement,
       "String or binary data would be truncated in table 'db.dbo.t', column 'c'. Truncated value: "
       "'abc'."},
      {Made(2714, {"#t"}), 16, kEndScope, "There is already an object named '#t' in the database."},
      {Made(2812, {"sp_x"}), 16, kNextStatement, "Could not find stored procedure 'sp_x'."},
      {Made(3701, {"drop", "table", "#t"}), 11, kNextStatement,
       "Cannot drop the table '#t', because it does not exist or you do not have permission."},
      {Made(3903), 16, kNextStatement,
       "The ROLLBACK TRANSACTION request has no corresponding BEGIN TRANSACTION."},
      {Made(4104, {"a.b"}), 16, kEndScope, "The multi-part identifier \"a.b\" could not be bound."},
      {Made(8114, {"varchar", "numeric"}), 16, kEndTransaction,
       "Error converting data type varchar to numeric."},
      {Made(8115, {"expression", "int"}), 16, kNextStatement,
       "Arithmetic overflow error converting expression to data type int."},
      {Made(8120, {"t", "a"}), 16, kEndScope,
       "Column 't.a' is invalid in the select list because it is not contained in either an aggregate "
       "function or the GROUP BY clause."},
      {Made(8134), 16, kNextStatement, "Divide by zero error encountered."},
      {Made(8152), 16, kNextStatement, "String or binary data would be truncated."},
      {Made(16916, {"MyCur"}), 16, kNextStatement,
       "A cursor with the name 'MyCur' does not exist."},
      {Made(16924), 16, kNextStatement,
       "Cursorfetch: The number of variables declared in the INTO list must match that of selected "
       "columns."},
      {MakeError(errors::kNotSupported, {"MERGE"}), 16, kEndScope,
       "Not supported by the embedded database: MERGE."},
  };
  for (const Wording& c : cases) {
    EXPECT_EQ(c.error.message, c.message) << c.error.number;
    EXPECT_EQ(c.error.severity, c.severity) << c.error.number;
    EXPECT_EQ(WhatFollows(c.error.number), c.after) << c.error.number;
    EXPECT_EQ(c.error.line, 0);
  }
}

// States as servers print them in their messages ("Msg 208, Level 16, State 1"), recorded in
// public.
TEST(Errors, States) {
  const std::pair<int, int> states[] = {{208, 1},  {207, 1},  {245, 1},  {242, 3},   {515, 2},
                                        {137, 2},  {2714, 6}, {2715, 6}, {2812, 62}, {8114, 5},
                                        {8134, 1}, {3701, 5}, {206, 2},  {257, 3},   {195, 10}};
  for (const auto& [number, state] : states) EXPECT_EQ(FindError(number)->state, state) << number;
}

TEST(Errors, EveryRowCanBeRaised) {
  for (const ErrorDefinition& definition : AllErrors()) {
    const auto marks = std::ranges::count(definition.text, '%');
    const SqlError error = Made(definition.number, {"<1>", "<2>", "<3>", "<4>"});
    EXPECT_EQ(error.message.find('%'), std::string::npos) << error.message;
    for (int i = 1; i <= 4; ++i) {
      const bool there = error.message.find("<" + std::to_string(i) + ">") != std::string::npos;
      EXPECT_EQ(there, i <= marks) << error.message;
    }
    EXPECT_GE(definition.severity, 11) << definition.number;
    EXPECT_EQ(FindError(definition.number), &definition);
  }
}

// An argument that looks like a mark is no mark.
TEST(Errors, ArgumentsAreTakenAsTheyAre) {
  EXPECT_EQ(Made(207, {"a%dz"}).message, "Invalid column name 'a%dz'.");
  EXPECT_EQ(Made(206, {"%ls", "x"}).message, "Operand type clash: %ls is incompatible with x");
}

TEST(Errors, NumbersThatAreNotInTheTable) {
  EXPECT_EQ(FindError(50000), nullptr);
  EXPECT_EQ(WhatFollows(50000), AfterError::kNextStatement);
}

TEST(Errors, RaiseThrows) {
  try {
    Raise(errors::kInvalidObjectName, "X");
  } catch (const SqlError& error) {
    EXPECT_EQ(error.number, 208);
    EXPECT_EQ(error.message, "Invalid object name 'X'.");
    return;
  }
  FAIL();
}

}  // namespace
}  // namespace tavcc::sql
