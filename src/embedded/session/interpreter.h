// The interpreter: runs batches, procedures and dynamic batches, instruction by instruction, and
// decides what follows an error.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/plan/batch_cache.h"
#include "embedded/session/program.h"
#include "embedded/session/session_context.h"

namespace tavcc::sql {

// An argument of a procedure call.
struct CallArgument {
  std::string parameter;  // with its "@"; empty when by position
  TypedValue value;
  bool is_default = false;
  bool output = false;
};

// How statements become programs: the interpreter runs them, and knows none of them.
struct Compiler {
  CompileBatch batch;
  std::shared_ptr<Program> (*procedure)(const Procedure& procedure);
};

class Interpreter {
 public:
  // `budget`: see OpenOptions.
  Interpreter(SessionContext& session, const Compiler& compiler, int64_t budget);
  Interpreter(const Interpreter&) = delete;
  Interpreter& operator=(const Interpreter&) = delete;

  // ---- For the client ----
  // Runs a batch to its end. Errors are listed, not thrown.
  void RunBatch(std::string_view text);
  // Calls a procedure; output arguments get their values back.
  void RunProcedure(std::string_view name, std::vector<CallArgument>& arguments);

  // ---- For instructions ----
  void RunBlock(const std::vector<InstructionPtr>& body, Frame& frame, Flow& flow);
  Flow RunOne(Instruction& instruction, Frame& frame);
  // Counts a statement; ends the batch when the budget is used up.
  void CountWork();
  void RunText(std::string_view text);
  // `arguments` as for RunProcedure. Returns the procedure's RETURN value. Errors: 2812 and those
  // of the arguments.
  int64_t Call(const ObjectName& name, std::vector<CallArgument>& arguments);

 private:
  void BeginBatch();
  template <class Body>
  void Run(const Body& body);
  void RunProgram(const std::shared_ptr<Program>& program, Frame& frame);
  template <class Body>
  void RunInScope(const Body& body);
  void PrepareProgram(Program& program, Frame& frame);
  void EndLocalCursors(const Frame& frame);
  void BindArguments(const Procedure& procedure, std::vector<CallArgument>& arguments,
                     Frame& frame);
  void LimitWork();

  SessionContext& session_;
  const Compiler compiler_;
  BatchCache batches_;
  CachedBatch batch_;                      // the client's, while it runs and until the next one
  std::optional<int64_t> scope_identity_;  // of the session's own batches
  const int64_t budget_;
  int64_t spent_ = 0;
};

}  // namespace tavcc::sql
