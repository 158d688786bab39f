// The classes that the reference host's module can create, by ProgID.
#pragma once

#include <span>

#include "automation/border/class_factory.h"

namespace tavcc::host_automation {

struct HostClass {
  const wchar_t* prog_id;
  CLSID id;  // our own
  automation::CreateFunction create;
};

std::span<const HostClass> HostClasses();

}  // namespace tavcc::host_automation
