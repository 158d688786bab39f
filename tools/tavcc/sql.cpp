// tavcc sql: runs a batch and prints the rows of its first result.
#include <fmt/core.h>

#include <iostream>
#include <iterator>

#include "tavcc/command.h"
#include "tavcc/database.h"
#include "tavcc/output.h"

namespace tavcc {

Exit SqlCommand(const CommonOptions& common, const SqlOptions& options) {
  const auto erp = OpenDatabase(common);
  if (common.trace) erp->log().SetObserver(TraceStatement);
  const std::string batch = options.batch == "-"
                                ? std::string(std::istreambuf_iterator<char>(std::cin), {})
                                : options.batch;
  const RecordsetPtr rows = erp->connection()->OpenClientRecordset(batch);
  if (common.json) {
    fmt::print("{}\n", Show(rows->IsOpen() ? RowsJson(*rows) : Json::object()));
  } else if (rows->IsOpen()) {
    fmt::print("{}", RowsText(*rows));
  }
  return Exit::kPassed;
}

}  // namespace tavcc
