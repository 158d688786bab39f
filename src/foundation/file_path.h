// Names of files: UTF-8 here, and on the disk whatever the system writes them in.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tavcc {

inline std::filesystem::path PathOf(std::string_view utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

inline std::string PathText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace tavcc
