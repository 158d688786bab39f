// Text at the ODBC border: UTF-8 inside; outside UTF-16, or UTF-8 for a driver that knows bytes
// only.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "odbc/api.h"

namespace tavcc::odbc {

// How a driver takes text. unixODBC would translate for a driver without the wide functions by way
// of the locale and UCS-2, which loses most of Unicode; such a driver is spoken to in bytes.
enum class Encoding { kWide, kBytes };

// Without a terminator. Bytes that are no UTF-8 become U+FFFD.
std::vector<SQLWCHAR> ToWide(std::string_view text);

// Half a surrogate pair becomes U+FFFD.
std::string FromWide(std::span<const SQLWCHAR> wide);

}  // namespace tavcc::odbc
