#include "embedded/catalog/names.h"

#include "foundation/text.h"

namespace tavcc::sql {

std::string FoldName(std::string_view name) {
  return LowerCase(name);
}

std::string BracketName(std::string_view name) {
  std::string out = "[";
  for (const char c : name) {
    if (c == ']') out += c;
    out += c;
  }
  out += ']';
  return out;
}

}  // namespace tavcc::sql
