#include "foundation/trap.h"

#include <new>

namespace tavcc {

namespace {
// A bare pointer, as everything is that a thread keeps: on Windows, mingw-w64 frees a thread's
// storage before it would run destructors.
thread_local const AutomationError* pending_error = nullptr;
thread_local TrapWatch* innermost_watch = nullptr;
}  // namespace

const AutomationError* PendingError() {
  return pending_error;
}

PendingErrorKeeper::PendingErrorKeeper() : kept_(pending_error) {}
PendingErrorKeeper::~PendingErrorKeeper() {
  pending_error = kept_;
}

TrapWatch::TrapWatch() : outer_(innermost_watch) {
  innermost_watch = this;
}
TrapWatch::~TrapWatch() {
  innermost_watch = outer_;
}

void TrapWatch::Note(const AutomationError& error) {
  if (innermost_watch != nullptr && !innermost_watch->first_) innermost_watch->first_ = error;
}

namespace internal {

AutomationError CurrentError() {
  try {
    throw;
  } catch (const AutomationError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return AutomationError(RuntimeError::kOutOfMemory);
  } catch (const std::exception& error) {
    return AutomationError(RuntimeError::kInternalError, error.what());
  } catch (...) {
    return AutomationError(RuntimeError::kInternalError);
  }
}

PendingErrorScope::PendingErrorScope(AutomationError error)
    : error_(std::move(error)), before_(pending_error) {
  pending_error = &error_;
  TrapWatch::Note(error_);
}
PendingErrorScope::~PendingErrorScope() {
  pending_error = before_;
}

}  // namespace internal

}  // namespace tavcc
