#include "tavcc/database.h"

#include <filesystem>
#include <system_error>

#include "host/schema.h"

namespace tavcc {
namespace {

namespace fs = std::filesystem;

// The database may keep a journal beside its file.
void RemoveWithJournals(const std::string& file) {
  std::error_code ignored;
  for (const char* suffix : {"", "-journal", "-wal", "-shm"}) fs::remove(file + suffix, ignored);
}

}  // namespace

std::unique_ptr<Erp> OpenDatabase(const CommonOptions& options) {
  if (options.db.empty()) throw CommandError("which database? give --db FILE");
  sql::OpenOptions open;
  open.path = options.db;
  open.create = false;
  return std::make_unique<Erp>(open);
}

void FillDatabase(Erp& erp, bool sample) {
  erp.RunScript(SchemaScript());
  erp.RunScript(BaseScript());
  if (sample) erp.RunScript(SampleScript());
}

void MakeDatabase(const std::string& file, bool sample) {
  std::error_code problem;
  if (fs::exists(file, problem)) {
    throw CommandError(file + " exists already; it is left as it is");
  }
  const std::string unfinished = file + ".unfinished";
  RemoveWithJournals(unfinished);
  try {
    sql::OpenOptions open;
    open.path = unfinished;
    Erp erp(open);
    FillDatabase(erp, sample);
  } catch (...) {
    RemoveWithJournals(unfinished);
    throw;
  }
  fs::rename(unfinished, file, problem);
  if (problem) throw CommandError("cannot make " + file + ": " + problem.message());
}

}  // namespace tavcc
