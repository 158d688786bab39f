// Finding a method by its dotted name, with help for a name that is nearly right.
#include <algorithm>
#include <numeric>

#include "foundation/text.h"
#include "language/language.h"
#include "scenario/scenario.h"

namespace tavcc {
namespace {

// Levenshtein's distance without regard to letter case.
size_t Distance(std::string_view a, std::string_view b) {
  const std::string upper_a = UpperCase(a);
  const std::string upper_b = UpperCase(b);
  std::vector<size_t> row(upper_b.size() + 1);
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < upper_a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i + 1;
    for (size_t j = 0; j < upper_b.size(); ++j) {
      const size_t replaced = diagonal + (upper_a[i] == upper_b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

std::vector<std::string> MethodNames(const ClassDescription& cls) {
  std::vector<std::string> names;
  for (const Method& method : cls.methods) names.emplace_back(method.name);
  return names;
}

std::vector<std::string> ClassNames() {
  std::vector<std::string> names;
  for (const ClassDescription& cls : Classes()) names.emplace_back(cls.name);
  return names;
}

}  // namespace

std::string DidYouMean(std::string_view name, const std::vector<std::string>& known) {
  const auto nearest =
      std::min_element(known.begin(), known.end(), [&](const std::string& a, const std::string& b) {
        return Distance(name, a) < Distance(name, b);
      });
  if (nearest == known.end()) return "";
  // Half of the letters wrong is no slip of the finger any more.
  const size_t most = std::max(name.size(), nearest->size()) / 2;
  return Distance(name, *nearest) <= most ? Say("; did you mean {}?", *nearest) : "";
}

const ClassDescription& FindClassByName(std::string_view name) {
  const ClassDescription* cls = FindClass(name);
  if (cls == nullptr) {
    throw std::invalid_argument(
        Say("there is no class \"{}\"{}", name, DidYouMean(name, ClassNames())));
  }
  return *cls;
}

MethodName FindMethodByName(std::string_view dotted) {
  const size_t dot = dotted.find('.');
  if (dot == std::string_view::npos) {
    throw std::invalid_argument(Say("\"{}\" must have the form CLASS.METHOD", dotted));
  }
  const std::string_view method_name = dotted.substr(dot + 1);
  const ClassDescription& cls = FindClassByName(dotted.substr(0, dot));
  const Method* method = FindMethod(cls, method_name);
  if (method == nullptr) {
    throw std::invalid_argument(Say("{} has no method \"{}\"{}", cls.name, method_name,
                                    DidYouMean(method_name, MethodNames(cls))));
  }
  return {&cls, method};
}

}  // namespace tavcc
