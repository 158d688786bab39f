// Building programs: one pass over the parsed statements, declarations gathered on the way.
#include "embedded/session/program_builder.h"

#include "embedded/catalog/names.h"
#include "embedded/session/instructions/instructions.h"

namespace tavcc::sql {

class ProgramBuilder {
 public:
  explicit ProgramBuilder(const std::shared_ptr<Program>& program, bool procedure)
      : program_(program), procedure_(procedure) {}

  void Declare(const std::string& name, const SqlType& type) {
    for (const VariableInfo& known : program_->variables_) {
      if (SameName(known.name, name)) Raise(errors::kVariableDeclaredTwice, name);
    }
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
      body.back() = MakeReadOnce(As<InsertStatement>(statement), std::move(body.back()),
                                 As<DeleteStatement>(next), Build(next), Now());
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
      return Make(statement);
    } catch (SqlError& error) {
      if (error.line == 0) error.line = statement.line;
      throw;
    }
  }

 private:
  DeclaredVariables Now() const { return {&program_->variables_, program_->variables_.size()}; }

  template <class T>
  static const T& As(const Statement& statement) {
    return static_cast<const T&>(statement);
  }

  InstructionPtr Make(const Statement& statement);
  InstructionPtr MakeFlow(const Statement& statement);
  InstructionPtr MakeDeclaration(const DeclareStatement& statement);

  std::shared_ptr<Program> program_;
  const bool procedure_;
  int loops_ = 0;
};

InstructionPtr ProgramBuilder::Make(const Statement& statement) {
  switch (statement.kind) {
    case Statement::Kind::kSelect:
      return MakeSelect(As<SelectStatement>(statement), Now());
    case Statement::Kind::kInsert: {
      const auto& insert = As<InsertStatement>(statement);
      return MakeInsert(insert, insert.execute ? Build(*insert.execute) : nullptr, Now());
    }
    case Statement::Kind::kUpdate:
      return MakeUpdate(As<UpdateStatement>(statement), Now());
    case Statement::Kind::kDelete:
      return MakeDelete(As<DeleteStatement>(statement), Now());
    case Statement::Kind::kTruncate:
      return MakeTruncate(As<TruncateStatement>(statement));
    case Statement::Kind::kCreateTable:
      return MakeCreateTable(As<CreateTableStatement>(statement));
    case Statement::Kind::kCreateIndex:
      return MakeCreateIndex(As<CreateIndexStatement>(statement));
    case Statement::Kind::kCreateView:
      return MakeCreateView(As<CreateViewStatement>(statement));
    case Statement::Kind::kCreateProcedure:
      return MakeCreateProcedure(As<CreateProcedureStatement>(statement));
    case Statement::Kind::kDrop:
      return MakeDrop(As<DropStatement>(statement));
    case Statement::Kind::kAlterTableAdd:
      return MakeAlterTableAdd(As<AlterTableAddStatement>(statement));
    case Statement::Kind::kSetOption:
      return MakeSetOption(As<SetOptionStatement>(statement));
    case Statement::Kind::kTransaction:
      return MakeTransaction(As<TransactionStatement>(statement));
    case Statement::Kind::kPrint:
      return MakePrint(As<PrintStatement>(statement), Now());
    case Statement::Kind::kRaisError:
      return MakeRaisError(As<RaisErrorStatement>(statement), Now());
    case Statement::Kind::kExecuteProcedure:
      return MakeExecuteProcedure(As<ExecuteProcedureStatement>(statement), Now());
    case Statement::Kind::kExecuteText:
      return MakeExecuteText(As<ExecuteTextStatement>(statement), Now());
    default:
      return MakeFlow(statement);
  }
}

InstructionPtr ProgramBuilder::MakeFlow(const Statement& statement) {
  switch (statement.kind) {
    case Statement::Kind::kDeclare:
      return MakeDeclaration(As<DeclareStatement>(statement));
    case Statement::Kind::kSetVariable:
      return MakeSetVariable(As<SetVariableStatement>(statement), Now());
    case Statement::Kind::kIf: {
      const auto& branch = As<IfStatement>(statement);
      const DeclaredVariables visible = Now();
      auto then = Build(*branch.then);
      auto otherwise = branch.otherwise ? Build(*branch.otherwise) : nullptr;
      return MakeIf(branch, std::move(then), std::move(otherwise), visible);
    }
    case Statement::Kind::kWhile: {
      const auto& loop = As<WhileStatement>(statement);
      const DeclaredVariables visible = Now();
      ++loops_;
      auto body = Build(*loop.body);
      --loops_;
      return MakeWhile(loop, std::move(body), visible);
    }
    case Statement::Kind::kBlock:
      return MakeBlock(statement.line, BuildAll(As<BlockStatement>(statement).statements));
    case Statement::Kind::kBreak:
      if (loops_ == 0) Raise(errors::kBreakOutsideWhile);
      return MakeJump(statement.line, Flow::kBreak);
    case Statement::Kind::kContinue:
      if (loops_ == 0) Raise(errors::kContinueOutsideWhile);
      return MakeJump(statement.line, Flow::kContinue);
    case Statement::Kind::kReturn:
      if (As<ReturnStatement>(statement).value && !procedure_)
        Raise(errors::kReturnValueNotAllowed);
      return MakeReturn(As<ReturnStatement>(statement), Now());
    case Statement::Kind::kDeclareCursor:
      return MakeDeclareCursor(As<DeclareCursorStatement>(statement), Now(), program_);
    case Statement::Kind::kFetch:
      return MakeFetch(As<FetchStatement>(statement), Now());
    default:
      return MakeCursor(As<CursorStatement>(statement));
  }
}

InstructionPtr ProgramBuilder::MakeDeclaration(const DeclareStatement& statement) {
  for (const VariableDefinition& variable : statement.variables) {
    if (!variable.table) {
      Declare(variable.name, ResolveTypeName(variable.type, TypeNameUse::kDeclaration,
                                             {1, statement.line, variable.name}));
      continue;
    }
    for (const TablePtr& known : program_->table_variables_) {
      if (SameName(known->name, variable.name))
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
