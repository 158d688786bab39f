#include "embedded/session/engine.h"

#include <utility>

#include "embedded/session/program_builder.h"
#include "embedded/session/session_functions.h"

namespace tavcc::sql {

Engine::Engine(const StoreLocation& location, std::function<DateTime()> clock, int64_t budget)
    : context_(location), interpreter_(context_, Compiler{BuildBatch, BuildProcedure}, budget) {
  context_.store.functions().clock = std::move(clock);
  RegisterSessionFunctions(context_);
}

}  // namespace tavcc::sql
