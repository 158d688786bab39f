// Every gate before the audit or the un-audit of a bill, each to be asked on its own.
#pragma once

#include <cstdint>
#include <string_view>

#include "foundation/dictionary.h"
#include "foundation/ladder.h"
#include "foundation/plug_in.h"

namespace tavcc {

struct BillLadder {
  Ladder batch;  // what the batch audit asks, in its order: any of them refuses the bill there
  Ladder host;   // what a host asks beside it
  Ladder own;    // what the class of the bill asks where it is audited alone
};

// `bill` is the bill's dictionary as a batch audit takes it, `direction` 1 to audit and -1 to
// un-audit. `self`, tied to the database `sDsn` when a gate is asked, must outlive the result.
// Errors: those of the conversions for the bill's keys.
BillLadder LadderOf(PlugIn& self, const DictionaryPtr& bill, int16_t direction,
                    std::string_view sDsn);

}  // namespace tavcc
