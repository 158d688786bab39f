// The negative-stock guard: would a bill take more out of a stock than lies there?
//
// The host asks WhetherCheckStockNum first, then CheckItemStockNum. `oDict` is the bill's
// dictionary, `intCheckType` the direction (1 audit, -1 un-audit, anything else counts as not
// audit).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/dictionary.h"
#include "foundation/plug_in.h"
#include "foundation/recordset.h"
#include "foundation/vector.h"

namespace tavcc {

// The two questions below for a bill whose keys are known.
bool ChecksStock(int16_t intCheckType, int32_t class_type, int32_t bill_type);
bool MovesStock(int32_t class_type, int32_t bill_type);

// A stub of the interface: always Empty.
Value AllowMinusStockNum(PlugIn& self, std::string_view strConString);

// 1 when the bill is to be checked in this direction, otherwise 0; also 0 after an error.
int16_t WhetherCheckStockNum(PlugIn& self, int16_t intCheckType, Dictionary& oDict);

// 1 when the bill changes stock quantities, otherwise 0; also 0 after an error. The direction is
// not consulted.
int16_t WhetherNeedUpdateStockNum(PlugIn& self, int16_t intCheckType, Dictionary& oDict);

// 1: nothing goes below zero; `rs` is the empty result.
// 2: `rs` holds, detached from the connection, one row for each item, stock and batch that would.
// 0: a class without stock bills. -1: no dictionary, a bill that could not be loaded, an error.
// The reason of 0 and -1 is in `strReturnMsg`, `rs` stays as it was. A message that the caller left
// there counts as one that loading left: -1. Text and vector: with "SAVE" in any letter case and a
// vector, the bill's lines are those of the vector.
int16_t CheckItemStockNum(PlugIn& self, Dictionary* oDict, int16_t intCheckType,
                          std::string_view sDsn, std::string& strReturnMsg, RecordsetPtr& rs,
                          std::string_view OptAboutUnderStock, Vector* vct);

}  // namespace tavcc
