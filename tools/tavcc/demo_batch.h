// The demo's batch audit: the sample company's bills of every kind, audited and un-audited in one
// call each.
#pragma once

#include "host/erp.h"
#include "scenario/json.h"
#include "tavcc/command.h"
#include "tavcc/html/demo_page.h"

namespace tavcc {

// Tells the story on standard output, or adds it to `record` where JSON is asked for; and to
// `page`, where there is one. The database holds the sample company; afterwards its stock,
// balances, quantities and states are what they were. Errors: CommandError when they are not.
void TellBatchAudit(Erp& erp, const CommonOptions& options, Json& record, DemoReport* page);

}  // namespace tavcc
