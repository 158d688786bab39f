// The differences that a server is known for: a file for each server, a line for each, with its
// reason.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "scenario/compare_backends.h"

namespace tavcc {

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
                                const std::vector<BackendDifference>& differences,
                                std::vector<KnownDifference>& known);

}  // namespace tavcc
