#include "billtypes/delete_hook.h"

#include "billtypes/serial_numbers.h"
#include "foundation/conversions.h"
#include "foundation/error.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

constexpr int32_t kRefusal = -5;

// Two refusals bear the names of another library's components: deliberate, hosts may know them.
constexpr std::string_view kTempConsignUpdate = "TavM_XS_PlugIns.TempConsignUpdate.BeforeDel";
constexpr std::string_view kSaleUpdate = "TavM_XS_PlugIns.SaleUpdate.BeforeDel";

// The bill's head, the setting and the current period in one row.
std::string HeadStatement(std::string_view head_table, int32_t class_id, int32_t bill_id) {
  return Cat(
      "Declare @Same int,@Year int,@Period int,@BegDate DateTime,@EndDate DateTime \r\n"
      "Select @Same=IsNull(FValue,0) From t_systemprofile"
      " Where FCategory='IC' And FKey='EditSelfBill' \r\n"
      "SELECT @Year =CONVERT(INT, FValue) FROM t_SystemProfile"
      " WHERE FCategory = 'IC' AND FKey = 'CurrentYear' \r\n"
      "SELECT @Period = CONVERT(INT, FValue) FROM t_SystemProfile"
      " WHERE FCategory = 'IC' AND FKey = 'CurrentPeriod' \r\n"
      "SELECT @BegDate=CONVERT(DATETIME, FStartDate),@EndDate=CONVERT(DATETIME, FEndDate)"
      " FROM t_PeriodDate WHERE FYear = @Year AND FPeriod = @Period \r\n"
      "Select FBillNo,IsNull(FStatus,0) As FStatus,FDate,FBillerID,@Same As FSelf,"
      "@BegDate As FBegDate,@EndDate As FEndDate From ",
      head_table, " Where FClassTypeID=", class_id, " And FID=", bill_id);
}

// A null on either side is no earlier date.
bool IsEarlier(const Value& date, const Value& than) {
  return !date.IsNull() && !than.IsNull() && ToDate(date) < ToDate(than);
}

}  // namespace

void RefuseDeletion(std::string_view source, std::string_view description) {
  throw AutomationError(kRefusal, std::string(source), std::string(description));
}

bool IsForeignBill(const PlugIn& self, const Value& edit_self_bill, const Value& biller_id) {
  if (NumberOrZero(edit_self_bill) != 1 || biller_id.IsNull()) return false;
  return NumberOrZero(biller_id) != self.user_id();
}

Value RunBeforeDel(PlugIn& self, std::string_view sDsn, int32_t class_id, int32_t bill_id,
                   std::string_view head_table, std::string_view serial_number_source) {
  self.InitObjects(sDsn);
  const ConnectionPtr cn = self.db_context().GetConnection();
  {
    const RecordsetPtr head = cn->Execute(HeadStatement(head_table, class_id, bill_id));
    if (NumberOrZero(head->Field("FStatus")) > 0) {
      RefuseDeletion(kTempConsignUpdate, "单据已经审核,不允许删除。");
    }
    if (IsEarlier(head->Field("FDate"), head->Field("FBegDate"))) {
      RefuseDeletion(kSaleUpdate, "不能删除以前期间的单据。");
    }
    if (IsForeignBill(self, head->Field("FSelf"), head->Field("FBillerID"))) {
      RefuseDeletion(kTempConsignUpdate, "只允许修改自己的单据。");
    }
  }
  if (!CheckSerialNumReuse(*cn, bill_id)) {
    RefuseDeletion(serial_number_source, "该单存在已被其他单据使用的S/N号，不能删除！");
  }
  return int32_t{0};
}

}  // namespace tavcc
