// The file of a store: finding out whether it is one, and making it one.
#pragma once

#include "embedded/embedded.h"
#include "embedded/run/engine.h"

namespace tavcc::sql {

// Makes sure that the file is a store of this kind, making it where that is asked for. A file that
// is none is not written to. Errors: AutomationError as Database::Open states them.
void RequireStore(const OpenOptions& options);

inline constexpr std::string_view kInMemory = ":memory:";

}  // namespace tavcc::sql
