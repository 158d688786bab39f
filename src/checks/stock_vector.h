// Loading a bill that is only being saved: its lines come from the host, not from the database.
#pragma once

#include <cstdint>

#include "foundation/connection.h"
#include "foundation/vector.h"

namespace tavcc {

// Inserts the lines of `entries` (dictionaries, from 1 on) into #TavTempBill, by way of
// #TavTempBill0622: for a source warehouse the quantity as it stands, for a destination warehouse
// the quantity times the class's sign. Classes whose saving needs no check insert nothing.
// Errors: the connection's; 13 or 91 for an element that is no dictionary; those of the
// conversions; 11 for a coefficient of 0.
void LoadBillFromVector(Connection& connection, int32_t class_type, int32_t bill_id,
                        const Vector& entries);

}  // namespace tavcc
