// The credit check with amounts that no decimal holds, which no database column of the ERP can hold
// either. All else is told by scenarios.
#include "checks/credit.h"

#include <gtest/gtest.h>

#include "foundation/bill_kinds.h"
#include "foundation/host_services.h"
#include "host/fake_session.h"
#include "host/host_dictionary.h"
#include "host/reference_host.h"
#include "support/counted_rows.h"

namespace tavcc::testing {
namespace {

struct Amounts {
  const char* what;
  double credit;
  double balance;
  double bill;
  int16_t answer;  // 1: beyond the credit line
};

// Decimals end at 38 digits: 1e40 fits none.
constexpr Amounts kAmounts[] = {
    {"a bill up to the line", 1e40, 0, 1e40, 0},
    {"a bill and a balance up to the line", 1e40, 5e39, 5e39, 0},
    {"a bill beyond the line", 1e40, 0, 2e40, 1},
    {"a balance beyond the line", 1e40, 2e40, 0, 1},
    {"only the balance fits no decimal", 1000, 1e40, 1, 1},
    {"only the balance fits no decimal, and is owed to the partner", 1000, -1e40, 2000, 0},
    {"only the line fits no decimal", 1e40, 1000, 1000, 0},
    {"a line below zero is no limit", -1e40, 1e40, 1e40, 0},
};

TEST(Credit, ComparesAsDoublesWhatNoDecimalHolds) {
  for (const Amounts& amounts : kAmounts) {
    SCOPED_TRACE(amounts.what);
    auto session = std::make_shared<FakeSession>();
    session->answer = [&](std::string_view) {
      return std::make_shared<CountedRows>(CountedRows::Columns{
          {"FCreditAmount", amounts.credit}, {"FCurComeGoBalance", amounts.balance}});
    };
    StatementLog log;
    ReferenceHost host([&](std::string_view) { return session; }, nullptr, &log);
    PlugIn object(host);
    HostDictionary bill;
    bill.SetItem("ClassTypeID", class_type::kSalesBill);
    bill.SetItem("CustOrSupplyID", 7);
    bill.SetItem("AllAmount", amounts.bill);
    std::string message;
    bool is_supplier = true;
    EXPECT_EQ(CheckCredit(object, bill, kAudit, "erp", message, is_supplier), amounts.answer)
        << message;
    EXPECT_FALSE(is_supplier);
    ReleaseHostObjects();
  }
}

}  // namespace
}  // namespace tavcc::testing
