// INSERT, UPDATE, DELETE.
#include <sqlite3.h>

#include <functional>

#include "embedded/run/duplicate_key.h"
#include "embedded/run/engine.h"
#include "embedded/run/instructions.h"

namespace tavcc::sql {
namespace {

// The key of `table` that SQLite's message names, by its columns ("UNIQUE constraint failed: t.a,
// t.b") or, where it is the key of the NULLs, by its index ("… failed: index 't.name.null'").
const Key* KeyOf(const Table& table, std::string_view message) {
  const std::string physical = table.physical.substr(6, table.physical.size() - 7);
  for (size_t i = 0; i < table.keys.size(); ++i) {
    const Key& key = table.keys[i];
    if (key.kind == Key::Kind::kIndex) continue;
    if (message.ends_with("index '" + PhysicalIndexName(table, i, physical) + ".null'"))
      return &key;
    std::string listed;
    for (const int column : key.columns) {
      if (!listed.empty()) listed += ", ";
      listed += physical + '.' + table.columns[static_cast<size_t>(column)].name;
    }
    if (message.ends_with(": " + listed)) return &key;
  }
  return nullptr;
}

// The server's error for a row that SQLite refused.
SqlError RefusedRow(const SqlError& error, const Table& table, std::string_view verb,
                    const std::function<std::string(const Key&)>& value) {
  if (error.number == kNullRefused) {
    for (const Column& column : table.columns) {
      if (error.message.ends_with('.' + column.name)) {
        return MakeError(515, {column.name, table.MessageName(), verb});
      }
    }
    return error;
  }
  const Key* key = KeyOf(table, error.message);
  const std::string duplicate = key ? value(*key) : std::string("(…)");
  const std::string name = key && !key->name.empty() ? key->name : "PK_" + table.name;
  if (key && key->kind == Key::Kind::kUniqueIndex) {
    return MakeError(2601, {table.MessageName(), key->name, duplicate});
  }
  const bool unique = key && key->kind == Key::Kind::kUnique;
  return MakeError(2627,
                   {unique ? "UNIQUE KEY" : "PRIMARY KEY", name, table.MessageName(), duplicate});
}

class WriteInstruction : public Instruction {
 public:
  WriteInstruction(int line, Visible visible) : Instruction(line), visible_(visible) {}

  void Prepare(Engine& engine, Frame& frame) override {
    PrepareDeferred(line(), [&] { Find(engine, frame); });
  }
  Flow Execute(Engine& engine, Frame& frame) override {
    RunWrite(engine, Find(engine, frame), frame);
    return Flow::kNext;
  }

 protected:
  virtual void Compile(Binder& binder, Engine& engine, Plan& plan) = 0;

  std::span<const VariableInfo> visible() const { return visible_.span(); }

  Plan& Find(Engine& engine, const Frame& frame) {
    return plans_.Find(engine, frame, [&](Plan& plan) {
      Binder binder(engine.catalog(), visible_.span(), frame.literals, plan.binding);
      Compile(binder, engine, plan);
    });
  }

 private:
  const Visible visible_;
  PlanCache plans_;
};

bool MayInsertIdentity(const Engine& engine, const InsertStatement& insert) {
  if (engine.identity_insert.empty()) return false;
  const TablePtr table = const_cast<Engine&>(engine).catalog().FindTable(insert.table);
  return table && table->physical == engine.identity_insert;
}

class InsertInstruction final : public WriteInstruction {
 public:
  InsertInstruction(const InsertStatement& statement, Visible visible)
      : WriteInstruction(statement.line, visible), statement_(statement) {}

  Flow Execute(Engine& engine, Frame& frame) override {
    if (with_identity_ != MayInsertIdentity(engine, statement_)) {
      with_identity_ = !with_identity_;
      identity_plans_ = PlanCache();
    }
    if (!with_identity_) return WriteInstruction::Execute(engine, frame);
    Plan& plan = identity_plans_.Find(engine, frame, [&](Plan& made) {
      Binder binder(engine.catalog(), visible(), frame.literals, made.binding);
      Compile(binder, engine, made);
    });
    RunWrite(engine, plan, frame);
    return Flow::kNext;
  }

 protected:
  void Compile(Binder& binder, Engine&, Plan& plan) override {
    const BoundInsert bound = binder.BindInsert(statement_, with_identity_);
    plan.table = bound.table;
    plan.columns = bound.columns;
    plan.emitted = EmitInsert(bound);
  }

