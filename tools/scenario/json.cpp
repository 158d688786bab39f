#include "scenario/json.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tavcc {

Json::Json(std::nullptr_t) {}
Json::Json(Truth truth) : value_(truth.is) {}
Json::Json(Signed whole) : value_(whole.number) {}
Json::Json(Unsigned whole) : value_(whole.number) {
  if (std::in_range<int64_t>(whole.number)) value_ = static_cast<int64_t>(whole.number);
}
Json::Json(double number) : value_(number) {}
Json::Json(std::string text) : value_(std::move(text)) {}
Json::Json(std::string_view text) : value_(std::string(text)) {}
Json::Json(const char* text) : value_(std::string(text)) {}
Json::Json(const std::vector<std::string>& texts)
    : value_(std::vector<Json>(texts.begin(), texts.end())) {}

Json::Json(std::initializer_list<Json> elements) {
  const bool pairs = std::ranges::all_of(elements, [](const Json& element) {
    return element.is_array() && element.size() == 2 && element[0].is_string();
  });
  if (!pairs) {
    value_ = std::vector<Json>(elements);
    return;
  }
  auto& members = value_.emplace<std::vector<Member>>();
  for (const Json& pair : elements) members.push_back({pair[0].get<std::string>(), pair[1]});
}

Json::Json(const Json&) = default;
Json::Json(Json&&) noexcept = default;
Json& Json::operator=(const Json&) = default;
Json& Json::operator=(Json&&) noexcept = default;
Json::~Json() = default;

Json Json::number(std::string digits) {
  Json json;
  json.value_ = Digits{std::move(digits)};
  return json;
}

Json Json::array() {
  Json json;
  json.value_.emplace<std::vector<Json>>();
  return json;
}

Json Json::object() {
  Json json;
  json.value_.emplace<std::vector<Member>>();
  return json;
}

bool Json::is_null() const {
  return std::holds_alternative<std::nullptr_t>(value_);
}

bool Json::is_boolean() const {
  return std::holds_alternative<bool>(value_);
}

bool Json::is_number() const {
  return is_number_integer() || std::holds_alternative<double>(value_) ||
         std::holds_alternative<Digits>(value_);
}

bool Json::is_number_integer() const {
  return std::holds_alternative<int64_t>(value_) || std::holds_alternative<uint64_t>(value_);
}

bool Json::is_string() const {
  return std::holds_alternative<std::string>(value_);
}

bool Json::is_array() const {
  return std::holds_alternative<std::vector<Json>>(value_);
}

bool Json::is_object() const {
  return std::holds_alternative<std::vector<Member>>(value_);
}

template <>
bool Json::get() const {
  if (!is_boolean()) throw JsonError("no Boolean: " + Show(*this));
  return std::get<bool>(value_);
}

template <>
int64_t Json::get() const {
  if (const auto* number = std::get_if<int64_t>(&value_)) return *number;
  throw JsonError("no 64-bit integer: " + Show(*this));
}

template <>
uint64_t Json::get() const {
  if (const auto* number = std::get_if<uint64_t>(&value_)) return *number;
  if (IsWholeNumber(*this, 0, INT64_MAX)) return static_cast<uint64_t>(get<int64_t>());
  throw JsonError("no unsigned 64-bit integer: " + Show(*this));
}

template <>
int32_t Json::get() const {
  if (!IsWholeNumber(*this, INT32_MIN, INT32_MAX)) {
    throw JsonError("no 32-bit integer: " + Show(*this));
  }
  return static_cast<int32_t>(get<int64_t>());
}

template <>
int16_t Json::get() const {
  if (!IsWholeNumber(*this, INT16_MIN, INT16_MAX)) {
    throw JsonError("no 16-bit integer: " + Show(*this));
  }
  return static_cast<int16_t>(get<int64_t>());
}

template <>
double Json::get() const {
  if (const auto* number = std::get_if<double>(&value_)) return *number;
  if (const auto* number = std::get_if<uint64_t>(&value_)) return static_cast<double>(*number);
  if (const auto* number = std::get_if<int64_t>(&value_)) return static_cast<double>(*number);
  if (const auto* number = DigitsOf(*this)) return std::stod(*number);
  throw JsonError("no number: " + Show(*this));
}

template <>
std::string Json::get() const {
  if (!is_string()) throw JsonError("no text: " + Show(*this));
  return std::get<std::string>(value_);
}

template <>
Json Json::get() const {
  return *this;
}

size_t Json::size() const {
  if (const auto* elements = std::get_if<std::vector<Json>>(&value_)) return elements->size();
  return items().size();
}

const Json* Json::begin() const {
  const auto* const elements = std::get_if<std::vector<Json>>(&value_);
  return elements == nullptr ? nullptr : elements->data();
}

const Json* Json::end() const {
  return is_array() ? begin() + size() : nullptr;
}

const Json& Json::operator[](size_t index) const {
  if (!is_array() || index >= size()) {
    throw JsonError("no element " + std::to_string(index + 1) + ": " + Show(*this));
  }
  return begin()[index];
}

Json& Json::push_back(Json element) {
  if (is_null()) *this = array();
  if (!is_array()) throw JsonError("no list: " + Show(*this));
  return std::get<std::vector<Json>>(value_).emplace_back(std::move(element));
}

const std::vector<Json::Member>& Json::items() const {
  static const std::vector<Member> none;
  const auto* const members = std::get_if<std::vector<Member>>(&value_);
  return members == nullptr ? none : *members;
}

const Json* Json::find(std::string_view key) const {
  const auto found = std::ranges::find(items(), key, &Member::key);
  return found == items().end() ? nullptr : &found->value;
}

const Json& Json::operator[](std::string_view key) const {
  const Json* const found = find(key);
  if (found == nullptr) throw JsonError("no key \"" + std::string(key) + "\": " + Show(*this));
  return *found;
}

Json& Json::operator[](std::string_view key) {
  if (is_null()) *this = object();
  if (!is_object()) throw JsonError("no object: " + Show(*this));
  auto& members = std::get<std::vector<Member>>(value_);
  const auto found = std::ranges::find(members, key, &Member::key);
  if (found != members.end()) return found->value;
  return members.emplace_back(Member{std::string(key), nullptr}).value;
}

bool operator==(const Json& a, const Json& b) {
  if (a.is_number() && b.is_number()) {
    const bool exact = a.is_number_integer() && b.is_number_integer();
    return exact ? a.value_ == b.value_ : a.get<double>() == b.get<double>();
  }
  return a.value_ == b.value_;
}

const std::string* DigitsOf(const Json& json) {
  const auto* const digits = std::get_if<Json::Digits>(&json.value_);
  return digits == nullptr ? nullptr : &digits->text;
}

bool IsForm(const Json& json, std::string_view key) {
  return json.size() == 1 && json.contains(key);
}

bool IsWholeNumber(const Json& json, int64_t least, int64_t most) {
  const auto* const number = std::get_if<int64_t>(&json.value_);
  return number != nullptr && least <= *number && *number <= most;
}

}  // namespace tavcc
