// A batch or a procedure's body, ready to run: a tree of instructions over the parsed statements.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "embedded/bind/binder.h"
#include "embedded/session/frame.h"

namespace tavcc::sql {

struct SessionContext;

// How a statement left off.
enum class Flow : uint8_t { kNext, kBreak, kContinue, kReturn };

class Instruction {
 public:
  explicit Instruction(int line) : line_(line) {}
  virtual ~Instruction() = default;

  int line() const { return line_; }
  // Runs the statement. Errors: SqlError; what follows is the session's.
  virtual Flow Execute(SessionContext& session, Frame& frame) = 0;
  // Finds the mistakes that the server finds before it runs a batch, names of missing tables
  // excepted.
  virtual void Prepare(SessionContext&, Frame&) {}
  // Whether the server tells the client how many rows the statement returned or changed.
  virtual bool CountsRows() const { return false; }
  // Statements made of statements have their errors caught inside.
  virtual bool IsControl() const { return false; }

 private:
  int line_;
};

using InstructionPtr = std::unique_ptr<Instruction>;

class Program {
 public:
  const std::vector<VariableInfo>& variables() const { return variables_; }
  const std::vector<TablePtr>& table_variables() const { return table_variables_; }
  const std::vector<InstructionPtr>& body() const { return body_; }

  bool prepared = false;  // Prepare was called for all of the body

 private:
  friend class ProgramBuilder;
  std::shared_ptr<const void> source_;  // keeps the parsed statements
  std::vector<VariableInfo> variables_;
  std::vector<TablePtr> table_variables_;
  std::vector<InstructionPtr> body_;
};

}  // namespace tavcc::sql
