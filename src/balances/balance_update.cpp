#include "balances/balance_update.h"

#include "foundation/error.h"
#include "foundation/text.h"
#include "foundation/trap.h"

namespace tavcc {

namespace {

// The dynamic statement, put together by the batch itself so that its stock condition and its stock
// column follow the costing setting: flags are moved back to the bill (an earlier day, or the same
// day and a smaller bill id), rows that a flag covers are dropped (here also the flag's own bill:
// "<=", deliberately unlike "<"), and the rest become new flags.
constexpr std::string_view kFlagUpdate =
    "Update i Set i.FCalDate=t.FDate From t_ICItem i Inner Join #TempFlag t On "
    "i.FItemID=t.FItemID\r\n"
    "Where DateDiff(Day,i.FCalDate,t.FDate)<0 \r\n"
    "Declare @Type int,@Str varchar(2000) \r\n"
    "Select  @Type=FValue From t_Systemprofile Where FCategory='IC' And FKey ='CalculateType'\r\n"
    "Set @Str='Update f Set f.FLastDate=t.FDate,f.FID=t.FID ' + char(13) \r\n"
    "Set @Str=@Str+ ' From ICCalFlag f Inner Join #tempFlag t On f.FItemID=t.FItemID And "
    "f.FBatchNo=t.FBatchNo'  \r\n"
    "if @Type=1 Set @Str=@Str+ ' And f.FStockID=t.FStockID ' + char(13) \r\n"
    "Set @Str=@Str+ ' Where DateDiff(D,t.FDate,f.FLastDate)>0 Or t.FID<f.FID And "
    "DateDiff(D,t.FDate,f.FLastDate)=0' + char(13) \r\n"
    "Set @Str=@Str+ ' Delete t From #tempFlag t Inner Join ICCalFlag f ON f.FItemID=t.FItemID "
    "And f.FBatchNo=t.FBatchNo  ' \r\n"
    "if @Type=1 Set @Str=@Str+ ' And f.FStockID=t.FStockID ' + char(13) \r\n"
    "Set @Str=@Str+ ' Where DateDiff(D,t.FDate,f.FLastDate)>0 Or t.FID<=f.FID And "
    "DateDiff(D,t.FDate,f.FLastDate)=0' + char(13) \r\n"
    "Set @Str=@Str+ ' Insert Into ICCalFlag(FStockID,FItemID,FTrack,FBatchNo,FlastDate,FID) ' + "
    "char(13) \r\n"
    "if @Type=1 Set @Str=@Str+ ' Select Distinct "
    "t.FStockID,t.FItemID,i.FTrack,t.FBatchNo,t.FDate,t.FID' + char(13) \r\n"
    "Else Set @Str=@Str+ ' Select Distinct 0,t.FItemID,i.FTrack,t.FBatchNo,t.FDate,t.FID' + "
    "char(13) \r\n"
    "Set @Str=@Str+ ' From #tempFlag t Inner Join t_ICItem i On t.FItemID=i.FItemID' + char(13) "
    "\r\n"
    "Exec(@str) \r\n"
    "Drop Table #tempFlag ";

// Receiving and issuing stock of stock bills, products and components of assembly bills.
std::string UpdateBatch(int32_t bill_id) {
  return Cat(
      "If Object_ID('tempdb.dbo.#tempFlag') Is Not Null Drop Table #tempFlag \r\n"
      "Select * Into #tempFlag  From (\r\n"
      "     Select v.FDate,u.FDCStockID FStockID,u.FItemID,u.FBatchNo,v.FID \r\n"
      "     From t_CC_StockBill v Inner Join t_CC_StockBillEntry u On v.FID=u.FID \r\n"
      "     Inner Join t_Stock s On s.FItemID=u.FDCStockID And s.FTypeID<>502 \r\n"
      "     Where v.FID=",
      bill_id,
      "\r\n"
      "\r\n     Union All \r\n"
      "     Select v.FDate,u.FSCStockID FStockID,u.FItemID,u.FBatchNo,v.FID \r\n"
      "     From t_CC_StockBill v Inner Join t_CC_StockBillEntry u On v.FID=u.FID \r\n"
      "     Inner Join t_Stock s On s.FItemID=u.FSCStockID And s.FTypeID<>502 \r\n"
      "     Where v.FID=",
      bill_id,
      "\r\n"
      "\r\n     Union All \r\n"
      "     Select v.FDate,u.FDCStockID FStockID,u.FItemID,u.FBatchNo,v.FID \r\n"
      "     From t_CC_ZZCX v Inner Join t_CC_ZZCX_Entry u On v.FID=u.FID \r\n"
      "     Inner Join t_Stock s On s.FItemID=u.FDCStockID And s.FTypeID<>502 \r\n"
      "     Where v.FID=",
      bill_id,
      "\r\n"
      "\r\n     Union All \r\n"
      "     Select v.FDate,u.FSCStockID FStockID,u.FItemID,u.FBatchNo,v.FID \r\n"
      "     From t_CC_ZZCX v Inner Join t_CC_ZZCX_Entry2 u On v.FID=u.FID \r\n"
      "     Inner Join t_Stock s On s.FItemID=u.FSCStockID And s.FTypeID<>502 \r\n"
      "     Where v.FID=",
      bill_id, " ) As a \r\n", kFlagUpdate);
}

}  // namespace

std::string UpdateBal(PlugIn& self, std::string_view sDsn, int32_t, int32_t, int32_t lBillID,
                      int32_t, bool) {
  return Trap(
      [&]() -> std::string {
        self.InitObjects(sDsn);
        self.db_context().ReadyFirst();
        const ConnectionPtr cn = self.db_context().GetConnection();
        cn->Execute(UpdateBatch(lBillID));
        // What the server reported without failing the call fails it here.
        const auto errors = cn->Errors();
        if (!errors.empty()) {
          throw AutomationError(errors[0].number, errors[0].source, errors[0].description);
        }
        self.db_context().ReadySecond();
        return "";
      },
      [](const AutomationError& error) {
        return error.description().empty() ? Cat("Number:", error.number()) : error.description();
      });
}

bool ReBuildBal(PlugIn& self, std::string_view sDsn, std::string& sInfo, ObjectPtr&) {
  return Trap(
      [&] {
        self.InitObjects(sDsn);
        self.db_context().ReadyFirst();
        self.db_context().ReadySecond();
        sInfo = "重建余额表完成。";
        return true;
      },
      [&](const AutomationError& error) {
        sInfo = Cat("重建余额表过程发生错误，错误描述：", error.description());
        return false;
      });
}

}  // namespace tavcc
