// The answer of a gate: may the action go on, and if not, why.
#pragma once

#include <string>
#include <utility>

namespace tavcc {

struct Verdict {
  bool passed = true;
  std::string message;  // for the user; empty when the gate passed
};

inline Verdict Pass() {
  return {};
}
inline Verdict Refuse(std::string message) {
  return {false, std::move(message)};
}

}  // namespace tavcc
