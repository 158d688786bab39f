// Which bills account for the differences of the ledger check: those whose lines, all of them, are
// what is too much or too little. Differences that no bill joins are accounted for apart from each
// other.
#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>

#include "foundation/conversions.h"
#include "foundation/error.h"
#include "foundation/text.h"
#include "host/ledger_check.h"
#include "host/ledger_lines.h"

namespace tavcc {
namespace {

constexpr size_t kMostBills = 4;          // that account for differences together
constexpr size_t kMostDifferences = 200;  // beyond it nobody looks for single bills
constexpr size_t kMostTrials = 100'000;

using Place = std::tuple<int32_t, int32_t, std::string, int32_t>;  // item, stock, batch, aux
struct Amount {
  Decimal quantity, value;
  bool IsZero() const { return quantity.IsZero() && value.IsZero(); }
};
using Amounts = std::map<Place, Amount>;

// Raises error 6 beyond 38 digits.
Decimal Minus(const Decimal& a, const Decimal& b) {
  const auto difference = Decimal::Subtract(a, b);
  if (!difference) throw AutomationError(RuntimeError::kOverflow);
  return *difference;
}

struct Bill {
  LedgerCause cause;
  Amounts posts;  // what is in the stock too much: of an audited bill what it lacks
};

// What each bill posts, with bills that move value alone as the check counts them.
constexpr std::string_view kSums =
    "SELECT l.FHead, l.FBillID, l.FItemID, l.FStockID, l.FBatchNo, l.FAuxPropID,\n"
    "  SUM(l.FQty) AS FQty, SUM(l.FBal) AS FBal,\n"
    "  MAX(CASE WHEN l.FHead = 1 THEN z.FBillNo ELSE v.FBillNo END) AS FBillNo,\n"
    "  MAX(CASE WHEN l.FHead = 1 THEN z.FClassTypeID ELSE v.FClassTypeID END) AS FClassTypeID,\n"
    "  MAX(CASE WHEN l.FHead = 1 THEN z.FStatus ELSE v.FStatus END) AS FStatus\n"
    "FROM (SELECT FHead, FBillID, FItemID, FStockID, FBatchNo, FAuxPropID, SUM(FQty) AS FQty,\n"
    "    CONVERT(decimal(28,10), ROUND(ISNULL(SUM(FQty*FPrice),0),2)) AS FBal\n"
    "  FROM #LedgerLine\n"
    "  GROUP BY FHead, FBillID, FItemID, FStockID, FBatchNo, FAuxPropID, FKFPeriod, FKFDate,\n"
    "    FPeriodDate, FBatchNoIndex) l\n"
    "  LEFT JOIN T_CC_StockBill v ON l.FHead = 0 AND v.FID = l.FBillID\n"
    "  LEFT JOIN T_CC_ZZCX z ON l.FHead = 1 AND z.FID = l.FBillID\n"
    "GROUP BY l.FHead, l.FBillID, l.FItemID, l.FStockID, l.FBatchNo, l.FAuxPropID\n"
    "ORDER BY FClassTypeID, l.FBillID\n"
    "DROP TABLE #LedgerLine\n";

std::string HasItem(std::string_view entry_table, std::string_view items) {
  return Cat("v.FID IN (SELECT FID FROM ", entry_table, " WHERE FItemID IN (", items, "))");
}

std::vector<Bill> BillsWithItems(Connection& connection, std::string_view items) {
  const std::string batch = LedgerLines(
      HasItem("T_CC_StockBillEntry", items),
      Cat("(", HasItem("T_CC_ZZCX_Entry", items), " OR ", HasItem("T_CC_ZZCX_Entry2", items), ")"));
  const RecordsetPtr rows = connection.Execute(Cat(batch, kSums));
  std::map<std::pair<int32_t, int32_t>, Bill> bills;
  for (; !rows->AtEnd(); rows->MoveNext()) {
    const int32_t id = ToLong(rows->Field("FBillID"));
    Bill& bill = bills[{ToLong(rows->Field("FHead")), id}];
    bill.cause = {.bill_no = ToText(rows->Field("FBillNo")),
                  .class_type_id = ToLong(rows->Field("FClassTypeID")),
                  .bill_id = id,
                  .audited = ToLong(rows->Field("FStatus")) > 0};
    const Amount posted{ToDecimal(rows->Field("FQty")), ToDecimal(rows->Field("FBal"))};
    if (posted.IsZero()) continue;
    bill.posts[{ToLong(rows->Field("FItemID")), ToLong(rows->Field("FStockID")),
                ToText(rows->Field("FBatchNo")), ToLong(rows->Field("FAuxPropID"))}] =
        bill.cause.audited ? Amount{posted.quantity.Negated(), posted.value.Negated()} : posted;
  }
  std::vector<Bill> list;
  for (auto& [key, bill] : bills) list.push_back(std::move(bill));
  return list;
}

// Looks for the fewest bills that take all of some differences away.
class Search {
 public:
  explicit Search(const std::vector<const Bill*>& bills) : bills_(bills) {}

