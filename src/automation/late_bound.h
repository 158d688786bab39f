// A host object called by member name, with the members' ids looked up once per object.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "automation/border/platform.h"
#include "foundation/value.h"

namespace tavcc::automation {

// Names of members and ProgIDs are ASCII.
std::string Narrow(const wchar_t* name);

class LateBound {
 public:
  explicit LateBound(IDispatch* object) : object_(object) {}

  // Over a pointer whose reference count stays as it is; Forget() must be called before the end.
  static LateBound Borrow(IDispatch* object);
  void Forget() { object_.Detach(); }

  IDispatch* object() const { return object_.Get(); }
  bool Has(const wchar_t* member) const;

  // A method's or property's value. Errors: 438 when there is no such member; the callee's own.
  Value Call(const wchar_t* member, std::initializer_list<Value> arguments = {}) const;
  Value Get(const wchar_t* member, std::initializer_list<Value> arguments = {}) const;
  void Put(const wchar_t* member, std::initializer_list<Value> arguments) const;
  // The default member, alone or of one index or key.
  Value GetDefault(std::initializer_list<Value> index = {}) const;
  void PutDefault(const Value& index, const Value& value) const;
  // Assigns an object by reference ("Set x.Member = object"; null sets it to nothing).
  void PutReference(const wchar_t* member, IDispatch* object) const;
  // Calls with two texts passed by reference.
  Value CallWithTexts(const wchar_t* member, std::string_view first, std::string_view second) const;

 private:
  LateBound() = default;
  DISPID IdOf(const wchar_t* member) const;
  Value Invoke(DISPID id, WORD kind, std::initializer_list<Value> arguments) const;
  Value InvokeRaw(DISPID id, WORD kind, VARIANT* reversed, UINT count) const;

  ComPtr<IDispatch> object_;
  // Few members are used of any one object; names are compared by address first, being literals.
  mutable std::vector<std::pair<const wchar_t*, DISPID>> ids_;
};

}  // namespace tavcc::automation
