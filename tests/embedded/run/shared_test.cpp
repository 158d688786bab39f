// A statement that was compiled for other literals answers as one that is compiled for its own.
//
// The same statements run in two databases. In one they share what is compiled; in the other each
// text has a comment of its own, so that nothing is shared.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "embedded/embedded.h"
#include "embedded/session/session.h"
#include "foundation/conversions.h"
#include "foundation/error.h"

namespace tavcc::sql {
namespace {

constexpr char kTable[] =
    "create table t (id int not null primary key, s nvarchar(10), c char(5), v varchar(40), "
    "q decimal(28,10), p decimal(5,2), w decimal(2,1), m money, i int, d datetime, f float)";

// %T, %D and %I stand for a text, a decimal and a whole number.
constexpr const char* kStatements[] = {
    "insert into t (id,s,c,v,q,p,w,m) values (%I,%T,%T,%T,%D,%D,%D,%D)",
    "insert into t (id,s,v) values (%I,%T,N%T),(%I,%T,%T)",
    "insert into t (id,v,p) select %I,%T,%D",
    "insert into t (id,s,q) select distinct %I,%T,%D",
    "update t set s=%T where id=%I",
    "update t set s=%T,v=%T where v<>%T",
    "update t set c=%T where id<%I",
    "update t set v=s+%T where id=%I",
    "update t set q=%D where id=%I",
    "update t set q=q+%D where q<%D",
    "update t set p=%D",
    "update t set p=-%D,w=+%D where id=%I",
    "update t set w=%D",
    "update t set m=%D,f=%D,i=%D where id=%I",
    "update t set d=%T where id=%I",
    "delete t where id=%I",
    "delete t where s=%T and q>%D",
    "select id from t where s=%T order by id",
    "select id from t where s>%T and v<=N%T order by id",
    "select id from t where c=%T or c=N%T order by id",
    "select id from t where v like %T or s like N%T order by id",
    "select id from t where s in (%T,%T,%T) order by id",
    "select id from t where q=%D or q<%D order by id",
    "select id from t where p=%D or p<=-%D order by id",
    "select id from t where p<%I or w>%I order by id",
    "select id from t where w>=%D order by id",
    "select id from t where m>%D or i<%D or f>=%D order by id",
    "select id from t where q between %D and %D order by id",
    "select id from t where p in (%D,%D) or q in (%I,%D) order by id",
    "select id from t where %D=%D or %T=%T order by id",
    "select id from t where i=%T order by id",
    "select id from t where q>%T order by id",
    "select id from t where d<%T order by id",
    "select %T as x, %D as y, N%T as z",
    "select %D*%D as x, %D/%D as y",
    "select %D+i as x, %D-q as y, -%D as z from t order by id",
    "select isnull(s,%T) as x, isnull(p,%D) as y from t order by id",
    "select case when i>%I then %T else %T end as x, case when p>%D then %D else %I end as y from t "
    "order by id",
    "select %T+%T as x, left(%T,2) as y, datalength(%T) as z",
    "select coalesce(null,%D,%I) as x, nullif(%T,%T) as y",
    "select sum(q*%D) as x, max(%D) as y from t where id<%I",
    "select s as x from t where id<%I union select %T",
    "declare @a varchar(5), @b decimal(5,2), @c nvarchar(10) set @a=%T set @b=%D select @c=%T "
    "select @a as x, @b as y, @c as z",
    "declare @b decimal(5,2), @i int select @b=%D, @i=%D select @b as x, @i as y",
    "select %T as x, %D as y into #x insert into #x values (%T,%D) select x,y from #x drop table #x",
    "if %D>%I and %T<>%T select 1 as x else select 2 as x",
    "select cast(%D as decimal(9,3)) as x, cast(%T as varchar(3)) as y, convert(int,%D) as z",
};

class Values {
 public:
  std::string Fill(std::string_view statement) {
    std::string out;
    for (size_t i = 0; i < statement.size(); ++i) {
      if (statement[i] != '%') {
        out += statement[i];
        continue;
      }
      const char kind = statement[++i];
      out += kind == 'T' ? Text() : kind == 'D' ? Decimal() : Whole();
    }
    return out;
  }

