// The style sheet of every page.
#pragma once

#include <string_view>

namespace tavcc {

// page.css: light, or dark where the reader's system is; for screens of any width, and for paper.
std::string_view PageStyle();

}  // namespace tavcc
