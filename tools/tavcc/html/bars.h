// Amounts before and after, as numbers and as bars.
#pragma once

#include "tavcc/changes.h"
#include "tavcc/html/writer.h"

namespace tavcc {

// A table of what changed; where the values are amounts, each has two bars. The bars of a row are
// to one scale, those of two rows are not: pieces and kilograms have no common one.
void WriteChanges(HtmlWriter& html, const ChangeTable& table);

}  // namespace tavcc
