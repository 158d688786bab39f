// One bill of a batch: what the driver and the book-keeping know of it.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/bill_kinds.h"
#include "foundation/dictionary.h"

namespace tavcc {

struct AuditedBill {
  Dictionary& dictionary;
  int32_t class_type = 0;
  int32_t bill_id = 0;
  int32_t bill_type = 0;
  std::string head_table;
  std::string bill_no;
  int16_t check_type = 0;  // 1 audits, -1 un-audits

  bool IsUnAudit() const { return check_type == kUnAudit; }
};

// Reads the five keys of a bill's dictionary. Errors: those of the conversions.
AuditedBill ReadBill(Dictionary& dictionary, int16_t check_type);

// The bill's counterparty, a customer or a supplier by the bill's class. Errors: as ReadBill.
int32_t PartnerID(const AuditedBill& bill);

}  // namespace tavcc
