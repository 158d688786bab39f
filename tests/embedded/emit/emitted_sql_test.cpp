// What SQLite gets for the statements of the rules: one golden file for each area, read by people.
//
// A file holds, for each batch of the area's cases (../corpus), the batch and the statements that
// SQLite was asked to run for it. Batches that only put rows into a table, and those for which
// SQLite gets what it already got in the same file, are left out. Where the emitter changes on
// purpose, TAVCC_WRITE_GOLDENS=1 writes the files anew, and the difference is what to review.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "embedded/run/case_file.h"
#include "embedded/session/session.h"
#include "foundation/error.h"
#include "support/source_dir.h"

namespace tavcc::sql {
namespace {

using Statements = std::vector<std::string>;

int Listed(unsigned, void* list, void*, void* text) {
  static_cast<Statements*>(list)->emplace_back(static_cast<const char*>(text));
  return 0;
}

// Each clause on a line of its own.
std::string Broken(std::string sql) {
  for (const char* word :
       {" FROM ", " JOIN ", " LEFT JOIN ", " FULL JOIN ", " ON ", " WHERE ", " AND ", " OR ",
        " SET ", " VALUES(", " GROUP BY ", " HAVING ", " ORDER BY ", " LIMIT ", " UNION "}) {
    const std::string from = word, to = "\n    " + from.substr(1);
    for (size_t at = 0; (at = sql.find(from, at)) != std::string::npos; at += to.size()) {
      sql.replace(at, from.size(), to);
    }
  }
  return sql;
}

std::string WithoutCarriageReturns(std::string text) {
  std::erase(text, '\r');
  return text;
}

bool OnlyAddsRows(const std::string& batch) {
  const std::string start = batch.substr(0, 7);
  return (start == "insert " || start == "INSERT ") && batch.find("values") != std::string::npos &&
         batch.find("elect") == std::string::npos;
}

// What one case adds to the file of its area. `seen`: what the file has so far.
std::string Shown(const CaseName& which, std::set<Statements>& seen) {
  const auto database = OpenFor(which);
  const ConnectionPtr connection = database->NewSession();
  sqlite3* const handle = dynamic_cast<Session&>(*connection).engine().context().store.handle();
  std::string out;
  for (const std::string& batch : BatchesOf(which)) {
    Statements statements;
    sqlite3_trace_v2(handle, SQLITE_TRACE_STMT, Listed, &statements);
    try {
      connection->Execute(batch);
    } catch (const AutomationError& error) {
      statements.push_back("error " + std::to_string(error.number()));
    }
    sqlite3_trace_v2(handle, 0, nullptr, nullptr);
    if (OnlyAddsRows(batch) || !seen.insert(statements).second) continue;
    out += WithoutCarriageReturns(batch) + '\n';
    for (const std::string& statement : statements) out += "  > " + Broken(statement) + '\n';
    out += '\n';
  }
  return out.empty() ? out : "-- " + which.name + "\n\n" + out;
}

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(EmittedSql, IsWhatTheGoldenFilesShow) {
  std::map<std::string, std::string> areas;
  std::map<std::string, std::set<Statements>> seen;
  for (const CaseName& which : FindCases("corpus")) {
    std::string area = std::filesystem::path(which.file).filename().string();
    area.resize(area.find('.'));
    areas[area] += Shown(which, seen[area]);
  }
  ASSERT_FALSE(areas.empty());
  for (const auto& [area, shown] : areas) {
    const auto file = SourceDir() / "tests/embedded/emit" / (area + ".sql");
    if (std::getenv("TAVCC_WRITE_GOLDENS") != nullptr) {
      std::ofstream(file, std::ios::binary) << shown;
    }
    EXPECT_EQ(ReadFile(file), shown) << file;
  }
}

}  // namespace
}  // namespace tavcc::sql
