#include "host/automation/dispatch_object.h"

#include <atomic>
#include <utility>

#include "automation/border/border.h"
#include "automation/border/module.h"
#include "automation/border/variant.h"
#include "foundation/text.h"
#include "host/automation/objects_of_ports.h"

namespace tavcc::host_automation {

namespace {

using automation::FillExcepInfo;
using automation::FromVariant;
using automation::ToVariant;
using automation::UniqueVariant;

// Our own mark of these objects, answered by QueryInterface inside this module only.
constexpr IID kBehindId = {
    0x4f0b9a52, 0x61d7, 0x4c4e, {0x8e, 0x0d, 0x2a, 0x7b, 0x91, 0x5c, 0x33, 0xe8}};

std::atomic<long> living{0};

struct OrderedFault {
  int calls_left;
  Fault fault;
};
// A bare pointer: see foundation/trap.cpp.
thread_local OrderedFault* ordered = nullptr;

// What a call that goes wrong answers.
Value WrongAnswer(Fault fault) {
  switch (fault) {
    case Fault::kNothing:
      return ObjectPtr();
    case Fault::kNumber:
      return int32_t{7};
    case Fault::kStrangeObject:
      return OwnedObject(NewDispatchObject({}, nullptr));
    case Fault::kError:
      throw AutomationError(50000, "", "host failed");
    default:
      return Empty{};
  }
}

class DispatchObject final : public IDispatch {
 public:
  DispatchObject(std::vector<Member> members, ObjectPtr behind)
      : members_(std::move(members)), behind_(std::move(behind)) {
    ++living;
    automation::ObjectCreated();
  }

  const ObjectPtr& behind() const { return behind_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_IDispatch && id != kBehindId) return E_NOINTERFACE;
    *object = static_cast<IDispatch*>(this);
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
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) noexcept override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* info, UINT*) noexcept override;

 private:
  ~DispatchObject() {
    --living;
    automation::ObjectReleased();
  }

  const Member* Find(DISPID id) const;

  std::vector<Member> members_;
  ObjectPtr behind_;
  ULONG references_ = 1;  // used by the one thread of its apartment
};

HRESULT DispatchObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                      DISPID* ids) noexcept {
  return automation::AtBorder("TavReferenceHost", [&]() -> HRESULT {
    if (count != 1) return DISP_E_UNKNOWNNAME;  // no member takes named arguments
    BSTR text = SysAllocString(names[0]);
    const std::string name = automation::ToUtf8(text);
    SysFreeString(text);
    for (size_t i = 0; i < members_.size(); ++i) {
      if (!EqualsIgnoringCase(members_[i].name, name)) continue;
      ids[0] = static_cast<DISPID>(i + 1);
      return S_OK;
    }
    ids[0] = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
  });
}

const Member* DispatchObject::Find(DISPID id) const {
  if (id >= 1 && static_cast<size_t>(id) <= members_.size()) {
    return &members_[static_cast<size_t>(id) - 1];
  }
  if (id != DISPID_VALUE) return nullptr;
  for (const Member& member : members_) {
    if (member.is_default) return &member;
  }
  return nullptr;
}

HRESULT DispatchObject::Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                               VARIANT* result, EXCEPINFO* info, UINT*) noexcept {
  try {
    const Member* member = Find(id);
    if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
    const bool is_put = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    const Handler& handler = is_put ? member->put : member->call;
    if (!handler) return DISP_E_MEMBERNOTFOUND;
    std::vector<Value> values;
    for (UINT i = parameters->cArgs; i-- > 0;) values.push_back(FromVariant(parameters->rgvarg[i]));
    const auto fault = TakeFault();
    if (fault == Fault::kBareResult) return E_FAIL;
    const Value answer = fault ? WrongAnswer(*fault) : handler(Arguments(values));
    if (result != nullptr) ToVariant(answer, result);
    return S_OK;
  } catch (...) {
    if (info != nullptr) FillExcepInfo(internal::CurrentError(), info);  // perhaps without a source
    return DISP_E_EXCEPTION;
  }
}

}  // namespace

const Value& Arguments::operator[](size_t index) const {
  static const Value missing = Missing{};
  return index < values_.size() ? values_[index] : missing;
}

IDispatch* NewDispatchObject(std::vector<Member> members, ObjectPtr behind) {
  return new DispatchObject(std::move(members), std::move(behind));
}

ObjectPtr BehindObject(IDispatch* object) {
  void* mine = nullptr;
  if (FAILED(object->QueryInterface(kBehindId, &mine))) return nullptr;
  auto* ours = static_cast<DispatchObject*>(static_cast<IDispatch*>(mine));
  ObjectPtr behind = ours->behind();
  ours->Release();
  return behind;
}

long LivingDispatchObjects() {
  return living;
}

void OrderFault(int k, Fault fault) {
  CancelFault();
  ordered = new OrderedFault{k, fault};
}

int CancelFault() {
  const int left = ordered == nullptr ? 0 : ordered->calls_left;
  delete std::exchange(ordered, nullptr);
  return left;
}

std::optional<Fault> TakeFault() {
  if (ordered == nullptr || --ordered->calls_left > 0) return std::nullopt;
  const Fault fault = ordered->fault;
  CancelFault();
  return fault;
}

}  // namespace tavcc::host_automation
