// The methods that tell the host which checks a bill needs, over every class type, bill type,
// direction and setting, against the tables beside this file. What a table calls "other" stands for
// the numbers beside those that it names: a class type or a bill type that a rule takes in or drops
// shows here.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "decisions/table.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/text.h"
#include "host/company.h"
#include "host/erp.h"
#include "host/host_dictionary.h"
#include "registry/class_registry.h"
#include "support/scripted_host.h"

namespace tavcc::testing {
namespace {

constexpr int16_t kOtherDirections[] = {0, 2};

// A method of PublicSysInfo, called as a host calls it: by the names of its parameters.
class Decision {
 public:
  explicit Decision(std::string_view method)
      : class_(*FindClass("PublicSysInfo")), method_(*FindMethod(class_, method)) {}

  bool Takes(std::string_view parameter) const {
    return std::ranges::any_of(method_.parameters,
                               [&](const Parameter& one) { return one.name == parameter; });
  }

  Value Ask(PlugIn& object, const std::map<std::string_view, Value>& given,
            std::map<std::string_view, Value>* afterwards = nullptr) const {
    std::vector<Value> arguments;
    for (const Parameter& parameter : method_.parameters) {
      arguments.push_back(given.at(parameter.name));
    }
    Value answer = Invoke(class_, method_, object, arguments);
    for (size_t i = 0; afterwards != nullptr && i < arguments.size(); ++i) {
      afterwards->insert_or_assign(method_.parameters[i].name, arguments[i]);
    }
    return answer;
  }

 private:
  const ClassDescription& class_;
  const Method& method_;
};

// ---- Checks by class type, bill type and direction ---------------------------------------------

const std::set<std::string> kCheckedWithControlPoint = {
    "WhetherNeedCheckPrice", "WhetherNeedCheckCredit", "WhetherNeedCheckUnCheckAmountOutOfDate"};

// A host that knows one setting, and fails the test that asks for another.
class SettingHost : public ScriptedHost {
 public:
  SettingHost() {
    get_profile = [this](std::string_view category, std::string_view key) {
      EXPECT_EQ(category, "IC");
      EXPECT_EQ(key, "ControlPoint");
      ++asked;
      return control_point;
    };
  }
  Value control_point = "1";
  int asked = 0;
};

class WhetherMethod : public ::testing::TestWithParam<const char*> {
 protected:
  WhetherMethod() : decision_(GetParam()), table_(ReadDecisionTable(GetParam())) {}

  bool HasSetting() const { return kCheckedWithControlPoint.contains(GetParam()); }

  Value Ask(int32_t class_type, int32_t bill_type, int16_t direction) {
    bill_->SetItem("ClassTypeID", class_type);
    bill_->SetItem("BillType", bill_type);
    host_.calls.clear();
    return decision_.Ask(object_, {{"sDsn", "erp"}, {"intCheckType", direction}, {"oDict", bill_}});
  }

  // The directions of a cell, against the method's answers.
  void Expect(int32_t class_type, int32_t bill_type, std::string_view cell, bool checks = true) {
    const auto expect = [&](int16_t direction, char mark) {
      const int16_t wanted = checks && cell.find(mark) != cell.npos ? 1 : 0;
      EXPECT_EQ(Ask(class_type, bill_type, direction), Value(wanted))
          << "class type " << class_type << ", bill type " << bill_type << ", direction "
          << direction;
    };
    expect(1, 'a');
    expect(-1, 'u');
    for (const int16_t direction : kOtherDirections) expect(direction, 'o');
  }

  // Every cell that names its class type and its bill type.
  void ExpectNamed(bool checks) {
    for (const auto& row : table_.rows) {
      if (row[0] == "other") continue;
      for (size_t i = 1; i < row.size(); ++i) {
        if (table_.head[i] == "other") continue;
        Expect(ToLong(row[0]), ToLong(table_.head[i]), row[i], checks);
      }
    }
  }

  const std::vector<std::string>& RowOf(std::string_view class_type) const {
    return *std::ranges::find(table_.rows, class_type, [](const auto& row) { return row[0]; });
  }
  std::set<int32_t> Named(bool bill_types) const {
    std::set<int32_t> named;
    const auto add = [&](const std::string& word) {
      if (word != "other" && word != "class") named.insert(ToLong(word));
    };
    if (bill_types) {
      for (const std::string& word : table_.head) add(word);
    } else {
      for (const auto& row : table_.rows) add(row[0]);
    }
    return named;
  }

