#include "billtypes/bill_gates.h"

#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

constexpr Gate<HeadGates> kBeforeAudit[] = {
    {"head: exists", &HeadGates::ExistsForAudit},
    {"head: state", &HeadGates::IsNotAudited},
    {"head: voucher", &HeadGates::HasNoVoucherForAudit},
};
constexpr Gate<HeadGates> kBeforeUnAudit[] = {
    {"head: exists", &HeadGates::ExistsForUnAudit},
    {"head: state", &HeadGates::IsAudited},
    {"head: voucher", &HeadGates::HasNoVoucherForUnAudit},
};

double Status(const Recordset& head) {
  return NumberOrZero(head.Field("FStatus"));
}
double VoucherID(const Recordset& head) {
  return NumberOrZero(head.Field("FVoucherID"));
}

// Sent where a gate is asked on its own, too: by the connection of the context then.
std::string HeadQuery(std::string_view head_table, int32_t bill_id) {
  return Cat("Select FStatus,FVoucherID From ", head_table, " where FID=", bill_id);
}

template <size_t N>
Verdict Check(Connection& connection, std::string_view head_table, int32_t bill_id,
              const Gate<HeadGates> (&gates)[N]) {
  HeadGates run([&] { return connection.Execute(HeadQuery(head_table, bill_id)); });
  return FirstRefusal(run, gates);
}

template <size_t N>
Ladder GatesOf(PlugIn& self, std::string_view head_table, int32_t bill_id, std::string_view method,
               const Gate<HeadGates> (&gates)[N]) {
  const auto make_run = [&self, query = HeadQuery(head_table, bill_id)] {
    return HeadGates([&self, query] { return self.db_context().GetConnection()->Execute(query); });
  };
  return LoneGates(gates, method, make_run, [](HeadGates&) {});
}

}  // namespace

Recordset& HeadGates::Head() {
  if (head_ == nullptr) head_ = read_();
  return *head_;
}

Verdict HeadGates::ExistsForAudit() {
  return Head().AtEnd() ? Refuse("该单据不存在，不能审核！") : Pass();
}

Verdict HeadGates::IsNotAudited() {
  if (Status(Head()) == bill_status::kNotAudited) return Pass();
  return Refuse("该单据已被审核，不能再审核！");
}

Verdict HeadGates::HasNoVoucherForAudit() {
  return VoucherID(Head()) > 0 ? Refuse("该单据已生成凭证，不能审核！") : Pass();
}

Verdict HeadGates::ExistsForUnAudit() {
  return Head().AtEnd() ? Refuse("该单据不存在！") : Pass();
}

Verdict HeadGates::IsAudited() {
  if (Status(Head()) == bill_status::kNotAudited) return Refuse("该单据未审核，不能反审核！");
  if (Status(Head()) == bill_status::kLinked) return Refuse("该单据被其他单据关联，不能反审核！");
  return Pass();
}

Verdict HeadGates::HasNoVoucherForUnAudit() {
  return VoucherID(Head()) > 0 ? Refuse("该单据已生成凭证，不能反审核！") : Pass();
}

Verdict CheckBeforeAudit(Connection& connection, std::string_view head_table, int32_t bill_id) {
  return Check(connection, head_table, bill_id, kBeforeAudit);
}

Verdict CheckBeforeUnAudit(Connection& connection, std::string_view head_table, int32_t bill_id) {
  return Check(connection, head_table, bill_id, kBeforeUnAudit);
}

Ladder GatesBeforeAudit(PlugIn& self, std::string_view head_table, int32_t bill_id,
                        std::string_view method) {
  return GatesOf(self, head_table, bill_id, method, kBeforeAudit);
}

Ladder GatesBeforeUnAudit(PlugIn& self, std::string_view head_table, int32_t bill_id,
                          std::string_view method) {
  return GatesOf(self, head_table, bill_id, method, kBeforeUnAudit);
}

}  // namespace tavcc
