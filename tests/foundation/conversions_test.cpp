#include "foundation/conversions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "foundation/error.h"
#include "foundation/text.h"
#include "foundation/vector.h"

namespace tavcc {
namespace {

// The number of the error that `call` raises; 0 when it raises none.
int32_t ErrorOf(const std::function<void()>& call) {
  try {
    call();
    return 0;
  } catch (const AutomationError& error) {
    return error.number();
  }
}

const ObjectPtr kNothing;
const Decimal kHalf = *Decimal::Parse("0.5");

TEST(Conversions, ToALongRoundHalfToEven) {
  const struct {
    Value value;
    int32_t expected;
  } rows[] = {
      {Empty{}, 0},
      {true, -1},
      {false, 0},
      {int16_t{-7}, -7},
      {int32_t{1040001}, 1040001},
      {0.5, 0},
      {1.5, 2},
      {2.5, 2},
      {-0.5, 0},
      {-1.5, -2},
      {2147483647.4, 2147483647},
      {"1040001", 1040001},
      {" -3 ", -3},
      {"2.5", 2},
      {"1e3", 1000},
      {kHalf, 0},
      {*Decimal::Parse("3.5"), 4},
      {*DateTime::Parse("1900-01-01 12:00:00"), 2},
  };
  for (const auto& row : rows) EXPECT_EQ(ToLong(row.value), row.expected);
}

TEST(Conversions, ToALongRaiseTheNumbersOfAutomation) {
  const struct {
    Value value;
    int32_t number;
  } rows[] = {
      {Null{}, 94},      {"", 13},           {"12a", 13},
      {"inf", 13},       {"nan", 13},        {"0x10", 13},
      {2147483647.5, 6}, {-2147483649.0, 6}, {NAN, 6},
      {1e300, 6},        {"3000000000", 6},  {kNothing, 91},
      {Missing{}, 13},   {"1e999", 6},       {*Decimal::Parse("2147483648"), 6},
  };
  for (const auto& row : rows) EXPECT_EQ(ErrorOf([&] { ToLong(row.value); }), row.number);
}

TEST(Conversions, ToAnIntegerOverflowAtSixteenBits) {
  EXPECT_EQ(ToInteger(int32_t{32767}), 32767);
  EXPECT_EQ(ErrorOf([] { ToInteger(int32_t{32768}); }), 6);
  EXPECT_EQ(ErrorOf([] { ToInteger(-32769.0); }), 6);
  EXPECT_EQ(ToInteger("16394"), 16394);
}

TEST(Conversions, ToABooleanReadWordsAndNumbers) {
  EXPECT_TRUE(ToBoolean("true"));
  EXPECT_FALSE(ToBoolean(" False "));
  EXPECT_TRUE(ToBoolean("2"));
  EXPECT_TRUE(ToBoolean(kHalf));
  EXPECT_FALSE(ToBoolean(Empty{}));
  EXPECT_EQ(ErrorOf([] { ToBoolean("yes"); }), 13);
  EXPECT_EQ(ErrorOf([] { ToBoolean(Null{}); }), 94);
}

TEST(Conversions, ToTextArePlain) {
  EXPECT_EQ(ToText(Empty{}), "");
  EXPECT_EQ(ToText(true), "True");
  EXPECT_EQ(ToText(*Decimal::Parse("1.50")), "1.5");
  EXPECT_EQ(ToText(*Decimal::Parse("1000.00")), "1000");
  EXPECT_EQ(ToText(*DateTime::Parse("2026-03-01")), "2026-03-01");
  EXPECT_EQ(ErrorOf([] { ToText(Null{}); }), 94);
}

TEST(Conversions, OfDatesGoThereAndBack) {
  EXPECT_EQ(ToDate("2026-03-01 08:00:00"), ToDate(46082 + 8.0 / 24));
  EXPECT_EQ(ErrorOf([] { ToDate(""); }), 13);
  EXPECT_EQ(ErrorOf([] { ToDate(Null{}); }), 94);
  EXPECT_EQ(ErrorOf([] { ToDate(1e9); }), 6);
}

TEST(Conversions, OfSettingsCountNothingAsZero) {
  for (const Value& value :
       {Value(Empty{}), Value(Null{}), Value(Missing{}), Value(""), Value("abc"), Value("1x")}) {
    EXPECT_EQ(NumberOrZero(value), 0);
    EXPECT_EQ(LongOrZero(value), 0);
    EXPECT_TRUE(DecimalOrZero(value).IsZero());
  }
  EXPECT_EQ(NumberOrZero(" 1 "), 1);
  EXPECT_EQ(DecimalOrZero("0.10").ToText(), "0.10");
  EXPECT_EQ(ErrorOf([] { NumberOrZero(kNothing); }), 91);
}

TEST(Conversions, CompareVariantsAsAutomationDoes) {
  EXPECT_TRUE(VariantEquals(int16_t{1}, 1.0));
  EXPECT_TRUE(VariantEquals(true, int32_t{-1}));
  EXPECT_TRUE(VariantEquals(Empty{}, ""));
  EXPECT_TRUE(VariantEquals(Empty{}, int32_t{0}));
  EXPECT_FALSE(VariantEquals(Empty{}, Null{}));
  EXPECT_FALSE(VariantEquals(Null{}, Null{}));
  EXPECT_FALSE(VariantEquals("1", int32_t{1}));
  EXPECT_FALSE(VariantEquals("a", "A"));
  EXPECT_TRUE(VariantEquals(kHalf, 0.5));
}

TEST(NumberText, IsPlainDecimalTextOfFifteenDigits) {
  const struct {
    double value;
    const char* text;
  } rows[] = {
      {0, "0"},
      {-0.0, "0"},
      {1, "1"},
      {-1.5, "-1.5"},
      {100.01, "100.01"},
      {0.1 + 0.2, "0.3"},
      {1e15, "1000000000000000"},
      {1e20, "100000000000000000000"},
      {1.0 / 3, "0.333333333333333"},
      {0.00001, "0.00001"},
      {123456789.123456789, "123456789.123457"},
  };
  for (const auto& row : rows) EXPECT_EQ(NumberText(row.value), row.text);
  EXPECT_EQ(ErrorOf([] { NumberText(INFINITY); }), 6);
}

TEST(Cat, JoinsWithoutQuotingOrGrouping) {
  EXPECT_EQ(Cat("a", std::string("b"), 1234567, -1, 0.5, *Decimal::Parse("2.50"), "'"),
            "ab1234567-10.52.5'");
  EXPECT_EQ(Cat(), "");
}

TEST(Trim, TakesBlanksOnly) {
  EXPECT_EQ(Trim("  a b "), "a b");
  EXPECT_EQ(Trim("\ta\n"), "\ta\n");
  EXPECT_EQ(Trim("   "), "");
}

}  // namespace
}  // namespace tavcc
