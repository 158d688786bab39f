#include "embedded/catalog/names.h"

namespace tavcc::sql {
namespace {

char Fold(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

std::string FoldName(std::string_view name) {
  std::string out(name);
  for (char& c : out) c = Fold(c);
  return out;
}

bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (Fold(a[i]) != Fold(b[i])) return false;
  }
  return true;
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
