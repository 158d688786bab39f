// The answer of a gate: may the action go on, and if not, why.
#pragma once

#include <string>
#include <utility>

#include "foundation/call_site.h"

namespace tavcc {

struct Verdict {
  bool passed = true;
  std::string message = {};  // for the user; empty when the gate passed
  bool asked = true;         // false: the gate has no say over this bill, and passes it
  CallSite where = {};       // of the refusal
};

inline Verdict Pass() {
  return {};
}
inline Verdict NotAsked() {
  return {.asked = false};
}
inline Verdict Refuse(std::string message, CallSite where = CallSite::Current()) {
  return {.passed = false, .message = std::move(message), .where = where};
}

}  // namespace tavcc
