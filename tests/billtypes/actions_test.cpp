// The actions of the bill classes: when they ready the context, take and close the connection. What
// they ask, write and answer is told by scenarios.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "billtypes/cls_cx.h"
#include "billtypes/cls_db.h"
#include "billtypes/cls_template.h"
#include "billtypes/cls_zz.h"
#include "billtypes/timeline_host.h"
#include "host/host_dictionary.h"

namespace tavcc::testing {
namespace {

using Action = bool (*)(PlugIn& self, std::string& message);

bool AuditCX(PlugIn& self, std::string& message) {
  return cls_cx::AuditBill(self, 1, 2, "erp", message);
}
bool DeleteCX(PlugIn& self, std::string& message) {
  return cls_cx::DeleteBill(self, 1, "erp", message);
}
bool UnAuditCX(PlugIn& self, std::string& message) {
  return cls_cx::UnAuditBill(self, 1, "erp", message);
}
bool AuditDB(PlugIn& self, std::string& message) {
  return cls_db::AuditBill(self, 1, 2, "erp", message);
}
bool DeleteDB(PlugIn& self, std::string& message) {
  return cls_db::DeleteBill(self, 1, "erp", message);
}
bool UnAuditDB(PlugIn& self, std::string& message) {
  return cls_db::UnAuditBill(self, 1, "erp", message);
}
bool AuditZZ(PlugIn& self, std::string& message) {
  HostDictionary bill;
  bill.SetItem("BillInterID", 1);
  return cls_zz::AuditBill(self, bill, "erp", message);
}
bool DeleteZZ(PlugIn& self, std::string& message) {
  return cls_zz::DeleteBill(self, 1, "erp", message);
}
bool UnAuditZZ(PlugIn& self, std::string& message) {
  return cls_zz::UnAuditBill(self, 1, "erp", message);
}
bool DeleteTemplate(PlugIn& self, std::string& message) {
  return cls_template::DeleteBill(self, 1, "erp", message);
}

struct Row {
  const char* name;
  Action act;
  int status;                // of a bill that may be acted on
  int statements;            // sent by a successful call
  int gate;                  // how many of them are the gate's
  bool closes;               // the connection, when the gate refuses
  bool binds_again = false;  // in the gate, which is a method for itself
};

constexpr Row kRows[] = {
    {"cls_CX.AuditBill", AuditCX, 0, 2, 1, false},
    {"cls_CX.DeleteBill", DeleteCX, 0, 4, 1, true},
    {"cls_CX.UnAuditBill", UnAuditCX, 1, 2, 1, true},
    {"cls_DB.AuditBill", AuditDB, 0, 2, 1, false},
    {"cls_DB.DeleteBill", DeleteDB, 0, 3, 1, true},
    {"cls_DB.UnAuditBill", UnAuditDB, 1, 2, 1, true},
    {"cls_ZZ.AuditBill", AuditZZ, 0, 3, 2, true, true},
    {"cls_ZZ.DeleteBill", DeleteZZ, 0, 4, 1, true},
    {"cls_ZZ.UnAuditBill", UnAuditZZ, 1, 3, 2, true},
    {"cls_Template.DeleteBill", DeleteTemplate, 0, 3, 1, true},
};

RecordsetPtr AnswerWithStatus(int status, std::string_view sql) {
  if (sql.find("t_PeriodDate") != std::string_view::npos) {
    return OneRow({{"FStartDate", *DateTime::Parse("2026-03-01")},
                   {"FEndDate", *DateTime::Parse("2026-03-31")}});
  }
  return OneRow({{"FStatus", status},
                 {"FVoucherID", 0},
                 {"FDate", *DateTime::Parse("2026-03-10")},
                 {"FBillerID", 7}});
}

class Actions : public ::testing::TestWithParam<Row> {
 protected:
  Actions() {
    host_.get_profile = [](std::string_view category, std::string_view key) {
      if (category == "General") return Value("0");
      return Value(key == "CurrentYear" ? 2026 : 3);
    };
  }

  void Allow() {
    host_.answer = [](std::string_view sql) { return AnswerWithStatus(GetParam().status, sql); };
  }
  // What a rule did after it was bound, each statement told as "sql".
  Timeline Told() const {
    Timeline told = host_.timeline;
    for (std::string& event : told) {
      const bool is_event = event == "ready first" || event == "ready second" ||
                            event == "connection" || event == "close" || event == "bind erp";
      if (!is_event) event = "sql";
    }
    return told;
  }

