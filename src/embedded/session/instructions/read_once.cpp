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

#include "embedded/catalog/names.h"
#include "embedded/rewrite/read_once_variable.h"
#include "embedded/rewrite/rewrite.h"
#include "embedded/session/engine.h"
#include "embedded/session/instructions/instructions.h"

namespace tavcc::sql {
namespace {

// How often the joins of a FROM clause name the table; derived tables are not looked into.
int CountNamed(const TableSource& source, const std::string& name) {
  if (source.kind == TableSource::Kind::kJoin) {
    const auto& join = static_cast<const JoinedTable&>(source);
    return CountNamed(*join.left, name) + CountNamed(*join.right, name);
  }
  if (source.kind != TableSource::Kind::kNamed) return 0;
  return SameName(static_cast<const NamedTable&>(source).name.last(), name) ? 1 : 0;
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
  bool Serves(Engine& engine, const Frame& frame) {
    try {
      return !Find(engine, frame).emitted.sql.empty();
    } catch (const SqlError&) {
      return false;
    }
  }

  Flow Execute(Engine& engine, Frame& frame) override {
    // As after the INSERT into a table without an identity column.
    engine.identity.reset();
    frame.scope_identity.reset();
    RunWrite(engine, Find(engine, frame), frame);
    return Flow::kNext;
  }

 private:
  Plan& Find(Engine& engine, const Frame& frame) {
    return FindPlan(engine, frame, plans_, [&](Plan& plan) { Compile(engine, frame, plan); });
  }

  // Leaves the plan without a text when the statements are to be run as they stand.
  void Compile(Engine& engine, const Frame& frame, Plan& plan) {
    Binder binder(engine.catalog(), visible_.span(), frame.literals, plan.binding);
    BoundInsert insert = binder.BindInsert(insert_, /*identity_insert=*/false);
    const Emitted inserted = EmitInsert(insert);
    if (inserted.fails_midway || ReadsSession(inserted)) return;
    BoundDelete remove = binder.BindDelete(remove_);
    if (!ReadInPlace(insert, remove)) return;
    Rewrite(remove, plan.binding);
    Emitted emitted = EmitDelete(remove);
    if (ReadsSession(emitted)) return;
    plan.updates = true;
    plan.emitted = std::move(emitted);
  }

  const InsertStatement& insert_;
  const DeleteStatement& remove_;
  const DeclaredVariables visible_;
  PlanCache plans_;
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
  void Prepare(Engine& engine, Frame& frame) override {
    insert_->Prepare(engine, frame);
    remove_->Prepare(engine, frame);
  }
  Flow Execute(Engine& engine, Frame& frame) override {
    if (both_->Serves(engine, frame)) return engine.RunOne(*both_, frame);
    const Flow flow = engine.RunOne(*insert_, frame);
    return flow == Flow::kNext ? engine.RunOne(*remove_, frame) : flow;
  }

 private:
  InstructionPtr insert_, remove_;
  std::unique_ptr<DeleteByQuery> both_;
};

}  // namespace

bool IsReadOnce(const Statement& first, const Statement& second,
                const std::vector<std::string>& table_variables) {
  if (first.kind != Statement::Kind::kInsert || second.kind != Statement::Kind::kDelete)
    return false;
  const auto& insert = static_cast<const InsertStatement&>(first);
  const auto& remove = static_cast<const DeleteStatement&>(second);
  const std::string& name = insert.table.last();
  if (!insert.query || !name.starts_with('@')) return false;
  const auto named = std::ranges::count_if(
      table_variables, [&](const std::string& other) { return SameName(other, name); });
  int read = 0;
  for (const auto& source : remove.from) read += CountNamed(*source, name);
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
