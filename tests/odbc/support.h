// What the tests of both drivers ask.
#pragma once

#include <optional>
#include <string>

#include "foundation/error.h"
#include "odbc/odbc.h"

namespace tavcc::testing {

// The error that the call raises; nothing when it raises none.
std::optional<AutomationError> ErrorOf(auto call) {
  try {
    call();
  } catch (const AutomationError& error) {
    return error;
  }
  return std::nullopt;
}

// Whether the driver manager finds the driver that the connection string names.
inline bool DriverIsInstalled(const std::string& connection_string) {
  const auto error = ErrorOf([&] { OpenOdbc({connection_string}); });
  return !error || error->description().find("Can't open lib") == std::string::npos;
}

}  // namespace tavcc::testing
