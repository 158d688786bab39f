// tavcc sql: runs a batch and prints the rows of its first result.
#include <iostream>
#include <iterator>

#include "foundation/utf8.h"
#include "tavcc/command.h"
#include "tavcc/database.h"
#include "tavcc/output.h"
#include "tavcc/trace.h"

namespace tavcc {

Exit SqlCommand(const CommonOptions& common, const SqlOptions& options) {
  const auto erp = OpenDatabase(common);
  erp->log().SetObserver(TraceWithoutRows(common));
  const std::string batch = options.batch == "-"
                                ? std::string(std::istreambuf_iterator<char>(std::cin), {})
                                : options.batch;
  if (!IsUtf8(batch)) throw CommandError("the batch is not UTF-8");
  const RecordsetPtr rows = erp->connection()->OpenClientRecordset(batch);
  try {
    if (common.json) {
      Print(Show(rows->IsOpen() ? RowsJson(*rows) : Json::object()) + "\n");
    } else if (rows->IsOpen()) {
      Print(RowsText(*rows));
    }
  } catch (const CommandError& error) {
    throw CommandError(std::string(error.what()) + "; what the batch did is kept");
  }
  return Exit::kPassed;
}

}  // namespace tavcc
