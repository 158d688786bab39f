// Every reference taken is given back, also when the host fails; counts stay flat; apartments are
// independent.

#include <thread>

#include "TavM_CC_PlugIns.h"
#include "automation/border/variant.h"
#include "automation/fixture.h"
#include "host/automation/dispatch_object.h"

namespace tavcc {
namespace {

using automation::ComPtr;
using automation::ToUtf8;

// Audits bill 1 and un-audits it again; the messages of both.
std::string AuditAndUnAudit(HostedErp& erp) {
  ComPtr<_cls_CX> object;
  const HRESULT created = CoCreateInstance(CLSID_cls_CX, nullptr, CLSCTX_INPROC_SERVER, IID__cls_CX,
                                           reinterpret_cast<void**>(object.GetAddressOf()));
  if (FAILED(created)) return "not created";
  BSTR message = nullptr;
  VARIANT_BOOL done = VARIANT_FALSE;
  object->AuditBill(1, 2, erp.dsn(), &message, &done);
  std::string messages = ToUtf8(message);
  SysFreeString(message);
  message = nullptr;
  object->UnAuditBill(1, erp.dsn(), &message, &done);
  messages += ToUtf8(message);
  SysFreeString(message);
  // What the host writes down of each call is not what is measured here.
  erp.erp().log().Clear();
  erp.erp().host().ClearReadyCalls();
  return messages;
}

TEST_F(AutomationTest, AFailingHostCallLeavesNoReferenceBehind) {
  HostedErp erp;
  int failures = 0;
  for (int k = 1;; ++k) {
    host_automation::FailMemberCallAt(k, AutomationError(50000, "", "host failed"));
    AuditAndUnAudit(erp);
    const bool beyond_the_last = host_automation::CancelFailure();
    EXPECT_EQ(HostObjectsAlive(), 0) << "call " << k;
    EXPECT_TRUE(ServerIsIdle()) << "call " << k;
    if (beyond_the_last) break;
    ++failures;
  }
  EXPECT_GT(failures, 10);
}

TEST_F(AutomationTest, TenThousandCyclesLeaveHandlesAndMemoryFlat) {
  HostedErp erp;
  for (int i = 0; i < 100; ++i) ASSERT_EQ(AuditAndUnAudit(erp), "");  // caches fill
  DWORD handles_before = 0;
  GetProcessHandleCount(GetCurrentProcess(), &handles_before);
  MEMORYSTATUSEX before{};
  before.dwLength = sizeof before;
  GlobalMemoryStatusEx(&before);
  for (int i = 0; i < 10000; ++i) ASSERT_EQ(AuditAndUnAudit(erp), "");
  DWORD handles_after = 0;
  GetProcessHandleCount(GetCurrentProcess(), &handles_after);
  MEMORYSTATUSEX after{};
  after.dwLength = sizeof after;
  GlobalMemoryStatusEx(&after);
  EXPECT_LE(handles_after, handles_before + 2);
  // Address space taken meanwhile: a leak of one object a cycle would be far above a mebibyte.
  constexpr DWORDLONG kMebibyte = 1024 * 1024;
  EXPECT_LT(before.ullAvailVirtual - after.ullAvailVirtual, kMebibyte);
}

TEST_F(AutomationTest, TwoApartmentsWorkAtOnce) {
  const auto work = [](std::string* outcome) {
    Apartment apartment;
    HostClassHome home;
    HostedErp erp;
    for (int i = 0; i < 500 && outcome->empty(); ++i) *outcome = AuditAndUnAudit(erp);
  };
  std::string first, second;
  std::thread a(work, &first);
  std::thread b(work, &second);
  a.join();
  b.join();
  EXPECT_EQ(first, "");
  EXPECT_EQ(second, "");
}

}  // namespace
}  // namespace tavcc
