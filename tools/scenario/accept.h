// Taking what came for what is expected: the expectations of a scenario's file as a run of it
// answers them now, for a rule that was changed on purpose.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "scenario/backend.h"
#include "scenario/json.h"

namespace tavcc {

// What would be expected of a value: `expected` where nothing differs, else the value in the form
// in which it was expected. What is not named stays unnamed: the keys of a dictionary, the columns
// of rows that are objects.
Json Accepted(const Json& expected, const Value& actual);

struct Acceptance {
  std::string text;                // the file's, changed where an expectation did not hold
  std::vector<std::string> notes;  // what could not be accepted, a line each
};

// Runs a scenario's file, of which `text` is the text, and changes what it expects: results and
// arguments, errors, rows, statements, and each sweep, which is shared out where the statements it
// stands for no longer answer alike. A failing statement is known by its text: where statements
// came in front of it, its position follows. Nothing else is touched. The backend must fix the
// clock. Errors: ScenarioError for a text that is no scenario.
Acceptance AcceptScenario(const std::string& file, std::string_view text, Backend& backend);

}  // namespace tavcc
