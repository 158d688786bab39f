#include "host/statement_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/fake_session.h"

namespace tavcc {
namespace {

using ::testing::ElementsAre;
using testing::FakeSession;
using ::testing::IsEmpty;
using testing::OneColumn;
using ::testing::SizeIs;

class StatementLogTest : public ::testing::Test {
 protected:
  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const LoggedStatement& statement : log_.statements()) texts.push_back(statement.text);
    return texts;
  }
  // The number of the error that the statement raises, 0 for none.
  int32_t Run(std::string_view sql) {
    try {
      connection_->Execute(sql);
    } catch (const AutomationError& error) {
      return error.number();
    }
    return 0;
  }

  StatementLog log_;
  std::shared_ptr<FakeSession> session_ = std::make_shared<FakeSession>();
  ConnectionPtr connection_ = LogStatements(session_, log_);
};

TEST_F(StatementLogTest, KeepsTheOrderAcrossConnections) {
  const ConnectionPtr other = LogStatements(std::make_shared<FakeSession>(), log_);
  connection_->Execute("Select 1");
  other->OpenClientRecordset("Select 2");
  connection_->Execute("Select 3\r\n");
  EXPECT_THAT(Texts(), ElementsAre("Select 1", "Select 2", "Select 3\r\n"));
  EXPECT_THAT(session_->sent, ElementsAre("Select 1", "Select 3\r\n"));
}

TEST_F(StatementLogTest, TellsRowsAndPassesThemOn) {
  session_->answer = [](auto) {
    return std::make_shared<OneColumn>(std::vector<Value>{"a", "b", "c"});
  };
  EXPECT_EQ(connection_->Execute("Select x")->Field(0), Value("a"));
  EXPECT_EQ(log_.statements()[0].rows, 3);
  EXPECT_GE(log_.statements()[0].milliseconds, 0);
  EXPECT_FALSE(log_.statements()[0].is_procedure);
}

TEST_F(StatementLogTest, AProcedureIsLoggedWithItsInputsAndReturnsItsOutputs) {
  ProcedureParameter parameters[] = {
      {.name = "@FID", .value = int32_t{7}},
      {.name = "@ErrorMessage", .value = "", .output = true},
  };
  connection_->CallProcedure("sp_Post", parameters);
  EXPECT_EQ(parameters[1].value, Value("out"));
  ASSERT_THAT(log_.statements(), SizeIs(1));
  const LoggedStatement& call = log_.statements()[0];
  EXPECT_TRUE(call.is_procedure);
  EXPECT_EQ(call.text, "sp_Post");
  ASSERT_THAT(call.parameters, SizeIs(1));
  EXPECT_EQ(call.parameters[0].name, "@FID");
  EXPECT_EQ(call.parameters[0].value, Value(int32_t{7}));
}

TEST_F(StatementLogTest, AnErrorOfTheDatabaseIsLoggedAndRaised) {
  session_->answer = [](auto) -> RecordsetPtr { throw AutomationError(208, "db", "no table"); };
  session_->errors = {{208, "db", "no table", "42S02"}};
  EXPECT_EQ(Run("Select x"), 208);
  ASSERT_TRUE(log_.statements()[0].error.has_value());
  EXPECT_EQ(log_.statements()[0].error->description(), "no table");
  EXPECT_THAT(connection_->Errors(), SizeIs(1));
}

TEST_F(StatementLogTest, TheKthStatementFailsInsteadOfRunningOnce) {
  connection_->Execute("Select 0");
  log_.FailAt(2, AutomationError(50000, "test", "disk full"));
  EXPECT_EQ(Run("Select 1"), 0);
  EXPECT_TRUE(log_.FailurePending());
  EXPECT_EQ(Run("Select 2"), 50000);
  EXPECT_FALSE(log_.FailurePending());
  EXPECT_EQ(Run("Select 3"), 0);
  EXPECT_THAT(session_->sent, ElementsAre("Select 0", "Select 1", "Select 3"));
  EXPECT_THAT(Texts(), ElementsAre("Select 0", "Select 1", "Select 2", "Select 3"));
}

