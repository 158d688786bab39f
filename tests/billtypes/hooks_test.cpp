// The save and delete hooks: when they ready the context and take the connection, and that the
// ledger lets go of its rows. What they ask, write and refuse is told by scenarios.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "billtypes/cls_db.h"
#include "billtypes/cls_other.h"
#include "billtypes/cls_zz.h"
#include "billtypes/serial_numbers.h"
#include "billtypes/timeline_host.h"
#include "host/host_dictionary.h"
#include "host/host_vector.h"

namespace tavcc::testing {
namespace {

using ::testing::ElementsAre;

std::shared_ptr<HostDictionary> Make(std::vector<HostDictionary::Entry> entries) {
  auto dictionary = std::make_shared<HostDictionary>();
  for (auto& [key, value] : entries) dictionary->SetItem(key, value);
  return dictionary;
}

Value Field(const char* text) {
  return Make({{"FFLD", text}});
}

// A saved receipt (1040001) with one row of two serial numbers.
struct SavedReceipt {
  std::shared_ptr<HostDictionary> table_info = Make({{"Map", Make({{"FSerialNo", "sn"},
                                                                   {"FItemID", "item"},
                                                                   {"FDCStockID", "stock"},
                                                                   {"FAuxPropID", "aux"},
                                                                   {"FCustID", "cust"}})}});
  std::shared_ptr<HostDictionary> data = Make(
      {{"FID", "5"},
       {"FClassTypeID", "1040001"},
       {"Page1", Make({{"cust", Field("7")}})},
       {"Page2", std::make_shared<HostVector>(std::vector<Value>{Make({{"sn", Field("A,|B,")},
                                                                       {"item", Field("101")},
                                                                       {"stock", Field("2")},
                                                                       {"aux", Field("")}})})}});
};

using Save = Value (*)(PlugIn& self, std::string_view sDsn, Dictionary& dctClassType,
                       Vector& vctClassTypeEntry, Dictionary& dctTableInfo, Dictionary& dctData,
                       Dictionary& dctLink);
using Delete = Value (*)(PlugIn& self, std::string_view sDsn, int32_t nClassID,
                         Dictionary& dctClassType, int32_t nInterID);

struct Row {
  const char* name;
  Save after_save;
  Delete before_del;
  bool ready_before_connection;
  const char* failure;  // of a save
};

constexpr Row kRows[] = {
    {"cls_DB", cls_db::AfterSave, cls_db::BeforeDel, true, "当前资料被保存后扩展处理方法出错:"},
    {"cls_ZZ", cls_zz::AfterSave, cls_zz::BeforeDel, false, "当前资料被保存后扩展处理方法出错："},
    {"clsOtherIn", cls_other_in::AfterSave, cls_other_in::BeforeDel, false,
     "当前资料被保存后扩展处理方法出错:"},
    {"clsOtherOut", cls_other_out::AfterSave, cls_other_out::BeforeDel, false,
     "当前资料被保存后扩展处理方法出错："},
};

class Hooks : public ::testing::TestWithParam<Row> {
 protected:
  Value AfterSave(const char* class_type = "1040003") {
    class_type_.SetItem("FTemplateID", class_type);
    return GetParam().after_save(object_, "erp", class_type_, entries_, *bill_.table_info,
                                 *bill_.data, link_);
  }
  std::string FailureOf(int32_t number) {
    try {
      AfterSave();
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), number);
      EXPECT_EQ(error.source(), std::string("TavM_CC_PlugIns.") + GetParam().name + ".AfterSave");
      return error.description();
    }
    return "no error";
  }

  TimelineHost host_;
  PlugIn object_{host_};
  SavedReceipt bill_;
  HostDictionary class_type_;
  HostVector entries_;
  HostDictionary link_;
};

TEST_P(Hooks, ASaveReadiesTheContextOnTheClassesOwnSideOfTheConnection) {
  EXPECT_TRUE(AfterSave().IsEmpty());
  const Timeline begun(host_.timeline.begin(), host_.timeline.begin() + 3);
  if (GetParam().ready_before_connection) {
    EXPECT_THAT(begun, ElementsAre("bind erp", "ready first", "connection"));
  } else {
    EXPECT_THAT(begun, ElementsAre("bind erp", "connection", "ready first"));
  }
  EXPECT_EQ(host_.timeline.back(), "ready second");
  EXPECT_GT(host_.timeline.size(), size_t{8});
}

