#include "foundation/date_time.h"

#include <array>
#include <chrono>
#include <cmath>

namespace tavcc {

namespace {

constexpr int kAutomationEpoch = -2;  // 1899-12-30, in days since 1900-01-01
constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;

using std::chrono::day;
using std::chrono::days;
using std::chrono::month;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month_day;

constexpr sys_days kEpoch = year{1900} / 1 / 1;

int64_t FloorDivide(int64_t value, int64_t divisor) {
  const int64_t quotient = value / divisor;
  return value % divisor < 0 ? quotient - 1 : quotient;
}

// A cursor over the text of a date: reads digits and separators, and remembers a failure.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  bool AtEnd() const { return at_ == text_.size(); }
  char Peek() const { return AtEnd() ? '\0' : text_[at_]; }
  bool Take(char c) {
    if (Peek() != c) return false;
    ++at_;
    return true;
  }
  // A number of `least` to `most` digits; nothing when there are fewer.
  std::optional<int> Number(int least, int most) {
    int value = 0;
    int count = 0;
    while (count < most && Peek() >= '0' && Peek() <= '9') {
      value = value * 10 + (text_[at_++] - '0');
      ++count;
    }
    if (count < least) return std::nullopt;
    digits_ = count;
    return value;
  }
  int digits() const { return digits_; }  // of the last number

 private:
  std::string_view text_;
  size_t at_ = 0;
  int digits_ = 0;
};

bool ReadDate(Reader& reader, DateTime::Parts& parts) {
  const auto years = reader.Number(4, 4);
  if (!years) return false;
  const char separator = reader.Peek();
  const bool separated = separator == '-' || separator == '/';
  if (separated) reader.Take(separator);
  const auto months = reader.Number(separated ? 1 : 2, 2);
  if (!months || (separated && !reader.Take(separator))) return false;
  const auto days_of_month = reader.Number(separated ? 1 : 2, 2);
  if (!days_of_month) return false;
  parts.year = *years;
  parts.month = *months;
  parts.day = *days_of_month;
  return true;
}

bool ReadTime(Reader& reader, DateTime::Parts& parts) {
  const auto hours = reader.Number(1, 2);
  if (!hours || !reader.Take(':')) return false;
  const auto minutes = reader.Number(1, 2);
  if (!minutes) return false;
  parts.hour = *hours;
  parts.minute = *minutes;
  if (!reader.Take(':')) return true;
  const auto seconds = reader.Number(1, 2);
  if (!seconds) return false;
  parts.second = *seconds;
  if (!reader.Take('.')) return true;
  const auto fraction = reader.Number(1, 3);
  if (!fraction) return false;
  constexpr std::array<int, 4> kToMilliseconds = {0, 100, 10, 1};
  parts.millisecond = *fraction * kToMilliseconds[static_cast<size_t>(reader.digits())];
  return true;
}

void AppendPadded(std::string& out, int number, int width) {
  const std::string digits = std::to_string(number);
  out.append(static_cast<size_t>(width) - std::min(digits.size(), static_cast<size_t>(width)), '0');
  out += digits;
}

}  // namespace

std::optional<DateTime> DateTime::FromParts(const Parts& parts) {
  const year_month_day date{year{parts.year}, month{static_cast<unsigned>(parts.month)},
                            day{static_cast<unsigned>(parts.day)}};
  const bool in_range = parts.year >= kFirstYear && parts.year <= kLastYear && date.ok() &&
                        parts.hour >= 0 && parts.hour < 24 && parts.minute >= 0 &&
                        parts.minute < 60 && parts.second >= 0 && parts.second < 60 &&
                        parts.millisecond >= 0 && parts.millisecond < 1000;
  if (!in_range) return std::nullopt;
  const auto day_number = (sys_days{date} - kEpoch).count();
  const int seconds = (parts.hour * 60 + parts.minute) * 60 + parts.second;
  // 999 ms is nearer to the next second's first tick than to tick 299; the carry may cross
  // midnight.
  const int ticks = seconds * kTicksPerSecond + (parts.millisecond * 3 + 5) / 10;
  return FromTicks(static_cast<int64_t>(day_number) * kTicksPerDay + ticks);
}

std::optional<DateTime> DateTime::Parse(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return std::nullopt;
  Reader reader(text.substr(first, text.find_last_not_of(' ') - first + 1));
  Parts parts{};
  if (!ReadDate(reader, parts)) return std::nullopt;
  if (!reader.AtEnd()) {
    if (!reader.Take(' ') && !reader.Take('T')) return std::nullopt;
    while (reader.Take(' ')) {
    }
    if (!ReadTime(reader, parts) || !reader.AtEnd()) return std::nullopt;
  }
  return FromParts(parts);
}

std::optional<DateTime> DateTime::FromAutomation(double date) {
  constexpr double kBefore = -657435;  // 0099-12-31
  constexpr double kBeyond = 2958466;  // 10000-01-01
  if (!(date > kBefore && date < kBeyond)) return std::nullopt;
  // The time of day counts forward also before 1899-12-30: -1.25 is the 29th, six o'clock.
  const double whole = std::trunc(date);
  const double time = std::fabs(date - whole);
  const auto ticks = static_cast<int64_t>(std::llround(time * kTicksPerDay));
  const DateTime result =
      FromTicks((static_cast<int64_t>(whole) + kAutomationEpoch) * kTicksPerDay + ticks);
  const int result_year = result.ToParts().year;
  if (result_year < kFirstYear || result_year > kLastYear) return std::nullopt;
  return result;
}

double DateTime::ToAutomation() const {
  const double whole = Days() - kAutomationEpoch;
  const double time = static_cast<double>(TicksOfDay()) / kTicksPerDay;
  return whole >= 0 ? whole + time : whole - time;
}

int32_t DateTime::Days() const {
  return static_cast<int32_t>(FloorDivide(ticks_, kTicksPerDay));
}

int32_t DateTime::TicksOfDay() const {
  return static_cast<int32_t>(ticks_ - FloorDivide(ticks_, kTicksPerDay) * kTicksPerDay);
}

DateTime::Parts DateTime::ToParts() const {
  const year_month_day date{kEpoch + days{Days()}};
  const int ticks = TicksOfDay();
  const int seconds = ticks / kTicksPerSecond;
  return Parts{.year = static_cast<int>(date.year()),
               .month = static_cast<int>(static_cast<unsigned>(date.month())),
               .day = static_cast<int>(static_cast<unsigned>(date.day())),
               .hour = seconds / 3600,
               .minute = seconds / 60 % 60,
               .second = seconds % 60,
               .millisecond = (ticks % kTicksPerSecond * 10 + 1) / 3};
}

std::string DateTime::ToText() const {
  const Parts parts = ToParts();
  std::string out;
  AppendPadded(out, parts.year, 4);
  out += '-';
  AppendPadded(out, parts.month, 2);
  out += '-';
  AppendPadded(out, parts.day, 2);
  if (TicksOfDay() == 0) return out;
  out += ' ';
  AppendPadded(out, parts.hour, 2);
  out += ':';
  AppendPadded(out, parts.minute, 2);
  out += ':';
  AppendPadded(out, parts.second, 2);
  return out;
}

}  // namespace tavcc
