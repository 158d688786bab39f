// Statements.
#include "embedded/syntax/print_impl.h"

namespace tavcc::sql {

// ---- Statements that change rows ----

void Printer::AddInsert(const InsertStatement& insert) {
  Open("insert");
  Add(insert.table);
  if (!insert.columns.empty()) Add(insert.columns);
  for (const auto& row : insert.rows) {
    Open("row");
    AddAll(row);
    Close();
  }
  if (insert.query) Add(*insert.query);
  if (insert.execute) Add(*insert.execute);
  Close();
}

void Printer::AddUpdate(const UpdateStatement& update) {
  Open("update");
  AddTop(update.top);
  Add(update.target);
  for (const Assignment& assignment : update.assignments) {
    Open("set");
    if (!assignment.variable.empty()) Word(assignment.variable);
    if (!assignment.column.empty()) Add(assignment.column_name);
    Add(assignment.value.get());
    Close();
  }
  AddSources(update.from);
  AddWhere(update.where);
  Close();
}

void Printer::AddDelete(const DeleteStatement& statement) {
  Open("delete");
  AddTop(statement.top);
  Add(statement.target);
  AddSources(statement.from);
  AddWhere(statement.where);
  Close();
}

// ---- Statements that steer ----

void Printer::AddCall(const ExecuteProcedureStatement& call) {
  Open("exec");
  if (!call.return_variable.empty()) Word(call.return_variable + "=");
  Add(call.name);
  for (const ExecuteArgument& argument : call.arguments) {
    const bool bare = argument.parameter.empty() && !argument.output;
    if (!bare) Open(argument.parameter.empty() ? "argument" : argument.parameter);
    Add(argument.value.get());
    if (argument.output) Word("output");
    if (!bare) Close();
  }
  Close();
}

// False when the statement is of another family.
bool Printer::AddProcedural(const Statement& statement) {
  switch (statement.kind) {
    case Statement::Kind::kBreak:
      Open("break");
      break;
    case Statement::Kind::kContinue:
      Open("continue");
      break;
    case Statement::Kind::kReturn:
      Open("return");
      if (To<ReturnStatement>(statement).value) Add(To<ReturnStatement>(statement).value.get());
      break;
    case Statement::Kind::kPrint:
      Open("print");
      Add(To<PrintStatement>(statement).value.get());
      break;
    case Statement::Kind::kRaisError:
      Open("raiserror");
      AddAll(To<RaisErrorStatement>(statement).arguments);
      break;
    case Statement::Kind::kDeclareCursor:
      Open("declare-cursor");
      Word(To<DeclareCursorStatement>(statement).name);
      Add(*To<DeclareCursorStatement>(statement).query);
      break;
    case Statement::Kind::kCursor: {
      const auto& cursor = To<CursorStatement>(statement);
      constexpr std::string_view kWords[] = {"open", "close", "deallocate"};
      Open(std::string(kWords[static_cast<size_t>(cursor.what)]));
      Word(cursor.name);
      break;
    }
    case Statement::Kind::kFetch:
      Open("fetch");
      Word(To<FetchStatement>(statement).cursor);
      for (const std::string& variable : To<FetchStatement>(statement).variables) Word(variable);
      break;
    case Statement::Kind::kExecuteProcedure:
      AddCall(To<ExecuteProcedureStatement>(statement));
      return true;
    case Statement::Kind::kExecuteText:
      Open("exec-text");
      Add(To<ExecuteTextStatement>(statement).text.get());
      break;
    case Statement::Kind::kTransaction: {
      const auto& transaction = To<TransactionStatement>(statement);
      constexpr std::string_view kWords[] = {"begin", "commit", "rollback", "save"};
      Open(std::string(kWords[static_cast<size_t>(transaction.what)]) + "-transaction");
      if (!transaction.name.empty()) Word(transaction.name);
      break;
    }
    case Statement::Kind::kSetVariable:
      Open("set");
      Word(To<SetVariableStatement>(statement).variable);
      Add(To<SetVariableStatement>(statement).value.get());
      break;
    case Statement::Kind::kSetOption:
      Open("set-option");
      Word(To<SetOptionStatement>(statement).name);
      Word("[" + To<SetOptionStatement>(statement).value + "]");
      break;
    default:
      return false;
  }
  Close();
  return true;
}

// The WITH before a statement that changes rows; null for others.
const WithClause* WithOf(const Statement& statement) {
  switch (statement.kind) {
    case Statement::Kind::kInsert:
      return &To<InsertStatement>(statement).with;
    case Statement::Kind::kUpdate:
      return &To<UpdateStatement>(statement).with;
    case Statement::Kind::kDelete:
      return &To<DeleteStatement>(statement).with;
    default:
      return nullptr;
  }
}

void Printer::Add(const Statement& statement) {
  if (AddDefinition(statement) || AddProcedural(statement)) return;
  const WithClause* const with = WithOf(statement);
  if (with == nullptr || with->tables.empty()) return AddPlain(statement);
  AddWith(*with);
  AddPlain(statement);
  Close();
}

void Printer::AddPlain(const Statement& statement) {
  switch (statement.kind) {
    case Statement::Kind::kSelect:
      Add(*To<SelectStatement>(statement).query);
      return;
    case Statement::Kind::kInsert:
      AddInsert(To<InsertStatement>(statement));
      return;
    case Statement::Kind::kUpdate:
      AddUpdate(To<UpdateStatement>(statement));
      return;
    case Statement::Kind::kDelete:
      AddDelete(To<DeleteStatement>(statement));
      return;
    case Statement::Kind::kTruncate:
      Open("truncate");
      Add(To<TruncateStatement>(statement).table);
      break;
    case Statement::Kind::kIf: {
      const auto& branch = To<IfStatement>(statement);
      Open("if");
      Add(branch.condition.get());
      Add(*branch.then);
      if (branch.otherwise) Add(*branch.otherwise);
      break;
    }
    case Statement::Kind::kWhile:
      Open("while");
      Add(To<WhileStatement>(statement).condition.get());
      Add(*To<WhileStatement>(statement).body);
      break;
    case Statement::Kind::kBlock:
      Open("begin");
      for (const StatementPtr& inner : To<BlockStatement>(statement).statements) Add(*inner);
      break;
    default:
      return;
  }
  Close();
}

void Printer::Add(const std::vector<StatementPtr>& statements) {
  for (const StatementPtr& statement : statements) {
    Line();
    Add(*statement);
  }
}

std::string Print(const Batch& batch, PrintSlots slots) {
  Printer printer(slots);
  printer.Add(batch.statements);
  return printer.Take();
}

}  // namespace tavcc::sql
