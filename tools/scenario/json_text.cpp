// Reading JSON strictly, with errors of one line. The one source that the JSON library's headers
// are compiled in.
#include "scenario/json.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>
#include <utility>

#include "foundation/file_path.h"
#include "language/language.h"

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
  return Say("line {}, column {}", line, column);
}

// What there is to say beside the place, told from the library's own text.
std::string Reason(std::string_view what) {
  const auto says = [&](std::string_view words) {
    return what.find(words) != std::string_view::npos;
  };
  if (says("UTF-8")) return Translated(": the text is not UTF-8");
  if (says("number overflow")) return Translated(": the number is out of range");
  if (says("unexpected end of input")) return Translated(": the text ends before it is complete");
  return "";
}

using Library = nlohmann::ordered_json;

// No scenario and no argument comes near; what a value of it is walked with is the stack.
constexpr size_t kDeepest = 200;

// The library does not say where it is.
void RefuseDeepNesting(std::string_view text) {
  size_t depth = 0;
  bool in_text = false;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (in_text) {
      if (c == '\\') ++i;
      if (c == '"') in_text = false;
    } else if (c == '"') {
      in_text = true;
    } else if (c == '[' || c == '{') {
      if (++depth > kDeepest) {
        throw JsonError(Say("nested more than {} levels deep at {}", kDeepest, Position(text, i)));
      }
    } else if ((c == ']' || c == '}') && depth > 0) {
      --depth;
    }
  }
}

// Builds the value while the library reads the text.
class Builder final : public nlohmann::json_sax<Library> {
 public:
  explicit Builder(std::string_view text) : text_(text) {}

  // Errors: JsonError where a key stood twice.
  Json Take() {
    if (!twice_.empty()) throw JsonError(Say("the key \"{}\" stands twice in one object", twice_));
    return std::move(root_);
  }

  bool null() override { return Add(nullptr); }
  bool boolean(bool value) override { return Add(value); }
  bool number_integer(number_integer_t value) override { return Add(value); }
  bool number_unsigned(number_unsigned_t value) override { return Add(value); }
  bool number_float(number_float_t value, const string_t&) override { return Add(value); }
  bool string(string_t& value) override { return Add(std::move(value)); }
  bool binary(binary_t&) override { return false; }  // no text holds any
  bool start_object(size_t) override { return Open(Json::object()); }
  bool start_array(size_t) override { return Open(Json::array()); }
  bool end_object() override { return Close(); }
  bool end_array() override { return Close(); }
  bool key(string_t& value) override {
    if (open_.back()->contains(value)) twice_ = value;
    key_ = std::move(value);
    return true;
  }
  bool parse_error(size_t byte, const std::string&, const Library::exception& error) override {
    throw JsonError(
        Say("no JSON at {}{}", Position(text_, byte > 0 ? byte - 1 : 0), Reason(error.what())));
  }

 private:
  Json& Place(Json value) {
    if (open_.empty()) return root_ = std::move(value);
    if (open_.back()->is_array()) return open_.back()->push_back(std::move(value));
    return (*open_.back())[key_] = std::move(value);
  }
  bool Add(Json value) {
    Place(std::move(value));
    return true;
  }
  bool Open(Json structure) {
    open_.push_back(&Place(std::move(structure)));
    return true;
  }
  bool Close() {
    open_.pop_back();
    return true;
  }

  std::string_view text_;
  Json root_;
  // The structures around what comes next. Nothing is added to a structure while one inside it is
  // open, so that the pointers stay good.
  std::vector<Json*> open_;
  std::string key_;
  std::string twice_;
};

// Neither a list nor an object, as the library writes it.
std::string ShowPlain(const Json& json) {
  const auto show = [](const Library& plain) {
    return plain.dump(-1, ' ', false, Library::error_handler_t::replace);
  };
  if (const std::string* digits = DigitsOf(json)) return *digits;
  if (json.is_string()) return show(json.get<std::string>());
  if (json.is_boolean()) return show(json.get<bool>());
  if (json.is_null()) return show(nullptr);
  if (!json.is_number_integer()) return show(json.get<double>());
  if (IsWholeNumber(json, INT64_MIN, INT64_MAX)) return show(json.get<int64_t>());
  return show(json.get<uint64_t>());
}

// Writes values into one text. The library's own way of writing has no word for a number's digits.
class Writer {
 public:
  explicit Writer(int indent) : indent_(indent) {}

  std::string Take() { return std::move(text_); }

  void Write(const Json& json, int level = 0) {
    if (!json.is_structured()) {
      text_ += ShowPlain(json);
    } else if (json.is_array()) {
      text_ += '[';
      for (const Json& element : json) {
        Separate(&element == json.begin(), level);
        Write(element, level + 1);
      }
      Close(']', json.empty(), level);
    } else {
      text_ += '{';
      for (const Json::Member& member : json.items()) {
        Separate(&member == json.items().data(), level);
        text_ += ShowPlain(member.key) + (indent_ < 0 ? ":" : ": ");
        Write(member.value, level + 1);
      }
      Close('}', json.empty(), level);
    }
  }

 private:
  void Break(int level) {
    if (indent_ >= 0) text_ += '\n' + std::string(static_cast<size_t>(indent_ * level), ' ');
  }
  void Separate(bool first, int level) {
    if (!first) text_ += ',';
    Break(level + 1);
  }
  void Close(char mark, bool empty, int level) {
    if (!empty) Break(level);
    text_ += mark;
  }

  const int indent_;
  std::string text_;
};

}  // namespace

Json ParseJson(std::string_view text) {
  RefuseDeepNesting(text);
  Builder builder(text);
  Library::sax_parse(text.begin(), text.end(), &builder);
  return builder.Take();
}

std::string Show(const Json& json, int indent) {
  Writer writer(indent);
  writer.Write(json);
  return writer.Take();
}

std::string ReadTextFile(const std::string& path) {
  errno = 0;
  std::ifstream file(PathOf(path), std::ios::binary);
  std::ostringstream text;
  // A directory opens, and only reading it fails.
  if (!file || !(file.peek() == std::ifstream::traits_type::eof() || (text << file.rdbuf())) ||
      file.bad()) {
    throw JsonError(Say("cannot read {}: {}", path,
                        errno != 0 ? std::strerror(errno) : Translated("it is no file")));
  }
  return text.str();
}

}  // namespace tavcc
