// What the credit check and the overdue check have in common.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "foundation/dictionary.h"
#include "foundation/error.h"
#include "foundation/trap.h"
#include "foundation/verdict.h"

namespace tavcc {

// What they read from a bill: each value only where the dictionary holds it, 0 otherwise.
struct PartnerBill {
  int32_t class_type = 0;
  int32_t bill_type = 0;  // "BillTypeID", or "BillType" where that is absent
  int32_t partner_id = 0;
  double amount = 0;  // with 15 significant digits, as automation reads it
};

// Errors: those of the conversions.
PartnerBill ReadPartnerBill(const Dictionary& oDict);

// A check as a public method: 0 where it passes; 1 where it refuses, with its message; -1 where it
// fails, with the error's description.
template <class Check>
int16_t AnswerPartnerCheck(std::string& strReturnMsg, Check&& check) {
  return Trap(
      [&]() -> int16_t {
        Verdict verdict = check();
        if (verdict.passed) return 0;
        strReturnMsg = std::move(verdict.message);
        return 1;
      },
      [&](const AutomationError& error) -> int16_t {
        strReturnMsg = error.description();
        return -1;
      });
}

}  // namespace tavcc
