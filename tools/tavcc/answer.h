// One call as the shell sees it: made in a host transaction, and judged as passed, refused or
// failed.
//
// A call failed when anything below its rules failed while it ran (a statement, the host, the
// store), or an error was trapped in them, whatever the method then answered: what it did may be
// half of what it should have done. A refusal is the answer of a call in which nothing failed. No
// rule expects a statement to fail; a text without its translation is no failure.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "foundation/plug_in.h"
#include "host/erp.h"
#include "registry/class_registry.h"
#include "scenario/embedded_backend.h"
#include "tavcc/command.h"

namespace tavcc {

class Recorder;

struct Answer {
  Exit verdict = Exit::kFailed;
  Value result;
  std::vector<Value> arguments;  // one per parameter, the in/out ones as the call left them
  std::optional<AutomationError> error;
  std::optional<Failure> failure;           // the first one that made the call fail
  std::vector<LoggedStatement> statements;  // what the call sent
};

// The host's transaction. What is done in it is undone unless it is kept.
class HostTransaction {
 public:
  // One that only reads waits for nobody, and leaves nothing in any case.
  HostTransaction(Erp& erp, bool only_reads);
  ~HostTransaction();
  HostTransaction(const HostTransaction&) = delete;
  HostTransaction& operator=(const HostTransaction&) = delete;

  // Errors: those of keeping it, which say so.
  void Keep();

 private:
  Erp& erp_;
  const bool only_reads_;
  bool ended_ = false;
};

// One object of a class, as a host holds it for its calls.
class CalledObject {
 public:
  // What it is called for is recorded, where there is a recorder.
  CalledObject(Erp& erp, const ClassDescription& cls, Recorder* recorder = nullptr)
      : erp_(erp), cls_(cls), recorder_(recorder) {}

  // Calls a method, in the transaction that stands. `observer` sees each statement as it is sent.
  // Errors: ArgumentError and the like before the method ran. What the method itself raises, and
  // what the making of the object does, is in the answer.
  Answer Call(const Method& method, std::vector<Value> arguments,
              const StatementObserver& observer);

 private:
  Erp& erp_;
  const ClassDescription& cls_;
  Recorder* const recorder_;
  std::unique_ptr<PlugIn> object_;  // made for the first call
};

// Shows an answer while the call can still be undone.
using AnswerPrinter = std::function<void(const Answer&)>;

// Calls the method on an object of its own, as a host does for each use. What it wrote is kept when
// it passed or refused and undone when it failed; a method that only reads leaves nothing in any
// case. `observer` sees each statement as it is sent, `print` the answer before it is kept.
// Errors: those of the call and of `print`: nothing is kept then; those of keeping it.
Answer CallInTransaction(Erp& erp, const ClassDescription& cls, const Method& method,
                         std::vector<Value> arguments, const StatementObserver& observer = {},
                         const AnswerPrinter& print = nullptr);

// The verdict in the result, and for CheckBill, which tells it in words only, in its message. A
// method that answers no verdict (a price, a period, whether a check is needed) passes by
// answering.
Exit VerdictOf(const Method& method, const Value& result, std::span<const Value> arguments);

// The verdict in an error that the method raised: the refusal of a BeforeDel hook is error -5; any
// other error is a failure.
Exit VerdictOf(const Method& method, const AutomationError& error);

// What a call said: the first text that it gave back, of a batch what became of its bills or why it
// ended. Empty where it said nothing.
std::string MessageOf(const Method& method, std::span<const Value> arguments);

// "passed", "refused", "failed".
const char* VerdictText(Exit verdict);

}  // namespace tavcc
