// The stock-check bills behind their bill number: what CheckBill does when the database answers
// with the field that its statement does not select. No database does; scenarios tell the rest.
#include "billtypes/stock_check_bill.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "billtypes/timeline_host.h"
#include "foundation/host_services.h"
#include "host/host_dictionary.h"

namespace tavcc::testing {
namespace {

using ::testing::ElementsAre;

constexpr const char* kHeadQuery =
    "Select FStatus,FVoucherID,FDate,FBillerID From T_CC_StockBill where FID =1";
constexpr const char* kPeriodQuery =
    "Select FStartDate,FEndDate from t_PeriodDate where FYear='2026' And FPeriod=3";
constexpr const char* kAudit =
    "Update T_CC_StockBill set FStatus=1,FCheckerID=16394,FCheckDate= getdate() where FID= 1\n";
constexpr const char* kUnAudit =
    "Update T_CC_StockBill set FStatus=0,FCheckerID=0,FCheckDate=NULL where FID= 1\n";

class StockCheckBill : public ::testing::Test {
 protected:
  StockCheckBill() {
    host_.get_profile = [this](std::string_view category, std::string_view key) {
      if (category == "General" && key == "SingleMan") return single_man_;
      return Value(key == "CurrentYear" ? 2026 : 3);
    };
    host_.answer = [this](std::string_view sql) -> RecordsetPtr {
      if (sql == kPeriodQuery) {
        return OneRow({{"FStartDate", *DateTime::Parse("2026-03-01")},
                       {"FEndDate", *DateTime::Parse("2026-03-31")}});
      }
      if (sql != kHeadQuery) return NoRows();
      return OneRow({{"FStatus", status_},
                     {"FVoucherID", voucher_},
                     {"FDate", date_},
                     {"FBillerID", biller_},
                     {"FBillNo", bill_no_}});
    };
  }
  ~StockCheckBill() override { ReleaseHostObjects(); }

  std::string Check(int32_t direction) {
    host_.timeline.clear();
    std::string message = "earlier";
    EXPECT_EQ(stock_check_bill::CheckBill(object_, "erp", 1, direction, message, nullptr, nullptr),
              0);
    EXPECT_EQ(CountedRows::alive, 0);
    return message;
  }

