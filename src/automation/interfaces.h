// The creatable classes: name, class id, and how an object is made.
#pragma once

#include <span>
#include <string_view>

#include "TavM_CC_PlugIns.h"  // made from TavM_CC_PlugIns.idl
#include "automation/border/class_factory.h"

namespace tavcc::automation {

struct CreatableClass {
  std::string_view name;
  const CLSID& id;
  CreateFunction create;  // its errors come with error information
};

std::span<const CreatableClass> CreatableClasses();

}  // namespace tavcc::automation
