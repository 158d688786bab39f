#include "tavcc/junit.h"

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>

#include "foundation/file_path.h"

namespace tavcc {
namespace {

// As the text of an element or an attribute. XML knows no control characters but these three.
std::string Escaped(const std::string& text) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t' ? '?' : c;
    }
  }
  return out;
}

std::string Headline(const std::string& text) {
  return text.substr(0, text.find('\n'));
}

}  // namespace

std::string JunitXml(const std::vector<ScenarioOutcome>& outcomes) {
  double seconds = 0;
  for (const ScenarioOutcome& outcome : outcomes) seconds += outcome.seconds;
  const auto failed = std::ranges::count_if(
      outcomes, [](const ScenarioOutcome& outcome) { return !outcome.failure.empty(); });
  std::string xml = fmt::format(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<testsuite name=\"scenarios\" tests=\"{}\" failures=\"{}\" time=\"{:.3f}\">\n",
      outcomes.size(), failed, seconds);
  for (const ScenarioOutcome& outcome : outcomes) {
    const std::filesystem::path path = PathOf(outcome.file);
    xml += fmt::format("  <testcase classname=\"{}\" name=\"{}\" file=\"{}\" time=\"{:.3f}\"",
                       Escaped(PathText(path.parent_path().filename())),
                       Escaped(PathText(path.stem())), Escaped(outcome.file), outcome.seconds);
    if (outcome.failure.empty() && outcome.skipped.empty()) {
      xml += "/>\n";
      continue;
    }
    xml += ">\n";
    if (!outcome.failure.empty()) {
      xml += fmt::format("    <failure message=\"{}\">{}</failure>\n",
                         Escaped(Headline(outcome.failure)), Escaped(outcome.failure));
    }
    for (const std::string& line : outcome.skipped) {
      xml += fmt::format("    <system-out>skipped: {}</system-out>\n", Escaped(line));
    }
    xml += "  </testcase>\n";
  }
  return xml + "</testsuite>\n";
}

}  // namespace tavcc
