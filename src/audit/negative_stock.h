// The negative-stock rule of the batch audit.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "audit/audited_bill.h"
#include "foundation/connection.h"
#include "foundation/plug_in.h"

namespace tavcc {

enum class StockAnswer {
  kEnough,       // or a shortage that the setting allows
  kShort,        // a shortage that it does not
  kShortOfBatch  // a shortage of an item valued by specific identification, never allowed
};

// Loads the bill into the connection's #TavTempBill, which must exist and be empty, and asks which
// of its items would go below zero. A shortage that is allowed adds the items to
// `negative_items`, in the order of the rows. `calculate_type` is the costing setting; the rule as
// it stands does not depend on it.
// Errors: the connection's; a refused load ends with the text of the database's errors.
StockAnswer CheckNegativeStock(PlugIn& self, Connection& connection, const AuditedBill& bill,
                               std::string_view sDsn, bool allow_negative, int16_t calculate_type,
                               std::vector<int32_t>& negative_items);

}  // namespace tavcc
