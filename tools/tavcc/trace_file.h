// A call that the automation server traced, read from its file (host/trace_lines.h has the form).
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "host/host_dictionary.h"
#include "host/statement_log.h"
#include "scenario/json.h"
#include "tavcc/traced_ladder.h"

namespace tavcc {

struct TracedCall {
  // What came back.
  struct End {
    Value arguments;  // the in/out ones, a dictionary by name
    Value result;     // Empty where the call raised an error
    std::optional<AutomationError> error;
    std::optional<AutomationError> failure;  // below the rules, whatever they made of it
    double milliseconds = 0;
  };

  std::string call;  // "Class.Method"
  std::string started;
  Value arguments;                    // a dictionary by name
  std::vector<TracedLadder> ladders;  // the first has no gates: it is what came before them
  std::optional<End> end;             // nothing where the process ended before the call did
  int left_out = 0;                   // lines that were too many for the file
  std::deque<std::string> files;      // of the places of the statements, which refer to them
};

// Errors: CommandError naming the file, and the line where it is no trace.
TracedCall ReadTrace(const std::string& file);

}  // namespace tavcc
