// The limit price queries of the general variant.
//
// A line is tested with ">=0" against its limit, a bill's line with ">0": deliberate.

#include "foundation/text.h"
#include "pricing/price_queries.h"

namespace tavcc {

namespace {

std::string SalesLineByItemPrice(std::string_view limit, const LinePrice& line) {
  const Decimal& c = line.customer_coefficient();
  return Cat("Select ", line.index(), " as FIndex, b.FName,a.", limit, " as LimitPrice,", c,
             " as FCoefficient, "
             " a.",
             limit, "*", c, " as ActLimitPrice, ", line.price(), "as FPrice, ", line.price(),
             " - Isnull(a.", limit, ",0)*", c,
             " as DiffPrice "
             "From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID "
             "inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID "
             "Where b.FItemID=",
             line.item_id(), " and a.FUnitID=", line.unit_id(), " And Isnull(a.", limit,
             ",0)>=0 And ", line.price(), " < Isnull(a.", limit, ",0)*", c);
}

std::string SalesLineByAverageCost(const LinePrice& line) {
  const double k = line.coefficient();
  const Decimal& c = line.customer_coefficient();
  return Cat("Select ", line.index(), " as FIndex, b.FName, a.FPrice*", k, " as LimitPrice,", c,
             " as FCoefficient, "
             " a.FPrice*",
             k, "*", c, " as ActLimitPrice, ", line.price(), "as FPrice, ", line.price(),
             " - a.FPrice*", k, "*", c,
             " as DiffPrice "
             "From (select a.FItemID,case when sum(a.FQty)=0 then 0 Else sum(a.FBal)/sum(a.FQty) "
             "End as FPrice from T_CC_Inventory a inner join t_stock b on FStockID=b.FItemID "
             "where a.FItemID=",
             line.item_id(),
             " and b.FTypeID<>502 group by a.FItemID) a Inner Join t_icItem b On "
             "a.FItemID=b.FItemID "
             "Where b.FItemID=",
             line.item_id(), " And a.FPrice*", k, ">=0 And ", line.price(), " < a.FPrice*", k, "*",
             c);
}

std::string SalesLine(LimitSource source, const LinePrice& line) {
  switch (source) {
    case LimitSource::kSalesLimit:
      return SalesLineByItemPrice("FXSLimitPrice", line);
    case LimitSource::kAverageCost:
      return SalesLineByAverageCost(line);
    case LimitSource::kLatestPrice:
      return SalesLineByItemPrice("FLatestInPrice", line);
    case LimitSource::kLowestPrice:
      return SalesLineByItemPrice("FLowestInPrice", line);
  }
  return "";
}

std::string PurchaseLine(const LinePrice& line) {
  return Cat("Select ", line.index(),
             " as FIndex, b.FName, a.FCGLimitPrice as LimitPrice,"
             " 1 as FCoefficient, a.FCGLimitPrice*1 as ActLimitPrice, ",
             line.price(), "as FPrice,", line.price(),
             " - Isnull(a.FCGLimitPrice,0) as DiffPrice From "
             "T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID "
             " inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID "  // two blanks: as stored
             "Where b.FItemID=",
             line.item_id(), " and a.FUnitID=", line.unit_id(),
             " And Isnull(a.FCGLimitPrice,0)>0 And ", line.price(),
             " > Isnull(a.FCGLimitPrice,0) ");
}

std::string_view Join502(const BillPrices& bill) {
  return bill.exempts_502
             ? " inner join t_stock ts on a.FSCStockID = ts.FItemID AND ts.FTypeID <> 502 "
             : "";
}

std::string SalesBillBySalesLimit(const BillPrices& bill) {
  return Cat(
      "Select a.Findex, c.Fname,Isnull(b.FXSLimitPrice,0) as LimitPrice,"
      " Isnull(f.FCoefficient,1) as FCoefficient,"
      " Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as ActLimitPrice,"
      "Isnull(a.Fprice,0) as Fprice,"
      " Isnull(a.Fprice,0)-Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as DiffPrice\r\n"
      " From ",
      bill.entry_table, " a ", Join502(bill), " inner join ", bill.head_table,
      " e"
      " on a.Fid=e.Fid Left Outer Join T_ItemPrice b\r\n"
      " On a.FitemID=b.FItemID and a.FShowUnitID=b.FUnitID Inner Join t_icItem c\r\n"
      " On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID\r\n"
      " Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid\r\n"
      " Where Isnull(a.Fprice, 0)>=0 and Isnull(a.Fprice, 0) < Isnull(b.FXSLimitPrice, 0) * "
      "Isnull(f.FCoefficient, 1) \r\n"
      " And Isnull(b.FXSLimitPrice, 0) * Isnull(f.FCoefficient, 1) >0\r\n"
      " And a.FID=",
      bill.bill_id, "\r\n order by a.Findex");
}

// The latest and the lowest purchase-in price. Unlike the text above, a blank stands before the
// first comma and a line break before the head's condition.
std::string SalesBillByInPrice(std::string_view limit, const BillPrices& bill) {
  return Cat("Select a.Findex, c.Fname,Isnull(b.", limit,
             ",0) as LimitPrice ,"
             " Isnull(f.FCoefficient,1) as FCoefficient,"
             " Isnull(b.",
             limit,
             ",0)*Isnull(f.FCoefficient,1) as ActLimitPrice,Isnull(a.Fprice,0) as Fprice,"
             " Isnull(a.Fprice,0)-Isnull(b.",
             limit,
             ",0)*Isnull(f.FCoefficient,1) as DiffPrice\r\n"
             " From ",
             bill.entry_table, " a ", Join502(bill), " inner join ", bill.head_table,
             " e\r\n"
             " on a.Fid=e.Fid Left Outer Join T_ItemPrice b\r\n"
             " On a.FitemID=b.FItemID and a.FShowUnitID=b.FUnitID Inner Join t_icItem c\r\n"
             " On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID\r\n"
             " Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid\r\n"
             " Where Isnull(a.Fprice, 0)>=0 and Isnull(a.Fprice, 0) < Isnull(b.",
             limit,
             ", 0) * Isnull(f.FCoefficient, 1) \r\n"
             " And Isnull(b.",
             limit,
             ", 0) * Isnull(f.FCoefficient, 1) >0\r\n"
             " And a.FID=",
             bill.bill_id, "\r\n order by a.Findex");
}

// The limit is the average cost times the entry's own unit coefficient; the last condition leaves
// the unit coefficient out, deliberately.
std::string SalesBillByAverageCost(const BillPrices& bill) {
  return Cat(
      "Select a.Findex, c.Fname,b.FPrice*a.FCoefficient as LimitPrice ,"
      " Isnull(f.FCoefficient,1) as FCoefficient,"
      " b.FPrice*a.FCoefficient*Isnull(f.FCoefficient,1) as ActLimitPrice,"
      "Isnull(a.Fprice,0) as Fprice,"
      "  Isnull(a.Fprice,0)-b.FPrice*a.FCoefficient*Isnull(f.FCoefficient,1) as DiffPrice\r\n"
      " From ",
      bill.entry_table, " a ", Join502(bill), " inner join ", bill.head_table,
      " e\r\n"
      " on a.Fid=e.Fid Inner Join (select aa.FItemID,case when sum(aa.FQty)=0 then 0 Else "
      "sum(aa.FBal)/sum(aa.FQty) End as FPrice from T_CC_Inventory aa inner join t_stock bb on "
      "aa.FStockID=bb.FItemID where bb.FTypeID<>502 group by aa.FItemID) b\r\n"
      " On a.FitemID=b.FItemID Inner Join t_icItem c\r\n"
      " On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID\r\n"
      " Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid\r\n"
      " Where Isnull(a.Fprice, 0)>=0 and Isnull(a.Fprice, 0) < Isnull(b.FPrice, "
      "0)*a.FCoefficient * Isnull(f.FCoefficient, 1) \r\n"
      " And b.FPrice*Isnull(f.FCoefficient,1) >0\r\n"
      " And a.FID=",
      bill.bill_id, "\r\n order by a.Findex");
}

std::string SalesBill(LimitSource source, const BillPrices& bill) {
  switch (source) {
    case LimitSource::kSalesLimit:
      return SalesBillBySalesLimit(bill);
    case LimitSource::kAverageCost:
      return SalesBillByAverageCost(bill);
    case LimitSource::kLatestPrice:
      return SalesBillByInPrice("FLatestInPrice", bill);
    case LimitSource::kLowestPrice:
      return SalesBillByInPrice("FLowestInPrice", bill);
  }
  return "";
}

// The bill's head is not joined.
std::string PurchaseBill(const BillPrices& bill) {
  return Cat(
      "Select  a.Findex,c.Fname, b.FCGLimitPrice as LimitPrice,1 as FCoefficient,"
      " b.FCGLimitPrice*1 as ActLimitPrice,IsNull(a.Fprice, 0) as FPrice,"
      " IsNull(a.Fprice, 0) - Isnull(b.FCGLimitPrice,0) as DiffPrice From ",
      bill.entry_table, " AS a ", Join502(bill),
      " Left Outer Join T_ItemPrice b On a.FitemID=b.FItemID and a.FShowUnitID=b.FUnitID "
      "Inner Join t_icItem c On a.FitemID=c.FItemID "
      " Where IsNull(a.Fprice, 0) >  Isnull(b.FCGLimitPrice,0) And Isnull(b.FCGLimitPrice,0)>0 "
      " And a.FID=",
      bill.bill_id, " order by a.Findex");
}

}  // namespace

const PriceQueries kGeneralPriceQueries = {SalesLine, PurchaseLine, SalesBill, PurchaseBill};

}  // namespace tavcc