  // Empty when no few bills do, or more than one choice of them does.
  std::vector<const Bill*> Find(const Amounts& differences) {
    for (size_t most = 1; most <= kMostBills; ++most) {
      found_.clear();
      Try(differences, most);
      if (trials_ > kMostTrials) return {};
      if (!found_.empty()) break;
    }
    if (found_.size() != 1) return {};
    return {found_.begin()->begin(), found_.begin()->end()};
  }

 private:
  // Some bill that is not chosen yet must account for the first difference that is left.
  void Try(const Amounts& left, size_t most) {
    if (left.empty()) found_.insert(chosen_);
    if (left.empty() || most == 0 || ++trials_ > kMostTrials) return;
    for (const Bill* bill : bills_) {
      if (!bill->posts.contains(left.begin()->first) || chosen_.contains(bill)) continue;
      chosen_.insert(bill);
      Try(Without(left, bill->posts), most - 1);
      chosen_.erase(bill);
    }
  }

  static Amounts Without(Amounts left, const Amounts& posts) {
    for (const auto& [place, posted] : posts) {
      Amount& amount = left[place];
      amount = {Minus(amount.quantity, posted.quantity), Minus(amount.value, posted.value)};
      if (amount.IsZero()) left.erase(place);
    }
    return left;
  }

  const std::vector<const Bill*>& bills_;
  std::set<const Bill*> chosen_;
  std::set<std::set<const Bill*>> found_;
  size_t trials_ = 0;
};

// Takes out of `differences` one of them and all that some bill joins with it, and the bills.
std::pair<Amounts, std::vector<const Bill*>> TakeGroup(Amounts& differences,
                                                       const std::vector<const Bill*>& bills) {
  Amounts group;
  std::set<const Bill*> members;
  std::vector<Place> open{differences.begin()->first};
  while (!open.empty()) {
    const Place place = std::move(open.back());
    open.pop_back();
    const auto found = differences.find(place);
    if (found == differences.end()) continue;
    group.insert(differences.extract(found));
    for (const Bill* bill : bills) {
      if (!bill->posts.contains(place) || !members.insert(bill).second) continue;
      for (const auto& [other, amount] : bill->posts) open.push_back(other);
    }
  }
  return {group, {members.begin(), members.end()}};
}

}  // namespace

std::vector<LedgerCause> ExplainLedger(Connection& connection,
                                       const std::vector<LedgerDifference>& differences) {
  if (differences.empty() || differences.size() > kMostDifferences) return {};
  Amounts left;
  std::string items;
  for (const LedgerDifference& d : differences) {
    left[{d.item_id, d.stock_id, d.batch, d.aux_prop_id}] = {
        Minus(d.actual_quantity, d.expected_quantity), Minus(d.actual_value, d.expected_value)};
    CatTo(items, items.empty() ? "" : ",", d.item_id);
  }
  const std::vector<Bill> bills = BillsWithItems(connection, items);
  // A bill that moves what does not differ cannot be the cause of what does.
  std::vector<const Bill*> candidates;
  for (const Bill& bill : bills) {
    if (std::ranges::all_of(bill.posts,
                            [&](const auto& post) { return left.contains(post.first); }))
      candidates.push_back(&bill);
  }
  std::vector<LedgerCause> causes;
  while (!left.empty()) {
    const auto [group, members] = TakeGroup(left, candidates);
    for (const Bill* bill : Search(members).Find(group)) causes.push_back(bill->cause);
  }
  std::ranges::sort(causes, {}, [](const LedgerCause& cause) {
    return std::pair(cause.class_type_id, cause.bill_id);
  });
  return causes;
}

}  // namespace tavcc
