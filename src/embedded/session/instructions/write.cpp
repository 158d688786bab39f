// INSERT, UPDATE, DELETE.
#include <sqlite3.h>

#include <algorithm>
#include <optional>

#include "embedded/rewrite/rewrite.h"
#include "embedded/session/instructions/duplicate_key.h"
#include "embedded/session/instructions/instructions.h"
#include "embedded/session/instructions/update_steps.h"
#include "embedded/session/session_context.h"

namespace tavcc::sql {
namespace {

void BeginIdentity(SessionContext& session, const Table& table) {
  const Column& column = table.columns[static_cast<size_t>(table.identity_column)];
  session.state.next_identity.last = session.catalog.identities().Last(table);
  session.state.next_identity.step = column.identity_increment;
  session.state.next_identity.type = column.type;
}

// The next value goes on from one that the statement itself has said, where that is further on.
void AdvanceIdentity(SessionContext& session, const Table& table) {
  const int64_t written = *session.state.identity;
  const int64_t last = session.catalog.identities().Last(table);
  if (table.IsLaterIdentity(written, last)) session.catalog.identities().SetLast(table, written);
}

// The error of an INSERT that failed. The identity values of its rows up to the one that was
// refused are used up.
SqlError RefusedInsert(SessionContext& session, const InsertPlan& plan, const Frame& frame,
                       std::span<const StoredValue> row, const SqlError& error) {
  const int64_t drawn = session.state.next_identity.last;
  // The rows are looked through once more, with the same identity values.
  if (plan.draws_identity) BeginIdentity(session, *plan.table);
  int64_t refused = 1;
  SqlError out = RefusedRow(error, *plan.table, "INSERT", [&](const Key& key) {
    return DuplicateKey(session, plan, frame, row, key, &refused);
  });
  const bool constraint = error.number == kDuplicateRefused || error.number == kNullRefused;
  const int identity = plan.table->identity_column;
  if (plan.draws_identity) {
    session.catalog.identities().SetLast(*plan.table, drawn);
  } else if (constraint && identity >= 0 &&
             std::ranges::find(plan.columns, identity) == plan.columns.end()) {
    session.catalog.identities().SetLast(*plan.table,
                                         session.catalog.identities().Last(*plan.table) + refused);
  }
  return out;
}

// A statement that changes rows, with its plans.
template <class StatementPlan>
class WriteInstruction : public Instruction {
 public:
  WriteInstruction(int line, DeclaredVariables visible) : Instruction(line), visible_(visible) {}

  void Prepare(SessionContext& session, Frame& frame) override {
    PrepareDeferred(line(), [&] { Find(session, frame); });
  }
  bool CountsRows() const override { return true; }

 protected:
  virtual void Compile(Binder& binder, StatementPlan& plan) = 0;

  StatementPlan& Find(SessionContext& session, const Frame& frame) {
    return FindIn(plans_, session, frame,
                  [&](Binder& binder, StatementPlan& plan) { Compile(binder, plan); });
  }
  // In a cache of plans beside the usual ones.
  template <class Other, class Make>
  Other& FindIn(PlanCache<Other>& plans, SessionContext& session, const Frame& frame,
                const Make& compile) {
    return FindPlan(session, frame, plans, [&](Other& plan) {
      Binder binder(session.catalog, visible_.span(), frame.literals, plan.binding);
      compile(binder, plan);
    });
  }

 private:
  const DeclaredVariables visible_;
  PlanCache<StatementPlan> plans_;
};

void PlanInsert(BoundInsert insert, InsertPlan& plan) {
  Rewrite(insert, plan.binding);
  plan.table = insert.table;
  plan.columns = insert.columns;
  plan.draws_identity = insert.table->draws_identity && !insert.explicit_identity;
  plan.emitted = EmitInsert(insert);
}

bool MayInsertIdentity(const SessionContext& session, const InsertStatement& insert) {
  if (session.state.identity_insert.physical.empty()) return false;
  const TablePtr table = session.catalog.FindTable(insert.table);
  return table && table->physical == session.state.identity_insert.physical;
}

class InsertInstruction final : public WriteInstruction<InsertPlan> {
 public:
  InsertInstruction(const InsertStatement& statement, DeclaredVariables visible)
      : WriteInstruction(statement.line, visible), statement_(statement) {}

  Flow Execute(SessionContext& session, Frame& frame) override {
    if (with_identity_ != MayInsertIdentity(session, statement_)) {
      with_identity_ = !with_identity_;
      identity_plans_ = {};
    }
    InsertPlan& plan =
        with_identity_ ? FindIn(identity_plans_, session, frame,
                                [&](Binder& binder, InsertPlan& made) { Compile(binder, made); })
                       : Find(session, frame);
    RunInsert(session, plan, frame);
    return Flow::kNext;
  }

