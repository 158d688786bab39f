// What a call that the automation server traced came to, for those who show it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/statement_log.h"
#include "tavcc/command.h"
#include "tavcc/ladder_report.h"
#include "tavcc/trace_file.h"

namespace tavcc {

struct TraceReport {
  // One walk over a list of gates, with what was sent until the next one began.
  struct Walk {
    std::string bill;  // that the gates are about, where the call was given a list of bills
    std::vector<Rung> gates;
    std::vector<LoggedStatement> beside;  // what no gate sent
  };

  TracedCall trace;
  // The arguments that were given, in the order of the method's parameters.
  std::vector<std::pair<std::string, std::string>> arguments;
  Exit verdict = Exit::kFailed;
  std::string message;      // what the call said, or the error that it raised or kept to itself
  std::vector<Walk> walks;  // the first has no gates: it is what came before them
};

// `file` is where the trace was read. Errors: CommandError where there is no such method.
TraceReport ReportOf(TracedCall trace, const std::string& file);

// "Gates of 销售单 XS260305", "Gates".
std::string GatesTitle(const TraceReport::Walk& walk);
// "before the gates", "beside the gates": where the statements of a walk that no gate sent stand.
std::string WhereBeside(const TraceReport& report, const TraceReport::Walk& walk);
// "Statements before the gates", "Statements beside the gates", or "Statements" of a call without
// gates.
std::string StatementsTitle(const TraceReport& report, const TraceReport::Walk& walk);

}  // namespace tavcc
