// The Gregorian calendar in days since 1900-01-01, and times in ticks of 1/300 s.
#pragma once

#include <chrono>
#include <cstdint>

#include "embedded/types/sql_type.h"

namespace tavcc::sql {

inline constexpr int64_t kTicksPerSecond = 300;
inline constexpr int64_t kTicksPerMinute = 60 * kTicksPerSecond;
inline constexpr int64_t kTicksPerDay = 24 * 60 * kTicksPerMinute;

struct CivilDate {
  int year = 1900, month = 1, day = 1;
};

inline constexpr std::chrono::sys_days kFirstDay = std::chrono::January / 1 / 1900;

constexpr int DaysInMonth(int year, int month) {
  const std::chrono::year_month_day_last last = std::chrono::year(year) /
                                                std::chrono::month(static_cast<unsigned>(month)) /
                                                std::chrono::last;
  return static_cast<int>(static_cast<unsigned>(last.day()));
}

constexpr int64_t DaysFromCivil(CivilDate date) {
  const std::chrono::sys_days day = std::chrono::year(date.year) /
                                    std::chrono::month(static_cast<unsigned>(date.month)) /
                                    std::chrono::day(static_cast<unsigned>(date.day));
  return (day - kFirstDay).count();
}

constexpr CivilDate CivilFromDays(int64_t days) {
  const std::chrono::year_month_day date(kFirstDay + std::chrono::days(days));
  return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day()))};
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
  return static_cast<int>(std::chrono::weekday(kFirstDay + std::chrono::days(day)).c_encoding());
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
