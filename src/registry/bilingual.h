// A text of the tables beside the class table, in the two languages of those who read them.
#pragma once

#include <string_view>

namespace tavcc {

struct Bilingual {
  std::string_view english;
  std::string_view chinese;
};

}  // namespace tavcc
