// The creatable classes: name, class id, and how an object is made.
#pragma once

#include <span>
#include <string_view>

#include "TavM_CC_PlugIns.h"  // made from TavM_CC_PlugIns.idl
#include "automation/platform.h"

namespace tavcc::automation {

struct CreatableClass {
  std::string_view name;
  const CLSID& id;
  // A new object's wanted interface. Errors as HRESULT with error information; `object` is then
  // untouched or null.
  HRESULT (*create)(REFIID wanted, void** object);
};

std::span<const CreatableClass> CreatableClasses();

}  // namespace tavcc::automation
