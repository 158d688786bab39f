// Connection strings: "Key=value;Key={value}", where "}" within braces is written twice; OLE DB
// quotes values instead, with quotation marks or apostrophes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavcc {

// The connection string with each password (PWD, Password) as ***; all else as it is.
std::string MaskPassword(std::string_view connection_string);

// The passwords of the connection string, without braces or quotes; none that is empty.
std::vector<std::string> PasswordsOf(std::string_view connection_string);

// The text with each of the connection string's passwords in it as ***.
std::string WithoutPasswords(std::string text, std::string_view connection_string);

}  // namespace tavcc
