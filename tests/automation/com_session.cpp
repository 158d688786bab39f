#include "automation/com_session.h"

#include <array>
#include <atomic>
#include <map>
#include <utility>

#include "automation/border/border.h"
#include "automation/border/variant.h"
#include "foundation/text.h"
#include "host/automation/classes.h"
#include "host/automation/component_objects.h"
#include "host/company.h"
#include "host/erp.h"
#include "scenario/start_state.h"

namespace tavcc {

namespace {

using automation::ComPtr;
using automation::FromVariant;
using automation::ToVariant;
using automation::UniqueVariant;
using host_automation::HostClasses;

[[noreturn]] void Fail(const char* what, HRESULT result) {
  throw AutomationError(result, "", Cat(what, " failed"));
}

ComPtr<IDispatch> Create(std::string_view class_name) {
  const std::string prog_id = Cat(kLibraryName, ".", class_name);
  CLSID id;
  HRESULT result = CLSIDFromProgID(std::wstring(prog_id.begin(), prog_id.end()).c_str(), &id);
  if (FAILED(result)) Fail("CLSIDFromProgID", result);
  ComPtr<IDispatch> object;
  result = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                            reinterpret_cast<void**>(object.GetAddressOf()));
  if (FAILED(result)) Fail("CoCreateInstance", result);
  return object;
}

class ComSession final : public BackendSession {
 public:
  explicit ComSession(const StartState& start)
      : erp_(CompanyOptions([now = start.now] { return now; })) {
    ApplyStartState(start, erp_.host(), *erp_.connection());
  }
  ~ComSession() override {
    objects_.clear();
    ServerIsIdle();
    host_automation::Publish(nullptr);
    host_automation::SetThreadHost(nullptr);
  }

  Host& host() override { return erp_.host(); }
  std::string dsn() override { return erp_.dsn(); }
  ConnectionPtr connection() override { return erp_.connection(); }

  Value Call(const ClassDescription& cls, const Method& method,
             std::vector<Value>& arguments) override {
    // A sweep opens further sessions beside this one: each call is served by its own host.
    host_automation::SetThreadHost(&erp_.host());
    host_automation::Publish(erp_.host().settings().published);
    auto& object = objects_[&cls];
    if (object == nullptr) object = Create(cls.name);
    return CallLateBound(*object.Get(), method, arguments);
  }

  void StartLog(const std::optional<InjectedFailure>& failure) override {
    erp_.log().Clear();
    if (failure) erp_.log().FailAt(failure->at, failure->fault);
  }
  std::vector<LoggedStatement> TakeLog() override {
    auto statements = erp_.log().statements();
    erp_.log().Clear();
    return statements;
  }

 private:
  Erp erp_;
  std::map<const ClassDescription*, ComPtr<IDispatch>> objects_;
};

class ComBackend final : public Backend {
 public:
  std::unique_ptr<BackendSession> Open(const StartState& start) override {
    return std::make_unique<ComSession>(start);
  }
};

// Each class of the host with a count of the objects made.
constexpr size_t kMostClasses = 32;
std::array<std::atomic<int>, kMostClasses> made;

template <size_t I>
HRESULT Counted(REFIID wanted, void** object) {
  ++made[I];
  return HostClasses()[I].create(wanted, object);
}
constexpr auto kCounted = []<size_t... I>(std::index_sequence<I...>) {
  return std::array<automation::CreateFunction, sizeof...(I)>{Counted<I>...};
}
(std::make_index_sequence<kMostClasses>());

}  // namespace

int TimesMade(std::wstring_view prog_id) {
  for (size_t i = 0; i < HostClasses().size(); ++i) {
    if (HostClasses()[i].prog_id == prog_id) return made[i];
  }
  return 0;
}

HostClassHome::HostClassHome() {
  for (size_t i = 0; i < HostClasses().size(); ++i) {
    ComPtr<IUnknown> factory;
    HRESULT result = automation::MakeClassFactory(kCounted[i], IID_IUnknown,
                                                  reinterpret_cast<void**>(factory.GetAddressOf()));
    if (FAILED(result)) Fail("MakeClassFactory", result);
    DWORD cookie = 0;
    result = CoRegisterClassObject(HostClasses()[i].id, factory.Get(), CLSCTX_INPROC_SERVER,
                                   REGCLS_MULTIPLEUSE, &cookie);
    if (FAILED(result)) Fail("CoRegisterClassObject", result);
    cookies_.push_back(cookie);
  }
}

HostClassHome::~HostClassHome() {
  for (const DWORD cookie : cookies_) CoRevokeClassObject(cookie);
}

Value CallLateBound(IDispatch& object, const Method& method, std::vector<Value>& arguments) {
  arguments.resize(method.parameters.size(), Missing{});
  const size_t count = arguments.size();
  std::vector<UniqueVariant> held(count);
  std::vector<VARIANT> reversed(count);
  for (size_t i = 0; i < count; ++i) {
    const bool in_out = method.parameters[i].in_out;
    // What is not given comes back all the same, in a variable of the caller's that is still empty.
    const bool left_out = in_out && arguments[i].IsMissing();
    ToVariant(left_out ? Value(Empty{}) : arguments[i], held[i].get());
    VARIANT& argument = reversed[count - 1 - i];
    argument = *held[i];
    if (!in_out) continue;
    VariantInit(&argument);
    argument.vt = VT_VARIANT | VT_BYREF;
    argument.pvarVal = held[i].get();
  }
  DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(count), 0};
  UniqueVariant result;
  EXCEPINFO info{};
  UINT bad_argument = 0;
  const WORD kind = method.is_property ? DISPATCH_PROPERTYGET : DISPATCH_METHOD;
  const HRESULT status =
      object.Invoke(static_cast<DISPID>(method.dispatch_id), IID_NULL, LOCALE_USER_DEFAULT, kind,
                    &parameters, result.get(), &info, &bad_argument);
  for (size_t i = 0; i < count; ++i) {
    if (method.parameters[i].in_out) arguments[i] = FromVariant(*held[i]);
  }
  if (FAILED(status)) automation::RaiseFrom(status, info);
  return FromVariant(*result);
}

bool ServerIsIdle() {
  const HMODULE server = GetModuleHandleW(L"TavM_CC_PlugIns.dll");
  if (server == nullptr) return true;
  using CanUnloadNow = HRESULT(STDAPICALLTYPE*)();
  const auto can_unload = reinterpret_cast<CanUnloadNow>(
      reinterpret_cast<void*>(GetProcAddress(server, "DllCanUnloadNow")));
  return can_unload() == S_OK;
}

std::unique_ptr<Backend> MakeComBackend() {
  return std::make_unique<ComBackend>();
}

}  // namespace tavcc