 private:
  const InsertStatement& statement_;
  bool with_identity_ = false;
  PlanCache identity_plans_;
};

// INSERT … EXEC: the rows of the first result that the call returns, and of those after it.
class InsertExecuteInstruction final : public Instruction {
 public:
  InsertExecuteInstruction(const InsertStatement& statement, InstructionPtr execute)
      : Instruction(statement.line), statement_(statement), execute_(std::move(execute)) {}

  Flow Execute(Engine& engine, Frame& frame) override {
    if (engine.capturing()) Raise(8164);
    std::vector<Rows> results;
    engine.Capture(&results);
    try {
      execute_->Execute(engine, frame);
    } catch (...) {
      engine.Capture(nullptr);
      throw;
    }
    engine.Capture(nullptr);
    StatementGuard guard(engine, true);
    int64_t count = 0;
    for (const Rows& rows : results) count += InsertRows(engine, frame, rows);
    guard.Keep();
    engine.row_count = count;
    return Flow::kNext;
  }

 private:
  int64_t InsertRows(Engine& engine, Frame& frame, const Rows& rows) {
    Plan plan;
    std::vector<SourceColumn> columns;
    for (const SqlType& type : rows.shape->types) columns.push_back({"", type, true, false});
    Binder binder(engine.catalog(), {}, {}, plan.binding);
    const BoundInsert bound = binder.BindInsertRows(statement_, columns, false);
    plan.table = bound.table;
    plan.columns = bound.columns;
    plan.emitted = EmitInsert(bound);
    for (size_t row = 0; row < rows.count; ++row) {
      RunWrite(engine, plan, frame,
               std::span(rows.cells).subspan(row * columns.size(), columns.size()));
    }
    return static_cast<int64_t>(rows.count);
  }

  const InsertStatement& statement_;
  InstructionPtr execute_;
};

class UpdateInstruction final : public WriteInstruction {
 public:
  UpdateInstruction(const UpdateStatement& statement, Visible visible)
      : WriteInstruction(statement.line, visible), statement_(statement) {}

 protected:
  void Compile(Binder& binder, Engine&, Plan& plan) override {
    const BoundUpdate bound = binder.BindUpdate(statement_);
    plan.table = bound.table;
    plan.updates = true;
    plan.emitted = EmitUpdate(bound);
  }

 private:
  const UpdateStatement& statement_;
};

class DeleteInstruction final : public WriteInstruction {
 public:
  DeleteInstruction(const DeleteStatement& statement, Visible visible)
      : WriteInstruction(statement.line, visible), statement_(statement) {}

 protected:
  void Compile(Binder& binder, Engine&, Plan& plan) override {
    const BoundDelete bound = binder.BindDelete(statement_);
    plan.updates = true;
    plan.emitted = EmitDelete(bound);
  }

 private:
  const DeleteStatement& statement_;
};

}  // namespace

void RunWrite(Engine& engine, Plan& plan, Frame& frame, std::span<const StoredValue> row) {
  // Outside a transaction SQLite undoes a failed statement as the transaction that it is.
  const bool guarded = plan.emitted.fails_midway && engine.store().InTransaction();
  if (guarded) engine.store().RunCached("SAVEPOINT change");
  try {
    PlanRun run(engine, plan, frame, row);
    while (run.Step()) {
    }
  } catch (const SqlError& error) {
    if (guarded && engine.store().InTransaction()) {
      engine.store().RunCached("ROLLBACK TO change");
      engine.store().RunCached("RELEASE change");
    }
    if (error.number != kNullRefused && error.number != kDuplicateRefused) throw;
    throw RefusedRow(error, *plan.table, plan.updates ? "UPDATE" : "INSERT", [&](const Key& key) {
      return plan.updates ? std::string("(…)") : DuplicateKey(engine, plan, frame, row, key);
    });
  }
  if (guarded) engine.store().RunCached("RELEASE change");
  engine.row_count = sqlite3_changes(engine.store().handle());
  if (plan.updates || !plan.table) return;
  engine.identity.reset();
  if (plan.table->identity_column >= 0 && engine.row_count > 0) {
    engine.identity = sqlite3_last_insert_rowid(engine.store().handle());
  }
  frame.scope_identity = engine.identity;
}

InstructionPtr MakeInsert(const InsertStatement& statement, InstructionPtr execute,
                          Visible visible) {
  if (execute) return std::make_unique<InsertExecuteInstruction>(statement, std::move(execute));
  return std::make_unique<InsertInstruction>(statement, visible);
}

InstructionPtr MakeUpdate(const UpdateStatement& statement, Visible visible) {
  return std::make_unique<UpdateInstruction>(statement, visible);
}

InstructionPtr MakeDelete(const DeleteStatement& statement, Visible visible) {
  return std::make_unique<DeleteInstruction>(statement, visible);
}

}  // namespace tavcc::sql
