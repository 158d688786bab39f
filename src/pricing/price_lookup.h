// What the host's price fields ask: an item's lowest and its latest known inbound price in a unit.
//
// Both look at opening balances, audited purchase bills, other receipts, assembly products and
// components and, by the costing setting, transfers; 0 when no price is known. Errors reach the
// host: the database's, and 94 for a price that is null.
#pragma once

#include <cstdint>

#include "foundation/plug_in.h"

namespace tavcc {

// The lowest of these prices.
double GetLowPrice(PlugIn& self, Connection& oConn, int32_t lItemID, int32_t lUnitID);

// The latest of these prices. Any dated inbound line counts before the opening balance, however
// old. After an error the work table #DATA stays with the connection.
double GetNewPrice(PlugIn& self, Connection& oConn, int32_t lItemID, int32_t lUnitID);

}  // namespace tavcc
