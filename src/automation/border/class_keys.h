// The registry keys of one creatable class, written and removed.
#pragma once

#include <string>
#include <string_view>

#include "automation/border/platform.h"

namespace tavcc::automation {

// "{…}", as the registry has it.
std::wstring GuidText(const GUID& id);

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
// Keys that are not there are no error. Windows keeps the keys under CLSID apart for 32 and 64 bits
// and shares the ProgID's between them: that one stays while the other bitness has the class.
HRESULT RemoveClassKeys(const ClassKeys& keys);

// Deletes a key of HKCR with all below it; one that is not there is no error.
HRESULT DeleteTree(const std::wstring& key);
bool KeyExists(const std::wstring& key, REGSAM view = 0);
// The view of the registry that programs of the other bitness have.
inline constexpr REGSAM kOtherView = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

// The path of a loaded module; empty when the system does not tell it.
std::wstring ModulePath(HINSTANCE module);

}  // namespace tavcc::automation
