// BeforeDel: the hook that the host calls before it deletes a bill. A refusal is error -5, whose
// description is the reason; there is no trap, so that every other error reaches the host as it is.
#pragma once

#include <cstdint>
#include <string_view>

#include "foundation/plug_in.h"

namespace tavcc {

// Refuses a deletion: raises error -5.
[[noreturn]] void RefuseDeletion(std::string_view source, std::string_view description);

// Whether somebody else than the current user made the bill, and the setting "EditSelfBill", as the
// rule's statement read it, lets only the maker touch a bill (1). No setting (null): no such rule.
// A bill without a maker (null) is nobody's: a comparison with null is not true.
bool IsForeignBill(const PlugIn& self, const Value& edit_self_bill, const Value& biller_id);

// BeforeDel of cls_DB and cls_ZZ, over the table that keeps the bill's head. Refuses a bill that is
// audited, dated before the current period (no rule without a period row), foreign, or has a serial
// number that was recorded again later; that last refusal has the source given. Returns 0.
// Errors: 3021 when the bill has no head row; the host's and the database's.
Value RunBeforeDel(PlugIn& self, std::string_view sDsn, int32_t class_id, int32_t bill_id,
                   std::string_view head_table, std::string_view serial_number_source);

}  // namespace tavcc
