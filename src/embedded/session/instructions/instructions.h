// The instructions of a program: one family of statements for each source of the same name.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "embedded/session/cursor.h"
#include "embedded/session/plan_run.h"
#include "embedded/session/program.h"

namespace tavcc::sql {

// What a statement sees of its program: the variables that were declared before it.
struct DeclaredVariables {
  const std::vector<VariableInfo>* variables = nullptr;
  size_t count = 0;
  std::span<const VariableInfo> span() const { return {variables->data(), count}; }
  // Errors: 137.
  size_t IndexOf(const std::string& name) const;
};

// Some values, and perhaps a condition, that are computed without a table.
class Evaluation {
 public:
  Evaluation(DeclaredVariables visible, const Condition& condition)
      : visible_(visible), condition_(&condition) {}
  // `type`: that the value is converted to; its own when empty.
  Evaluation(DeclaredVariables visible, const Expression& expression, std::optional<SqlType> type)
      : visible_(visible), expression_(&expression), type_(type) {}

  void Prepare(SessionContext& session, Frame& frame) { Find(session, frame); }
  bool IsTrue(SessionContext& session, Frame& frame);  // false for unknown
  TypedValue Value(SessionContext& session, Frame& frame);

 private:
  ValuePlan& Find(SessionContext& session, const Frame& frame);

  DeclaredVariables visible_;
  const Condition* condition_ = nullptr;
  const Expression* expression_ = nullptr;
  std::optional<SqlType> type_;
  PlanCache<ValuePlan> plans_;
};

// These run a plan, whole or not at all, and set the row count; an INSERT also the identity.
void RunInsert(SessionContext& session, InsertPlan& plan, Frame& frame,
               std::span<const StoredValue> row = {});
void RunChange(SessionContext& session, ChangePlan& plan, Frame& frame,
               std::span<const StoredValue> row = {});
Rows ReadRows(SessionContext& session, QueryPlan& plan, Frame& frame);
std::shared_ptr<const ResultShape> ShapeOf(const BoundQuery& query);

// Prepares and lets the errors pass that the server leaves until the statement runs: names of
// objects that are not there yet, and what depends on SET IDENTITY_INSERT.
template <class Prepare>
void PrepareDeferred(int line, Prepare prepare) {
  try {
    prepare();
  } catch (SqlError& error) {
    switch (error.number) {
      case errors::kInvalidObjectName:
      case errors::kExplicitIdentity:
      case errors::kExplicitIdentityWithoutList:
        return;
      default:
        break;
    }
    if (error.line == 0) error.line = line;
    throw;
  }
}

// cursor_statements.cpp
// The number of the row of `table` on which the cursor stands: WHERE CURRENT OF. Errors: 16916,
// 16917, 16929, 16931, 16933.
StoredValue CurrentRow(SessionContext& session, const std::string& cursor, const TablePtr& table);

// query.cpp
InstructionPtr MakeInstruction(const SelectStatement& statement, DeclaredVariables visible);
// write.cpp
InstructionPtr MakeInsert(const InsertStatement& statement, InstructionPtr execute,
                          DeclaredVariables visible);
InstructionPtr MakeInstruction(const UpdateStatement& statement, DeclaredVariables visible);
InstructionPtr MakeInstruction(const DeleteStatement& statement, DeclaredVariables visible);
// read_once.cpp
// Whether `first` fills a table variable that `second` alone reads. `table_variables`: those that
// the statements of the program name. Both must stand in the program's body itself, one right after
// the other, so that neither can run without the other or twice.
bool IsReadOnce(const Statement& first, const Statement& second,
                const std::vector<std::string>& table_variables);
// The two statements; `insert` and `remove` are their own instructions.
InstructionPtr MakeReadOnce(const InsertStatement& insert_statement, InstructionPtr insert,
                            const DeleteStatement& delete_statement, InstructionPtr remove,
                            DeclaredVariables visible);
// define.cpp
InstructionPtr MakeInstruction(const CreateTableStatement& statement, DeclaredVariables visible);
InstructionPtr MakeInstruction(const AlterTableAddStatement& statement, DeclaredVariables visible);
InstructionPtr MakeInstruction(const CreateIndexStatement& statement, DeclaredVariables visible);
InstructionPtr MakeInstruction(const CreateViewStatement& statement, DeclaredVariables visible);
InstructionPtr MakeInstruction(const CreateProcedureStatement& statement,
                               DeclaredVariables visible);
InstructionPtr MakeInstruction(const DropStatement& statement, DeclaredVariables visible);
InstructionPtr MakeInstruction(const TruncateStatement& statement, DeclaredVariables visible);
// control.cpp
InstructionPtr MakeBlock(int line, std::vector<InstructionPtr> body);
InstructionPtr MakeIf(const IfStatement& statement, InstructionPtr then, InstructionPtr otherwise,
                      DeclaredVariables visible);
InstructionPtr MakeWhile(const WhileStatement& statement, InstructionPtr body,
                         DeclaredVariables visible);
InstructionPtr MakeJump(int line, Flow flow);
InstructionPtr MakeInstruction(const ReturnStatement& statement, DeclaredVariables visible);
// variable.cpp
InstructionPtr MakeDeclare(const DeclareStatement& statement, DeclaredVariables visible);
InstructionPtr MakeInstruction(const SetVariableStatement& statement, DeclaredVariables visible);
// cursor_query.cpp, cursor_statements.cpp
InstructionPtr MakeDeclareCursor(const DeclareCursorStatement& statement, DeclaredVariables visible,
                                 std::weak_ptr<Program> program);
InstructionPtr MakeInstruction(const CursorStatement& statement, DeclaredVariables visible);
InstructionPtr MakeInstruction(const FetchStatement& statement, DeclaredVariables visible);
// execute.cpp
InstructionPtr MakeInstruction(const ExecuteProcedureStatement& statement,
                               DeclaredVariables visible);
InstructionPtr MakeInstruction(const ExecuteTextStatement& statement, DeclaredVariables visible);
// session_statement.cpp
InstructionPtr MakeInstruction(const SetOptionStatement& statement, DeclaredVariables visible);
InstructionPtr MakeInstruction(const TransactionStatement& statement, DeclaredVariables visible);
InstructionPtr MakeInstruction(const PrintStatement& statement, DeclaredVariables visible);
InstructionPtr MakeInstruction(const RaisErrorStatement& statement, DeclaredVariables visible);

}  // namespace tavcc::sql
