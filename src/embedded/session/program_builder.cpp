// Building programs: one pass over the parsed statements, declarations gathered on the way.
#include "embedded/session/program_builder.h"

#include "embedded/catalog/names.h"
#include "embedded/session/instructions/instructions.h"

namespace tavcc::sql {

using Statements =
    Kinds<SelectStatement, InsertStatement, UpdateStatement, DeleteStatement, TruncateStatement,
          CreateTableStatement, CreateIndexStatement, CreateViewStatement, CreateProcedureStatement,
          DropStatement, AlterTableAddStatement, DeclareStatement, SetVariableStatement,
          SetOptionStatement, IfStatement, WhileStatement, BlockStatement, BreakStatement,
          ContinueStatement, ReturnStatement, DeclareCursorStatement, CursorStatement,
          FetchStatement, ExecuteProcedureStatement, ExecuteTextStatement, TransactionStatement,
          PrintStatement, RaisErrorStatement>;

class ProgramBuilder {
 public:
  explicit ProgramBuilder(const std::shared_ptr<Program>& program, bool procedure)
      : program_(program), procedure_(procedure) {}

  void Declare(const std::string& name, const SqlType& type) {
    if (FindByName(program_->variables_, name) != nullptr)
      Raise(errors::kVariableDeclaredTwice, name);
    program_->variables_.push_back({name, type});
  }

  std::vector<InstructionPtr> BuildAll(const std::vector<StatementPtr>& statements) {
    std::vector<InstructionPtr> body;
    for (const auto& statement : statements) body.push_back(Build(*statement));
    return body;
  }

  // The statements of the program itself, not of one of its blocks.
  std::vector<InstructionPtr> BuildBody(const std::vector<StatementPtr>& statements,
                                        const std::vector<std::string>& table_variables) {
    std::vector<InstructionPtr> body;
    for (size_t i = 0; i < statements.size(); ++i) {
      const Statement& statement = *statements[i];
      body.push_back(Build(statement));
      if (i + 1 == statements.size()) break;
      const Statement& next = *statements[i + 1];
      if (!IsReadOnce(statement, next, table_variables)) continue;
      body.back() = MakeReadOnce(*As<InsertStatement>(statement), std::move(body.back()),
                                 *As<DeleteStatement>(next), Build(next), Now());
      ++i;
    }
    return body;
  }

  // `source` keeps the parsed statements of the body.
  std::shared_ptr<Program> Finish(std::vector<InstructionPtr> body,
                                  std::shared_ptr<const void> source) {
    program_->body_ = std::move(body);
    program_->source_ = std::move(source);
    return program_;
  }

  InstructionPtr Build(const Statement& statement) {
    try {
      return OnKindOf(Statements(), statement,
                      [this](const auto& of_kind) { return Make(of_kind); });
    } catch (SqlError& error) {
      if (error.line == 0) error.line = statement.line;
      throw;
    }
  }

 private:
  DeclaredVariables Now() const { return {&program_->variables_, program_->variables_.size()}; }

  // Most statements need nothing but the variables before them.
  InstructionPtr Make(const auto& statement) { return MakeInstruction(statement, Now()); }
  InstructionPtr Make(const InsertStatement& insert);
  InstructionPtr Make(const DeclareStatement& statement);
  InstructionPtr Make(const DeclareCursorStatement& statement);
  InstructionPtr Make(const BlockStatement& block);
  InstructionPtr Make(const IfStatement& branch);
  InstructionPtr Make(const WhileStatement& loop);
  InstructionPtr Make(const BreakStatement& statement);
  InstructionPtr Make(const ContinueStatement& statement);
  InstructionPtr Make(const ReturnStatement& statement);

  std::shared_ptr<Program> program_;
  const bool procedure_;
  int loops_ = 0;
};

InstructionPtr ProgramBuilder::Make(const InsertStatement& insert) {
  return MakeInsert(insert, insert.execute ? Build(*insert.execute) : nullptr, Now());
}

InstructionPtr ProgramBuilder::Make(const DeclareCursorStatement& statement) {
  return MakeDeclareCursor(statement, Now(), program_);
}

InstructionPtr ProgramBuilder::Make(const BlockStatement& block) {
  return MakeBlock(block.line, BuildAll(block.statements));
}

InstructionPtr ProgramBuilder::Make(const IfStatement& branch) {
  const DeclaredVariables visible = Now();
  auto then = Build(*branch.then);
  auto otherwise = branch.otherwise ? Build(*branch.otherwise) : nullptr;
  return MakeIf(branch, std::move(then), std::move(otherwise), visible);
}

InstructionPtr ProgramBuilder::Make(const WhileStatement& loop) {
  const DeclaredVariables visible = Now();
  ++loops_;
  auto body = Build(*loop.body);
  --loops_;
  return MakeWhile(loop, std::move(body), visible);
}

InstructionPtr ProgramBuilder::Make(const BreakStatement& statement) {
  if (loops_ == 0) Raise(errors::kBreakOutsideWhile);
  return MakeJump(statement.line, Flow::kBreak);
}

InstructionPtr ProgramBuilder::Make(const ContinueStatement& statement) {
  if (loops_ == 0) Raise(errors::kContinueOutsideWhile);
  return MakeJump(statement.line, Flow::kContinue);
}

InstructionPtr ProgramBuilder::Make(const ReturnStatement& statement) {
  if (statement.value && !procedure_) Raise(errors::kReturnValueNotAllowed);
  return MakeInstruction(statement, Now());
}

InstructionPtr ProgramBuilder::Make(const DeclareStatement& statement) {
  for (const VariableDefinition& variable : statement.variables) {
    if (!variable.table) {
      Declare(variable.name, ResolveTypeName(variable.type, TypeNameUse::kDeclaration,
                                             {1, statement.line, variable.name}));
      continue;
    }
    for (const TablePtr& known : program_->table_variables_) {
      if (EqualsIgnoringCase(known->name, variable.name))
        Raise(errors::kVariableDeclaredTwice, variable.name);
    }
    program_->table_variables_.push_back(BuildTable(variable.name, *variable.table));
  }
  return MakeDeclare(statement, Now());
}

std::shared_ptr<Program> BuildBatch(std::shared_ptr<const Batch> batch) {
  ProgramBuilder builder(std::make_shared<Program>(), /*procedure=*/false);
  auto body = builder.BuildBody(batch->statements, batch->table_variables);
  return builder.Finish(std::move(body), std::move(batch));
}

std::shared_ptr<Program> BuildProcedure(const Procedure& procedure) {
  ProgramBuilder builder(std::make_shared<Program>(), /*procedure=*/true);
  int ordinal = 0;
  for (const ParameterDefinition& parameter : procedure.statement->parameters) {
    builder.Declare(parameter.name,
                    ResolveTypeName(parameter.type, TypeNameUse::kDeclaration,
                                    {++ordinal, procedure.statement->line, parameter.name}));
  }
  auto body = builder.BuildBody(procedure.statement->body, procedure.text->table_variables);
  return builder.Finish(std::move(body), procedure.text);
}

}  // namespace tavcc::sql
