// Which methods write: what the class table says, against what every call of every scenario does.
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <set>

#include "foundation/text.h"
#include "host/schema.h"
#include "host_calls/watched_backend.h"
#include "support/table_rows.h"

namespace tavcc::testing {
namespace {

const std::vector<std::string>& SchemaTables() {
  static const std::vector<std::string> tables = CreatedTables(SchemaScript());
  return tables;
}

using Tables = std::map<std::string, std::vector<std::string>>;

// All rows of all tables that have any; nothing where a scenario has taken a table away.
std::optional<Tables> ReadTables(Connection& cn) {
  try {
    Tables tables;
    for (const std::string& name : TablesWithRows(cn, SchemaTables())) {
      tables[name] = TableRows(cn, name);
    }
    return tables;
  } catch (const AutomationError&) {
    return std::nullopt;
  }
}

// These send a write that changes nothing, both deliberately: the deletions of single bills run the
// table's name into "From", and a stock-check bill reads a field that its statement does not select
// before it writes.
bool WritesInVain(const std::string& name) {
  static const std::set<std::string> in_vain = {"cls_CX.DeleteBill",   "cls_DB.DeleteBill",
                                                "cls_ZZ.DeleteBill",   "CheckProfit.CheckBill",
                                                "CheckLoss.CheckBill", "AdjustPrice.CheckBill"};
  return in_vain.contains(name);
}

std::string NameOf(const ClassDescription& cls, const Method& method) {
  return Cat(cls.name, ".", method.name);
}

TEST(Writes, AreThoseOfTheClassTable) {
  std::set<std::string> seen_writing;
  int looks = 0;
  RunAllScenarios([&](const ClassDescription& cls, const Method& method,
                      std::vector<Value>& arguments, Connection& past_the_log, const auto& call) {
    const std::string name = NameOf(cls, method);
    if (seen_writing.contains(name)) return call(arguments);
    const auto before = ReadTables(past_the_log);
    const auto look = [&] {
      // A rule may have closed the connection; other calls of it do not.
      if (past_the_log.State() != Connection::kStateOpen) return;
      const auto after = ReadTables(past_the_log);
      if (!before || !after) return;
      ++looks;
      if (*after == *before) return;
      seen_writing.insert(name);
      EXPECT_TRUE(method.writes) << name << " writes, and the class table does not say so";
    };
    try {
      Value result = call(arguments);
      look();
      return result;
    } catch (const AutomationError&) {
      look();
      throw;
    }
  });
  EXPECT_GT(looks, 1000);
  for (const ClassDescription& cls : Classes()) {
    for (const Method& method : cls.methods) {
      if (!method.writes) continue;
      const std::string name = NameOf(cls, method);
      EXPECT_NE(seen_writing.contains(name), WritesInVain(name)) << name;
    }
  }
}

}  // namespace
}  // namespace tavcc::testing
