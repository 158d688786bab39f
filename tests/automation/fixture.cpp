#include "automation/fixture.h"

#include "automation/border/variant.h"
#include "host/automation/component_objects.h"
#include "host/automation/dispatch_object.h"
#include "host/company.h"

namespace tavcc {

Apartment::Apartment() {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
}
Apartment::~Apartment() {
  CoUninitialize();
}

HostedErp::HostedErp() : erp_(CompanyOptions()), dsn_(automation::NewBstr(erp_.dsn())) {
  erp_.connection()->Execute(
      "insert into T_CC_ZZCX(FID,FClassTypeID,FDate) values(1,1040005,'2026-03-10')");
  host_automation::SetThreadHost(&erp_.host());
}

HostedErp::~HostedErp() {
  host_automation::SetThreadHost(nullptr);
  SysFreeString(dsn_);
}

automation::ComPtr<IDispatch> CreateByProgID(const wchar_t* prog_id) {
  CLSID id;
  automation::ComPtr<IDispatch> object;
  EXPECT_EQ(CLSIDFromProgID(prog_id, &id), S_OK);
  EXPECT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                             reinterpret_cast<void**>(object.GetAddressOf())),
            S_OK);
  return object;
}

long HostObjectsAlive() {
  return host_automation::LivingDispatchObjects();
}

void AutomationTest::TearDown() {
  EXPECT_TRUE(ServerIsIdle());
  EXPECT_EQ(HostObjectsAlive(), 0);
}

}  // namespace tavcc
