// Connection strings: "Key=value;Key={value}", where "}" within braces is written twice.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavcc {

// The connection string with each password (PWD, Password) as ***; all else as it is.
std::string MaskPassword(std::string_view connection_string);

// The passwords of the connection string, without braces; none that is empty.
std::vector<std::string> PasswordsOf(std::string_view connection_string);

}  // namespace tavcc
