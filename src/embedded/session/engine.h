// The engine of one session: its parts, and the interpreter that runs statements on them.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "embedded/session/interpreter.h"
#include "embedded/session/session_context.h"
#include "foundation/batch_session.h"

namespace tavcc::sql {

class Engine {
 public:
  // The store must have been made ready (see store.h). `budget`: see OpenOptions. Errors: SqlError.
  explicit Engine(const StoreLocation& location, std::function<DateTime()> clock = {},
                  int64_t budget = 0);

  SessionContext& context() { return context_; }
  // Runs a batch to its end. Errors are listed, not thrown.
  void RunBatch(std::string_view text) { interpreter_.RunBatch(text); }
  // The same, and tells the reader all that the batch gives. False when it was interrupted.
  bool RunBatch(std::string_view text, BatchReader& reader);
  // Ends the batch under way, from any thread.
  void Interrupt() { context_.store.Interrupt(); }
  // Calls a procedure; output arguments get their values back.
  void RunProcedure(std::string_view name, std::vector<CallArgument>& arguments) {
    interpreter_.RunProcedure(name, arguments);
  }
  // The first rows that the last batch returned; a closed recordset when it returned none.
  RecordsetPtr TakeResult() { return context_.results.Take(); }
  const std::vector<SqlError>& errors() const { return context_.errors.all(); }
  // Ends the session's transaction, temporary tables and cursors.
  void Clear() { context_.Clear(); }

 private:
  SessionContext context_;
  Interpreter interpreter_;
};

}  // namespace tavcc::sql
