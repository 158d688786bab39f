#include "foundation/trap.h"

#include <new>

namespace tavcc {

namespace {
// A bare pointer, as everything is that a thread keeps: on Windows, mingw-w64 frees a thread's
// storage before it would run destructors.
thread_local const AutomationError* pending_error = nullptr;
}  // namespace

const AutomationError* PendingError() {
  return pending_error;
}

PendingErrorKeeper::PendingErrorKeeper() : kept_(pending_error) {}
PendingErrorKeeper::~PendingErrorKeeper() {
  pending_error = kept_;
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
}
PendingErrorScope::~PendingErrorScope() {
  pending_error = before_;
}

}  // namespace internal

}  // namespace tavcc
