// DECLARE with initial values, SET @v = ….
#include "embedded/catalog/names.h"
#include "embedded/session/instructions/instructions.h"
#include "embedded/session/session_context.h"

namespace tavcc::sql {

size_t DeclaredVariables::IndexOf(const std::string& name) const {
  const int index = IndexByName(span(), name);
  if (index < 0) Raise(errors::kUndeclaredVariable, name);
  return static_cast<size_t>(index);
}

namespace {

class SetInstruction final : public Instruction {
 public:
  SetInstruction(int line, DeclaredVariables visible, const std::string& name,
                 const Expression& value)
      : Instruction(line),
        index_(visible.IndexOf(name)),
        value_(visible, value, visible.span()[index_].type) {}
  void Prepare(SessionContext& session, Frame& frame) override {
    PrepareDeferred(line(), [&] { value_.Prepare(session, frame); });
  }
  Flow Execute(SessionContext& session, Frame& frame) override {
    frame.variables[index_] = value_.Value(session, frame).value;
    session.state.row_count = 1;
    return Flow::kNext;
  }

 private:
  const size_t index_;
  Evaluation value_;
};

}  // namespace

InstructionPtr MakeDeclare(const DeclareStatement& statement, DeclaredVariables visible) {
  std::vector<InstructionPtr> body;
  for (const VariableDefinition& variable : statement.variables) {
    if (!variable.initial) continue;
    body.push_back(std::make_unique<SetInstruction>(statement.line, visible, variable.name,
                                                    *variable.initial));
  }
  return MakeBlock(statement.line, std::move(body));
}

InstructionPtr MakeInstruction(const SetVariableStatement& statement, DeclaredVariables visible) {
  return std::make_unique<SetInstruction>(statement.line, visible, statement.variable,
                                          *statement.value);
}

}  // namespace tavcc::sql
