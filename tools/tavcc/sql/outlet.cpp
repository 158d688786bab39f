#include "tavcc/sql/outlet.h"

#include <utility>

#include "tavcc/output.h"

namespace tavcc {
namespace {

constexpr size_t kMany = 1 << 16;
constexpr auto kMoment = std::chrono::milliseconds(100);

}  // namespace

void Outlet::Write(std::string_view text) {
  waiting_ += text;
  if (waiting_.size() >= kMany || std::chrono::steady_clock::now() - flushed_ >= kMoment) Flush();
}

void Outlet::Flush() {
  if (waiting_.empty()) return;
  const std::string text = std::exchange(waiting_, {});
  flushed_ = std::chrono::steady_clock::now();
  if (!Page(text)) Print(text);
}

void Outlet::WriteAside(std::string_view text) {
  Flush();
  if (!Page(text)) PrintAside(text);
}

void Outlet::Finish() {
  Flush();
  pager_.reset();
}

bool Outlet::Page(std::string_view text) {
  if (!pages_) return false;
  if (pager_ == nullptr) pager_ = Pager::Begin();
  if (pager_ == nullptr) return false;
  pager_->Write(text);
  return true;
}

}  // namespace tavcc
