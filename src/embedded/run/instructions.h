// The instructions of a program: one family of statements for each source of the same name.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "embedded/run/cursor.h"
#include "embedded/run/plan.h"
#include "embedded/run/program.h"

namespace tavcc::sql {

// What a statement sees of its program: the variables that were declared before it.
struct Visible {
  const std::vector<VariableInfo>* variables = nullptr;
  size_t count = 0;
  std::span<const VariableInfo> span() const { return {variables->data(), count}; }
};

// Some values, and perhaps a condition, that are computed without a table.
class Evaluation {
 public:
  Evaluation(Visible visible, const Condition& condition)
      : visible_(visible), condition_(&condition) {}
  // `type`: that the value is converted to; its own when empty.
  Evaluation(Visible visible, const Expression& expression, std::optional<SqlType> type)
      : visible_(visible), expression_(&expression), type_(type) {}

  void Prepare(Engine& engine, Frame& frame) { Find(engine, frame); }
  bool Test(Engine& engine, Frame& frame);  // false for unknown
  TypedValue Value(Engine& engine, Frame& frame);

 private:
  Plan& Find(Engine& engine, const Frame& frame);

  Visible visible_;
  const Condition* condition_ = nullptr;
  const Expression* expression_ = nullptr;
  std::optional<SqlType> type_;
  PlanCache plans_;
};

// Runs a prepared change of rows, whole or not at all; sets the row count and the identity.
void RunWrite(Engine& engine, Plan& plan, Frame& frame, std::span<const StoredValue> row = {});
Rows ReadRows(Engine& engine, Plan& plan, Frame& frame);

// Prepares and lets the errors pass that the server leaves until the statement runs: names of
// objects that are not there yet, and what depends on SET IDENTITY_INSERT.
template <class Prepare>
void PrepareDeferred(int line, Prepare prepare) {
  try {
    prepare();
  } catch (SqlError& error) {
    if (error.number == 208 || error.number == 544 || error.number == 8101) return;
    if (error.line == 0) error.line = line;
    throw;
  }
}

// query.cpp
InstructionPtr MakeSelect(const SelectStatement& statement, Visible visible);
// write.cpp
InstructionPtr MakeInsert(const InsertStatement& statement, InstructionPtr execute,
                          Visible visible);
InstructionPtr MakeUpdate(const UpdateStatement& statement, Visible visible);
InstructionPtr MakeDelete(const DeleteStatement& statement, Visible visible);
// read_once.cpp
// Whether `first` fills a table variable that `second` alone reads. `table_variables`: those that
// the statements of the program name. Both must stand in the program's body itself, one right after
// the other, so that neither can run without the other or twice.
bool IsReadOnce(const Statement& first, const Statement& second,
                const std::vector<std::string>& table_variables);
// The two statements; `insert` and `remove` are their own instructions.
InstructionPtr MakeReadOnce(const InsertStatement& insert_statement, InstructionPtr insert,
                            const DeleteStatement& delete_statement, InstructionPtr remove,
                            Visible visible);
// define.cpp
InstructionPtr MakeCreateTable(const CreateTableStatement& statement);
InstructionPtr MakeAlterTableAdd(const AlterTableAddStatement& statement);
InstructionPtr MakeCreateIndex(const CreateIndexStatement& statement);
InstructionPtr MakeCreateView(const CreateViewStatement& statement);
InstructionPtr MakeCreateProcedure(const CreateProcedureStatement& statement);
InstructionPtr MakeDrop(const DropStatement& statement);
InstructionPtr MakeTruncate(const TruncateStatement& statement);
// control.cpp
InstructionPtr MakeBlock(int line, std::vector<InstructionPtr> body);
InstructionPtr MakeIf(const IfStatement& statement, InstructionPtr then, InstructionPtr otherwise,
                      Visible visible);
InstructionPtr MakeWhile(const WhileStatement& statement, InstructionPtr body, Visible visible);
InstructionPtr MakeJump(int line, Flow flow);
InstructionPtr MakeReturn(const ReturnStatement& statement, Visible visible);
// variable.cpp
InstructionPtr MakeDeclare(const DeclareStatement& statement, Visible visible);
InstructionPtr MakeSetVariable(const SetVariableStatement& statement, Visible visible);
// cursor.cpp
InstructionPtr MakeDeclareCursor(const DeclareCursorStatement& statement, Visible visible,
                                 std::weak_ptr<Program> program);
InstructionPtr MakeCursor(const CursorStatement& statement);
InstructionPtr MakeFetch(const FetchStatement& statement, Visible visible);
// execute.cpp
InstructionPtr MakeExecuteProcedure(const ExecuteProcedureStatement& statement, Visible visible);
InstructionPtr MakeExecuteText(const ExecuteTextStatement& statement, Visible visible);
// session_statement.cpp
InstructionPtr MakeSetOption(const SetOptionStatement& statement);
InstructionPtr MakeTransaction(const TransactionStatement& statement);
InstructionPtr MakePrint(const PrintStatement& statement, Visible visible);
InstructionPtr MakeRaisError(const RaisErrorStatement& statement, Visible visible);

}  // namespace tavcc::sql
