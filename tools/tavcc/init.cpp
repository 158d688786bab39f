// tavcc init: a database with the ERP schema.
#include <fmt/core.h>

#include "scenario/json.h"
#include "tavcc/command.h"
#include "tavcc/database.h"

namespace tavcc {
namespace {

class InitCommand final : public Command {
 public:
  void Describe(CLI::App& app) override {
    app.add_flag("--sample", sample_, "With the sample company and its bills");
  }

  Exit Run(const CommonOptions& options) override {
    if (options.db.empty()) throw CommandError("which file is to be made? give --db FILE");
    MakeDatabase(options.db, sample_);
    if (options.json) {
      fmt::print("{}\n", Show({{"database", options.db}, {"sample", sample_}}));
    } else {
      fmt::print("{} holds a new ERP database{}\n", options.db,
                 sample_ ? " with the sample company" : "");
    }
    return Exit::kPassed;
  }

 private:
  bool sample_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeInit() {
  return std::make_unique<InitCommand>();
}

}  // namespace tavcc
