// What a running batch, procedure or dynamic batch has of its own.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "embedded/types/stored_value.h"

namespace tavcc::sql {

class Interpreter;

struct Frame {
  Interpreter* interpreter = nullptr;    // that runs it
  std::vector<StoredValue> variables;    // by the program's numbers; parameters come first
  std::span<const TypedValue> literals;  // of the batch's text, by slot
  int64_t return_value = 0;
  std::optional<int64_t> scope_identity;
};

}  // namespace tavcc::sql
