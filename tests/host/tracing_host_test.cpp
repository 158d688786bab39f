#include "host/tracing_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/host_services.h"
#include "host/fake_session.h"
#include "host/reference_host.h"

namespace tavcc {
namespace {

using ::testing::ElementsAre;
using testing::FakeSession;
using testing::OneColumn;
using ::testing::SizeIs;

class TracingHostTest : public ::testing::Test {
 protected:
  TracingHostTest() {
    session_->answer = [](auto) { return std::make_shared<OneColumn>(std::vector<Value>{"1"}); };
    log_.SetObserver({.rows = 10});
  }
  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const LoggedStatement& statement : log_.statements()) texts.push_back(statement.text);
    return texts;
  }

  std::shared_ptr<FakeSession> session_ = std::make_shared<FakeSession>();
  ReferenceHost inner_{[this](std::string_view) { return session_; }};
  StatementLog log_;
  TracingHost host_{inner_, log_};
};

TEST_F(TracingHostTest, EveryWayToTheDatabaseIsInTheLog) {
  const auto context = host_.NewDbContext();
  context->Bind("db");
  context->GetConnection()->Execute("Select 1");
  ExecuteSQL(host_, "db", "Select 2");
  EXPECT_EQ(GetFirstValue(host_, "db", "Select 3"), "1");
  EXPECT_THAT(Texts(), ElementsAre("Select 1", "Select 2", "Select 3"));
  EXPECT_EQ(log_.statements()[2].seen->count, 1);
  EXPECT_EQ(log_.statements()[1].rows, 1);
}

TEST_F(TracingHostTest, ErrorsAreTheHostsOwn) {
  session_->answer = [](auto) -> RecordsetPtr { throw AutomationError(208, "db", "no table"); };
  EXPECT_THROW(ExecuteSQL(host_, "db", "Select 1"), AutomationError);
  ASSERT_THAT(log_.statements(), SizeIs(1));
  EXPECT_EQ(log_.statements()[0].error->number(), 208);
}

}  // namespace
}  // namespace tavcc
