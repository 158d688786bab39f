// A point in time: a day of the years that an automation date spans, 100 to 9999, and a
// three-hundredth of a second, as SQL Server's `datetime` holds it.
//
// Every date of the system comes from such a column or goes into one, so nothing finer is kept;
// what a host passes may lie before 1753, where `datetime` begins.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavcc {

class DateTime {
 public:
  static constexpr int kTicksPerSecond = 300;
  static constexpr int kTicksPerDay = 24 * 60 * 60 * kTicksPerSecond;

  struct Parts {
    int year, month, day, hour, minute, second;
    int millisecond;  // of the rounded tick: ends in 0, 3 or 7
  };

  constexpr DateTime() = default;  // 1900-01-01 00:00:00

  // `days` since 1900-01-01, `ticks` of 1/300 second since midnight (0 to kTicksPerDay - 1).
  static constexpr DateTime FromDays(int32_t days, int32_t ticks = 0) {
    DateTime result;
    result.ticks_ = static_cast<int64_t>(days) * kTicksPerDay + ticks;
    return result;
  }

  // Nothing when a part is out of range or the year outside 100 to 9999.
  static std::optional<DateTime> FromParts(const Parts& parts);

  // Reads "YYYY-MM-DD[ HH:MM[:SS[.fff]]]" (also with "/" between the parts of the date, and "T" as
  // the blank), and "YYYYMMDD". Nothing for any other text or a date that does not exist.
  static std::optional<DateTime> Parse(std::string_view text);

  // From an automation date: days since 1899-12-30, the fraction being the time of day also before
  // that day. Rounded to the nearest tick. Nothing outside the years 100 to 9999.
  static std::optional<DateTime> FromAutomation(double date);
  double ToAutomation() const;

  // Ticks of 1/300 second since 1900-01-01; negative before.
  static constexpr DateTime FromTicks(int64_t ticks) {
    DateTime result;
    result.ticks_ = ticks;
    return result;
  }
  constexpr int64_t ticks() const { return ticks_; }
  int32_t Days() const;        // since 1900-01-01, rounded down
  int32_t TicksOfDay() const;  // since midnight
  Parts ToParts() const;

  // "YYYY-MM-DD HH:MM:SS", or the date alone where the time is midnight. Parse reads it back; only
  // fractions of a second are lost.
  std::string ToText() const;

  friend auto operator<=>(const DateTime&, const DateTime&) = default;

 private:
  int64_t ticks_ = 0;
};

}  // namespace tavcc
