// The same scenario on two backends, step by step: what one answers, the other should.
//
// Nothing that the scenario expects counts here. Sources of errors are not compared: each database
// has its own name. Sweeps are compared as the steps are, with each of their statements failing.
#pragma once

#include <string>
#include <vector>

#include "scenario/backend.h"
#include "scenario/runner.h"

namespace tavcc {

struct BackendDifference {
  int step = 0;  // 0 is the start state
  // "rows: …", "columns: …", "result: …", "error: …", "statement 2: …": the first, the second; with
  // "statement 3 failing, " before it where a sweep made that statement fail.
  std::string text;
};

// Steps that need the clock are left out where one of the backends does not fix it; `skipped`,
// where given, is told of what is left out. The comparison ends where one of the sessions cannot go
// on.
std::vector<BackendDifference> CompareBackends(const Scenario& scenario, Backend& first,
                                               Backend& second, Skipped* skipped = nullptr);

}  // namespace tavcc
