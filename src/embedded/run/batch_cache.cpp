#include "embedded/run/batch_cache.h"

#include "embedded/syntax/parser.h"

namespace tavcc::sql {
namespace {

// Longer texts are compiled anew each time: scripts, not statements.
constexpr size_t kLongestCached = 64 * 1024;

}  // namespace

std::shared_ptr<const CachedBatch> BatchCache::Find(std::string_view text) {
  TextEntry& entry = texts_[std::hash<std::string_view>()(text) % kTexts];
  if (entry.batch && entry.text == text) return entry.batch;
  auto batch = std::make_shared<CachedBatch>();
  batch->program = FindProgram(text, std::string(text));
  if (text.size() > kLongestCached) return batch;
  entry.text = text;
  entry.batch = std::move(batch);
  return entry.batch;
}

std::shared_ptr<Program> BatchCache::FindProgram(std::string_view text, std::string key) {
  const auto found = by_key_.find(key);
  if (found != by_key_.end()) {
    programs_.splice(programs_.begin(), programs_, found->second);
    return programs_.front().program;
  }
  auto program = Program::FromBatch(std::make_shared<const Batch>(ParseBatch(text)));
  if (text.size() > kLongestCached) return program;
  programs_.push_front(Entry{std::move(key), program});
  by_key_[programs_.front().key] = programs_.begin();
  if (programs_.size() > kPrograms) {
    by_key_.erase(programs_.back().key);
    programs_.pop_back();
  }
  return program;
}

}  // namespace tavcc::sql
