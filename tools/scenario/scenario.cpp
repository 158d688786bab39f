// Reading scenario files: every key is known and of its type, or the file is refused with its name,
// the step and the key.
#include "scenario/scenario.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <utility>

#include "foundation/file_path.h"
#include "language/language.h"
#include "scenario/values.h"

namespace tavcc {
namespace {

constexpr std::string_view kNow = "2026-03-15 10:00:00";
constexpr int32_t kInjectedNumber = 50000;
constexpr std::string_view kInjectedText = "disk full";

bool IsLong(const Json& json) {
  return IsWholeNumber(json, INT32_MIN, INT32_MAX);
}

// One object of the file and where it stands; reads its members and knows what was not read.
class Section {
 public:
  Section(const Json& json, std::string place) : json_(json), place_(std::move(place)) {
    if (!json.is_object()) throw ScenarioError(Say("{}: must be an object", place_));
  }

  [[noreturn]] void Fail(std::string_view key, const std::string& text) const {
    throw ScenarioError(Say("{}, key \"{}\": {}", place_, key, text));
  }

  // Refuses keys that are not in the list.
  void AllowOnly(std::initializer_list<const char*> keys) const {
    const std::vector<std::string> known(keys.begin(), keys.end());
    for (const auto& [key, value] : json_.items()) {
      if (std::find(known.begin(), known.end(), key) == known.end()) {
        Fail(key, Say("unknown key{}", DidYouMean(key, known)));
      }
    }
  }

  const Json* Find(const char* key) const { return json_.find(key); }

  std::string Text(const char* key) const {
    const Json* value = Find(key);
    if (value == nullptr) Fail(key, Translated("is missing"));
    if (!value->is_string()) Fail(key, Translated("must be a text"));
    return value->get<std::string>();
  }

  std::optional<std::string> OptionalText(const char* key) const {
    if (Find(key) == nullptr) return std::nullopt;
    return Text(key);
  }

  std::optional<int32_t> OptionalLong(const char* key) const {
    const Json* value = Find(key);
    if (value == nullptr) return std::nullopt;
    if (!IsLong(*value)) Fail(key, Translated("must be a 32-bit integer"));
    return value->get<int32_t>();
  }

  bool Flag(const char* key) const {
    const Json* value = Find(key);
    if (value == nullptr) return false;
    if (!value->is_boolean()) Fail(key, Translated("must be true or false"));
    return value->get<bool>();
  }

  // The object under the key; an empty one when there is none.
  const Json& Object(const char* key) const {
    static const Json empty = Json::object();
    const Json* value = Find(key);
    if (value == nullptr) return empty;
    if (!value->is_object()) Fail(key, Translated("must be an object"));
    return *value;
  }

  // The list under the key; an empty one when there is none.
  const Json& List(const char* key) const {
    static const Json empty = Json::array();
    const Json* value = Find(key);
    if (value == nullptr) return empty;
    if (!value->is_array()) Fail(key, Translated("must be a list"));
    return *value;
  }

  const std::string& place() const { return place_; }

