// INSERT, UPDATE, DELETE.
#include <sqlite3.h>

#include <algorithm>
#include <optional>

#include "embedded/rewrite/rewrite.h"
#include "embedded/session/engine.h"
#include "embedded/session/instructions/duplicate_key.h"
#include "embedded/session/instructions/instructions.h"
#include "embedded/session/instructions/update_steps.h"

namespace tavcc::sql {
namespace {

void BeginNumbers(Engine& engine, const Table& table) {
  const Column& column = table.columns[static_cast<size_t>(table.identity_column)];
  engine.next_number.last = engine.catalog().Number(table);
  engine.next_number.step = column.identity_increment;
  engine.next_number.type = column.type;
}

// The next value goes on from one that the statement itself has said, where that is further on.
void KeepExplicitNumber(Engine& engine, const Table& table) {
  const int64_t written = *engine.identity;
  const int64_t last = engine.catalog().Number(table);
  if (table.IsLaterIdentity(written, last)) engine.catalog().SetNumber(table, written);
}

// The error of an INSERT that failed. The identity values of its rows up to the one that was
// refused are used up.
SqlError RefusedInsert(Engine& engine, const Plan& plan, const Frame& frame,
                       std::span<const StoredValue> row, const SqlError& error) {
  if (!plan.table) return error;
  const int64_t drawn = engine.next_number.last;
  // The rows are looked through once more, with the same identity values.
  if (plan.draws_numbers) BeginNumbers(engine, *plan.table);
  int64_t refused = 1;
  SqlError out = RefusedRow(error, *plan.table, "INSERT", [&](const Key& key) {
    return DuplicateKey(engine, plan, frame, row, key, &refused);
  });
  const bool constraint = error.number == kDuplicateRefused || error.number == kNullRefused;
  const int identity = plan.table->identity_column;
  if (plan.draws_numbers) {
    engine.catalog().SetNumber(*plan.table, drawn);
  } else if (constraint && identity >= 0 &&
             std::ranges::find(plan.columns, identity) == plan.columns.end()) {
    engine.catalog().SetNumber(*plan.table, engine.catalog().Number(*plan.table) + refused);
  }
  return out;
}

class WriteInstruction : public Instruction {
 public:
  WriteInstruction(int line, DeclaredVariables visible) : Instruction(line), visible_(visible) {}

  void Prepare(Engine& engine, Frame& frame) override {
    PrepareDeferred(line(), [&] { Find(engine, frame); });
  }
  Flow Execute(Engine& engine, Frame& frame) override {
    RunWrite(engine, Find(engine, frame), frame);
    return Flow::kNext;
  }

  // WHERE CURRENT OF: the number of the cursor's row is the statement's parameter.
  void RunAtCursor(Engine& engine, Frame& frame, const std::string& cursor) {
    Plan& plan = Find(engine, frame);
    const StoredValue row = CurrentRow(engine, cursor, plan.table);
    RunWrite(engine, plan, frame, std::span(&row, 1));
  }

 protected:
  virtual void Compile(Binder& binder, Engine& engine, Plan& plan) = 0;

  Plan& Find(Engine& engine, const Frame& frame) {
    return FindIn(plans_, engine, frame,
                  [&](Binder& binder, Plan& plan) { Compile(binder, engine, plan); });
  }
  // In a cache of plans beside the usual ones.
  template <class Make>
  Plan& FindIn(PlanCache& plans, Engine& engine, const Frame& frame, const Make& compile) {
    return FindPlan(engine, frame, plans, [&](Plan& plan) {
      Binder binder(engine.catalog(), visible_.span(), frame.literals, plan.binding);
      compile(binder, plan);
    });
  }

 private:
  const DeclaredVariables visible_;
  PlanCache plans_;
};

void PlanInsert(BoundInsert insert, Plan& plan) {
  Rewrite(insert, plan.binding);
  plan.table = insert.table;
  plan.columns = insert.columns;
  plan.draws_numbers = insert.table->draws_identity && !insert.explicit_identity;
  plan.emitted = EmitInsert(insert);
}

bool MayInsertIdentity(const Engine& engine, const InsertStatement& insert) {
  if (engine.identity_insert.empty()) return false;
  const TablePtr table = const_cast<Engine&>(engine).catalog().FindTable(insert.table);
  return table && table->physical == engine.identity_insert;
}

class InsertInstruction final : public WriteInstruction {
 public:
  InsertInstruction(const InsertStatement& statement, DeclaredVariables visible)
      : WriteInstruction(statement.line, visible), statement_(statement) {}

  Flow Execute(Engine& engine, Frame& frame) override {
    if (with_identity_ != MayInsertIdentity(engine, statement_)) {
      with_identity_ = !with_identity_;
      identity_plans_ = PlanCache();
    }
    if (!with_identity_) return WriteInstruction::Execute(engine, frame);
    Plan& plan = FindIn(identity_plans_, engine, frame,
                        [&](Binder& binder, Plan& made) { Compile(binder, engine, made); });
    RunWrite(engine, plan, frame);
    return Flow::kNext;
  }

