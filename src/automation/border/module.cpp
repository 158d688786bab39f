#include "automation/border/module.h"

#include <atomic>

namespace tavcc::automation {

namespace {

HINSTANCE module_handle = nullptr;
// Apartments count side by side; nothing else is shared between them.
std::atomic<long> living_objects{0};
std::atomic<long> server_locks{0};

}  // namespace

HINSTANCE Module() {
  return module_handle;
}
void SetModule(HINSTANCE module) {
  module_handle = module;
}

void ObjectCreated() {
  ++living_objects;
}
void ObjectReleased() {
  --living_objects;
}
long LivingObjects() {
  return living_objects;
}
void LockServer(bool lock) {
  server_locks += lock ? 1 : -1;
}
bool CanUnload() {
  return living_objects == 0 && server_locks == 0;
}

}  // namespace tavcc::automation
