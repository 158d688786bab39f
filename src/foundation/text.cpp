#include "foundation/text.h"

#include <algorithm>
#include <charconv>

#include "foundation/conversions.h"

namespace tavcc {

namespace internal {

void Append(std::string& out, std::string_view text) {
  out.append(text);
}

void Append(std::string& out, int32_t number) {
  char digits[12];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  out.append(digits, end);
}

void Append(std::string& out, const Decimal& number) {
  out.append(number.Normalized().ToText());
}
void Append(std::string& out, double number) {
  out.append(NumberText(number));
}

}  // namespace internal

namespace {
char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
}  // namespace

std::string_view Trim(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string UpperCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), Upper);
  return result;
}

std::string LowerCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), Lower);
  return result;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Upper(x) == Upper(y); });
}

}  // namespace tavcc
