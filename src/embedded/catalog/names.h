// Names of objects, columns and variables are compared without regard to the case of their letters.
#pragma once

#include <string>
#include <string_view>

namespace tavcc::sql {

// ASCII letters in lower case, other bytes as they are: the form in which names are looked up.
std::string FoldName(std::string_view name);
bool SameName(std::string_view a, std::string_view b);

// [name], with "]" doubled.
std::string BracketName(std::string_view name);

}  // namespace tavcc::sql
