// Taking what methods do now for what they promise: the changes to contracts.json that make every
// observed fault keep its promise.
//
// A promise that no fault keeps any more says what all of them come to; one that some still keep
// gets a promise in front of it, for the statements of the others. What cannot be told apart by the
// statement is left to a person.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "faults/contracts.h"

namespace tavcc::faults {

// One statement of a call that went wrong in one way, and what came of it.
struct Observation {
  StatementFault::Kind kind;
  std::string method;  // "Class.Method"
  std::string statement;
  Json arguments;
  bool kept = false;  // the promise
  Json answer;  // what could be promised: {"expect": …}, {"error": …}, {"as_usual": true} …
};

// What could be promised of this outcome: in the form of the promise that there is (null for none),
// with "%error%" and "%number%" where it speaks of the failure.
Json AnswerOf(const Json* promise, const Method& method, const AutomationError& failure,
              const CallOutcome& usual, const CallOutcome& outcome);

struct ContractUpdate {
  Json contracts;
  std::vector<std::string> notes;  // what could not be taken over, a line each
};
ContractUpdate Updated(const Json& contracts, const std::vector<Observation>& observations);

}  // namespace tavcc::faults
