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
  constexpr WORD kMajor = 1;
  constexpr WORD kMinor = 0;
  constexpr SYSKIND kKind = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
  UnRegisterTypeLib(LIBID_TavM_CC_PlugIns, kMajor, kMinor, LOCALE_NEUTRAL, kKind);
  return result;
}

}  // namespace tavcc::automation
