#include "foundation/decimal.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavcc {
namespace {

Decimal D(std::string_view text) {
  return Decimal::Parse(text).value();
}

constexpr const char* kMost = "99999999999999999999999999999999999999";  // 38 digits

TEST(Decimal, ParsesPlainTextAndKeepsItsScale) {
  struct Row {
    const char* text;
    const char* shown;
    int scale;
  };
  const Row rows[] = {
      {"0", "0", 0},
      {"-0", "0", 0},
      {"1.50", "1.50", 2},
      {" +007.10 ", "7.10", 2},
      {"-.5", "-0.5", 1},
      {"5.", "5", 0},
      {kMost, kMost, 0},
      {"0.00000000000000000000000000000000000001", "0.00000000000000000000000000000000000001", 38},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(D(row.text).ToText(), row.shown) << row.text;
    EXPECT_EQ(D(row.text).scale(), row.scale) << row.text;
  }
}

TEST(Decimal, RefusesWhatIsNoNumberText) {
  for (const char* text :
       {"", " ", "-", ".", "1e3", "1,000", "1 2", "0x1", "--1", "1.2.3", "１",
        "100000000000000000000000000000000000000", "0.000000000000000000000000000000000000001"}) {
    EXPECT_FALSE(Decimal::Parse(text)) << text;
  }
}

TEST(Decimal, AddsExactly) {
  EXPECT_EQ(Decimal::Add(D("0.1"), D("0.2"))->ToText(), "0.3");
  EXPECT_EQ(Decimal::Add(D("1.50"), D("-1.5"))->ToText(), "0.00");
  EXPECT_EQ(Decimal::Subtract(D("1"), D("1.0000000001"))->ToText(), "-0.0000000001");
  EXPECT_EQ(Decimal::Add(D("9223372036854775807"), D("1"))->ToText(), "9223372036854775808");
  EXPECT_FALSE(Decimal::Add(D(kMost), D("1")));
  // A sum that needs 39 digits gives up its last decimal, rounded half away from zero.
  EXPECT_EQ(Decimal::Add(D("9999999999999999999999999999999999999.5"), D("0.05"))->ToText(),
            "9999999999999999999999999999999999999.6");
}

TEST(Decimal, MultipliesAndDivides) {
  EXPECT_EQ(Decimal::Multiply(D("-12.34"), D("5.6"))->ToText(), "-69.104");
  EXPECT_EQ(Decimal::Multiply(D("10000000000000000000"), D("9999999999999999999"))->ToText(),
            "99999999999999999990000000000000000000");
  EXPECT_FALSE(Decimal::Multiply(D("10000000000000000000"), D("10000000000000000000")));
  EXPECT_EQ(Decimal::Divide(D("2"), D("3"), 6)->ToText(), "0.666666");
  EXPECT_EQ(Decimal::Divide(D("-2"), D("3"), 0)->ToText(), "0");
  EXPECT_EQ(Decimal::Divide(D("1"), D("0.00000000000000000007"), 18)->ToText(),
            "14285714285714285714.285714285714285714");
  EXPECT_EQ(Decimal::Divide(D(kMost), D("12345678901234567890"), 0)->ToText(),
            "8100000072900000663");  // checked with Python's integers
  EXPECT_FALSE(Decimal::Divide(D(kMost), D("0.1"), 0));
}

TEST(Decimal, RoundsHalfAwayWhenItChangesScaleAndHalfToEvenWhenItIsAskedTo) {
  EXPECT_EQ(D("2.5").Rescaled(0)->ToText(), "3");
  EXPECT_EQ(D("-2.5").Rescaled(0)->ToText(), "-3");
  EXPECT_EQ(D("2.4999").Rescaled(0)->ToText(), "2");
  EXPECT_EQ(D("2.9").Truncated(0)->ToText(), "2");
  EXPECT_EQ(D("2.5").RoundedHalfEven(0).ToText(), "2");
  EXPECT_EQ(D("3.5").RoundedHalfEven(0).ToText(), "4");
  EXPECT_EQ(D("2.50000000000000000001").RoundedHalfEven(0).ToText(), "3");
  EXPECT_EQ(D("-0.4").RoundedHalfEven(0).ToText(), "0");
  EXPECT_EQ(D("1.5").Rescaled(3)->ToText(), "1.500");
  EXPECT_FALSE(D(kMost).Rescaled(1));
}

TEST(Decimal, ComparesValuesNotRepresentations) {
  EXPECT_EQ(D("1.5"), D("1.500"));
  EXPECT_LT(D("-2"), D("-1.99"));
  EXPECT_LT(D("-1"), D("0"));
  EXPECT_GT(D(kMost), D("0.5"));
  EXPECT_EQ(D("-0.0"), D("0"));
}

TEST(Decimal, GoesToAndFromDoublesByFifteenDigits) {
  EXPECT_EQ(Decimal::FromDouble(0.1)->ToText(), "0.1");
  EXPECT_EQ(Decimal::FromDouble(-1234.5600)->ToText(), "-1234.56");
  EXPECT_EQ(Decimal::FromDouble(1.0 / 3)->ToText(), "0.333333333333333");
  EXPECT_EQ(Decimal::FromDouble(1e20)->ToText(), "100000000000000000000");
  EXPECT_EQ(Decimal::FromDouble(1e-40)->ToText(), "0");
  EXPECT_FALSE(Decimal::FromDouble(1e38));
  EXPECT_FALSE(Decimal::FromDouble(std::numeric_limits<double>::infinity()));
  EXPECT_FALSE(Decimal::FromDouble(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(D("0.1").ToDouble(), 0.1);
  EXPECT_EQ(D("-123456789012345678901234567890").ToDouble(), -123456789012345678901234567890.0);
}

TEST(Decimal, KnowsItsCoefficient) {
  EXPECT_EQ(D("-1.50").Coefficient64(), -150);
  EXPECT_EQ(Decimal(std::numeric_limits<int64_t>::min()).ToText(), "-9223372036854775808");
  EXPECT_EQ(Decimal(std::numeric_limits<int64_t>::min()).Coefficient64(),
            std::numeric_limits<int64_t>::min());
  EXPECT_EQ(D("9223372036854775808").Coefficient64(), std::nullopt);
  EXPECT_EQ(D("0.00").Digits(), 1);
  EXPECT_EQ(D(kMost).Digits(), 38);
  EXPECT_EQ(D("1.500").Normalized().ToText(), "1.5");
  EXPECT_EQ(D("100").Normalized().ToText(), "100");
}

}  // namespace
}  // namespace tavcc
