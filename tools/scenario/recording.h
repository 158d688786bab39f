// Calls as they are recorded, and the tape that is made of them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/host_state.h"
#include "scenario/json.h"
#include "scenario/scenario.h"

namespace tavcc {

// What a call came to, as a step of a scenario: its arguments, and all that it answers as what is
// expected.
class RecordedCall {
 public:
  // Before the call: keeps what it is given. `untold` are the arguments of a call that is given
  // nothing (MakeArguments); what does not differ from them needs no word.
  // Errors: JsonError for an argument that no file can hold.
  RecordedCall(const ClassDescription& cls, const Method& method, std::span<const Value> given,
               std::span<const Value> untold);

  // After it.
  void Answered(const Value& result, std::span<const Value> arguments);
  void Raised(const AutomationError& error, std::span<const Value> arguments);

  const Json& step() const { return step_; }

 private:
  void ExpectArguments(std::span<const Value> arguments);

  const Method& method_;
  Json step_ = Json::object();
  std::vector<Json> given_;  // by parameter; null for what is not told
};

struct Recording {
  std::string name;
  std::string note;
  DateTime now;
  HostSettings host;
  std::vector<HostAnswer> answers;  // of the host, each time
  std::vector<Json> steps;          // of RecordedCall
  std::vector<Tape> tapes;          // one for each step
};

// The scenario that replays it without a database. Errors: JsonError where a setting was read with
// two values, or the host published something that no file can hold.
Json TapeScenario(const Recording& recording);

// The text of a scenario's file, laid out as those that are written by hand.
std::string ScenarioText(const Json& scenario);

}  // namespace tavcc
