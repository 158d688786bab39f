// Reading dates.
#include "embedded/types/date_text.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <vector>

#include "embedded/types/calendar.h"
#include "embedded/types/text_units.h"
#include "foundation/text.h"

namespace tavcc::sql {
namespace {

constexpr bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// ---- Reading ----

enum class Order : uint8_t { kMonthFirst, kDayFirst, kYearFirst };

Order OrderOfStyle(int style) {
  constexpr int kDayFirst[] = {3, 4, 5, 6, 13, 103, 104, 105, 106, 113};
  constexpr int kYearFirst[] = {2, 11, 12, 20, 21, 23, 25, 102, 111, 112, 120, 121, 126, 127};
  const auto is_in = [style](const auto& styles) {
    return std::ranges::find(styles, style) != std::end(styles);
  };
  if (is_in(kDayFirst)) return Order::kDayFirst;
  return is_in(kYearFirst) ? Order::kYearFirst : Order::kMonthFirst;
}

struct Token {
  enum class Kind : uint8_t { kNumber, kWord, kMark, kBlank };
  Kind kind;
  std::string_view text;
};

std::vector<Token> Split(std::string_view text) {
  std::vector<Token> tokens;
  for (size_t at = 0; at < text.size();) {
    size_t end = at + 1;
    Token::Kind kind = Token::Kind::kMark;
    const auto take = [&](auto same, Token::Kind k) {
      while (end < text.size() && same(text[end])) ++end;
      kind = k;
    };
    if (IsDigit(text[at])) {
      take(IsDigit, Token::Kind::kNumber);
    } else if (IsLetter(text[at])) {
      take(IsLetter, Token::Kind::kWord);
    } else if (text[at] == ' ') {
      take([](char c) { return c == ' '; }, Token::Kind::kBlank);
    }
    tokens.push_back({kind, text.substr(at, end - at)});
    at = end;
  }
  return tokens;
}

// Two digits of a year: 00 to 49 are 20xx, the rest 19xx ("two digit year cutoff" 2049).
int FullYear(int year, size_t digits) {
  if (digits > 2) return year;
  return year < 50 ? 2000 + year : 1900 + year;
}

class DateReader {
 public:
  DateReader(std::string_view text, int style)
      : tokens_(Split(text)), order_(OrderOfStyle(style)) {}

  DateReading Read(int64_t* ticks) {
    const bool date = AtTime() || ReadDay();
    if (!date) return DateReading::kNoDate;
    SkipBlanks();
    if (Is(Token::Kind::kWord) && EqualsIgnoringCase(Peek().text, "T")) ++at_;
    if (at_ < tokens_.size() && !ReadTime()) return DateReading::kNoDate;
    SkipBlanks();
    if (at_ < tokens_.size()) return DateReading::kNoDate;
    return Combine(ticks);
  }

 private:
  bool Is(Token::Kind kind, size_t ahead = 0) const {
    return at_ + ahead < tokens_.size() && tokens_[at_ + ahead].kind == kind;
  }
  bool IsMark(char c, size_t ahead = 0) const {
    return Is(Token::Kind::kMark, ahead) && tokens_[at_ + ahead].text[0] == c;
  }
  const Token& Peek(size_t ahead = 0) const { return tokens_[at_ + ahead]; }
  void SkipBlanks() {
    while (Is(Token::Kind::kBlank)) ++at_;
  }

  static bool IsMeridiem(std::string_view word) {
    return EqualsIgnoringCase(word, "AM") || EqualsIgnoringCase(word, "PM");
  }

  // "10:30", "4PM", "4 PM": a time stands here and no date.
  bool AtTime() const {
    if (!Is(Token::Kind::kNumber)) return false;
    if (IsMark(':', 1)) return true;
    const size_t word = Is(Token::Kind::kBlank, 1) ? 2 : 1;
    return Is(Token::Kind::kWord, word) && IsMeridiem(Peek(word).text);
  }

  // The number of the token, -1 when it has too many digits.
  static int NumberOf(const Token& token) {
    if (token.text.size() > 9) return -1;
    int number = 0;
    for (const char c : token.text) number = number * 10 + (c - '0');
    return number;
  }

  static int MonthOf(std::string_view word) {
    for (int month = 1; month <= 12; ++month) {
      const std::string_view name = MonthName(month);
      if (EqualsIgnoringCase(word, name) || EqualsIgnoringCase(word, name.substr(0, 3)))
        return month;
    }
    return EqualsIgnoringCase(word, "Sept") ? 9 : 0;
  }

