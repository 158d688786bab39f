#include "checks/stock_quantity_query.h"

#include <string>

#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

std::string_view ShownColumns(bool unaudited) {
  if (unaudited) {
    return " (ISNULL(STOCK.STOCKSUMQTY,0)-ISNULL(TT1.SUMQTY,0)) AS STOCKQTY, "
           "(ISNULL(STOCK.STOCKSUMQTY,0)-ISNULL(TT1.SUMQTY,0))/N1.FCoefficient AS STOCKSHOWQTY,\r\n"
           " (ISNULL(STOCK.STOCKSUMQTY,0)-ISNULL(T1.SUMQTY,0)-ISNULL(TT1.SUMQTY,0)) AS DIFFQTY,"
           "T1.SUMQTY,T1.SUMSHOWQTY,Y1.FNUMBER AS AUXNUMBER,Y1.FNAME AS AUXNAME,T1.*";
  }
  return " ISNULL(STOCK.STOCKSUMQTY,0) AS STOCKQTY,"
         "ISNULL(STOCK.STOCKSUMQTY,0)/N1.FCoefficient AS STOCKSHOWQTY,\r\n"
         " (ISNULL(STOCK.STOCKSUMQTY,0)-ISNULL(T1.SUMQTY,0)) AS DIFFQTY,"
         "T1.SUMQTY,T1.SUMSHOWQTY,Y1.FNUMBER AS AUXNUMBER,Y1.FNAME AS AUXNAME,T1.*";
}

// The blanks of the pieces are as stored: two in "t_ICItem  on", three before "(FbillTypeID".
constexpr std::string_view kUnauditedIssues =
    " LEFT JOIN\r\n"
    " (SELECT FITEMID,FUnitID,FStockID,FAUXPROPID,FBATCHNO,FKFPeriod,FKFDATE,FPeriodDate,"
    "ISNULL(SUM(FQTY),0) AS SUMQTY,0 AS SUMSHOWQTY \r\n"
    " FROM vw_cc_Send_audit where fstatus = 0 and fid not in (select FInterID from #TavTempBill ) "
    "\r\n"
    " and ( \r\n"
    "   (FbillTypeID IN (3010, 3001, 3022) OR FClassTypeID IN (1040002, 1040004, 1040007, 1080001, "
    "1080002)) or  \r\n"
    "   (FClassTypeID IN (1040005, 1040006)) or  \r\n"
    " (FClassTypeID = 1030002 and FbillTypeID in(3010)) \r\n"
    " ) \r\n"
    " GROUP BY FITEMID,FUnitID,FStockID,FAUXPROPID,FBATCHNO,FKFPeriod,FKFDATE,FPeriodDate) TT1\r\n"
    " ON T1.FITEMID=TT1.FITEMID AND T1.FSTOCKID=ISNULL(TT1.FStockID,0) AND "
    "T1.FAUXPROPID=ISNULL(TT1.FAUXPROPID,0)\r\n"
    " AND T1.FBATCHNO=ISNULL(TT1.FBATCHNO,'') AND T1.FKFPeriod=ISNULL(TT1.FKFPeriod,0) AND "
    "T1.FKFDATE=ISNULL(TT1.FKFDATE, '1900-01-01') AND T1.FPeriodDate=ISNULL(TT1.FPeriodDate, "
    "'1900-01-01')\r\n"
    " LEFT OUTER JOIN T_STOCK SS1 ON TT1.FStockID=SS1.FITEMID\r\n"
    " LEFT OUTER JOIN T_ICITEM MM1 ON TT1.FITEMID=MM1.FITEMID\r\n"
    " LEFT OUTER JOIN t_auxItem YY1 ON TT1.FAUXPROPID=YY1.FITEMID\r\n"
    " LEFT JOIN VW_UNIT NN1 ON TT1.FITEMID=NN1.FSRCITEMID AND TT1.FUnitID=NN1.FItemID\r\n";

