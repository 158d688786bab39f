// How the generic deletion uses the host's objects: when it readies the context and whether it
// closes the connection. What it sends and answers is told by scenarios.
#include "balances/bill_deletion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/fake_session.h"
#include "host/host_dictionary.h"
#include "host/reference_host.h"
#include "support/counted_rows.h"

namespace tavcc::testing {
namespace {

using ::testing::ElementsAre;

constexpr std::string_view kDsn = "erp";
constexpr auto kFirst = ReadyCall::Member::kFirst;
constexpr auto kSecond = ReadyCall::Member::kSecond;

class BillDeletion : public ::testing::Test {
 protected:
  BillDeletion() {
    session_->answer = [this](std::string_view sql) -> RecordsetPtr {
      if (!sql.starts_with("Select")) return std::make_shared<CountedRows>(CountedRows::Columns{});
      return std::make_shared<CountedRows>(
          CountedRows::Columns{{"FStatus", status_}, {"FVoucherID", Null{}}});
    };
    bill_.SetItem("BillInterID", 7);
    bill_.SetItem("HeadTableName", "T_Head");
    bill_.SetItem("Entry1TableName", "T_Entry");
  }

  bool Delete() {
    PlugIn object(host_);
    return DeleteBill(object, bill_, kDsn, message_);
  }

  StatementLog log_;
  std::shared_ptr<FakeSession> session_ = std::make_shared<FakeSession>();
  ReferenceHost host_{[this](std::string_view) { return session_; }, nullptr, &log_};
  HostDictionary bill_;
  std::string message_;
  Value status_ = 0;
};

TEST_F(BillDeletion, ReadiesTheContextBeforeItsConnectionAndAfterTheLastStatement) {
  EXPECT_TRUE(Delete());
  EXPECT_THAT(host_.ready_calls(), ElementsAre(ReadyCall{kFirst, 2, 0}, ReadyCall{kSecond, 2, 3}));
  EXPECT_EQ(session_->state, Connection::kStateOpen);
}

TEST_F(BillDeletion, ARefusalClosesTheConnectionAndReadiesNothingMore) {
  status_ = 1;
  EXPECT_FALSE(Delete());
  EXPECT_EQ(message_, "该单据已被审核，不能删除！");
  EXPECT_EQ(session_->state, Connection::kStateClosed);
  EXPECT_THAT(host_.ready_calls(), ElementsAre(ReadyCall{kFirst, 2, 0}));
}

TEST_F(BillDeletion, AnErrorAtAnyStatementLeavesTheConnectionOpenAndNoRowsAlive) {
  for (int k = 1; k <= 3; ++k) {
    host_.ClearReadyCalls();
    log_.Clear();
    log_.FailAt(k, AutomationError(50000, "server", "disk full"));
    message_.clear();
    EXPECT_FALSE(Delete()) << "statement " << k;
    EXPECT_EQ(message_, "disk full") << "statement " << k;
    EXPECT_EQ(log_.statements().size(), static_cast<size_t>(k));
    EXPECT_EQ(session_->state, Connection::kStateOpen) << "statement " << k;
    EXPECT_EQ(host_.ready_calls().size(), 1u) << "statement " << k;
    EXPECT_EQ(CountedRows::alive, 0) << "statement " << k;
  }
}

TEST_F(BillDeletion, AHostThatGivesNoContextIsAnError) {
  PlugIn object(host_);
  host_.settings().missing_components.insert("DbContext");
  EXPECT_FALSE(DeleteBill(object, bill_, kDsn, message_));
  EXPECT_EQ(message_, "ActiveX component can't create object");
  EXPECT_TRUE(log_.statements().empty());
}

TEST_F(BillDeletion, AnEmptyStatusIsNotAudited) {
  status_ = Empty{};
  EXPECT_TRUE(Delete());
}

}  // namespace
}  // namespace tavcc::testing
