#include "tavcc/arguments.h"

#include <fmt/core.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <iostream>
#include <iterator>
#include <limits>

#include "foundation/date_time.h"
#include "foundation/decimal.h"
#include "foundation/text.h"
#include "foundation/utf8.h"
#include "language/language.h"
#include "scenario/scenario.h"
#include "tavcc/command.h"
#include "tavcc/output.h"

namespace tavcc {
namespace {

const Parameter& FindParameter(const Method& method, const std::string& name) {
  std::vector<std::string> known;
  for (const Parameter& parameter : method.parameters) {
    if (EqualsIgnoringCase(parameter.name, name)) return parameter;
    known.emplace_back(parameter.name);
  }
  throw CommandError(
      Say("{} has no argument \"{}\"{}", method.name, name, DidYouMean(name, known)));
}

[[noreturn]] void Refuse(const Parameter& parameter, const std::string& value,
                         const std::string& reason) {
  throw CommandError(Say("argument {}: \"{}\" {}", parameter.name, value, reason));
}

template <class Integer>
Json IntegerOf(const Parameter& parameter, const std::string& word) {
  using Limits = std::numeric_limits<Integer>;
  const char* const end = word.data() + word.size();
  int64_t number = 0;
  const auto [stop, problem] = std::from_chars(word.data(), end, number);
  const bool whole = stop == end && !word.empty();
  if (!whole || problem == std::errc::invalid_argument) {
    Refuse(parameter, word, Translated("is no whole number"));
  }
  if (problem == std::errc::result_out_of_range || number < Limits::min() ||
      number > Limits::max()) {
    Refuse(parameter, word,
           Say("is out of range for {} ({} to {})", TypeText(parameter.type), Limits::min(),
               Limits::max()));
  }
  return number;
}

Json NumberOf(const Parameter& parameter, const std::string& word) {
  const auto number = Decimal::Parse(word);
  if (!number) Refuse(parameter, word, Translated("is no number"));
  return number->ToDouble();
}

Json BooleanOf(const Parameter& parameter, const std::string& word) {
  if (EqualsIgnoringCase(word, "true") || word == "1" || word == "-1") return true;
  if (EqualsIgnoringCase(word, "false") || word == "0") return false;
  Refuse(parameter, word, Translated("is no Boolean (true or false)"));
}

Json DateOf(const Parameter& parameter, const std::string& word) {
  if (!DateTime::Parse(word)) {
    Refuse(parameter, word, Translated("is no date (YYYY-MM-DD or YYYY-MM-DD HH:MM:SS)"));
  }
  return Json{{"date", word}};
}

Json StructureOf(const Parameter& parameter, const std::string& word) {
  Json json;
  try {
    json = ParseJson(word);
  } catch (const JsonError& error) {
    throw CommandError(Say("argument {}: {}", parameter.name, error.what()));
  }
  const bool fits =
      parameter.type == ArgumentType::kDictionary ? json.is_object() : json.is_array();
  const bool object = parameter.type == ArgumentType::kObject;
  if (!fits && !json.is_null() && !object) {
    Refuse(parameter, word,
           parameter.type == ArgumentType::kDictionary ? Translated("is no JSON object")
                                                       : Translated("is no JSON array"));
  }
  return json;
}

Json FromWord(const Parameter& parameter, const std::string& word) {
  switch (parameter.type) {
    case ArgumentType::kBoolean:
      return BooleanOf(parameter, word);
    case ArgumentType::kInteger:
      return IntegerOf<int16_t>(parameter, word);
    case ArgumentType::kLong:
    case ArgumentType::kTransactionMode:
      return IntegerOf<int32_t>(parameter, word);
    case ArgumentType::kDouble:
      return NumberOf(parameter, word);
    case ArgumentType::kDate:
      return DateOf(parameter, word);
    case ArgumentType::kText:
    case ArgumentType::kVariant:
      return word;
    case ArgumentType::kDictionary:
    case ArgumentType::kVector:
    case ArgumentType::kObject:
      return StructureOf(parameter, word);
    case ArgumentType::kConnection:
    case ArgumentType::kRecordset:
      break;
  }
  Refuse(parameter, word, Translated("cannot be given on the command line"));
}

// Numbers of a file go the same way as words, so that both have the same ranges and messages.
Json Checked(const Parameter& parameter, const Json& json) {
  const bool scalar = json.is_number() || json.is_boolean();
  if (scalar && parameter.type != ArgumentType::kVariant && parameter.type != ArgumentType::kText) {
    return FromWord(parameter, Show(json));
  }
  if (json.is_string() && parameter.type != ArgumentType::kVariant) {
    return FromWord(parameter, json.get<std::string>());
  }
  const bool wanted_structure =
      parameter.type == ArgumentType::kDictionary || parameter.type == ArgumentType::kVector ||
      parameter.type == ArgumentType::kObject || parameter.type == ArgumentType::kVariant ||
      parameter.type == ArgumentType::kDate;
  if (json.is_structured() && !wanted_structure) {
    Refuse(parameter, Show(json), Say("is no {}", TypeText(parameter.type)));
  }
  if (json.is_structured() && parameter.type != ArgumentType::kVariant &&
      parameter.type != ArgumentType::kDate) {
    return StructureOf(parameter, Show(json));
  }
  return json;
}

Json ReadJsonFile(const std::string& file) {
  const std::string name = file == "-" ? Translated("standard input") : file;
  const std::string text =
      file == "-" ? std::string(std::istreambuf_iterator<char>(std::cin), {}) : ReadTextFile(file);
  try {
    Json json = ParseJson(text);
    if (!json.is_object()) throw JsonError(Translated("must be an object of arguments by name"));
    return json;
  } catch (const JsonError& error) {
    throw CommandError(fmt::format("{}: {}", name, error.what()));
  }
}

// The name of a table, whole: letters, digits, and what joins and begins names. Statements splice
// it in as it is; anything else in it would be statements of its own.
bool IsPlainName(std::string_view name) {
  return std::ranges::all_of(name, [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || std::isalnum(byte) != 0 ||
           std::string_view("_#@$.[]").find(c) != std::string_view::npos;
  });
}

// `path` says where the value stands, `name` is its own.
void RequirePlainNames(const std::string& path, std::string_view name, const Json& value) {
  const bool names_table = UpperCase(name).find("TABLENAME") != std::string::npos;
  if (names_table && value.is_string() && !IsPlainName(value.get<std::string>())) {
    throw CommandError(Say(
        "argument {}: \"{}\" is more than the name of a table; --unsafe-names sends it as it is",
        path, value.get<std::string>()));
  }
  for (const Json& element : value) RequirePlainNames(path, name, element);
  for (const auto& [key, item] : value.items()) RequirePlainNames(path + "." + key, key, item);
}

}  // namespace

Json ReadArguments(const Method& method, const CallOptions& options) {
  Json arguments = Json::object();
  const auto add = [&](const Parameter& parameter, Json value) {
    const std::string name(parameter.name);
    if (arguments.contains(name)) throw CommandError(Say("argument {}: is given twice", name));
    arguments[name] = std::move(value);
  };
  if (!options.json_file.empty()) {
    const Json file = ReadJsonFile(options.json_file);
    for (const auto& [name, value] : file.items()) {
      const Parameter& parameter = FindParameter(method, name);
      add(parameter, Checked(parameter, value));
    }
  }
  for (const std::string& word : options.words) {
    const size_t equals = word.find('=');
    if (equals == std::string::npos) {
      throw CommandError(Say("\"{}\" must have the form name=value", word));
    }
    if (!IsUtf8(word)) throw CommandError(Say("argument {}: is not UTF-8", word.substr(0, equals)));
    const Parameter& parameter = FindParameter(method, word.substr(0, equals));
    add(parameter, FromWord(parameter, word.substr(equals + 1)));
  }
  if (!options.unsafe_names) {
    for (const auto& [name, value] : arguments.items()) RequirePlainNames(name, name, value);
  }
  return arguments;
}

void RequireArguments(const Method& method, const Json& arguments) {
  for (const Parameter& parameter : method.parameters) {
    switch (parameter.type) {
      case ArgumentType::kBoolean:
      case ArgumentType::kInteger:
      case ArgumentType::kLong:
      case ArgumentType::kDouble:
      case ArgumentType::kDate:
        break;
      default:
        continue;
    }
    if (parameter.optional || parameter.in_out) continue;
    if (!arguments.contains(std::string(parameter.name))) {
      throw CommandError(
          Say("argument {} ({}) is missing", parameter.name, TypeText(parameter.type)));
    }
  }
}

}  // namespace tavcc
