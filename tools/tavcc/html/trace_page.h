// tavcc explain --trace as a page to look at, or to send to somebody.
#pragma once

#include <string>

#include "tavcc/trace_report.h"

namespace tavcc {

std::string TracePage(const TraceReport& report);

}  // namespace tavcc
