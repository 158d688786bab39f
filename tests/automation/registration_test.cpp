// Registration: what is written is what a client needs, and nothing of it stays behind.

#include <thread>

#include "TavM_CC_PlugIns.h"
#include "automation/border/class_keys.h"
#include "automation/border/variant.h"
#include "automation/fixture.h"
#include "automation/interface_ids.h"
#include "registry/class_registry.h"

namespace tavcc {
namespace {

using automation::ComPtr;
using automation::DeleteTree;
using automation::GuidText;
using automation::KeyExists;
using automation::kOtherView;

using EntryPoint = HRESULT(STDAPICALLTYPE*)();

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

// ---- The other bitness -------------------------------------------------------------------------

constexpr bool kIs64 = sizeof(void*) == 8;

// Windows keeps two views of the registry's classes where it runs programs of both widths.
bool HasTwoViews() {
  BOOL narrow_on_wide = FALSE;
  IsWow64Process(GetCurrentProcess(), &narrow_on_wide);
  return kIs64 || narrow_on_wide;
}

void WriteKey(const std::wstring& key, REGSAM view, const std::wstring& value) {
  HKEY handle = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, nullptr, 0, KEY_WRITE | view,
                            nullptr, &handle, nullptr),
            ERROR_SUCCESS);
  RegSetValueExW(handle, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                 static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
  RegCloseKey(handle);
}

std::wstring TypeLibraryOf(const wchar_t* system) {
  return L"TypeLib\\" + GuidText(LIBID_TavM_CC_PlugIns) + L"\\1.0\\0\\" + system;
}

// What the server of the other bitness leaves in the registry beside what both write.
void RegisterOtherBitness() {
  for (const InterfaceId& entry : InterfaceIds()) {
    WriteKey(L"CLSID\\" + GuidText(entry.class_id) + L"\\InprocServer32", kOtherView,
             L"C:\\other\\TavM_CC_PlugIns.dll");
  }
  WriteKey(TypeLibraryOf(kIs64 ? L"win32" : L"win64"), 0, L"C:\\other\\TavM_CC_PlugIns.dll");
}

void UnregisterOtherBitness() {
  for (const InterfaceId& entry : InterfaceIds()) {
    const std::wstring key = L"CLSID\\" + GuidText(entry.class_id);
    RegDeleteKeyExW(HKEY_CLASSES_ROOT, (key + L"\\InprocServer32").c_str(), kOtherView, 0);
    RegDeleteKeyExW(HKEY_CLASSES_ROOT, key.c_str(), kOtherView, 0);
  }
  DeleteTree(TypeLibraryOf(kIs64 ? L"win32" : L"win64"));
}

TEST(Registration, UnregisteringOneBitnessLeavesWhatTheOtherNeeds) {
  if (!HasTwoViews()) GTEST_SKIP() << "this system has one bitness only";
  const Apartment apartment;
  const Server server;
  RegisterOtherBitness();
  EXPECT_EQ(server.Call("DllUnregisterServer"), S_OK);
  for (const InterfaceId& entry : InterfaceIds()) {
    const std::wstring cls = L"CLSID\\" + GuidText(entry.class_id);
    const std::wstring name(entry.class_name.begin(), entry.class_name.end());
    EXPECT_FALSE(KeyExists(cls)) << entry.class_name;
    EXPECT_TRUE(KeyExists(cls, kOtherView)) << entry.class_name;
    EXPECT_TRUE(KeyExists(L"TavM_CC_PlugIns." + name + L"\\CLSID")) << entry.class_name;
    EXPECT_TRUE(KeyExists(L"Interface\\" + GuidText(entry.id))) << entry.class_name;
    EXPECT_TRUE(KeyExists(L"Interface\\" + GuidText(entry.id), kOtherView)) << entry.class_name;
  }
  EXPECT_TRUE(KeyExists(TypeLibraryOf(kIs64 ? L"win32" : L"win64")));
  EXPECT_FALSE(KeyExists(TypeLibraryOf(kIs64 ? L"win64" : L"win32")));
  UnregisterOtherBitness();
  // Registered alone, it leaves nothing.
  EXPECT_EQ(server.Call("DllRegisterServer"), S_OK);
  EXPECT_EQ(server.Call("DllUnregisterServer"), S_OK);
  for (const auto& key : AllKeys()) EXPECT_FALSE(KeyExists(key)) << Narrow(key);
  EXPECT_EQ(server.Call("DllRegisterServer"), S_OK);
}

// ---- Without registration ----------------------------------------------------------------------

// A client whose manifest depends on the server's assembly, which lies in the server as a resource.
class ActivationContext {
 public:
  ActivationContext() {
    ACTCTXW description{};
    description.cbSize = sizeof description;
    description.lpSource = L"client.manifest";
    context_ = CreateActCtxW(&description);
    EXPECT_NE(context_, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(ActivateActCtx(context_, &cookie_));
  }
  ~ActivationContext() {
    DeactivateActCtx(0, cookie_);
    ReleaseActCtx(context_);
  }
  ActivationContext(const ActivationContext&) = delete;
  ActivationContext& operator=(const ActivationContext&) = delete;

 private:
  HANDLE context_;
  ULONG_PTR cookie_ = 0;
};

class WithoutRegistration : public AutomationTest {
 protected:
  WithoutRegistration() { EXPECT_EQ(server_.Call("DllUnregisterServer"), S_OK); }
  ~WithoutRegistration() override { EXPECT_EQ(server_.Call("DllRegisterServer"), S_OK); }

