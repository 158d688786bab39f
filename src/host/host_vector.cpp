// The reference host's ordered list.
#include "host/host_vector.h"

#include "foundation/error.h"

namespace tavcc {

Value HostVector::Item(int index) const {
  if (index < 1 || index > Size()) throw AutomationError(RuntimeError::kSubscriptOutOfRange);
  return elements_[static_cast<size_t>(index) - 1];
}

}  // namespace tavcc
