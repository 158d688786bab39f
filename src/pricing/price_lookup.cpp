#include "pricing/price_lookup.h"

#include <optional>

#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

// The transfers that count, by the costing setting; with any other setting none does.
enum class Transfers { kOutOf502 = 0, kAll = 1, kNone };

Transfers TransfersThatCount(Host& host) {
  const auto setting = SettingNumber(GetICProfile(host, "CalculateType", int32_t{0}));
  if (setting == 0) return Transfers::kOutOf502;
  return setting == 1 ? Transfers::kAll : Transfers::kNone;
}

// ---- The lowest price --------------------------------------------------------------------------

std::string LowestOf(std::string_view source, int32_t item_id, int32_t unit_id) {
  return Cat("insert into #DATA(FItemID,FUnitID,FPrice)\r\n", source, item_id,
             " and b.FShowUnitID=", unit_id,
             "\r\n"
             "group by b.FItemID,b.FShowUnitID\r\n");
}

std::string LowestTransfer(Transfers transfers, int32_t item_id, int32_t unit_id) {
  switch (transfers) {
    case Transfers::kOutOf502:
      return LowestOf(
          "select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from t_cc_StockbillEntry b inner join\r\n"
          "t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID "
          "inner join t_stock d on b.FSCStockID=d.FItemID \r\n"
          "where FClassTypeID in (1040007) and a.FStatus=1 and a.FBillTypeID=0 and "
          "c.FTypeID<>502 and d.FTypeID=502 and b.FItemID=",
          item_id, unit_id);
    case Transfers::kAll:
      return LowestOf(
          "select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from t_cc_StockbillEntry b inner join\r\n"
          "t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID \r\n"
          "where FClassTypeID in (1040007) and a.FStatus=1 and a.FBillTypeID=0 and b.FItemID=",
          item_id, unit_id);
    case Transfers::kNone:
      break;
  }
  return "";
}

std::string LowestPriceBatch(Transfers transfers, int32_t item_id, int32_t unit_id) {
  // The first insert follows the table's bracket directly: as stored.
  return Cat(
      "Set NoCount On \r\n"
      "Create Table #DATA (FItemID int Null, FUnitID int Null,FPrice decimal(28, 10) null)"
      "insert into #DATA(FItemID,FUnitID,FPrice)\r\n"
      "select a.FItemID,b.FUnitID,MIN(a.FPrice) from  ICInvInitial a\r\n"
      "inner join t_icitem b on a.FItemID=b.FItemID\r\n"
      "inner join t_stock c on a.FStockID=c.FItemID\r\n"
      "where c.FTypeID<>502 and a.FItemID=",
      item_id, " and b.FUnitID=", unit_id,
      "\r\n"
      "group by a.FItemID,b.FUnitID\r\n",
      LowestOf("select b.FItemID,b.FShowUnitID,MIN(b.FPriceDiscount) from t_cc_StockbillEntry b "
               "inner join\r\n"
               "t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID\r\n"
               "where FClassTypeID in (1020002) and a.FStatus=1 and a.FBillTypeID not in "
               "(2012,2031,2032) and c.FTypeID<>502 and b.FItemID=",
               item_id, unit_id),
      LowestOf("select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from t_cc_StockbillEntry b "
               "inner join\r\n"
               "t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID\r\n"
               "where FClassTypeID in (1020003,1040001) and a.FStatus=1 and a.FBillTypeID not in "
               "(2012,2031,2032) and c.FTypeID<>502 and b.FItemID=",
               item_id, unit_id),
      LowestOf("select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from T_CC_ZZCX_Entry b inner join\r\n"
               "T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID\r\n"
               "where FClassTypeID in (1040005) and a.FStatus=1  and c.FTypeID<>502 and "
               "b.FItemID=",  // two blanks: as stored
               item_id, unit_id),
      LowestOf("select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from T_CC_ZZCX_Entry2 b inner "
               "join\r\n"
               "T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FSCStockID=c.FItemID\r\n"
               "where FClassTypeID in (1040006) and a.FStatus=1  and c.FTypeID<>502 and "
               "b.FItemID=",  // two blanks: as stored
               item_id, unit_id),
      LowestTransfer(transfers, item_id, unit_id),
      "select FItemID,FUnitID,MIN(FPrice) as FPrice from #DATA where FItemID=", item_id,
      " and FUnitID=", unit_id,
      " group by FItemID,FUnitID\r\n"
      "Drop table #DATA");
}

// ---- The latest price --------------------------------------------------------------------------

std::string LatestOf(std::string_view source, int32_t item_id, int32_t unit_id) {
  return Cat("insert into #DATA(FItemID,FUnitID,FPrice,FDate)\r\n", source, item_id,
             " and b.FShowUnitID=", unit_id,
             "\r\n"
             "order by a.FSaveDate desc\r\n");
}

