#include "automation/dispatch_arguments.h"

#include "automation/border/border.h"
#include "automation/border/variant.h"
#include "automation/late_bound.h"

namespace tavcc::automation {

namespace {

// The type that a reference to a variable must have to take a parameter's result; any other than
// VARIANT, which takes all.
VARTYPE VariableType(ArgumentType type) {
  switch (type) {
    case ArgumentType::kBoolean:
      return VT_BOOL;
    case ArgumentType::kInteger:
      return VT_I2;
    case ArgumentType::kLong:
    case ArgumentType::kTransactionMode:
      return VT_I4;
    case ArgumentType::kDouble:
      return VT_R8;
    case ArgumentType::kDate:
      return VT_DATE;
    case ArgumentType::kText:
      return VT_BSTR;
    case ArgumentType::kVariant:
      return VT_VARIANT;
    default:
      return VT_DISPATCH;
  }
}

bool IsScalar(ArgumentType type) {
  const VARTYPE variable = VariableType(type);
  return variable != VT_DISPATCH && variable != VT_VARIANT;
}

bool IsByReference(const VARIANT& variant) {
  return (variant.vt & VT_BYREF) != 0;
}

// The value of an object's default member, which may be an object again.
Value DefaultMember(Value value) {
  constexpr int kDeepest = 4;
  for (int i = 0; i < kDeepest && value.IsObject() && value.object() != nullptr; ++i) {
    ComPtr<IDispatch> object;
    object.Attach(UnwrapObject(value.object()));
    value = LateBound(object.Get()).GetDefault();
  }
  return value;
}

void Put(VARIANT& variable, const Value& value) {
  UniqueVariant out;
  ToVariant(value, out.get());
  if (!IsByReference(variable)) {
    VariantClear(&variable);
    out.MoveTo(&variable);
    return;
  }
  switch (out.get()->vt) {
    case VT_BOOL:
      *variable.pboolVal = out.get()->boolVal;
      return;
    case VT_BSTR:
      std::swap(*variable.pbstrVal, out.get()->bstrVal);
      return;
    case VT_DISPATCH:
      std::swap(*variable.ppdispVal, out.get()->pdispVal);
      return;
    default:  // no in/out parameter has another type (see the class table)
      throw AutomationError(RuntimeError::kInternalError);
  }
}

}  // namespace

HRESULT DispatchArguments::Read(std::vector<Value>& values, UINT* bad_argument) {
  const HRESULT matched = Match(bad_argument);
  if (FAILED(matched)) return matched;
  values.assign(method_.parameters.size(), Missing{});
  for (size_t i = 0; i < values.size(); ++i) {
    const HRESULT read = ReadOne(i, values[i]);
    if (SUCCEEDED(read)) continue;
    *bad_argument = PlaceOf(i);
    return read;
  }
  return S_OK;
}

// Positional arguments come last first, named ones before them with the parameter's position as
// their id.
HRESULT DispatchArguments::Match(UINT* bad_argument) {
  const UINT count = parameters_.cArgs;
  const UINT named = parameters_.cNamedArgs;
  if (count > 0 && parameters_.rgvarg == nullptr) return E_INVALIDARG;
  if (named > 0 && parameters_.rgdispidNamedArgs == nullptr) return E_INVALIDARG;
  if (named > count || count > method_.parameters.size()) return DISP_E_BADPARAMCOUNT;
  given_.assign(method_.parameters.size(), nullptr);
  for (UINT i = named; i < count; ++i) given_[count - 1 - i] = &parameters_.rgvarg[i];
  for (UINT i = 0; i < named; ++i) {
    const DISPID id = parameters_.rgdispidNamedArgs[i];
    const bool known = id >= 0 && static_cast<size_t>(id) < given_.size();
    if (!known || given_[static_cast<size_t>(id)] != nullptr) {
      *bad_argument = i;
      return DISP_E_PARAMNOTFOUND;
    }
    given_[static_cast<size_t>(id)] = &parameters_.rgvarg[i];
  }
  return S_OK;
}

HRESULT DispatchArguments::ReadOne(size_t position, Value& value) const {
  const Parameter& parameter = method_.parameters[position];
  VARIANT* const given = given_[position];
  if (given == nullptr) return parameter.optional ? S_OK : DISP_E_PARAMNOTOPTIONAL;
  if (IsByReference(*given) && given->byref == nullptr) return E_POINTER;
  VARIANT* const variable = Referred(given);
  if (variable == nullptr) return DISP_E_TYPEMISMATCH;
  const bool typed = IsByReference(*variable);
  if (typed && variable->byref == nullptr) return DISP_E_TYPEMISMATCH;
  if (typed && parameter.in_out && variable->vt != (VariableType(parameter.type) | VT_BYREF)) {
    return DISP_E_TYPEMISMATCH;
  }
  try {
    value = FromVariant(*variable);
    if (IsScalar(parameter.type)) value = DefaultMember(std::move(value));
  } catch (const AutomationError&) {
    return DISP_E_TYPEMISMATCH;
  }
  return value.IsMissing() && !parameter.optional ? DISP_E_PARAMNOTOPTIONAL : S_OK;
}

void DispatchArguments::WriteBack(const std::vector<Value>& values) const {
  for (size_t i = 0; i < values.size(); ++i) {
    VARIANT* const given = given_[i];
    if (!method_.parameters[i].in_out || given == nullptr || !IsByReference(*given)) continue;
    VARIANT* const variable = Referred(given);
    const bool left_out = !IsByReference(*variable) && variable->vt == VT_ERROR;
    if (!left_out) Put(*variable, values[i]);
  }
}

UINT DispatchArguments::PlaceOf(size_t position) const {
  const VARIANT* const given = given_[position];
  return given == nullptr ? 0 : static_cast<UINT>(given - parameters_.rgvarg);
}

}  // namespace tavcc::automation
