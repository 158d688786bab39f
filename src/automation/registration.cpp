#include "automation/registration.h"

#include <string>

#include "automation/interfaces.h"
#include "automation/server.h"
#include "registry/class_registry.h"

namespace tavcc::automation {

namespace {

std::wstring Widen(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}

std::wstring GuidText(const GUID& id) {
  wchar_t text[40];
  StringFromGUID2(id, text, static_cast<int>(std::size(text)));
  return text;
}

std::wstring ModulePath() {
  wchar_t path[MAX_PATH];
  return {path, GetModuleFileNameW(Module(), path, MAX_PATH)};
}

HRESULT SetKey(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
  HKEY handle = nullptr;
  LSTATUS status = RegCreateKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, nullptr, 0, KEY_WRITE,
                                   nullptr, &handle, nullptr);
  if (status != ERROR_SUCCESS) return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
  status = RegSetValueExW(handle, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                          static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
  RegCloseKey(handle);
  return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

HRESULT DeleteTree(const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
  if (status == ERROR_FILE_NOT_FOUND || status == ERROR_SUCCESS) return S_OK;
  return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

std::wstring ClassKey(const CreatableClass& cls) {
  return L"CLSID\\" + GuidText(cls.id);
}
std::wstring ProgID(const CreatableClass& cls) {
  return Widen(kLibraryName) + L"." + Widen(cls.name);
}

HRESULT RegisterClass(const CreatableClass& cls, const std::wstring& path) {
  const std::wstring key = ClassKey(cls);
  const struct {
    std::wstring key;
    const wchar_t* name;
    std::wstring value;
  } entries[] = {
      {key, nullptr, ProgID(cls)},
      {key + L"\\InprocServer32", nullptr, path},
      {key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {key + L"\\ProgID", nullptr, ProgID(cls)},
      {key + L"\\TypeLib", nullptr, GuidText(LIBID_TavM_CC_PlugIns)},
      {key + L"\\Programmable", nullptr, L""},
      {ProgID(cls), nullptr, ProgID(cls)},
      {ProgID(cls) + L"\\CLSID", nullptr, GuidText(cls.id)},
  };
  for (const auto& entry : entries) {
    const HRESULT result = SetKey(entry.key, entry.name, entry.value);
    if (FAILED(result)) return result;
  }
  return S_OK;
}

// The help file stands beside the server.
std::wstring HelpFolder(const std::wstring& path) {
  return path.substr(0, path.rfind(L'\\'));
}

HRESULT RegisterTypeLibrary(const std::wstring& path) {
  ComPtr<ITypeLib> library;
  const HRESULT loaded = LoadOwnTypeLibrary(library.GetAddressOf());
  if (FAILED(loaded)) return loaded;
  std::wstring folder = HelpFolder(path);
  std::wstring file = path;
  return RegisterTypeLib(library.Get(), file.data(), folder.data());
}

}  // namespace

HRESULT Register() {
  const std::wstring path = ModulePath();
  if (path.empty()) return E_FAIL;
  HRESULT result = RegisterTypeLibrary(path);
  for (const CreatableClass& cls : CreatableClasses()) {
    if (FAILED(result)) break;
    result = RegisterClass(cls, path);
  }
  // Half a registration is worse than none.
  if (FAILED(result)) Unregister();
  return result;
}

HRESULT Unregister() {
  HRESULT result = S_OK;
  const auto note = [&result](HRESULT next) {
    if (FAILED(next)) result = next;
  };
  for (const CreatableClass& cls : CreatableClasses()) {
    note(DeleteTree(ClassKey(cls)));
    note(DeleteTree(ProgID(cls)));
  }
  constexpr WORD kMajor = 1;
  constexpr WORD kMinor = 0;
  constexpr SYSKIND kKind = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
  UnRegisterTypeLib(LIBID_TavM_CC_PlugIns, kMajor, kMinor, LOCALE_NEUTRAL, kKind);
  return result;
}

}  // namespace tavcc::automation
