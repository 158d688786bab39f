// What the credit check and the overdue check read from a bill: each value only where the
// dictionary holds it, 0 otherwise.
#pragma once

#include <cstdint>

#include "foundation/dictionary.h"

namespace tavcc {

struct PartnerBill {
  int32_t class_type = 0;
  int32_t bill_type = 0;  // "BillTypeID", or "BillType" where that is absent
  int32_t partner_id = 0;
  double amount = 0;  // with 15 significant digits, as automation reads it
};

// Errors: those of the conversions.
PartnerBill ReadPartnerBill(const Dictionary& oDict);

}  // namespace tavcc
