// Rules of an audit that more than one bill class asks for.
#pragma once

#include <string_view>

#include "foundation/plug_in.h"
#include "foundation/verdict.h"

namespace tavcc {

// Maker and auditor must be two people, unless the setting "General"/"SingleMan" is 1. A null maker
// is user 0. Errors: the host's.
Verdict CheckMaker(PlugIn& self, std::string_view sDsn, const Value& biller_id);

// The bill's date must not lie before the current period. Errors: 94 for a null date; those of
// DateInCurrentPeriod.
Verdict CheckPeriod(PlugIn& self, std::string_view sDsn, const Value& bill_date);

}  // namespace tavcc
