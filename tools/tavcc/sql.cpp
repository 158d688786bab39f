// tavcc sql: runs a batch and prints the rows of its first result.
#include <fmt/core.h>

#include <iostream>
#include <iterator>

#include "tavcc/command.h"
#include "tavcc/database.h"
#include "tavcc/output.h"

namespace tavcc {
namespace {

class SqlCommand final : public Command {
 public:
  void Describe(CLI::App& app) override {
    app.add_option("BATCH", batch_, "The batch; \"-\" reads it from standard input")->required();
  }

  Exit Run(const CommonOptions& options) override {
    const auto erp = OpenDatabase(options);
    if (options.trace) erp->log().SetObserver(TraceStatement);
    if (batch_ == "-") batch_.assign(std::istreambuf_iterator<char>(std::cin), {});
    const RecordsetPtr rows = erp->connection()->OpenClientRecordset(batch_);
    if (options.json) {
      fmt::print("{}\n", Show(rows->IsOpen() ? RowsJson(*rows) : Json::object()));
    } else if (rows->IsOpen()) {
      fmt::print("{}", RowsText(*rows));
    }
    return Exit::kPassed;
  }

 private:
  std::string batch_;
};

}  // namespace

std::unique_ptr<Command> MakeSql() {
  return std::make_unique<SqlCommand>();
}

}  // namespace tavcc
