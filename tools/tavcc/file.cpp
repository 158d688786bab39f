#include "tavcc/file.h"

#include <fmt/core.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

#include "foundation/file_path.h"
#include "language/language.h"
#include "tavcc/command.h"

namespace tavcc {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& file, const std::error_code& problem) {
  throw CommandError(Say("{} cannot be written: {}", file, problem.message()));
}

// A terminal, a pipe, a device: nothing that could be half there afterwards.
bool IsDevice(const std::string& file) {
  std::error_code problem;
  const fs::file_status status = fs::status(PathOf(file), problem);
  return fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
}

void Remove(const std::string& file) {
  std::error_code ignored;
  fs::remove(PathOf(file), ignored);
}

void Write(const std::string& file, const std::string& told, std::string_view text) {
  errno = 0;
  std::ofstream out(PathOf(file), std::ios::binary | std::ios::trunc);
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  out.close();
  if (out) return;
  const std::error_code problem(errno, std::generic_category());
  if (!IsDevice(file)) Remove(file);
  Fail(told, problem);
}

std::string WriteBeside(const std::string& file, std::string_view text) {
  std::string beside = fmt::format("{}.{}.unfinished", file, std::random_device()());
  Write(beside, file, text);
  return beside;
}

bool IsSameFile(const std::string& a, const std::string& b) {
  std::error_code problem;
  if (fs::equivalent(PathOf(a), PathOf(b), problem)) return true;
  return fs::weakly_canonical(PathOf(a), problem) == fs::weakly_canonical(PathOf(b), problem);
}

}  // namespace

void ReplaceFile(const std::string& file, std::string_view text) {
  if (IsDevice(file)) return Write(file, file, text);
  const std::string beside = WriteBeside(file, text);
  std::error_code problem;
  fs::rename(PathOf(beside), PathOf(file), problem);
  if (!problem) return;
  Remove(beside);
  Fail(file, problem);
}

void RequireOwnFile(const std::string& file, const std::vector<std::string>& others) {
  if (file.empty() || IsDevice(file)) return;
  for (const std::string& other : others) {
    if (other.empty() || !IsSameFile(file, other)) continue;
    throw CommandError(Say("{} is used by this command already: name another file to write", file));
  }
}

void RequireNewFile(const std::string& file) {
  std::error_code problem;
  if (file.empty()) throw CommandError(Say("the name of the file to write is empty"));
  if (fs::exists(PathOf(file), problem) && !IsDevice(file)) {
    throw CommandError(Say("{} is there already, and is left as it is", file));
  }
}

void WriteNewFile(const std::string& file, std::string_view text) {
  RequireNewFile(file);
  if (IsDevice(file)) return Write(file, file, text);
  const std::string beside = WriteBeside(file, text);
  // A link takes no name that somebody else gave away meanwhile.
  std::error_code problem;
  fs::create_hard_link(PathOf(beside), PathOf(file), problem);
  Remove(beside);
  if (!problem) return;
  if (problem == std::errc::file_exists) RequireNewFile(file);
  Fail(file, problem);
}

}  // namespace tavcc
