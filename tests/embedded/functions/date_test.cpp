// Date functions.
#include <gtest/gtest.h>

#include "embedded/functions/evaluator.h"

namespace tavcc::sql {
namespace {

const SqlType kDateTime = Type(TypeKind::kDateTime);
const SqlType kText = TextType(TypeKind::kVarChar, 40);

std::string Date(const std::string& text, const SqlType& type = kDateTime) {
  return "t_conv('" + text + "'," + Code(kText, type) + ")";
}
std::string Part(DatePart part) {
  return std::to_string(static_cast<int>(part));
}
// As text with milliseconds.
std::string Shown(const std::string& expression, const SqlType& type = kDateTime) {
  return "t_conv(" + expression + "," + Code(type, kText, ConvertMode::kCast, 121) + ")";
}

class DateFunction : public ::testing::Test {
 protected:
  std::string Difference(DatePart part, const std::string& a, const std::string& b) {
    return evaluate_("t_datediff(" + Part(part) + "," + Date(a) + "," + Date(b) + ")");
  }
  std::string Sum(DatePart part, const std::string& number, const std::string& date,
                  const SqlType& type = kDateTime) {
    return evaluate_(Shown("t_dateadd(" + Part(part) + "," + number + "," + Date(date, type) + "," +
                               std::to_string(TypeCode(type)) + ")",
                           type));
  }
  std::string Value(DatePart part, const std::string& date) {
    return evaluate_("t_datepart(" + Part(part) + "," + Date(date) + ")");
  }
  Evaluator evaluate_;
};

// "DATEDIFF (Transact-SQL)": "the count (as a signed integer value) of the specified datepart
// boundaries crossed between the specified startdate and enddate". Its example: one tick from
// 2005-12-31 23:59:59.9999999 to 2006-01-01 00:00:00 crosses every boundary.
TEST_F(DateFunction, DifferenceCountsBoundaries) {
  for (const DatePart part :
       {DatePart::kYear, DatePart::kQuarter, DatePart::kMonth, DatePart::kDayOfYear, DatePart::kDay,
        DatePart::kWeek, DatePart::kWeekday, DatePart::kHour, DatePart::kMinute,
        DatePart::kSecond}) {
    if (part == DatePart::kWeek) {  // 2005-12-31 was a Saturday
      EXPECT_EQ(Difference(part, "2005-12-31 23:59:59.997", "2006-01-01 00:00:00"), "1");
      continue;
    }
    EXPECT_EQ(Difference(part, "2005-12-31 23:59:59.997", "2006-01-01 00:00:00"), "1")
        << static_cast<int>(part);
  }
  EXPECT_EQ(Difference(DatePart::kMillisecond, "2005-12-31 23:59:59.997", "2006-01-01"), "3");
  EXPECT_EQ(Difference(DatePart::kDay, "2026-03-01 23:00:00", "2026-03-01 00:00:00"), "0");
  EXPECT_EQ(Difference(DatePart::kDay, "2026-03-02", "2026-03-01 23:59:59"), "-1");
  EXPECT_EQ(Difference(DatePart::kYear, "2025-12-31", "2026-01-01"), "1");
  EXPECT_EQ(Difference(DatePart::kYear, "2026-01-01", "2026-12-31"), "0");
  EXPECT_EQ(Difference(DatePart::kMonth, "2026-01-31", "2026-02-01"), "1");
  EXPECT_EQ(Difference(DatePart::kDay, "1899-12-31 18:00:00", "1900-01-01 06:00:00"), "1");
  EXPECT_EQ(Difference(DatePart::kHour, "1899-12-31 23:30:00", "1900-01-01 00:10:00"), "1");
  EXPECT_EQ(Difference(DatePart::kWeek, "2026-03-14", "2026-03-15"), "1");  // Saturday, Sunday
  EXPECT_EQ(Difference(DatePart::kWeek, "2026-03-15", "2026-03-21"), "0");
}

// "DATEDIFF": for millisecond the largest difference is 24 days, 20 hours, 31 minutes and 23.647 s,
// for second 68 years, 19 days, 3 hours, 14 minutes and 7 s.
TEST_F(DateFunction, DifferencesBeyondAnIntFail) {
  const std::string overflow =
      "535 The datediff function resulted in an overflow. The number of dateparts separating two "
      "date/time instances is too large. Try to use datediff with a less precise datepart.";
  EXPECT_EQ(Difference(DatePart::kMillisecond, "2026-01-01", "2026-01-25 20:31:23.647"),
            "2147483647");
  EXPECT_EQ(Difference(DatePart::kMillisecond, "2026-01-01", "2026-01-25 20:31:23.650"), overflow);
  EXPECT_EQ(Difference(DatePart::kSecond, "1900-01-01", "1968-01-20 03:14:07"), "2147483647");
  EXPECT_EQ(Difference(DatePart::kSecond, "1900-01-01", "1968-01-20 03:14:08"), overflow);
  EXPECT_EQ(Difference(DatePart::kNanosecond, "1753-01-01", "9999-12-31"), overflow);
}

// "DATEADD (Transact-SQL)": "If … the date month has more days than the return month, and the date
// day doesn't exist in the return month, then DATEADD returns the last day of the return month":
// 2006-08-30 and 2006-08-31 plus one month are 2006-09-30.
TEST_F(DateFunction, Sums) {
  EXPECT_EQ(Sum(DatePart::kMonth, "1", "2006-08-30"), "2006-09-30 00:00:00.000");
  EXPECT_EQ(Sum(DatePart::kMonth, "1", "2006-08-31"), "2006-09-30 00:00:00.000");
  EXPECT_EQ(Sum(DatePart::kMonth, "-1", "2026-03-31"), "2026-02-28 00:00:00.000");
  EXPECT_EQ(Sum(DatePart::kYear, "1", "2024-02-29"), "2025-02-28 00:00:00.000");
  EXPECT_EQ(Sum(DatePart::kQuarter, "-1", "2026-01-15 10:00:00"), "2025-10-15 10:00:00.000");
  EXPECT_EQ(Sum(DatePart::kDay, "-1", "1900-01-01"), "1899-12-31 00:00:00.000");
  EXPECT_EQ(Sum(DatePart::kWeek, "2", "2026-03-01"), "2026-03-15 00:00:00.000");
  EXPECT_EQ(Sum(DatePart::kHour, "25", "2026-03-01"), "2026-03-02 01:00:00.000");
  EXPECT_EQ(Sum(DatePart::kMinute, "-1", "2026-03-01"), "2026-02-28 23:59:00.000");
  EXPECT_EQ(Sum(DatePart::kMillisecond, "2", "2026-03-01"), "2026-03-01 00:00:00.003");
  EXPECT_EQ(Sum(DatePart::kMillisecond, "1", "2026-03-01"), "2026-03-01 00:00:00.000");
  EXPECT_EQ(Sum(DatePart::kYear, "8000", "2026-03-01"),
            "517 Adding a value to a 'datetime' column caused an overflow.");
  EXPECT_EQ(Sum(DatePart::kDay, "-1", "1753-01-01"),
            "517 Adding a value to a 'datetime' column caused an overflow.");
  EXPECT_EQ(Sum(DatePart::kHour, "1", "2026-03-01", Type(TypeKind::kDate)),
            "9810 The datepart hour is not supported by date function dateadd for data type date.");
}

// "DATEPART" and "DATENAME (Transact-SQL)" with 2007-10-30 12:15:32.123: the page's own table.
TEST_F(DateFunction, Parts) {
  const std::string moment = "2007-10-30 12:15:32.123";
  const std::pair<DatePart, std::string> parts[] = {
      {DatePart::kYear, "2007"},     {DatePart::kQuarter, "4"},       {DatePart::kMonth, "10"},
      {DatePart::kDayOfYear, "303"}, {DatePart::kDay, "30"},          {DatePart::kWeek, "44"},
      {DatePart::kWeekday, "3"},     {DatePart::kHour, "12"},         {DatePart::kMinute, "15"},
      {DatePart::kSecond, "32"},     {DatePart::kMillisecond, "123"}, {DatePart::kIsoWeek, "44"},
  };
  for (const auto& [part, expected] : parts) EXPECT_EQ(Value(part, moment), expected) << expected;
  EXPECT_EQ(Value(DatePart::kWeek, "2026-01-01"), "1");
  EXPECT_EQ(Value(DatePart::kWeek, "2026-01-04"), "2");  // a Sunday
  // ISO 8601 by the calendar: 2027-01-01 is a Friday and belongs to week 53 of 2026.
  EXPECT_EQ(Value(DatePart::kIsoWeek, "2027-01-01"), "53");
  EXPECT_EQ(Value(DatePart::kIsoWeek, "2025-12-29"), "1");
  EXPECT_EQ(evaluate_("t_datename(" + Part(DatePart::kMonth) + "," + Date(moment) + ")"),
            "October");
  EXPECT_EQ(evaluate_("t_datename(" + Part(DatePart::kWeekday) + "," + Date(moment) + ")"),
            "Tuesday");
  EXPECT_EQ(evaluate_("t_datename(" + Part(DatePart::kYear) + "," + Date(moment) + ")"), "2007");
}

TEST_F(DateFunction, WordsOfParts) {
  const std::pair<std::string_view, DatePart> words[] = {
      {"Day", DatePart::kDay},        {"D", DatePart::kDay},
      {"dd", DatePart::kDay},         {"YY", DatePart::kYear},
      {"yyyy", DatePart::kYear},      {"m", DatePart::kMonth},
      {"mi", DatePart::kMinute},      {"n", DatePart::kMinute},
      {"y", DatePart::kDayOfYear},    {"wk", DatePart::kWeek},
      {"dw", DatePart::kWeekday},     {"hh", DatePart::kHour},
      {"ms", DatePart::kMillisecond}, {"ISO_WEEK", DatePart::kIsoWeek},
      {"qq", DatePart::kQuarter},
  };
  for (const auto& [word, part] : words) EXPECT_EQ(ParseDatePart(word), part) << word;
  EXPECT_EQ(ParseDatePart("days"), std::nullopt);
}

TEST_F(DateFunction, SumsOfDatesAreSumsOfDays) {
  const std::string code = std::to_string(TypeCode(kDateTime));
  const std::string two = "t_conv(2," + Code(Type(TypeKind::kInt), kDateTime) + ")";
  EXPECT_EQ(evaluate_(Shown("t_add_datetime(" + Date("2026-02-27 10:00:00") + "," + two + "," +
                            code + ")")),
            "2026-03-01 10:00:00.000");
  EXPECT_EQ(evaluate_(Shown("t_sub_datetime(" + Date("1753-01-01") + "," + two + "," + code + ")")),
            "8115 Arithmetic overflow error converting expression to data type datetime.");
}

TEST_F(DateFunction, TheClockStandsStillWithinAStatement) {
  int readings = 0;
  evaluate_.session().clock = [&readings] {
    ++readings;
    return *DateTime::Parse("2026-03-15 10:00:00");
  };
  EXPECT_EQ(evaluate_.Run("select t_getdate() = t_getdate() from (select 1 union select 2)"), "1");
  EXPECT_EQ(readings, 1);
  EXPECT_EQ(evaluate_(Shown("t_getdate()")), "2026-03-15 10:00:00.000");
  EXPECT_EQ(readings, 2);
}

}  // namespace
}  // namespace tavcc::sql
