// tavcc run as a page.
#pragma once

#include <string>
#include <vector>

#include "tavcc/scenario_outcome.h"

namespace tavcc {

// The scenarios in their order, by folder.
std::string RunPage(const std::vector<ScenarioOutcome>& outcomes);

}  // namespace tavcc
