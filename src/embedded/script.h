// Scripts: batches separated by lines that hold only the word GO, as the server's own tools read
// them. Usable with any database that runs batches.
#pragma once

#include <string_view>
#include <vector>

namespace tavcc::sql {

struct ScriptBatch {
  std::string_view text;  // of the script
  int line = 1;           // on which it starts, from 1
};

// The batches in order, without those that hold blanks only.
std::vector<ScriptBatch> SplitScript(std::string_view script);

}  // namespace tavcc::sql
