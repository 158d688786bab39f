#include "foundation/date_time.h"

#include <gtest/gtest.h>

namespace tavcc {
namespace {

DateTime At(std::string_view text) {
  return DateTime::Parse(text).value();
}

TEST(DateTime, ReadsTheFormsThatItShows) {
  for (const char* text :
       {"2026-03-15", "2026-03-15 10:00:00", "1753-01-01", "9999-12-31 23:59:59", "0100-01-01",
        "1752-12-31", "1899-12-30", "1900-01-01 00:00:01", "2024-02-29"}) {
    EXPECT_EQ(At(text).ToText(), text);
  }
  EXPECT_EQ(At("20260315").ToText(), "2026-03-15");
  EXPECT_EQ(At(" 2026/3/5 7:08 ").ToText(), "2026-03-05 07:08:00");
  EXPECT_EQ(At("2026-03-05T07:08:09").ToText(), "2026-03-05 07:08:09");
}

TEST(DateTime, RefusesDatesThatDoNotExist) {
  for (const char* text : {"", "2026", "2026-02-29", "2026-13-01", "2026-00-01", "2026-01-32",
                           "0099-12-31", "10000-01-01", "2026-01-01 24:00:00", "2026-01-01 10",
                           "2026-01-01x", "2026-01/01", "2026-01-01 10:00:60", "01.02.2026"}) {
    EXPECT_FALSE(DateTime::Parse(text)) << text;
  }
}

// "Rounded to increments of .000, .003, or .007 seconds": the documentation of datetime.
TEST(DateTime, KeepsThreeHundredthsOfASecond) {
  const struct {
    const char* written;
    const char* day;
    int second, millisecond;
  } rows[] = {
      {"2026-03-15 23:59:59.999", "2026-03-16", 0, 0},
      {"2026-03-15 23:59:59.998", "2026-03-15 23:59:59", 59, 997},
      {"2026-03-15 00:00:01.995", "2026-03-15 00:00:01", 1, 997},
      {"2026-03-15 00:00:01.994", "2026-03-15 00:00:01", 1, 993},
      {"2026-03-15 00:00:01.991", "2026-03-15 00:00:01", 1, 990},
      {"2026-03-15 00:00:01.5", "2026-03-15 00:00:01", 1, 500},
  };
  for (const auto& row : rows) {
    const DateTime date = At(row.written);
    EXPECT_EQ(date.ToText(), row.day) << row.written;
    EXPECT_EQ(date.ToParts().second, row.second) << row.written;
    EXPECT_EQ(date.ToParts().millisecond, row.millisecond) << row.written;
  }
}

// Day 0 is 1899-12-30; before it the fraction still counts forward from midnight, so -1.25 is six
// o'clock of the 29th (the documentation of the DATE type of automation).
TEST(DateTime, ConvertsToAutomationDatesOnBothSidesOfTheirOrigin) {
  EXPECT_EQ(At("1899-12-30").ToAutomation(), 0);
  EXPECT_EQ(At("1899-12-29 06:00:00").ToAutomation(), -1.25);
  EXPECT_EQ(At("1900-01-01 12:00:00").ToAutomation(), 2.5);
  EXPECT_EQ(At("2026-03-15").ToAutomation(), 46096);
  for (const char* text : {"1899-12-29 06:00:00", "0100-01-01", "0100-01-01 18:00:00", "1753-01-01",
                           "2026-03-15 10:20:30", "9999-12-31 23:59:59", "1899-12-30 18:00:00"}) {
    EXPECT_EQ(DateTime::FromAutomation(At(text).ToAutomation()), At(text)) << text;
  }
  EXPECT_FALSE(DateTime::FromAutomation(2958466));
  // The first and the last day of an automation date, and what lies just outside.
  EXPECT_EQ(DateTime::FromAutomation(-657434), At("0100-01-01"));
  EXPECT_EQ(DateTime::FromAutomation(-657434.5), At("0100-01-01 12:00:00"));
  EXPECT_FALSE(DateTime::FromAutomation(-657435));
  EXPECT_EQ(DateTime::FromAutomation(-53689), At("1752-12-31"));
  EXPECT_FALSE(DateTime::FromAutomation(1e300));
}

TEST(DateTime, Orders) {
  EXPECT_LT(At("1899-12-31 23:59:59"), At("1900-01-01"));
  EXPECT_EQ(At("1899-12-31 23:59:59").Days(), -1);
  EXPECT_EQ(At("1900-01-02").Days(), 1);
}

}  // namespace
}  // namespace tavcc
