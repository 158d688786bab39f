// The gates before a bill, and what stopped it.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "tavcc/html/writer.h"
#include "tavcc/ladder_report.h"

namespace tavcc {

// The gates that were asked, each folded with what there is to tell of it; open where it stops the
// bill.
void WriteLadder(HtmlWriter& html, std::span<const Rung> ladder);

// Statements that no gate sent, each folded with the rows that the rule saw; open where it failed.
void WriteSentStatements(HtmlWriter& html, std::span<const LoggedStatement> statements);

// A refusal as its reader needs it: what was said, what the rows say, cause and remedy. Without a
// refusal of the catalogue, the message alone.
struct Why {
  std::string message;
  std::vector<Reason> reasons;
  const Refusal* refusal = nullptr;
};
void WriteWhy(HtmlWriter& html, const Why& why);

// What stops a bill first; null where nothing does.
const Rung* FirstStop(std::span<const Rung> ladder);

}  // namespace tavcc
