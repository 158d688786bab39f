#include "automation/automation_object.h"

#include "automation/apartment.h"
#include "automation/border/border.h"
#include "automation/border/variant.h"
#include "automation/dispatch_arguments.h"
#include "automation/type_library.h"
#include "foundation/text.h"

namespace tavcc::automation {

namespace {

std::string NameText(LPCOLESTR name) {
  BSTR text = SysAllocString(name);
  std::string out = ToUtf8(text);
  SysFreeString(text);
  return out;
}

const Method* FindById(const ClassDescription& cls, DISPID id) {
  for (const Method& method : cls.methods) {
    if (method.dispatch_id == static_cast<uint32_t>(id)) return &method;
  }
  return nullptr;
}

// The dispatch result for an argument that does not convert.
HRESULT ArgumentResult(const AutomationError& error) {
  const bool overflow = error.number() == static_cast<int32_t>(RuntimeError::kOverflow);
  return overflow ? DISP_E_OVERFLOW : DISP_E_TYPEMISMATCH;
}

// ---- Early-bound arguments ---------------------------------------------------------------------

template <class T>
const T& At(RawArgument argument) {
  return *static_cast<const T*>(argument);
}

Value FromRaw(RawArgument argument, ArgumentType type) {
  switch (type) {
    case ArgumentType::kBoolean:
      return At<VARIANT_BOOL>(argument) != VARIANT_FALSE;
    case ArgumentType::kInteger:
      return int16_t{At<SHORT>(argument)};
    case ArgumentType::kLong:
    case ArgumentType::kTransactionMode:
      return static_cast<int32_t>(At<LONG>(argument));
    case ArgumentType::kDouble:
      return At<double>(argument);
    case ArgumentType::kDate: {
      const auto date = DateTime::FromAutomation(At<DATE>(argument));
      if (!date) throw AutomationError(RuntimeError::kTypeMismatch);
      return *date;
    }
    case ArgumentType::kText:
      return ToUtf8(At<BSTR>(argument));
    case ArgumentType::kVariant:
      return FromVariant(At<VARIANT>(argument));
    default:
      return WrapObject(At<IDispatch*>(argument));
  }
}

void PutRaw(const Value& value, ArgumentType type, RawArgument target) {
  switch (type) {
    case ArgumentType::kBoolean:
      *static_cast<VARIANT_BOOL*>(target) = value.boolean() ? VARIANT_TRUE : VARIANT_FALSE;
      return;
    case ArgumentType::kInteger:
      *static_cast<SHORT*>(target) = value.integer();
      return;
    case ArgumentType::kLong:
    case ArgumentType::kTransactionMode:
      *static_cast<LONG*>(target) = value.long_integer();
      return;
    case ArgumentType::kDouble:
      *static_cast<double*>(target) = value.number();
      return;
    case ArgumentType::kDate:
      *static_cast<DATE*>(target) = value.date().ToAutomation();
      return;
    case ArgumentType::kText:
      *static_cast<BSTR*>(target) = NewBstr(value.text());
      return;
    case ArgumentType::kVariant:
      ToVariant(value, static_cast<VARIANT*>(target));
      return;
    default:
      *static_cast<IDispatch**>(target) = UnwrapObject(value.object());
  }
}

// Lets go of what an in/out argument held before the new value goes in.
void ReleaseRaw(ArgumentType type, RawArgument target) {
  if (type == ArgumentType::kText) SysFreeString(*static_cast<BSTR*>(target));
  const bool is_object = type == ArgumentType::kDictionary || type == ArgumentType::kVector ||
                         type == ArgumentType::kConnection || type == ArgumentType::kRecordset ||
                         type == ArgumentType::kObject;
  if (!is_object) return;
  auto* before = *static_cast<IDispatch**>(target);
  if (before != nullptr) before->Release();
}

}  // namespace

AutomationCore::AutomationCore(const ClassDescription& cls, const IID& interface_id)
    : class_(cls), interface_id_(interface_id) {
  ObjectBegins();
  try {
    tracer_ = CallTracer::IfAsked(host_);
    object_ = std::make_unique<PlugIn>(tracer_ == nullptr ? host_ : tracer_->host());
  } catch (...) {
    ObjectEnds();
    throw;
  }
}

AutomationCore::~AutomationCore() {
  object_.reset();
  tracer_.reset();
  ObjectEnds();
}

std::string AutomationCore::ProgID() const {
  return Cat(kLibraryName, ".", class_.name);
}

HRESULT AutomationCore::GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  ComPtr<ITypeLib> library;
  const HRESULT loaded = LoadOwnTypeLibrary(library.GetAddressOf());
  return FAILED(loaded) ? loaded : library->GetTypeInfoOfGuid(interface_id_, info);
}

