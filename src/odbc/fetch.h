// Reading the rows of a statement's current result.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>

#include "foundation/batch_session.h"
#include "foundation/error.h"
#include "odbc/statement_calls.h"
#include "odbc/text.h"

namespace tavcc::odbc {

struct Fetched {
  int64_t rows = 0;  // that were told
  // Of a value that the port has no form for: nothing of the result was read behind it.
  std::optional<AutomationError> refusal;
};

// Tells the reader of the current result, which has columns, to its end, or until it is
// interrupted; `hear` is called whenever the driver has something to say of a call. Integers are 16
// or 32 bits wide; bigint, decimal and money are decimals, made of the driver's text; dates are
// those of `datetime`; text comes in pieces. Errors: what the reader throws.
Fetched FetchRows(const StatementCalls& calls, Encoding encoding, BatchReader& reader,
                  const std::atomic<bool>& interrupted, const std::function<void()>& hear);

}  // namespace tavcc::odbc
