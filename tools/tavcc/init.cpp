// tavcc init: a database with the ERP schema.
#include <fmt/core.h>

#include "language/language.h"
#include "scenario/json.h"
#include "tavcc/command.h"
#include "tavcc/database.h"
#include "tavcc/output.h"

namespace tavcc {

Exit InitCommand(const CommonOptions& common, const InitOptions& options) {
  std::string name = common.db;
  if (const auto server = ServerOf(common)) {
    const auto erp = OpenServer(*server);
    FillServer(*erp, options.sample);
    name = erp->dsn();
  } else {
    if (common.db.empty()) {
      throw CommandError(Say("which database is to be made? give --db FILE or --dsn STRING"));
    }
    MakeDatabase(common.db, options.sample);
  }
  try {
    Print(common.json      ? Show({{"database", name}, {"sample", options.sample}}) + "\n"
          : options.sample ? Say("{} holds a new ERP database with the sample company\n", name)
                           : Say("{} holds a new ERP database\n", name));
  } catch (const CommandError& error) {
    throw CommandError(Say("{}; {} was made", error.what(), name));
  }
  return Exit::kPassed;
}

}  // namespace tavcc
