// The four entry points of the in-process server.

#include "automation/border/class_factory.h"
#include "automation/border/module.h"
#include "automation/interfaces.h"
#include "automation/registration.h"

using namespace tavcc::automation;  // the exports have no namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) SetModule(module);
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
  return CanUnload() ? S_OK : S_FALSE;
}
STDAPI DllRegisterServer() {
  return Register();
}
STDAPI DllUnregisterServer() {
  return Unregister();
}