  Server server_;
  HostedErp erp_;
};

TEST_F(WithoutRegistration, ADependencyOfTheClientsManifestCreatesEveryClass) {
  CLSID id;
  EXPECT_NE(CLSIDFromProgID(L"TavM_CC_PlugIns.cls_CX", &id), S_OK);
  const ActivationContext context;
  for (const InterfaceId& entry : InterfaceIds()) {
    const std::wstring name(entry.class_name.begin(), entry.class_name.end());
    EXPECT_TRUE(CreateByProgID((L"TavM_CC_PlugIns." + name).c_str()).Get() != nullptr);
  }
}

// An interface of the library crosses to another apartment by its type library.
TEST_F(WithoutRegistration, DualInterfacesMarshalBetweenApartments) {
  const ActivationContext context;
  ComPtr<_cls_CX> object;
  ASSERT_EQ(CoCreateInstance(CLSID_cls_CX, nullptr, CLSCTX_INPROC_SERVER, IID__cls_CX,
                             reinterpret_cast<void**>(object.GetAddressOf())),
            S_OK);
  ComPtr<IStream> stream;
  ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID__cls_CX, object.Get(), stream.GetAddressOf()),
            S_OK);
  std::string message;
  HRESULT called = E_FAIL;
  HANDLE ended = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::thread caller([&] {
    const struct Signal {
      HANDLE event;
      ~Signal() { SetEvent(event); }
    } signal{ended};
    const Apartment apartment;
    const ActivationContext own_context;
    ComPtr<_cls_CX> proxy;
    const HRESULT unmarshaled = CoGetInterfaceAndReleaseStream(
        stream.Detach(), IID__cls_CX, reinterpret_cast<void**>(proxy.GetAddressOf()));
    ASSERT_EQ(unmarshaled, S_OK);
    EXPECT_NE(static_cast<void*>(proxy.Get()), static_cast<void*>(object.Get()));
    BSTR text = automation::NewBstr("earlier");
    VARIANT_BOOL done = VARIANT_TRUE;
    called = proxy->AuditBill(77, 2, erp_.dsn(), &text, &done);
    message = automation::ToUtf8(text);
    SysFreeString(text);
  });
  // The object's thread answers while it waits.
  DWORD index = 0;
  CoWaitForMultipleHandles(0, 30000, 1, &ended, &index);
  caller.join();
  CloseHandle(ended);
  EXPECT_EQ(called, S_OK);
  EXPECT_EQ(message, "该单据不存在，不能审核！");
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
