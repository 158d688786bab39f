// Date functions. All dates are ticks of 1/300 s since 1900-01-01.
#include <algorithm>
#include <array>
#include <limits>
#include <string>

#include "embedded/functions/support.h"
#include "embedded/types/calendar.h"
#include "embedded/types/date_text.h"
#include "embedded/types/type_rules.h"
#include "foundation/text.h"

namespace tavcc::sql {
namespace {

struct PartWord {
  std::string_view word;
  DatePart part;
};

// The words of the "DATEPART" page with their abbreviations.
// clang-format off
constexpr auto kPartWords = std::to_array<PartWord>({
    {"year", DatePart::kYear}, {"yyyy", DatePart::kYear}, {"yy", DatePart::kYear},
    {"quarter", DatePart::kQuarter}, {"qq", DatePart::kQuarter}, {"q", DatePart::kQuarter},
    {"month", DatePart::kMonth}, {"mm", DatePart::kMonth}, {"m", DatePart::kMonth},
    {"dayofyear", DatePart::kDayOfYear}, {"dy", DatePart::kDayOfYear}, {"y", DatePart::kDayOfYear},
    {"day", DatePart::kDay}, {"dd", DatePart::kDay}, {"d", DatePart::kDay},
    {"week", DatePart::kWeek}, {"wk", DatePart::kWeek}, {"ww", DatePart::kWeek},
    {"iso_week", DatePart::kIsoWeek}, {"isowk", DatePart::kIsoWeek}, {"isoww", DatePart::kIsoWeek},
    {"weekday", DatePart::kWeekday}, {"dw", DatePart::kWeekday}, {"w", DatePart::kWeekday},
    {"hour", DatePart::kHour}, {"hh", DatePart::kHour},
    {"minute", DatePart::kMinute}, {"mi", DatePart::kMinute}, {"n", DatePart::kMinute},
    {"second", DatePart::kSecond}, {"ss", DatePart::kSecond}, {"s", DatePart::kSecond},
    {"millisecond", DatePart::kMillisecond}, {"ms", DatePart::kMillisecond},
    {"microsecond", DatePart::kMicrosecond}, {"mcs", DatePart::kMicrosecond},
    {"nanosecond", DatePart::kNanosecond}, {"ns", DatePart::kNanosecond},
});
// clang-format on

}  // namespace

std::optional<DatePart> ParseDatePart(std::string_view word) {
  for (const PartWord& entry : kPartWords) {
    if (EqualsIgnoringCase(entry.word, word)) return entry.part;
  }
  return std::nullopt;
}

std::string_view DatePartWord(DatePart part) {
  return std::ranges::find(kPartWords, part, &PartWord::part)->word;
}

namespace internal {
namespace {

constexpr int64_t kTicksPerHour = 60 * kTicksPerMinute;

// No date is beyond these; what is nevertheless must not overflow anything.
int64_t TicksOf(sqlite3_value* value) {
  constexpr int64_t kBeyondAny = 100000000000000;
  return std::clamp<int64_t>(sqlite3_value_int64(value), -kBeyondAny, kBeyondAny);
}

DatePart PartOf(sqlite3_value* value) {
  constexpr int kLast = static_cast<int>(DatePart::kNanosecond);
  return static_cast<DatePart>(std::clamp(sqlite3_value_int(value), 0, kLast));
}

int64_t MonthsOf(int64_t ticks) {
  const CivilDate date = CivilFromDays(DayOfTicks(ticks));
  return int64_t{date.year} * 12 + date.month - 1;
}

int64_t MillisecondsSince1900(int64_t ticks) {
  const int64_t seconds = FloorDivide(ticks, kTicksPerSecond);
  return seconds * 1000 + MillisecondsOfTicks(ticks - seconds * kTicksPerSecond);
}

// Of a part that is always as long, but for those below a tick.
int64_t TicksPer(DatePart part) {
  switch (part) {
    case DatePart::kWeek:
      return 7 * kTicksPerDay;
    case DatePart::kHour:
      return kTicksPerHour;
    case DatePart::kMinute:
      return kTicksPerMinute;
    case DatePart::kSecond:
      return kTicksPerSecond;
    default:
      return kTicksPerDay;
  }
}

// The number of the unit that a moment is in; its difference is the boundaries crossed.
int64_t UnitOf(DatePart part, int64_t ticks) {
  switch (part) {
    case DatePart::kYear:
      return MonthsOf(ticks) / 12;
    case DatePart::kQuarter:
      return MonthsOf(ticks) / 3;
    case DatePart::kMonth:
      return MonthsOf(ticks);
    case DatePart::kWeek:
      return FloorDivide(DayOfTicks(ticks) + 1, 7);  // weeks begin on Sunday, whatever DATEFIRST is
    case DatePart::kMillisecond:
    case DatePart::kMicrosecond:
    case DatePart::kNanosecond:
      return MillisecondsSince1900(ticks);
    default:
      return FloorDivide(ticks, TicksPer(part));
  }
}

void Difference(Context context, int, Arguments arguments) {
  const DatePart part = PartOf(arguments[0]);
  if (part == DatePart::kIsoWeek)
    return Fail(context, errors::kDatePartNotSupported,
                {DatePartWord(part), "datediff", "datetime"});
  int64_t units = UnitOf(part, TicksOf(arguments[2])) - UnitOf(part, TicksOf(arguments[1]));
  if (part == DatePart::kMicrosecond) units *= 1000;
  // The longest span of years is 2.6e14 ms, and 2.6e20 ns do not fit; but nor do they in an int.
  constexpr int64_t kInt = std::numeric_limits<int32_t>::max();
  if (part == DatePart::kNanosecond) units = std::clamp(units, -kInt, kInt) * 1000000;
  if (units != static_cast<int32_t>(units))
    return Fail(context, errors::kDateDiffOverflow, {"datediff", "datediff"});
  sqlite3_result_int64(context, units);
}

// The same day of another month, or that month's last day. False beyond the years that exist.
bool AddMonths(int64_t months, int64_t* ticks) {
  const CivilDate date = CivilFromDays(DayOfTicks(*ticks));
  const int64_t sum = MonthsOf(*ticks) + months;
  const int64_t year = FloorDivide(sum, 12);
  if (year < 1 || year > 9999) return false;
  const int month = static_cast<int>(sum - year * 12) + 1;
  const int day = std::min(date.day, DaysInMonth(static_cast<int>(year), month));
  *ticks = DaysFromCivil({static_cast<int>(year), month, day}) * kTicksPerDay + TimeOfTicks(*ticks);
  return true;
}

bool AddPart(DatePart part, int64_t number, int64_t* ticks) {
  switch (part) {
    case DatePart::kYear:
      return AddMonths(number * 12, ticks);
    case DatePart::kQuarter:
      return AddMonths(number * 3, ticks);
    case DatePart::kMonth:
      return AddMonths(number, ticks);
    case DatePart::kMillisecond:
      *ticks += TicksOfMilliseconds(number);
      return true;
    case DatePart::kMicrosecond:
      *ticks += TicksOfMilliseconds(FloorDivide(number + 500, 1000));
      return true;
    case DatePart::kNanosecond:
      *ticks += TicksOfMilliseconds(FloorDivide(number + 500000, 1000000));
      return true;
    default:
      *ticks += number * TicksPer(part);
      return true;
  }
}

void AddToDate(Context context, int, Arguments arguments) {
  const DatePart part = PartOf(arguments[0]);
  const int64_t number = sqlite3_value_int64(arguments[1]);
  int64_t ticks = TicksOf(arguments[2]);
  const TypeKind kind = TypeFromCode(sqlite3_value_int64(arguments[3])).kind;
  const bool of_day = part >= DatePart::kHour;
  if (part == DatePart::kIsoWeek || (of_day && kind == TypeKind::kDate)) {
    return Fail(context, errors::kDatePartNotSupported,
                {DatePartWord(part), "dateadd", KindText(kind)});
  }
  const bool is_int = number == static_cast<int32_t>(number);
  const bool added = is_int && AddPart(part, number, &ticks);
  if (kind == TypeKind::kSmallDateTime) {
    ticks = FloorDivide(ticks + kTicksPerMinute / 2, kTicksPerMinute) * kTicksPerMinute;
  }
  if (!is_int) return FailOverflow(context, TypeKind::kInt);
  if (!added || !InRangeOf(kind, ticks))
    return Fail(context, errors::kDateAddOverflow, {KindText(kind)});
  sqlite3_result_int64(context, ticks);
}

int64_t IsoWeekOf(int64_t day) {
  // The week belongs to the year of its Thursday.
  const int64_t thursday = day - (WeekdayOfDay(day) + 6) % 7 + 3;
  const int year = CivilFromDays(thursday).year;
  return (thursday - DaysFromCivil({year, 1, 1})) / 7 + 1;
}

int64_t ValueOf(DatePart part, int64_t ticks) {
  const int64_t day = DayOfTicks(ticks);
  const int64_t time = TimeOfTicks(ticks);
  const CivilDate date = CivilFromDays(day);
  const int64_t new_year = DaysFromCivil({date.year, 1, 1});
  switch (part) {
    case DatePart::kYear:
      return date.year;
    case DatePart::kQuarter:
      return (date.month + 2) / 3;
    case DatePart::kMonth:
      return date.month;
    case DatePart::kDayOfYear:
      return day - new_year + 1;
    case DatePart::kDay:
      return date.day;
    case DatePart::kWeek:
      return FloorDivide(day + 1, 7) - FloorDivide(new_year + 1, 7) + 1;
    case DatePart::kIsoWeek:
      return IsoWeekOf(day);
    case DatePart::kWeekday:
      return WeekdayOfDay(day) + 1;  // DATEFIRST 7, of us_english
    case DatePart::kHour:
      return time / kTicksPerHour;
    case DatePart::kMinute:
      return time / kTicksPerMinute % 60;
    case DatePart::kSecond:
      return time / kTicksPerSecond % 60;
    case DatePart::kMillisecond:
      return MillisecondsOfTicks(time % kTicksPerSecond);
    case DatePart::kMicrosecond:
      return MillisecondsOfTicks(time % kTicksPerSecond) * 1000;
    case DatePart::kNanosecond:
      return MillisecondsOfTicks(time % kTicksPerSecond) * 1000000;
  }
  return 0;
}

void PartNumber(Context context, int, Arguments arguments) {
  sqlite3_result_int64(context, ValueOf(PartOf(arguments[0]), TicksOf(arguments[1])));
}

void PartName(Context context, int, Arguments arguments) {
  const DatePart part = PartOf(arguments[0]);
  const int64_t value = ValueOf(part, TicksOf(arguments[1]));
  if (part == DatePart::kMonth) return ReturnText(context, MonthName(static_cast<int>(value)));
  if (part == DatePart::kWeekday)
    return ReturnText(context, WeekdayName(static_cast<int>(value) - 1));
  ReturnText(context, std::to_string(value));
}

template <bool subtract>
void AddTicks(Context context, int, Arguments arguments) {
  const TypeKind kind = TypeFromCode(sqlite3_value_int64(arguments[2])).kind;
  const int64_t a = TicksOf(arguments[0]);
  const int64_t b = TicksOf(arguments[1]);
  const int64_t ticks = subtract ? a - b : a + b;
  if (!InRangeOf(kind, ticks)) return FailOverflow(context, kind);
  sqlite3_result_int64(context, ticks);
}

void Now(Context context, int, Arguments) {
  sqlite3_result_int64(context, SessionOf(context).Now().ticks());
}

void IsDateText(Context context, int, Arguments arguments) {
  int64_t ticks = 0;
  const bool date = !AnyNull(1, arguments) && !TextOf(arguments[0]).empty() &&
                    ReadDate(TextOf(arguments[0]), 0, &ticks) == DateReading::kOk &&
                    InRangeOf(TypeKind::kDateTime, ticks);
  sqlite3_result_int(context, date ? 1 : 0);
}

constexpr auto kDateFunctions = std::to_array<ScalarEntry>({
    {"t_getdate", 0, Guarded<Now>, false},
    {"t_datediff", 3, Strict<Difference>},
    {"t_dateadd", 4, Strict<AddToDate>},
    {"t_datepart", 2, Strict<PartNumber>},
    {"t_datename", 2, Strict<PartName>},
    {"t_add_datetime", 3, Strict<AddTicks<false>>},
    {"t_sub_datetime", 3, Strict<AddTicks<true>>},
    {"t_isdate", 1, Guarded<IsDateText>},
});

}  // namespace

std::span<const ScalarEntry> DateFunctions() {
  return kDateFunctions;
}

}  // namespace internal
}  // namespace tavcc::sql