  const Decision decision_;
  const DecisionTable table_;
  SettingHost host_;
  PlugIn object_{host_};
  const DictionaryPtr bill_ = std::make_shared<MapDictionary>();
};

TEST_P(WhetherMethod, AnswersAsItsTableForEveryNamedBill) {
  ExpectNamed(true);
}

// All bill types for the first class type of each kind of row; for those that share its row, the
// numbers around the named ones.
TEST_P(WhetherMethod, AnswersAsOtherForBillTypesThatAreNotNamed) {
  constexpr int32_t kLast = 6000;
  const std::set<int32_t> named = Named(true);
  std::set<std::vector<std::string>> seen;
  for (const auto& row : table_.rows) {
    const int32_t class_type = row[0] == "other" ? 7 : ToLong(row[0]);
    const bool all = seen.emplace(row.begin() + 1, row.end()).second;
    for (int32_t bill_type = -1; bill_type <= kLast; ++bill_type) {
      if (named.contains(bill_type) || (!all && bill_type % 1000 > 55)) continue;
      for (const int16_t direction : {int16_t{1}, int16_t{-1}}) {
        const char mark = direction == 1 ? 'a' : 'u';
        const int16_t wanted = row.back().find(mark) != row.back().npos ? 1 : 0;
        EXPECT_EQ(Ask(class_type, bill_type, direction), Value(wanted))
            << "class type " << class_type << ", bill type " << bill_type << ", direction "
            << direction;
      }
    }
  }
}

TEST_P(WhetherMethod, AnswersAsOtherForClassTypesThatAreNotNamed) {
  const std::set<int32_t> named = Named(false);
  const auto& row = RowOf("other");
  std::vector<int32_t> others = {-1, 0, 1, 102000, 103000, 10200020};
  for (int32_t group = 1010000; group <= 1100000; group += 10000) {
    for (int32_t class_type = group; class_type <= group + 12; ++class_type) {
      if (!named.contains(class_type)) others.push_back(class_type);
    }
  }
  for (const int32_t class_type : others) {
    for (size_t i = 1; i < row.size(); ++i) {
      Expect(class_type, table_.head[i] == "other" ? 4711 : ToLong(table_.head[i]), row[i]);
    }
  }
}

TEST_P(WhetherMethod, FollowsTheSettingAsTheSettingsTableSays) {
  if (!HasSetting()) {
    ExpectNamed(true);
    EXPECT_EQ(host_.asked, 0);  // no setting has a say
    return;
  }
  for (const auto& row : ReadDecisionTable("control_point").rows) {
    SCOPED_TRACE(row[0] + " " + row[1]);
    const std::string text = row[1] == "-" ? "" : row[1];
    const std::map<std::string, Value> values = {
        {"empty", Empty{}},
        {"null", Null{}},
        {"text", text},
        {"boolean", true},
    };
    if (row[0] == "integer") {
      host_.control_point = ToInteger(text);
    } else if (row[0] == "long") {
      host_.control_point = ToLong(text);
    } else if (row[0] == "double") {
      host_.control_point = ToDouble(text);
    } else {
      host_.control_point = values.at(row[0]);
    }
    ExpectNamed(row[2] == "on");
  }
}

INSTANTIATE_TEST_SUITE_P(Tables, WhetherMethod,
                         ::testing::Values("WhetherCheckStockNum", "WhetherNeedUpdateStockNum",
                                           "WhetherNeedCheckPrice", "WhetherNeedCheckCredit",
                                           "WhetherNeedCheckUnCheckAmountOutOfDate"),
                         [](const auto& method) { return std::string(method.param); });

// ---- Decisions that are no matter of class and type --------------------------------------------

class Company : public ::testing::Test {
 protected:
  Company() { object_.InitObjects(erp_.dsn()); }
  Erp erp_{CompanyOptions()};
  PlugIn object_{erp_.host()};
};

TEST_F(Company, WhetherABillIsInvoicedFollowsItsAmountAlone) {
  const Decision decision("WhetherBillInvoiceStatus");
  const DecisionTable bills = ReadDecisionTable("WhetherCheckStockNum");  // for what it names
  int32_t id = 0;
  for (const auto& row : ReadDecisionTable("WhetherBillInvoiceStatus").rows) {
    for (const auto& bill_row : bills.rows) {
      const int32_t class_type = bill_row[0] == "other" ? 7 : ToLong(bill_row[0]);
      for (const std::string& column : bills.head) {
        if (column == "class") continue;
        const int32_t bill_type = column == "other" ? 4711 : ToLong(column);
        SCOPED_TRACE(
            Cat("amount ", row[0], ", class type ", class_type, ", bill type ", bill_type));
        erp_.connection()->Execute(
            Cat("insert into T_CC_StockBill(FID,FClassTypeID,FBillTypeID,FInvoiceAmt) values(",
                ++id, ",", class_type, ",", bill_type, ",", row[0], ")"));
        const DictionaryPtr bill = std::make_shared<HostDictionary>();
        bill->SetItem("BillInterID", id);
        const auto expect = [&](int32_t asked_class, int32_t wanted) {
          bill->SetItem("ClassTypeID", asked_class);
          std::map<std::string_view, Value> afterwards;
          const Value answer =
              decision.Ask(object_, {{"oDict", bill}, {"strRtnTempMsg", "earlier"}}, &afterwards);
          EXPECT_EQ(answer, Value(wanted));
          EXPECT_EQ(afterwards["strRtnTempMsg"],
                    Value(wanted == 1 ? "单据有开票记录，不能反审核！" : "earlier"));
        };
        expect(class_type, ToLong(row[1]));
        expect(class_type + 1, 0);  // no bill of that class
      }
    }
  }
}

TEST_F(Company, WhetherStockMayGoBelowZeroIsLeftToTheHost) {
  const Decision decision("AllowMinusStockNum");
  erp_.host().ClearReadyCalls();
  erp_.log().Clear();
  for (const auto& row : ReadDecisionTable("AllowMinusStockNum").rows) {
    const ConnectionPtr past_the_log = erp_.host().GetUnloggedConnection(erp_.dsn());
    past_the_log->Execute("delete from t_SystemProfile where FKey='UnderStock'");
    if (row[0] != "missing") {
      past_the_log->Execute(
          Cat("insert into t_SystemProfile(FCategory,FKey,FValue) values('IC',"
              "'UnderStock',",
              row[0], ")"));
    }
    ASSERT_EQ(row[1], "empty");
    for (const char* dsn : {"", "erp", "no such database"}) {
      EXPECT_EQ(decision.Ask(object_, {{"strConString", dsn}}), Value(Empty{})) << row[0];
    }
  }
  EXPECT_TRUE(erp_.log().statements().empty());
  EXPECT_TRUE(erp_.host().ready_calls().empty());
}

}  // namespace
}  // namespace tavcc::testing
