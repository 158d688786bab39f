#include "tavcc/sql/script.h"

#include <fmt/core.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <utility>

#include "foundation/text.h"
#include "language/language.h"
#include "scenario/json.h"
#include "scenario/scenario.h"
#include "tavcc/command.h"
#include "tavcc/output.h"
#include "tavcc/platform/process.h"
#include "tavcc/sql/script_text.h"

namespace tavcc {
namespace {

// A file that reads itself comes to an end.
constexpr int kDeepest = 32;

[[noreturn]] void Fail(const ScriptPlace& place, std::string_view what) {
  throw CommandError(fmt::format("{}: {}", place.ToText(), what));
}

// The first word, and what stands behind the blanks after it.
struct Words {
  std::string_view first, rest;
};
Words SplitWord(std::string_view text) {
  text = sql::WithoutBlanks(text);
  const size_t end = std::min(text.find_first_of(sql::kBlanks), text.size());
  return {text.substr(0, end), sql::WithoutBlanks(text.substr(end))};
}

// The text between quotation marks where it stands in them; a doubled mark is one.
std::string Unquoted(std::string_view text) {
  if (text.size() < 2 || text.front() != '"' || text.back() != '"') return std::string(text);
  std::string out;
  for (size_t i = 1; i + 1 < text.size(); ++i) {
    out += text[i];
    if (text[i] == '"' && i + 2 < text.size() && text[i + 1] == '"') ++i;
  }
  return out;
}

// sqlcmd knows these, and this program does not.
constexpr std::string_view kForeign[] = {":!!",  ":connect",   ":ed",         ":error",
                                         ":out", ":perftrace", ":serverlist", ":xml"};
const std::vector<std::string> kCommands = {":exit", ":list", ":listvar", ":on error",
                                            ":quit", ":r",    ":reset",   ":setvar"};

bool IsCommand(std::string_view line) {
  const std::string_view text = sql::WithoutBlanks(line);
  if (text.starts_with(':')) return text.size() > 1 && text[1] != ':';
  return EqualsIgnoringCase(text, "exit") || EqualsIgnoringCase(text, "quit");
}

}  // namespace

std::string ScriptPlace::ToText() const {
  return source == nullptr || source->empty() ? fmt::format("line {}", line)
                                              : fmt::format("{}:{}", *source, line);
}

bool Batch::IsBlank() const {
  return std::ranges::all_of(lines, [](const std::string& line) {
    return line.find_first_not_of(sql::kBlanks) == std::string::npos;
  });
}

std::string Batch::Text() const {
  std::string text;
  for (const std::string& line : lines) {
    if (&line != &lines.front()) text += '\n';
    text += line;
  }
  return text;
}

bool ScriptVariables::IsName(std::string_view name) {
  return !name.empty() && name.find_first_of(" \t\"'()$") == std::string_view::npos;
}

void ScriptVariables::Set(const std::string& name, std::string value) {
  values_[LowerCase(name)] = std::move(value);
}

void ScriptVariables::Remove(const std::string& name) {
  values_.erase(LowerCase(name));
}

std::optional<std::string> ScriptVariables::Find(const std::string& name) const {
  if (const auto own = values_.find(LowerCase(name)); own != values_.end()) return own->second;
  return EnvironmentVariable(name);
}

bool Script::Read(std::string_view line, const ScriptPlace& place) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  if (lines_.IsOutside()) {
    if (const auto times = sql::BatchEnd(line)) {
      if (*times == 0) Fail(place, Translated("GO takes a count from 1, or nothing"));
      return RunTimes(*times);
    }
    if (IsCommand(line)) return Command(sql::WithoutBlanks(line), place);
  }
  const std::vector<size_t> variables = lines_.Read(line);
  pending_.lines.push_back(Replaced(line, variables, place));
  pending_.places.push_back(place);
  return true;
}

bool Script::ReadText(std::string_view text, const std::string& source) {
  ScriptPlace place{std::make_shared<const std::string>(source), 0};
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find('\n', at), text.size());
    ++place.line;
    if (!Read(text.substr(at, end - at), place)) return false;
    at = end + 1;
  }
  return true;
}

