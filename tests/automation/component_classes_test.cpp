// Which class a component's ProgID names: the registry is asked once for a thread, and once more
// where what it said holds no longer.

#include "automation/fixture.h"
#include "automation/late_call.h"
#include "automation/replaced_import.h"

namespace tavcc {
namespace {

using automation::UniqueVariant;

// What the registry was asked, and which classes were to be created.
int lookups = 0, creations = 0;

HRESULT WINAPI CountedLookup(LPCOLESTR prog_id, LPCLSID id) {
  ++lookups;
  return CLSIDFromProgID(prog_id, id);
}

// Every component registered anew, as another class.
constexpr DWORD kAnew = 0x80000000;

HRESULT WINAPI LookupAnew(LPCOLESTR prog_id, LPCLSID id) {
  const HRESULT result = CountedLookup(prog_id, id);
  id->Data1 ^= kAnew;
  return result;
}

HRESULT WINAPI CreateAnew(REFCLSID id, LPUNKNOWN outer, DWORD context, REFIID wanted,
                          LPVOID* object) {
  ++creations;
  if ((id.Data1 & kAnew) == 0) return REGDB_E_CLASSNOTREG;
  CLSID before = id;
  before.Data1 ^= kAnew;
  return CoCreateInstance(before, outer, context, wanted, object);
}

HRESULT WINAPI CreateNothing(REFCLSID, LPUNKNOWN, DWORD, REFIID, LPVOID*) {
  ++creations;
  return E_FAIL;
}

class ComponentClasses : public AutomationTest {
 protected:
  // The server is loaded, and knows nothing yet.
  ComponentClasses() {
    Audit();
    EXPECT_TRUE(ServerIsIdle());
    lookups = creations = 0;
  }

  // Audits the open assembly bill with an object of its own: the host's global object is made for
  // it.
  void Audit() {
    const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
    UniqueVariant message;
    LateCall call{{Long(1), Long(7), Text(erp_.dsn()), VariantReference(message.get())}, {}};
    EXPECT_EQ(call.On(*object.Get(), L"AuditBill"), S_OK);
  }

  HMODULE server() const { return GetModuleHandleW(L"TavM_CC_PlugIns.dll"); }

  HostedErp erp_;
};

TEST_F(ComponentClasses, AreLookedUpOnce) {
  const ReplacedImport lookup(server(), "CLSIDFromProgID", reinterpret_cast<void*>(CountedLookup));
  for (int i = 0; i < 10; ++i) Audit();
  EXPECT_EQ(lookups, 1);
  EXPECT_TRUE(ServerIsIdle()) << "and it lets go of what it keeps";
  Audit();
  EXPECT_EQ(lookups, 2);
}

TEST_F(ComponentClasses, AreLookedUpAgainWhenTheyAreRegisteredAnew) {
  Audit();
  const ReplacedImport lookup(server(), "CLSIDFromProgID", reinterpret_cast<void*>(LookupAnew));
  const ReplacedImport create(server(), "CoCreateInstance", reinterpret_cast<void*>(CreateAnew));
  Audit();
  EXPECT_EQ(lookups, 1);
  EXPECT_EQ(creations, 2) << "the one that is gone, and the one that is there now";
  Audit();
  EXPECT_EQ(lookups, 1);
  EXPECT_EQ(creations, 3);
}

TEST_F(ComponentClasses, ThatFailAreNotCreatedTwice) {
  Audit();
  const ReplacedImport lookup(server(), "CLSIDFromProgID", reinterpret_cast<void*>(CountedLookup));
  const ReplacedImport create(server(), "CoCreateInstance", reinterpret_cast<void*>(CreateNothing));
  CLSID id;
  EXPECT_EQ(CLSIDFromProgID(L"TavM_CC_PlugIns.cls_CX", &id), S_OK);
  automation::ComPtr<IDispatch> object;
  EXPECT_NE(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                             reinterpret_cast<void**>(object.GetAddressOf())),
            S_OK);
  EXPECT_EQ(creations, 1);
  EXPECT_EQ(lookups, 1);
}

}  // namespace
}  // namespace tavcc