TEST_P(Hooks, AFailedSaveIsNotReadiedAgain) {
  host_.answer = [](std::string_view) -> RecordsetPtr {
    throw AutomationError(-2147467259, "the server", "disk full");
  };
  EXPECT_EQ(FailureOf(-2147467259), std::string(GetParam().failure) + "disk full");
  EXPECT_EQ(host_.timeline.size(), size_t{4});
}

TEST_P(Hooks, ASaveWhoseContextCannotBeReadiedFails) {
  host_.fail_ready_first_at = 1;
  EXPECT_EQ(FailureOf(1002), std::string(GetParam().failure) + "not ready");
}

TEST_P(Hooks, ASaveThatCannotBeFinishedFails) {
  host_.fail_ready_second = true;
  EXPECT_EQ(FailureOf(1003), std::string(GetParam().failure) + "not done");
}

TEST_P(Hooks, ADeletionTakesTheConnectionAndReadiesNothing) {
  host_.answer = [](std::string_view sql) {
    if (sql.starts_with("select 1")) return NoRows();
    return OneRow({{"FStatus", 0},
                   {"FDate", Null{}},
                   {"FBegDate", Null{}},
                   {"FSelf", Null{}},
                   {"FBillerID", Null{}}});
  };
  EXPECT_EQ(GetParam().before_del(object_, "erp", 1040001, class_type_, 5), Value(int32_t{0}));
  EXPECT_THAT(std::vector(host_.timeline.begin(), host_.timeline.begin() + 2),
              ElementsAre("bind erp", "connection"));
  EXPECT_THAT(host_.timeline, ::testing::Not(::testing::Contains("ready first")));
  EXPECT_THAT(host_.timeline, ::testing::Not(::testing::Contains("ready second")));
}

INSTANTIATE_TEST_SUITE_P(BillTypes, Hooks, ::testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

class SerialNumbers : public ::testing::Test {
 protected:
  TimelineHost host_;
  ConnectionPtr cn_ = host_.NewConnection();
  SavedReceipt bill_;
};

// A look-up's rows are released before the record is written, so that a connection that can serve
// one result at a time suffices.
TEST_F(SerialNumbers, ARowIsReleasedBeforeTheNextStatement) {
  int most_alive = 0;
  host_.answer = [&](std::string_view sql) {
    most_alive = std::max(most_alive, CountedRows::alive);
    return sql.starts_with("select FID") ? OneRow({{"FID", 3}}) : NoRows();
  };
  EXPECT_TRUE(SaveSerialNumData(*cn_, *bill_.table_info, *bill_.data));
  EXPECT_EQ(most_alive, 0);
  EXPECT_EQ(CountedRows::alive, 0);
  EXPECT_EQ(host_.timeline.size(), size_t{6});
}

TEST_F(SerialNumbers, AnErrorOfTheUpkeepBearsItsName) {
  host_.answer = [](std::string_view) -> RecordsetPtr {
    throw AutomationError(1205, "the server", "a deadlock");
  };
  try {
    SaveSerialNumData(*cn_, *bill_.table_info, *bill_.data);
    FAIL() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), 1205);
    EXPECT_EQ(error.source(), "SaveSerialNumData");
    EXPECT_EQ(error.description(), "a deadlock");
  }
}

TEST_F(SerialNumbers, AFailingCheckForReuseRefuses) {
  EXPECT_TRUE(CheckSerialNumReuse(*cn_, 5));
  host_.answer = [](std::string_view) { return OneRow({{"F0", 1}}); };
  EXPECT_FALSE(CheckSerialNumReuse(*cn_, 5));
  host_.answer = [](std::string_view) -> RecordsetPtr {
    throw AutomationError(1205, "the server", "a deadlock");
  };
  EXPECT_FALSE(CheckSerialNumReuse(*cn_, 5));
}

}  // namespace
}  // namespace tavcc::testing
