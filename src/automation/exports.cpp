// The four entry points of the in-process server.

#include "automation/apartment.h"
#include "automation/border/class_factory.h"
#include "automation/border/module.h"
#include "automation/interfaces.h"
#include "automation/registration.h"
#include "automation/runtime/module_runtime.h"

using namespace tavcc::automation;  // the exports have no namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID process_ends) {
  if (reason == DLL_PROCESS_ATTACH) SetModule(module);
  if (reason == DLL_THREAD_DETACH) FreeThreadStorage();
  if (reason == DLL_PROCESS_DETACH) {
    // Whoever unloads the module without asking DllCanUnloadNow would leave COM a spy whose code is
    // gone. Of other threads' spies nothing can be taken back from here.
    if (process_ends == nullptr) LeaveApartment();
    ModuleEnds(process_ends != nullptr);
  }
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID id, REFIID wanted, LPVOID* object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  for (const CreatableClass& cls : CreatableClasses()) {
    if (cls.id == id) return MakeClassFactory(cls.create, wanted, object);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() {
  return LeaveAndCanUnload() ? S_OK : S_FALSE;
}
STDAPI DllRegisterServer() {
  return Register();
}
STDAPI DllUnregisterServer() {
  return Unregister();
}
