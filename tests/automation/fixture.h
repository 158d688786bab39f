// What every test through COM needs: an apartment, the host's classes, and a look at what is left.
#pragma once

#include <gtest/gtest.h>

#include "automation/border/platform.h"
#include "automation/com_session.h"
#include "host/automation/dispatch_object.h"
#include "host/erp.h"

namespace tavcc {

// A single-threaded apartment for the lifetime of the object.
class Apartment {
 public:
  Apartment();
  ~Apartment();
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
};

// An ERP database in memory, with the schema, the base rows and one open assembly bill (FID 1),
// whose host serves this thread.
class HostedErp {
 public:
  HostedErp();
  ~HostedErp();
  HostedErp(const HostedErp&) = delete;
  HostedErp& operator=(const HostedErp&) = delete;

  Erp& erp() { return erp_; }
  BSTR dsn() const { return dsn_; }  // owned by the object

 private:
  Erp erp_;
  BSTR dsn_;
};

// A new object of a registered class. Null, with a failed expectation, when that fails.
automation::ComPtr<IDispatch> CreateByProgID(const wchar_t* prog_id);

// Host objects alive beyond the class factories: what the server or a test still holds.
long HostObjectsAlive();

// How often the action calls the host.
template <class Action>
int HostCallsOf(const Action& action) {
  constexpr int kBeyondAllCalls = 1'000'000;
  host_automation::OrderFault(kBeyondAllCalls, host_automation::Fault::kEmpty);
  action();
  return kBeyondAllCalls - host_automation::CancelFault();
}

class AutomationTest : public ::testing::Test {
 protected:
  void TearDown() override;

  Apartment apartment_;
  HostClassHome home_;
};

}  // namespace tavcc
