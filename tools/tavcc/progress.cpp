#include "tavcc/progress.h"

#include <fmt/core.h>

#include <string>

#include "tavcc/output.h"
#include "tavcc/platform/streams.h"

namespace tavcc {
namespace {

constexpr std::chrono::milliseconds kQuietTime{500};
constexpr std::chrono::milliseconds kRedrawTime{100};
constexpr size_t kBarWidth = 30;

}  // namespace

Progress::Progress(size_t total) : total_(total), terminal_(ShowsEscapes(Stream::kErrors)) {}

Progress::~Progress() {
  Hide();
}

void Progress::Hide() {
  if (drawn_) PrintAside("\r\x1b[K");
  drawn_ = false;
}

void Progress::Show(size_t done, std::string_view what) {
  const auto now = Clock::now();
  if (!terminal_ || total_ == 0 || now - started_ < kQuietTime || now - last_ < kRedrawTime) return;
  last_ = now;
  drawn_ = true;
  const size_t full = kBarWidth * done / total_;
  PrintAside(fmt::format("\r\x1b[K[{}{}] {}/{} {}", std::string(full, '#'),
                         std::string(kBarWidth - full, '.'), done, total_, what));
}

}  // namespace tavcc
