// What a call leaves behind: nothing outside of the host's transaction, nothing that grows, and a
// word of what failed below the rules.
#include "host/erp.h"

#include <gtest/gtest.h>
#include "foundation/conversions.h"
#include "foundation/error.h"
#include "host/company.h"
#include "host/fake_session.h"

namespace tavcc {
namespace {

class ErpTest : public ::testing::Test {
 protected:
  ErpTest() : erp_(CompanyOptions()) {
    erp_.connection()->Execute("create table kept (n int)");
    erp_.log().Clear();
  }
  int32_t Kept() {
    return ToLong(erp_.connection()->Execute("select count(*) from kept")->Field(0));
  }

  Erp erp_;
};

TEST_F(ErpTest, WhatFollowsAnErrorThatEndsTheTransactionIsUndoneAsWell) {
  erp_.BeginTransaction();
  const ConnectionPtr connection = erp_.connection();
  connection->Execute("insert into kept values (1)");
  EXPECT_THROW(connection->Execute("select convert(int,'x')"), AutomationError);
  EXPECT_EQ(connection->Errors().at(0).number, 245);
  connection->Execute("insert into kept values (2)");
  EXPECT_EQ(ToLong(connection->Execute("select @@trancount")->Field(0)), 1);
  erp_.Rollback();
  EXPECT_EQ(Kept(), 0);
}

TEST_F(ErpTest, AnErrorThatEndsItsStatementLeavesTheTransaction) {
  erp_.BeginTransaction();
  erp_.connection()->Execute("insert into kept values (1)");
  EXPECT_THROW(erp_.connection()->Execute("select 1/0"), AutomationError);
  EXPECT_EQ(erp_.connection()->Errors().at(0).number, 8134);
  erp_.Commit();
  EXPECT_EQ(Kept(), 1);
}

TEST_F(ErpTest, OutsideOfATransactionNoneIsBegun) {
  EXPECT_THROW(erp_.connection()->Execute("select convert(int,'x')"), AutomationError);
  EXPECT_EQ(ToLong(erp_.connection()->Execute("select @@trancount")->Field(0)), 0);
}

TEST_F(ErpTest, EveryNameIsTheOneSession) {
  erp_.BeginTransaction();
  erp_.host().GetConnection("another name")->Execute("insert into kept values (1)");
  erp_.Rollback();
  EXPECT_EQ(Kept(), 0);
}

TEST_F(ErpTest, TheFirstFailureIsKeptWhereverItWas) {
  EXPECT_FALSE(erp_.log().first_failure());
  EXPECT_THROW(erp_.connection()->Execute("select * from nowhere"), AutomationError);
  EXPECT_THROW(erp_.connection()->Execute("select 1/0"), AutomationError);
  ASSERT_TRUE(erp_.log().first_failure());
  EXPECT_EQ(erp_.log().first_failure()->what, "select * from nowhere");
  EXPECT_EQ(erp_.log().first_failure()->error.number(), 208);
  erp_.connection()->Execute("drop table t_SystemProfile");
  erp_.log().Clear();
  // The host's own reading is in no list of statements.
  EXPECT_THROW(erp_.host().NewSystemProfile()->GetProfile(erp_.dsn(), "IC", "UnderStock"),
               AutomationError);
  EXPECT_TRUE(erp_.log().statements().empty());
  ASSERT_TRUE(erp_.log().first_failure());
  EXPECT_EQ(erp_.log().first_failure()->error.description(),
            "Invalid object name 't_SystemProfile'.");
}

TEST_F(ErpTest, AMissingComponentIsAFailureButForTheLoaderOfTranslations) {
  erp_.host().settings().missing_components = {"M8RESLOADER.Loader", "TavEBSBase.SystemProfile"};
  EXPECT_THROW(erp_.host().NewResourceLoader(), AutomationError);
  EXPECT_FALSE(erp_.log().first_failure());
  EXPECT_THROW(erp_.host().NewSystemProfile(), AutomationError);
  ASSERT_TRUE(erp_.log().first_failure());
  EXPECT_EQ(erp_.log().first_failure()->what, "TavEBSBase.SystemProfile");
}

TEST_F(ErpTest, WhatIsKeptPerCallEndsWithTheLogOfIt) {
  for (int call = 0; call < 3; ++call) {
    const auto context = erp_.host().NewDbContext();
    context->Bind(erp_.dsn());
    context->ReadyFirst();
    context->GetConnection()->Execute("select 1");
    EXPECT_EQ(erp_.log().statements().size(), 1u);
    EXPECT_EQ(erp_.host().ready_calls().size(), 1u);
    erp_.log().Clear();
    EXPECT_TRUE(erp_.log().statements().empty());
    EXPECT_TRUE(erp_.host().ready_calls().empty());
  }
  erp_.log().KeepNothing();
  erp_.connection()->Execute("select 1");
  erp_.host().NewDbContext()->Bind(erp_.dsn());
  EXPECT_TRUE(erp_.log().statements().empty());
  EXPECT_TRUE(erp_.host().ready_calls().empty());
}

// On a server, whose session is whatever a driver makes of it.
class ServerTest : public ::testing::Test {
 protected:
  ServerTest() {
    session_->answer = [](std::string_view sql) -> RecordsetPtr {
      if (sql == "fails") throw AutomationError(1205, "server", "a deadlock");
      return nullptr;
    };
  }
  const std::shared_ptr<testing::FakeSession> session_ = std::make_shared<testing::FakeSession>();
  Erp erp_{"server", [this](std::string_view) { return session_; }, nullptr};
};

TEST_F(ServerTest, AfterAnErrorThereIsATransactionAgain) {
  erp_.BeginTransaction();
  session_->errors = {{1205, "server", "a deadlock", "40001"}};
  EXPECT_THROW(erp_.connection()->Execute("fails"), AutomationError);
  session_->errors.clear();
  EXPECT_EQ(erp_.connection()->Errors().at(0).number, 1205) << "those of the failing statement";
  erp_.connection()->Execute("goes on");
  EXPECT_TRUE(erp_.connection()->Errors().empty());
  erp_.Rollback();
  EXPECT_EQ(session_->sent,
            (std::vector<std::string>{"BEGIN TRANSACTION", "fails",
                                      "IF @@TRANCOUNT = 0 BEGIN BEGIN TRANSACTION END", "goes on",
                                      "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION"}));
}

TEST_F(ServerTest, WhatOnlyReadsIsInAnOrdinaryTransaction) {
  erp_.BeginReading();
  erp_.Rollback();
  EXPECT_EQ(session_->sent, (std::vector<std::string>{"BEGIN TRANSACTION",
                                                      "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION"}));
}

}  // namespace
}  // namespace tavcc
