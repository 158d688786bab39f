// Costing after an audit: from which date must an item be recalculated?
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/plug_in.h"

namespace tavcc {

// Moves the costing date of each item of the bill back to the bill's date where that is earlier,
// and keeps the recalculation flags in ICCalFlag. Only the bill id counts; the other arguments are
// accepted and deliberately ignored. The empty text when the update went through, otherwise the
// error's description, or "Number:" and its number when it has none.
std::string UpdateBal(PlugIn& self, std::string_view sDsn, int32_t lClassTypeID,
                      int32_t lBillTypeID, int32_t lBillID, int32_t lCheckType, bool NeedCal);

// The host's command to rebuild the balances: readies the context and reports. True when done;
// after an error false, with its description in `sInfo`. `oEvent` is not used.
bool ReBuildBal(PlugIn& self, std::string_view sDsn, std::string& sInfo, ObjectPtr& oEvent);

}  // namespace tavcc