std::string LatestTransfer(Transfers transfers, int32_t item_id, int32_t unit_id) {
  switch (transfers) {
    case Transfers::kOutOf502:
      return LatestOf(
          "select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from t_cc_StockbillEntry b "
          "inner join\r\n"
          "t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID "
          "inner join t_stock d on b.FSCStockID=d.FItemID \r\n"
          "where FClassTypeID in (1040007) and a.FStatus=1 and a.FBillTypeID=0 and "
          "c.FTypeID<>502 and d.FTypeID=502 and a.FSaveDate is not null and b.FItemID=",
          item_id, unit_id);
    case Transfers::kAll:
      return LatestOf(
          "select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from t_cc_StockbillEntry b "
          "inner join\r\n"
          "t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID \r\n"
          "where FClassTypeID in (1040007) and a.FStatus=1 and a.FBillTypeID=0 and "
          "a.FSaveDate is not null and b.FItemID=",
          item_id, unit_id);
    case Transfers::kNone:
      break;
  }
  return "";
}

// The assembly sources carry no test of the save date.
std::string LatestPriceBatch(Transfers transfers, int32_t item_id, int32_t unit_id) {
  return Cat(
      "Set NoCount On \r\n"
      "Create Table #DATA (FItemID int Null, FUnitID int Null,FPrice decimal(28, 10) null,"
      "FDate datetime null)",
      LatestOf("select top 1 b.FItemID,b.FShowUnitID,b.FPriceDiscount,a.FSaveDate from "
               "t_cc_StockbillEntry b inner join\r\n"
               "t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID\r\n"
               "where FClassTypeID in (1020002) and a.FStatus=1 and a.FBillTypeID not in "
               "(2012,2031,2032) and c.FTypeID<>502 and a.FSaveDate is not null and b.FItemID=",
               item_id, unit_id),
      LatestOf("select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from "
               "t_cc_StockbillEntry b inner join\r\n"
               "t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID\r\n"
               "where FClassTypeID in (1020003,1040001) and a.FStatus=1 and a.FBillTypeID not in "
               "(2012,2031,2032) and c.FTypeID<>502 and a.FSaveDate is not null and b.FItemID=",
               item_id, unit_id),
      LatestOf("select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from T_CC_ZZCX_Entry b "
               "inner join\r\n"
               "T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID\r\n"
               "where FClassTypeID in (1040005) and a.FStatus=1  and c.FTypeID<>502 and "
               "b.FItemID=",
               item_id, unit_id),
      LatestOf("select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from T_CC_ZZCX_Entry2 b "
               "inner join\r\n"
               "T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FSCStockID=c.FItemID\r\n"
               "where FClassTypeID in (1040006) and a.FStatus=1  and c.FTypeID<>502 and "
               "b.FItemID=",
               item_id, unit_id),
      LatestTransfer(transfers, item_id, unit_id),
      "select top 1 FItemID,FUnitID,FPrice as FPrice from #DATA where FItemID=", item_id,
      " and FUnitID=", unit_id, " order by FDate desc\r\n");
}

std::string OpeningPriceQuery(int32_t item_id, int32_t unit_id) {
  return Cat(
      "select a.FItemID,b.FUnitID,a.FPrice from  ICInvInitial a\r\n"
      "inner join t_icitem b on a.FItemID=b.FItemID\r\n"
      "inner join t_stock c on a.FStockID=c.FItemID\r\n"
      "where c.FTypeID<>502 and a.FItemID=",
      item_id, " and b.FUnitID=", unit_id, "\r\n");
}

// The price of the first row that the statement returns; nothing when it returns none.
std::optional<double> FirstPrice(Connection& cn, const SqlText& sql) {
  const RecordsetPtr rows = cn.Execute(sql);
  if (rows->AtEnd()) return std::nullopt;
  return ToDouble(rows->Field("FPrice"));
}

}  // namespace

double GetLowPrice(PlugIn& self, Connection& oConn, int32_t lItemID, int32_t lUnitID) {
  const Transfers transfers = TransfersThatCount(self.host());
  return FirstPrice(oConn, LowestPriceBatch(transfers, lItemID, lUnitID)).value_or(0);
}

double GetNewPrice(PlugIn& self, Connection& oConn, int32_t lItemID, int32_t lUnitID) {
  const Transfers transfers = TransfersThatCount(self.host());
  auto price = FirstPrice(oConn, LatestPriceBatch(transfers, lItemID, lUnitID));
  if (!price) price = FirstPrice(oConn, OpeningPriceQuery(lItemID, lUnitID));
  oConn.Execute("Drop table #DATA");
  return price.value_or(0);
}

}  // namespace tavcc
