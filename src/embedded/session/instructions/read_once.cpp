// A table variable that is filled once, and read once by the statement after it, to see which rows
// have no match there. For example
//
//   INSERT @used SELECT K FROM Lines    DELETE t FROM T t LEFT JOIN @used u ON t.K = u.K
//                                       WHERE t.Q = 0 AND u.K IS NULL
//
// Nobody sees the variable but the DELETE, so it need not hold the rows: the DELETE is run with the
// INSERT's query in its place, and looks up the few keys that it asks about. Where that could be
// told from running the two, they are run as they stand.
#include <algorithm>

#include "embedded/rewrite/read_once_variable.h"
#include "embedded/rewrite/rewrite.h"
#include "embedded/session/instructions/instructions.h"
#include "embedded/session/interpreter.h"
#include "foundation/text.h"

namespace tavcc::sql {
namespace {

// How often the joins of a FROM clause name the table; derived tables are not looked into.
int CountNamed(const TableSource& source, const std::string& name) {
  if (const auto* join = As<JoinedTable>(source))
    return CountNamed(*join->left, name) + CountNamed(*join->right, name);
  const auto* table = As<NamedTable>(source);
  return table != nullptr && EqualsIgnoringCase(table->name.last(), name) ? 1 : 0;
}

bool ReadsSession(const Emitted& emitted) {
  return std::ranges::any_of(emitted.parameters, [](const Parameter& parameter) {
    return parameter.source == Parameter::Source::kSession;
  });
}

// The DELETE with the INSERT's query in place of the variable.
class DeleteByQuery final : public Instruction {
 public:
  DeleteByQuery(const InsertStatement& insert, const DeleteStatement& remove,
                DeclaredVariables visible)
      : Instruction(remove.line), insert_(insert), remove_(remove), visible_(visible) {}

  // Whether it does what the two statements do. What is wrong with them they say themselves.
  bool MayReplace(SessionContext& session, const Frame& frame) {
    try {
      return !Find(session, frame).emitted.sql.empty();
    } catch (const SqlError&) {
      return false;
    }
  }

  Flow Execute(SessionContext& session, Frame& frame) override {
    // As after the INSERT into a table without an identity column.
    session.state.identity.reset();
    frame.scope_identity.reset();
    RunChange(session, Find(session, frame), frame);
    return Flow::kNext;
  }

 private:
  ChangePlan& Find(SessionContext& session, const Frame& frame) {
    return FindPlan(session, frame, plans_,
                    [&](ChangePlan& plan) { Compile(session, frame, plan); });
  }

  // Leaves the plan without a text when the statements are to be run as they stand.
  void Compile(SessionContext& session, const Frame& frame, ChangePlan& plan) {
    Binder binder(session.catalog, visible_.span(), frame.literals, plan.binding);
    BoundInsert insert = binder.BindInsert(insert_, /*identity_insert=*/false);
    const Emitted inserted = EmitInsert(insert);
    if (inserted.fails_midway || ReadsSession(inserted)) return;
    BoundDelete remove = binder.BindDelete(remove_);
    if (!ReadInPlace(insert, remove)) return;
    Rewrite(remove, plan.binding);
    Emitted emitted = EmitDelete(remove);
    if (ReadsSession(emitted)) return;
    plan.table = remove.table;
    plan.emitted = std::move(emitted);
  }

  const InsertStatement& insert_;
  const DeleteStatement& remove_;
  const DeclaredVariables visible_;
  PlanCache<ChangePlan> plans_;
};

class ReadOnceInstruction final : public Instruction {
 public:
  ReadOnceInstruction(int line, InstructionPtr insert, InstructionPtr remove,
                      std::unique_ptr<DeleteByQuery> both)
      : Instruction(line),
        insert_(std::move(insert)),
        remove_(std::move(remove)),
        both_(std::move(both)) {}

  bool IsControl() const override { return true; }
  void Prepare(SessionContext& session, Frame& frame) override {
    insert_->Prepare(session, frame);
    remove_->Prepare(session, frame);
  }
  Flow Execute(SessionContext& session, Frame& frame) override {
    // A reader is told the row counts of both.
    if (session.results.reader() == nullptr && both_->MayReplace(session, frame))
      return frame.interpreter->RunOne(*both_, frame);
    const Flow flow = frame.interpreter->RunOne(*insert_, frame);
    return flow == Flow::kNext ? frame.interpreter->RunOne(*remove_, frame) : flow;
  }

 private:
  InstructionPtr insert_, remove_;
  std::unique_ptr<DeleteByQuery> both_;
};

}  // namespace

bool IsReadOnce(const Statement& first, const Statement& second,
                const std::vector<std::string>& table_variables) {
  const auto* insert = As<InsertStatement>(first);
  const auto* remove = As<DeleteStatement>(second);
  if (insert == nullptr || remove == nullptr) return false;
  const std::string& name = insert->table.last();
  if (!insert->query || !name.starts_with('@')) return false;
  const auto named = std::ranges::count_if(
      table_variables, [&](const std::string& other) { return EqualsIgnoringCase(other, name); });
  int read = 0;
  for (const auto& source : remove->from) read += CountNamed(*source, name);
  return named == 2 && read == 1;
}

InstructionPtr MakeReadOnce(const InsertStatement& insert_statement, InstructionPtr insert,
                            const DeleteStatement& delete_statement, InstructionPtr remove,
                            DeclaredVariables visible) {
  return std::make_unique<ReadOnceInstruction>(
      insert_statement.line, std::move(insert), std::move(remove),
      std::make_unique<DeleteByQuery>(insert_statement, delete_statement, visible));
}

}  // namespace tavcc::sql
