// The limit price checks: goods sold below their lower limit, goods bought above their upper one.
//
// Two modes. With "Price" in the dictionary one line that is being entered is checked, otherwise
// the whole saved bill. There are two variants of the check, the general one and the one for the
// steel industry, where goods are priced by their base unit; they share their course and differ in
// their queries (price_queries.h).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/plug_in.h"
#include "foundation/verdict.h"

namespace tavcc {

// Whether a bill is subject to price control: 1 it is, 0 it is not. Reads "BillType" and
// "ClassTypeID". For most classes the direction is deliberately not consulted. An error counts as
// 0.
int16_t WhetherNeedCheckPrice(PlugIn& self, std::string_view sDsn, int16_t intCheckType,
                              Dictionary& oDict);

// 1: at least one line offends; 0: none does, or nothing was checked. `rs` gets the result of the
// query whenever one ran; `Cg` is true for a purchase, false for a sale, and stays as it is for any
// other class; the message is written only when a line offends. An error ends the check with the
// result as it stands then, and is reported nowhere. Un-audit (-1) is never checked.
int16_t CheckLimitPrice(PlugIn& self, Dictionary& oDict, int16_t intCheckType,
                        std::string_view sDsn, std::string& strReturnMsg, RecordsetPtr& rs,
                        bool& Cg);
int16_t SteelCheckLimitPrice(PlugIn& self, Dictionary& oDict, int16_t intCheckType,
                             std::string_view sDsn, std::string& strReturnMsg, RecordsetPtr& rs,
                             bool& Cg);

// The two as a gate of another rule: whether to check, then the check.
Verdict LimitPriceGate(PlugIn& self, Dictionary& oDict, int16_t direction, std::string_view sDsn);

}  // namespace tavcc
