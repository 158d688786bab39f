// The four entry points of an in-process server, and its class factory.

#include "automation/interfaces.h"
#include "automation/registration.h"
#include "automation/server.h"

namespace tavcc::automation {

namespace {

class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const CreatableClass& cls) : class_(cls) { ObjectCreated(); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_IClassFactory) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override {
    return static_cast<ULONG>(InterlockedIncrement(&references_));
  }
  ULONG STDMETHODCALLTYPE Release() noexcept override {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID wanted,
                                           void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    return outer != nullptr ? CLASS_E_NOAGGREGATION : class_.create(wanted, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override {
    tavcc::automation::LockServer(lock != FALSE);
    return S_OK;
  }

 private:
  virtual ~ClassFactory() { ObjectReleased(); }

  const CreatableClass& class_;
  LONG references_ = 1;
};

}  // namespace

}  // namespace tavcc::automation

using namespace tavcc::automation;  // the exports below have no namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) SetModule(module);
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID id, REFIID wanted, LPVOID* object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  for (const CreatableClass& cls : CreatableClasses()) {
    if (cls.id != id) continue;
    auto* factory = new (std::nothrow) ClassFactory(cls);
    if (factory == nullptr) return E_OUTOFMEMORY;
    const HRESULT result = factory->QueryInterface(wanted, object);
    factory->Release();
    return result;
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