 private:
  Json json_;  // a copy, so that a section may be made of a temporary
  std::string place_;
};

ExpectedError ReadError(const Json& json, const std::string& place) {
  const Section section(json, place);
  section.AllowOnly({"number", "source", "description"});
  return {section.OptionalLong("number"), section.OptionalText("source"),
          section.OptionalText("description")};
}

std::optional<ExpectedError> ReadOptionalError(const Section& section) {
  const Json* error = section.Find("error");
  if (error == nullptr) return std::nullopt;
  return ReadError(*error, Say("{}, key \"{}\"", section.place(), "error"));
}

StatementFault::Kind ReadKind(const Section& section) {
  using Kind = StatementFault::Kind;
  constexpr std::pair<std::string_view, Kind> kKinds[] = {
      {"raised", Kind::kRaised},
      {"left", Kind::kLeft},
      {"closed", Kind::kClosed},
      {"nulls", Kind::kNulls},
  };
  const std::string word = section.OptionalText("kind").value_or("raised");
  for (const auto& [name, kind] : kKinds) {
    if (name == word) return kind;
  }
  section.Fail("kind", Translated("must be \"raised\", \"left\", \"closed\" or \"nulls\""));
}

StatementFault ReadFailure(const Section& section) {
  return {AutomationError(section.OptionalLong("number").value_or(kInjectedNumber),
                          section.OptionalText("source").value_or(""),
                          section.OptionalText("description").value_or(std::string(kInjectedText))),
          ReadKind(section)};
}

InjectedFailure ReadFail(const Json& json, const std::string& place) {
  const Section section(json, place);
  section.AllowOnly({"at", "kind", "number", "source", "description"});
  const int at = section.OptionalLong("at").value_or(0);
  if (at < 1) section.Fail("at", Translated("must be the position of a statement, from 1"));
  return {at, ReadFailure(section)};
}

// `expect` names the result, or parameters of the method.
void CheckExpectation(const Section& section, const char* key, const Json& expect,
                      const Method& method) {
  std::vector<std::string> known = {"result"};
  for (const Parameter& parameter : method.parameters) known.emplace_back(parameter.name);
  for (const auto& [name, value] : expect.items()) {
    if (std::find(known.begin(), known.end(), name) == known.end()) {
      section.Fail(key, Say("\"{}\" is neither \"result\" nor an argument of {}{}", name,
                            method.name, DidYouMean(name, known)));
    }
  }
}

void CheckArguments(const Section& section, const Json& args, const Method& method) {
  std::vector<std::string> known;
  for (const Parameter& parameter : method.parameters) known.emplace_back(parameter.name);
  for (const auto& [name, value] : args.items()) {
    if (std::find(known.begin(), known.end(), name) == known.end()) {
      section.Fail(
          "args", Say("\"{}\" is no argument of {}{}", name, method.name, DidYouMean(name, known)));
    }
  }
}

void CheckStatements(const Section& section, const Json& statements) {
  for (const Json& statement : statements) {
    if (statement.is_string()) continue;
    const bool procedure = statement.is_object() && statement.size() == 2 &&
                           statement.contains("procedure") && statement["procedure"].is_string() &&
                           statement.contains("parameters") && statement["parameters"].is_object();
    if (!procedure) {
      section.Fail(
          "statements",
          Say("each is a text or {{\"procedure\": \"name\", \"parameters\": {{…}}}}, not {}",
              Show(statement)));
    }
  }
}

Tape ReadTape(const Section& section, const Json& json) {
  try {
    return TapeFromJson(json);
  } catch (const JsonError& error) {
    section.Fail("tape", error.what());
  }
}

Step ReadStep(const Json& json, const std::string& place, int number);

Sweep ReadSweep(const Json& json, const std::string& place, const Method& method) {
  const Section section(json, place);
  section.AllowOnly({"at", "fail", "expect", "error", "then"});
  const Section failure(section.Object("fail"), Say("{}, key \"{}\"", place, "fail"));
  failure.AllowOnly({"kind", "number", "source", "description"});
  Sweep sweep{{}, ReadFailure(failure), section.Object("expect"), ReadOptionalError(section), {}};
  CheckExpectation(section, "expect", sweep.expect, method);
  for (const Json& at : section.List("at")) {
    if (!IsWholeNumber(at, 1, INT32_MAX))
      section.Fail("at", Translated("must list positions of statements, from 1"));
    sweep.at.push_back(at.get<int>());
  }
  int number = 0;
  for (const Json& query : section.List("then")) {
    ++number;
    Step step = ReadStep(query, Say("{}, key \"then\" {}", place, number), number);
    if (step.IsCall()) section.Fail("then", Translated("holds queries only"));
    sweep.then.push_back(std::move(step));
  }
  if (sweep.expect.empty() && !sweep.error && sweep.then.empty()) {
    throw ScenarioError(Say("{}: expects nothing; give \"expect\", \"error\" or \"then\"", place));
  }
  return sweep;
}

std::vector<Sweep> ReadSweeps(const Section& section, const Method& method) {
  const Json* json = section.Find("sweep");
  if (json == nullptr) return {};
  const std::string place = Say("{}, key \"{}\"", section.place(), "sweep");
  std::vector<Sweep> sweeps;
  if (!json->is_array()) {
    sweeps.push_back(ReadSweep(*json, place, method));
    return sweeps;
  }
  for (const Json& one : *json) sweeps.push_back(ReadSweep(one, place, method));
  return sweeps;
}

void ReadCall(const Section& section, Step& step) {
  section.AllowOnly({"note", "needs_clock", "call", "args", "expect", "statements", "tape", "fail",
                     "error", "sweep"});
  try {
    const MethodName name = FindMethodByName(section.Text("call"));
    step.cls = name.cls;
    step.method = name.method;
  } catch (const std::invalid_argument& error) {
    section.Fail("call", error.what());
  }
  step.args = section.Object("args");
  CheckArguments(section, step.args, *step.method);
  step.expect = section.Object("expect");
  CheckExpectation(section, "expect", step.expect, *step.method);
  if (section.Find("statements") != nullptr) {
    step.statements = section.List("statements");
    CheckStatements(section, *step.statements);
  }
  if (const Json* tape = section.Find("tape")) step.tape = ReadTape(section, *tape);
  if (const Json* fail = section.Find("fail")) {
    step.fail = ReadFail(*fail, Say("{}, key \"{}\"", section.place(), "fail"));
  }
  step.sweeps = ReadSweeps(section, *step.method);
}

void ReadQuery(const Section& section, Step& step) {
  section.AllowOnly({"note", "needs_clock", "query", "rows", "error"});
  step.query = section.Text("query");
  if (section.Find("rows") == nullptr) return;
  step.rows = section.List("rows");
  for (const Json& row : *step.rows) {
    if (!row.is_array() && !row.is_object()) {
      section.Fail("rows", Translated("each row is a list of fields or an object of columns"));
    }
  }
}

Step ReadStep(const Json& json, const std::string& place, int number) {
  const Section section(json, place);
  Step step;
  step.number = number;
  step.note = section.OptionalText("note").value_or("");
  step.needs_clock = section.Flag("needs_clock");
  step.error = ReadOptionalError(section);
  if (section.Find("call") != nullptr) {
    ReadCall(section, step);
  } else if (section.Find("query") != nullptr) {
    ReadQuery(section, step);
  } else {
    throw ScenarioError(Say("{}: has neither the key \"call\" nor \"query\"", place));
  }
  return step;
}

void ReadResources(const Section& section, StartState& start) {
  for (const auto& [language, texts] : section.Object("resources").items()) {
    if (!texts.is_object()) section.Fail("resources", Say("\"{}\" must be an object", language));
    for (const auto& [text, translation] : texts.items()) {
      if (!translation.is_string())
        section.Fail("resources", Translated("translations must be texts"));
      start.resources[language][text] = translation.get<std::string>();
    }
  }
}

void ReadProfile(const Section& section, StartState& start) {
  for (const auto& [key, value] : section.Object("profile").items()) {
    if (key.find('.') == std::string::npos) {
      section.Fail("profile", Say("\"{}\" must have the form category.key", key));
    }
    if (!value.is_string() && !value.is_null()) {
      section.Fail("profile", Say("\"{}\" must be a text or null", key));
    }
    start.profile.emplace_back(
        key, value.is_null() ? std::nullopt : std::optional(value.get<std::string>()));
  }
}

Value SettingFromJson(const Json& json) {
  if (json.is_null()) return Empty{};
  if (IsForm(json, "null")) return Null{};
  return ScalarFromJson(json);
}

void ReadTapedSettings(const Section& section, StartState& start) {
  for (const auto& [key, value] : section.Object("profile").items()) {
    if (key.find('.') == std::string::npos) {
      section.Fail("profile", Say("\"{}\" must have the form category.key", key));
    }
    try {
      start.taped_settings.emplace_back(key, SettingFromJson(value));
    } catch (const JsonError& error) {
      section.Fail("profile", "\"" + key + "\": " + error.what());
    }
  }
}

StartState ReadStart(const Section& section, bool is_tape) {
  StartState start;
  const int32_t user = section.OptionalLong("user").value_or(start.user);
  if (user < INT16_MIN || user > INT16_MAX)
    section.Fail("user", Translated("must be a 16-bit integer"));
  start.user = static_cast<int16_t>(user);
  const std::string now = section.OptionalText("now").value_or(std::string(kNow));
  const auto time = DateTime::Parse(now);
  if (!time) section.Fail("now", Say("no date: {}", now));
  start.now = *time;
  for (const Json& right : section.List("denied_rights")) {
    if (!IsLong(right)) section.Fail("denied_rights", Translated("must list class types"));
    start.denied_rights.push_back(right.get<int32_t>());
  }
  start.published = section.Object("published");
  ReadResources(section, start);
  is_tape ? ReadTapedSettings(section, start) : ReadProfile(section, start);
  for (const Json& sql : section.List("sql")) {
    if (!sql.is_string()) section.Fail("sql", Translated("must list texts"));
    start.sql.push_back(sql.get<std::string>());
  }
  return start;
}

bool HasTape(const Json& step) {
  return step.contains("tape");
}

// A tape has no database that could be changed, asked or told the time.
void CheckTape(const Section& section, const Scenario& scenario) {
  for (const char* key : {"sql", "needs_clock"}) {
    if (section.Find(key) != nullptr) section.Fail(key, Translated("a tape has no database"));
  }
  for (const Step& step : scenario.steps) {
    const std::string place = Say("{}: step {}", section.place(), step.number);
    if (!step.IsCall())
      throw ScenarioError(Say("{}, key \"query\": a tape has no database", place));
    if (!step.tape) {
      throw ScenarioError(Say("{}: the key \"tape\" is missing, which other steps have", place));
    }
    if (step.statements) {
      throw ScenarioError(Say("{}, key \"statements\": the tape lists them", place));
    }
    if (step.needs_clock) {
      throw ScenarioError(Say("{}, key \"needs_clock\": a tape has no database", place));
    }
  }
}

}  // namespace

Scenario ParseScenario(const std::string& file, std::string_view text) {
  Json json;
  try {
    json = ParseJson(text);
  } catch (const JsonError& error) {
    throw ScenarioError(file + ": " + error.what());
  }
  const Section section(json, file);
  section.AllowOnly({"name", "note", "needs_clock", "user", "now", "denied_rights", "published",
                     "resources", "profile", "sql", "steps"});
  Scenario scenario;
  scenario.file = file;
  scenario.name = section.Text("name");
  scenario.needs_clock = section.Flag("needs_clock");
  const Json& steps = section.List("steps");
  const bool is_tape = std::any_of(steps.begin(), steps.end(), HasTape);
  scenario.start = ReadStart(section, is_tape);
  int number = 0;
  for (const Json& step : steps) {
    ++number;
    scenario.steps.push_back(ReadStep(step, Say("{}: step {}", file, number), number));
  }
  if (scenario.steps.empty()) section.Fail("steps", Translated("there is none"));
  if (is_tape) CheckTape(section, scenario);
  return scenario;
}

Scenario LoadScenario(const std::string& file) {
  std::string text;
  try {
    text = ReadTextFile(file);
  } catch (const JsonError& error) {
    throw ScenarioError(error.what());
  }
  return ParseScenario(file, text);
}

std::vector<std::string> ScenarioFiles(const std::vector<std::string>& paths) {
  namespace fs = std::filesystem;
  std::vector<std::string> files;
  for (const std::string& path : paths) {
    const fs::path place = PathOf(path);
    if (!fs::exists(place)) throw ScenarioError(Say("{}: no such file or folder", path));
    if (!fs::is_directory(place)) {
      files.push_back(path);
      continue;
    }
    std::vector<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator(place)) {
      if (entry.path().extension() == ".json") found.push_back(PathText(entry.path()));
    }
    if (found.empty()) throw ScenarioError(Say("{}: no scenario file in this folder", path));
    std::sort(found.begin(), found.end());
    files.insert(files.end(), found.begin(), found.end());
  }
  return files;
}

}  // namespace tavcc
