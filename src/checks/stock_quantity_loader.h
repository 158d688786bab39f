// Loading a bill's quantities into #TavTempBill for the stock check: an issuing quantity goes in
// positive, so that it counts against the stock on hand.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/connection.h"
#include "foundation/host.h"

namespace tavcc {

struct BillTables {
  std::string_view head;
  std::string_view entry;
};

// The tables that hold the bills of a class; nothing for a class that has no stock bills. Of an
// assembly and a disassembly, opposite entry tables are looked at in the same direction: what the
// one uses up the other puts back.
std::optional<BillTables> ResolveBillTables(int32_t class_type, int16_t intCheckType);

// Inserts the bill's lines from its tables. Classes that have no lines to check insert nothing.
// When the database refuses, `message` is the text of its errors; otherwise it stays as it is.
// Errors: one that left no trace in the connection's errors.
void LoadBillFromDatabase(Host& host, Connection& connection, const BillTables& tables,
                          int32_t class_type, int32_t bill_id, int16_t intCheckType,
                          std::string& message);

}  // namespace tavcc
