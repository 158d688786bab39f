// An engine with all that statements need of it.
#pragma once

#include <functional>
#include <memory>

#include "embedded/session/engine.h"

namespace tavcc::sql {

// The store must have been made ready (see store.h). `budget`: see OpenOptions. Errors: SqlError.
std::unique_ptr<Engine> OpenEngine(const StoreLocation& location,
                                   std::function<DateTime()> clock = {}, int64_t budget = 0);

}  // namespace tavcc::sql