bool Script::Finish() {
  return RunTimes(1);
}

void Script::Reset() {
  pending_ = {};
  lines_.Reset();
}

bool Script::RunTimes(int times) {
  const Batch batch = std::exchange(pending_, {});
  lines_.Reset();
  if (batch.IsBlank()) return true;
  for (int i = 0; i < times; ++i) {
    if (!events_.run(batch)) return false;
  }
  return true;
}

bool Script::Command(std::string_view line, const ScriptPlace& place) {
  const std::string expanded = Replaced(line, sql::ScriptLines().Read(line), place);
  const auto [word, rest] = SplitWord(expanded);
  const auto is = [&, first = word](std::string_view name) {
    return EqualsIgnoringCase(first, name);
  };
  if (is(":r")) return ReadFile(rest, place);
  if (is(":setvar")) return SetVariable(rest, place), true;
  if (is(":on")) return SetOnError(rest, place), true;
  if (is(":reset")) return Reset(), true;
  if (is(":list")) return Print(pending_.Text() + "\n"), true;
  if (is(":exit") || is(":quit") || is("exit") || is("quit")) return Reset(), false;
  if (is(":listvar")) {
    for (const auto& [name, value] : variables_.own()) Print(name + " = " + value + "\n");
    return true;
  }
  const std::string name = LowerCase(word);
  if (std::ranges::find(kForeign, name) != std::end(kForeign)) {
    Fail(place, Say("{} is a command of sqlcmd that tavcc does not have", name));
  }
  Fail(place, Say("there is no command \"{}\"{}", word, DidYouMean(name, kCommands)));
}

bool Script::ReadFile(std::string_view rest, const ScriptPlace& place) {
  const std::string path = Unquoted(rest);
  if (path.empty()) Fail(place, Translated(":r needs the name of a file"));
  if (depth_ == kDeepest) {
    Fail(place, Say("files read one another more than {} deep", kDeepest));
  }
  std::string text;
  try {
    text = ReadScript(path);
  } catch (const JsonError& error) {
    Fail(place, error.what());
  }
  ++depth_;
  const bool more = ReadText(text, path);
  --depth_;
  return more;
}

void Script::SetVariable(std::string_view rest, const ScriptPlace& place) {
  const auto [word, value] = SplitWord(rest);
  const std::string name(word);
  if (!ScriptVariables::IsName(name)) {
    Fail(place, Say("\"{}\" is no name for a variable", name));
  }
  if (value.empty()) return variables_.Remove(name);
  const bool quoted = value.starts_with('"');
  if (quoted && (value.size() < 2 || !value.ends_with('"'))) {
    Fail(place, Translated("the quotation mark of the value is not closed"));
  }
  if (!quoted && value.find_first_of(sql::kBlanks) != std::string_view::npos) {
    Fail(place,
         Translated("a value with blanks stands in quotation marks: :setvar name \"a value\""));
  }
  variables_.Set(name, Unquoted(value));
}

void Script::SetOnError(std::string_view rest, const ScriptPlace& place) {
  const auto [error, what] = SplitWord(rest);
  const bool ignore = EqualsIgnoringCase(what, "ignore");
  if (!EqualsIgnoringCase(error, "error") || !(ignore || EqualsIgnoringCase(what, "exit"))) {
    Fail(place, Translated("it is :on error exit, or :on error ignore"));
  }
  events_.on_error(ignore);
}

std::string Script::Replaced(std::string_view line, const std::vector<size_t>& variables,
                             const ScriptPlace& place) const {
  std::string out;
  size_t done = 0;
  for (const size_t at : variables) {
    const size_t end = line.find(')', at);
    if (end == std::string_view::npos) Fail(place, Translated("\"$(\" without its \")\""));
    const std::string name(line.substr(at + 2, end - at - 2));
    const auto value = variables_.Find(name);
    if (!value) {
      Fail(place, Say("the variable {0} is not set; give -v {0}=VALUE, or write :setvar", name));
    }
    out += line.substr(done, at - done);
    out += *value;
    done = end + 1;
  }
  return out += line.substr(done);
}

}  // namespace tavcc
