// The ledger of serial numbers, t_SerialNumList: one record per serial number and bill, with the
// stock in which it lies and whether the bill brought it in (1) or took it out (0).
//
// A row of a bill lists its serial numbers as "number,note|number,note|…". A piece without a comma
// records nothing; what follows a second comma is ignored.
#pragma once

#include <cstdint>

#include "foundation/connection.h"
#include "foundation/dictionary.h"

namespace tavcc {

// Brings the records of a saved bill in line with its rows: the bill's records are marked, each
// serial number on its rows is inserted or takes its mark off again, and the records that are still
// marked go. Whose serial numbers are kept, at which stock and in which direction, depends on the
// class type and, for some, the bill type. True.
// Errors: any, under its own number and text and with the source "SaveSerialNumData"; statements
// already executed stay.
bool SaveSerialNumData(Connection& cn, const Dictionary& dctTableInfo, const Dictionary& dctData);

// Whether no serial number of the bill was recorded again later, so that the bill may go. False
// also after an error.
bool CheckSerialNumReuse(Connection& cn, int32_t bill_id);

}  // namespace tavcc
