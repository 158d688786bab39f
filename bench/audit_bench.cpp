// What a batch audit costs: on the embedded database in memory, and the library's own share, which
// is the same run on a connection that answers at once.
//
// All bills have ten lines. The times are those of one run over the whole batch; "per_bill" is the
// time of one bill, "bills" how many are done in a second.
#include <benchmark/benchmark.h>

#include <string>

#include "audit/batch_audit.h"
#include "embedded/embedded.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/text.h"
#include "host/host_dictionary.h"
#include "host/host_vector.h"
#include "host/reference_host.h"
#include "host/schema.h"
#include "support/instant_host.h"

namespace tavcc {
namespace {

constexpr int kLines = 10;

struct Kind {
  const char* name;
  int32_t class_type;
  int32_t bill_type;
};
constexpr Kind kSale = {"sale", class_type::kSalesBill, 3001};
constexpr Kind kPurchase = {"purchase", class_type::kPurchaseBill, 2011};

DictionaryPtr Bill(const Kind& kind, int32_t id) {
  auto bill = std::make_shared<HostDictionary>();
  bill->SetItem("ClassTypeID", kind.class_type);
  bill->SetItem("BillInterID", id);
  bill->SetItem("BillType", kind.bill_type);
  bill->SetItem("BillTypeID", kind.bill_type);
  bill->SetItem("HeadTableName", "T_CC_StockBill");
  bill->SetItem("BillNo", Cat("XS", id));
  bill->SetItem("CustOrSupplyID", int32_t{1});
  bill->SetItem("AllAmount", 1234.5);
  bill->SetItem("FNeutralizeAmount", 0.0);
  return bill;
}

std::shared_ptr<HostVector> Bills(const Kind& kind, int32_t count) {
  auto bills = std::make_shared<HostVector>();
  for (int32_t id = 1; id <= count; ++id) bills->Add(Bill(kind, id));
  return bills;
}

void Report(benchmark::State& state, int64_t bills) {
  using benchmark::Counter;
  const auto all = static_cast<double>(bills);
  state.counters["bills"] = Counter(all, Counter::kIsIterationInvariantRate);
  state.counters["per_bill"] = Counter(all, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

// Audits the batch; a result other than 1 is a broken benchmark.
bool AuditAll(PlugIn& object, HostVector& bills, std::string_view sDsn, benchmark::State& state,
              int16_t check_type = kAudit) {
  DictionaryPtr results = std::make_shared<HostDictionary>();
  const int16_t answer = AuditBill(object, bills, check_type, sDsn, true, results, true, true);
  if (answer == 1) return true;
  const std::string why = ToText(results->Item("ErrorMsg")) + ToText(results->Item("BillInfo"));
  state.SkipWithError(why.substr(0, 300).c_str());
  return false;
}

// ---- The library's own share -------------------------------------------------------------------

void OwnShare(benchmark::State& state, const Kind& kind) {
  ReleaseHostObjects();
  testing::InstantHost host;
  const auto today = DateTime::Parse("2026-03-15");
  testing::InstantConnection& connection = host.connection();
  connection.Answer("Select FStatus, FVoucherID", {"FStatus", "FVoucherID", "FDate", "FBillerID"},
                    {int32_t{0}, int32_t{0}, *today, int32_t{1}});
  connection.Answer("Select FStartDate,FEndDate", {"FStartDate", "FEndDate"},
                    {*DateTime::Parse("2026-03-01"), *DateTime::Parse("2026-03-31")});
  connection.Answer("Set NoCount On     Declare @Year", {"FYear"}, {int32_t{2026}});
  host.profile = {{"CurrentYear", "2026"}, {"CurrentPeriod", "3"}, {"SingleMan", "1"}};
  PlugIn object(host);
  const auto bills = Bills(kind, static_cast<int32_t>(state.range(0)));
  for (auto _ : state) {
    if (!AuditAll(object, *bills, "dsn", state)) break;
  }
  Report(state, state.range(0));
  ReleaseHostObjects();
}
BENCHMARK_CAPTURE(OwnShare, sale, kSale)->RangeMultiplier(10)->Range(100, 10000);
BENCHMARK_CAPTURE(OwnShare, purchase, kPurchase)->RangeMultiplier(10)->Range(100, 10000);

// ---- On the embedded database ------------------------------------------------------------------

// What lies in the stock before the first bill is audited.
enum class Stock : uint8_t {
  kFull,     // plenty of every item: no row is emptied
  kNone,     // no rows: the bills make theirs, and un-auditing takes them away again
  kSoldOut,  // plenty, and a tenth of the rows are empty ones that an audited bill still names
};

// An ERP database with as many stock rows as asked, one per item, and bills over random items.
class Company {
 public:
  Company(const Kind& kind, int32_t bills, int32_t stock_rows, Stock stock = Stock::kFull) {
    ReleaseHostObjects();
    database_->RunScript(SchemaScript());
    database_->RunScript(BaseScript());
    Run("insert into t_MeasureUnit(FMeasureUnitID,FUnitGroupID,FCoefficient) values(1,1,1)");
    Run("insert into t_Stock(FItemID,FTypeID) values(1,500)");
    Run("insert into t_Organization(FItemID) values(1)");
    Run("insert into t_Supplier(FItemID) values(1)");
    Rows("t_ICItem(FItemID,FUnitGroupID,FUnitID,FTrack)", stock_rows,
         [](int32_t i) { return Cat(i, ",1,1,76"); });
    if (stock != Stock::kNone) AddStock(stock_rows);
    Rows("T_CC_StockBill(FID,FClassTypeID,FBillTypeID,FBillNo,FDate,FBillerID)", bills,
         [&](int32_t i) {
           return Cat(i, ",", kind.class_type, ",", kind.bill_type, ",'XS", i, "','20260310',1");
         });
    Rows(
        "T_CC_StockBillEntry(FID,FEntryID,FIndex,FItemID,FDCStockID,FSCStockID,FShowUnitID,"
        "FCoefficient,FQty,FShowQty,FPrice,FIncludeTaxPrice,FCostPrice)",
        bills * kLines, [&](int32_t i) {
          const int32_t bill = (i - 1) / kLines + 1;
          const int32_t line = (i - 1) % kLines + 1;
          // Spread over the items; two bills share none, as long as there are enough.
          const auto item = static_cast<int32_t>((int64_t{i} * 7919) % stock_rows) + 1;
          return Cat(bill, ",", line, ",", line, ",", item, ",1,1,1,1,2,2,3.5,4,3");
        });
    if (stock == Stock::kSoldOut) AddSoldOut(bills + 1, stock_rows);
  }

  ~Company() { ReleaseHostObjects(); }

  Host& host() { return host_; }
  void Run(std::string_view sql) { host_.GetConnection(kDsn)->Execute(sql); }
  int32_t StockRows() {
    return ToLong(
        host_.GetConnection(kDsn)->Execute("select count(*) from T_CC_Inventory")->Field(0));
  }

  static constexpr std::string_view kDsn = "bench";

 private:
  void AddStock(int32_t rows) {
    Rows("T_CC_Inventory(FItemID,FStockID,FKFDate,FPeriodDate,FQty,FBal)", rows,
         [](int32_t i) { return Cat(i, ",1,'1900-01-01','1900-01-01',1000000,3000000"); });
  }

  // Empty rows of a second stock, which an audited bill of its own once filled.
  void AddSoldOut(int32_t bill, int32_t stock_rows) {
    constexpr int32_t kOneOf = 10;
    Run(Cat("insert into T_CC_StockBill(FID,FStatus) values(", bill, ",1)"));
    Rows("T_CC_StockBillEntry(FID,FItemID,FDCStockID)", stock_rows / kOneOf,
         [&](int32_t i) { return Cat(bill, ",", i * kOneOf, ",2"); });
    Rows("T_CC_Inventory(FItemID,FStockID)", stock_rows / kOneOf,
         [](int32_t i) { return Cat(i * kOneOf, ",2"); });
  }

  template <class RowText>
  void Rows(std::string_view into, int32_t count, RowText row_text) {
    constexpr int32_t kRowsOfStatement = 500;
    std::string sql;
    for (int32_t i = 1; i <= count; ++i) {
      if (sql.empty()) {
        sql = Cat("insert into ", into, " values(", row_text(i), ")");
      } else {
        CatTo(sql, ",(", row_text(i), ")");
      }
      if (i % kRowsOfStatement != 0 && i != count) continue;
      Run(sql);
      sql.clear();
    }
  }

  std::shared_ptr<sql::Database> database_ = sql::Database::Open({});
  ReferenceHost host_{[this](std::string_view) { return database_->NewSession(); }};
};

// Un-auditing bills that were audited. Every un-audited bill that brought goods in is followed by
// the clean-up of emptied stock rows.
void EmbeddedUnAudit(benchmark::State& state, const Kind& kind, Stock stock) {
  const auto count = static_cast<int32_t>(state.range(0));
  Company company(kind, count, static_cast<int32_t>(state.range(1)), stock);
  PlugIn object(company.host());
  const auto bills = Bills(kind, count);
  if (!AuditAll(object, *bills, Company::kDsn, state)) return;
  for (auto _ : state) {
    state.PauseTiming();
    company.Run("BEGIN TRANSACTION");
    state.ResumeTiming();
    if (!AuditAll(object, *bills, Company::kDsn, state, kUnAudit)) break;
    state.PauseTiming();
    if (stock == Stock::kNone && company.StockRows() > 0) {
      state.SkipWithError("stock rows are left over");
    }
    company.Run("ROLLBACK TRANSACTION");
    state.ResumeTiming();
  }
  Report(state, count);
}
BENCHMARK_CAPTURE(EmbeddedUnAudit, sale, kSale, Stock::kFull)
    ->ArgNames({"bills", "stock_rows"})
    ->ArgsProduct({{100, 1000, 10000}, {1000, 100000}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(EmbeddedUnAudit, purchase, kPurchase, Stock::kFull)
    ->ArgNames({"bills", "stock_rows"})
    ->ArgsProduct({{100, 1000, 10000}, {1000, 100000}})
    ->Unit(benchmark::kMillisecond);
// All rows that the bills made fall to zero and are deleted: ten for a bill.
BENCHMARK_CAPTURE(EmbeddedUnAudit, purchase_emptied, kPurchase, Stock::kNone)
    ->ArgNames({"bills", "stock_rows"})
    ->ArgsProduct({{100, 1000, 10000}, {100000}})
    ->Unit(benchmark::kMillisecond);
// The clean-up looks at each of the sold-out rows for each bill.
BENCHMARK_CAPTURE(EmbeddedUnAudit, purchase_sold_out, kPurchase, Stock::kSoldOut)
    ->ArgNames({"bills", "stock_rows"})
    ->ArgsProduct({{100}, {1000, 10000, 100000}})
    ->Unit(benchmark::kMillisecond);

// Every run audits the same bills, whose writes are rolled back between runs.
void Embedded(benchmark::State& state, const Kind& kind) {
  const auto count = static_cast<int32_t>(state.range(0));
  Company company(kind, count, static_cast<int32_t>(state.range(1)));
  PlugIn object(company.host());
  const auto bills = Bills(kind, count);
  for (auto _ : state) {
    state.PauseTiming();
    company.Run("BEGIN TRANSACTION");
    state.ResumeTiming();
    if (!AuditAll(object, *bills, Company::kDsn, state)) break;
    state.PauseTiming();
    company.Run("ROLLBACK TRANSACTION");
    state.ResumeTiming();
  }
  Report(state, count);
}
BENCHMARK_CAPTURE(Embedded, sale, kSale)
    ->ArgNames({"bills", "stock_rows"})
    ->ArgsProduct({{100, 1000, 10000}, {1000, 100000}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Embedded, purchase, kPurchase)
    ->ArgNames({"bills", "stock_rows"})
    ->ArgsProduct({{100, 1000, 10000}, {1000, 100000}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavcc

BENCHMARK_MAIN();
