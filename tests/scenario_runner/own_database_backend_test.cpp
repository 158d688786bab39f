// The backend of databases of their own: what they send to the server around a scenario.
#include "scenario/own_database_backend.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/error.h"
#include "host/fake_session.h"
#include "scenario/runner.h"

namespace tavcc {
namespace {

using ::testing::Contains;
using testing::FakeSession;
using ::testing::HasSubstr;

class OwnDatabaseBackendTest : public ::testing::Test {
 protected:
  std::unique_ptr<Backend> Make() {
    return MakeOwnDatabaseBackend({"server", [this](std::string_view) { return session_; },
                                   [](Connection& closed) {
                                     dynamic_cast<FakeSession&>(closed).state =
                                         Connection::kStateOpen;
                                   },
                                   "scenarios_1"});
  }
  std::vector<std::string> Sent() { return std::exchange(session_->sent, {}); }

  const std::shared_ptr<FakeSession> session_ = std::make_shared<FakeSession>();
};

TEST_F(OwnDatabaseBackendTest, ASessionHasADatabaseThatIsDroppedBehindIt) {
  const auto backend = Make();
  StartState start;
  start.sql = {"insert into t values(1)"};
  auto session = backend->Open(start);
  const auto sent = Sent();
  ASSERT_GT(sent.size(), 4u);
  EXPECT_EQ(sent[0], "CREATE DATABASE [scenarios_1]");
  EXPECT_EQ(sent[1], "USE [scenarios_1]");
  EXPECT_THAT(sent, Contains(HasSubstr("CREATE TABLE T_CC_StockBill")));
  EXPECT_EQ(sent.back(), "insert into t values(1)");
  session = backend->Open(StartState());
  const auto next = Sent();
  ASSERT_GT(next.size(), 5u);
  EXPECT_EQ(next[0], "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION");
  EXPECT_EQ(next[1], "USE master");
  EXPECT_EQ(next[2], "DROP DATABASE [scenarios_1]");
  EXPECT_EQ(next[3], "CREATE DATABASE [scenarios_1]");
}

TEST_F(OwnDatabaseBackendTest, TheLastOneIsDroppedAtTheEnd) {
  auto backend = Make();
  backend->Open(StartState());
  Sent();
  backend = nullptr;
  EXPECT_EQ(session_->sent.back(), "DROP DATABASE [scenarios_1]");
}

TEST_F(OwnDatabaseBackendTest, AConnectionThatARuleClosedComesBackToTheDatabase) {
  const auto backend = Make();
  const auto session = backend->Open(StartState());
  session->connection()->Close();
  EXPECT_EQ(session_->State(), Connection::kStateClosed);
  Sent();
  EXPECT_EQ(session->connection()->State(), Connection::kStateOpen);
  EXPECT_EQ(Sent(), std::vector<std::string>{"USE [scenarios_1]"});
}

TEST_F(OwnDatabaseBackendTest, ADatabaseThatMayNotBeMadeIsNotDropped) {
  session_->answer = [](std::string_view) -> RecordsetPtr {
    throw AutomationError(262, "", "CREATE DATABASE permission denied in database 'master'.");
  };
  auto backend = Make();
  EXPECT_THROW(backend->Open(StartState()), AutomationError);
  Sent();
  backend = nullptr;
  EXPECT_TRUE(session_->sent.empty());
}

}  // namespace
}  // namespace tavcc
