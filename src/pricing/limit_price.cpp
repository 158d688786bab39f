#include "pricing/limit_price.h"

#include <optional>

#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/text.h"
#include "foundation/trap.h"
#include "pricing/price_queries.h"

namespace tavcc {

namespace {

using namespace class_type;

constexpr int16_t kOffends = 1;
constexpr int16_t kNothingOffends = 0;
constexpr int32_t kSteelIndustry = 1;

enum class Side { kNone, kPurchase, kSale };

Side SideOf(int32_t class_type) {
  constexpr int32_t kPurchases[] = {kPurchaseOrder, kPurchaseBill, kPurchaseEstimate};
  constexpr int32_t kSales[] = {kSalesOrder, kSalesBill, kConsignment};
  if (IsInArray(class_type, kPurchases)) return Side::kPurchase;
  return IsInArray(class_type, kSales) ? Side::kSale : Side::kNone;
}

// What the general variant does beyond the course that both share.
struct Extras {
  bool exempts_502 = false;
  bool takes_discount_price = false;  // where the setting says so
  bool tolerates_rounding = false;
};

// One run of the check. `result` is what an error leaves standing.
class LimitPriceRun {
 public:
  LimitPriceRun(PlugIn& self, const Dictionary& oDict, const PriceQueries& queries, Extras extras)
      : self_(self), oDict_(oDict), queries_(queries), extras_(extras) {}

  void Run(Connection& cn, std::string& strReturnMsg, RecordsetPtr& rs, bool& Cg, int16_t& result);

 private:
  std::string LineQuery(Connection& cn, bool& Cg);
  std::string BillQuery(bool& Cg);
  std::string SalesBillQuery(int32_t class_type) const;
  Decimal CustomerCoefficient(Connection& cn) const;
  std::optional<LimitSource> SalesLimitSource() const;
  bool IsWithinRounding(const Decimal& limit) const;

