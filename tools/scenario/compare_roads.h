// The same scenario on two roads, step by step: what one answers, the other should.
//
// Nothing that the scenario expects counts here. Sources of errors are not compared: each database
// has its own name. Sweeps are left to the runner.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "scenario/road.h"

namespace tavcc {

struct RoadDifference {
  int step = 0;  // 0 is the start state
  std::string text;  // "rows: …", "result: …", "error: …", "statement 2: …": the first, the second
};

// Steps that need the clock are left out where one of the roads does not fix it; `skipped`, where
// given, gets a line for what is left out. The comparison ends at the first road's or the second's
// obstacle.
std::vector<RoadDifference> CompareRoads(const Scenario& scenario, Roads& first, Roads& second,
                                         std::vector<std::string>* skipped = nullptr);

// A difference that a server is known for: a line "FILE | STEP | TEXT | REASON", where the
// scenario's path ends with FILE, the difference's text contains TEXT, and "*" is any.
struct KnownDifference {
  int line = 0;
  std::string file;
  std::string step;
  std::string text;
  std::string reason;
  bool met = false;
};

// Reads the lines; empty ones and those that begin with "#" are for the reader. Errors:
// ScenarioError naming `file` and the line that has another form or no reason.
std::vector<KnownDifference> ParseKnownDifferences(const std::string& file, std::string_view text);

// The differences that are not known, as a person reads them; empty when there is none. Marks those
// of `known` that were met.
std::string DescribeDifferences(const Scenario& scenario,
                                const std::vector<RoadDifference>& differences,
                                std::vector<KnownDifference>& known);

}  // namespace tavcc
