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

bool Engine::RunBatch(std::string_view text, BatchReader& reader) {
  struct Reporting {
    Reporting(SessionContext& session, BatchReader& to) : context(session) {
      context.ReportTo(&to);
    }
    Reporting(const Reporting&) = delete;
    Reporting& operator=(const Reporting&) = delete;
    ~Reporting() { context.ReportTo(nullptr); }
    SessionContext& context;
  };
  const Reporting reporting(context_, reader);
  interpreter_.RunBatch(text);
  return !context_.store.IsInterrupted();
}

}  // namespace tavcc::sql
