// A program that works on SQL Server, with its test: the statements are written for the server, and
// the test runs them on a database in memory, without one.
#include <tavcc/embedded/embedded.h>
#include <tavcc/foundation/conversions.h>
#include <tavcc/foundation/error.h>
#include <cstdlib>
#include <iostream>
#include <string>

namespace {

// ---- the program: it knows a connection, and not whose ----

std::string PriceOn(tavcc::Connection& connection, const std::string& item,
                    const std::string& date) {
  const auto rows = connection.Execute(
      "SELECT TOP 1 p.Price FROM dbo.Prices p INNER JOIN dbo.Items i ON i.ItemID = p.ItemID "
      "WHERE i.Number = '" +
      item + "' AND p.ValidFrom <= CONVERT(datetime, '" + date +
      "', 120) "
      "ORDER BY p.ValidFrom DESC");
  return rows->AtEnd() ? "no price" : tavcc::ToText(rows->Field("Price"));
}

void RaisePrices(tavcc::Connection& connection, const std::string& percent) {
  connection.Execute(
      "BEGIN TRANSACTION "
      "UPDATE dbo.Prices SET Price = ROUND(Price * (100 + " +
      percent +
      ") / 100, 2) "
      "IF EXISTS (SELECT * FROM dbo.Prices WHERE Price > 1000) "
      "BEGIN ROLLBACK TRANSACTION RAISERROR('a price above 1000', 16, 1) END "
      "ELSE COMMIT TRANSACTION");
}

// ---- its test ----

constexpr const char* kTables = R"(
CREATE TABLE dbo.Items (ItemID int IDENTITY PRIMARY KEY, Number varchar(20) NOT NULL UNIQUE)
CREATE TABLE dbo.Prices (ItemID int NOT NULL, ValidFrom datetime NOT NULL,
                         Price decimal(10,2) NOT NULL, PRIMARY KEY (ItemID, ValidFrom))
GO
INSERT INTO dbo.Items (Number) VALUES ('01.001')
INSERT INTO dbo.Prices (ItemID, ValidFrom, Price) VALUES (SCOPE_IDENTITY(), '20260101', 99.90)
INSERT INTO dbo.Prices (ItemID, ValidFrom, Price) VALUES (1, '20260301', 104.50)
)";

bool Expect(const std::string& what, const std::string& is, const std::string& wanted) {
  std::cout << (is == wanted ? "ok    " : "WRONG ") << what << ": " << is << "\n";
  return is == wanted;
}

std::string ErrorOf(tavcc::Connection& connection, const std::string& percent) {
  try {
    RaisePrices(connection, percent);
    return "none";
  } catch (const tavcc::AutomationError& error) {
    return std::to_string(error.number()) + " " + error.description();
  }
}

}  // namespace

int main() {
  const auto database = tavcc::sql::Database::Open({});
  database->RunScript(kTables);
  const auto session = database->NewSession();
  bool passed =
      Expect("before the first price", PriceOn(*session, "01.001", "2025-12-31"), "no price");
  passed &= Expect("in February", PriceOn(*session, "01.001", "2026-02-15"), "99.9");
  passed &= Expect("in March", PriceOn(*session, "01.001", "2026-03-01"), "104.5");
  passed &= Expect("raised by 10", ErrorOf(*session, "10"), "none");
  passed &= Expect("in March", PriceOn(*session, "01.001", "2026-03-01"), "114.95");
  passed &= Expect("raised too far", ErrorOf(*session, "1000"), "50000 a price above 1000");
  passed &= Expect("rolled back", PriceOn(*session, "01.001", "2026-03-01"), "114.95");
  return passed ? EXIT_SUCCESS : EXIT_FAILURE;
}
