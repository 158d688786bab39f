// The ids of the classes' interfaces, by class name.
#pragma once

#include <span>
#include <string_view>

#include "automation/border/platform.h"

namespace tavcc {

struct InterfaceId {
  std::string_view class_name;
  const IID& id;
  const CLSID& class_id;
};

std::span<const InterfaceId> InterfaceIds();

}  // namespace tavcc