 private:
  size_t Below(size_t limit) { return random_() % limit; }
  std::string Text() {
    static const std::string kTexts[] = {"",
                                         "a",
                                         "A ",
                                         "abc",
                                         "it''s",
                                         "12",
                                         "1.50",
                                         "2026-03-01",
                                         "2026-03-15 10:00:00",
                                         "%a%",
                                         "0123456789",
                                         "01234567890",
                                         "abcde     ",
                                         "four and forty letters, which are too many...",
                                         "\xe5\x8d\x95",
                                         std::string(4000, 'x'),
                                         std::string(4001, 'x'),
                                         std::string(8001, 'x')};
    const bool long_one = Below(20) == 0;
    return '\'' + kTexts[long_one ? 15 + Below(3) : Below(15)] + '\'';
  }
  std::string Decimal() {
    static const char* const kDecimals[] = {"0.0",
                                            "1.5",
                                            "2.50",
                                            "2.5",
                                            "7.",
                                            "9.94",
                                            "9.95",
                                            "0.05",
                                            "1.000000",
                                            "999.99",
                                            "999.994",
                                            "999.995",
                                            "1000.0",
                                            "12.345678901234",
                                            "123456789.5",
                                            "1234567890123456.25",
                                            "12345678901234567890.5",
                                            "99999999999999999999999999999.5",
                                            "0.00000000005",
                                            "3000000000",
                                            "99999999999999999999999999999999999999"};
    return kDecimals[Below(std::size(kDecimals))];
  }
  std::string Whole() {
    static const char* const kWholes[] = {"0",  "1",   "2",     "3",         "7",
                                          "12", "007", "99999", "2147483647"};
    return kWholes[Below(std::size(kWholes))];
  }

  std::mt19937 random_{7};
};

// All that a client sees: the rows, or the errors.
std::string Answer(Connection& connection, const std::string& sql) {
  std::string out;
  try {
    const RecordsetPtr rows = connection.Execute(sql);
    for (; rows->IsOpen() && !rows->AtEnd(); rows->MoveNext()) {
      for (int i = 0; i < rows->FieldCount(); ++i) {
        const Value value = rows->Field(i);
        out += std::to_string(static_cast<int>(value.kind())) + ':' +
               (value.IsNull() ? "NULL" : ToText(value)) + '|';
      }
      out += '\n';
    }
  } catch (const AutomationError&) {
    // It is among the errors.
  }
  for (const ConnectionError& error : connection.Errors()) {
    out += std::to_string(error.number) + ' ' + error.description + '\n';
  }
  return out;
}

TEST(Shared, AnswersAsCompiledAnew) {
  const auto shared = Database::Open(OpenOptions{})->NewSession();
  const auto alone = Database::Open(OpenOptions{})->NewSession();
  Values values;
  std::string everything;
  for (int round = 0; round < 4000; ++round) {
    if (round % 1000 == 0) {
      for (const auto& connection : {shared, alone}) {
        if (round > 0) connection->Execute("drop table t");
        connection->Execute(kTable);
      }
    }
    const std::string sql =
        values.Fill(kStatements[static_cast<size_t>(round) * 7919 % std::size(kStatements)]);
    const std::string answer = Answer(*alone, sql + "/*" + std::to_string(round) + "*/");
    ASSERT_EQ(answer, Answer(*shared, sql)) << sql;
    everything += answer;
  }
  const auto compiled = [](const ConnectionPtr& connection) {
    return dynamic_cast<Session&>(*connection).engine().context().compiled;
  };
  EXPECT_LT(compiled(shared) * 2, compiled(alone));
  // The statements do what they are meant to: rows of every kind, and the errors of conversion.
  for (const char* part : {"8115 ", "2628 ", "245 ", "241 ", "2627 ", "it's"}) {
    EXPECT_NE(everything.find(part), std::string::npos) << part;
  }
}

}  // namespace
}  // namespace tavcc::sql