  TimelineHost host_;
  PlugIn object_{host_};
  Value single_man_ = "0";
  Value status_ = 0;
  Value voucher_ = 0;
  Value date_ = *DateTime::Parse("2026-03-10");
  Value biller_ = 7;
  Value bill_no_ = "PD001";
};

TEST_F(StockCheckBill, IsAudited) {
  EXPECT_EQ(Check(1), "单据[PD001]审核成功!");
  EXPECT_THAT(host_.timeline, ElementsAre("bind erp", "ready first", "connection", kHeadQuery,
                                          kPeriodQuery, kAudit, "ready second"));
}

TEST_F(StockCheckBill, IsUnAuditedWithoutAskingForMakerOrPeriod) {
  status_ = 1;
  date_ = *DateTime::Parse("2020-01-01");
  biller_ = 16394;
  EXPECT_EQ(Check(-1), "单据[PD001]反审核成功!");
  EXPECT_THAT(host_.timeline, ElementsAre("bind erp", "ready first", "connection", kHeadQuery,
                                          kUnAudit, "ready second"));
}

TEST_F(StockCheckBill, AuditsForOneAndUnAuditsForAnythingElse) {
  status_ = 1;
  for (const int32_t direction : {-1, 0, 2, 100}) {
    EXPECT_EQ(Check(direction), "单据[PD001]反审核成功!") << direction;
  }
}

TEST_F(StockCheckBill, RefusesAnAuditInTheStatedOrder) {
  const Value own = 16394;
  const Value past = *DateTime::Parse("2026-02-28");
  const Value first_day = *DateTime::Parse("2026-03-01");
  const char* kDone = "单据[PD001]审核成功!";
  const char* kAgain = "单据[PD001]审核失败!该单据已经审核,不允许再次审核!";
  const char* kMaker = "单据[PD001]审核失败!审核人与制单人不能为同一人！";
  const char* kPeriod = "单据[PD001]审核失败!不能审核非当前期间的单据！";
  const struct {
    Value status, voucher, biller, date, single_man;
    const char* expected;
  } rows[] = {
      {0, 5, 7, first_day, "0", kDone},  // no voucher is asked for
      {Null{}, Null{}, Null{}, first_day, Empty{}, kDone},
      {-1, 0, 7, first_day, "0", kDone},  // below 1
      {1, 0, own, past, "0", kAgain},
      {2, 0, own, past, "0", kAgain},
      {0, 0, own, past, "0", kMaker},
      {0, 0, own, past, "2", kMaker},
      {0, 0, own, first_day, Empty{}, kMaker},  // no such setting
      {0, 0, own, past, "1", kPeriod},
      {0, 0, own, first_day, "1", kDone},
      {0, 0, 7, past, "0", kPeriod},
      {0, 0, 7, Null{}, "0", "单据[PD001]审核失败!Invalid use of Null"},
  };
  for (size_t i = 0; i < std::size(rows); ++i) {
    status_ = rows[i].status;
    voucher_ = rows[i].voucher;
    biller_ = rows[i].biller;
    date_ = rows[i].date;
    single_man_ = rows[i].single_man;
    EXPECT_EQ(Check(1), rows[i].expected) << "row " << i;
  }
}

TEST_F(StockCheckBill, RefusesAnUnAuditInTheStatedOrder) {
  const char* kDone = "单据[PD001]反审核成功!";
  const char* kNotAudited = "单据[PD001]反审核失败!该单据未审核，不允许反审核！";
  const char* kLinked = "单据[PD001]反审核失败!该单据已被其他单据关联，不允许反审核！";
  const char* kVoucher = "单据[PD001]反审核失败!该单据已生成凭证，不允许反审核！";
  const struct {
    Value status, voucher;
    const char* expected;
  } rows[] = {
      {0, 5, kNotAudited},
      {Null{}, 0, kNotAudited},
      {2, 5, kLinked},
      {1, 5, kVoucher},
      {1, -1, kVoucher},  // any voucher id but 0: unlike the other bill
                          // classes
      {1, 0, kDone},
      {1, Null{}, kDone},
      {3, 0, kDone},
  };
  for (size_t i = 0; i < std::size(rows); ++i) {
    status_ = rows[i].status;
    voucher_ = rows[i].voucher;
    EXPECT_EQ(Check(-1), rows[i].expected) << "row " << i;
  }
}

TEST_F(StockCheckBill, ARefusalReadiesTheContextFirstOnceMoreAndWritesNothing) {
  status_ = 1;
  Check(1);
  EXPECT_THAT(host_.timeline,
              ElementsAre("bind erp", "ready first", "connection", kHeadQuery, "ready first"));
}

TEST_F(StockCheckBill, AnErrorReadiesTheContextFirstOnceMore) {
  bill_no_ = Null{};
  EXPECT_EQ(Check(1), "单据[]审核失败!Invalid use of Null");
  EXPECT_THAT(host_.timeline,
              ElementsAre("bind erp", "ready first", "connection", kHeadQuery, "ready first"));
}

TEST_F(StockCheckBill, AContextThatCannotBeReadiedAgainDoesNotHideTheReason) {
  status_ = 1;
  host_.fail_ready_first_at = 2;
  EXPECT_EQ(Check(1), "单据[PD001]审核失败!该单据已经审核,不允许再次审核!");
}

TEST_F(StockCheckBill, AContextThatCannotBeReadiedIsTheReason) {
  host_.fail_ready_first_at = 1;
  EXPECT_EQ(Check(1), "单据[]审核失败!not ready");
}

TEST_F(StockCheckBill, WorkThatCannotBeFinishedIsAFailure) {
  host_.fail_ready_second = true;
  EXPECT_EQ(Check(1), "单据[PD001]审核失败!not done");
}

TEST_F(StockCheckBill, ALanguageThatIsNoTextLeavesTheBareDescription) {
  HostDictionary published;
  published.SetItem("LanguageID", Null{});
  host_.published = &published;
  EXPECT_EQ(Check(1), "Invalid use of Null");
  EXPECT_EQ(host_.timeline[5], kAudit);  // done by then; only its message is lacking
}

TEST_F(StockCheckBill, NotesReadyTheContextAroundTheirBatch) {
  EXPECT_TRUE(stock_check_bill::SaveNote(object_, "erp", 1, nullptr));
  EXPECT_THAT(host_.timeline, ElementsAre("bind erp", "ready first", "connection", "ready second"));
  host_.timeline.clear();
  host_.fail_ready_second = true;
  EXPECT_FALSE(stock_check_bill::SaveNote(object_, "erp", 1, nullptr));
  EXPECT_THAT(host_.timeline, ElementsAre("bind erp", "ready first", "connection", "ready second"));
}

}  // namespace
}  // namespace tavcc::testing