  TimelineHost host_;
  PlugIn object_{host_};
  std::string message_ = "earlier";
};

Timeline Begun(const Row& row, int statements) {
  Timeline expected{"bind erp", "ready first", "connection"};
  if (row.binds_again) expected.emplace_back("bind erp");
  expected.insert(expected.end(), static_cast<size_t>(statements), "sql");
  return expected;
}

TEST_P(Actions, ReadyTheContextBeforeTheConnectionAndAfterTheLastStatement) {
  Allow();
  EXPECT_TRUE(GetParam().act(object_, message_)) << message_;
  Timeline expected = Begun(GetParam(), GetParam().statements);
  expected.push_back("ready second");
  EXPECT_EQ(Told(), expected);
}

TEST_P(Actions, ThatAreRefusedCloseTheConnectionUnlessTheyAudit) {
  host_.answer = [](std::string_view) { return NoRows(); };
  EXPECT_FALSE(GetParam().act(object_, message_));
  EXPECT_NE(message_, "earlier");
  Timeline expected = Begun(GetParam(), 1);
  if (GetParam().closes) expected.push_back("close");
  EXPECT_EQ(Told(), expected);
}

TEST_P(Actions, LeaveAConnectionAloneThatIsClosedAlready) {
  host_.answer = [](std::string_view) { return NoRows(); };
  host_.connection_is_closed = true;
  EXPECT_FALSE(GetParam().act(object_, message_));
  EXPECT_EQ(Told(), Begun(GetParam(), 1));
}

TEST_P(Actions, ReadyTheContextFirstOnceMoreAfterAnErrorOfTheirOwnStatements) {
  for (int k = GetParam().gate + 1; k <= GetParam().statements; ++k) {
    host_.timeline.clear();
    host_.answer = [k, sent = 0](std::string_view sql) mutable {
      if (++sent == k) throw AutomationError(50000, "the server", "disk full");
      return AnswerWithStatus(GetParam().status, sql);
    };
    EXPECT_FALSE(GetParam().act(object_, message_));
    EXPECT_EQ(message_, "disk full");
    Timeline expected = Begun(GetParam(), k);
    expected.push_back("ready first");
    EXPECT_EQ(Told(), expected) << "statement " << k;
  }
}

// A gate keeps its error to itself, so that for the action it is a refusal like any other.
TEST_P(Actions, TakeAnErrorOfTheGateAsARefusal) {
  host_.answer = [](std::string_view) -> RecordsetPtr {
    throw AutomationError(50000, "the server", "disk full");
  };
  EXPECT_FALSE(GetParam().act(object_, message_));
  EXPECT_EQ(message_, "disk full");
  Timeline expected = Begun(GetParam(), 1);
  if (GetParam().closes) expected.push_back("close");
  EXPECT_EQ(Told(), expected);
}

TEST_P(Actions, TellTheFirstErrorWhenTheContextCannotBeReadiedAgain) {
  Allow();
  host_.fail_ready_second = true;
  host_.fail_ready_first_at = 2;
  EXPECT_FALSE(GetParam().act(object_, message_));
  EXPECT_EQ(message_, "not done");
  EXPECT_EQ(host_.ready_first_calls, 2);
}

TEST_P(Actions, FailWhenTheContextCannotBeReadied) {
  Allow();
  host_.fail_ready_first_at = 1;
  EXPECT_FALSE(GetParam().act(object_, message_));
  EXPECT_EQ(message_, "not ready");
  EXPECT_EQ(host_.timeline, (Timeline{"bind erp", "ready first", "ready first"}));
}

INSTANTIATE_TEST_SUITE_P(BillTypes, Actions, ::testing::ValuesIn(kRows), [](const auto& row) {
  std::string name = row.param.name;
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
});

// The plain audit writes the user that it is given, that of the assembly bill the current one.
TEST(AssemblyAudit, WritesTheUserThatTheBoundContextNames) {
  TimelineHost host;
  host.user_id = 5;
  PlugIn object(host);
  host.user_id = 42;
  host.answer = [](std::string_view sql) { return AnswerWithStatus(0, sql); };
  host.get_profile = [](std::string_view, std::string_view key) {
    return Value(key == "SingleMan" ? 1 : 3);
  };
  std::string message;
  EXPECT_TRUE(AuditZZ(object, message)) << message;
  EXPECT_EQ(host.timeline[6],
            "Update T_CC_ZZCX set FCheckerID=42,FCheckDate=GetDate(),FStatus=1  where FID=1");
}

// The gate holds the maker against the user of the database that it is asked about, whatever user
// the object has held so far.
TEST(AssemblyAudit, ItsGateHoldsTheMakerAgainstTheUserThatTheBoundContextNames) {
  TimelineHost host;
  host.user_id = 5;
  PlugIn object(host);
  host.user_id = 7;  // the maker
  host.answer = [](std::string_view sql) { return AnswerWithStatus(0, sql); };
  host.get_profile = [](std::string_view category, std::string_view key) {
    if (category == "General") return Value("0");
    return Value(key == "CurrentYear" ? 2026 : 3);
  };
  HostDictionary bill;
  bill.SetItem("BillInterID", 1);
  std::string message;
  EXPECT_FALSE(cls_zz::VerifyDataBeforeAudit(object, bill, "erp", message));
  EXPECT_EQ(message, "审核人与制单人不能为同一人！");
  EXPECT_EQ(host.timeline[0], "bind erp");
}

}  // namespace
}  // namespace tavcc::testing
