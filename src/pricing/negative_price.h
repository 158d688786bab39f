// The cost check before an audit: which items would leave stock at no cost, or a negative one?
#pragma once

#include <string_view>

#include "foundation/plug_in.h"

namespace tavcc {

// Lists in `NegVct`, a new vector, one dictionary per item ("FItemID", "FNumber", "FName",
// "FModel") whose last cost is null, zero or negative, among the unaudited bills of `vctBill`; true
// when there is any. The first bill's class decides for all; of the others only those of bill type
// 3001, 3010 or 0 count. Errors reach the host: the database's, and 9 for an empty `vctBill`.
bool CheckNegPrice(PlugIn& self, std::string_view sDsn, Vector& vctBill, VectorPtr& NegVct);

}  // namespace tavcc