  bool ReadDay() {
    if (Is(Token::Kind::kWord)) return ReadNamedMonth();
    if (!Is(Token::Kind::kNumber)) return false;
    if (IsMark('-', 1) || IsMark('/', 1) || IsMark('.', 1)) {
      if (!Is(Token::Kind::kWord, 2)) return ReadNumbers();
      return ReadNamedMonth();
    }
    size_t word = 1;
    if (Is(Token::Kind::kBlank, word)) ++word;
    if (Is(Token::Kind::kWord, word) && MonthOf(Peek(word).text) != 0) return ReadNamedMonth();
    return ReadRun();
  }

  // "20260301", "260301", "2026"
  bool ReadRun() {
    const std::string_view digits = Peek().text;
    const int number = NumberOf(Peek());
    ++at_;
    if (digits.size() == 8) {
      SetDate(number / 10000, number / 100 % 100, number % 100, 4);
    } else if (digits.size() == 6) {
      SetDate(number / 10000, number / 100 % 100, number % 100, 2);
    } else if (digits.size() == 4) {
      SetDate(number, 1, 1, 4);
    } else {
      return false;
    }
    return true;
  }

  // "3/1/2026", "2026-03-01", "1.3.26"
  bool ReadNumbers() {
    const std::string_view mark = Peek(1).text;
    const bool shape = Is(Token::Kind::kNumber, 2) && Is(Token::Kind::kMark, 3) &&
                       Peek(3).text == mark && Is(Token::Kind::kNumber, 4);
    if (!shape) return false;
    const Token &first = Peek(), &second = Peek(2), &third = Peek(4);
    at_ += 5;
    if (first.text.size() > 4 || second.text.size() > 2 || third.text.size() > 4) return false;
    const int a = NumberOf(first), b = NumberOf(second), c = NumberOf(third);
    if (first.text.size() == 4) {
      if (third.text.size() > 2) return false;
      SetDate(a, b, c, 4);
      return true;
    }
    if (first.text.size() > 2 || third.text.size() == 3) return false;
    switch (third.text.size() == 4 && order_ == Order::kYearFirst ? Order::kMonthFirst : order_) {
      case Order::kMonthFirst:
        SetDate(c, a, b, third.text.size());
        break;
      case Order::kDayFirst:
        SetDate(c, b, a, third.text.size());
        break;
      case Order::kYearFirst:
        SetDate(a, b, c, first.text.size());
        break;
    }
    return true;
  }

  // A month's name with a day and a year around it in any order: "Mar 1, 2026", "1-Mar-2026",
  // "2026 March 1", "March 2026". A number of three or four digits is the year, so is the second of
  // two short ones.
  bool ReadNamedMonth() {
    int month = 0;
    std::vector<Token> numbers;
    while (at_ < tokens_.size() && !AtTime()) {
      const Token& token = Peek();
      if (token.kind == Token::Kind::kNumber) {
        if (numbers.size() == 2) return false;
        numbers.push_back(token);
      } else if (token.kind == Token::Kind::kWord) {
        if (month != 0) break;
        month = MonthOf(token.text);
        if (month == 0) return false;
      } else if (token.kind == Token::Kind::kMark && token.text != "," && token.text != "-" &&
                 token.text != "/" && token.text != ".") {
        return false;
      }
      ++at_;
    }
    if (month == 0 || numbers.empty()) return false;
    return SetNamed(month, numbers);
  }

  bool SetNamed(int month, const std::vector<Token>& numbers) {
    for (const Token& number : numbers) {
      if (number.text.size() == 3 || number.text.size() > 4) return false;
    }
    if (numbers.size() == 1) {
      if (numbers[0].text.size() != 4) return false;
      SetDate(NumberOf(numbers[0]), month, 1, 4);
      return true;
    }
    const size_t year = numbers[0].text.size() == 4 ? 0 : 1;
    if (numbers[1 - year].text.size() > 2) return false;
    SetDate(NumberOf(numbers[year]), month, NumberOf(numbers[1 - year]), numbers[year].text.size());
    return true;
  }

  void SetDate(int year, int month, int day, size_t year_digits) {
    date_ = CivilDate{FullYear(year, year_digits), month, day};
  }

