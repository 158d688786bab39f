#include "embedded/fuzz/fuzz_engine.h"

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>
#include <string>

#include "embedded/catalog/sqlite.h"
#include "embedded/embedded.h"
#include "foundation/error.h"

namespace tavcc::sql {
namespace {

// A database is used for so many texts, then it is made anew: what they defined piles up.
constexpr int kTextsOfOne = 50;

constexpr char kTables[] =
    "create table t (a int not null primary key, b nvarchar(10), q decimal(28,10), d datetime)\n"
    "insert into t values (1,'x',1.5,'2026-03-01'),(2,'Y ',-2,null),(3,null,null,'2026-03-15')\n"
    "create table u (id int identity, a int, f float, s varchar(5) default('z'), m money)\n"
    "insert into u (a,f,m) values (1,1.5,2),(1,null,3),(9,0,null)\n"
    "create table #t (a int, q decimal(9,2))\n"
    "insert into #t values (1,1),(2,0)\n"
    "GO\n"
    "create view v as select a, q*2 as q2 from t where b is not null\n"
    "GO\n"
    "create procedure p @a int, @b int = 3 output as set @b=@a+1 select a from t where a=@a";

// What is said of texts that pass SQLite's limits, and of the budget.
constexpr auto kLimits = std::to_array<std::string_view>({
    "the batch did more than it may",
    "interrupted",
    "string or blob too big",
    "out of memory",
});

bool IsLimit(const std::string& message) {
  return std::ranges::any_of(
      kLimits, [&](std::string_view limit) { return message.find(limit) != std::string::npos; });
}

struct Sandbox {
  std::shared_ptr<Database> database;
  ConnectionPtr session;
  int texts = 0;

  Sandbox() {
    OpenOptions options;
    options.budget = 300;
    options.clock = [] { return *DateTime::Parse("2026-03-15 10:00:00"); };
    database = Database::Open(options);
    database->RunScript(kTables);
    session = database->NewSession();
  }
};

void ReadAll(Recordset& rows) {
  for (; rows.IsOpen() && !rows.AtEnd(); rows.MoveNext()) {
    for (int i = 0; i < rows.FieldCount(); ++i) {
      try {
        rows.Field(i);
      } catch (const AutomationError&) {
        // Binary values are refused.
      }
    }
  }
}

}  // namespace

void RunOnEngine(std::string_view text) {
  static std::unique_ptr<Sandbox> sandbox;
  if (!sandbox || ++sandbox->texts > kTextsOfOne) sandbox = std::make_unique<Sandbox>();
  try {
    ReadAll(*sandbox->session->Execute(text));
  } catch (const AutomationError&) {
    // Judged below, with the batch's other errors.
  }
  for (const ConnectionError& error : sandbox->session->Errors()) {
    if (error.number < 0 || (error.number == kStoreFailure && !IsLimit(error.description))) {
      throw std::logic_error("the store refused what was emitted: " + error.description);
    }
  }
  sandbox->session->Close();
  sandbox->database->Reopen(*sandbox->session);
}

}  // namespace tavcc::sql