 protected:
  void Compile(Binder& binder, InsertPlan& plan) override {
    PlanInsert(binder.BindInsert(statement_, with_identity_), plan);
  }

 private:
  const InsertStatement& statement_;
  bool with_identity_ = false;
  PlanCache<InsertPlan> identity_plans_;
};

// INSERT … EXEC: the rows of the first result that the call returns, and of those after it.
class InsertExecuteInstruction final : public Instruction {
 public:
  InsertExecuteInstruction(const InsertStatement& statement, InstructionPtr execute)
      : Instruction(statement.line), statement_(statement), execute_(std::move(execute)) {}

  bool CountsRows() const override { return true; }
  Flow Execute(SessionContext& session, Frame& frame) override {
    if (session.results.capturing()) Raise(errors::kInsertExecNested);
    std::vector<Rows> results;
    session.results.Capture(&results);
    try {
      execute_->Execute(session, frame);
    } catch (...) {
      session.results.Capture(nullptr);
      throw;
    }
    session.results.Capture(nullptr);
    const TablePtr table = session.catalog.FindTable(statement_.table);
    StatementGuard guard(session.transaction, !table || table->IsStored());
    int64_t count = 0;
    for (const Rows& rows : results) count += InsertRows(session, frame, rows);
    guard.Commit();
    session.state.row_count = count;
    return Flow::kNext;
  }

 private:
  int64_t InsertRows(SessionContext& session, Frame& frame, const Rows& rows) {
    InsertPlan plan;
    std::vector<SourceColumn> columns;
    for (const SqlType& type : rows.shape->types) columns.push_back({"", type, true, false});
    Binder binder(session.catalog, {}, {}, plan.binding);
    PlanInsert(binder.BindInsertRows(statement_, columns, false), plan);
    for (size_t row = 0; row < rows.count; ++row) {
      RunInsert(session, plan, frame,
                std::span(rows.cells).subspan(row * columns.size(), columns.size()));
    }
    return static_cast<int64_t>(rows.count);
  }

  const InsertStatement& statement_;
  InstructionPtr execute_;
};

// An UPDATE or DELETE, perhaps of the row on which a cursor stands, whose number is then the
// statement's parameter.
class ChangeInstruction : public WriteInstruction<ChangePlan> {
 public:
  ChangeInstruction(int line, DeclaredVariables visible, const std::string& current_of)
      : WriteInstruction(line, visible), cursor_(current_of) {}

  Flow Execute(SessionContext& session, Frame& frame) override {
    ChangePlan& plan = Find(session, frame);
    const StoredValue row = RowOf(session, plan.table);
    RunChange(session, plan, frame, std::span(&row, 1));
    return Flow::kNext;
  }

 protected:
  StoredValue RowOf(SessionContext& session, const TablePtr& table) const {
    return cursor_.empty() ? StoredValue() : CurrentRow(session, cursor_, table);
  }

 private:
  const std::string& cursor_;
};

class UpdateInstruction final : public ChangeInstruction {
 public:
  UpdateInstruction(const UpdateStatement& statement, DeclaredVariables visible)
      : ChangeInstruction(statement.line, visible, statement.current_of),
        statement_(statement),
        sets_variables_(std::ranges::any_of(
            statement.assignments,
            [](const Assignment& assignment) { return !assignment.variable.empty(); })) {}

  void Prepare(SessionContext& session, Frame& frame) override {
    if (!sets_variables_) return ChangeInstruction::Prepare(session, frame);
    PrepareDeferred(line(), [&] { FindSteps(session, frame); });
  }

  Flow Execute(SessionContext& session, Frame& frame) override {
    if (!sets_variables_) {
      try {
        return ChangeInstruction::Execute(session, frame);
      } catch (const SqlError& error) {
        if (error.number != kDuplicateRefused) throw;
      }
    }
    NewValuesPlan& steps = FindSteps(session, frame);
    const StoredValue row = RowOf(session, steps.table);
    UpdateInSteps(session, steps, frame, std::span(&row, 1));
    return Flow::kNext;
  }

 protected:
  void Compile(Binder& binder, ChangePlan& plan) override {
    BoundUpdate bound = binder.BindUpdate(statement_);
    Rewrite(bound, plan.binding);
    plan.table = bound.table;
    plan.emitted = EmitUpdate(bound);
  }

