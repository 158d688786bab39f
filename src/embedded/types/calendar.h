// The Gregorian calendar in days since 1900-01-01, and times in ticks of 1/300 s.
#pragma once

#include <cstdint>

#include "embedded/types/sql_type.h"

namespace tavcc::sql {

inline constexpr int64_t kTicksPerSecond = 300;
inline constexpr int64_t kTicksPerDay = 24 * 60 * 60 * kTicksPerSecond;

struct CivilDate {
  int year = 1900, month = 1, day = 1;
};

constexpr bool IsLeapYear(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr int DaysInMonth(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

// Years count from March here, so that a leap day is the last of its year.
constexpr int64_t DaysFromCivil(CivilDate date) {
  const int64_t y = date.month <= 2 ? date.year - 1 : date.year;
  const int64_t era = (y >= 0 ? y : y - 399) / 400;
  const int64_t year_of_era = y - era * 400;
  const int64_t day_of_year =
      (153 * (date.month + (date.month > 2 ? -3 : 9)) + 2) / 5 + date.day - 1;
  const int64_t day_of_era = year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  constexpr int64_t kDaysFrom0000ToBase = 693901;  // 0000-03-01 to 1900-01-01
  return era * 146097 + day_of_era - kDaysFrom0000ToBase;
}

constexpr CivilDate CivilFromDays(int64_t days) {
  constexpr int64_t kDaysFrom0000ToBase = 693901;
  const int64_t z = days + kDaysFrom0000ToBase;
  const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const int64_t day_of_era = z - era * 146097;
  const int64_t year_of_era =
      (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
  const int64_t day_of_year =
      day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  const int64_t shifted_month = (5 * day_of_year + 2) / 153;
  const int day = static_cast<int>(day_of_year - (153 * shifted_month + 2) / 5 + 1);
  const int month = static_cast<int>(shifted_month < 10 ? shifted_month + 3 : shifted_month - 9);
  const int year = static_cast<int>(year_of_era + era * 400 + (month <= 2 ? 1 : 0));
  return {year, month, day};
}

static_assert(DaysFromCivil({1900, 1, 1}) == 0);
static_assert(DaysFromCivil({1753, 1, 1}) == -53690);
static_assert(DaysFromCivil({9999, 12, 31}) == 2958463);

constexpr int64_t FloorDivide(int64_t value, int64_t by) {
  return value / by - (value % by < 0 ? 1 : 0);
}
constexpr int64_t DayOfTicks(int64_t ticks) {
  return FloorDivide(ticks, kTicksPerDay);
}
constexpr int64_t TimeOfTicks(int64_t ticks) {
  return ticks - DayOfTicks(ticks) * kTicksPerDay;
}

// The ticks nearest to a number of milliseconds, and back: .000, .003 and .007 follow each other.
constexpr int64_t TicksOfMilliseconds(int64_t milliseconds) {
  return FloorDivide(milliseconds * 3 + 5, 10);
}
constexpr int64_t MillisecondsOfTicks(int64_t ticks) {
  return (ticks * 20 + 3) / 6;
}

// 0 is a Sunday.
constexpr int WeekdayOfDay(int64_t day) {
  const int64_t shifted = day + 1;  // 1900-01-01 was a Monday
  return static_cast<int>(shifted - FloorDivide(shifted, 7) * 7);
}

// Whether a date type can hold the tick: datetime from 1753 to 9999, smalldatetime from 1900-01-01
// to 2079-06-06, date from 0001 to 9999.
constexpr bool InRangeOf(TypeKind kind, int64_t ticks) {
  constexpr int64_t kFirstDate = DaysFromCivil({1, 1, 1});
  constexpr int64_t kFirstDateTime = DaysFromCivil({1753, 1, 1});
  constexpr int64_t kLast = DaysFromCivil({9999, 12, 31});
  constexpr int64_t kLastSmall = DaysFromCivil({2079, 6, 6});
  const int64_t day = DayOfTicks(ticks);
  switch (kind) {
    case TypeKind::kDate:
      return day >= kFirstDate && day <= kLast;
    case TypeKind::kSmallDateTime:
      return day >= 0 && day <= kLastSmall;
    default:
      return day >= kFirstDateTime && day <= kLast;
  }
}

}  // namespace tavcc::sql
