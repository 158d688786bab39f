// tavcc explain as a page to look at, or to send to somebody.
#pragma once

#include <string>
#include <vector>

#include "tavcc/explain.h"

namespace tavcc {

// One page for all of them, of which there is at least one.
std::string ExplanationPage(const std::vector<Explanation>& explanations);

}  // namespace tavcc
