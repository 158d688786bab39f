// DECLARE CURSOR, OPEN, FETCH, CLOSE, DEALLOCATE.
#include "embedded/run/cursor.h"

#include "embedded/catalog/names.h"
#include "embedded/run/engine.h"
#include "embedded/run/instructions.h"

namespace tavcc::sql {
namespace {

Cursor& RequireCursor(Engine& engine, const std::string& name) {
  const auto found = engine.cursors().find(FoldName(name));
  if (found == engine.cursors().end()) Raise(16916, name);
  return found->second;
}

class DeclareCursorInstruction final : public Instruction, public CursorQuery {
 public:
  DeclareCursorInstruction(const DeclareCursorStatement& statement, Visible visible,
                           std::weak_ptr<Program> program)
      : Instruction(statement.line),
        statement_(statement),
        visible_(visible),
        program_(std::move(program)) {}

  void Prepare(Engine& engine, Frame& frame) override {
    PrepareDeferred(line(), [&] { Find(engine, frame); });
  }

  Flow Execute(Engine& engine, Frame& frame) override {
    const std::string folded = FoldName(statement_.name);
    if (engine.cursors().contains(folded)) Raise(16915, statement_.name);
    Find(engine, frame);
    Cursor& cursor = engine.cursors()[folded];
    cursor.program = program_.lock();
    cursor.query = this;
    // The query sees the variables as they are now, whenever it is opened.
    cursor.literals.assign(frame.literals.begin(), frame.literals.end());
    cursor.frame.variables = frame.variables;
    cursor.frame.literals = cursor.literals;
    return Flow::kNext;
  }

  Rows Open(Engine& engine, Frame& frame) override {
    return ReadRows(engine, Find(engine, frame), frame);
  }

 private:
  Plan& Find(Engine& engine, const Frame& frame) {
    return plans_.Find(engine, frame, [&](Plan& plan) {
      Binder binder(engine.catalog(), visible_.span(), frame.literals, plan.binding);
      const BoundQueryPtr query = binder.BindQuery(*statement_.query);
      auto shape = std::make_shared<ResultShape>();
      for (const SourceColumn& column : query->columns) {
        shape->names.push_back(column.name);
        shape->types.push_back(column.type);
      }
      plan.shape = std::move(shape);
      plan.emitted = EmitQuery(*query);
    });
  }

  const DeclareCursorStatement& statement_;
  const Visible visible_;
  const std::weak_ptr<Program> program_;
  PlanCache plans_;
};

class CursorInstruction final : public Instruction {
 public:
  explicit CursorInstruction(const CursorStatement& statement)
      : Instruction(statement.line), statement_(statement) {}
  Flow Execute(Engine& engine, Frame&) override {
    Cursor& cursor = RequireCursor(engine, statement_.name);
    switch (statement_.kind) {
      case Statement::Kind::kOpenCursor:
        if (cursor.open) Raise(16905);
        cursor.rows = cursor.query->Open(engine, cursor.frame);
        cursor.next = 0;
        cursor.open = true;
        break;
      case Statement::Kind::kCloseCursor:
        if (!cursor.open) Raise(16917);
        cursor.open = false;
        cursor.rows = Rows{};
        break;
      default:
        engine.cursors().erase(FoldName(statement_.name));
    }
    engine.row_count = 0;
    return Flow::kNext;
  }

 private:
  const CursorStatement& statement_;
};

class FetchInstruction final : public Instruction {
 public:
  FetchInstruction(const FetchStatement& statement, Visible visible)
      : Instruction(statement.line), statement_(statement) {
    const auto variables = visible.span();
    for (const std::string& name : statement.variables) {
      size_t at = 0;
      while (at < variables.size() && !SameName(variables[at].name, name)) ++at;
      if (at == variables.size()) Raise(137, name);
      targets_.push_back(at);
      types_.push_back(variables[at].type);
    }
  }

  Flow Execute(Engine& engine, Frame& frame) override {
    Cursor& cursor = RequireCursor(engine, statement_.cursor);
    if (!cursor.open) Raise(16917);
    const auto& types = cursor.rows.shape->types;
    if (!targets_.empty() && targets_.size() != types.size()) Raise(16924);
    const bool found = cursor.next < cursor.rows.count;
    engine.fetch_status = found ? 0 : -1;
    engine.row_count = found ? 1 : 0;
    const auto row = std::span(cursor.rows.cells)
                         .subspan(found ? cursor.next * types.size() : 0, found ? types.size() : 0);
    if (found) ++cursor.next;
    if (targets_.empty()) {
      engine.Return(Rows{cursor.rows.shape, {row.begin(), row.end()}, found ? size_t{1} : 0});
      return Flow::kNext;
    }
    for (size_t i = 0; i < row.size(); ++i) {
      CheckImplicit(types[i], types_[i]);
      frame.variables[targets_[i]] = ConvertStored(row[i], types[i], types_[i]);
    }
    return Flow::kNext;
  }

 private:
  const FetchStatement& statement_;
  std::vector<size_t> targets_;
  std::vector<SqlType> types_;
};

}  // namespace

InstructionPtr MakeDeclareCursor(const DeclareCursorStatement& statement, Visible visible,
                                 std::weak_ptr<Program> program) {
  return std::make_unique<DeclareCursorInstruction>(statement, visible, std::move(program));
}

InstructionPtr MakeCursor(const CursorStatement& statement) {
  return std::make_unique<CursorInstruction>(statement);
}

InstructionPtr MakeFetch(const FetchStatement& statement, Visible visible) {
  return std::make_unique<FetchInstruction>(statement, visible);
}

}  // namespace tavcc::sql
