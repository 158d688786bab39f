#include "automation/server.h"

#include <atomic>

#include "foundation/host_services.h"

namespace tavcc::automation {

namespace {

HINSTANCE module_handle = nullptr;
// Apartments count side by side; nothing else is shared between them.
std::atomic<long> living_objects{0};
std::atomic<long> server_locks{0};
thread_local long thread_objects = 0;

}  // namespace

HINSTANCE Module() {
  return module_handle;
}
void SetModule(HINSTANCE module) {
  module_handle = module;
}

void ObjectCreated() {
  ++living_objects;
  ++thread_objects;
}

void ObjectReleased() {
  if (--thread_objects == 0) ReleaseHostObjects();
  --living_objects;
}

void LockServer(bool lock) {
  server_locks += lock ? 1 : -1;
}

bool CanUnload() {
  return living_objects == 0 && server_locks == 0;
}

HRESULT LoadOwnTypeLibrary(ITypeLib** library) {
  wchar_t path[MAX_PATH];
  if (GetModuleFileNameW(module_handle, path, MAX_PATH) == 0) return E_FAIL;
  return LoadTypeLibEx(path, REGKIND_NONE, library);
}

}  // namespace tavcc::automation