TEST_F(StatementLogTest, AProcedureCallCanBeTheOneThatFails) {
  log_.FailAt(1, AutomationError(50000, "test", "disk full"));
  EXPECT_THROW(connection_->CallProcedure("sp_Post", {}), AutomationError);
  EXPECT_THAT(session_->sent, IsEmpty());
}

TEST_F(StatementLogTest, ErrorsTellOfAnOrderedFailureUntilTheNextStatement) {
  log_.FailAt(1, AutomationError(50000, "test", "disk full"));
  EXPECT_EQ(Run("Select 1"), 50000);
  const std::vector<ConnectionError> errors = connection_->Errors();
  ASSERT_THAT(errors, SizeIs(1));
  EXPECT_EQ(errors[0].number, 50000);
  EXPECT_EQ(errors[0].source, "test");
  EXPECT_EQ(errors[0].description, "disk full");
  EXPECT_EQ(Run("Select 2"), 0);
  EXPECT_THAT(connection_->Errors(), IsEmpty());
}

TEST_F(StatementLogTest, AnErrorCanBeLeftBehindByAStatementThatRuns) {
  log_.FailAt(1, {AutomationError(50000, "test", "disk full"), StatementFault::Kind::kLeft});
  EXPECT_EQ(Run("Select 1"), 0);
  EXPECT_THAT(session_->sent, ElementsAre("Select 1"));
  ASSERT_THAT(connection_->Errors(), SizeIs(1));
  EXPECT_EQ(connection_->Errors()[0].description, "disk full");
  EXPECT_EQ(Run("Select 2"), 0);
  EXPECT_THAT(connection_->Errors(), IsEmpty());
}

TEST_F(StatementLogTest, ClearingDropsAFailureThatNoStatementMet) {
  log_.FailAt(1, AutomationError(50000, "test", "disk full"));
  log_.Clear();
  EXPECT_EQ(Run("Select 1"), 0);
}

TEST_F(StatementLogTest, TheObserverSeesEachStatementWhenItHasRun) {
  std::vector<std::string> seen;
  log_.SetObserver({.sent = [&](const LoggedStatement& statement) {
    seen.push_back(statement.text + (statement.error ? " failed" : " ran"));
  }});
  log_.FailAt(2, AutomationError(50000, "test", "disk full"));
  Run("Select 1");
  Run("Select 2");
  EXPECT_THAT(seen, ElementsAre("Select 1 ran", "Select 2 failed"));
}

TEST_F(StatementLogTest, TellsTheLineThatSentAStatement) {
  const int line = __LINE__ + 1;
  connection_->Execute("Select 1");
  connection_->OpenClientRecordset(std::string("Select 2"));
  connection_->CallProcedure("sp_Post", {});
  ASSERT_THAT(log_.statements(), SizeIs(3));
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(PlaceText(log_.statements()[static_cast<size_t>(i)].from),
              "tests/host/statement_log_test.cpp:" + std::to_string(line + i));
  }
}

TEST_F(StatementLogTest, AFailureTellsItsLineToo) {
  log_.FailAt(1, AutomationError(50000, "test", "disk full"));
  const int line = __LINE__ + 1;
  EXPECT_THROW(connection_->Execute("Select 1"), AutomationError);
  ASSERT_TRUE(log_.first_failure().has_value());
  EXPECT_EQ(log_.first_failure()->from.line, line);
}

TEST(CallSites, AreNamedAsInTheProject) {
  EXPECT_EQ(PlaceText({"/any/src/erp/src/checks/credit.cpp", 7}), "src/checks/credit.cpp:7");
  EXPECT_EQ(PlaceText({"../../src/checks/credit.cpp", 7}), "src/checks/credit.cpp:7");
  EXPECT_EQ(PlaceText({"src/checks/credit.cpp", 7}), "src/checks/credit.cpp:7");
  EXPECT_EQ(PlaceText({"credit.cpp", 7}), "credit.cpp:7");
  EXPECT_EQ(PlaceText(CallSite()), "");
}

TEST_F(StatementLogTest, AProceduresOutputsAreLogged) {
  ProcedureParameter parameters[] = {{.name = "@ErrorMessage", .value = "", .output = true}};
  connection_->CallProcedure("sp_Post", parameters);
  ASSERT_THAT(log_.statements()[0].outputs, SizeIs(1));
  EXPECT_EQ(log_.statements()[0].outputs[0].name, "@ErrorMessage");
  EXPECT_EQ(log_.statements()[0].outputs[0].value, Value("out"));
}

