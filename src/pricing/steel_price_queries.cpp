// The limit price queries of the steel variant: a line's price is divided by the barcode
// coefficient of its unit, a bill's line is compared by its base-unit price.
//
// The texts differ from one another in small ways, and two of them the database rejects. Each is
// kept as it is stored.

#include "foundation/text.h"
#include "pricing/price_queries.h"

namespace tavcc {

namespace {

// A coefficient of 0 counts as 1.
std::string BarcodeJoin(int32_t unit_id) {
  return Cat(
      " left join (select (case when a.FCoefficient=0 then 1 else a.FCoefficient end )as "
      "FCoefficient,a.FItemID from t_barcode a inner join t_icitem  b on b.FItemID =a.FItemID "
      "and a.FUnitID= ",
      unit_id, " ) tb on b.FItemID=tb.FItemID \r\n");
}

// Purchases look at the unit's first barcode row only.
std::string FirstBarcodeJoin(int32_t unit_id) {
  return Cat(
      " left join (select (case when a.FCoefficient=0 then 1 else a.FCoefficient end )as "
      "FCoefficient,a.FItemID from t_barcode a inner join t_icitem  b on b.FItemID =a.FItemID "
      "and a.FIndex=1 and a.FUnitID= ",
      unit_id, " ) tb on b.FItemID=tb.FItemID \r\n");
}

std::string SalesLineBySalesLimit(const LinePrice& line) {
  const Decimal& c = line.customer_coefficient();
  return Cat("Select ", line.index(), " as FIndex, b.FName,a.FXSLimitPrice as LimitPrice,", c,
             " as FCoefficient, "
             " a.FXSLimitPrice*",
             c, " as ActLimitPrice, ", line.price(), "/tb.FCoefficient as FPrice, ", line.price(),
             "/tb.FCoefficient - Isnull(a.FXSLimitPrice,0)*", c,
             " as DiffPrice "
             "From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID "
             "inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID ",
             BarcodeJoin(line.unit_id()), "Where b.FItemID=", line.item_id(),
             " and a.FUnitID=b.FUnitID And Isnull(a.FXSLimitPrice,0)>=0 And ", line.price(),
             "/tb.FCoefficient < Isnull(a.FXSLimitPrice,0)*", c);
}

// The comparison deliberately leaves out the barcode coefficient that the shown columns use.
std::string SalesLineByAverageCost(const LinePrice& line) {
  const double k = line.coefficient();
  const Decimal& c = line.customer_coefficient();
  return Cat("Select ", line.index(), " as FIndex, b.FName, a.FPrice*", k,
             " /tb.FCoefficient as LimitPrice,", c,
             " as FCoefficient, "
             " a.FPrice*",
             k, "*", c, " /tb.FCoefficient as ActLimitPrice, ", line.price(),
             " /tb.FCoefficient as FPrice, ", line.price(), " - a.FPrice*", k, "*", c,
             " as DiffPrice "
             "From (select a.FItemID,case when sum(a.FQty)=0 then 0 Else sum(a.FBal)/sum(a.FQty) "
             "End as FPrice from T_CC_Inventory a inner join t_stock b on FStockID=b.FItemID "
             "where a.FItemID=",
             line.item_id(),
             " and b.FTypeID<>502 group by a.FItemID) a Inner Join t_icItem b On "
             "a.FItemID=b.FItemID ",
             BarcodeJoin(line.unit_id()), "Where b.FItemID=", line.item_id(), " And a.FPrice*", k,
             ">=0 And ", line.price(), " < a.FPrice*", k, "*", c);
}

// Only DiffPrice uses the barcode coefficient.
std::string SalesLineByLatestPrice(const LinePrice& line) {
  const Decimal& c = line.customer_coefficient();
  return Cat("Select ", line.index(), " as FIndex, b.FName,a.FLatestInPrice as LimitPrice,", c,
             " as FCoefficient, "
             " a.FLatestInPrice*",
             c, " as ActLimitPrice, ", line.price(), " as FPrice, ", line.price(),
             "/tb.FCoefficient - Isnull(a.FLatestInPrice,0)*", c,
             " as DiffPrice "
             "From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID "
             "inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID ",
             BarcodeJoin(line.unit_id()), "Where b.FItemID=", line.item_id(),
             " and a.FUnitID=b.FUnitID And Isnull(a.FLatestInPrice,0)>=0 And ", line.price(),
             " < Isnull(a.FLatestInPrice,0)*", c);
}

// The barcode join stands before the word From, so the database rejects the statement and the
// lowest purchase-in price is never enforced on a line. Kept so.
std::string SalesLineByLowestPrice(const LinePrice& line) {
  const Decimal& c = line.customer_coefficient();
  return Cat("Select ", line.index(), " as FIndex, b.FName,a.FLowestInPrice as LimitPrice,", c,
             " as FCoefficient, "
             " a.FLowestInPrice*",
             c, " as ActLimitPrice, ", line.price(), " as FPrice, ", line.price(),
             "/tb.FCoefficient - Isnull(a.FLowestInPrice,0)*", c, " as DiffPrice ",
             BarcodeJoin(line.unit_id()),
             "From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID "
             "inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID "
             "Where b.FItemID=",
             line.item_id(), " and a.FUnitID=b.FUnitID And Isnull(a.FLowestInPrice,0)>=0 And ",
             line.price(), " < Isnull(a.FLowestInPrice,0)*", c);
}

std::string SalesLine(LimitSource source, const LinePrice& line) {
  switch (source) {
    case LimitSource::kSalesLimit:
      return SalesLineBySalesLimit(line);
    case LimitSource::kAverageCost:
      return SalesLineByAverageCost(line);
    case LimitSource::kLatestPrice:
      return SalesLineByLatestPrice(line);
    case LimitSource::kLowestPrice:
      return SalesLineByLowestPrice(line);
  }
  return "";
}

std::string PurchaseLine(const LinePrice& line) {
  return Cat("Select ", line.index(),
             " as FIndex, b.FName, a.FCGLimitPrice as LimitPrice,"
             " 1 as FCoefficient, a.FCGLimitPrice*1 as ActLimitPrice, ",
             line.price(), "/tb.FCoefficient as FPrice,", line.price(),
             "/tb.FCoefficient - Isnull(a.FCGLimitPrice,0) as DiffPrice From "
             "T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID "
             " inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID ",  // two blanks: as stored
             FirstBarcodeJoin(line.unit_id()), "Where b.FItemID=", line.item_id(),
             " and a.FUnitID=b.FUnitID And Isnull(a.FCGLimitPrice,0)>0 And ", line.price(),
             "/tb.FCoefficient > Isnull(a.FCGLimitPrice,0)  ");  // two blanks: as stored
}

std::string SalesBillBySalesLimit(const BillPrices& bill) {
  return Cat(
      "Select a.Findex, c.Fname,Isnull(b.FXSLimitPrice,0) as LimitPrice ,"
      " Isnull(f.FCoefficient,1) as FCoefficient,"
      " Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as ActLimitPrice,"
      "Isnull(a.FBaseprice,0) as Fprice,"
      " Isnull(a.FBaseprice,0)-Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as DiffPrice"
      " From ",
      bill.entry_table, " a inner join ", bill.head_table,
      " e"
      " on a.Fid=e.Fid Left Outer Join T_ItemPrice b"
      " On a.FitemID=b.FItemID and a.FUnitID=b.FUnitID Inner Join t_icItem c"
      " On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID"
      " Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid"
      " Where Isnull(a.FBaseprice, 0)>=0 and Isnull(a.FBaseprice, 0) < Isnull(b.FXSLimitPrice, "
      "0) * Isnull(f.FCoefficient, 1) "
      " And Isnull(b.FXSLimitPrice, 0) * Isnull(f.FCoefficient, 1) >0"
      " And a.FID=",
      bill.bill_id, " order by a.Findex");
}

// The derived table b has no column FBasePrice, so the database rejects the statement and the
// average cost is never enforced on a bill. Kept so.
std::string SalesBillByAverageCost(const BillPrices& bill) {
  return Cat(
      "Select a.Findex, c.Fname,b.FPrice*a.FCoefficient as LimitPrice ,"
      " Isnull(f.FCoefficient,1) as FCoefficient,"
      " b.FPrice*a.FCoefficient*Isnull(f.FCoefficient,1) as ActLimitPrice,"
      "Isnull(a.FBaseprice,0) as Fprice,"
      "  Isnull(a.FBaseprice,0)-b.FPrice*a.FCoefficient*Isnull(f.FCoefficient,1) as DiffPrice"
      " From ",
      bill.entry_table, " a inner join ", bill.head_table,
      " e"
      " on a.Fid=e.Fid Inner Join (select aa.FItemID,case when sum(aa.FQty)=0 then 0 Else "
      "sum(aa.FBal)/sum(aa.FQty) End as FPrice from T_CC_Inventory aa inner join t_stock bb on "
      "aa.FStockID=bb.FItemID where bb.FTypeID<>502 group by aa.FItemID) b"
      " On a.FitemID=b.FItemID Inner Join t_icItem c"
      " On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID"
      " Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid"
      " Where Isnull(a.FBaseprice, 0)>=0 and Isnull(a.FBaseprice, 0) < Isnull(b.FBasePrice, "
      "0)*a.FCoefficient * Isnull(f.FCoefficient, 1) "
      " And b.FBasePrice*Isnull(f.FCoefficient,1) >0"
      " And a.FID=",
      bill.bill_id, " order by a.Findex");
}

// The shown price and the condition use a.Fprice, the difference a.FBaseprice: as stored.
std::string SalesBillByLatestPrice(const BillPrices& bill) {
  return Cat(
      "Select a.Findex, c.Fname,Isnull(b.FLatestInPrice,0) as LimitPrice ,"
      " Isnull(f.FCoefficient,1) as FCoefficient,"
      " Isnull(b.FLatestInPrice,0)*Isnull(f.FCoefficient,1) as ActLimitPrice,"
      "Isnull(a.Fprice,0) as Fprice,"
      " Isnull(a.FBaseprice,0)-Isnull(b.FLatestInPrice,0)*Isnull(f.FCoefficient,1) as DiffPrice"
      " From ",
      bill.entry_table, " a inner join ", bill.head_table,
      " e"
      " on a.Fid=e.Fid Left Outer Join T_ItemPrice b"
      " On a.FitemID=b.FItemID and a.FUnitID=b.FUnitID Inner Join t_icItem c"
      " On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID"
      " Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid"
      " Where Isnull(a.Fprice, 0)>=0 and Isnull(a.Fprice, 0) < Isnull(b.FLatestInPrice, 0) * "
      "Isnull(f.FCoefficient, 1) "
      " And Isnull(b.FLatestInPrice, 0) * Isnull(f.FCoefficient, 1) >0"
      " And a.FID=",
      bill.bill_id, " order by a.Findex");
}

// Here only the condition uses a.Fprice: as stored.
std::string SalesBillByLowestPrice(const BillPrices& bill) {
  return Cat(
      "Select a.Findex, c.Fname,Isnull(b.FLowestInPrice,0) as LimitPrice ,"
      " Isnull(f.FCoefficient,1) as FCoefficient,"
      " Isnull(b.FLowestInPrice,0)*Isnull(f.FCoefficient,1) as ActLimitPrice,"
      "Isnull(a.FBaseprice,0) as Fprice,"
      " Isnull(a.FBaseprice,0)-Isnull(b.FLowestInPrice,0)*Isnull(f.FCoefficient,1) as DiffPrice"
      " From ",
      bill.entry_table, " a inner join ", bill.head_table,
      " e"
      " on a.Fid=e.Fid Left Outer Join T_ItemPrice b"
      " On a.FitemID=b.FItemID and a.FUnitID=b.FUnitID Inner Join t_icItem c"
      " On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID"
      " Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid"
      " Where Isnull(a.Fprice, 0)>=0 and Isnull(a.Fprice, 0) < Isnull(b.FLowestInPrice, 0) * "
      "Isnull(f.FCoefficient, 1) "
      " And Isnull(b.FLowestInPrice, 0) * Isnull(f.FCoefficient, 1) >0"
      " And a.FID=",
      bill.bill_id, " order by a.Findex");
}

std::string SalesBill(LimitSource source, const BillPrices& bill) {
  switch (source) {
    case LimitSource::kSalesLimit:
      return SalesBillBySalesLimit(bill);
    case LimitSource::kAverageCost:
      return SalesBillByAverageCost(bill);
    case LimitSource::kLatestPrice:
      return SalesBillByLatestPrice(bill);
    case LimitSource::kLowestPrice:
      return SalesBillByLowestPrice(bill);
  }
  return "";
}

std::string PurchaseBill(const BillPrices& bill) {
  return Cat(
      "Select  a.Findex,c.Fname, b.FCGLimitPrice as LimitPrice,1 as FCoefficient,"
      " b.FCGLimitPrice*1 as ActLimitPrice,IsNull(a.FBaseprice, 0) as FPrice,"
      " IsNull(a.FBaseprice, 0) - Isnull(b.FCGLimitPrice,0) as DiffPrice From ",
      bill.entry_table,
      " a Left Outer Join T_ItemPrice b On a.FitemID=b.FItemID and a.FUnitID=b.FUnitID "
      "Inner Join t_icItem c On a.FitemID=c.FItemID "
      " Where IsNull(a.FBaseprice, 0) >  Isnull(b.FCGLimitPrice,0) And "
      "Isnull(b.FCGLimitPrice,0)>0 "
      " And a.FID=",
      bill.bill_id, " order by a.Findex");
}

}  // namespace

const PriceQueries kSteelPriceQueries = {SalesLine, PurchaseLine, SalesBill, PurchaseBill};

}  // namespace tavcc
