// The current accounting period of the inventory module, named by the settings "IC"/"CurrentYear"
// and "IC"/"CurrentPeriod".
//
// Neither method traps errors: a missing period row, a setting that is no number and a database
// error all reach the caller.
#pragma once

#include <string>
#include <string_view>

#include "foundation/plug_in.h"

namespace tavcc {

// Puts the period's first and last day, as text, into the two arguments, which stay as they were
// passed where the period has no row. Always returns Empty.
Value GetPeriodStartAndEndDate(PlugIn& self, std::string_view strConString, std::string& strBegDate,
                               std::string& strEndDate);

// Whether a bill of this date may still be posted: it does not lie before the current period. Dates
// of later periods deliberately count as inside. Error 13 where the period has no row.
bool DateInCurrentPeriod(PlugIn& self, std::string_view strConString, DateTime dtDate);

}  // namespace tavcc