std::string_view Filter(bool unaudited) {
  if (unaudited) {
    return " WHERE (ISNULL(STOCK.STOCKSUMQTY,0)-ISNULL(T1.SUMQTY,0)-ISNULL(TT1.SUMQTY,0))<0";
  }
  return " WHERE ISNULL(STOCK.STOCKSUMQTY,0)-ISNULL(T1.SUMQTY,0)<0";
}

// The balance of an item of method 78 without batches is summed over all batch numbers.
std::string NegativeStockStatement(bool unaudited) {
  std::string sql;
  sql.reserve(4096);
  CatTo(sql, "SELECT M1.FNUMBER,M1.FNAME,M1.FMODEL,M1.Ftrack,S1.FNAME AS STOCKNAME,\r\n",
        ShownColumns(unaudited),
        "\r\n"
        " From \r\n"
        "(SELECT t.FITEMID,t.FSTOCKID,t.FAUXPROPID,t.FBATCHNO,t.FKFPeriod,t.FKFDATE,t.FPeriodDate,"
        "sum(FQTY)"
        " AS STOCKSUMQTY from ( select  t.FITEMID,t.FSTOCKID,t.FAUXPROPID,FBATCHNO= (case when "
        "t_ICItem.FTrack = 78 AND dbo.t_ICItem.FISBatchManager = 0 then '' else t.FBATCHNO END),"
        " t.FKFPeriod,t.FKFDATE,t.FPeriodDate,ISNULL(t.FQTY,0) as FQTY"
        " from T_CC_Inventory t inner join t_ICItem  on t.FItemID=t_ICItem.FItemID )"
        " t GROUP BY t.FITEMID,t.FSTOCKID,t.FAUXPROPID,t.FBATCHNO,t.FKFPeriod,t.FKFDATE,"
        "t.FPeriodDate"
        " ) STOCK \r\n"
        " RIGHT OUTER JOIN\r\n"
        " (SELECT FITEMID,FShowUnitID,FStockID,FAUXPROPID,FBATCHNO,FKFPeriod,FKFDATE,FPeriodDate,"
        "ISNULL(SUM(FQTY),0) AS SUMQTY,ISNULL(SUM(FSHOWQTY),0) AS SUMSHOWQTY FROM #TavTempBill\r\n"
        " GROUP BY FITEMID,FShowUnitID,FStockID,FAUXPROPID,FBATCHNO,FKFPeriod,FKFDATE,FPeriodDate) "
        "T1\r\n"
        " ON STOCK.FITEMID=T1.FITEMID AND STOCK.FSTOCKID=T1.FStockID AND "
        "STOCK.FAUXPROPID=T1.FAUXPROPID\r\n"
        " AND STOCK.FBATCHNO=T1.FBATCHNO AND STOCK.FKFPeriod=T1.FKFPeriod AND "
        "STOCK.FKFDATE=T1.FKFDATE AND STOCK.FPeriodDate=T1.FPeriodDate\r\n"
        " LEFT OUTER JOIN T_STOCK S1 ON T1.FStockID=S1.FITEMID\r\n"
        " LEFT OUTER JOIN T_ICITEM M1 ON T1.FITEMID=M1.FITEMID\r\n"
        " LEFT OUTER JOIN t_auxItem Y1 ON T1.FAUXPROPID=Y1.FITEMID\r\n"
        " LEFT JOIN VW_UNIT N1 ON T1.FITEMID=N1.FSRCITEMID AND T1.FShowUnitID=N1.FItemID\r\n",
        unaudited ? kUnauditedIssues : "", Filter(unaudited), "\r\n");
  return sql;
}

}  // namespace

bool CountsUnauditedIssues(Host& host, std::string_view sDsn) {
  return LongOrZero(GetProfile(host, sDsn, "StockQtyIncludeUnCheck", "IC")) == 1;
}

RecordsetPtr QueryNegativeStock(Connection& connection, bool count_unaudited_issues) {
  return connection.Execute(NegativeStockStatement(count_unaudited_issues));
}

}  // namespace tavcc
