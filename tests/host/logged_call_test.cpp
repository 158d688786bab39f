#include "host/logged_call.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/host_services.h"
#include "foundation/ladder.h"
#include "foundation/text.h"
#include "host/fake_session.h"
#include "host/host_dictionary.h"
#include "host/reference_host.h"

namespace tavcc {
namespace {

using ::testing::ElementsAre;
using testing::FakeSession;
using testing::OneColumn;

// Gates that send a statement each, through the log.
struct Walk {
  ConnectionPtr connection;
  bool refuses = false;
  bool fails = false;

  Verdict First() { return connection->Execute("first"), Pass(); }
  Verdict Second() {
    connection->Execute("second");
    if (fails) throw AutomationError(50000, "db", "disk full");
    return refuses ? Refuse("no") : NotAsked();
  }
  Verdict Inner();
  Ladder InnerGates() const { return {}; }
};
constexpr Gate<Walk> kInner[] = {{"first", &Walk::First}, {"second", &Walk::Second}};
constexpr Gate<Walk> kOuter[] = {{"inner", &Walk::Inner, &Walk::InnerGates},
                                 {"last", &Walk::First}};

Verdict Walk::Inner() {
  connection->Execute("before");
  return FirstRefusal(*this, kInner);
}

class LoggedCallTest : public ::testing::Test {
 protected:
  StatementObserver Observer() {
    return {.ladder_begun = [this] { told_.push_back("ladder"); },
            .gate_answered =
                [this](const GateAnswer& answer) {
                  const auto& verdict = answer.verdict;
                  told_.push_back(answer.gate + (!verdict           ? " failed"
                                                 : !verdict->passed ? " refused"
                                                 : verdict->asked   ? " passed"
                                                                    : " not asked"));
                }};
  }
  std::vector<std::string> Gates() const {
    std::vector<std::string> gates;
    for (const LoggedStatement& sent : log_.statements()) gates.push_back(sent.gate);
    return gates;
  }

  StatementLog log_;
  Walk walk_{LogStatements(std::make_shared<FakeSession>(), log_)};
  std::vector<std::string> told_;
};

TEST_F(LoggedCallTest, AStatementHasTheGateThatSentIt) {
  const LoggedCall call(log_, Observer());
  walk_.connection->Execute("outside");
  EXPECT_TRUE(FirstRefusal(walk_, kOuter).passed);
  walk_.connection->Execute("outside");
  EXPECT_THAT(Gates(), ElementsAre("", "inner", "first", "second", "last", ""));
  EXPECT_THAT(told_, ElementsAre("ladder", "first passed", "second not asked", "last passed"));
}

TEST_F(LoggedCallTest, ARefusalIsTheGatesThatRefused) {
  const LoggedCall call(log_, Observer());
  walk_.refuses = true;
  EXPECT_FALSE(FirstRefusal(walk_, kOuter).passed);
  EXPECT_THAT(told_, ElementsAre("ladder", "first passed", "second refused"));
}

TEST_F(LoggedCallTest, AnErrorLeavesTheGateFailed) {
  const LoggedCall call(log_, Observer());
  walk_.fails = true;
  EXPECT_THROW(FirstRefusal(walk_, kOuter), AutomationError);
  EXPECT_THAT(told_, ElementsAre("ladder", "first passed", "second failed"));
  walk_.connection->Execute("outside");
  EXPECT_EQ(log_.statements().back().gate, "");
}

TEST_F(LoggedCallTest, NothingIsToldBehindTheEnd) {
  LoggedCall call(log_, Observer());
  call.End();
  FirstRefusal(walk_, kOuter);
  EXPECT_THAT(told_, ElementsAre());
  EXPECT_EQ(log_.statements()[1].gate, "");
}

TEST_F(LoggedCallTest, WhatTheHostAnswersIsInTheLog) {
  ReferenceHost host(
      [](std::string_view) {
        auto session = std::make_shared<FakeSession>();
        session->answer = [](auto) { return std::make_shared<OneColumn>(std::vector<Value>{"1"}); };
        return session;
      },
      nullptr, &log_);
  host.settings().published = host.NewDictionary();
  host.settings().published->SetItem("IndustryType", int32_t{1});
  host.settings().denied_class_types = {1030002};
  const LoggedCall call(log_);
  EXPECT_EQ(GetProfile(host, "db", "ControlPoint", "IC"), Value("1"));
  EXPECT_EQ(GetIndustryType(host), 1);
  EXPECT_EQ(GetHostValue(host, "LanguageID", "CHS"), Value("CHS"));
  EXPECT_FALSE(CheckBillRight(host, 1030002, int32_t{7}));
  std::vector<std::string> told;
  for (const HostAnswer& answer : log_.host_answers()) {
    told.push_back(Cat(answer.category, "/", answer.key, answer.value.IsEmpty() ? " none" : ""));
  }
  EXPECT_THAT(told,
              ElementsAre("IC/ControlPoint", "/IndustryType", "/LanguageID none", "/1030002"));
  EXPECT_EQ(log_.host_answers()[3].value, Value(false));
}

// A watch inside another one takes its place and gives it back: a host may call another object.
TEST_F(LoggedCallTest, ACallInsideAnotherOneHasItsOwnLog) {
  const LoggedCall outer(log_, Observer());
  StatementLog inner_log;
  Walk inner{LogStatements(std::make_shared<FakeSession>(), inner_log)};
  {
    const LoggedCall call(inner_log);
    FirstRefusal(inner, kInner);
  }
  EXPECT_THAT(told_, ElementsAre());
  EXPECT_EQ(inner_log.statements()[0].gate, "first");
  FirstRefusal(walk_, kInner);
  EXPECT_EQ(told_.size(), 3u);
}

}  // namespace
}  // namespace tavcc
