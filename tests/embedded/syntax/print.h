// The parsed tree as text in brackets: for tests and for looking at what the parser made of a
// batch.
//
//   select top 5 T1.*, FQty*2 as Q from t_Stock T1 with(nolock) where FID=7
//   (select (top 5) T1.* (as Q (* FQty 2)) (from (as T1 t_Stock NOLOCK)) (where (= FID 7)))
//
// Everything of the tree is printed but the lines. Statements stand on lines of their own.
#pragma once

#include <cstdint>
#include <string>

#include "embedded/syntax/ast.h"

namespace tavcc::sql {

enum class PrintSlots : uint8_t {
  kNo,
  kYes,              // "7#0" for the literal 7 with slot 0
  kInsteadOfValues,  // "#0" for it: what texts that share a compiled batch have in common
};

std::string Print(const Batch& batch, PrintSlots slots = PrintSlots::kNo);

}  // namespace tavcc::sql
