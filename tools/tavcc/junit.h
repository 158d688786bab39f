// The outcome of a run of scenarios as JUnit's XML, which build servers read.
#pragma once

#include <string>
#include <vector>

namespace tavcc {

struct ScenarioOutcome {
  std::string file;
  std::string failure;               // what came out otherwise; empty when nothing did
  std::vector<std::string> skipped;  // what of it was left out, a line each
  double seconds = 0;
};

// One test suite; a test case for each file, of the class that is the file's folder.
std::string JunitXml(const std::vector<ScenarioOutcome>& outcomes);

}  // namespace tavcc
