// Dates as text: the styles of CONVERT, and what the server reads under the language us_english.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavcc::sql {

enum class DateReading : uint8_t { kOk, kNoDate, kOutOfRange };

// Reads a date, a time or both in any of the forms that the server takes: "20260301", "2026-03-01",
// "3/1/2026", "Mar 1 2026", "1 March 2026 10:30:15.123 PM", "2026-03-01T10:00:00", "" (1900-01-01).
// The style of CONVERT decides whether the day or the month stands first in a date of numbers;
// without one the month does. kOutOfRange: the form is right but there is no such date (a month
// 13).
DateReading ReadDate(std::string_view text, int style, int64_t* ticks);

// Appends the date in a style of CONVERT; false when there is no such style. `date_only` leaves the
// time away (of the type date).
bool WriteDate(int64_t ticks, int style, bool date_only, std::string* out);

// "January" for 1; "Sunday" for 0.
std::string_view MonthName(int month);
std::string_view WeekdayName(int weekday);

}  // namespace tavcc::sql