 protected:
  void Compile(Binder& binder, Engine&, Plan& plan) override {
    PlanInsert(binder.BindInsert(statement_, with_identity_), plan);
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
    const TablePtr table = engine.catalog().FindTable(statement_.table);
    StatementGuard guard(engine, !table || table->IsStored());
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
    PlanInsert(binder.BindInsertRows(statement_, columns, false), plan);
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
  UpdateInstruction(const UpdateStatement& statement, DeclaredVariables visible)
      : WriteInstruction(statement.line, visible),
        statement_(statement),
        sets_variables_(std::ranges::any_of(
            statement.assignments,
            [](const Assignment& assignment) { return !assignment.variable.empty(); })) {}

  void Prepare(Engine& engine, Frame& frame) override {
    if (!sets_variables_) return WriteInstruction::Prepare(engine, frame);
    PrepareDeferred(line(), [&] { FindSteps(engine, frame); });
  }

  Flow Execute(Engine& engine, Frame& frame) override {
    const std::string& cursor = statement_.current_of;
    if (!sets_variables_) {
      try {
        if (cursor.empty()) return WriteInstruction::Execute(engine, frame);
        RunAtCursor(engine, frame, cursor);
        return Flow::kNext;
      } catch (const SqlError& error) {
        if (error.number != kDuplicateRefused) throw;
      }
    }
    Plan& steps = FindSteps(engine, frame);
    const StoredValue row =
        cursor.empty() ? StoredValue() : CurrentRow(engine, cursor, steps.table);
    UpdateInSteps(engine, steps, frame, std::span(&row, 1));
    return Flow::kNext;
  }

 protected:
  void Compile(Binder& binder, Engine&, Plan& plan) override {
    BoundUpdate bound = binder.BindUpdate(statement_);
    Rewrite(bound, plan.binding);
    plan.table = bound.table;
    plan.updates = true;
    plan.emitted = EmitUpdate(bound);
  }

 private:
  Plan& FindSteps(Engine& engine, const Frame& frame) {
    return FindIn(steps_, engine, frame, [&](Binder& binder, Plan& plan) {
      BoundUpdate bound = binder.BindUpdate(statement_);
      Rewrite(bound, plan.binding);
      plan.table = bound.table;
      for (const auto& assignment : bound.assignments) plan.columns.push_back(assignment.column);
      plan.emitted = EmitUpdatedRows(bound);
    });
  }

  const UpdateStatement& statement_;
  const bool sets_variables_;
  PlanCache steps_;
};

class DeleteInstruction final : public WriteInstruction {
 public:
  DeleteInstruction(const DeleteStatement& statement, DeclaredVariables visible)
      : WriteInstruction(statement.line, visible), statement_(statement) {}

  Flow Execute(Engine& engine, Frame& frame) override {
    if (statement_.current_of.empty()) return WriteInstruction::Execute(engine, frame);
    RunAtCursor(engine, frame, statement_.current_of);
    return Flow::kNext;
  }

 protected:
  void Compile(Binder& binder, Engine&, Plan& plan) override {
    BoundDelete bound = binder.BindDelete(statement_);
    Rewrite(bound, plan.binding);
    plan.table = bound.table;
    plan.updates = true;
    plan.emitted = EmitDelete(bound);
  }

 private:
  const DeleteStatement& statement_;
};

// What an INSERT leaves behind for the next one, and for @@IDENTITY.
void TakeNumbers(Engine& engine, const Plan& plan, Frame& frame) {
  engine.identity.reset();
  if (plan.table->identity_column >= 0 && engine.row_count > 0) {
    engine.identity = sqlite3_last_insert_rowid(engine.store().handle());
  }
  if (plan.draws_numbers) {
    engine.catalog().SetNumber(*plan.table, engine.next_number.last);
  } else if (engine.identity && plan.table->draws_identity) {
    KeepExplicitNumber(engine, *plan.table);
  }
  frame.scope_identity = engine.identity;
}

}  // namespace

void RunWrite(Engine& engine, Plan& plan, Frame& frame, std::span<const StoredValue> row) {
  const bool changes_file = engine.shared() && plan.table && plan.table->IsStored();
  std::optional<StatementGuard> alone;
  if (changes_file && !engine.store().InTransaction()) alone.emplace(engine, true);
  if (changes_file) engine.store().MarkChange();
  // Outside a transaction SQLite undoes a failed statement as the transaction that it is.
  const bool guarded = plan.emitted.fails_midway && engine.store().InTransaction();
  if (plan.draws_numbers) BeginNumbers(engine, *plan.table);
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
    if (!plan.updates) throw RefusedInsert(engine, plan, frame, row, error);
    // An UPDATE whose keys collide is tried again in steps: see there.
    if (error.number != kNullRefused) throw;
    throw RefusedRow(error, *plan.table, "UPDATE", [](const Key&) { return std::string(); });
  }
  if (guarded) engine.store().RunCached("RELEASE change");
  engine.row_count = sqlite3_changes(engine.store().handle());
  if (!plan.updates && plan.table) TakeNumbers(engine, plan, frame);
  if (alone) alone->Keep();
}

InstructionPtr MakeInsert(const InsertStatement& statement, InstructionPtr execute,
                          DeclaredVariables visible) {
  if (execute) return std::make_unique<InsertExecuteInstruction>(statement, std::move(execute));
  return std::make_unique<InsertInstruction>(statement, visible);
}

InstructionPtr MakeUpdate(const UpdateStatement& statement, DeclaredVariables visible) {
  return std::make_unique<UpdateInstruction>(statement, visible);
}

InstructionPtr MakeDelete(const DeleteStatement& statement, DeclaredVariables visible) {
  return std::make_unique<DeleteInstruction>(statement, visible);
}

}  // namespace tavcc::sql
