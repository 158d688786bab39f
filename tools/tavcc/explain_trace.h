// A call that the automation server traced: what was asked, the ladder that it climbed, what came
// back.
#pragma once

#include "tavcc/command.h"

namespace tavcc {

// Prints the trace that the options name. The answer is the call's own verdict. Errors:
// CommandError naming the file, and the line where it is no trace.
Exit ExplainTrace(const CommonOptions& common, const ExplainOptions& options);

}  // namespace tavcc
