#include "tavcc/database.h"

#include <fmt/core.h>

#include <charconv>
#include <system_error>
#include <utility>
#include <vector>

#include "audit/class_names.h"
#include "foundation/bill_kinds.h"
#include "foundation/connection_string.h"
#include "foundation/error.h"
#include "foundation/text.h"
#include "host/schema.h"
#include "language/language.h"
#include "scenario/json.h"
#include "tavcc/platform/process.h"

namespace tavcc {
namespace {

// What other programs take for something else than a file is no name for one.
void RequireFileName(const std::string& name) {
  if (name == ":memory:" || name.starts_with("file:")) {
    throw CommandError(
        Say("--db {0}: must be the name of a file (./{0} is one, if it is meant)", name));
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
  if (named > 1) throw CommandError(Say("give only one of --db, --dsn and --dsn-file"));
  if (!options.dsn.empty()) return options.dsn;
  if (!options.dsn_file.empty()) {
    const std::string text = FirstLine(ReadTextFile(options.dsn_file));
    if (text.empty()) throw CommandError(Say("{}: its first line is empty", options.dsn_file));
    return text;
  }
  return named == 0 ? EnvironmentVariable(kDsnVariable).value_or("") : "";
}

void RequireClasses(const std::vector<int32_t>& class_types) {
  for (const int32_t class_type : class_types) {
    if (!ClassName(class_type).empty()) continue;
    throw CommandError(
        Say("--deny {}: no bill has this class type; that of sales bills, for example, is {}",
            class_type, class_type::kSalesBill));
  }
}

// A whole number where it reads as one, else the text.
Value PublishedValue(const std::string& text) {
  int32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [at, problem] = std::from_chars(text.data(), end, number);
  return problem == std::errc() && at == end ? Value(number) : Value(text);
}

std::vector<std::pair<std::string, Value>> PublishedValues(const std::vector<std::string>& words) {
  std::vector<std::pair<std::string, Value>> values;
  for (const std::string& word : words) {
    const size_t equals = word.find('=');
    if (equals == std::string::npos || equals == 0) {
      throw CommandError(Say("--publish {}: give NAME=VALUE, e.g. IndustryType=1", word));
    }
    values.emplace_back(word.substr(0, equals), PublishedValue(word.substr(equals + 1)));
  }
  return values;
}

void RequireDatabase(const CommonOptions& options) {
  if (options.db.empty()) throw CommandError(Say("which database? give --db FILE or --dsn STRING"));
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
  RequireDatabase(options);
  return std::make_unique<Erp>(FileOptions(options));
}

std::unique_ptr<Erp> OpenDatabase(const CommonOptions& options, const HostOptions& host) {
  RequireClasses(host.denied);
  const auto published = PublishedValues(host.published);
  auto erp = OpenDatabase(options);
  HostSettings& settings = erp->host().settings();
  settings.user_id = host.user;
  settings.denied_class_types = {host.denied.begin(), host.denied.end()};
  if (published.empty()) return erp;
  settings.published = erp->host().NewDictionary();
  for (const auto& [name, value] : published) settings.published->SetItem(name, value);
  return erp;
}

BatchSessionPtr OpenSession(const CommonOptions& options) {
  if (const auto server = ServerOf(options)) return OpenOdbc(*server);
  RequireDatabase(options);
  return sql::Database::Open(FileOptions(options))->NewSession();
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
    throw CommandError(Say("the database holds an ERP schema already; it is left as it is"));
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
