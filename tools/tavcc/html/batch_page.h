// A batch of bills as a page: tavcc audit and unaudit, and a part of the demo's.
#pragma once

#include <string>

#include "tavcc/batch_report.h"
#include "tavcc/html/writer.h"

namespace tavcc {

std::string BatchPage(const BatchReport& report);

// The same as a part of a page, with headings of a level from 1 to 5 and of the one below. `anchor`
// begins what the bills are linked by.
void WriteBatch(HtmlWriter& html, const BatchReport& report, std::string_view anchor, int level);

}  // namespace tavcc
