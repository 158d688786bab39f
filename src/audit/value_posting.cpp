#include "audit/value_posting.h"

#include "foundation/bill_kinds.h"
#include "foundation/host_services.h"

namespace tavcc {

namespace {

bool MovesValueOnly(const AuditedBill& bill) {
  return bill.class_type == class_type::kPriceAdjustment ||
         IsInArray(bill.bill_type, bill_types::kValueOnly);
}

}  // namespace

std::string PostValue(Host& host, Connection& connection, const AuditedBill& bill) {
  if (!MovesValueOnly(bill)) return "";
  ProcedureParameter parameters[] = {
      {"@ClassTypeID", bill.class_type},
      {"@billTypeID", bill.bill_type},
      {"@FID", bill.bill_id},
      {"@AuditOrUnAddit", int32_t{bill.check_type}},  // the procedure's own spelling
      {"@ErrorMessage", "", true},
  };
  connection.CallProcedure("sp_UpdateInventoryForFLTJ", parameters);
  return host.FieldText(parameters[4].value);
}

}  // namespace tavcc
