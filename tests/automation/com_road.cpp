#include "automation/com_road.h"

#include <map>

#include "automation/border/border.h"
#include "automation/border/variant.h"
#include "foundation/text.h"
#include "host/automation/classes.h"
#include "host/automation/component_objects.h"
#include "host/erp.h"
#include "host/schema.h"
#include "scenario/start_state.h"

namespace tavcc {

namespace {

using automation::ComPtr;
using automation::FromVariant;
using automation::ToVariant;
using automation::UniqueVariant;

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

class ComRoad final : public Road {
 public:
  explicit ComRoad(const StartState& start) : erp_(Options(start)) {
    erp_.RunScript(SchemaScript());
    erp_.RunScript(BaseScript());
    ApplyStartState(start, erp_.host(), *erp_.connection());
  }
  ~ComRoad() override {
    objects_.clear();
    host_automation::Publish(nullptr);
    host_automation::SetThreadHost(nullptr);
  }

  Host& host() override { return erp_.host(); }
  std::string dsn() override { return erp_.dsn(); }
  ConnectionPtr connection() override { return erp_.connection(); }

  Value Call(const ClassDescription& cls, const Method& method,
             std::vector<Value>& arguments) override {
    // A sweep opens further roads beside this one: each call is served by its own host.
    host_automation::SetThreadHost(&erp_.host());
    host_automation::Publish(erp_.host().settings().published);
    auto& object = objects_[&cls];
    if (object == nullptr) object = Create(cls.name);
    return CallLateBound(*object.Get(), method, arguments);
  }

  void StartLog(const std::optional<InjectedFailure>& failure) override {
    erp_.log().Clear();
    if (failure) erp_.log().FailAt(failure->at, failure->error);
  }
  std::vector<LoggedStatement> TakeLog() override {
    auto statements = erp_.log().statements();
    erp_.log().Clear();
    return statements;
  }

 private:
  static sql::OpenOptions Options(const StartState& start) {
    sql::OpenOptions options;
    options.clock = [now = start.now] { return now; };
    return options;
  }

  Erp erp_;
  std::map<const ClassDescription*, ComPtr<IDispatch>> objects_;
};

class ComRoads final : public Roads {
 public:
  std::unique_ptr<Road> Open(const StartState& start) override {
    return std::make_unique<ComRoad>(start);
  }
};

}  // namespace

HostClassHome::HostClassHome() {
  for (const auto& cls : host_automation::HostClasses()) {
    ComPtr<IUnknown> factory;
    HRESULT result = automation::MakeClassFactory(cls.create, IID_IUnknown,
                                                  reinterpret_cast<void**>(factory.GetAddressOf()));
    if (FAILED(result)) Fail("MakeClassFactory", result);
    DWORD cookie = 0;
    result = CoRegisterClassObject(cls.id, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                   &cookie);
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

std::unique_ptr<Roads> MakeComRoads() {
  return std::make_unique<ComRoads>();
}

}  // namespace tavcc
