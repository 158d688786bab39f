// Which texts share a compiled batch, and which literals are exchanged.
#include <gtest/gtest.h>

#include "embedded/syntax/fingerprint.h"
#include "embedded/syntax/parser.h"

namespace tavcc::sql {
namespace {

// The key, or a text that no key is when the batch cannot share.
std::string KeyOf(std::string_view text) {
  Fingerprint fingerprint;
  return ComputeFingerprint(text, fingerprint) ? fingerprint.key
                                               : "not shared: " + std::string(text);
}

std::string LiteralsOf(std::string_view text) {
  Fingerprint fingerprint;
  if (!ComputeFingerprint(text, fingerprint)) return "not shared";
  std::string all, scratch;
  for (const FingerprintLiteral& literal : fingerprint.literals) {
    if (!all.empty()) all += "|";
    all += LiteralText(literal, scratch);
  }
  return all;
}

TEST(Fingerprint, TextsThatShareAKey) {
  const std::pair<const char*, const char*> rows[] = {
      {"select a from t where b=1", "select a from t where b=2147483647"},
      {"select a from t where b=0007", "select a from t where b=0"},
      {"select a from t where b=1.50and c=2", "select a from t where b=9.99and c=3"},
      {"select 0.05", "select 0.50"},
      {"select 2147483648", "select 9999999999"},
      {"select 1e3", "select 1.5E-30"},
      {"select a where b='abc'", "select a where b='xyz'"},
      {"select a where b=''", "select a where b='x'"},
      {"select a where b='it''s'", "select a where b='that'"},
      {"select a where b=N'\xe5\x8d\x95'", "select a where b=N'x'"},
      {"select a where b='\xf0\x9f\x98\x80'", "select a where b='xy'"},
      {"update t set a='x\ny' where c=1", "update t set a='\nab' where c=2"},
      {"exec p 'x', 5", "exec p 'y', 6"},
      {"p 'x'", "p 'y'"},
      {"insert t values(-1,'a')", "insert t values(-2,'b')"},
      {"select top 5 a from t where b=1", "select top 5 a from t where b=2"},
      {"print 'x'", "print 'y'"},
      {"select a from t order by a select 1", "select a from t order by a select 2"},
      {"create table #t(a int default 5) insert #t values(1)",
       "create table #t(a int default 5) insert #t values(2)"},
      {"set @a=1", "set @a=2"},
      {"select convert(varchar(20),5,120)", "select convert(varchar(20),6,120)"},
      {"select case when a=1 then 'a' else 'b' end", "select case when a=2 then 'c' else 'd' end"},
  };
  for (const auto& [one, other] : rows) EXPECT_EQ(KeyOf(one), KeyOf(other)) << one << "\n" << other;
}

TEST(Fingerprint, TextsThatDoNot) {
  const std::pair<const char*, const char*> rows[] = {
      {"select 1", "select  1"},
      {"select 2147483647", "select 2147483648"},
      {"select 9999999999", "select 99999999999"},
      {"select 1", "select 1."},
      {"select 1.5", "select 1.50"},
      {"select 1.5", "select 15."},
      {"select 1.5", "select 1.5e0"},
      {"select 'ab'", "select 'abc'"},
      {"select 'ab'", "select N'ab'"},
      {"select 'ab'", "select 12"},
      {"select 'a\nb' select 1", "select 'abc' select 1"},
      {"select -1", "select 1"},
      {"select top 5 a", "select top 6 a"},
      {"select top (5) a", "select top (6) a"},
      {"select cast(a as varchar(5))", "select cast(a as varchar(6))"},
      {"select cast(a as decimal(28,10))", "select cast(a as decimal(28,11))"},
      {"declare @a varchar(5)", "declare @a varchar(6)"},
      {"select convert(varchar(20),a,120)", "select convert(varchar(20),a,102)"},
      {"select convert(varchar,(a),((120)))", "select convert(varchar,(a),((102)))"},
      {"select a from t order by 1", "select a from t order by 2"},
      {"select a from t order by a,1", "select a from t order by a,2"},
      {"select a 'x'", "select a 'y'"},
      {"select a as 'x'", "select a as 'y'"},
      {"select 'x'=a", "select 'y'=a"},
      {"select b,'x' = a", "select b,'y' = a"},
      {"select b, 'x' /* c */ = a", "select b, 'y' /* c */ = a"},
      {"select (a) 'x'", "select (a) 'y'"},
      {"select 1 'x'", "select 1 'y'"},
      {"select @a 'x'", "select @a 'y'"},
      {"select case when 1=1 then 2 end 'x'", "select case when 1=1 then 2 end 'y'"},
      {"select distinct 'x'=a", "select distinct 'y'=a"},
      {"select top 5 'x'=a", "select top 5 'y'=a"},
      {"create table #t(a int default 5)", "create table #t(a int default 6)"},
      {"create table #t(a int identity(1,1))", "create table #t(a int identity(2,1))"},
      {"declare @t table(a int default 5)", "declare @t table(a int default 6)"},
      {"create view v as select 1 a", "create view v as select 2 a"},
      {"create proc p as select 1", "create proc p as select 2"},
      {"alter table t add a int default 1", "alter table t add a int default 2"},
      {"set rowcount 5", "set rowcount 6"},
      {"set lock_timeout -5", "set lock_timeout -6"},
      {"select 0x1F", "select 0x2F"},
      {"select 1 /* 1 */", "select 1 /* 2 */"},
      {"select [a1]", "select [a2]"},
  };
  for (const auto& [one, other] : rows) EXPECT_NE(KeyOf(one), KeyOf(other)) << one << "\n" << other;
}

// All beyond the longest of the type is one type, (max).
TEST(Fingerprint, TextsBeyondTheLongestAreAlike) {
  const auto select = [](const char* prefix, size_t length) {
    return std::string("select ") + prefix + "'" + std::string(length, 'x') + "'";
  };
  EXPECT_EQ(KeyOf(select("", 8001)), KeyOf(select("", 9000)));
  EXPECT_NE(KeyOf(select("", 8000)), KeyOf(select("", 8001)));
  EXPECT_EQ(KeyOf(select("N", 4001)), KeyOf(select("N", 9000)));
  EXPECT_NE(KeyOf(select("N", 4000)), KeyOf(select("N", 4001)));
  EXPECT_NE(KeyOf(select("", 256)), KeyOf(select("", 512)));
}

TEST(Fingerprint, BatchesThatCannotShare) {
  for (const char* text : {
           "select a+1 from t group by a+1",
           "select distinct a+1 from t order by a+1",
           "select a from t order by 1+a",
           "select a from t order by isnull(a,0)",
           "select 'abc",
           "select /* 1",
           "select $5",
           "select \x01",
           "select '\xff'",
           "select 1e",
           "select 999999999999999999999999999999999999999",
           "select \xe3\x80\x80 1",
       })
    EXPECT_EQ(KeyOf(text), "not shared: " + std::string(text));
}

TEST(Fingerprint, LiteralsInTheOrderOfTheText) {
  EXPECT_EQ(LiteralsOf("select a from t where a=007 and b='it''s' and c=N'x' and d=1.50"),
            "007|it's|x|1.50");
  EXPECT_EQ(LiteralsOf("update t set a=0where b=5And c=-1e3"), "0|5|1e3");
  EXPECT_EQ(LiteralsOf("select top 3 a as 'b' from t where c in(1,2) order by 1"), "1|2");
}

// Where the key cannot see that a literal decides on more than a value, the parser does.
TEST(Fingerprint, ParserSeesWhatTheKeyCannot) {
  const char kText[] = "set rowcount +5";
  Fingerprint fingerprint;
  ASSERT_TRUE(ComputeFingerprint(kText, fingerprint));
  EXPECT_NE(static_cast<size_t>(ParseBatch(kText).literal_slots), fingerprint.literals.size());
}

TEST(Fingerprint, MemoryIsUsedAgain) {
  Fingerprint fingerprint;
  ASSERT_TRUE(
      ComputeFingerprint("select 1, 2, 3 from a_table_with_a_rather_long_name", fingerprint));
  const void* key = fingerprint.key.data();
  const void* literals = fingerprint.literals.data();
  ASSERT_TRUE(ComputeFingerprint("select 4, 5 from another_table_with_a_name", fingerprint));
  EXPECT_EQ(key, fingerprint.key.data());
  EXPECT_EQ(literals, fingerprint.literals.data());
}

}  // namespace
}  // namespace tavcc::sql
