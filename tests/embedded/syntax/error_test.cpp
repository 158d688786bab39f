// Texts that are refused: number, line and message.
//
// The numbers and texts are those of the server's list of errors (sys.messages). Which token is
// named follows its rule: the first that cannot stand where it stands; at the end of the text, the
// last one there was.
#include <gtest/gtest.h>

#include "embedded/error.h"
#include "embedded/syntax/parser.h"

namespace tavcc::sql {
namespace {

struct Row {
  const char* text;
  int number;
  int line;
  const char* message;
};

template <size_t kCount>
void ExpectErrors(const Row (&rows)[kCount]) {
  for (const Row& row : rows) {
    try {
      ParseBatch(row.text);
      ADD_FAILURE() << "no error: " << row.text;
    } catch (const SqlError& error) {
      EXPECT_EQ(error.number, row.number) << row.text << "\n" << error.message;
      EXPECT_EQ(error.line, row.line) << row.text;
      EXPECT_EQ(error.message, row.message) << row.text;
      EXPECT_EQ(error.severity, 15) << row.text;
    }
  }
}

TEST(SyntaxError, NamesTheTokenInTheWay) {
  ExpectErrors({
      {"selec 1 +", 102, 1, "Incorrect syntax near '+'."},
      {"select 1 2", 102, 1, "Incorrect syntax near '2'."},
      {"select a b c", 102, 1, "Incorrect syntax near 'c'."},
      {"select a\nfrom t\nwhere a = = 1", 102, 3, "Incorrect syntax near '='."},
      {"select (1", 102, 1, "Incorrect syntax near '1'."},
      {"select 1)", 102, 1, "Incorrect syntax near ')'."},
      {"select * from t a b", 102, 1, "Incorrect syntax near 'b'."},
      {"select a from t 'x'", 102, 1, "Incorrect syntax near 'x'."},
      {"insert into t(a) valuse(1)", 102, 1, "Incorrect syntax near 'valuse'."},
      {"update t set a", 102, 1, "Incorrect syntax near 'a'."},
      {"delete from t t1", 102, 1, "Incorrect syntax near 't1'."},
      {"select * from (select 1 a)", 102, 1, "Incorrect syntax near ')'."},
      {"select * from (select * from (select 1 a)) t", 102, 1, "Incorrect syntax near ')'."},
      {"select top @n a", 102, 1, "Incorrect syntax near '@n'."},
      {"exec('a' + cast(1 as varchar))", 102, 1, "Incorrect syntax near 'cast'."},
      {"declare x int", 102, 1, "Incorrect syntax near 'int'."},
      {"select [a b] [c] [d]", 102, 1, "Incorrect syntax near 'd'."},
      {"select 1; p", 102, 1, "Incorrect syntax near 'p'."},
      {"if 1=1 p", 102, 1, "Incorrect syntax near 'p'."},
      {"begin p end", 102, 1, "Incorrect syntax near 'p'."},
      {"select a ? b", 102, 1, "Incorrect syntax near '?'."},
      {"select 1 where (1=1) = 1", 102, 1, "Incorrect syntax near '='."},
      {"create table t(a int b int)", 102, 1, "Incorrect syntax near 'b'."},
  });
}

TEST(SyntaxError, NamesAKeywordAsOne) {
  ExpectErrors({
      {"select from t", 156, 1, "Incorrect syntax near the keyword 'from'."},
      {"select a where FROM", 156, 1, "Incorrect syntax near the keyword 'FROM'."},
      {"select a from t where a=0where", 156, 1, "Incorrect syntax near the keyword 'where'."},
      {"select a as user", 156, 1, "Incorrect syntax near the keyword 'user'."},
      {"select a from order", 156, 1, "Incorrect syntax near the keyword 'order'."},
      {"create table t(key int)", 156, 1, "Incorrect syntax near the keyword 'key'."},
      {"begin\nend", 156, 2, "Incorrect syntax near the keyword 'end'."},
      {"else select 1", 156, 1, "Incorrect syntax near the keyword 'else'."},
      {"if 1=1 select 1 select 2 else select 3", 156, 1,
       "Incorrect syntax near the keyword 'else'."},
      {"select (select 1 order by 1) union select 2 order by a order by b", 156, 1,
       "Incorrect syntax near the keyword 'order'."},
      {"(select 1 order by 1) union select 2", 156, 1,
       "Incorrect syntax near the keyword 'union'."},
      {"select a as DiffPrice left join (select 1 b) tb on 1=1 From t", 156, 1,
       "Incorrect syntax near the keyword 'left'."},
  });
}

TEST(SyntaxError, NamesTheLastTokenAtTheEnd) {
  ExpectErrors({
      {"select", 102, 1, "Incorrect syntax near 'select'."},
      {"select * from", 102, 1, "Incorrect syntax near 'from'."},
      {"select a from t where a=", 102, 1, "Incorrect syntax near '='."},
      {"select a,\n\n", 102, 1, "Incorrect syntax near ','."},
      {"begin\nselect 1\n\n", 102, 2, "Incorrect syntax near '1'."},
      {"if 1=1", 102, 1, "Incorrect syntax near '1'."},
      {"create proc p as", 102, 1, "Incorrect syntax near 'as'."},
  });
}

TEST(SyntaxError, ValueWhereAConditionBelongs) {
  constexpr char kText[] =
      "An expression of non-boolean type specified in a context where a condition is expected, "
      "near '";
  const auto expected = [&](const char* near) { return std::string(kText) + near + "'."; };
  const std::string select = expected("select"), b = expected("b"), and_ = expected("and"),
                    close = expected(")"), then = expected("then");
  ExpectErrors({
      {"if 1 select 2", 4145, 1, select.c_str()},
      {"select a where b", 4145, 1, b.c_str()},
      {"select a where b and c=1", 4145, 1, and_.c_str()},
      {"select a where (b) and c=1", 4145, 1, and_.c_str()},
      {"select a where not (b or c=1)", 4145, 1, expected("or").c_str()},
      {"select a where (b=1 or c)", 4145, 1, close.c_str()},
      {"select case when a then 1 end", 4145, 1, then.c_str()},
  });
}

TEST(SyntaxError, UnclosedQuotationsAndComments) {
  ExpectErrors({
      {"select 'abc", 105, 1, "Unclosed quotation mark after the character string 'abc'."},
      {"select\nN'it''s", 105, 2, "Unclosed quotation mark after the character string 'it''s'."},
      {"select [abc from t", 105, 1,
       "Unclosed quotation mark after the character string 'abc from t'."},
      {"select \"abc", 105, 1, "Unclosed quotation mark after the character string 'abc'."},
      {"select 1 /* /* */ ", 113, 1, "Missing end comment mark '*/'."},
      {"select 1\n/*", 113, 2, "Missing end comment mark '*/'."},
      // What comes first is reported first.
      {"select from 'abc", 156, 1, "Incorrect syntax near the keyword 'from'."},
  });
}

TEST(SyntaxError, Limits) {
  const std::string name(129, 'x');
  const std::string too_long = "The identifier that starts with '" + name.substr(1) +
                               "' is too long. Maximum length is 128.";
  const std::string digits(39, '9');
  const std::string too_wide = "The number '" + digits +
                               "' is out of the range for numeric representation (maximum "
                               "precision 38).";
  std::string rows = "insert t values(1)";
  for (int i = 0; i < 1000; ++i) rows += ",(1)";
  ExpectErrors({
      {("select " + name).c_str(), 103, 1, too_long.c_str()},
      {("select " + digits).c_str(), 1007, 1, too_wide.c_str()},
      {"select []", 1038, 1,
       "An object or column name is missing or empty. For SELECT INTO statements, verify each "
       "column has a name. For other statements, look for empty alias names. Aliases defined as "
       "\"\" or [] are not allowed. Change the alias to a valid name."},
      {"select * from a.b.c.d.e", 117, 1,
       "The object name 'a.b.c.d.e' contains more than the maximum number of prefixes. The maximum "
       "is 3."},
      {rows.c_str(), 10738, 1,
       "The number of row value expressions in the INSERT statement exceeds the maximum allowed "
       "number of 1000 row values."},
      {"declare @a decimal(99999999999)", 1001, 1,
       "Line 1: Length or precision specification 99999999999 is invalid."},
      {"select datediff('day',a,b)", 1023, 1, "Invalid parameter 1 specified for datediff."},
      {"set nocnt on", 195, 1, "'nocnt' is not a recognized SET option."},
      {"select 1 create view v as select 1", 111, 1,
       "'CREATE VIEW' must be the first statement in a query batch."},
      {"if 1=1 create view v as select 1 a", 111, 1,
       "'CREATE VIEW' must be the first statement in a query batch."},
      {"create view v as select 1 a select 2", 156, 1,
       "Incorrect syntax near the keyword 'select'."},
      {"select 1\ncreate proc p as select 1", 111, 2,
       "'CREATE/ALTER PROCEDURE' must be the first statement in a query batch."},
  });
}

// A construct outside of the dialect's subset is named, never read as something else.
TEST(SyntaxError, ConstructsThatAreNotSupported) {
  struct Unsupported {
    const char* text;
    const char* construct;
  };
  const Unsupported rows[] = {
      {"with x as (select 1 a) merge t using x on 1=1 when matched then delete", "MERGE"},
      {"merge t using u on 1=1 when matched then delete", "MERGE"},
      {"begin try select 1 end try begin catch end catch", "TRY and CATCH"},
      {"throw", "THROW"},
      {"select sum(a) over w from t window w as (order by a)", "named windows (WINDOW)"},
      {"select lag(a) ignore nulls over (order by a) from t", "IGNORE NULLS and RESPECT NULLS"},
      {"select * from t cross apply f(1)", "APPLY"},
      {"select * from t outer apply f(1)", "APPLY"},
      {"select * from t pivot (max(a) for b in ([1])) p", "PIVOT and UNPIVOT"},
      {"goto x", "labels and GOTO"},
      {"x: select 1", "labels and GOTO"},
      {"waitfor delay '00:00:01'", "WAITFOR"},
      {"create function f() returns int as begin return 1 end", "CREATE function"},
      {"create trigger x on t for insert as select 1", "CREATE trigger"},
      {"alter procedure p as select 1", "ALTER procedure"},
      {"alter table t drop column a", "ALTER TABLE drop"},
      {"drop database x", "DROP database"},
      {"create table t(a int check(a>0))", "CHECK constraints"},
      {"create table t(a int references u(b))", "FOREIGN KEY constraints"},
      {"create table t(a as b+1)", "computed columns"},
      {"select a collate Latin1_General_BIN from t", "COLLATE"},
      {"select a from t order by a offset 5 rows", "OFFSET and FETCH in ORDER BY"},
      {"select a from t group by rollup(a)", "ROLLUP and CUBE"},
      {"select a from t for xml auto", "the FOR clause of SELECT"},
      {"select $5", "money constants"},
      {"select a from t where a > all(select b from u)", "ALL, ANY and SOME"},
      {"select * from f(1)", "functions that return tables"},
      {"insert t output inserted.a values(1)", "the OUTPUT clause"},
      {"declare @c cursor", "cursor variables"},
      {"declare @@x int", "a variable whose name begins with @@"},
      {"select {fn now()}", "ODBC escapes"},
      {"select \xff", "text that is not UTF-8"},
      {"use master", "USE"},
      {"set quoted_identifier off", "QUOTED_IDENTIFIER OFF"},
      {"set nocount, quoted_identifier off", "QUOTED_IDENTIFIER OFF"},
      {"select geography::Parse('x')", "static methods of types"},
  };
  for (const Unsupported& row : rows) {
    try {
      ParseBatch(row.text);
      ADD_FAILURE() << "no error: " << row.text;
    } catch (const SqlError& error) {
      EXPECT_EQ(error.number, 50001) << row.text << "\n" << error.message;
      EXPECT_EQ(error.message,
                "Not supported by the embedded database: " + std::string(row.construct) + ".")
          << row.text;
    }
  }
}

// ---- Depth: an error in time, never an overflow of the stack ----

std::string Repeat(const std::string& text, int times) {
  std::string result;
  result.reserve(text.size() * static_cast<size_t>(times));
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

TEST(SyntaxError, NestedTooDeeply) {
  constexpr int kDeep = 100000;
  const std::string texts[] = {
      "select " + Repeat("(", kDeep) + "1" + Repeat(")", kDeep),
      "select 1 where " + Repeat("(", kDeep) + "1=1" + Repeat(")", kDeep),
      "select 1 where " + Repeat("not ", kDeep) + "1=1",
      "select " + Repeat("- ", kDeep) + "1",
      "select " + Repeat("~", kDeep) + "1",
      "select " + Repeat("abs(", kDeep) + "1" + Repeat(")", kDeep),
      "select " + Repeat("cast(", kDeep) + "1" + Repeat(" as int)", kDeep),
      "select " + Repeat("(select ", kDeep) + "1" + Repeat(")", kDeep),
      "select * from " + Repeat("(select * from ", kDeep) + "t" + Repeat(") t", kDeep),
      "select * from " + Repeat("(", kDeep) + "t" + Repeat(")", kDeep),
      "select * from " + Repeat("a join ", kDeep) + "t" + Repeat(" on 1=1", kDeep),
      Repeat("(", kDeep) + "select 1" + Repeat(")", kDeep),
      "select 1 where " + Repeat("exists(select 1 where ", kDeep) + "1=1" + Repeat(")", kDeep),
      "select 1 where " + Repeat("1 in (select 1 where ", kDeep) + "1=1" + Repeat(")", kDeep),
      Repeat("begin ", kDeep) + "select 1" + Repeat(" end", kDeep),
      Repeat("if 1=1 ", kDeep) + "select 1",
      Repeat("if 1=1 select 1 else ", kDeep) + "select 1",
      Repeat("while 1=1 ", kDeep) + "break",
      // Trees that lean to the left.
      "select 1" + Repeat("+1", kDeep),
      "select 1" + Repeat("*1", kDeep),
      "exec('a'" + Repeat("+'a'", kDeep) + ")",
      "select 1" + Repeat(" union select 1", kDeep),
      "select 1" + Repeat(" intersect select 1", kDeep),
      "select * from t" + Repeat(" cross join t", kDeep),
      "select * from t" + Repeat(" join t on 1=1", kDeep),
  };
  for (const std::string& text : texts) {
    try {
      ParseBatch(text);
      ADD_FAILURE() << "no error: " << text.substr(0, 60);
    } catch (const SqlError& error) {
      EXPECT_EQ(error.number, 191) << text.substr(0, 60) << "\n" << error.message;
    }
  }
}

// "MSSQLSERVER_125": CASE may be nested to level 10.
TEST(SyntaxError, CaseNestedTooDeeply) {
  constexpr int kDeep = 100000;
  const std::string texts[] = {
      "select " + Repeat("case when 1=1 then ", kDeep) + "1" + Repeat(" end", kDeep),
      "select " + Repeat("case ", kDeep),
  };
  for (const std::string& text : texts) {
    try {
      ParseBatch(text);
      ADD_FAILURE() << "no error: " << text.substr(0, 60);
    } catch (const SqlError& error) {
      EXPECT_EQ(error.number, 125) << error.message;
    }
  }
}

TEST(SyntaxError, DepthsThatAreInUseAreNotTooDeep) {
  EXPECT_NO_THROW(ParseBatch("select " + Repeat("(", 100) + "1" + Repeat(")", 100)));
  EXPECT_NO_THROW(ParseBatch("select 1" + Repeat("+1", 500)));
  EXPECT_NO_THROW(ParseBatch("select 1" + Repeat(" union all select 1", 500)));
  EXPECT_THROW(ParseBatch("select 1" + Repeat("+1", 501)), SqlError);
  // Chains of AND and OR are flat, and so are lists.
  EXPECT_NO_THROW(ParseBatch("select 1 where 1=1" + Repeat(" and 1=1", 50000)));
  EXPECT_NO_THROW(ParseBatch("select 1 where 1=1" + Repeat(" or 1=1", 50000)));
  EXPECT_NO_THROW(ParseBatch("select 1 where 1=1" + Repeat(" or 1=1 and 2=2", 50000)));
  EXPECT_NO_THROW(ParseBatch("select 1" + Repeat(",1", 50000)));
  EXPECT_NO_THROW(ParseBatch("select 1 where 1 in(1" + Repeat(",1", 50000) + ")"));
  EXPECT_NO_THROW(ParseBatch(Repeat("select 1 ", 50000)));
  // A left side in brackets counts with what it is the left side of.
  std::string nested = "1" + Repeat("+1", 300);
  nested = "(" + nested + ")" + Repeat("+1", 300);
  EXPECT_THROW(ParseBatch("select " + nested), SqlError);
}

TEST(SyntaxError, LargeTextsAreReadOrRefused) {
  const std::string million(1000000, 'x');
  EXPECT_NO_THROW(ParseBatch("select '" + million + "'"));
  EXPECT_NO_THROW(ParseBatch("select 1 /*" + million + "*/"));
  EXPECT_NO_THROW(ParseBatch("select 1 --" + million));
  EXPECT_NO_THROW(ParseBatch("select 0x" + std::string(1000000, 'A')));
  EXPECT_NO_THROW(ParseBatch("select " + std::string(1000000, '0') + "1"));
  EXPECT_THROW(ParseBatch("select " + std::string(1000000, '1')), SqlError);
  try {
    ParseBatch("select '" + million);
    FAIL();
  } catch (const SqlError& error) {
    EXPECT_EQ(error.number, 105);
    EXPECT_LT(error.message.size(), 2048u);  // the longest message that the server sends
  }
}

}  // namespace
}  // namespace tavcc::sql
