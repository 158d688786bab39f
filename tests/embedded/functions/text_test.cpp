// Text functions, LIKE and the collation.
#include <gtest/gtest.h>

#include "embedded/functions/evaluator.h"

namespace tavcc::sql {
namespace {

struct Case {
  std::string expression;
  std::string expected;
};

class TextFunction : public ::testing::Test {
 protected:
  void Check(std::initializer_list<Case> cases) {
    for (const Case& c : cases) EXPECT_EQ(evaluate_(c.expression), c.expected) << c.expression;
  }
  Evaluator evaluate_;
};

// "LEFT", "RIGHT", "SUBSTRING (Transact-SQL)": "If start is less than 1, the returned expression
// begins at the first character that is specified in expression. In this case, the number of
// characters that are returned is the largest value of either the sum of start + length - 1 or 0."
TEST_F(TextFunction, Parts) {
  Check({{"t_left('abcdef', 2)", "ab"},
         {"t_left('abc', 0)", ""},
         {"t_left('abc', 10)", "abc"},
         {"t_left('abc', -1)",
          "537 Invalid length parameter passed to the LEFT or SUBSTRING function."},
         {"t_right('abcdef', 2)", "ef"},
         {"t_right('abc', 10)", "abc"},
         {"t_right('abc', -1)", "536 Invalid length parameter passed to the RIGHT function."},
         {"t_substring('abcdef', 2, 3)", "bcd"},
         {"t_substring('abcdef', 0, 3)", "ab"},
         {"t_substring('abcdef', -1, 3)", "a"},
         {"t_substring('abcdef', -5, 3)", ""},
         {"t_substring('abcdef', 5, 100)", "ef"},
         {"t_substring('abcdef', 7, 1)", ""},
         {"t_substring('abcdef', 1, -1)",
          "537 Invalid length parameter passed to the LEFT or SUBSTRING function."},
         {"t_substring('1043000000000000', 0, 12)", "10430000000"},
         {"t_substring(NULL, 1, 1)", "NULL"},
         {"t_left('单据已审核', 2)", "单据"},
         {"t_right('单据已审核', 2)", "审核"},
         {"t_substring('单据已审核', 2, 2)", "据已"}});
}

// "LEN": "excluding trailing spaces". "DATALENGTH": bytes. A character beyond the first plane is
// two units where the collation has no _SC.
TEST_F(TextFunction, Lengths) {
  Check({{"t_len('abc  ')", "3"},
         {"t_len('  abc')", "5"},
         {"t_len('')", "0"},
         {"t_len('   ')", "0"},
         {"t_len('单据')", "2"},
         {"t_len('😀')", "2"},
         {"t_datalength('abc  ', 1)", "5"},
         {"t_datalength('单据', 2)", "4"},
         {"t_datalength(x'0102', 1)", "2"},
         {"t_left('😀a', 1)", ""},
         {"t_left('😀a', 2)", "😀"}});
}

TEST_F(TextFunction, TrimAndCase) {
  Check({{"t_ltrim('  a ')", "a "},
         {"t_rtrim(' a  ')", " a"},
         {"t_ltrim('   ')", ""},
         {"t_upper('abcé单')", "ABCÉ单"},
         {"t_lower('ABCÉЖ')", "abcéж"},
         {"t_upper('ÿ÷')", "ÿ÷"},
         {"t_reverse('ab单')", "单ba"}});
}

// "REPLACE" and "CHARINDEX (Transact-SQL)" compare by the collation of their input, here one
// without case: CHARINDEX('TEST', 'This is a Test') is 11 in the page's case-insensitive example.
TEST_F(TextFunction, Search) {
  Check({{"t_charindex('TEST', 'This is a Test')", "11"},
         {"t_charindex('is', 'This is a Test', 4)", "6"},
         {"t_charindex('is', 'This is a Test', -3)", "3"},
         {"t_charindex('x', 'abc')", "0"},
         {"t_charindex('', 'abc')", "0"},
         {"t_charindex('核', '已审核')", "3"},
         {"t_charindex(NULL, 'abc')", "NULL"},
         {"t_replace('abcdefghicde', 'cde', 'xxx')", "abxxxfghixxx"},
         {"t_replace('abCabc', 'ABC', 'x')", "xx"},
         {"t_replace('abc', '', 'x')", "abc"},
         {"t_replace('a.b.c', '.', '')", "abc"},
         {"t_patindex('%ter%', 'interesting data')", "3"},
         {"t_patindex('%en_ure%', 'Please ensure the door is locked!')", "8"},
         {"t_patindex('a%', 'abc')", "1"},
         {"t_patindex('b%', 'abc')", "0"}});
}

// "STUFF (Transact-SQL)", example A: 'abcdef', 2, 3, 'ijklmn'.
TEST_F(TextFunction, Building) {
  Check({{"t_stuff('abcdef', 2, 3, 'ijklmn')", "aijklmnef"},
         {"t_stuff('abcdef', 7, 1, 'x')", "NULL"},
         {"t_stuff('abcdef', 0, 1, 'x')", "NULL"},
         {"t_stuff('abcdef', 2, -1, 'x')", "NULL"},
         {"t_stuff('abcdef', 2, 2, NULL)", "adef"},
         {"t_replicate('0', 4)", "0000"},
         {"t_replicate('ab', -1)", "NULL"},
         {"length(t_replicate('abc', 5000))", "8000"},
         {"length(t_replicate('abc', 5000, -1))", "15000"},
         {"length(t_replicate('abc', 5000, 4000))", "4000"},
         {"t_replicate('a', 9000000000000000000, -1)", "sqlite: string or blob too big"},
         {"t_replicate('', 9000000000000000000)", ""},
         {"t_space(3)", "   "},
         {"t_concat('abc', 'def', 4)", "abcd"},
         {"t_concat('abc', 'def', -1)", "abcdef"},
         {"hex(t_char(13))", "0D"},
         {"t_char(256)", "NULL"},
         {"t_nchar(26680)", "核"},
         {"t_ascii('A')", "65"},
         {"t_unicode('核')", "26680"},
         {"t_ascii('')", "NULL"}});
}

// "STR (Transact-SQL)": STR(123.45, 6, 1) is ' 123.5' and STR(123.45, 2, 2) is '**'; the default is
// ten characters and no decimals.
TEST_F(TextFunction, NumbersAsText) {
  Check({{"t_str(123.45, 6, 1)", " 123.5"},
         {"t_str(123.45, 2, 2)", "**"},
         {"t_str(123.45)", "       123"},
         {"t_str(123.45, 8, 3)", " 123.450"},
         {"t_str(123.456, 5, 3)", "123.5"}});
}

TEST_F(TextFunction, IsNumericAndIsDate) {
  Check({{"t_isnumeric('12')", "1"},
         {"t_isnumeric('-1.5e3')", "1"},
         {"t_isnumeric('$1,000')", "1"},
         {"t_isnumeric('-')", "1"},
         {"t_isnumeric('abc')", "0"},
         {"t_isnumeric('')", "0"},
         {"t_isnumeric('12a')", "0"},
         {"t_isnumeric(NULL)", "0"},
         {"t_isdate('2026-02-28')", "1"},
         {"t_isdate('2026-02-29')", "0"},
         {"t_isdate('abc')", "0"},
         {"t_isdate('')", "0"},
         {"t_isdate(NULL)", "0"},
         {"t_isdate('1752-12-31')", "0"}});
}

// "LIKE (Transact-SQL)": %, _, [a-f], [^a-f], ESCAPE; "[[]" is a bracket, "5[%]" the text 5%.
TEST_F(TextFunction, Like) {
  Check({{"t_like('abc', 'a%')", "1"},
         {"t_like('abc', 'A_C')", "1"},
         {"t_like('abc', '%b%')", "1"},
         {"t_like('abc', 'b%')", "0"},
         {"t_like('', '%')", "1"},
         {"t_like('', '')", "1"},
         {"t_like('a', '')", "0"},
         {"t_like('xaayaaz', '%aa_aa%')", "1"},
         {"t_like('aaab', '%aab')", "1"},
         {"t_like('Carsen', '[CK]ars[eo]n')", "1"},
         {"t_like('Larsen', '[CK]ars[eo]n')", "0"},
         {"t_like('m1', '[a-m]_')", "1"},
         {"t_like('n1', '[a-m]_')", "0"},
         {"t_like('abc', 'a[^b]%')", "0"},
         {"t_like('adc', 'a[^b]%')", "1"},
         {"t_like('5%', '5[%]')", "1"},
         {"t_like('5x', '5[%]')", "0"},
         {"t_like('a[', 'a[[]')", "1"},
         {"t_like('a-', 'a[-x]')", "1"},
         {"t_like('x]', 'x]')", "1"},
         {"t_like('a', '[a')", "0"},
         {"t_like('10%', '%!%', '!')", "1"},
         {"t_like('10x', '%!%', '!')", "0"},
         {"t_like('a_b', 'a!_b', '!')", "1"},
         {"t_like('axb', 'a!_b', '!')", "0"},
         {"t_like('单据号', '单_号')", "1"},
         {"t_like('abc', NULL)", "NULL"},
         {"t_like('a', 'a', 'xy')",
          "506 The invalid escape character \"xy\" was specified in a LIKE predicate."}});
}

// "LIKE": a pattern 'abc ' does not find 'abc'; a text 'abc ' is found by the pattern 'abc' when
// both are no Unicode, and not when one is.
TEST_F(TextFunction, LikeAndTrailingBlanks) {
  Check({{"t_like('abc', 'abc ')", "0"},
         {"t_like('abc ', 'abc')", "0"},
         {"t_like_char('abc', 'abc ')", "0"},
         {"t_like_char('abc  ', 'abc')", "1"},
         {"t_like_char('abc ', 'abc ')", "1"},
         {"t_like_char('abcd ', 'abc')", "0"}});
}

TEST_F(TextFunction, LikeIsNotExponential) {
  const std::string text(2000, 'a');
  EXPECT_EQ(evaluate_("t_like('" + text + "', '%a%a%a%a%a%a%a%a%a%a%b')"), "0");
}

TEST(Collation, CaseWidthAndTrailingBlanksDoNotCount) {
  struct Pair {
    std::string_view a, b;
    int expected;
  };
  const Pair pairs[] = {
      {"abc", "ABC", 0},       {"abc", "abc   ", 0}, {"", "   ", 0},
      {"ＡＢＣ１", "abc1", 0}, {"É", "é", 0},        {"Ж", "ж", 0},
      {"é", "e", 1},           {"a", "b", -1},       {"ab", "a", 1},
      {"a b", "ab", -1},       {" a", "a", -1},      {"a", "a\t", 1},
      {"单", "单据", -1},      {"单据", "单证", -1}, {"单\xe3\x80\x80", "单", 0},
      {"核x", "核X", 0},       {"_", "a", -1},       {"Z", "_", 1},
      {"\xff", "\xfe", 1},
  };
  for (const Pair& pair : pairs) {
    const int result = CompareText(pair.a, pair.b);
    EXPECT_EQ((result > 0) - (result < 0), pair.expected) << pair.a << " / " << pair.b;
    const int reverse = CompareText(pair.b, pair.a);
    EXPECT_EQ((reverse > 0) - (reverse < 0), -pair.expected) << pair.b << " / " << pair.a;
  }
}

TEST(Collation, IsWhatSqliteComparesAndIndexesBy) {
  Evaluator evaluate;
  evaluate.Run("create table t(a text collate tsql unique)");
  evaluate.Run("insert into t values('Abc'),('Ｂ')");
  EXPECT_EQ(evaluate.Run("select count(*) from t where a='aBC  '"), "1");
  EXPECT_EQ(evaluate.Run("select count(*) from t where a='b'"), "1");
  EXPECT_EQ(evaluate.Run("insert into t values('ABC ')"), "sqlite: UNIQUE constraint failed: t.a");
  EXPECT_EQ(evaluate.Run("select max(a) from t"), "Ｂ");
}

}  // namespace
}  // namespace tavcc::sql
