#include "tavcc/database.h"

#include <cstdlib>
#include <utility>

#include "foundation/connection_string.h"
#include "foundation/error.h"
#include "foundation/text.h"
#include "host/schema.h"
#include "scenario/json.h"

namespace tavcc {
namespace {

// What other programs take for something else than a file is no name for one.
void RequireFileName(const std::string& name) {
  if (name == ":memory:" || name.starts_with("file:")) {
    throw CommandError("--db " + name + ": must be the name of a file (./" + name +
                       " is one, if it is meant)");
  }
}

constexpr const char* kDsnVariable = "TAVCC_DSN";

constexpr std::string_view kSchemaQuery =
    "SELECT TABLE_NAME FROM INFORMATION_SCHEMA.TABLES WHERE TABLE_NAME = N't_SystemProfile'";

std::string FirstLine(const std::string& text) {
  const std::string line = text.substr(0, text.find_first_of("\r\n"));
  return std::string(Trim(line));
}

std::string ConnectionString(const CommonOptions& options) {
  const int named = !options.db.empty() + !options.dsn.empty() + !options.dsn_file.empty();
  if (named > 1) throw CommandError("give only one of --db, --dsn and --dsn-file");
  if (!options.dsn.empty()) return options.dsn;
  if (!options.dsn_file.empty()) {
    const std::string text = FirstLine(ReadTextFile(options.dsn_file));
    if (text.empty()) throw CommandError(options.dsn_file + ": its first line is empty");
    return text;
  }
  const char* environment = std::getenv(kDsnVariable);
  return named == 0 && environment != nullptr ? environment : "";
}

}  // namespace

std::optional<OdbcOptions> ServerOf(const CommonOptions& options) {
  std::string text = ConnectionString(options);
  if (text.empty()) return std::nullopt;
  return OdbcOptions{std::move(text), options.login_seconds, options.query_seconds};
}

std::unique_ptr<Erp> OpenServer(const OdbcOptions& server) {
  auto erp = std::make_unique<Erp>(
      MaskPassword(server.connection_string), [=](std::string_view) { return OpenOdbc(server); },
      ReopenOdbc);
  erp->connection();
  return erp;
}

std::unique_ptr<Erp> OpenDatabase(const CommonOptions& options) {
  if (const auto server = ServerOf(options)) return OpenServer(*server);
  if (options.db.empty()) throw CommandError("which database? give --db FILE or --dsn STRING");
  return std::make_unique<Erp>(FileOptions(options));
}

sql::OpenOptions FileOptions(const CommonOptions& options) {
  RequireFileName(options.db);
  sql::OpenOptions open;
  open.path = options.db;
  open.create = false;
  open.busy_seconds = options.busy_seconds;
  return open;
}

void FillDatabase(Erp& erp, bool sample) {
  erp.RunScript(SchemaScript());
  erp.RunScript(BaseScript());
  if (sample) erp.RunScript(SampleScript());
}

void FillServer(Erp& erp, bool sample) {
  if (!erp.connection()->Execute(kSchemaQuery)->AtEnd()) {
    throw CommandError("the database holds an ERP schema already; it is left as it is");
  }
  erp.BeginTransaction();
  try {
    FillDatabase(erp, sample);
  } catch (...) {
    try {
      erp.Rollback();
    } catch (const AutomationError&) {
      // The first error is the one to tell; the server undoes what is left open.
    }
    throw;
  }
  erp.Commit();
}

void MakeDatabase(const std::string& file, bool sample) {
  RequireFileName(file);
  const auto memory = sql::Database::Open(sql::OpenOptions{});
  memory->RunScript(SchemaScript());
  memory->RunScript(BaseScript());
  if (sample) memory->RunScript(SampleScript());
  memory->SaveAs(file);
}

}  // namespace tavcc
