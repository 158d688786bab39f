// How verification and the related-bill gates use the host's objects: when they ready the context,
// what they do without a component, and that they let go of their rows. What they ask and answer is
// told by scenarios.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checks/related_bills.h"
#include "checks/stock_quantity.h"
#include "checks/verification.h"
#include "foundation/bill_kinds.h"
#include "foundation/host_services.h"
#include "host/fake_session.h"
#include "host/host_dictionary.h"
#include "host/reference_host.h"
#include "support/counted_rows.h"

namespace tavcc::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::string_view kDsn = "erp";
constexpr auto kSecond = ReadyCall::Member::kSecond;

// A bill that may be un-audited in every respect: audited by 8, made by 9, in the period.
RecordsetPtr AnswerForAuditedBill(std::string_view sql) {
  const auto has = [&](std::string_view part) { return sql.find(part) != std::string_view::npos; };
  const auto rows = [](CountedRows::Columns columns) {
    return std::make_shared<CountedRows>(std::move(columns));
  };
  if (has("t_SystemProfile where FCategory")) return rows({});  // no setting
  if (has("FDate,FBillerID")) {
    return rows({{"FStatus", 1},
                 {"FVoucherID", 0},
                 {"FDate", *DateTime::Parse("2026-03-10")},
                 {"FBillerID", 9}});
  }
  if (has("IsNUll(FVoucherID,0)")) return rows({{"F0", 8}, {"F1", 0}});
  if (has("@Same")) return rows({{"FSame", 0}, {"FBillerID", 9}});
  if (has("DateDiff")) return rows({{"FYear", 2026}});
  if (has("FStartDate,FEndDate")) {
    return rows({{"FStartDate", *DateTime::Parse("2026-03-01")},
                 {"FEndDate", *DateTime::Parse("2026-03-31")}});
  }
  if (has("ICRelations")) return rows({{"F0", 0}});
  return rows({});
}

class HostObjects : public ::testing::Test {
 protected:
  HostObjects() {
    bill_.SetItem("ClassTypeID", class_type::kPurchaseBill);
    bill_.SetItem("HeadTableName", "t_CC_StockBill");
    bill_.SetItem("BillInterID", 1);
    bill_.SetItem("BillType", 2013);
  }
  ~HostObjects() override { ReleaseHostObjects(); }

  // A session that counts, at each statement, the recordsets that are still alive.
  ConnectionPtr Open() {
    auto session = std::make_shared<FakeSession>();
    session->answer = [this](std::string_view sql) {
      most_alive_ = std::max(most_alive_, CountedRows::alive);
      return AnswerForAuditedBill(sql);
    };
    return session;
  }

  int16_t VerifyUnAudit(PlugIn& object) {
    return VerifyDataBeforeAudit(object, bill_, kDsn, kUnAudit, message_, true);
  }

  StatementLog log_;
  ReferenceHost host_{[this](std::string_view) { return Open(); }, nullptr, &log_};
  HostDictionary bill_;
  std::string message_;
  int most_alive_ = 0;
};

TEST_F(HostObjects, AGateReadiesTheContextOnceAfterTheConnectionAndBeforeItsFirstStatement) {
  PlugIn object(host_);
  object.InitObjects(kDsn);
  EXPECT_TRUE(CanCheckGH(object, class_type::kPurchaseBill, 2013, 1, kUnAudit, message_));
  EXPECT_TRUE(CanCheckGJ(object, class_type::kPurchaseEstimate, 2030, 1, kUnAudit, message_));
  EXPECT_TRUE(CanCheckFL(object, class_type::kPurchaseRebate, 2041, 1, kUnAudit, message_));
  EXPECT_TRUE(OtherBillCanCheck(object, class_type::kOtherReceipt, 1, kUnAudit, message_));
  EXPECT_EQ(WhetherBillInvoiceStatus(object, bill_, message_), 0);
  // The gates sent 6, 4, 1, 2 and 1 statements; the object's second context is the bound one.
  EXPECT_THAT(host_.ready_calls(), ElementsAre(ReadyCall{kSecond, 2, 0}, ReadyCall{kSecond, 2, 6},
                                               ReadyCall{kSecond, 2, 10}, ReadyCall{kSecond, 2, 11},
                                               ReadyCall{kSecond, 2, 13}));
}

TEST_F(HostObjects, AGateThatAnswersAtOnceDoesNotTouchTheContext) {
  PlugIn object(host_);  // tied to no database
  EXPECT_TRUE(CanCheckFL(object, class_type::kPurchaseRebate, 2041, 1, kAudit, message_));
  EXPECT_FALSE(CanCheckGJ(object, class_type::kPurchaseEstimate, 2032, 1, kAudit, message_));
  EXPECT_THAT(host_.ready_calls(), IsEmpty());
}

