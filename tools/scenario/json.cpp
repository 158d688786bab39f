// Reading JSON strictly, with errors of one line.
#include "scenario/json.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <set>
#include <sstream>
#include <vector>

namespace tavcc {
namespace {

// Where the byte stands, as an editor counts: lines and columns from 1.
std::string Position(std::string_view text, size_t byte) {
  size_t line = 1;
  size_t column = 1;
  for (size_t i = 0; i < byte && i < text.size(); ++i) {
    const bool line_end = text[i] == '\n';
    line += line_end ? 1 : 0;
    column = line_end ? 1 : column + 1;
  }
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

// "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error while parsing
// value - invalid literal; last read: 'x'" -> the part after the position.
std::string Reason(std::string_view what) {
  for (const std::string_view mark : {"syntax error", "incomplete", "invalid"}) {
    if (const size_t at = what.find(mark); at != std::string_view::npos) {
      return std::string(what.substr(at));
    }
  }
  return std::string(what);
}

}  // namespace

Json ParseJson(std::string_view text) {
  std::vector<std::set<std::string>> keys;
  std::string twice;
  const Json::parser_callback_t on_event = [&](int, Json::parse_event_t event, Json& parsed) {
    if (event == Json::parse_event_t::object_start) keys.emplace_back();
    if (event == Json::parse_event_t::object_end) keys.pop_back();
    if (event == Json::parse_event_t::key &&
        !keys.back().insert(parsed.get<std::string>()).second) {
      twice = parsed.get<std::string>();
    }
    return true;
  };
  try {
    Json json = Json::parse(text.begin(), text.end(), on_event);
    if (!twice.empty()) throw JsonError("the key \"" + twice + "\" stands twice in one object");
    return json;
  } catch (const nlohmann::json::parse_error& error) {
    const size_t byte = error.byte > 0 ? error.byte - 1 : 0;
    throw JsonError("no JSON at " + Position(text, byte) + ": " + Reason(error.what()));
  }
}

bool IsForm(const Json& json, std::string_view key) {
  return json.is_object() && json.size() == 1 && json.begin().key() == key;
}

std::string Show(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string ReadTextFile(const std::string& path) {
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  // A directory opens, and only reading it fails.
  if (!file || !(file.peek() == std::ifstream::traits_type::eof() || (text << file.rdbuf())) ||
      file.bad()) {
    throw JsonError("cannot read " + path + ": " +
                    (errno != 0 ? std::strerror(errno) : "it is no file"));
  }
  return text.str();
}

}  // namespace tavcc
