#include "automation/border/class_keys.h"

namespace tavcc::automation {

namespace {

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

std::wstring ClassKey(const ClassKeys& keys) {
  return L"CLSID\\" + GuidText(keys.id);
}

}  // namespace

std::wstring GuidText(const GUID& id) {
  wchar_t text[40];
  StringFromGUID2(id, text, static_cast<int>(std::size(text)));
  return text;
}

HRESULT DeleteTree(const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
  if (status == ERROR_FILE_NOT_FOUND || status == ERROR_SUCCESS) return S_OK;
  return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

bool KeyExists(const std::wstring& key, REGSAM view) {
  HKEY handle = nullptr;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ | view, &handle) != ERROR_SUCCESS) {
    return false;
  }
  RegCloseKey(handle);
  return true;
}

HRESULT WriteClassKeys(const ClassKeys& keys) {
  const std::wstring key = ClassKey(keys);
  const struct {
    std::wstring key;
    const wchar_t* name;
    std::wstring value;
  } entries[] = {
      {key, nullptr, keys.prog_id},
      {key + L"\\InprocServer32", nullptr, keys.module_path},
      {key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {key + L"\\ProgID", nullptr, keys.prog_id},
      {key + L"\\Programmable", nullptr, L""},
      {keys.prog_id, nullptr, keys.prog_id},
      {keys.prog_id + L"\\CLSID", nullptr, GuidText(keys.id)},
  };
  for (const auto& entry : entries) {
    const HRESULT result = SetKey(entry.key, entry.name, entry.value);
    if (FAILED(result)) return result;
  }
  if (keys.type_library == nullptr) return S_OK;
  return SetKey(key + L"\\TypeLib", nullptr, GuidText(*keys.type_library));
}

HRESULT RemoveClassKeys(const ClassKeys& keys) {
  const HRESULT by_id = DeleteTree(ClassKey(keys));
  // Where Windows has one bitness only, the other view is this one, and the key is gone already.
  if (FAILED(by_id) || KeyExists(ClassKey(keys), kOtherView)) return by_id;
  return DeleteTree(keys.prog_id);
}

std::wstring ModulePath(HINSTANCE module) {
  constexpr DWORD kLongestPath = 32768;
  std::wstring path(kLongestPath, L'\0');
  path.resize(GetModuleFileNameW(module, path.data(), kLongestPath));
  return path;
}

}  // namespace tavcc::automation
