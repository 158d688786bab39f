// JSON as scenario files and the command line's rich arguments use it: objects keep their order.
#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tavcc {

using Json = nlohmann::ordered_json;

// A text that is not what it should be; what() is one line.
class JsonError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Parses a whole text. Errors: JsonError for a text that is no JSON (line and column), and for an
// object that has the same key twice, since only one of the two would count.
Json ParseJson(std::string_view text);

// Whether it is an object with this key alone, e.g. {"date": …} for "date".
bool IsForm(const Json& json, std::string_view key);

// JSON on one line, Chinese as it is.
std::string Show(const Json& json);

// Reads a whole file. Errors: JsonError naming the file and why it cannot be read.
std::string ReadTextFile(const std::string& path);

}  // namespace tavcc