HRESULT AutomationCore::GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* ids) noexcept {
  return AtBorder(ProgID(), [&]() -> HRESULT {
    if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
    std::fill_n(ids, count, DISPID_UNKNOWN);
    const Method* method = FindMethod(class_, NameText(names[0]));
    if (method == nullptr) return DISP_E_UNKNOWNNAME;
    ids[0] = static_cast<DISPID>(method->dispatch_id);
    HRESULT result = S_OK;
    for (UINT i = 1; i < count; ++i) {
      const std::string name = NameText(names[i]);
      for (size_t j = 0; j < method->parameters.size(); ++j) {
        if (EqualsIgnoringCase(method->parameters[j].name, name)) ids[i] = static_cast<DISPID>(j);
      }
      if (ids[i] == DISPID_UNKNOWN) result = DISP_E_UNKNOWNNAME;
    }
    return result;
  });
}

HRESULT AutomationCore::Invoke(DISPID id, WORD kind, const DISPPARAMS* parameters, VARIANT* result,
                               EXCEPINFO* info, UINT* bad_argument) noexcept {
  try {
    const Method* method = FindById(class_, id);
    if (method == nullptr) return DISP_E_MEMBERNOTFOUND;
    const WORD allowed =
        method->is_property ? DISPATCH_PROPERTYGET : static_cast<WORD>(DISPATCH_METHOD);
    if ((kind & (DISPATCH_METHOD | DISPATCH_PROPERTYGET) & (allowed | DISPATCH_PROPERTYGET)) == 0) {
      return DISP_E_MEMBERNOTFOUND;
    }
    if (parameters == nullptr) return E_POINTER;
    return InvokeMethod(*method, *parameters, result, bad_argument);
  } catch (...) {
    if (info != nullptr) FillExcepInfo(WithSource(internal::CurrentError(), ProgID()), info);
    return DISP_E_EXCEPTION;
  }
}

Value AutomationCore::Run(const Method& method, std::vector<Value>& arguments) {
  if (tracer_ == nullptr) return tavcc::Invoke(class_, method, *object_, arguments);
  return tracer_->Invoke(class_, method, *object_, arguments);
}

HRESULT AutomationCore::InvokeMethod(const Method& method, const DISPPARAMS& parameters,
                                     VARIANT* result, UINT* bad_argument) {
  UINT nowhere = 0;
  UINT* const bad = bad_argument != nullptr ? bad_argument : &nowhere;
  DispatchArguments given(method, parameters);
  std::vector<Value> arguments;
  const HRESULT read = given.Read(arguments, bad);
  if (FAILED(read)) return read;
  try {
    const Value answer = Run(method, arguments);
    given.WriteBack(arguments);
    if (result != nullptr) ToVariant(answer, result);
    return S_OK;
  } catch (const ArgumentError& error) {
    *bad = given.PlaceOf(static_cast<size_t>(error.index()));
    return ArgumentResult(error);
  } catch (const AutomationError&) {
    given.WriteBack(arguments);  // in/out results go back also when the method raises
    throw;
  }
}

HRESULT AutomationCore::Call(int slot, std::span<const RawArgument> raw,
                             RawArgument result) noexcept {
  return AtBorder(ProgID(), [&]() -> HRESULT {
    const Method& method = class_.methods[static_cast<size_t>(slot)];
    if (result == nullptr) RaiseHresult(E_POINTER);
    std::vector<Value> arguments;
    arguments.reserve(raw.size());
    for (size_t i = 0; i < raw.size(); ++i) {
      const Parameter& parameter = method.parameters[i];
      RawArgument at = raw[i];
      if (parameter.in_out) {
        at = At<RawArgument>(at);
        if (at == nullptr) RaiseHresult(E_POINTER);
      }
      arguments.push_back(FromRaw(at, parameter.type));
    }
    const auto write_back = [&] {
      for (size_t i = 0; i < raw.size(); ++i) {
        const Parameter& parameter = method.parameters[i];
        if (!parameter.in_out) continue;
        const RawArgument target = At<RawArgument>(raw[i]);
        ReleaseRaw(parameter.type, target);
        PutRaw(arguments[i], parameter.type, target);
      }
    };
    try {
      const Value answer = Run(method, arguments);
      write_back();
      PutRaw(answer, method.result, result);
      return S_OK;
    } catch (const ArgumentError&) {
      throw;
    } catch (const AutomationError&) {
      write_back();
      throw;
    }
  });
}

}  // namespace tavcc::automation
