// Registration: what is written is what a client needs, and nothing of it stays behind.

#include "TavM_CC_PlugIns.h"
#include "automation/border/variant.h"
#include "automation/fixture.h"
#include "automation/interface_ids.h"
#include "registry/class_registry.h"

namespace tavcc {
namespace {

using EntryPoint = HRESULT(STDAPICALLTYPE*)();

std::wstring GuidText(const GUID& id) {
  wchar_t text[40];
  StringFromGUID2(id, text, 40);
  return text;
}

bool KeyExists(const std::wstring& key) {
  HKEY handle = nullptr;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS) {
    return false;
  }
  RegCloseKey(handle);
  return true;
}

std::vector<std::wstring> AllKeys() {
  std::vector<std::wstring> keys = {L"TypeLib\\" + GuidText(LIBID_TavM_CC_PlugIns)};
  for (const InterfaceId& entry : InterfaceIds()) {
    keys.push_back(L"CLSID\\" + GuidText(entry.class_id));
    keys.push_back(L"TavM_CC_PlugIns." +
                   std::wstring(entry.class_name.begin(), entry.class_name.end()));
    keys.push_back(L"Interface\\" + GuidText(entry.id));
  }
  return keys;
}

class Server {
 public:
  Server() : module_(LoadLibraryW(L"TavM_CC_PlugIns.dll")) {}
  ~Server() { FreeLibrary(module_); }
  HRESULT Call(const char* name) const {
    const auto entry =
        reinterpret_cast<EntryPoint>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    return entry == nullptr ? E_NOINTERFACE : entry();
  }

 private:
  HMODULE module_;
};

std::string Narrow(const std::wstring& text) {
  return {text.begin(), text.end()};
}

TEST(Registration, UnregisteringLeavesNoKeyBehindAndRegisteringBringsAllBack) {
  const Apartment apartment;
  const Server server;
  for (const auto& key : AllKeys()) EXPECT_TRUE(KeyExists(key)) << Narrow(key);
  EXPECT_EQ(server.Call("DllUnregisterServer"), S_OK);
  for (const auto& key : AllKeys()) EXPECT_FALSE(KeyExists(key)) << Narrow(key);
  EXPECT_EQ(server.Call("DllUnregisterServer"), S_OK);  // again: no error
  EXPECT_EQ(server.Call("DllRegisterServer"), S_OK);
  for (const auto& key : AllKeys()) EXPECT_TRUE(KeyExists(key)) << Narrow(key);
  EXPECT_EQ(server.Call("DllRegisterServer"), S_OK);
}

// With the manifest beside the server a client needs no registry entry of it at all.
TEST_F(AutomationTest, TheManifestCreatesClassesWithoutRegistration) {
  HostedErp erp;
  const Server server;
  ASSERT_EQ(server.Call("DllUnregisterServer"), S_OK);
  ACTCTXW description{};
  description.cbSize = sizeof description;
  description.lpSource = L"TavM_CC_PlugIns.manifest";
  const HANDLE context = CreateActCtxW(&description);
  EXPECT_NE(context, INVALID_HANDLE_VALUE);
  ULONG_PTR cookie = 0;
  EXPECT_TRUE(ActivateActCtx(context, &cookie));
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  EXPECT_TRUE(object.Get() != nullptr);
  DeactivateActCtx(0, cookie);
  ReleaseActCtx(context);
  CLSID id;
  EXPECT_NE(CLSIDFromProgID(L"TavM_CC_PlugIns.cls_CX", &id), S_OK);
  EXPECT_EQ(server.Call("DllRegisterServer"), S_OK);
}

TEST(Registration, AnUnknownClassHasNoFactory) {
  const Apartment apartment;
  const HMODULE module = LoadLibraryW(L"TavM_CC_PlugIns.dll");
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const auto get = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
  ASSERT_NE(get, nullptr);
  void* factory = &factory;
  EXPECT_EQ(get(IID_IDispatch, IID_IClassFactory, &factory), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(factory, nullptr);
  EXPECT_EQ(get(CLSID_cls_CX, IID_IClassFactory, nullptr), E_POINTER);
  automation::ComPtr<IClassFactory> found;
  ASSERT_EQ(get(CLSID_cls_CX, IID_IClassFactory, reinterpret_cast<void**>(found.GetAddressOf())),
            S_OK);
  EXPECT_FALSE(ServerIsIdle());
  automation::ComPtr<IUnknown> aggregated;
  EXPECT_EQ(found->CreateInstance(found.Get(), IID_IUnknown,
                                  reinterpret_cast<void**>(aggregated.GetAddressOf())),
            CLASS_E_NOAGGREGATION);
  EXPECT_EQ(found->LockServer(TRUE), S_OK);
  found.Reset();
  EXPECT_FALSE(ServerIsIdle());
  ASSERT_EQ(get(CLSID_cls_CX, IID_IClassFactory, reinterpret_cast<void**>(found.GetAddressOf())),
            S_OK);
  EXPECT_EQ(found->LockServer(FALSE), S_OK);
  found.Reset();
  EXPECT_TRUE(ServerIsIdle());
  FreeLibrary(module);
}

}  // namespace
}  // namespace tavcc
