// The trap of the public methods: one translator from exceptions to a method's failure value.
#pragma once

#include <optional>
#include <utility>

#include "foundation/error.h"

namespace tavcc {

// The error that is being handled on this thread, as automation's Err object holds it: set while a
// public method's trap runs its failure part, absent otherwise. What is called from there may raise
// and trap errors of its own; PendingErrorKeeper puts the record back.
// Null when there is none; the record lives as long as the trap's failure part.
const AutomationError* PendingError();

// Saves the thread's pending error and restores it at the end of its scope.
class PendingErrorKeeper {
 public:
  PendingErrorKeeper();
  ~PendingErrorKeeper();
  PendingErrorKeeper(const PendingErrorKeeper&) = delete;
  PendingErrorKeeper& operator=(const PendingErrorKeeper&) = delete;

 private:
  const AutomationError* kept_;
};

// Sees the first error that a trap of this thread catches while the watch stands, whatever the
// method then answers. An inner watch keeps what it sees from the outer one.
class TrapWatch {
 public:
  TrapWatch();
  ~TrapWatch();
  TrapWatch(const TrapWatch&) = delete;
  TrapWatch& operator=(const TrapWatch&) = delete;
  const std::optional<AutomationError>& first() const { return first_; }

  // For traps.
  static void Note(const AutomationError& error);

 private:
  std::optional<AutomationError> first_;
  TrapWatch* outer_;
};

namespace internal {
// The exception now being handled as an automation error; one that is no AutomationError becomes
// error 7 (out of memory) or 51 (internal error) with its own text.
AutomationError CurrentError();

// Sets the pending error for the time of a trap's failure part.
class PendingErrorScope {
 public:
  explicit PendingErrorScope(AutomationError error);
  ~PendingErrorScope();
  PendingErrorScope(const PendingErrorScope&) = delete;
  PendingErrorScope& operator=(const PendingErrorScope&) = delete;
  const AutomationError& error() const { return error_; }

 private:
  AutomationError error_;
  const AutomationError* before_;
};
}  // namespace internal

// Runs `body` and returns its result; an error in it makes the result that of `on_error(error)`,
// which may itself raise (that error goes to the caller).
template <class Body, class OnError>
auto Trap(Body&& body, OnError&& on_error) -> decltype(body()) {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    const internal::PendingErrorScope scope(internal::CurrentError());
    return std::forward<OnError>(on_error)(scope.error());
  }
}

}  // namespace tavcc
