#include "foundation/connection_string.h"

#include <algorithm>

#include "foundation/text.h"

namespace tavcc {
namespace {

constexpr std::string_view kMask = "***";

// Where an attribute's value stands in the connection string: from `begin`, with any braces.
struct Attribute {
  std::string_view key;
  size_t begin = 0;
  size_t end = 0;
};

// What closes a value that begins so; 0 for one that stands by itself.
char CloserOf(char first) {
  if (first == '{') return '}';
  return first == '"' || first == '\'' ? first : '\0';
}

size_t EndOfQuoted(std::string_view text, size_t open) {
  const char closer = CloserOf(text[open]);
  for (size_t at = open + 1; at < text.size(); ++at) {
    if (text[at] != closer) continue;
    if (at + 1 < text.size() && text[at + 1] == closer) {
      ++at;
      continue;
    }
    return at + 1;
  }
  return text.size();  // never closed: all of it may be the value
}

Attribute NextAttribute(std::string_view text, size_t at) {
  const size_t equals = std::min(text.find('=', at), text.size());
  const size_t semicolon = std::min(text.find(';', at), text.size());
  if (equals >= semicolon) return {"", semicolon, semicolon};
  Attribute attribute{Trim(text.substr(at, equals - at)), equals + 1, 0};
  const size_t first = text.find_first_not_of(' ', attribute.begin);
  const bool quoted = first != std::string_view::npos && CloserOf(text[first]) != '\0';
  const size_t from = quoted ? EndOfQuoted(text, first) : attribute.begin;
  attribute.end = std::min(text.find(';', from), text.size());
  return attribute;
}

std::vector<Attribute> PasswordAttributes(std::string_view text) {
  std::vector<Attribute> found;
  for (size_t at = 0; at < text.size();) {
    const Attribute attribute = NextAttribute(text, at);
    const bool password =
        EqualsIgnoringCase(attribute.key, "PWD") || EqualsIgnoringCase(attribute.key, "Password");
    if (password) found.push_back(attribute);
    at = attribute.end + 1;
  }
  return found;
}

std::string WithoutQuotes(std::string_view value) {
  value = Trim(value);
  const char closer = value.empty() ? '\0' : CloserOf(value.front());
  if (closer == '\0') return std::string(value);
  value.remove_prefix(1);
  if (value.ends_with(closer)) value.remove_suffix(1);
  std::string plain;
  for (size_t at = 0; at < value.size(); ++at) {
    plain += value[at];
    if (value[at] == closer && value.substr(at + 1).starts_with(closer)) ++at;
  }
  return plain;
}

}  // namespace

std::string MaskPassword(std::string_view connection_string) {
  std::string masked;
  size_t at = 0;
  for (const Attribute& password : PasswordAttributes(connection_string)) {
    masked += connection_string.substr(at, password.begin - at);
    masked += kMask;
    at = password.end;
  }
  return masked += connection_string.substr(at);
}

std::vector<std::string> PasswordsOf(std::string_view connection_string) {
  std::vector<std::string> passwords;
  for (const Attribute& password : PasswordAttributes(connection_string)) {
    passwords.push_back(
        WithoutQuotes(connection_string.substr(password.begin, password.end - password.begin)));
    if (passwords.back().empty()) passwords.pop_back();
  }
  return passwords;
}

std::string WithoutPasswords(std::string text, std::string_view connection_string) {
  for (const std::string& password : PasswordsOf(connection_string)) {
    for (size_t at = 0; (at = text.find(password, at)) != std::string::npos; at += kMask.size()) {
      text.replace(at, password.size(), kMask);
    }
  }
  return text;
}

}  // namespace tavcc
