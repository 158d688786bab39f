// Writing dates in the styles of CONVERT.
#include <array>

#include "embedded/types/calendar.h"
#include "embedded/types/date_text.h"

namespace tavcc::sql {
namespace {

constexpr std::array<std::string_view, 12> kMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};
constexpr std::array<std::string_view, 7> kWeekdays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                       "Thursday", "Friday", "Saturday"};

struct Parts {
  CivilDate date;
  int hour, minute, second, millisecond;
};

Parts SplitTicks(int64_t ticks) {
  const int64_t time = TimeOfTicks(ticks);
  const auto seconds = static_cast<int>(time / kTicksPerSecond);
  return {CivilFromDays(DayOfTicks(ticks)), seconds / 3600, seconds / 60 % 60, seconds % 60,
          static_cast<int>(MillisecondsOfTicks(time % kTicksPerSecond))};
}

// At least `width` digits, with `fill` before them.
void AppendNumber(int value, size_t width, char fill, std::string* out) {
  char buffer[12];
  size_t at = sizeof buffer;
  do {
    buffer[--at] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  while (sizeof buffer - at < width) buffer[--at] = fill;
  out->append(buffer + at, sizeof buffer - at);
}

// One letter of a pattern stands for one part; anything else for itself:
//   Y year  y its last two digits  M month  N month's short name  D day  d day padded with a blank
//   H hour  h hour of 12 padded with a blank  m minute  s second  f millisecond  a AM or PM
//   F millisecond with its point, nothing when it is 0
void WritePattern(const Parts& p, std::string_view pattern, std::string* out) {
  for (const char c : pattern) {
    switch (c) {
      case 'Y':
        AppendNumber(p.date.year, 4, '0', out);
        break;
      case 'y':
        AppendNumber(p.date.year % 100, 2, '0', out);
        break;
      case 'M':
        AppendNumber(p.date.month, 2, '0', out);
        break;
      case 'N':
        out->append(MonthName(p.date.month).substr(0, 3));
        break;
      case 'D':
        AppendNumber(p.date.day, 2, '0', out);
        break;
      case 'd':
        AppendNumber(p.date.day, 2, ' ', out);
        break;
      case 'H':
        AppendNumber(p.hour, 2, '0', out);
        break;
      case 'h':
        AppendNumber(p.hour % 12 == 0 ? 12 : p.hour % 12, 2, ' ', out);
        break;
      case 'm':
        AppendNumber(p.minute, 2, '0', out);
        break;
      case 's':
        AppendNumber(p.second, 2, '0', out);
        break;
      case 'f':
        AppendNumber(p.millisecond, 3, '0', out);
        break;
      case 'F':
        if (p.millisecond != 0) AppendNumber(p.millisecond, 3, '0', &out->append("."));
        break;
      case 'a':
        out->append(p.hour < 12 ? "AM" : "PM");
        break;
      default:
        out->push_back(c);
    }
  }
}

struct StylePattern {
  int style;
  std::string_view date, time;  // the time with the mark before it
};

// The table of the "CAST and CONVERT" page, less the styles of the Arabic calendar.
// clang-format off
constexpr auto kStyles = std::to_array<StylePattern>({
    {0, "N d Y", " h:ma"},       {100, "N d Y", " h:ma"},
    {1, "M/D/y", ""},            {101, "M/D/Y", ""},
    {2, "y.M.D", ""},            {102, "Y.M.D", ""},
    {3, "D/M/y", ""},            {103, "D/M/Y", ""},
    {4, "D.M.y", ""},            {104, "D.M.Y", ""},
    {5, "D-M-y", ""},            {105, "D-M-Y", ""},
    {6, "D N y", ""},            {106, "D N Y", ""},
    {7, "N D, y", ""},           {107, "N D, Y", ""},
    {8, "", "H:m:s"},            {108, "", "H:m:s"},           {24, "", "H:m:s"},
    {9, "N d Y", " h:m:s:fa"},   {109, "N d Y", " h:m:s:fa"},
    {10, "M-D-y", ""},           {110, "M-D-Y", ""},
    {11, "y/M/D", ""},           {111, "Y/M/D", ""},
    {12, "yMD", ""},             {112, "YMD", ""},
    {13, "D N Y", " H:m:s:f"},   {113, "D N Y", " H:m:s:f"},
    {14, "", "H:m:s:f"},         {114, "", "H:m:s:f"},
    {20, "Y-M-D", " H:m:s"},     {120, "Y-M-D", " H:m:s"},
    {21, "Y-M-D", " H:m:s.f"},   {121, "Y-M-D", " H:m:s.f"},   {25, "Y-M-D", " H:m:s.f"},
    {22, "M/D/y", " h:m:s a"},
    {23, "Y-M-D", ""},
    {126, "Y-M-D", "\tH:m:sF"},  {127, "Y-M-D", "\tH:m:sF"},
});
// clang-format on

}  // namespace

std::string_view MonthName(int month) {
  return kMonths[static_cast<size_t>(month - 1)];
}
std::string_view WeekdayName(int weekday) {
  return kWeekdays[static_cast<size_t>(weekday)];
}

bool WriteDate(int64_t ticks, int style, bool date_only, std::string* out) {
  if (style == 0 && date_only) style = 23;
  for (const StylePattern& pattern : kStyles) {
    if (pattern.style != style) continue;
    const Parts parts = SplitTicks(ticks);
    WritePattern(parts, pattern.date, out);
    if (date_only && !pattern.date.empty()) return true;
    const size_t time = out->size();
    WritePattern(parts, pattern.time, out);
    // "T" is no part, but a tab in the patterns, so that it cannot be taken for one.
    if (out->size() > time && (*out)[time] == '\t') (*out)[time] = 'T';
    return true;
  }
  return false;
}

}  // namespace tavcc::sql
