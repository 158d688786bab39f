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
    std::string name = options.db;
    if (const auto server = ServerOf(options)) {
      const auto erp = OpenServer(*server);
      FillServer(*erp, sample_);
      name = erp->dsn();
    } else {
      if (options.db.empty()) {
        throw CommandError("which database is to be made? give --db FILE or --dsn STRING");
      }
      MakeDatabase(options.db, sample_);
    }
    if (options.json) {
      fmt::print("{}\n", Show({{"database", name}, {"sample", sample_}}));
    } else {
      fmt::print("{} holds a new ERP database{}\n", name,
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
