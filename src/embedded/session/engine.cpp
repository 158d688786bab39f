// Running batches, procedures and dynamic batches, and what follows an error.
#include "embedded/session/engine.h"

#include <sqlite3.h>

#include <algorithm>

#include "embedded/catalog/names.h"
#include "embedded/session/connection_settings.h"
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

SqliteConnection& ReadyStore(SqliteConnection& store, bool shared) {
  PrepareConnection(store, shared);
  if (!shared) store.Run(Catalog::NewStoreText());
  return store;
}

}  // namespace

Engine::Engine(const StoreLocation& location, std::function<DateTime()> clock, int64_t budget,
               const Compiler& compiler)
    : store_(location),
      shared_(location.shared),
      catalog_(ReadyStore(store_, location.shared), location.shared),
      compiler_(compiler),
      batches_(compiler.batch),
      budget_(budget) {
  store_.functions().clock = std::move(clock);
  if (budget_ == 0) return;
  sqlite3_limit(store_.handle(), SQLITE_LIMIT_LENGTH, kLongestBudgeted);
  sqlite3_progress_handler(
      store_.handle(), kStepsOfOne,
      [](void* engine) {
        auto& self = *static_cast<Engine*>(engine);
        return ++self.spent_ > self.budget_ ? 1 : 0;
      },
      this);
}

Engine::~Engine() = default;

void Engine::Clear() {
  cursors_.clear();
  if (transaction_count_ > 0) RollbackAll();
  catalog_.Clear();
  catalog_.Forget();
  identity.reset();
  identity_insert.clear();
  no_count = abort_transaction_on_error = snapshot_isolation = false;
  row_count = fetch_status = last_error_ = 0;
  has_result_ = false;
  result_ = Rows{};
  recordsets_.Forget();
}

// ---- Entry points ----

void Engine::Start() {
  errors_.clear();
  if (has_result_) result_ = Rows{};
  has_result_ = false;
  spent_ = 0;
  if (transaction_count_ > 0) return;
  catalog_.Forget();
  catalog_.Refresh();
  catalog_.TrimPool();
}

template <class Body>
void Engine::Run(const Body& body) {
  try {
    Start();
    body();
  } catch (const ScopeEnded&) {
  } catch (const BatchEnded&) {
  } catch (SqlError& error) {
    // Nothing of the batch has run.
    Report(std::move(error));
  }
  capture_ = nullptr;
}

void Engine::RunBatch(std::string_view text) {
  Run([&] {
    batches_.Find(text, batch_);
    Frame frame;
    frame.literals = batch_.literals;
    frame.scope_identity = scope_identity_;
    RunProgram(batch_.program, frame);
    scope_identity_ = frame.scope_identity;
  });
}

void Engine::RunProcedure(std::string_view name, std::vector<CallArgument>& arguments) {
  Run([&] {
    try {
      Call(ObjectName{SplitName(name)}, arguments);
    } catch (SqlError& error) {
      Report(std::move(error));
    }
  });
}

RecordsetPtr Engine::TakeResult() {
  if (!has_result_) return closed_;
  has_result_ = false;
  return recordsets_.Make(std::move(result_));
}

void Engine::Return(Rows&& rows) {
  if (capture_ != nullptr) {
    capture_->push_back(std::move(rows));
  } else if (!has_result_) {
    has_result_ = true;
    result_ = std::move(rows);
  }
}

void Engine::Report(SqlError error) {
  last_error_ = error.number;
  if (error.line == 0) error.line = 1;
  errors_.push_back(std::move(error));
}

void Engine::Message(int number, int severity, int state, std::string text) {
  errors_.push_back(SqlError{number, severity, state, 1, std::move(text)});
}

// ---- Programs ----

void Engine::RunProgram(const std::shared_ptr<Program>& program, Frame& frame) {
  frame.variables.resize(program->variables().size());
  const bool has_tables = !program->table_variables().empty();
  try {
    for (const TablePtr& table : program->table_variables()) catalog_.TakeVariable(table);
    if (!program->prepared) PrepareProgram(*program, frame);
    Flow flow = Flow::kNext;
    RunBlock(program->body(), frame, flow);
  } catch (...) {
    if (has_tables) catalog_.ReleaseVariables();
    EndLocalCursors(frame);
    throw;
  }
  if (has_tables) catalog_.ReleaseVariables();
  EndLocalCursors(frame);
}

void Engine::EndLocalCursors(const Frame& frame) {
  if (cursors_.empty()) return;
  std::erase_if(cursors_, [&](const auto& entry) { return entry.second.owner == &frame; });
}

void Engine::PrepareProgram(Program& program, Frame& frame) {
  for (const auto& instruction : program.body()) instruction->Prepare(*this, frame);
  program.prepared = true;
}

void Engine::RunBlock(const std::vector<InstructionPtr>& body, Frame& frame, Flow& flow) {
  for (const auto& instruction : body) {
    flow = RunOne(*instruction, frame);
    if (flow != Flow::kNext) return;
  }
}

void Engine::Spend() {
  if (budget_ == 0 || ++spent_ <= budget_) return;
  Report(StoreFailure("the batch did more than it may"));
  throw BatchEnded{};
}

