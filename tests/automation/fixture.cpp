#include "automation/fixture.h"

#include "host/automation/dispatch_object.h"

namespace tavcc {

Apartment::Apartment() {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
}
Apartment::~Apartment() {
  CoUninitialize();
}

bool ServerIsIdle() {
  const HMODULE server = GetModuleHandleW(L"TavM_CC_PlugIns.dll");
  if (server == nullptr) return true;
  using CanUnloadNow = HRESULT(STDAPICALLTYPE*)();
  const auto can_unload = reinterpret_cast<CanUnloadNow>(
      reinterpret_cast<void*>(GetProcAddress(server, "DllCanUnloadNow")));
  return can_unload() == S_OK;
}

long HostObjectsAlive() {
  return host_automation::LivingDispatchObjects();
}

void AutomationTest::TearDown() {
  EXPECT_EQ(HostObjectsAlive(), 0);
  EXPECT_TRUE(ServerIsIdle());
}

}  // namespace tavcc
