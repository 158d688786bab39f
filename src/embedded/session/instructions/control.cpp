// BEGIN … END, IF, WHILE, BREAK, CONTINUE, RETURN.
#include "embedded/session/instructions/instructions.h"
#include "embedded/session/interpreter.h"

namespace tavcc::sql {
namespace {

class BlockInstruction final : public Instruction {
 public:
  BlockInstruction(int line, std::vector<InstructionPtr> body)
      : Instruction(line), body_(std::move(body)) {}
  bool IsControl() const override { return true; }
  void Prepare(SessionContext& session, Frame& frame) override {
    for (const auto& instruction : body_) instruction->Prepare(session, frame);
  }
  Flow Execute(SessionContext&, Frame& frame) override {
    Flow flow = Flow::kNext;
    frame.interpreter->RunBlock(body_, frame, flow);
    return flow;
  }

 private:
  std::vector<InstructionPtr> body_;
};

class IfInstruction final : public Instruction {
 public:
  IfInstruction(const IfStatement& statement, InstructionPtr then, InstructionPtr otherwise,
                DeclaredVariables visible)
      : Instruction(statement.line),
        condition_(visible, *statement.condition),
        then_(std::move(then)),
        otherwise_(std::move(otherwise)) {}
  bool IsControl() const override { return true; }
  void Prepare(SessionContext& session, Frame& frame) override {
    PrepareDeferred(line(), [&] { condition_.Prepare(session, frame); });
    if (then_) then_->Prepare(session, frame);
    if (otherwise_) otherwise_->Prepare(session, frame);
  }
  Flow Execute(SessionContext& session, Frame& frame) override {
    Instruction* branch = condition_.IsTrue(session, frame) ? then_.get() : otherwise_.get();
    return branch != nullptr ? frame.interpreter->RunOne(*branch, frame) : Flow::kNext;
  }

 private:
  Evaluation condition_;
  InstructionPtr then_, otherwise_;
};

class WhileInstruction final : public Instruction {
 public:
  WhileInstruction(const WhileStatement& statement, InstructionPtr body, DeclaredVariables visible)
      : Instruction(statement.line),
        condition_(visible, *statement.condition),
        body_(std::move(body)) {}
  bool IsControl() const override { return true; }
  void Prepare(SessionContext& session, Frame& frame) override {
    PrepareDeferred(line(), [&] { condition_.Prepare(session, frame); });
    if (body_) body_->Prepare(session, frame);
  }
  Flow Execute(SessionContext& session, Frame& frame) override {
    while (condition_.IsTrue(session, frame)) {
      if (!body_) {
        frame.interpreter->CountWork();
        continue;
      }
      const Flow flow = frame.interpreter->RunOne(*body_, frame);
      if (flow == Flow::kBreak) break;
      if (flow == Flow::kReturn) return flow;
    }
    return Flow::kNext;
  }

 private:
  Evaluation condition_;
  InstructionPtr body_;
};

class JumpInstruction final : public Instruction {
 public:
  JumpInstruction(int line, Flow flow) : Instruction(line), flow_(flow) {}
  Flow Execute(SessionContext&, Frame&) override { return flow_; }

 private:
  const Flow flow_;
};

class ReturnInstruction final : public Instruction {
 public:
  ReturnInstruction(const ReturnStatement& statement, DeclaredVariables visible)
      : Instruction(statement.line) {
    if (statement.value)
      value_.emplace(visible, *statement.value, SqlType{TypeKind::kInt, 0, 0, 0});
  }
  void Prepare(SessionContext& session, Frame& frame) override {
    if (!value_) return;
    PrepareDeferred(line(), [&] { value_->Prepare(session, frame); });
  }
  Flow Execute(SessionContext& session, Frame& frame) override {
    if (value_) {
      const StoredValue value = value_->Value(session, frame).value;
      frame.return_value = value.IsNull() ? 0 : value.integer();
    }
    return Flow::kReturn;
  }

 private:
  std::optional<Evaluation> value_;
};

}  // namespace

InstructionPtr MakeBlock(int line, std::vector<InstructionPtr> body) {
  return std::make_unique<BlockInstruction>(line, std::move(body));
}

InstructionPtr MakeIf(const IfStatement& statement, InstructionPtr then, InstructionPtr otherwise,
                      DeclaredVariables visible) {
  return std::make_unique<IfInstruction>(statement, std::move(then), std::move(otherwise), visible);
}

InstructionPtr MakeWhile(const WhileStatement& statement, InstructionPtr body,
                         DeclaredVariables visible) {
  return std::make_unique<WhileInstruction>(statement, std::move(body), visible);
}

InstructionPtr MakeJump(int line, Flow flow) {
  return std::make_unique<JumpInstruction>(line, flow);
}

InstructionPtr MakeInstruction(const ReturnStatement& statement, DeclaredVariables visible) {
  return std::make_unique<ReturnInstruction>(statement, visible);
}

}  // namespace tavcc::sql