Flow Engine::RunOne(Instruction& instruction, Frame& frame) {
  Spend();
  store_.functions().now.reset();
  try {
    const Flow flow = instruction.Execute(*this, frame);
    if (!instruction.IsControl()) last_error_ = 0;
    return flow;
  } catch (SqlError& error) {
    if (error.line == 0) error.line = instruction.line();
    AfterError after = WhatFollows(error.number);
    if (abort_transaction_on_error && error.severity > 10 && after != AfterError::kEndScope) {
      after = AfterError::kEndTransaction;
    }
    // SQLite gives up the whole transaction when it runs out of memory or space.
    if (transaction_count_ > 0 && !store_.InTransaction()) after = AfterError::kEndTransaction;
    Report(std::move(error));
    live_frame = nullptr;
    switch (after) {
      case AfterError::kNextStatement:
        return Flow::kNext;
      case AfterError::kEndScope:
        throw ScopeEnded{};
      case AfterError::kEndTransaction:
        if (transaction_count_ > 0) RollbackAll();
        throw BatchEnded{};
      case AfterError::kEndBatch:
        break;
    }
    throw BatchEnded{};
  }
}

// Runs what has a scope of its own. An error that it does not outlive ends it and is reported.
template <class Body>
void Engine::RunInScope(const Body& body) {
  ++nesting_;
  catalog_.PushScope();
  try {
    body();
  } catch (const ScopeEnded&) {
  } catch (SqlError& error) {
    Report(std::move(error));
  } catch (...) {
    catalog_.PopScope();
    --nesting_;
    throw;
  }
  catalog_.PopScope();
  --nesting_;
}

void Engine::RunText(std::string_view text) {
  if (nesting_ >= kMostNested) Raise(217, kMostNested);
  RunInScope([&] {
    CachedBatch batch;
    batches_.Find(text, batch);
    Frame frame;
    frame.literals = batch.literals;
    RunProgram(batch.program, frame);
  });
}

int64_t Engine::Call(const ObjectName& name, std::vector<CallArgument>& arguments) {
  const CatalogObjectPtr object = catalog_.Find(name);
  if (!object || !object->procedure) Raise(2812, WrittenName(name));
  if (nesting_ >= kMostNested) Raise(217, kMostNested);
  const Procedure& procedure = *object->procedure;
  if (!procedure.program) procedure.program = compiler_.procedure(procedure);
  const auto program = procedure.program;
  Frame frame;
  frame.variables.resize(program->variables().size());
  BindArguments(procedure, arguments, frame);
  const int transactions = transaction_count_;
  RunInScope([&] { RunProgram(program, frame); });
  if (transaction_count_ != transactions) {
    Report(MakeError(266, {transactions, transaction_count_}));
  }
  for (CallArgument& argument : arguments) {
    if (!argument.output) continue;
    for (size_t i = 0; i < procedure.statement->parameters.size(); ++i) {
      if (!SameName(procedure.statement->parameters[i].name, argument.parameter)) continue;
      argument.value = TypedValue{program->variables()[i].type, frame.variables[i]};
    }
  }
  return frame.return_value;
}

void Engine::BindArguments(const Procedure& procedure, std::vector<CallArgument>& arguments,
                           Frame& frame) {
  const auto& parameters = procedure.statement->parameters;
  const auto& variables = procedure.program->variables();
  if (parameters.empty() && !arguments.empty()) Raise(8146, procedure.name);
  if (arguments.size() > parameters.size()) Raise(8144, procedure.name);
  std::vector<bool> given(parameters.size(), false);
  for (size_t i = 0; i < arguments.size(); ++i) {
    CallArgument& argument = arguments[i];
    size_t at = i;
    if (!argument.parameter.empty()) {
      at = 0;
      while (at < parameters.size() && !SameName(parameters[at].name, argument.parameter)) ++at;
      if (at == parameters.size()) Raise(8145, argument.parameter, procedure.name);
    }
    argument.parameter = parameters[at].name;
    if (given[at]) Raise(8143, argument.parameter);
    if (argument.is_default) continue;
    given[at] = true;
    if (argument.output && !parameters[at].output) Raise(8162, argument.parameter);
    CheckImplicit(argument.value.type, variables[at].type);
    frame.variables[at] =
        ConvertStored(argument.value.value, argument.value.type, variables[at].type);
  }
  for (size_t i = 0; i < parameters.size(); ++i) {
    if (given[i]) continue;
    if (!parameters[i].default_value) Raise(201, procedure.name, parameters[i].name);
    const auto& literal = *parameters[i].default_value;
    const TypedValue value = ConstantValue(literal);
    frame.variables[i] = ConvertStored(value.value, value.type, variables[i].type);
  }
}

// ---- Session values ----

StoredValue Engine::SessionValueOf(SessionValue value, const Frame& frame) const {
  switch (value) {
    case SessionValue::kRowCount:
      return row_count;
    case SessionValue::kError:
      return int64_t{last_error_};
    case SessionValue::kIdentity:
      return identity ? StoredValue(*identity) : StoredValue();
    case SessionValue::kScopeIdentity:
      return frame.scope_identity ? StoredValue(*frame.scope_identity) : StoredValue();
    case SessionValue::kFetchStatus:
      return int64_t{fetch_status};
    case SessionValue::kTransactionCount:
      return int64_t{transaction_count_};
    case SessionValue::kVersion:
      return std::string("Embedded database");
    case SessionValue::kDatabaseName:
      return std::string("main");
    case SessionValue::kServerName:
      return std::string("embedded");
    case SessionValue::kUserName:
      return std::string("dbo");
    case SessionValue::kProcessId:
      return int64_t{1};
    case SessionValue::kProcedureId:
      return int64_t{0};
    case SessionValue::kNestLevel:
      return int64_t{nesting_};
  }
  return {};
}

}  // namespace tavcc::sql
