// An object of one of the library's classes as automation sees it: IUnknown, IDispatch, and the
// calls through its own interface, all of them by way of the class registry.
#pragma once

#include <span>
#include <vector>

#include "automation/border/platform.h"
#include "automation/call_trace.h"
#include "automation/com_host.h"
#include "registry/class_registry.h"

namespace tavcc::automation {

// A pointer to an argument or result of an early-bound call, to be read by the type that the class
// registry gives for it.
using RawArgument = void*;

// The part that does not depend on the interface.
class AutomationCore {
 public:
  // Errors: what the host's context raises (see PlugIn).
  AutomationCore(const ClassDescription& cls, const IID& interface_id);
  ~AutomationCore();
  AutomationCore(const AutomationCore&) = delete;
  AutomationCore& operator=(const AutomationCore&) = delete;

  const IID& interface_id() const { return interface_id_; }

  HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept;
  HRESULT GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* ids) noexcept;
  // Arguments are checked before the method runs (see DispatchArguments).
  HRESULT Invoke(DISPID id, WORD kind, const DISPPARAMS* parameters, VARIANT* result,
                 EXCEPINFO* info, UINT* bad_argument) noexcept;

  // An early-bound call of the method in `slot`: each element of `arguments` points at the argument
  // as it was passed; `result` is where the caller wants the result. A null in/out argument or
  // result is E_POINTER. Every error comes back as HRESULT and error information.
  HRESULT Call(int slot, std::span<const RawArgument> arguments, RawArgument result) noexcept;

 private:
  HRESULT InvokeMethod(const Method& method, const DISPPARAMS& parameters, VARIANT* result,
                       UINT* bad_argument);
  // Carries the method out, with a trace of it where one is asked for.
  Value Run(const Method& method, std::vector<Value>& arguments);
  std::string ProgID() const;

  const ClassDescription& class_;
  const IID& interface_id_;
  ComHost host_;
  std::unique_ptr<CallTracer> tracer_;  // null where nobody asks
  std::unique_ptr<PlugIn> object_;
};

// The object of one interface. Derived classes implement the interface's own methods, one line
// each. It tells early-bound callers that its errors come with error information.
template <class Interface>
class AutomationObject : public Interface, public ISupportErrorInfo {
 public:
  AutomationObject(const ClassDescription& cls, const IID& interface_id)
      : core_(cls, interface_id) {}
  virtual ~AutomationObject() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (id == IID_IUnknown || id == IID_IDispatch || id == core_.interface_id()) {
      *object = static_cast<Interface*>(this);
    } else if (id == IID_ISupportErrorInfo) {
      *object = static_cast<ISupportErrorInfo*>(this);
    } else {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale,
                                        ITypeInfo** info) noexcept override {
    return core_.GetTypeInfo(index, locale, info);
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) noexcept override {
    if (id != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    return core_.GetIDsOfNames(names, count, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID interface_id, LCID, WORD kind,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* info,
                                   UINT* bad_argument) noexcept override {
    if (interface_id != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    return core_.Invoke(id, kind, parameters, result, info, bad_argument);
  }

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) noexcept override {
    return id == core_.interface_id() ? S_OK : S_FALSE;
  }

 protected:
  // The call of the method in `slot`; the last argument is the result's place.
  template <class... Arguments>
  HRESULT Call(int slot, Arguments&... arguments) noexcept {
    const RawArgument raw[] = {static_cast<RawArgument>(&arguments)...};
    constexpr size_t kCount = sizeof...(arguments);
    return core_.Call(slot, {raw, kCount - 1}, *static_cast<RawArgument*>(raw[kCount - 1]));
  }

 private:
  AutomationCore core_;
  // An object is used by the one thread of its apartment.
  ULONG references_ = 1;
};

}  // namespace tavcc::automation
