#include "tavcc/file.h"

#include <fmt/core.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "tavcc/command.h"

namespace tavcc {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& file, int problem) {
  throw CommandError(
      fmt::format("{} cannot be written: {}", file, std::generic_category().message(problem)));
}

// A terminal, a pipe, a device: nothing that could be half there afterwards.
bool IsDevice(const std::string& file) {
  std::error_code problem;
  const fs::file_status status = fs::status(file, problem);
  return fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
}

void Write(const std::string& file, const std::string& told, std::string_view text) {
  errno = 0;
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  out.close();
  if (out) return;
  const int problem = errno;
  if (!IsDevice(file)) std::remove(file.c_str());
  Fail(told, problem);
}

std::string WriteBeside(const std::string& file, std::string_view text) {
  std::string beside = fmt::format("{}.{}.unfinished", file, getpid());
  Write(beside, file, text);
  return beside;
}

}  // namespace

void ReplaceFile(const std::string& file, std::string_view text) {
  if (IsDevice(file)) return Write(file, file, text);
  const std::string beside = WriteBeside(file, text);
  if (std::rename(beside.c_str(), file.c_str()) == 0) return;
  const int problem = errno;
  std::remove(beside.c_str());
  Fail(file, problem);
}

void RequireNewFile(const std::string& file) {
  std::error_code problem;
  if (file.empty()) throw CommandError("the name of the file to write is empty");
  if (fs::exists(file, problem) && !IsDevice(file)) {
    throw CommandError(fmt::format("{} is there already, and is left as it is", file));
  }
}

void WriteNewFile(const std::string& file, std::string_view text) {
  RequireNewFile(file);
  if (IsDevice(file)) return Write(file, file, text);
  const std::string beside = WriteBeside(file, text);
  // A link takes no name that somebody else gave away meanwhile.
  const int linked = link(beside.c_str(), file.c_str());
  const int problem = errno;
  std::remove(beside.c_str());
  if (linked == 0) return;
  if (problem == EEXIST) RequireNewFile(file);
  Fail(file, problem);
}

}  // namespace tavcc
