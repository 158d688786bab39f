// JSON as scenario files and the command line's rich arguments use it: objects keep their order.
//
// The members are called as the JSON library calls them, which reads and prints the texts in
// json.cpp. Its own headers cost a compiler seconds for each source, this one costs nothing.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tavcc {

// A text that is not what it should be, or a value that is not of the kind it is asked as; what()
// is one line.
class JsonError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Json {
 public:
  struct Member;  // key and value

  Json(std::nullptr_t = nullptr);
  template <std::same_as<bool> Boolean>
  Json(Boolean boolean) : Json(Truth{boolean}) {}
  template <std::signed_integral Integer>
  Json(Integer number) : Json(Signed{number}) {}
  template <std::unsigned_integral Integer>
  requires(!std::same_as<Integer, bool>) Json(Integer number) : Json(Unsigned{number}) {}
  Json(double number);
  Json(std::string text);
  Json(std::string_view text);
  Json(const char* text);
  Json(const std::vector<std::string>& texts);
  // An object where each element is a pair that begins with a text, else an array.
  Json(std::initializer_list<Json> elements);
  Json(const Json&);
  Json(Json&&) noexcept;
  Json& operator=(const Json&);
  Json& operator=(Json&&) noexcept;
  ~Json();

  // A number with these digits, all of which are shown: "1.5000". As any other it has the value of
  // a double.
  static Json number(std::string digits);
  static Json array();
  static Json object();

  bool is_null() const;
  bool is_boolean() const;
  bool is_number() const;
  bool is_number_integer() const;
  bool is_string() const;
  bool is_array() const;
  bool is_object() const;
  bool is_structured() const { return is_array() || is_object(); }

  // The value as bool, int16_t, int32_t, int64_t, uint64_t, double, std::string, or Json itself. A
  // whole number is a double too. Errors: JsonError where it is something else or out of range.
  template <class T>
  T get() const;

  // Of an array or an object, how many it holds; of anything else 0.
  size_t size() const;
  bool empty() const { return size() == 0; }

  // The elements of an array; of anything else none.
  const Json* begin() const;
  const Json* end() const;
  // Errors: JsonError where there is none.
  const Json& operator[](size_t index) const;
  // Null becomes an array first. Returns what was added.
  Json& push_back(Json element);

  // The members of an object, in order; of anything else none.
  const std::vector<Member>& items() const;
  // Null where there is none.
  const Json* find(std::string_view key) const;
  bool contains(std::string_view key) const { return find(key) != nullptr; }
  // The value under the key, or `fallback` where there is none. Errors: as get.
  template <class T>
  T value(std::string_view key, T fallback) const {
    const Json* const found = find(key);
    return found == nullptr ? fallback : found->get<T>();
  }
  // Errors: JsonError where there is none.
  const Json& operator[](std::string_view key) const;
  // Adds a null where there is none; null becomes an object first.
  Json& operator[](std::string_view key);

  // Numbers are equal by value: 7 is 7.0.
  friend bool operator==(const Json& a, const Json& b);
  // Whether it is a whole number of this range.
  friend bool IsWholeNumber(const Json& json, int64_t least, int64_t most);

 private:
  struct Truth {
    bool is;
  };
  struct Signed {
    int64_t number;
  };
  struct Unsigned {
    uint64_t number;
  };
  explicit Json(Truth truth);
  explicit Json(Signed whole);
  explicit Json(Unsigned whole);

  struct Digits {
    std::string text;
    friend bool operator==(const Digits&, const Digits&) = default;
  };
  friend const std::string* DigitsOf(const Json& json);

  // The library's own kinds; only numbers beyond the range of int64_t are kept without a sign.
  std::variant<std::nullptr_t, bool, int64_t, uint64_t, double, Digits, std::string,
               std::vector<Json>, std::vector<Member>>
      value_;
};

struct Json::Member {
  std::string key;
  Json value;

  friend bool operator==(const Member&, const Member&) = default;
};

template <>
bool Json::get() const;
template <>
int16_t Json::get() const;
template <>
int32_t Json::get() const;
template <>
int64_t Json::get() const;
template <>
uint64_t Json::get() const;
template <>
double Json::get() const;
template <>
std::string Json::get() const;
template <>
Json Json::get() const;

// Null where it is no number with digits of its own.
const std::string* DigitsOf(const Json& json);

// Parses a whole text. Errors: JsonError for a text that is no JSON (line and column), for an
// object that has the same key twice, since only one of the two would count, and for one that is
// nested too deeply to be meant.
Json ParseJson(std::string_view text);

// Whether it is an object with this key alone, e.g. {"date": …} for "date".
bool IsForm(const Json& json, std::string_view key);

// The text of it, Chinese as it is: on one line, or where `indent` is not negative, indented by so
// many blanks a level.
std::string Show(const Json& json, int indent = -1);

// Reads a whole file. Errors: JsonError naming the file and why it cannot be read.
std::string ReadTextFile(const std::string& path);

}  // namespace tavcc
