#include "tavcc/platform/streams.h"

#include <unistd.h>

#include <cerrno>

namespace tavcc {
namespace {

int DescriptorOf(Stream stream) {
  switch (stream) {
    case Stream::kInput:
      return STDIN_FILENO;
    case Stream::kOutput:
      return STDOUT_FILENO;
    case Stream::kErrors:
      break;
  }
  return STDERR_FILENO;
}

}  // namespace

bool IsTerminal(Stream stream) {
  return isatty(DescriptorOf(stream)) != 0;
}

bool ShowsEscapes(Stream stream) {
  return IsTerminal(stream);
}

std::error_code WriteAll(Stream stream, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(DescriptorOf(stream), text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return {errno, std::system_category()};
    text.remove_prefix(static_cast<size_t>(written));
  }
  return {};
}

}  // namespace tavcc
