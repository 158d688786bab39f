// The gates of a rule as they were asked while a call ran: by the automation server, whose trace
// tells of them, or by a command that watches its own call.
#pragma once

#include <string>
#include <vector>

#include "host/statement_log.h"
#include "tavcc/ladder_report.h"

namespace tavcc {

// One walk over a list of gates, with what was sent and asked until the next one began.
struct TracedLadder {
  struct Gate {
    std::string name;
    std::string answer;  // "passed", "refused", "not asked", "failed"
    std::string message;
    std::string place;  // of the refusal
  };
  std::vector<Gate> gates;
  std::vector<LoggedStatement> statements;
  std::vector<HostAnswer> host_answers;
};

// As a report tells of them; `method` is the one whose gates they are. The rows are those that the
// rule saw.
std::vector<Rung> RungsOf(const TracedLadder& ladder, const std::string& method);

}  // namespace tavcc