  PlugIn& self_;
  const Dictionary& oDict_;
  const PriceQueries& queries_;
  Extras extras_;
  Side side_ = Side::kNone;
  double price_ = 0;  // of the line; 0 for a bill
};

void LimitPriceRun::Run(Connection& cn, std::string& strReturnMsg, RecordsetPtr& rs, bool& Cg,
                        int16_t& result) {
  const std::string query = oDict_.Lookup("Price") ? LineQuery(cn, Cg) : BillQuery(Cg);
  if (query.empty()) return;
  rs = cn.Execute(query);
  if (rs->AtEnd()) return;
  result = kOffends;
  const Decimal limit = DecimalOrZero(rs->Field("LimitPrice"));
  strReturnMsg =
      side_ == Side::kPurchase ? "出现采购价格高于限价的商品" : "出现销售价格低于限价的商品";
  if (extras_.tolerates_rounding && IsWithinRounding(limit)) {
    result = kNothingOffends;
    strReturnMsg = "";
  }
}

std::string LimitPriceRun::LineQuery(Connection& cn, bool& Cg) {
  price_ = NumberOrZero(oDict_.Item("Price"));
  side_ = SideOf(ToLong(oDict_.Item("ClassTypeID")));
  if (side_ == Side::kNone) return "";
  Cg = side_ == Side::kPurchase;
  if (side_ == Side::kPurchase) return queries_.purchase_line(LinePrice(oDict_, price_));
  const LinePrice line(oDict_, price_, CustomerCoefficient(cn));
  const auto source = SalesLimitSource();
  return source ? queries_.sales_line(*source, line) : "";
}

// No such customer leaves the coefficient at 0, which lets every line pass.
Decimal LimitPriceRun::CustomerCoefficient(Connection& cn) const {
  const RecordsetPtr rows = cn.Execute(
      Cat("select Isnull(f.FCoefficient,1) as FCoefficient from t_organization d left join "
          "t_ClientType f on "
          "d.FTypeID=f.Fitemid where d.FItemID=",
          ToLong(oDict_.Item("CustOrSupplyID"))));
  if (rows->RecordCount() == 0 || rows->AtEnd()) return 0;
  return ToDecimal(rows->Field("FCoefficient"));
}

std::optional<LimitSource> LimitPriceRun::SalesLimitSource() const {
  const auto setting = SettingNumber(GetICProfile(self_.host(), "XSPriceLimit", int32_t{0}));
  for (const LimitSource source : {LimitSource::kSalesLimit, LimitSource::kAverageCost,
                                   LimitSource::kLatestPrice, LimitSource::kLowestPrice}) {
    if (setting == static_cast<int>(source)) return source;
  }
  return std::nullopt;
}

std::string LimitPriceRun::BillQuery(bool& Cg) {
  const int32_t class_type = ToLong(oDict_.Item("ClassTypeID"));
  side_ = SideOf(class_type);
  if (side_ == Side::kNone) return "";
  Cg = side_ == Side::kPurchase;
  if (side_ == Side::kSale) return SalesBillQuery(class_type);

  constexpr int32_t kUnchecked[] = {2012, 2031};
  if (IsInArray(ToLong(oDict_.Item("BillType")), kUnchecked)) return "";
  const bool is_order = class_type == kPurchaseOrder;
  return queries_.purchase_bill(
      {.head_table = "",
       .entry_table = is_order ? "t_cg_orderentry" : "t_cc_stockbillentry",
       .bill_id = ToLong(oDict_.Item("BillInterID")),
       .exempts_502 = extras_.exempts_502 && !is_order});
}

std::string LimitPriceRun::SalesBillQuery(int32_t class_type) const {
  const auto source = SalesLimitSource();
  if (!source) return "";
  const bool is_order = class_type == kSalesOrder;
  std::string query = queries_.sales_bill(
      *source, {.head_table = is_order ? "t_xs_order" : "t_cc_stockbill",
                .entry_table = is_order ? "t_xs_orderentry" : "t_cc_stockbillentry",
                .bill_id = ToLong(oDict_.Item("BillInterID")),
                .exempts_502 = extras_.exempts_502 && !is_order});
  if (!extras_.takes_discount_price) return query;
  if (NumberOrZero(GetICProfile(self_.host(), "XSPriceLimitType", int32_t{0})) != 1) return query;
  constexpr std::string_view kListPrice = "a.Fprice";
  constexpr std::string_view kDiscountPrice = "a.FPriceDiscount";
  for (size_t at = query.find(kListPrice); at != std::string::npos;
       at = query.find(kListPrice, at + kDiscountPrice.size())) {
    query.replace(at, kListPrice.size(), kDiscountPrice);
  }
  return query;
}

// In bill mode the price is 0, so that the tolerance reaches only a limit that rounds to 0.
bool LimitPriceRun::IsWithinRounding(const Decimal& limit) const {
  const int32_t digits = LongOrZero(GetICProfile(self_.host(), "PriceDigitCount", int32_t{0}));
  if (digits < 0) throw AutomationError(RuntimeError::kInvalidProcedureCall);
  return limit.RoundedHalfEven(digits) == ToDecimal(price_).RoundedHalfEven(digits);
}

}  // namespace

int16_t WhetherNeedCheckPrice(PlugIn& self, std::string_view sDsn, int16_t intCheckType,
                              Dictionary& oDict) {
  constexpr int32_t kOrders[] = {kPurchaseOrder, kSalesOrder};
  constexpr int32_t kUnlessValueOnly[] = {kPurchaseRebate, kSalesRebate, kOtherReceipt,
                                          kOtherIssue};
  constexpr int32_t kValueOnly[] = {2040, 2041, 3020, 3021};
  constexpr int32_t kChecked[] = {2011, 2013, 2030, 3001, 3003, 3010};
  const auto needs_check = [&](int32_t class_type, int32_t bill_type) {
    if (IsInArray(class_type, kOrders)) return intCheckType == kAudit;
    if (IsInArray(class_type, kUnlessValueOnly)) {
      return !IsInArray(bill_type, kValueOnly) && intCheckType == kAudit;
    }
    return IsInArray(bill_type, kChecked);
  };
  return Trap(
      [&]() -> int16_t {
        if (NumberOrZero(GetProfile(self.host(), sDsn, "ControlPoint", "IC")) != 1) return 0;
        const int32_t bill_type = ToLong(oDict.Item("BillType"));
        return needs_check(ToLong(oDict.Item("ClassTypeID")), bill_type) ? 1 : 0;
      },
      [](const AutomationError&) -> int16_t { return 0; });
}

int16_t CheckLimitPrice(PlugIn& self, Dictionary& oDict, int16_t intCheckType,
                        std::string_view sDsn, std::string& strReturnMsg, RecordsetPtr& rs,
                        bool& Cg) {
  int16_t result = kNothingOffends;
  return Trap(
      [&] {
        const bool exempts_502 =
            NumberOrZero(GetICProfile(self.host(), "Is502PriceNoControl", int32_t{0})) != 0;
        if (GetIndustryType(self.host()) == kSteelIndustry) {
          return SteelCheckLimitPrice(self, oDict, intCheckType, sDsn, strReturnMsg, rs, Cg);
        }
        self.InitObjects(sDsn);
        const ConnectionPtr cn = self.db_context().GetConnection();
        self.db_context().ReadySecond();
        if (intCheckType == kUnAudit) return result;
        const Extras extras{
            .exempts_502 = exempts_502, .takes_discount_price = true, .tolerates_rounding = true};
        LimitPriceRun(self, oDict, kGeneralPriceQueries, extras)
            .Run(*cn, strReturnMsg, rs, Cg, result);
        return result;
      },
      [&](const AutomationError&) { return result; });
}

int16_t SteelCheckLimitPrice(PlugIn& self, Dictionary& oDict, int16_t intCheckType,
                             std::string_view sDsn, std::string& strReturnMsg, RecordsetPtr& rs,
                             bool& Cg) {
  int16_t result = kNothingOffends;
  return Trap(
      [&] {
        self.InitObjects(sDsn);
        const ConnectionPtr cn = self.db_context().GetConnection();
        self.db_context().ReadySecond();
        if (intCheckType == kUnAudit) return result;
        LimitPriceRun(self, oDict, kSteelPriceQueries, Extras{})
            .Run(*cn, strReturnMsg, rs, Cg, result);
        return result;
      },
      [&](const AutomationError&) { return result; });
}

Verdict LimitPriceGate(PlugIn& self, Dictionary& oDict, int16_t direction, std::string_view sDsn) {
  if (WhetherNeedCheckPrice(self, sDsn, direction, oDict) != 1) return NotAsked();
  std::string message;
  RecordsetPtr offending;
  bool is_purchase = false;
  if (CheckLimitPrice(self, oDict, direction, sDsn, message, offending, is_purchase) != kOffends) {
    return Pass();
  }
  return Refuse(std::move(message));
}

}  // namespace tavcc
