#include "embedded/session/interpreter.h"

#include <sqlite3.h>

#include <algorithm>

#include "embedded/catalog/names.h"
#include "embedded/session/constant_value.h"
#include "embedded/types/stored_conversions.h"

namespace tavcc::sql {
namespace {

// Procedures and dynamic batches inside one another, as on the server.
constexpr int kMostNested = 32;

// Of a session with a budget: the longest text, and the steps of SQLite that count as one.
constexpr int kLongestBudgeted = 1 << 20;
constexpr int kStepsOfOne = 1000;

// An error has ended the batch, dynamic batch or procedure at hand; it is reported already.
struct ScopeEnded {};
// An error has ended everything up to the client's batch.
struct BatchEnded {};

}  // namespace

Interpreter::Interpreter(SessionContext& session, const Compiler& compiler, int64_t budget)
    : session_(session), compiler_(compiler), batches_(compiler.batch), budget_(budget) {
  if (budget_ > 0) LimitWork();
}

void Interpreter::LimitWork() {
  sqlite3* const store = session_.store.handle();
  sqlite3_limit(store, SQLITE_LIMIT_LENGTH, kLongestBudgeted);
  sqlite3_progress_handler(
      store, kStepsOfOne,
      [](void* interpreter) {
        auto& self = *static_cast<Interpreter*>(interpreter);
        return ++self.spent_ > self.budget_ ? 1 : 0;
      },
      this);
}

// ---- Entry points ----

void Interpreter::BeginBatch() {
  session_.errors.Clear();
  session_.results.Clear();
  session_.store.ForgetInterrupt();
  spent_ = 0;
  if (session_.transaction.IsOpen()) return;
  session_.catalog.Forget();
  session_.catalog.Refresh();
  session_.catalog.temporaries().TrimPool();
}

template <class Body>
void Interpreter::Run(const Body& body) {
  try {
    BeginBatch();
    body();
  } catch (const ScopeEnded&) {
  } catch (const BatchEnded&) {
  } catch (SqlError& error) {
    // Nothing of the batch has run.
    session_.errors.Add(std::move(error));
  }
  session_.results.Capture(nullptr);
}

void Interpreter::RunBatch(std::string_view text) {
  Run([&] {
    batches_.Find(text, batch_);
    Frame frame;
    frame.interpreter = this;
    frame.literals = batch_.literals;
    frame.scope_identity = scope_identity_;
    RunProgram(batch_.program, frame);
    scope_identity_ = frame.scope_identity;
  });
}

void Interpreter::RunProcedure(std::string_view name, std::vector<CallArgument>& arguments) {
  Run([&] {
    try {
      Call(ObjectName{SplitName(name)}, arguments);
    } catch (SqlError& error) {
      session_.errors.Add(std::move(error));
    }
  });
}

// ---- Programs ----

void Interpreter::RunProgram(const std::shared_ptr<Program>& program, Frame& frame) {
  frame.variables.resize(program->variables().size());
  const bool has_tables = !program->table_variables().empty();
  try {
    for (const TablePtr& table : program->table_variables())
      session_.catalog.temporaries().CreateVariable(table);
    if (!program->prepared) PrepareProgram(*program, frame);
    Flow flow = Flow::kNext;
    RunBlock(program->body(), frame, flow);
  } catch (...) {
    if (has_tables) session_.catalog.temporaries().ReleaseVariables();
    EndLocalCursors(frame);
    throw;
  }
  if (has_tables) session_.catalog.temporaries().ReleaseVariables();
  EndLocalCursors(frame);
}

void Interpreter::EndLocalCursors(const Frame& frame) {
  if (session_.cursors.empty()) return;
  std::erase_if(session_.cursors, [&](const auto& entry) { return entry.second.owner == &frame; });
}

void Interpreter::PrepareProgram(Program& program, Frame& frame) {
  for (const auto& instruction : program.body()) instruction->Prepare(session_, frame);
  program.prepared = true;
}

void Interpreter::RunBlock(const std::vector<InstructionPtr>& body, Frame& frame, Flow& flow) {
  for (const auto& instruction : body) {
    flow = RunOne(*instruction, frame);
    if (flow != Flow::kNext) return;
  }
}

void Interpreter::CountWork() {
  if (session_.store.IsInterrupted()) throw BatchEnded{};
  if (budget_ == 0 || ++spent_ <= budget_) return;
  session_.errors.Add(StoreFailure("the batch did more than it may"));
  throw BatchEnded{};
}

Flow Interpreter::RunOne(Instruction& instruction, Frame& frame) {
  CountWork();
  session_.store.functions().now.reset();
  try {
    const Flow flow = instruction.Execute(session_, frame);
    if (!instruction.IsControl()) session_.errors.ForgetLast();
    BatchReader* const reader = session_.results.reader();
    if (reader != nullptr && instruction.CountsRows() && !session_.state.no_count) {
      reader->RowCount(session_.state.row_count);
    }
    return flow;
  } catch (SqlError& error) {
    if (error.line == 0) error.line = instruction.line();
    AfterError after =
        error.number == kInterrupted ? AfterError::kEndBatch : WhatFollows(error.number);
    if (session_.state.abort_transaction_on_error && error.severity > 10 &&
        after != AfterError::kEndScope) {
      after = AfterError::kEndTransaction;
    }
    // SQLite gives up the whole transaction when it runs out of memory or space.
    if (session_.transaction.IsOpen() && !session_.store.InTransaction())
      after = AfterError::kEndTransaction;
    session_.errors.Add(std::move(error));
    session_.state.live_frame = nullptr;
    switch (after) {
      case AfterError::kNextStatement:
        return Flow::kNext;
      case AfterError::kEndScope:
        throw ScopeEnded{};
      case AfterError::kEndTransaction:
        if (session_.transaction.IsOpen()) session_.transaction.RollbackAll();
        throw BatchEnded{};
      case AfterError::kEndBatch:
        break;
    }
    throw BatchEnded{};
  }
}

// Runs what has a scope of its own. An error that it does not outlive ends it and is reported.
template <class Body>
void Interpreter::RunInScope(const Body& body) {
  ++session_.state.nesting;
  session_.catalog.temporaries().PushScope();
  try {
    body();
  } catch (const ScopeEnded&) {
  } catch (SqlError& error) {
    session_.errors.Add(std::move(error));
  } catch (...) {
    session_.catalog.temporaries().PopScope();
    --session_.state.nesting;
    throw;
  }
  session_.catalog.temporaries().PopScope();
  --session_.state.nesting;
}

void Interpreter::RunText(std::string_view text) {
  if (session_.state.nesting >= kMostNested) Raise(errors::kCallsNestedTooDeep, kMostNested);
  const ErrorList::Scope scope(session_.errors, {.executed = text});
  RunInScope([&] {
    CachedBatch batch;
    batches_.Find(text, batch);
    Frame frame;
    frame.interpreter = this;
    frame.literals = batch.literals;
    RunProgram(batch.program, frame);
  });
}

int64_t Interpreter::Call(const ObjectName& name, std::vector<CallArgument>& arguments) {
  const CatalogObjectPtr object = session_.catalog.Find(name);
  if (!object || !object->procedure) Raise(errors::kUnknownProcedure, WrittenName(name));
  if (session_.state.nesting >= kMostNested) Raise(errors::kCallsNestedTooDeep, kMostNested);
  const Procedure& procedure = *object->procedure;
  if (!procedure.program) procedure.program = compiler_.procedure(procedure);
  const auto program = procedure.program;
  Frame frame;
  frame.interpreter = this;
  frame.variables.resize(program->variables().size());
  BindArguments(procedure, arguments, frame);
  const int transactions = session_.transaction.count();
  {
    const ErrorList::Scope scope(session_.errors, {.procedure = procedure.name});
    RunInScope([&] { RunProgram(program, frame); });
  }
  if (session_.transaction.count() != transactions) {
    session_.errors.Add(
        MakeError(errors::kTransactionCountMismatch, {transactions, session_.transaction.count()}));
  }
  for (CallArgument& argument : arguments) {
    if (!argument.output) continue;
    for (size_t i = 0; i < procedure.statement->parameters.size(); ++i) {
      if (!EqualsIgnoringCase(procedure.statement->parameters[i].name, argument.parameter))
        continue;
      argument.value = TypedValue{program->variables()[i].type, frame.variables[i]};
    }
  }
  return frame.return_value;
}

void Interpreter::BindArguments(const Procedure& procedure, std::vector<CallArgument>& arguments,
                                Frame& frame) {
  const auto& parameters = procedure.statement->parameters;
  const auto& variables = procedure.program->variables();
  if (parameters.empty() && !arguments.empty()) Raise(errors::kNoParameters, procedure.name);
  if (arguments.size() > parameters.size()) Raise(errors::kTooManyArguments, procedure.name);
  std::vector<bool> given(parameters.size(), false);
  for (size_t i = 0; i < arguments.size(); ++i) {
    CallArgument& argument = arguments[i];
    size_t at = i;
    if (!argument.parameter.empty()) {
      const int index = IndexByName(parameters, argument.parameter);
      if (index < 0) Raise(errors::kUnknownParameter, argument.parameter, procedure.name);
      at = static_cast<size_t>(index);
    }
    argument.parameter = parameters[at].name;
    if (given[at]) Raise(errors::kParameterTwice, argument.parameter);
    if (argument.is_default) continue;
    given[at] = true;
    if (argument.output && !parameters[at].output)
      Raise(errors::kParameterNotOutput, argument.parameter);
    CheckImplicit(argument.value.type, variables[at].type);
    frame.variables[at] =
        ConvertStored(argument.value.value, argument.value.type, variables[at].type);
  }
  for (size_t i = 0; i < parameters.size(); ++i) {
    if (given[i]) continue;
    if (!parameters[i].default_value)
      Raise(errors::kParameterNotSupplied, procedure.name, parameters[i].name);
    const auto& literal = *parameters[i].default_value;
    const TypedValue value = ConstantValue(literal);
    frame.variables[i] = ConvertStored(value.value, value.type, variables[i].type);
  }
}

}  // namespace tavcc::sql
