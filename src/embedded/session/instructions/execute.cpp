// EXEC of a procedure, EXEC(text).
#include "embedded/session/instructions/instructions.h"
#include "embedded/session/interpreter.h"
#include "embedded/types/stored_conversions.h"

namespace tavcc::sql {
namespace {

constexpr size_t kNone = static_cast<size_t>(-1);

class ExecuteProcedureInstruction final : public Instruction {
 public:
  ExecuteProcedureInstruction(const ExecuteProcedureStatement& statement, DeclaredVariables visible)
      : Instruction(statement.line), statement_(statement), visible_(visible) {
    for (const ExecuteArgument& argument : statement.arguments) {
      const auto* variable = argument.value ? As<VariableExpression>(*argument.value) : nullptr;
      if (argument.output && variable == nullptr) Raise(errors::kOutputOfConstant);
      variables_.push_back(variable != nullptr ? visible.IndexOf(variable->name) : kNone);
      values_.push_back(argument.value && variable == nullptr
                            ? std::make_unique<Evaluation>(visible, *argument.value, std::nullopt)
                            : nullptr);
    }
    if (!statement.return_variable.empty()) return_ = visible.IndexOf(statement.return_variable);
  }

  Flow Execute(SessionContext& session, Frame& frame) override {
    std::vector<CallArgument> arguments;
    for (size_t i = 0; i < statement_.arguments.size(); ++i) {
      const ExecuteArgument& argument = statement_.arguments[i];
      CallArgument call{argument.parameter, {}, argument.value == nullptr, argument.output};
      if (variables_[i] != kNone) {
        call.value =
            TypedValue{visible_.span()[variables_[i]].type, frame.variables[variables_[i]]};
      } else if (values_[i]) {
        call.value = values_[i]->Value(session, frame);
      }
      arguments.push_back(std::move(call));
    }
    const int64_t result = frame.interpreter->Call(statement_.name, arguments);
    for (size_t i = 0; i < arguments.size(); ++i) {
      if (arguments[i].output) SetVariable(frame, variables_[i], arguments[i].value);
    }
    if (return_ != kNone) {
      SetVariable(frame, return_, TypedValue{kIntType, StoredValue(result)});
    }
    return Flow::kNext;
  }

 private:
  void SetVariable(Frame& frame, size_t index, const TypedValue& value) const {
    frame.variables[index] = ConvertStored(value.value, value.type, visible_.span()[index].type);
  }

  const ExecuteProcedureStatement& statement_;
  const DeclaredVariables visible_;
  std::vector<size_t> variables_;
  std::vector<std::unique_ptr<Evaluation>> values_;
  size_t return_ = kNone;
};

class ExecuteTextInstruction final : public Instruction {
 public:
  ExecuteTextInstruction(const ExecuteTextStatement& statement, DeclaredVariables visible)
      : Instruction(statement.line),
        text_(visible, *statement.text, TextType(TypeKind::kNVarChar, SqlType::kMax)) {}
  void Prepare(SessionContext& session, Frame& frame) override {
    PrepareDeferred(line(), [&] { text_.Prepare(session, frame); });
  }
  Flow Execute(SessionContext& session, Frame& frame) override {
    const StoredValue text = text_.Value(session, frame).value;
    if (!text.IsNull()) frame.interpreter->RunText(text.text());
    return Flow::kNext;
  }

 private:
  Evaluation text_;
};

}  // namespace

InstructionPtr MakeInstruction(const ExecuteProcedureStatement& statement,
                               DeclaredVariables visible) {
  return std::make_unique<ExecuteProcedureInstruction>(statement, visible);
}

InstructionPtr MakeInstruction(const ExecuteTextStatement& statement, DeclaredVariables visible) {
  return std::make_unique<ExecuteTextInstruction>(statement, visible);
}

}  // namespace tavcc::sql
