#include "embedded/session/open_engine.h"

#include <utility>

#include "embedded/session/program_builder.h"
#include "embedded/session/session_functions.h"

namespace tavcc::sql {

std::unique_ptr<Engine> OpenEngine(const StoreLocation& location, std::function<DateTime()> clock,
                                   int64_t budget) {
  auto engine = std::make_unique<Engine>(location, std::move(clock), budget,
                                         Compiler{BuildBatch, BuildProcedure});
  RegisterSessionFunctions(*engine);
  return engine;
}

}  // namespace tavcc::sql