 private:
  NewValuesPlan& FindSteps(SessionContext& session, const Frame& frame) {
    return FindIn(steps_, session, frame, [&](Binder& binder, NewValuesPlan& plan) {
      BoundUpdate bound = binder.BindUpdate(statement_);
      Rewrite(bound, plan.binding);
      plan.table = bound.table;
      for (const auto& assignment : bound.assignments) plan.columns.push_back(assignment.column);
      plan.emitted = EmitUpdatedRows(bound);
    });
  }

  const UpdateStatement& statement_;
  const bool sets_variables_;
  PlanCache<NewValuesPlan> steps_;
};

class DeleteInstruction final : public ChangeInstruction {
 public:
  DeleteInstruction(const DeleteStatement& statement, DeclaredVariables visible)
      : ChangeInstruction(statement.line, visible, statement.current_of), statement_(statement) {}

 protected:
  void Compile(Binder& binder, ChangePlan& plan) override {
    BoundDelete bound = binder.BindDelete(statement_);
    Rewrite(bound, plan.binding);
    plan.table = bound.table;
    plan.emitted = EmitDelete(bound);
  }

 private:
  const DeleteStatement& statement_;
};

// What an INSERT leaves behind for the next one, and for @@IDENTITY.
void RecordIdentity(SessionContext& session, const InsertPlan& plan, Frame& frame) {
  session.state.identity.reset();
  if (plan.table->identity_column >= 0 && session.state.row_count > 0) {
    session.state.identity = sqlite3_last_insert_rowid(session.store.handle());
  }
  if (plan.draws_identity) {
    session.catalog.identities().SetLast(*plan.table, session.state.next_identity.last);
  } else if (session.state.identity && plan.table->draws_identity) {
    AdvanceIdentity(session, *plan.table);
  }
  frame.scope_identity = session.state.identity;
}

// Makes a change of a table's rows whole, with or without a transaction around it.
class RowChange {
 public:
  RowChange(SessionContext& session, const Table& table) : session_(session) {
    if (!session.shared || !table.IsStored()) return;
    if (!session.store.InTransaction()) alone_.emplace(session.transaction, true);
    session.store.MarkChange();
  }

  // Sets the row count. Errors: what SQLite reported; then no row is changed.
  void Run(Plan& plan, const Frame& frame, std::span<const StoredValue> row) {
    SqliteConnection& store = session_.store;
    // Outside a transaction SQLite undoes a failed statement as the transaction that it is.
    const bool guarded = plan.emitted.fails_midway && store.InTransaction();
    if (guarded) store.RunCached("SAVEPOINT change");
    try {
      PlanRun run(session_, plan, frame, row);
      while (run.Step()) {
      }
    } catch (const SqlError&) {
      if (guarded && store.InTransaction()) {
        store.RunCached("ROLLBACK TO change");
        store.RunCached("RELEASE change");
      }
      throw;
    }
    if (guarded) store.RunCached("RELEASE change");
    session_.state.row_count = sqlite3_changes(store.handle());
  }

  void Commit() {
    if (alone_) alone_->Commit();
  }

 private:
  SessionContext& session_;
  std::optional<StatementGuard> alone_;
};

}  // namespace

void RunInsert(SessionContext& session, InsertPlan& plan, Frame& frame,
               std::span<const StoredValue> row) {
  RowChange change(session, *plan.table);
  if (plan.draws_identity) BeginIdentity(session, *plan.table);
  try {
    change.Run(plan, frame, row);
  } catch (const SqlError& error) {
    throw RefusedInsert(session, plan, frame, row, error);
  }
  RecordIdentity(session, plan, frame);
  change.Commit();
}

void RunChange(SessionContext& session, ChangePlan& plan, Frame& frame,
               std::span<const StoredValue> row) {
  RowChange change(session, *plan.table);
  try {
    change.Run(plan, frame, row);
  } catch (const SqlError& error) {
    // An UPDATE whose keys collide is tried again in steps: see there.
    if (error.number != kNullRefused) throw;
    throw RefusedRow(error, *plan.table, "UPDATE", [](const Key&) { return std::string(); });
  }
  change.Commit();
}

InstructionPtr MakeInsert(const InsertStatement& statement, InstructionPtr execute,
                          DeclaredVariables visible) {
  if (execute) return std::make_unique<InsertExecuteInstruction>(statement, std::move(execute));
  return std::make_unique<InsertInstruction>(statement, visible);
}

InstructionPtr MakeInstruction(const UpdateStatement& statement, DeclaredVariables visible) {
  return std::make_unique<UpdateInstruction>(statement, visible);
}

InstructionPtr MakeInstruction(const DeleteStatement& statement, DeclaredVariables visible) {
  return std::make_unique<DeleteInstruction>(statement, visible);
}

}  // namespace tavcc::sql
