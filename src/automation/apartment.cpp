#include "automation/apartment.h"

#include <atomic>
#include <optional>
#include <utility>

#include "automation/border/border.h"
#include "automation/border/module.h"
#include "automation/roles.h"
#include "foundation/host_services.h"

namespace tavcc::automation {

namespace {

struct Apartment {
  long objects = 0;
  std::optional<LateBound> global;
  std::optional<ULARGE_INTEGER> spy;  // what takes the spy back, while it stands
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

const LateBound& GlobalObject() {
  if (!apartment->global) apartment->global = LateBound::Create(ProgID(Role::kGlobal));
  return *apartment->global;
}

void LeaveApartment() {
  if (apartment == nullptr) return;
  ReleaseHostObjects();
  apartment->global.reset();
  EndWatch();
  if (apartment->objects == 0) delete std::exchange(apartment, nullptr);
}

bool LeaveAndCanUnload() {
  if (!CanUnload()) return false;
  LeaveApartment();
  return watched_threads == 0;
}

}  // namespace tavcc::automation
