// A type as it is written.
#pragma once

#include <string>
#include <vector>

namespace tavcc::sql {

// Its name and its bracketed arguments, e.g. {"decimal", {28, 10}}.
struct TypeName {
  std::string name;
  std::vector<int> arguments;  // SqlType::kMax for "max"
};

}  // namespace tavcc::sql
