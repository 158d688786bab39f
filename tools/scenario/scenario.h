// A scenario as its file tells it, checked as far as that is possible without running it. The
// format is described in tests/scenarios/README.md.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "foundation/date_time.h"
#include "foundation/error.h"
#include "host/statement_log.h"
#include "registry/class_registry.h"
#include "scenario/json.h"
#include "scenario/tape.h"

namespace tavcc {

// The state that a scenario starts from, on top of the schema and the base rows.
struct StartState {
  int16_t user = 16394;
  DateTime now;
  std::vector<int32_t> denied_rights;
  Json published = Json::object();
  // Language, then text, then its translation.
  std::map<std::string, std::map<std::string, std::string>> resources;
  // "category.key" to the text; nothing removes the row.
  std::vector<std::pair<std::string, std::optional<std::string>>> profile;
  std::vector<std::string> sql;
  // Of a tape, in place of `profile`: every setting that the calls read, "category.key" and what
  // the host answered; Empty where it has none.
  std::vector<std::pair<std::string, Value>> taped_settings;
};

// The statement of a call that is made to go wrong, counted from 1, and how.
struct InjectedFailure {
  int at = 0;
  StatementFault fault;
};

// What is expected of an error; members that are not set are not compared.
struct ExpectedError {
  std::optional<int32_t> number;
  std::optional<std::string> source;
  std::optional<std::string> description;
};

struct Step;

// A sweep repeats its step on a fresh start, once for each statement the step sends, with that
// statement failing.
struct Sweep {
  // The statements this expectation is for; empty for all that no other expectation names.
  std::vector<int> at;
  StatementFault failure;
  Json expect = Json::object();
  std::optional<ExpectedError> error;
  std::vector<Step> then;  // queries that look at the database afterwards
};

struct Step {
  int number = 0;            // from 1
  std::string note;          // says in a failure which case this is
  bool needs_clock = false;  // depends on the clock standing at `now`
  // A call …
  const ClassDescription* cls = nullptr;
  const Method* method = nullptr;
  Json args = Json::object();
  std::optional<InjectedFailure> fail;
  Json expect = Json::object();
  std::optional<Json> statements;
  std::optional<Tape> tape;
  std::vector<Sweep> sweeps;
  // … or a query.
  std::string query;
  std::optional<Json> rows;
  // Either of them.
  std::optional<ExpectedError> error;

  bool IsCall() const { return method != nullptr; }
};

struct Scenario {
  std::string file;
  std::string name;
  bool needs_clock = false;  // all of it
  StartState start;
  std::vector<Step> steps;

  // Whether its calls are answered from tapes: all of them then are, and there is no database.
  bool IsTape() const { return !steps.empty() && steps.front().tape.has_value(); }
};

// A scenario file that is none. what() is one line with the file, the step and the key.
class ScenarioError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Reads a scenario from its text; `file` is for messages. Errors: ScenarioError.
Scenario ParseScenario(const std::string& file, std::string_view text);

// Reads a scenario file. Errors: ScenarioError.
Scenario LoadScenario(const std::string& file);

// The scenario files under the paths: a file is itself, a folder all "*.json" in it and below, in
// alphabetical order. Errors: ScenarioError for a path that does not exist.
std::vector<std::string> ScenarioFiles(const std::vector<std::string>& paths);

// A class by its name. Errors: std::invalid_argument whose text names what is unknown and the
// nearest known name.
const ClassDescription& FindClassByName(std::string_view name);

// Class and method of "Class.Method". Errors: as FindClassByName.
struct MethodName {
  const ClassDescription* cls;
  const Method* method;
};
MethodName FindMethodByName(std::string_view dotted);

// The nearest of the names to one that is not among them, as "; did you mean X?", or the empty
// text.
std::string DidYouMean(std::string_view name, const std::vector<std::string>& known);

}  // namespace tavcc
