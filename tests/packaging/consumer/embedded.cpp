// Runs a batch of the server's dialect.
#include <tavcc/embedded/embedded.h>
#include <tavcc/foundation/conversions.h>
#include <iostream>

int main() {
  const auto session = tavcc::sql::Database::Open({})->NewSession();
  const auto rows =
      session->Execute("SELECT TOP 1 ISNULL(NULL, N'车架') + CONVERT(varchar(8), 12.50)");
  std::cout << tavcc::ToText(rows->Field(0)) << "\n";
}
