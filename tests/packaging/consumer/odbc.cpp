// Asks for a driver that is not there: the driver manager answers.
#include <tavcc/foundation/error.h>
#include <tavcc/odbc/odbc.h>
#include <iostream>

int main() {
  try {
    tavcc::OpenOdbc({.connection_string = "Driver=no such driver;PWD=secret"});
  } catch (const tavcc::AutomationError& error) {
    std::cout << error.description() << "\n";
  }
}