TEST_F(StatementLogTest, WhereNobodyAsksForRowsTheRecordsetIsTheConnectionsOwn) {
  const auto answer = std::make_shared<OneColumn>(std::vector<Value>{"a"});
  session_->answer = [&](auto) { return answer; };
  EXPECT_EQ(connection_->Execute("Select x"), answer);
  EXPECT_EQ(log_.statements()[0].seen, nullptr);
  log_.SetObserver({.rows = 1});
  EXPECT_NE(connection_->Execute("Select x"), answer);
}

TEST_F(StatementLogTest, KeepsTheRowsThatWereSeen) {
  session_->answer = [](auto) {
    return std::make_shared<OneColumn>(std::vector<Value>{"a", "b", "c"});
  };
  log_.SetObserver({.rows = StatementObserver::kAllRows});
  RecordsetPtr rows = connection_->Execute("Select x");
  EXPECT_FALSE(rows->AtEnd());
  rows->MoveNext();
  EXPECT_EQ(rows->Field(0), Value("b"));
  rows = nullptr;
  const SeenRows& seen = *log_.statements()[0].seen;
  EXPECT_THAT(seen.columns, ElementsAre("F0"));
  EXPECT_THAT(seen.rows, ElementsAre(ElementsAre(Value("a")), ElementsAre(Value("b"))));
  EXPECT_EQ(seen.count, 2);
  EXPECT_FALSE(seen.to_the_end);
}

TEST_F(StatementLogTest, RowsReadBehindTheCallAreNoRules) {
  session_->answer = [](auto) { return std::make_shared<OneColumn>(std::vector<Value>{"a", "b"}); };
  log_.SetObserver({.rows = StatementObserver::kAllRows});
  const RecordsetPtr rows = connection_->Execute("Select x");
  EXPECT_FALSE(rows->AtEnd());
  log_.EndRows();
  rows->MoveNext();
  EXPECT_EQ(rows->Field(0), Value("b"));
  EXPECT_THAT(log_.statements()[0].seen->rows, ElementsAre(ElementsAre(Value("a"))));
}

TEST_F(StatementLogTest, TheObserverIsToldWhenTheRowsAreLetGo) {
  session_->answer = [](auto) { return std::make_shared<OneColumn>(std::vector<Value>{"a"}); };
  std::vector<std::string> told;
  log_.SetObserver(
      {.sent = [&](const LoggedStatement& statement) { told.push_back("sent " + statement.text); },
       .rows_seen =
           [&](const LoggedStatement& statement) {
             told.push_back(statement.text + " " + std::to_string(statement.seen->count));
           },
       .rows = 1});
  RecordsetPtr first = connection_->Execute("Select 1");
  EXPECT_FALSE(first->AtEnd());
  const RecordsetPtr second = connection_->Execute("Select 2");
  first = nullptr;
  second->Close();
  EXPECT_THAT(told, ElementsAre("sent Select 1", "sent Select 2", "Select 1 1", "Select 2 0"));
}

// As on a connection that has one open recordset at a time.
TEST_F(StatementLogTest, ARecordsetIsReleasedWhenTheRuleReleasesIt) {
  const auto answer = std::make_shared<OneColumn>(std::vector<Value>{"a"});
  session_->answer = [&](auto) { return answer; };
  log_.SetObserver({.rows = 1});
  RecordsetPtr rows = connection_->Execute("Select x");
  EXPECT_FALSE(rows->AtEnd());
  EXPECT_EQ(answer.use_count(), 2);  // the test's and the rule's
  rows = nullptr;
  EXPECT_EQ(answer.use_count(), 1);
}

TEST_F(StatementLogTest, StateAndClosingAreTheSessionsOwn) {
  EXPECT_EQ(connection_->State(), Connection::kStateOpen);
  connection_->Close();
  EXPECT_EQ(session_->state, Connection::kStateClosed);
  EXPECT_EQ(connection_->State(), Connection::kStateClosed);
}

}  // namespace
}  // namespace tavcc
