// The contract of errors, row by row (rows.json): number, text, whether the batch goes on, whether
// the transaction survives.
//
// Texts are those of sys.messages, as "Database engine events and errors" lists them. How far an
// error reaches: "SET XACT_ABORT (Transact-SQL)", "Deferred name resolution", and Erland
// Sommarskog's "Error Handling in SQL Server": a batch that cannot be compiled does not begin; a
// name that is not there ends its scope; a failed conversion ends the batch and the transaction;
// most other errors end their statement.
//
// A row's statement runs in a transaction, in a dynamic batch, between marks:
//
//   insert into trace values (1)
//   exec('insert into trace values (2)  …  insert into trace values (3)')
//   insert into trace values (4)
//
// "ran" lists the marks that are found afterwards: "1 2 3 4" when the next statement ran, "1 4" and
// "1 2 4" when the dynamic batch ended, before or after it had begun, "1 2" when all ended, "" when
// the transaction was rolled back. "last" leaves mark 3 out, "transactions" is @@TRANCOUNT
// afterwards where it is not 1, or 0 after a rollback. "setup" are batches that run before.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "embedded/embedded.h"
#include "embedded/error.h"
#include "foundation/conversions.h"
#include "foundation/error.h"
#include "support/source_dir.h"

namespace tavcc::sql {
namespace {

using Json = nlohmann::json;

constexpr const char* kSetup[] = {
    "create table trace (n int)",
    "create table t (id int not null primary key, a int null, s varchar(5) null, d datetime null)",
    "insert into t values (1,1,'x',null),(2,1,'y',null)",
    "create table i (id int identity, a int null)",
    "create view v as select id,a from t",
    "create procedure p @x int, @y int = 2 output as set @y=@x",
    "create procedure bare as select 1 as a",
};

// Rows whose statements are too long for the file, and where their tests are.
const std::map<int, const char*> kElsewhere = {
    {1205, "Store.AWaitThatCouldNotEndIsADeadlock"},
    {1222, "Store.ALockThatIsNotLetGo"},
    {3960, "Store.ASnapshotWaitsForNobodyUntilItWrites"},
    {8632, "Depth.WhatMultipliesIsRefusedInTime"},
    {10738, "Depth.WhatIsTooWideIsNamed"},
};

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

const std::filesystem::path kSource = SourceDir();

Json Rows() {
  return Json::parse(ReadFile(kSource / "tests/embedded/errors/rows.json"));
}

std::string Doubled(const std::string& text) {
  std::string out;
  for (const char c : text) out += c == '\'' ? std::string("''") : std::string(1, c);
  return out;
}

std::string Batch(const Json& row) {
  std::string inner = "insert into trace values (2)\n" + row["sql"].get<std::string>();
  if (!row.value("last", false)) inner += "\ninsert into trace values (3)";
  return "insert into trace values (1)\nexec('" + Doubled(inner) +
         "')\ninsert into trace values (4)";
}

std::string Trace(Connection& session) {
  const RecordsetPtr rows = session.Execute("select n from trace order by n");
  std::string out;
  for (; !rows->AtEnd(); rows->MoveNext()) {
    out += (out.empty() ? "" : " ") + ToText(rows->Field(0));
  }
  return out;
}

void CheckRow(const Json& row) {
  const ConnectionPtr session = Database::Open({})->NewSession();
  for (const char* sql : kSetup) session->Execute(sql);
  if (row.contains("setup")) {
    for (const Json& sql : row["setup"]) session->Execute(sql.get<std::string>());
  }
  session->Execute("begin transaction");
  try {
    session->Execute(Batch(row));
    ADD_FAILURE() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), row["number"]);
    EXPECT_EQ(error.description(), row["message"].get<std::string>());
  }
  EXPECT_EQ(ToText(session->Execute("select @@trancount")->Field(0)),
            std::to_string(row.value("transactions", row["ran"] == "" ? 0 : 1)));
  EXPECT_EQ(Trace(*session), row["ran"].get<std::string>());
}

TEST(ErrorRows, EachDoesWhatItSays) {
  for (const Json& row : Rows()) {
    SCOPED_TRACE(row["number"].dump() + ' ' + row["sql"].get<std::string>().substr(0, 100));
    CheckRow(row);
  }
}

TEST(ErrorRows, EachErrorOfTheTableHasOne) {
  const Json rows = Rows();
  for (const ErrorDefinition& definition : AllErrors()) {
    const bool here = std::ranges::any_of(
        rows, [&](const Json& row) { return row["number"] == definition.number; });
    EXPECT_NE(here, kElsewhere.contains(definition.number))
        << definition.number << ' ' << definition.text;
  }
}

}  // namespace
}  // namespace tavcc::sql
