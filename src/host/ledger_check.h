// The ledger's invariant: the stock on hand is the opening stock plus what the audited bills moved.
//
// The opening stock is the rows of ICInvInitial: whoever puts stock into T_CC_Inventory without a
// bill puts the same rows there.
#pragma once

#include <string>
#include <vector>

#include "foundation/connection.h"
#include "foundation/decimal.h"

namespace tavcc {

// An item in a stock, batch and auxiliary property whose stock on hand is not what it should be.
struct LedgerDifference {
  int32_t item_id = 0;
  std::string item_number, item_name;  // empty when there is no such item
  int32_t stock_id = 0;
  std::string stock_name;  // empty when there is no such stock
  std::string batch;
  int32_t aux_prop_id = 0;
  Decimal expected_quantity, actual_quantity;
  Decimal expected_value, actual_value;
};

// Compares, by item, stock, batch and auxiliary property, the quantities and values of
// T_CC_Inventory with those of the opening rows and of the lines of all audited bills (FStatus
// above 0), each bill's lines valued and rounded as posting does. Returns what differs, by item
// number; empty when the ledger holds. Only reads, but for a temporary table of its own.
//
// Shelf life is not compared: posting may rewrite it. A bill that moves value alone and was audited
// while its stock row was missing moved nothing, and is reported.
std::vector<LedgerDifference> CheckLedger(Connection& connection);

// A bill whose state and whose lines in the stock do not go together.
struct LedgerCause {
  std::string bill_no;
  int32_t class_type_id = 0;
  int32_t bill_id = 0;
  // True when it is audited and its lines are not in the stock; false when it is not audited and
  // they are.
  bool audited = false;
};

// The bills that account for differences that CheckLedger returned, where exactly what one or a few
// bills post is too much or too little and no other few would account for it; by class and id.
// Only reads, but for a temporary table of its own.
std::vector<LedgerCause> ExplainLedger(Connection& connection,
                                       const std::vector<LedgerDifference>& differences);

}  // namespace tavcc
