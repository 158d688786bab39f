// The four entry points of the reference host's module.
//
// It registers under the host's and ADO's own ProgIDs, so it is for machines that have neither:
// test machines. Never register it beside a real host.

#include "automation/border/class_keys.h"
#include "automation/border/module.h"
#include "host/automation/classes.h"

using namespace tavcc::automation;  // the exports have no namespace
using tavcc::host_automation::HostClass;
using tavcc::host_automation::HostClasses;

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) SetModule(module);
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID id, REFIID wanted, LPVOID* object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  for (const HostClass& cls : HostClasses()) {
    if (cls.id == id) return MakeClassFactory(cls.create, wanted, object);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() {
  return CanUnload() ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() {
  const std::wstring path = ModulePath(Module());
  for (const HostClass& cls : HostClasses()) {
    const HRESULT result = WriteClassKeys({cls.prog_id, cls.id, path});
    if (FAILED(result)) return result;
  }
  return S_OK;
}

STDAPI DllUnregisterServer() {
  HRESULT result = S_OK;
  for (const HostClass& cls : HostClasses()) {
    const HRESULT removed = RemoveClassKeys({cls.prog_id, cls.id, L""});
    if (FAILED(removed)) result = removed;
  }
  return result;
}
