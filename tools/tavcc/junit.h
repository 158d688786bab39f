// The outcome of a run of scenarios as JUnit's XML, which build servers read.
#pragma once

#include <string>
#include <vector>

#include "tavcc/scenario_outcome.h"

namespace tavcc {

// One test suite; a test case for each file, of the class that is the file's folder.
std::string JunitXml(const std::vector<ScenarioOutcome>& outcomes);

}  // namespace tavcc
