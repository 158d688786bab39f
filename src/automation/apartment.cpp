#include "automation/apartment.h"

#include <array>
#include <atomic>
#include <optional>
#include <utility>

#include "automation/border/border.h"
#include "automation/border/module.h"
#include "foundation/host_services.h"
#include "foundation/text.h"

namespace tavcc::automation {

namespace {

struct Apartment {
  long objects = 0;
  std::optional<LateBound> global;
  std::optional<ULARGE_INTEGER> spy;                 // what takes the spy back, while it stands
  std::array<std::optional<CLSID>, kRoles> classes;  // as the registry named them
};

// A bare pointer: see foundation/trap.cpp.
thread_local Apartment* apartment = nullptr;

// Threads on which a spy stands: its code is in this module.
std::atomic<long> watched_threads{0};

void EndWatch() {
  if (apartment == nullptr || !apartment->spy) return;
  CoRevokeInitializeSpy(*std::exchange(apartment->spy, std::nullopt));
  --watched_threads;
}

// Told by COM of each initialization of its thread and each end of one. One for all threads, and
// without a count: it stands as long as the module.
class Spy final : public IInitializeSpy {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_IInitializeSpy) return E_NOINTERFACE;
    *object = static_cast<IInitializeSpy*>(this);
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 1; }
  ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }

  HRESULT STDMETHODCALLTYPE PreInitialize(DWORD, DWORD) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE PostInitialize(HRESULT result, DWORD, DWORD) noexcept override {
    return result;
  }
  // The last initialization ends: COM still works, and may unload this module right afterwards.
  HRESULT STDMETHODCALLTYPE PreUninitialize(DWORD initializations) noexcept override {
    if (initializations <= 1) LeaveApartment();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE PostUninitialize(DWORD) noexcept override { return S_OK; }
};

Spy spy;

void BeginWatch() {
  ULARGE_INTEGER cookie{};
  const HRESULT result = CoRegisterInitializeSpy(&spy, &cookie);
  if (FAILED(result)) RaiseHresult(result);
  if (apartment == nullptr) apartment = new Apartment;
  apartment->spy = cookie;
  ++watched_threads;
}

HRESULT Create(REFCLSID id, ComPtr<IDispatch>& object) {
  return CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                          reinterpret_cast<void**>(object.GetAddressOf()));
}

// Creates what the registry names now, unless that has just failed.
HRESULT LookUpAndCreate(const wchar_t* prog_id, std::optional<CLSID>& known, HRESULT failure,
                        ComPtr<IDispatch>& object) {
  CLSID id;
  const HRESULT result = CLSIDFromProgID(prog_id, &id);
  if (FAILED(result)) return result;
  if (known == id) return failure;
  known = id;
  return Create(id, object);
}

}  // namespace

void ObjectBegins() {
  if (apartment == nullptr || !apartment->spy) BeginWatch();
  ++apartment->objects;
  ObjectCreated();
}

void ObjectEnds() {
  if (apartment != nullptr && --apartment->objects == 0) {
    apartment->global.reset();
    if (!apartment->spy) delete std::exchange(apartment, nullptr);  // it outlived COM's stay here
  }
  ObjectReleased();
}

LateBound NewComponent(Role role) {
  const wchar_t* const prog_id = ProgID(role);
  std::optional<CLSID>& known = apartment->classes[static_cast<size_t>(role)];
  ComPtr<IDispatch> object;
  HRESULT result = known ? Create(*known, object) : REGDB_E_CLASSNOTREG;
  // A component may have been registered anew since, as another class.
  if (FAILED(result)) result = LookUpAndCreate(prog_id, known, result, object);
  if (FAILED(result) || object == nullptr) {
    throw AutomationError(RuntimeError::kCannotCreateObject,
                          Cat(Describe(RuntimeError::kCannotCreateObject), ": ", Narrow(prog_id)));
  }
  return LateBound(object.Get());
}

const LateBound& GlobalObject() {
  if (!apartment->global) apartment->global = NewComponent(Role::kGlobal);
  return *apartment->global;
}

void LeaveApartment() {
  if (apartment == nullptr) return;
  ReleaseHostObjects();
  apartment->global.reset();
  apartment->classes.fill(std::nullopt);
  EndWatch();
  if (apartment->objects == 0) delete std::exchange(apartment, nullptr);
}

bool LeaveAndCanUnload() {
  if (!CanUnload()) return false;
  LeaveApartment();
  return watched_threads == 0;
}

}  // namespace tavcc::automation
