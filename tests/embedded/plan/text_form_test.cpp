// Which texts share a compiled batch, and which literals are exchanged.
#include <gtest/gtest.h>

#include <random>

#include "embedded/error.h"
#include "embedded/plan/text_form.h"
#include "embedded/syntax/parser.h"

namespace tavcc::sql {
namespace {

// Of a text that the parser refuses, which is no batch: the form of itself alone.
TextForm FormOf(std::string_view text) {
  try {
    return {text, ParseBatch(text)};
  } catch (const SqlError&) {
    return {text, Batch{}};
  }
}

bool HaveOneForm(std::string_view one, std::string_view other) {
  std::vector<ParameterizedLiteral> literals;
  const bool forth = FormOf(one).Matches(other, literals);
  EXPECT_EQ(forth, FormOf(other).Matches(one, literals)) << one << "\n" << other;
  return forth;
}

std::string LiteralsOf(std::string_view text) {
  std::vector<ParameterizedLiteral> literals;
  EXPECT_TRUE(FormOf(text).Matches(text, literals)) << text;
  std::string all, scratch;
  for (const ParameterizedLiteral& literal : literals) {
    if (!all.empty()) all += "|";
    all += LiteralText(literal, scratch);
  }
  return all;
}

TEST(TextForms, TextsOfOneForm) {
  const std::pair<const char*, const char*> rows[] = {
      {"select a from t where b=1", "select a from t where b=2147483647"},
      {"select a from t where b=0007", "select a from t where b=0"},
      {"select a from t where b=1.50and c=2", "select a from t where b=9.99and c=3"},
      {"select 0.05", "select 12.5"},
      {"select 1.5", "select 15."},
      {"select .5", "select .25"},
      {"select 2147483648", "select 99999999999999999999"},
      {"select 1e3", "select 1.5E-30"},
      {"select a where b='abc'", "select a where b='xyz'"},
      {"select a where b=''", "select a where b='x'"},
      {"select a where b='x'", "select a where b='longer than eight bytes'"},
      {"select a where b='a\nb'", "select a where b='longer than eight\nbytes'"},
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
      {"create index i on #t(a) insert #t values(1)",
       "create index i on #t(a) insert #t values(2)"},
      {"set @a=1", "set @a=2"},
      {"select convert(varchar(20),5,120)", "select convert(varchar(20),6,120)"},
      {"select case when a=1 then 'a' else 'b' end", "select case when a=2 then 'c' else 'd' end"},
  };
  for (const auto& [one, other] : rows)
    EXPECT_TRUE(HaveOneForm(one, other)) << one << "\n" << other;
}

TEST(TextForms, TextsOfTwoForms) {
  const std::pair<const char*, const char*> rows[] = {
      {"select 1", "select  1"},
      {"select 2147483647", "select 2147483648"},
      {"select 1", "select 1."},
      {"select 1.5", "select 1.5e0"},
      {"select 'ab'", "select N'ab'"},
      {"select 'ab'", "select 12"},
      {"select 'a\nb' select 1", "select 'abc' select 1"},
      {"select -1", "select 1"},
      {"select 1.5", "select .5"},
      {"select 'x", "select 'x'"},
      {"select a where b=1", "select a where b=1 "},
      {"select a where b=1 ", "select a where b=1"},
      // At the border to a literal a token may end elsewhere: 0x7 is binary, 7.e a float, a1 a
      // name.
      {"select 8x7", "select 0x7"},
      {"select 7end", "select 7.end"},
      {"select a.5", "select a1.5"},
      {"select a..5", "select a.1.5"},
      {"select a,n''", "select a,''"},
      {"select 1'x'", "select 1N'x'"},
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
      {"create index i on t(a) where a>=1", "create index i on t(a) where a>=2"},
      {"create view v as select 1 a", "create view v as select 2 a"},
      {"create proc p as select 1", "create proc p as select 2"},
      {"alter table t add a int default 1", "alter table t add a int default 2"},
      {"set rowcount 5", "set rowcount 6"},
      {"set lock_timeout -5", "set lock_timeout -6"},
      {"select 0x1F", "select 0x2F"},
      {"select 1 /* 1 */", "select 1 /* 2 */"},
      {"select [a1]", "select [a2]"},
  };
  for (const auto& [one, other] : rows)
    EXPECT_FALSE(HaveOneForm(one, other)) << one << "\n" << other;
}

// Whatever has one form has the same tokens, apart from the values of its literals.
TEST(TextForms, OneFormIsOneRowOfTokens) {
  const char* const kPieces[] = {"select ", "5",    "0",   ".5", "1.", "e",   "1e5", "'a'",
                                 "''",      "N'b'", "n",   "x",  ".",  "-",   "=",   " ",
                                 "a",       "1.50", "top", "as", "(",  ")",   "--",  "\n",
                                 "/*",      "*/",   "+",   ",",  "@v", "0x1", "'",   "99999999999"};
  const auto tokens = [](std::string_view text) {
    std::vector<TokenKind> kinds;
    Scanner scanner(text);
    do kinds.push_back(scanner.Next().kind);
    while (kinds.back() != TokenKind::kEnd);
    return kinds;
  };
  std::mt19937 random(1);
  std::vector<ParameterizedLiteral> literals;
  int alike = 0;
  for (int round = 0; round < 200'000; ++round) {
    std::string one = "select ", other = one;
    const size_t pieces = 2 + random() % 5;
    for (size_t i = 0; i < pieces; ++i) {
      const size_t piece = random() % std::size(kPieces);
      one += kPieces[piece];
      other += kPieces[random() % 3 == 0 ? random() % std::size(kPieces) : piece];
    }
    const TextForm known = FormOf(one);
    if (one == other || !known.Matches(other, literals)) continue;
    ++alike;
    EXPECT_EQ(tokens(one), tokens(other)) << one << "\n" << other;
    EXPECT_EQ(FormOf(other).literals(), known.literals()) << one << "\n" << other;
  }
  EXPECT_GT(alike, 100);
}

TEST(TextForms, BatchesThatCannotShare) {
  for (const char* text : {
           "select a+1 from t group by a+1",
           "select distinct a+1 from t order by a+1",
           "select a from t order by 1+a",
           "select a from t order by isnull(a,0)",
           "select a from t order by (select 1)",
       }) {
    EXPECT_FALSE(ParseBatch(text).shareable) << text;
  }
}

TEST(TextForms, WhatCannotShareHasTheFormOfItsOwnTextAlone) {
  std::vector<ParameterizedLiteral> literals;
  const TextForm form = FormOf("select a+1 from t group by a+1");
  EXPECT_TRUE(form.Matches("select a+1 from t group by a+1", literals));
  EXPECT_TRUE(literals.empty());
  EXPECT_FALSE(form.Matches("select a+2 from t group by a+2", literals));
}

TEST(TextForms, LiteralsInTheOrderOfTheText) {
  EXPECT_EQ(LiteralsOf("select a from t where a=007 and b='it''s' and c=N'x' and d=1.50"),
            "007|it's|x|1.50");
  EXPECT_EQ(LiteralsOf("update t set a=0where b=5And c=-1e3"), "0|5|1e3");
  EXPECT_EQ(LiteralsOf("select top 3 a as 'b' from t where c in(1,2) order by 1"), "1|2");
}

// Numbers that the parser takes for something else than values.
TEST(TextForms, NumbersThatAreNoParameters) {
  for (const char* text : {"set rowcount +5", "select 1e", "select 1e+", "select 0x1F",
                           "select a from t with(index(1))"}) {
    EXPECT_EQ("", LiteralsOf(text)) << text;
  }
}

TEST(TextForms, LengthsOfTextsInUtf16) {
  std::vector<ParameterizedLiteral> literals;
  const char kText[] = "select 'it''s', N'\xe5\x8d\x95 and eight more', '\xf0\x9f\x98\x80', ''";
  ASSERT_TRUE(FormOf(kText).Matches(kText, literals));
  ASSERT_EQ(4u, literals.size());
  EXPECT_EQ(4u, literals[0].units);
  EXPECT_EQ(16u, literals[1].units);
  EXPECT_EQ(2u, literals[2].units);
  EXPECT_EQ(0u, literals[3].units);
}

}  // namespace
}  // namespace tavcc::sql
