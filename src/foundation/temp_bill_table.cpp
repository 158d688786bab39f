#include "foundation/temp_bill_table.h"

#include "foundation/error.h"
#include "foundation/host_services.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

// The line keeps its own FBatchNoIndex: no item has the tracking method -1. The test of method 80
// is switched off in the text itself, deliberately.
std::string InsertStatement(const LineSource& source, int32_t bill_id, int32_t sign,
                            int32_t direction) {
  std::string sql;
  sql.reserve(2048);
  CatTo(sql,
        "INSERT INTO #TavTempBill(FBrNo,FInterID,FEntryID,FTranType,FItemID,FBatchNo,\r\n"
        "FAuxPropID,FStockID,FStockPlaceID,FKFPeriod,FKFDate,FPeriodDate,FQty,FShowQty,FSecQty,"
        "FShowUnitID,Fprice,FBatchNoIndex)\r\n"
        " SELECT '',u1.FID,u1.FEntryID,0 AS FTranType,u1.FItemID,ISNULL(u1.FBatchNo,'') AS "
        "FBatchNo,\r\n"
        " u1.FAuxPropID,ISNULL(u1.",
        source.stock_column,
        ",0) AS FDCStockID,0 AS FDCSPID,u1.FKFPeriod ,\r\n"
        " LEFT(ISNULL(CONVERT(VARCHAR(20),u1.",
        source.shelf_life_column,
        " ,120),'1900-01-01'),10) AS FKFDate,\r\n"
        " LEFT(ISNULL(CONVERT(VARCHAR(20),u1.",
        source.period_column, " ,120),'1900-01-01'),10) AS FPeriodDate,\r\n");
  CatTo(sql, sign, "*u1.", source.quantities.quantity, " AS FQty,", sign, "*u1.",
        source.quantities.shown, " AS FShowQty,", sign, "*u1.", source.quantities.second,
        " AS FSecQty,u1.FShowUnitID AS FShowUnitID,", source.price);
  CatTo(sql, "/u1.FCoefficient,(CASE WHEN /*u3.FTrack = 80*/u3.FTrack = -1 AND ((", direction,
        " = 1 AND ", sign, " = 1) OR (", direction, " = -1 AND ", sign,
        " = -1)) AND (u2.FClassTypeID = 1020002 OR u2.FClassTypeID = 1020003 OR u2.FClassTypeID = "
        "1040001 OR u2.FClassTypeID = 1040003 OR u2.FClassTypeID = 1040005 OR u2.FClassTypeID = "
        "1040006 OR u2.FClassTypeID = 1040007 OR u2.FClassTypeID = 1040008 OR u2.FClassTypeID = "
        "1080001 OR u2.FClassTypeID = 1080002) THEN SUBSTRING(CAST(u1.FID AS varchar) + "
        "'000000000000',0,12) + SUBSTRING(cast(u1.FEntryID AS varchar) + '000000000000000000',0,18)"
        " ELSE u1.FBatchNoIndex END) AS FBatchNoIndex\r\n");
  CatTo(sql, " FROM ", source.entry_table, " u1 Inner Join ", source.head_table,
        " u2 On u1.FID=u2.FID \r\n"
        " Inner Join t_icItem u3 On u1.FItemID=u3.FItemID \r\n"
        " WHERE u1.FID=",
        bill_id);
  return sql;
}

// What the connection's errors say, or nothing when none of them is a real one.
std::string ErrorText(Host& host, const Connection& connection) {
  try {
    CheckADOError(host, connection, true);
    return "";
  } catch (const AutomationError& error) {
    return error.description();
  }
}

}  // namespace

void CreateTempBillTable(Connection& connection) {
  connection.Execute(
      "if   object_id('tempdb.dbo.#TavTempBill')   is   not   null"
      " drop   table   [dbo].[#TavTempBill]");  // three blanks: as stored
  connection.Execute(
      "SET NOCOUNT ON\r\n"
      "CREATE TABLE #TavTempBill\r\n"
      "(FBrNo VARCHAR(10) NOT NULL DEFAULT(''),\r\n"
      " FInterID INT NOT NULL DEFAULT(0),\r\n"
      " FEntryID INT NOT NULL DEFAULT(0),\r\n"
      " FTranType INT NOT NULL DEFAULT(0),\r\n"
      " FItemID INT NOT NULL DEFAULT(0),\r\n"
      " FShowUnitID INT NOT NULL DEFAULT(0),\r\n"
      " FBatchNo NVARCHAR(255) NOT NULL DEFAULT(''),\r\n"
      " FAuxPropID INT NOT NULL DEFAULT(0),\r\n"
      " FStockID INT NOT NULL DEFAULT(0),\r\n"
      " FStockPlaceID INT NOT NULL DEFAULT(0),\r\n"
      " FKFPeriod INT NOT NULL DEFAULT(0),\r\n"
      " FKFDate VARCHAR(20) NOT NULL DEFAULT(''),\r\n"
      " FQty DECIMAL(28,10) NOT NULL DEFAULT(0),\r\n"
      " FShowQty DECIMAL(28,10) NOT NULL DEFAULT(0),\r\n"
      " FSecQty DECIMAL(28,10) NOT NULL DEFAULT(0),\r\n"
      " FPrice DECIMAL(28,10) NOT NULL DEFAULT(0),\r\n"
      " FPeriodDate VARCHAR(20) NOT NULL DEFAULT(''),\r\n"
      " FBatchNoIndex VARCHAR(30) NOT NULL DEFAULT('') \r\n"
      ")\r\n");
}

void EmptyTempBillTable(Connection& connection) {
  connection.Execute("delete from #TavTempBill");
}

bool InsertBillLines(Host& host, Connection& connection, const LineSource& source, int32_t bill_id,
                     int32_t sign, int32_t direction, std::string& message) {
  try {
    connection.Execute(InsertStatement(source, bill_id, sign, direction));
    // What the server reported without failing the statement fails it here.
    CheckADOError(host, connection, true);
    return true;
  } catch (const AutomationError&) {
    std::string text = ErrorText(host, connection);
    if (text.empty()) throw;
    message = std::move(text);
    return false;
  }
}

}  // namespace tavcc