TEST_F(HostObjects, VerificationReadiesNothingItselfAndTheGateUsesTheContextThatItBound) {
  PlugIn object(host_);
  EXPECT_EQ(VerifyUnAudit(object), check_result::kPassed) << message_;
  EXPECT_THAT(host_.ready_calls(), ElementsAre(ReadyCall{kSecond, 2, 4}));
}

TEST_F(HostObjects, EveryRecordsetIsReleasedBeforeTheNextIsOpened) {
  PlugIn object(host_);
  object.InitObjects(kDsn);
  EXPECT_TRUE(CanCheckGH(object, class_type::kPurchaseBill, 2013, 1, kUnAudit, message_));
  EXPECT_TRUE(CanCheckGJ(object, class_type::kPurchaseEstimate, 2030, 1, kUnAudit, message_));
  EXPECT_TRUE(OtherBillCanCheck(object, class_type::kOtherReceipt, 1, kUnAudit, message_));
  EXPECT_EQ(most_alive_, 0);
  EXPECT_EQ(CountedRows::alive, 0);
}

TEST_F(HostObjects, NothingIsLeftAliveAfterAFailureAtAnyStatement) {
  // The head, the period, two questions for documents, then six of the gate.
  constexpr int kStatements = 10;
  for (int k = 1; k <= kStatements; ++k) {
    PlugIn object(host_);
    log_.Clear();
    log_.FailAt(k, AutomationError(50000, "server", "disk full"));
    const int16_t expected = k <= 4 ? check_result::kFailed : check_result::kBlocked;
    EXPECT_EQ(VerifyUnAudit(object), expected) << "statement " << k;
    EXPECT_FALSE(log_.FailurePending()) << "statement " << k;
    EXPECT_EQ(CountedRows::alive, 0) << "statement " << k;
  }
  PlugIn object(host_);
  log_.Clear();
  EXPECT_EQ(VerifyUnAudit(object), check_result::kPassed);
  EXPECT_EQ(log_.statements().size(), kStatements);
}

// The host reads them when the connection may serve others, or is closed.
TEST(StockQuantity, ShortagesAreHandedBackDetached) {
  const auto shortages = std::make_shared<CountedRows>(CountedRows::Columns{{"FITEMID", 11}});
  auto session = std::make_shared<FakeSession>();
  session->answer = [&](std::string_view sql) -> RecordsetPtr {
    if (sql.find("AS DIFFQTY") != std::string_view::npos) return shortages;
    return std::make_shared<CountedRows>(CountedRows::Columns{});
  };
  StatementLog log;
  ReferenceHost host([&](std::string_view) { return session; }, nullptr, &log);
  PlugIn object(host);
  HostDictionary bill;
  bill.SetItem("ClassTypeID", class_type::kOtherIssue);
  bill.SetItem("BillInterID", 1);
  bill.SetItem("BillType", 0);
  std::string message;
  RecordsetPtr rows;
  EXPECT_EQ(CheckItemStockNum(object, &bill, kAudit, kDsn, message, rows, "", nullptr), 2)
      << message;
  EXPECT_TRUE(shortages->detached());
  ReleaseHostObjects();
}

struct MissingComponent {
  const char* component;
  int16_t generic;  // VerifyDataBeforeAudit's answer
  int16_t self;     // VerifyUnCheckForSelf's
};

class WithoutComponent : public HostObjects,
                         public ::testing::WithParamInterface<MissingComponent> {};

TEST_P(WithoutComponent, TheAnswerIsFailedWithTheDescription) {
  PlugIn object(host_);
  host_.settings().missing_components.insert(GetParam().component);
  message_ = "earlier";
  EXPECT_EQ(VerifyUnAudit(object), GetParam().generic);
  if (GetParam().generic == check_result::kFailed) {
    EXPECT_EQ(message_, "ActiveX component can't create object");
  }
  message_ = "earlier";
  EXPECT_EQ(VerifyUnCheckForSelf(object, bill_, kDsn, kUnAudit, message_, true), GetParam().self);
  if (GetParam().self == check_result::kFailed) {
    EXPECT_EQ(message_, "ActiveX component can't create object");
  }
}

INSTANTIATE_TEST_SUITE_P(
    Components, WithoutComponent,
    ::testing::Values(MissingComponent{"DbContext", check_result::kFailed, check_result::kFailed},
                      MissingComponent{"TavEBSBase.SystemProfile", check_result::kFailed,
                                       check_result::kFailed},
                      // The setting that would make the self check ask the database is not there.
                      MissingComponent{"TavMAPPConnection.APPConnection", check_result::kFailed,
                                       check_result::kPassed}));

TEST_F(HostObjects, TheSelfCheckOfAnAuditStillReplacesTheContext) {
  PlugIn object(host_);
  host_.settings().missing_components.insert("DbContext");
  EXPECT_EQ(VerifyUnCheckForSelf(object, bill_, kDsn, kAudit, message_, true),
            check_result::kFailed);
}

}  // namespace
}  // namespace tavcc::testing
