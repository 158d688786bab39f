// Whole numbers, floating point, decimals and aggregates through SQLite.
#include <gtest/gtest.h>

#include "embedded/functions/evaluator.h"

namespace tavcc::sql {
namespace {

struct Case {
  std::string expression;
  std::string expected;
};

class Arithmetic : public ::testing::Test {
 protected:
  void Check(std::initializer_list<Case> cases) {
    for (const Case& c : cases) EXPECT_EQ(evaluate_(c.expression), c.expected) << c.expression;
  }
  Evaluator evaluate_;
};

std::string Overflow(const std::string& type) {
  return "8115 Arithmetic overflow error converting expression to data type " + type + ".";
}
const std::string kDivideByZero = "8134 Divide by zero error encountered.";

// Ranges of "int, bigint, smallint, and tinyint (Transact-SQL)"; texts of sys.messages as "Database
// engine events and errors" lists them.
TEST_F(Arithmetic, WholeNumbersStayInTheirType) {
  Check({{"t_add_int(2147483646, 1)", "2147483647"},
         {"t_add_int(2147483647, 1)", Overflow("int")},
         {"t_sub_int(-2147483648, 1)", Overflow("int")},
         {"t_mul_int(65536, 32768)", Overflow("int")},
         {"t_add_tinyint(200, 55)", "255"},
         {"t_add_tinyint(200, 56)", Overflow("tinyint")},
         {"t_sub_tinyint(1, 2)", Overflow("tinyint")},
         {"t_add_smallint(32767, 1)", Overflow("smallint")},
         {"t_add_bigint(9223372036854775807, 1)", Overflow("bigint")},
         {"t_mul_bigint(4294967296, 4294967296)", Overflow("bigint")},
         {"t_neg_int(-2147483648)", Overflow("int")},
         {"t_abs_int(-2147483648)", Overflow("int")},
         {"t_abs_int(-7)", "7"},
         {"t_add_int(NULL, 1)", "NULL"},
         {"t_add_int(1, NULL)", "NULL"}});
}

// "/ (Division)": "If an integer dividend is divided by an integer divisor, the result is an
// integer that has any fractional part of the result truncated." "% (Modulus)": the sign is the
// dividend's.
TEST_F(Arithmetic, DivisionOfWholeNumbersCutsTowardsZero) {
  Check({{"t_div_int(7, 2)", "3"},
         {"t_div_int(-7, 2)", "-3"},
         {"t_mod_int(38, 5)", "3"},
         {"t_mod_int(-7, 2)", "-1"},
         {"t_div_int(1, 0)", kDivideByZero},
         {"t_mod_int(1, 0)", kDivideByZero},
         {"t_div_int(-2147483648, -1)", Overflow("int")},
         {"t_div_bigint(-9223372036854775807 - 1, -1)", Overflow("bigint")},
         {"t_mod_bigint(-9223372036854775807 - 1, -1)", "0"}});
}

// "ROUND (Transact-SQL)", examples: ROUND(748, -1) = 750, ROUND(748, -2) = 700, ROUND(748, -3) =
// 1000; a nonzero third argument cuts.
TEST_F(Arithmetic, RoundOfWholeNumbers) {
  Check({{"t_round_int(748, -1, 0)", "750"},
         {"t_round_int(748, -2, 0)", "700"},
         {"t_round_int(748, -3, 0)", "1000"},
         {"t_round_int(748, -4, 0)", "0"},
         {"t_round_int(748, 2, 0)", "748"},
         {"t_round_int(-745, -1, 0)", "-750"},
         {"t_round_int(749, -1, 1)", "740"},
         {"t_round_int(2147483647, -1, 0)", Overflow("int")},
         {"t_round_bigint(9223372036854775807, -18, 0)", "9000000000000000000"},
         {"t_round_bigint(9223372036854775807, -19, 0)", "0"}});
}

TEST_F(Arithmetic, FloatsAreChecked) {
  Check({{"t_div_float(1.0, 4.0)", "0.25"},
         {"t_div_float(1.0, 0.0)", kDivideByZero},
         {"t_mul_float(1e300, 1e300)", Overflow("float")},
         {"t_mul_real(1e30, 1e30)", Overflow("real")},
         {"t_sqrt(-1.0)", "3623 An invalid floating point operation occurred."},
         {"t_log(0.0)", "3623 An invalid floating point operation occurred."},
         {"t_power_float(2.0, 10.0)", "1024.0"},
         {"t_power_int(2, 31.0)",
          "232 Arithmetic overflow error for type int, value = 2147483648.000000."},
         {"t_power_int(2, -1.0)", "0"}});
  // "ROUND (Transact-SQL)": "rounds half away from zero", -2.5 to -3.
  Check({{"t_round_float(-2.5, 0, 0)", "-3.0"}, {"t_round_float(1234.567, -2, 0)", "1200.0"}});
}

// "Precision, scale, and length", examples with their results.
TEST_F(Arithmetic, ProductsRoundToTheReducedScale) {
  Check({{"t_mul_decimal(90000000000000, 1000000000000000000, " +
              Shape(20, 18, DecimalType(38, 17)) + ")",
          "90000000000"},
         {"t_mul_decimal(9000, 10000000000, " + Shape(10, 10, DecimalType(38, 6)) + ")", "1"}});
}

// Two thirds are 0.666666 on the server: 2.0/3 is decimal(7,6) and cut, not rounded.
TEST_F(Arithmetic, QuotientsAreCut) {
  Check({{"t_div_decimal(20, 3, " + Shape(1, 0, DecimalType(7, 6)) + ")", "666666"},
         {"t_div_decimal(-20, 3, " + Shape(1, 0, DecimalType(7, 6)) + ")", "-666666"},
         {"t_div_decimal(20, 0, " + Shape(1, 0, DecimalType(7, 6)) + ")", kDivideByZero},
         {"t_mod_decimal(105, 4, " + Shape(1, 1, DecimalType(3, 1)) + ")", "1"}});
}

TEST_F(Arithmetic, DecimalsBeyond64BitsAreExact) {
  const std::string sum = Shape(0, 0, DecimalType(38, 0));
  // 9223372036854775807 + 1 has no 64-bit form; minus 1 it has again.
  EXPECT_EQ(evaluate_("typeof(t_add_decimal(9223372036854775807, 1, " + sum + "))"), "blob");
  Check({{"t_sub_decimal(t_add_decimal(9223372036854775807, 1, " + sum + "), 1, " + sum + ")",
          "9223372036854775807"},
         {"length(t_add_decimal(9223372036854775807, 1, " + sum + "))", "17"},
         {"t_add_decimal(99, 1, " + Shape(0, 0, DecimalType(2, 0)) + ")", Overflow("numeric")},
         {"t_mul_decimal(9223372036854775807, 9223372036854775807, " + sum +
              ") = t_mul_decimal(-9223372036854775807, -9223372036854775807, " + sum + ")",
          "1"}});
}

TEST_F(Arithmetic, OrderOfDecimals) {
  evaluate_.Run("create table t(x)");
  const std::string sum = Shape(0, 0, DecimalType(38, 0));
  evaluate_.Run("insert into t values(0),(1),(-1),(NULL),(t_add_decimal(9223372036854775807,1," +
                sum + ")),(t_mul_decimal(-9223372036854775807,2," + sum +
                ")),(t_mul_decimal(-9223372036854775807,3," + sum + "))");
  const std::string text =
      "ifnull(t_conv(x," + Code(DecimalType(38, 0), TextType(TypeKind::kVarChar, 50)) + "),'NULL')";
  const std::string rows = "select group_concat(c, ' ') from (select " + text +
                           " as c from t order by t_order_decimal(x), x)";
  EXPECT_EQ(evaluate_.Run(rows),
            "NULL -27670116110564327421 -18446744073709551614 -1 0 1 9223372036854775808");
  EXPECT_EQ(evaluate_.Run("select t_conv(t_min_decimal(x)," +
                          Code(DecimalType(38, 0), TextType(TypeKind::kVarChar, 50)) + ") from t"),
            "-27670116110564327421");
  EXPECT_EQ(evaluate_.Run("select t_conv(t_max_decimal(x)," +
                          Code(DecimalType(38, 0), TextType(TypeKind::kVarChar, 50)) + ") from t"),
            "9223372036854775808");
  Check({{"t_cmp_decimal(15, 150, " + Shape(1, 2, DecimalType(38, 2)) + ")", "0"},
         {"t_cmp_decimal(15, 151, " + Shape(1, 2, DecimalType(38, 2)) + ")", "-1"},
         {"t_cmp_decimal(9223372036854775807, 1, " + Shape(0, 10, DecimalType(38, 2)) + ")", "1"}});
}

// "ROUND (Transact-SQL)", examples: ROUND(123.4545, 2) = 123.4500, ROUND(123.45, -2) = 100.00,
// ROUND(150.75, 0) = 151.00, ROUND(150.75, 0, 1) = 150.00, ROUND(748.58, -3) overflows
// decimal(5,2).
TEST_F(Arithmetic, RoundOfDecimals) {
  const std::string money_like = Shape(2, 0, DecimalType(5, 2));
  Check({{"t_round_decimal(1234545, 2, 0, " + Shape(4, 0, DecimalType(7, 4)) + ")", "1234500"},
         {"t_round_decimal(12345, -2, 0, " + money_like + ")", "10000"},
         {"t_round_decimal(15075, 0, 0, " + money_like + ")", "15100"},
         {"t_round_decimal(15075, 0, 1, " + money_like + ")", "15000"},
         {"t_round_decimal(74858, -3, 0, " + money_like + ")", Overflow("numeric")},
         {"t_round_decimal(74858, -4, 0, " + money_like + ")", "0"},
         {"t_round_decimal(-15, 0, 0, " + Shape(1, 0, DecimalType(5, 1)) + ")", "-20"}});
}

TEST_F(Arithmetic, CeilingAndFloor) {
  const std::string shape = Shape(2, 0, DecimalType(38, 0));
  // "CEILING (Transact-SQL)" and "FLOOR (Transact-SQL)", examples with 123.45 and -123.45.
  Check({{"t_ceiling_decimal(12345, " + shape + ")", "124"},
         {"t_ceiling_decimal(-12345, " + shape + ")", "-123"},
         {"t_floor_decimal(12345, " + shape + ")", "123"},
         {"t_floor_decimal(-12345, " + shape + ")", "-124"},
         {"t_floor_decimal(12300, " + shape + ")", "123"},
         {"t_sign_decimal(-12345, " + Shape(2, 0, DecimalType(5, 2)) + ")", "-100"}});
}

// "SUM" and "AVG (Transact-SQL)": the type of the sum is int for int; "If the sum exceeds the
// maximum value for the data type of the return value, AVG() will return an error."
TEST_F(Arithmetic, SumsAndAverages) {
  evaluate_.Run("create table t(i, d)");
  EXPECT_EQ(evaluate_.Run("select t_sum_int(i) from t"), "NULL");
  EXPECT_EQ(evaluate_.Run("select t_sum_decimal(d) from t"), "NULL");
  evaluate_.Run("insert into t values(2147483647, 100),(1, 200),(NULL, NULL),(-1, 200)");
  const std::string average = Shape(2, 0, DecimalType(38, 6));
  EXPECT_EQ(evaluate_.Run("select t_sum_int(i) from t"), "2147483647");
  EXPECT_EQ(evaluate_.Run("select t_sum_int(i) from t where i>0"), Overflow("int"));
  EXPECT_EQ(evaluate_.Run("select t_avg_int(i) from t where i>0"), Overflow("int"));
  EXPECT_EQ(evaluate_.Run("select t_sum_bigint(i) from t where i>0"), "2147483648");
  EXPECT_EQ(evaluate_.Run("select t_avg_int(i) from t where i<5"), "0");
  EXPECT_EQ(evaluate_.Run("select t_sum_decimal(d) from t"), "500");
  EXPECT_EQ(evaluate_.Run("select t_sum_decimal(distinct d) from t"), "300");
  // 1.00, 2.00, 2.00: 5/3 cut after six decimals.
  EXPECT_EQ(evaluate_.Run("select t_avg_decimal(d, " + average + ") from t"), "1666666");
}

TEST_F(Arithmetic, DecimalSumsOverflowAt38Digits) {
  evaluate_.Run("create table t(d)");
  const std::string big = "t_conv('" + std::string(38, '9') + "', " +
                          Code(TextType(TypeKind::kVarChar, 50), DecimalType(38, 0)) + ")";
  evaluate_.Run("insert into t values(" + big + ")");
  const std::string text = "select t_conv(t_sum_decimal(d)," +
                           Code(DecimalType(38, 0), TextType(TypeKind::kVarChar, 50)) + ") from t";
  EXPECT_EQ(evaluate_.Run(text), std::string(38, '9'));
  evaluate_.Run("insert into t values(1)");
  EXPECT_EQ(evaluate_.Run(text), Overflow("numeric"));
  evaluate_.Run("delete from t");
  evaluate_.Run("insert into t values(9223372036854775807),(9223372036854775807)");
  EXPECT_EQ(evaluate_.Run(text), "18446744073709551614");
  EXPECT_EQ(evaluate_.Run("select t_sum_money(d) from t"), Overflow("money"));
}

// A branch that is not taken must not fail, although its arguments are constants.
TEST_F(Arithmetic, ConstantsInBranchesNotTakenDoNotFail) {
  EXPECT_EQ(evaluate_("case when 1=0 then t_div_int(1,0) else 5 end"), "5");
  evaluate_.Run("create table t(x)");
  evaluate_.Run("insert into t values(0)");
  EXPECT_EQ(evaluate_.Run("select case when x<>0 then t_div_int(1,0) else 5 end from t"), "5");
  EXPECT_EQ(evaluate_.Run("select coalesce(x, t_div_int(1,0)) from t"), "0");
  EXPECT_EQ(evaluate_.Run("select iif(x=1, t_div_int(1,0), 3) from t"), "3");
}

}  // namespace
}  // namespace tavcc::sql
