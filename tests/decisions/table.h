// A decision table as a person draws it: lines of words, the first of them the head; "#" begins a
// comment.
#pragma once

#include <string>
#include <vector>

namespace tavcc::testing {

struct DecisionTable {
  std::vector<std::string> head;
  std::vector<std::vector<std::string>> rows;  // each as long as the head
};

// Reads tests/decisions/NAME.txt. Errors: std::runtime_error for a file that is missing or holds a
// row of another length.
DecisionTable ReadDecisionTable(const std::string& name);

}  // namespace tavcc::testing
