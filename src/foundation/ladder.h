// A ladder: the gates of a rule, in the order in which they are asked. The rule stops at the first
// refusal; whoever explains a refusal asks each gate on its own, and walks the same list.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/rule_watch.h"
#include "foundation/verdict.h"

namespace tavcc {

// A gate as it is asked on its own.
struct LoneGate {
  std::string_view name;
  std::string_view method;  // the published method whose gate it is: "Class.Method"
  // What the run of a rule does before its gates; the result asks the gate. Errors of both: those
  // of the ports.
  std::function<std::function<Verdict()>()> prepare;
};
using Ladder = std::vector<LoneGate>;

// One rung. `Run` is what the gates of one run of the rule share; a gate reads what it needs
// through it, so that the run reads it once, and the gate by itself reads it too.
template <class Run>
struct Gate {
  std::string_view name;
  Verdict (Run::*ask)();
  // The gates that this one stands for, where it is the ladder of another rule.
  Ladder (Run::*inner)() const = nullptr;
};

template <class Run, size_t N>
Verdict FirstRefusal(Run& run, const Gate<Run> (&gates)[N]) {
  const WatchedLadder ladder;
  for (const Gate<Run>& gate : gates) {
    Verdict verdict =
        ladder.Ask(gate.name, gate.inner != nullptr, [&] { return (run.*gate.ask)(); });
    if (!verdict.passed) return verdict;
  }
  return Pass();
}

// The gates of `method`, each with a run of its own: `make_run()` makes one, `start(run)` does what
// a run does before its gates.
template <class Run, size_t N, class MakeRun, class Start>
Ladder LoneGates(const Gate<Run> (&gates)[N], std::string_view method, const MakeRun& make_run,
                 const Start& start) {
  Ladder ladder;
  for (const Gate<Run>& gate : gates) {
    if (gate.inner != nullptr) {
      for (LoneGate& inner : (make_run().*gate.inner)()) ladder.push_back(std::move(inner));
      continue;
    }
    ladder.push_back({gate.name, method, [=, ask = gate.ask]() -> std::function<Verdict()> {
                        const auto run = std::make_shared<Run>(make_run());
                        start(*run);
                        return [=] { return (*run.*ask)(); };
                      }});
  }
  return ladder;
}

}  // namespace tavcc