  // "10:30", "10:30:15", "10:30:15.123", "10:30:15:123", each with AM or PM; "4PM"
  bool ReadTime() {
    SkipBlanks();
    if (at_ == tokens_.size()) return true;
    if (!Is(Token::Kind::kNumber) || Peek().text.size() > 2) return false;
    hour_ = NumberOf(Peek());
    ++at_;
    const bool minutes = IsMark(':');
    if (minutes && !ReadAfterColon(&minute_)) return false;
    if (minutes && IsMark(':') && (!ReadAfterColon(&second_) || !ReadFraction())) return false;
    const size_t before = at_;
    SkipBlanks();
    if (Is(Token::Kind::kWord) && IsMeridiem(Peek().text)) {
      const bool afternoon = EqualsIgnoringCase(Peek().text.substr(0, 1), "p");
      ++at_;
      if (hour_ > 12) return afternoon;
      hour_ = hour_ % 12 + (afternoon ? 12 : 0);
      return true;
    }
    at_ = before;
    if (Is(Token::Kind::kWord) && EqualsIgnoringCase(Peek().text, "Z")) ++at_;
    return minutes;
  }

  bool ReadAfterColon(int* part) {
    if (!Is(Token::Kind::kNumber, 1) || Peek(1).text.size() > 2) return false;
    *part = NumberOf(Peek(1));
    at_ += 2;
    return true;
  }

  // After a point the digits are a fraction (".5" is half a second), after a colon milliseconds.
  bool ReadFraction() {
    if (!IsMark('.') && !IsMark(':')) return true;
    if (!Is(Token::Kind::kNumber, 1) || Peek(1).text.size() > 3) return false;
    milliseconds_ = NumberOf(Peek(1));
    if (IsMark('.')) {
      for (size_t digits = Peek(1).text.size(); digits < 3; ++digits) milliseconds_ *= 10;
    }
    at_ += 2;
    return true;
  }

  DateReading Combine(int64_t* ticks) const {
    const bool exists = date_.year >= 1 && date_.month >= 1 && date_.month <= 12 &&
                        date_.day >= 1 && date_.day <= DaysInMonth(date_.year, date_.month);
    if (!exists || hour_ > 23 || minute_ > 59 || second_ > 59) return DateReading::kOutOfRange;
    *ticks = DaysFromCivil(date_) * kTicksPerDay +
             (int64_t{hour_} * 3600 + minute_ * 60 + second_) * kTicksPerSecond +
             TicksOfMilliseconds(milliseconds_);
    return DateReading::kOk;
  }

  std::vector<Token> tokens_;
  size_t at_ = 0;
  Order order_;
  CivilDate date_;
  int hour_ = 0, minute_ = 0, second_ = 0, milliseconds_ = 0;
};

// The form that statements splice, "YYYY-MM-DD" alone or with " HH:MM:SS", without any allocation.
std::optional<int64_t> ReadPlain(std::string_view text) {
  const auto digits = [text](size_t at, size_t count) {
    int number = 0;
    for (size_t i = at; i < at + count; ++i) {
      if (!IsDigit(text[i])) return -1;
      number = number * 10 + (text[i] - '0');
    }
    return number;
  };
  if (text.size() != 10 && text.size() != 19) return std::nullopt;
  if (text[4] != '-' || text[7] != '-') return std::nullopt;
  const CivilDate date{digits(0, 4), digits(5, 2), digits(8, 2)};
  if (date.year < 1 || date.month < 1 || date.month > 12 || date.day < 1 ||
      date.day > DaysInMonth(date.year, date.month)) {
    return std::nullopt;
  }
  int64_t ticks = DaysFromCivil(date) * kTicksPerDay;
  if (text.size() == 10) return ticks;
  const int hour = digits(11, 2), minute = digits(14, 2), second = digits(17, 2);
  const bool shape = text[10] == ' ' && text[13] == ':' && text[16] == ':';
  if (!shape || hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) {
    return std::nullopt;
  }
  return ticks + (int64_t{hour} * 3600 + minute * 60 + second) * kTicksPerSecond;
}

}  // namespace

DateReading ReadDate(std::string_view text, int style, int64_t* ticks) {
  text = TrimBlanks(text);
  if (text.empty()) {
    *ticks = 0;
    return DateReading::kOk;
  }
  if (const auto plain = ReadPlain(text)) {
    *ticks = *plain;
    return DateReading::kOk;
  }
  constexpr size_t kLongest = 100;
  if (text.size() > kLongest) return DateReading::kNoDate;
  return DateReader(text, style).Read(ticks);
}

}  // namespace tavcc::sql
