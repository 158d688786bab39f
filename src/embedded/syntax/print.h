// The parsed tree as text in brackets: for tests and for looking at what the parser made of a
// batch.
//
//   select top 5 T1.*, FQty*2 as Q from t_Stock T1 with(nolock) where FID=7
//   (select (top 5) T1.* (as Q (* FQty 2)) (from (as T1 t_Stock NOLOCK)) (where (= FID 7)))
//
// Everything of the tree is printed but the lines. Statements stand on lines of their own.
#pragma once

#include <string>

#include "embedded/syntax/ast.h"

namespace tavcc::sql {

enum class PrintSlots : bool { kNo, kYes };  // kYes: "7#0" for the literal with slot 0

std::string Print(const Batch& batch, PrintSlots slots = PrintSlots::kNo);

}  // namespace tavcc::sql
