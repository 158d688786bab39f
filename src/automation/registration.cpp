#include "automation/registration.h"

#include <string>

#include "automation/border/class_keys.h"
#include "automation/border/module.h"
#include "automation/interfaces.h"
#include "automation/type_library.h"
#include "registry/class_registry.h"

namespace tavcc::automation {

namespace {

std::wstring Widen(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}

ClassKeys KeysOf(const CreatableClass& cls, const std::wstring& path) {
  return {Widen(kLibraryName) + L"." + Widen(cls.name), cls.id, path, &LIBID_TavM_CC_PlugIns};
}

HRESULT RegisterTypeLibrary(std::wstring path) {
  ComPtr<ITypeLib> library;
  const HRESULT loaded = LoadOwnTypeLibrary(library.GetAddressOf());
  if (FAILED(loaded)) return loaded;
  // The help file stands beside the server.
  std::wstring help_folder = path.substr(0, path.rfind(L'\\'));
  return RegisterTypeLib(library.Get(), path.data(), help_folder.data());
}

// Both bitnesses share the library's key and the interfaces'. While the other one is registered,
// only what leads to this one's file goes: taking the library out would take the interfaces too.
HRESULT UnregisterTypeLibrary() {
  constexpr bool kIs64 = sizeof(void*) == 8;
  const std::wstring key = L"TypeLib\\" + GuidText(LIBID_TavM_CC_PlugIns) + L"\\1.0\\0\\";
  if (KeyExists(key + (kIs64 ? L"win32" : L"win64"))) {
    return DeleteTree(key + (kIs64 ? L"win64" : L"win32"));
  }
  constexpr WORD kMajor = 1;
  constexpr WORD kMinor = 0;
  UnRegisterTypeLib(LIBID_TavM_CC_PlugIns, kMajor, kMinor, LOCALE_NEUTRAL,
                    kIs64 ? SYS_WIN64 : SYS_WIN32);
  return S_OK;  // one that is not there is no error
}

}  // namespace

HRESULT Register() {
  const std::wstring path = ModulePath(Module());
  if (path.empty()) return E_FAIL;
  HRESULT result = RegisterTypeLibrary(path);
  for (const CreatableClass& cls : CreatableClasses()) {
    if (FAILED(result)) break;
    result = WriteClassKeys(KeysOf(cls, path));
  }
  // Half a registration is worse than none.
  if (FAILED(result)) Unregister();
  return result;
}

HRESULT Unregister() {
  HRESULT result = S_OK;
  for (const CreatableClass& cls : CreatableClasses()) {
    const HRESULT removed = RemoveClassKeys(KeysOf(cls, L""));
    if (FAILED(removed)) result = removed;
  }
  const HRESULT removed = UnregisterTypeLibrary();
  return FAILED(result) ? result : removed;
}

}  // namespace tavcc::automation
