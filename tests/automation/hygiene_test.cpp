// Counts stay flat over many calls; apartments are independent.

#include <thread>

#include "TavM_CC_PlugIns.h"
#include "automation/border/variant.h"
#include "automation/fixture.h"
#include "automation/loading/resources.h"
#include "support/seed.h"

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

TEST_F(AutomationTest, ThousandsOfCyclesLeaveNothing) {
  const int cycles = testing::TryAll() ? 10000 : 2000;
  HostedErp erp;
  ASSERT_TRUE(ResourceCountsMove());                                  // or a leak would not be seen
  for (int i = 0; i < 100; ++i) ASSERT_EQ(AuditAndUnAudit(erp), "");  // caches fill
  CountResources();
  const Resources before = CountResources();
  for (int i = 0; i < cycles; ++i) ASSERT_EQ(AuditAndUnAudit(erp), "");
  const Resources after = CountResources();
  EXPECT_LE(after.slots, before.slots);
  EXPECT_LE(after.handles, before.handles + 2);
  // A leak of one block a cycle would be far above these.
  EXPECT_LT(after.heap_blocks, before.heap_blocks + cycles / 10);
  EXPECT_LT(after.heap_bytes, before.heap_bytes + 8 * cycles);
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
