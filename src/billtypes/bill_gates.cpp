#include "billtypes/bill_gates.h"

#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

double Status(const Recordset& head) {
  return NumberOrZero(head.Field("FStatus"));
}
double VoucherID(const Recordset& head) {
  return NumberOrZero(head.Field("FVoucherID"));
}

}  // namespace

Verdict CheckBeforeAudit(Connection& connection, std::string_view head_table, int32_t bill_id) {
  return JudgeAudit(*connection.Execute(
      Cat("Select FStatus,FVoucherID From ", head_table, " where FID=", bill_id)));
}

Verdict CheckBeforeUnAudit(Connection& connection, std::string_view head_table, int32_t bill_id) {
  return JudgeUnAudit(*connection.Execute(
      Cat("Select FStatus,FVoucherID From ", head_table, " where FID=", bill_id)));
}

Verdict JudgeAudit(const Recordset& head) {
  if (head.AtEnd()) return Refuse("该单据不存在，不能审核！");
  if (Status(head) != bill_status::kNotAudited) return Refuse("该单据已被审核，不能再审核！");
  if (VoucherID(head) > 0) return Refuse("该单据已生成凭证，不能审核！");
  return Pass();
}

Verdict JudgeUnAudit(const Recordset& head) {
  if (head.AtEnd()) return Refuse("该单据不存在！");
  if (Status(head) == bill_status::kNotAudited) return Refuse("该单据未审核，不能反审核！");
  if (Status(head) == bill_status::kLinked) return Refuse("该单据被其他单据关联，不能反审核！");
  if (VoucherID(head) > 0) return Refuse("该单据已生成凭证，不能反审核！");
  return Pass();
}

}  // namespace tavcc
