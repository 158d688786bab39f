#include "automation/late_bound.h"

#include <array>

#include "automation/border/border.h"
#include "automation/border/variant.h"
#include "foundation/text.h"

namespace tavcc::automation {

namespace {

constexpr size_t kMostArguments = 8;

}  // namespace

std::string Narrow(const wchar_t* name) {
  std::string out;
  for (; *name != L'\0'; ++name) out += static_cast<char>(*name);
  return out;
}

LateBound LateBound::Borrow(IDispatch* object) {
  LateBound borrowed;
  borrowed.object_.Attach(object);
  return borrowed;
}

bool LateBound::Has(const wchar_t* member) const {
  DISPID id;
  LPOLESTR name = const_cast<LPOLESTR>(member);
  return SUCCEEDED(object_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id));
}

DISPID LateBound::IdOf(const wchar_t* member) const {
  for (const auto& [name, id] : ids_) {
    if (name == member) return id;
  }
  DISPID id;
  LPOLESTR name = const_cast<LPOLESTR>(member);
  if (FAILED(object_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id))) {
    throw AutomationError(RuntimeError::kMemberNotFound,
                          Cat(Describe(RuntimeError::kMemberNotFound), ": ", Narrow(member)));
  }
  ids_.emplace_back(member, id);
  return id;
}

Value LateBound::Call(const wchar_t* member, std::initializer_list<Value> arguments) const {
  return Invoke(IdOf(member), DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments);
}

Value LateBound::Get(const wchar_t* member, std::initializer_list<Value> arguments) const {
  return Invoke(IdOf(member), DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments);
}

void LateBound::Put(const wchar_t* member, std::initializer_list<Value> arguments) const {
  Invoke(IdOf(member), DISPATCH_PROPERTYPUT, arguments);
}

Value LateBound::GetDefault(std::initializer_list<Value> index) const {
  return Invoke(DISPID_VALUE, DISPATCH_METHOD | DISPATCH_PROPERTYGET, index);
}

void LateBound::PutDefault(const Value& index, const Value& value) const {
  Invoke(DISPID_VALUE, DISPATCH_PROPERTYPUT, {index, value});
}

void LateBound::PutReference(const wchar_t* member, IDispatch* object) const {
  VARIANT argument;
  VariantInit(&argument);
  argument.vt = VT_DISPATCH;
  argument.pdispVal = object;  // borrowed for the call
  InvokeRaw(IdOf(member), DISPATCH_PROPERTYPUTREF, &argument, 1);
}

Value LateBound::CallWithTexts(const wchar_t* member, std::string_view first,
                               std::string_view second) const {
  std::array<UniqueVariant, 2> texts;
  ToVariant(Value(second), texts[0].get());
  ToVariant(Value(first), texts[1].get());
  std::array<VARIANT, 2> reversed;
  for (size_t i = 0; i < reversed.size(); ++i) {
    VariantInit(&reversed[i]);
    reversed[i].vt = VT_BSTR | VT_BYREF;
    reversed[i].pbstrVal = &texts[i].get()->bstrVal;
  }
  return InvokeRaw(IdOf(member), DISPATCH_METHOD | DISPATCH_PROPERTYGET, reversed.data(), 2);
}

Value LateBound::Invoke(DISPID id, WORD kind, std::initializer_list<Value> arguments) const {
  std::array<UniqueVariant, kMostArguments> owned;
  std::array<VARIANT, kMostArguments> reversed;
  size_t at = arguments.size();
  for (const Value& argument : arguments) {
    --at;
    ToVariant(argument, owned[at].get());
    reversed[at] = *owned[at];
  }
  return InvokeRaw(id, kind, reversed.data(), static_cast<UINT>(arguments.size()));
}

Value LateBound::InvokeRaw(DISPID id, WORD kind, VARIANT* reversed, UINT count) const {
  const bool is_put = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPID put_name = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{};
  parameters.rgvarg = reversed;
  parameters.cArgs = count;
  if (is_put) {
    parameters.rgdispidNamedArgs = &put_name;
    parameters.cNamedArgs = 1;
  }
  UniqueVariant result;
  EXCEPINFO info{};
  UINT bad_argument = 0;
  const HRESULT status = object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                                         is_put ? nullptr : result.get(), &info, &bad_argument);
  if (FAILED(status)) RaiseFrom(status, info);
  return FromVariant(*result);
}

}  // namespace tavcc::automation
