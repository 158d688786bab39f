// The names of the bill classes as result lines write them.
#pragma once

#include <cstdint>
#include <string_view>

namespace tavcc {

// The empty text for a class without a name.
std::string_view ClassName(int32_t class_type);

}  // namespace tavcc
