// The registry keys of one creatable class, written and removed.
#pragma once

#include <string>
#include <string_view>

#include "automation/border/platform.h"

namespace tavcc::automation {

// What a class needs to be created by ProgID from a library in the same process.
struct ClassKeys {
  std::wstring prog_id;
  const CLSID& id;
  std::wstring module_path;
  const GUID* type_library = nullptr;  // null when the class has none
};

// HKCR\CLSID\{id} with InprocServer32 (threading model "Apartment"), ProgID, Programmable and
// TypeLib, and HKCR\<ProgID> with CLSID.
HRESULT WriteClassKeys(const ClassKeys& keys);
// Keys that are not there are no error.
HRESULT RemoveClassKeys(const ClassKeys& keys);

// The path of a loaded module; empty when the system does not tell it.
std::wstring ModulePath(HINSTANCE module);

}  // namespace tavcc::automation
