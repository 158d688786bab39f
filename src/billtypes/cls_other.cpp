#include "billtypes/cls_other.h"

#include "billtypes/delete_hook.h"
#include "billtypes/save_hook.h"
#include "billtypes/saved_bill.h"
#include "billtypes/serial_numbers.h"
#include "foundation/conversions.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

// All but one of the refusals of both classes bear the name of clsOtherIn: deliberate.
constexpr std::string_view kCommonSource = "TavM_CC_PlugIns.clsOtherIn.BeforeDel";

// What the two classes differ in.
struct OtherBill {
  SaveHook save_hook;
  std::string_view serial_number_source;
  // The end of the period statement.
  std::string_view period_query;
};

constexpr OtherBill kOtherIn{
    .save_hook = {.order = SaveOrder::kConnectionThenReady,
                  .failure_source = "TavM_CC_PlugIns.clsOtherIn.AfterSave",
                  .failure_text = "当前资料被保存后扩展处理方法出错:"},
    .serial_number_source = "TavM_CC_PlugIns.clsOtherIn.BeforeDel",
    .period_query =
        "SELECT Convert(DateTime,FStartDate,102),Convert(DateTime,FEndDate) From t_PeriodDate \r\n"
        // Two blanks before the comment: as stored.
        "WHERE FYear = @Year And FPeriod = @Period And @Date>=FStartDate  -- And @Date<FEndDate \r\n"
        "Set NoCount Off ",
};

constexpr OtherBill kOtherOut{
    .save_hook = {.order = SaveOrder::kConnectionThenReady,
                  .failure_source = "TavM_CC_PlugIns.clsOtherOut.AfterSave",
                  .failure_text = "当前资料被保存后扩展处理方法出错："},  // a full-width colon
    .serial_number_source = "TavM_CC_PlugIns.clsOtherOut.BeforeDel",
    .period_query =
        "SELECT Convert(DateTime,FStartDate),Convert(DateTime,FEndDate) From t_PeriodDate \r\n"
        "WHERE FYear = @Year And FPeriod = @Period And @Date>=FStartDate -- And @Date<FEndDate \r\n"
        "Set NoCount Off ",
};

Value AfterSaveOf(const OtherBill& kind, PlugIn& self, std::string_view sDsn,
                  const Dictionary& dctTableInfo, const Dictionary& dctData) {
  return RunAfterSave(self, sDsn, kind.save_hook, [&](Connection& cn) {
    SaveSerialNumData(cn, dctTableInfo, dctData);
    const int32_t customer_id = SavedBill(dctTableInfo, dctData).HeadNumber("FCustID");
    cn.Execute(Cat("update t_Organization set FIntent=0 where FItemID=", customer_id));
  });
}

std::string StatusStatement(int32_t class_id, int32_t bill_id) {
  return Cat("Select IsNull(FStatus,0) From t_CC_StockBill Where FClassTypeID=", class_id,
             " And FID=", bill_id);
}

std::string MakerStatement(int32_t class_id, int32_t bill_id) {
  return Cat(
      "Declare @Same int \r\n"
      "Select @Same=IsNull(FValue,0) From t_systemprofile"
      " Where FCategory='IC' And FKey='EditSelfBill' \r\n"
      "Select @Same,FBillerID From t_CC_StockBill Where FClassTypeID= ",
      class_id, "And FID=", bill_id);  // no blank before "And": as stored
}

// A row when the bill's date is not before the current period. The test of the period's end is
// commented out in the statement itself.
std::string PeriodStatement(int32_t class_id, int32_t bill_id, std::string_view period_query) {
  return Cat(
      "Set NoCount On     Declare @Year int,@Period int,@Date DateTime \r\n"
      "SELECT @Year = CONVERT(INT, FValue) FROM t_SystemProfile"
      " WHERE FCategory = 'IC' AND FKey = 'CurrentYear' \r\n"
      "SELECT @Period = CONVERT(INT, FValue) FROM t_SystemProfile"
      " WHERE FCategory = 'IC' AND FKey = 'CurrentPeriod' \r\n"
      "Select @Date=FDate From t_CC_StockBill Where FClassTypeID=",
      class_id, " And FID=", bill_id, "\r\n", period_query);
}

Value BeforeDelOf(const OtherBill& kind, PlugIn& self, std::string_view sDsn, int32_t class_id,
                  int32_t bill_id) {
  self.InitObjects(sDsn);
  const ConnectionPtr cn = self.db_context().GetConnection();
  if (NumberOrZero(cn->Execute(StatusStatement(class_id, bill_id))->Field(0)) > 0) {
    RefuseDeletion(kCommonSource, "单据已经审核，不能删除。");
  }
  {
    const RecordsetPtr maker = cn->Execute(MakerStatement(class_id, bill_id));
    if (IsForeignBill(self, maker->Field(0), maker->Field(1))) {
      RefuseDeletion(kCommonSource, "之能修改自己的单据。");  // spelt so: as stored
    }
  }
  if (cn->Execute(PeriodStatement(class_id, bill_id, kind.period_query))->AtEnd()) {
    RefuseDeletion(kCommonSource, "不能删除以前前期间的单据。");  // spelt so: as stored
  }
  if (!CheckSerialNumReuse(*cn, bill_id)) {
    RefuseDeletion(kind.serial_number_source, "该单存在已被其他单据使用的S/N号，不能删除！");
  }
  return int32_t{0};
}

}  // namespace

namespace cls_other_in {

Value AfterSave(PlugIn& self, std::string_view sDsn, Dictionary&, Vector&, Dictionary& dctTableInfo,
                Dictionary& dctData, Dictionary&) {
  return AfterSaveOf(kOtherIn, self, sDsn, dctTableInfo, dctData);
}

Value BeforeDel(PlugIn& self, std::string_view sDsn, int32_t nClassID, Dictionary&,
                int32_t nInterID) {
  return BeforeDelOf(kOtherIn, self, sDsn, nClassID, nInterID);
}

}  // namespace cls_other_in

namespace cls_other_out {

Value BeforeDel(PlugIn& self, std::string_view sDsn, int32_t nClassID, Dictionary&,
                int32_t nInterID) {
  return BeforeDelOf(kOtherOut, self, sDsn, nClassID, nInterID);
}

Value AfterSave(PlugIn& self, std::string_view sDsn, Dictionary&, Vector&, Dictionary& dctTableInfo,
                Dictionary& dctData, Dictionary&) {
  return AfterSaveOf(kOtherOut, self, sDsn, dctTableInfo, dctData);
}

}  // namespace cls_other_out

}  // namespace tavcc
