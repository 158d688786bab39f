#include "automation/border/class_factory.h"

#include <new>

#include "automation/border/module.h"

namespace tavcc::automation {

namespace {

class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(CreateFunction create) : create_(create) { ObjectCreated(); }

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
    return outer != nullptr ? CLASS_E_NOAGGREGATION : create_(wanted, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override {
    tavcc::automation::LockServer(lock != FALSE);
    return S_OK;
  }

 private:
  virtual ~ClassFactory() { ObjectReleased(); }

  CreateFunction create_;
  LONG references_ = 1;
};

}  // namespace

HRESULT MakeClassFactory(CreateFunction create, REFIID wanted, void** factory) {
  if (factory == nullptr) return E_POINTER;
  *factory = nullptr;
  auto* made = new (std::nothrow) ClassFactory(create);
  if (made == nullptr) return E_OUTOFMEMORY;
  const HRESULT result = made->QueryInterface(wanted, factory);
  made->Release();
  return result;
}

}  // namespace tavcc::automation
