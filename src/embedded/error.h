// An error of the dialect as the server words it: what every stage of the embedded database throws.
#pragma once

#include <string>

namespace tavcc::sql {

// Thrown by value.
struct SqlError {
  int number = 0;
  int severity = 0;
  int state = 1;
  int line = 0;  // of the batch, from 1
  std::string message;
};

}  // namespace tavcc::sql
