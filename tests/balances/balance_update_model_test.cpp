// Costing dates and flags over random sequences of bills, against a model of a few lines that knows
// nothing of SQL. Single cases are told by scenarios.
#include "balances/balance_update.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <set>

#include "foundation/text.h"
#include "host/company.h"
#include "host/erp.h"

namespace tavcc {
namespace {

constexpr int kItems = 3;
constexpr int kExcludedStock = 22;  // of type 502

struct Line {
  int item;
  std::string batch;
  int stock;
};

struct Bill {
  int id;
  int day;  // of March 2026
  int hour;
  std::vector<Line> lines;
};

struct Flag {
  int stock;
  int item;
  std::string batch;
  int day;
  int hour;
  int bill;
  auto operator<=>(const Flag&) const = default;
};

class Model {
 public:
  explicit Model(bool per_stock) : per_stock_(per_stock) { cost_days_.fill(20); }

  void Update(const Bill& bill) {
    std::vector<Line> left;
    for (const Line& line : bill.lines) {
      if (line.stock == kExcludedStock) continue;
      cost_days_[static_cast<size_t>(line.item) - 1] =
          std::min(cost_days_[static_cast<size_t>(line.item) - 1], bill.day);
      left.push_back(line);
    }
    for (Flag& flag : flags_) {
      const bool moves_back = bill.day < flag.day || (bill.day == flag.day && bill.id < flag.bill);
      if (!moves_back || std::none_of(left.begin(), left.end(),
                                      [&](const Line& line) { return Concerns(flag, line); })) {
        continue;
      }
      flag.day = bill.day;
      flag.hour = bill.hour;
      flag.bill = bill.id;
    }
    const auto covered = [&](const Line& line) {
      return std::any_of(flags_.begin(), flags_.end(), [&](const Flag& flag) {
        return Concerns(flag, line) &&
               (bill.day < flag.day || (bill.day == flag.day && bill.id <= flag.bill));
      });
    };
    std::set<Flag> fresh;  // each once
    for (const Line& line : left) {
      if (covered(line)) continue;
      fresh.insert(
          {per_stock_ ? line.stock : 0, line.item, line.batch, bill.day, bill.hour, bill.id});
    }
    flags_.insert(flags_.end(), fresh.begin(), fresh.end());
  }

  std::vector<Flag> Flags() const {
    std::vector<Flag> sorted = flags_;
    std::sort(sorted.begin(), sorted.end());
    return sorted;
  }
  const std::array<int, kItems>& cost_days() const { return cost_days_; }

 private:
  bool Concerns(const Flag& flag, const Line& line) const {
    return flag.item == line.item && flag.batch == line.batch &&
           (!per_stock_ || flag.stock == line.stock);
  }

  bool per_stock_;
  std::vector<Flag> flags_;
  std::array<int, kItems> cost_days_;
};

class BalanceUpdateModel : public ::testing::TestWithParam<int> {
 protected:
  BalanceUpdateModel() : erp_(CompanyOptions()) {
    Run("insert into t_Stock(FItemID,FTypeID) values(21,500)");
    Run("insert into t_Stock(FItemID,FTypeID) values(22,502)");
    Run("insert into t_Stock(FItemID,FTypeID) values(23,500)");
    for (int item = 1; item <= kItems; ++item) {
      Run(Cat("insert into t_ICItem(FItemID,FTrack,FCalDate) values(", item, ",76,'20260320')"));
    }
  }

  void Run(const std::string& sql) { erp_.connection()->Execute(sql); }

  Bill MakeBill(int id) {
    Bill bill{id, Pick(1, 9), Pick(0, 23), {}};
    const int count = Pick(1, 4);
    for (int i = 0; i < count; ++i) {
      bill.lines.push_back({Pick(1, kItems), Pick(0, 1) == 0 ? "" : "A", Pick(21, 23)});
    }
    return bill;
  }

  void Store(const Bill& bill) {
    Run(Cat("insert into T_CC_StockBill(FID,FDate) values(", bill.id, ",'2026-03-0", bill.day, " ",
            bill.hour, ":00:00')"));
    for (const Line& line : bill.lines) {
      // Receiving and issuing side alike.
      const std::string_view side = Pick(0, 1) == 0 ? "FDCStockID" : "FSCStockID";
      Run(Cat("insert into T_CC_StockBillEntry(FID,FItemID,FBatchNo,", side, ") values(", bill.id,
              ",", line.item, ",'", line.batch, "',", line.stock, ")"));
    }
  }

  std::vector<Flag> StoredFlags() {
    std::vector<Flag> flags;
    const RecordsetPtr rows =
        erp_.connection()->Execute("select FStockID,FItemID,FBatchNo,FLastDate,FID from ICCalFlag");
    for (; !rows->AtEnd(); rows->MoveNext()) {
      const auto date = rows->Field(3).date().ToParts();
      flags.push_back({rows->Field(0).long_integer(), rows->Field(1).long_integer(),
                       rows->Field(2).text(), date.day, date.hour, rows->Field(4).long_integer()});
    }
    std::sort(flags.begin(), flags.end());
    return flags;
  }

  std::array<int, kItems> StoredCostDays() {
    std::array<int, kItems> days{};
    const RecordsetPtr rows =
        erp_.connection()->Execute("select FCalDate from t_ICItem order by FItemID");
    for (int& day : days) {
      day = rows->Field(0).date().ToParts().day;
      rows->MoveNext();
    }
    return days;
  }

  int Pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

  Erp erp_;
  std::mt19937 random_{static_cast<unsigned>(GetParam())};
};

TEST_P(BalanceUpdateModel, KeepsTheFlagsThatTheModelKeeps) {
  const bool per_stock = GetParam() % 2 == 1;
  Run("delete from t_SystemProfile where FCategory='IC' and FKey='CalculateType'");
  Run(Cat("insert into t_SystemProfile(FCategory,FKey,FValue) values('IC','CalculateType','",
          per_stock ? 1 : 0, "')"));
  Model model(per_stock);
  std::vector<Bill> bills;
  PlugIn object(erp_.host());
  for (int step = 1; step <= 25; ++step) {
    // Now and then a bill comes again, as one that is un-audited and audited anew.
    if (bills.empty() || Pick(0, 4) != 0) {
      bills.push_back(MakeBill(step));
      Store(bills.back());
    }
    const Bill& bill = bills[static_cast<size_t>(Pick(0, static_cast<int>(bills.size()) - 1))];
    ASSERT_EQ(UpdateBal(object, erp_.dsn(), 0, 0, bill.id, 1, true), "");
    model.Update(bill);
    ASSERT_EQ(StoredFlags(), model.Flags()) << "step " << step << ", bill " << bill.id;
    ASSERT_EQ(StoredCostDays(), model.cost_days()) << "step " << step;
  }
}

INSTANTIATE_TEST_SUITE_P(RandomSequences, BalanceUpdateModel, ::testing::Range(1, 17));

}  // namespace
}  // namespace tavcc
