// Type names, precedence, result types and literals.
#include "embedded/types/type_rules.h"
#include "embedded/types/literals.h"
#include "embedded/types/stored_conversions.h"

#include <gtest/gtest.h>

#include "embedded/error.h"
#include "embedded/functions/functions.h"
#include "embedded/types/named_types.h"

namespace tavcc::sql {
namespace {

template <class Function>
std::string TextOrError(Function function) {
  try {
    return function();
  } catch (const SqlError& error) {
    return std::to_string(error.number) + " " + error.message;
  }
}

std::string Resolve(const std::string& name, std::vector<int> arguments = {},
                    TypeNameUse use = TypeNameUse::kDeclaration, const TypePlace& place = {}) {
  return TextOrError([&] {
    return TypeText(ResolveTypeName({name, std::move(arguments)}, use, place));
  });
}

// "decimal and numeric": the default is (18,0), of a scale 0; "char and varchar": 1 in a
// declaration, 30 in CAST; "float": 1 to 24 is real.
TEST(TypeNames, DefaultsAndSynonyms) {
  EXPECT_EQ(Resolve("INT"), "int");
  EXPECT_EQ(Resolve("integer"), "int");
  EXPECT_EQ(Resolve("decimal"), "decimal(18,0)");
  EXPECT_EQ(Resolve("dec", {10}), "decimal(10,0)");
  EXPECT_EQ(Resolve("Numeric", {28, 10}), "decimal(28,10)");
  EXPECT_EQ(Resolve("varchar"), "varchar(1)");
  EXPECT_EQ(Resolve("varchar", {}, TypeNameUse::kCast), "varchar(30)");
  EXPECT_EQ(Resolve("nvarchar", {SqlType::kMax}), "nvarchar(max)");
  EXPECT_EQ(Resolve("text"), "varchar(max)");
  EXPECT_EQ(Resolve("ntext"), "nvarchar(max)");
  EXPECT_EQ(Resolve("image"), "varbinary(max)");
  EXPECT_EQ(Resolve("sysname"), "nvarchar(128)");
  EXPECT_EQ(Resolve("float", {24}), "real");
  EXPECT_EQ(Resolve("float", {53}), "float");
  EXPECT_EQ(Resolve("varchar", {8000}), "varchar(8000)");
}

TEST(TypeNames, Refusals) {
  EXPECT_EQ(Resolve("foo", {}, TypeNameUse::kDeclaration, {2, 1, {}}),
            "2715 Column, parameter, or variable #2: Cannot find data type foo.");
  EXPECT_EQ(Resolve("foo", {}, TypeNameUse::kCast), "243 Type foo is not a defined system type.");
  EXPECT_EQ(
      Resolve("int", {4}),
      "2716 Column, parameter, or variable #1: Cannot specify a column width on data type int.");
  EXPECT_EQ(Resolve("int", {4}, TypeNameUse::kCast),
            "291 CAST or CONVERT: invalid attributes specified for type 'int'");
  EXPECT_EQ(Resolve("varchar", {0}, TypeNameUse::kDeclaration, {1, 3, {}}),
            "1001 Line 3: Length or precision specification 0 is invalid.");
  EXPECT_EQ(
      Resolve("varchar", {8001}, TypeNameUse::kCast),
      "131 The size (8001) given to the type 'varchar' exceeds the maximum allowed for any data "
      "type (8000).");
  EXPECT_EQ(
      Resolve("varchar", {8001}, TypeNameUse::kDeclaration, {1, 1, "a"}),
      "131 The size (8001) given to the column 'a' exceeds the maximum allowed for any data type "
      "(8000).");
  EXPECT_EQ(Resolve("nvarchar", {4001}, TypeNameUse::kDeclaration, {1, 1, "a"}),
            "2717 The size (4001) given to the parameter 'a' exceeds the maximum allowed (4000).");
  EXPECT_EQ(
      Resolve("decimal", {39, 0}),
      "2750 Column or parameter #1: Specified column precision 39 is greater than the maximum "
      "precision of 38.");
  EXPECT_EQ(Resolve("decimal", {5, 6}),
            "192 The scale must be less than or equal to the precision.");
  EXPECT_EQ(Resolve("xml"), "50001 Not supported by the embedded database: type xml.");
}

// "Precision, scale, and length", the table and the two examples below it, and results well known
// of the server: 2.0/3 is decimal(7,6), decimal(28,10) squared decimal(38,6).
TEST(ArithmeticTypes, PrecisionAndScale) {
  const auto text = [](SqlType (*rule)(const SqlType&, const SqlType&), SqlType a, SqlType b) {
    return TypeText(rule(a, b));
  };
  EXPECT_EQ(text(DecimalSum, DecimalType(5, 2), DecimalType(7, 4)), "decimal(8,4)");
  EXPECT_EQ(text(DecimalSum, DecimalType(28, 10), DecimalType(28, 10)), "decimal(29,10)");
  EXPECT_EQ(text(DecimalSum, DecimalType(38, 10), DecimalType(38, 0)), "decimal(38,0)");
  EXPECT_EQ(text(DecimalSum, DecimalType(38, 10), DecimalType(38, 10)), "decimal(38,10)");
  EXPECT_EQ(text(DecimalSum, DecimalType(38, 10), DecimalType(28, 10)), "decimal(38,10)");
  EXPECT_EQ(text(DecimalProduct, DecimalType(5, 2), DecimalType(5, 2)), "decimal(11,4)");
  EXPECT_EQ(text(DecimalProduct, DecimalType(28, 10), DecimalType(28, 10)), "decimal(38,6)");
  EXPECT_EQ(text(DecimalProduct, DecimalType(30, 20), DecimalType(30, 20)), "decimal(38,17)");
  EXPECT_EQ(text(DecimalProduct, DecimalType(30, 10), DecimalType(30, 10)), "decimal(38,6)");
  EXPECT_EQ(text(DecimalProduct, DecimalType(38, 2), DecimalType(38, 2)), "decimal(38,4)");
  EXPECT_EQ(text(DecimalQuotient, DecimalType(2, 1), DecimalType(1, 0)), "decimal(7,6)");
  EXPECT_EQ(text(DecimalQuotient, DecimalType(38, 10), DecimalType(38, 10)), "decimal(38,6)");
  EXPECT_EQ(text(DecimalQuotient, DecimalType(28, 10), DecimalType(28, 10)), "decimal(38,10)");
  EXPECT_EQ(text(DecimalRemainder, DecimalType(10, 2), DecimalType(5, 3)), "decimal(5,3)");
}

std::string Meet(BinaryOperator op, SqlType a, SqlType b, const int64_t* ca = nullptr,
                 const int64_t* cb = nullptr) {
  return TextOrError([&] { return TypeText(ResolveArithmetic(op, a, b, ca, cb).type); });
}

TEST(ArithmeticTypes, OperandsOfDifferentTypes) {
  using enum BinaryOperator;
  EXPECT_EQ(Meet(kAdd, kInt, kInt), "int");
  EXPECT_EQ(Meet(kAdd, kTinyInt, kTinyInt), "tinyint");
  EXPECT_EQ(Meet(kAdd, kBit, kInt), "int");
  EXPECT_EQ(Meet(kDivide, kInt, kBigInt), "bigint");
  EXPECT_EQ(Meet(kMultiply, kInt, DecimalType(28, 10)), "decimal(38,9)");
  EXPECT_EQ(Meet(kAdd, kMoney, kInt), "money");
  EXPECT_EQ(Meet(kAdd, kMoney, DecimalType(5, 2)), "decimal(20,4)");
  EXPECT_EQ(Meet(kAdd, kReal, kInt), "real");
  EXPECT_EQ(Meet(kAdd, kFloat, DecimalType(5, 2)), "float");
  EXPECT_EQ(Meet(kAdd, VarChar(3), VarChar(4)), "varchar(7)");
  EXPECT_EQ(Meet(kAdd, VarChar(3), NVarChar(4)), "nvarchar(7)");
  EXPECT_EQ(Meet(kAdd, VarChar(8000), VarChar(4)), "varchar(8000)");
  EXPECT_EQ(Meet(kAdd, VarChar(SqlType::kMax), VarChar(4)), "varchar(max)");
  EXPECT_EQ(Meet(kAdd, VarChar(3), kInt), "int");
  EXPECT_EQ(Meet(kSubtract, kDateTime, kInt), "datetime");
  EXPECT_EQ(Meet(kAdd, kDateTime, VarChar(10)), "datetime");
  EXPECT_EQ(Meet(kAdd, kSmallDateTime, kInt), "smalldatetime");
  EXPECT_EQ(Meet(kAdd, SqlType{}, kInt), "int");
  EXPECT_EQ(Meet(kBitAnd, kInt, kTinyInt), "int");
}

// An int constant beside a decimal has the digits that it has.
TEST(ArithmeticTypes, ConstantsCountByTheirDigits) {
  using enum BinaryOperator;
  const int64_t one = 1, minus_one = -1, hundred = 100;
  EXPECT_EQ(Meet(kMultiply, kInt, DecimalType(28, 10), &one), "decimal(30,10)");
  EXPECT_EQ(Meet(kMultiply, kInt, DecimalType(28, 10), &minus_one), "decimal(30,10)");
  EXPECT_EQ(Meet(kDivide, DecimalType(2, 1), kInt, nullptr, &hundred), "decimal(7,6)");
  EXPECT_EQ(Meet(kAdd, kInt, kInt, &one, &one), "int");
  EXPECT_EQ(TypeText(ConstantAsDecimal(0)), "decimal(1,0)");
}

// Messages 402, 8117 and 206 by operator and type, as the server gives them.
TEST(ArithmeticTypes, Refusals) {
  using enum BinaryOperator;
  EXPECT_EQ(Meet(kAdd, kBit, kBit),
            "402 The data types bit and bit are incompatible in the add operator.");
  EXPECT_EQ(Meet(kSubtract, VarChar(3), VarChar(3)),
            "8117 Operand data type varchar is invalid for subtract operator.");
  EXPECT_EQ(Meet(kModulo, VarChar(3), VarChar(3)),
            "402 The data types varchar and varchar are incompatible in the modulo operator.");
  EXPECT_EQ(Meet(kModulo, kFloat, kInt),
            "402 The data types float and int are incompatible in the modulo operator.");
  EXPECT_EQ(Meet(kMultiply, kDateTime, kInt),
            "8117 Operand data type datetime is invalid for multiply operator.");
  EXPECT_EQ(Meet(kAdd, kDate, kInt), "206 Operand type clash: date is incompatible with int");
  EXPECT_EQ(Meet(kAdd, kDate, kDate), "8117 Operand data type date is invalid for add operator.");
  EXPECT_EQ(Meet(kAdd, kDate, kDateTime),
            "402 The data types date and datetime are incompatible in the add operator.");
  EXPECT_EQ(Meet(kBitAnd, DecimalType(5, 2), kInt),
            "402 The data types numeric and int are incompatible in the '&' operator.");
}

TEST(ArithmeticTypes, Unary) {
  using Operator = UnaryOperator;
  const auto text = [](Operator op, SqlType type) {
    return TextOrError([&] { return TypeText(ResolveUnary(op, type)); });
  };
  EXPECT_EQ(text(Operator::kMinus, kInt), "int");
  EXPECT_EQ(text(Operator::kMinus, kTinyInt), "smallint");
  EXPECT_EQ(text(Operator::kMinus, DecimalType(5, 2)), "decimal(5,2)");
  EXPECT_EQ(text(Operator::kMinus, kBit),
            "8117 Operand data type bit is invalid for minus operator.");
  EXPECT_EQ(text(Operator::kMinus, VarChar(3)),
            "8117 Operand data type varchar is invalid for minus operator.");
  EXPECT_EQ(text(Operator::kPlus, VarChar(3)), "varchar(3)");
  EXPECT_EQ(text(Operator::kBitNot, kFloat),
            "8117 Operand data type float is invalid for '~' operator.");
}

// "Data type precedence (Transact-SQL)", and UNION's row of "Precision, scale, and length".
TEST(CommonTypes, HigherPrecedenceWins) {
  const auto text = [](SqlType a, SqlType b) {
    const auto one = TextOrError([&] { return TypeText(CommonType(a, b)); });
    return one;
  };
  EXPECT_EQ(text(kInt, VarChar(5)), "int");
  EXPECT_EQ(text(VarChar(5), VarChar(9)), "varchar(9)");
  EXPECT_EQ(text(TextType(TypeKind::kChar, 5), VarChar(3)), "varchar(5)");
  EXPECT_EQ(text(TextType(TypeKind::kChar, 5), TextType(TypeKind::kChar, 3)), "char(5)");
  EXPECT_EQ(text(VarChar(5), NVarChar(3)), "nvarchar(5)");
  EXPECT_EQ(text(VarChar(8000), NVarChar(3)), "nvarchar(max)");
  EXPECT_EQ(text(kInt, DecimalType(5, 2)), "decimal(12,2)");
  EXPECT_EQ(text(DecimalType(28, 10), DecimalType(10, 2)), "decimal(28,10)");
  EXPECT_EQ(text(DecimalType(38, 10), DecimalType(38, 2)), "decimal(38,2)");
  EXPECT_EQ(text(kMoney, DecimalType(5, 2)), "decimal(19,4)");
  EXPECT_EQ(text(kMoney, kInt), "money");
  EXPECT_EQ(text(kFloat, DecimalType(5, 2)), "float");
  EXPECT_EQ(text(kDateTime, VarChar(5)), "datetime");
  EXPECT_EQ(text(kDateTime, kInt), "datetime");
  EXPECT_EQ(text(kDate, kDateTime), "datetime");
  EXPECT_EQ(text(SqlType{}, kInt), "int");
  EXPECT_EQ(text(kInt, SqlType{}), "int");
  EXPECT_EQ(text(kDate, kInt), "206 Operand type clash: date is incompatible with int");
  EXPECT_EQ(text(kInt, kDate), "206 Operand type clash: int is incompatible with date");
}

// The chart of the "CAST and CONVERT" page.
TEST(Convertibility, ImplicitExplicitNever) {
  const auto implicit = [](SqlType a, SqlType b) {
    return TextOrError([&] {
      CheckImplicit(a, b);
      return std::string("ok");
    });
  };
  EXPECT_EQ(implicit(VarChar(5), kInt), "ok");
  EXPECT_EQ(implicit(kInt, VarChar(5)), "ok");
  EXPECT_EQ(implicit(kInt, kDateTime), "ok");
  EXPECT_EQ(implicit(kFloat, kInt), "ok");
  EXPECT_EQ(implicit(SqlType{}, kDate), "ok");
  EXPECT_EQ(
      implicit(kDateTime, kInt),
      "257 Implicit conversion from data type datetime to int is not allowed. Use the CONVERT "
      "function to run this query.");
  EXPECT_EQ(implicit(VarChar(5), TextType(TypeKind::kVarBinary, 5)),
            "257 Implicit conversion from data type varchar to varbinary is not allowed. Use the "
            "CONVERT function to run this query.");
  EXPECT_EQ(implicit(kInt, kDate), "206 Operand type clash: int is incompatible with date");
  const auto explicitly = [](SqlType a, SqlType b) {
    return TextOrError([&] {
      CheckExplicit(a, b);
      return std::string("ok");
    });
  };
  EXPECT_EQ(explicitly(kDateTime, kInt), "ok");
  EXPECT_EQ(explicitly(kInt, kDate),
            "529 Explicit conversion from data type int to date is not allowed.");
}

std::string Literal(LiteralForm form, const std::string& text) {
  return TextOrError([&] {
    const TypedValue value = EvaluateLiteral(form, text);
    return TypeText(value.type) + " " + DisplayText(value.value, value.type);
  });
}

// "Constants (Transact-SQL)": "integer constants" beyond int are numeric; "decimal constants" have
// the digits written.
TEST(Literals, TypeAndValue) {
  using Form = LiteralForm;
  EXPECT_EQ(Literal(Form::kInteger, "7"), "int 7");
  EXPECT_EQ(Literal(Form::kInteger, "007"), "int 7");
  EXPECT_EQ(Literal(Form::kInteger, "2147483647"), "int 2147483647");
  EXPECT_EQ(Literal(Form::kInteger, "2147483648"), "decimal(10,0) 2147483648");
  EXPECT_EQ(Literal(Form::kInteger, "10000000000000000000"), "decimal(20,0) 10000000000000000000");
  EXPECT_EQ(Literal(Form::kDecimal, "1.50"), "decimal(3,2) 1.50");
  EXPECT_EQ(Literal(Form::kDecimal, "0.000000001"), "decimal(9,9) 0.000000001");
  EXPECT_EQ(Literal(Form::kDecimal, ".5"), "decimal(1,1) 0.5");
  EXPECT_EQ(Literal(Form::kDecimal, "5."), "decimal(1,0) 5");
  EXPECT_EQ(Literal(Form::kDecimal, "0.0"), "decimal(1,1) 0.0");
  EXPECT_EQ(Literal(Form::kFloat, "1e3"), "float 1.0000000000000000e+003");
  EXPECT_EQ(Literal(Form::kText, ""), "varchar(1) ");
  EXPECT_EQ(Literal(Form::kText, "abc"), "varchar(3) abc");
  EXPECT_EQ(Literal(Form::kNationalText, "单据"), "nvarchar(2) 单据");
  EXPECT_EQ(Literal(Form::kText, std::string(9000, 'x')), "varchar(max) " + std::string(9000, 'x'));
  EXPECT_EQ(Literal(Form::kBinary, "0AF"), "varbinary(2) 0x00AF");
  EXPECT_EQ(Literal(Form::kBinary, ""), "varbinary(1) 0x");
  EXPECT_EQ(Literal(Form::kInteger, std::string(39, '9')),
            "1007 The number '" + std::string(39, '9') +
                "' is out of the range for numeric representation (maximum precision 38).");
  EXPECT_EQ(
      Literal(Form::kFloat, "1e400"),
      "168 The floating point value '1e400' is out of the range of computer representation (8 "
      "bytes).");
  EXPECT_TRUE(EvaluateLiteral(Form::kNull, "").value.IsNull());
}

// "SUM" and "AVG (Transact-SQL)", return types.
TEST(Aggregates, ResultTypes) {
  const auto text = [](Aggregate aggregate, SqlType type) {
    return TextOrError([&] { return TypeText(ResolveAggregate(aggregate, type)); });
  };
  EXPECT_EQ(text(Aggregate::kSum, kTinyInt), "int");
  EXPECT_EQ(text(Aggregate::kSum, kBigInt), "bigint");
  EXPECT_EQ(text(Aggregate::kSum, DecimalType(28, 10)), "decimal(38,10)");
  EXPECT_EQ(text(Aggregate::kAvg, DecimalType(28, 2)), "decimal(38,6)");
  EXPECT_EQ(text(Aggregate::kAvg, DecimalType(28, 10)), "decimal(38,10)");
  EXPECT_EQ(text(Aggregate::kAvg, kInt), "int");
  EXPECT_EQ(text(Aggregate::kSum, kReal), "float");
  EXPECT_EQ(text(Aggregate::kMin, VarChar(5)), "varchar(5)");
  EXPECT_EQ(text(Aggregate::kCount, VarChar(5)), "int");
  EXPECT_EQ(text(Aggregate::kSum, VarChar(5)),
            "8117 Operand data type varchar is invalid for sum operator.");
  EXPECT_EQ(text(Aggregate::kMax, kBit), "8117 Operand data type bit is invalid for max operator.");
  EXPECT_EQ(text(Aggregate::kSum, SqlType{}),
            "8117 Operand data type NULL is invalid for sum operator.");
}

TEST(Codes, TypesSurviveThem) {
  for (const SqlType& type :
       {kInt, kDateTime, DecimalType(38, 38), DecimalType(1, 0), VarChar(8000),
        NVarChar(SqlType::kMax), TextType(TypeKind::kChar, 1), SqlType{}}) {
    EXPECT_EQ(TypeFromCode(TypeCode(type)), type) << TypeText(type);
    EXPECT_LT(TypeCode(type), 1 << 20) << TypeText(type);
  }
}

TEST(Groups, WhatIsAlwaysAnInteger) {
  EXPECT_TRUE(AlwaysStoredAsInteger(DecimalType(18, 10)));
  EXPECT_FALSE(AlwaysStoredAsInteger(DecimalType(19, 0)));
  EXPECT_TRUE(AlwaysStoredAsInteger(kMoney));
  EXPECT_TRUE(AlwaysStoredAsInteger(kDateTime));
  EXPECT_FALSE(AlwaysStoredAsInteger(kFloat));
  EXPECT_FALSE(AlwaysStoredAsInteger(VarChar(3)));
}

}  // namespace
}  // namespace tavcc::sql
