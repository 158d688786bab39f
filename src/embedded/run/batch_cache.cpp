#include "embedded/run/batch_cache.h"

#include "embedded/syntax/parser.h"

namespace tavcc::sql {
namespace {

// Longer texts are compiled anew each time: they are scripts, not statements.
constexpr size_t kLongestCached = 64 * 1024;

// The short way of most literals: a few digits, with or without a point, not led by a zero.
bool EvaluatePlainNumber(LiteralExpression::Form form, std::string_view text, TypedValue& out) {
  const bool decimal = form == LiteralExpression::Form::kDecimal;
  if ((!decimal && form != LiteralExpression::Form::kInteger) || text.size() > (decimal ? 18 : 9) ||
      text.empty() || text[0] == '0') {
    return false;
  }
  int64_t value = 0;
  int digits = 0, scale = -1;
  for (const char c : text) {
    if (c == '.' && scale < 0) {
      scale = 0;
      continue;
    }
    if (c < '0' || c > '9') return false;
    value = value * 10 + (c - '0');
    ++digits;
    if (scale >= 0) ++scale;
  }
  if (decimal != (scale >= 0) || text[0] == '.') return false;
  out.type = decimal ? DecimalType(digits, scale) : Type(TypeKind::kInt);
  out.value = StoredValue(value);
  return true;
}

}  // namespace

std::shared_ptr<const CachedBatch> BatchCache::Find(std::string_view text) {
  if (text.size() > kLongestCached) {
    auto batch = std::make_shared<CachedBatch>();
    batch->program = Program::FromBatch(std::make_shared<const Batch>(ParseBatch(text)));
    return batch;
  }
  const size_t hash = std::hash<std::string_view>()(text);
  TextEntry& entry = texts_[hash % kTexts];
  if (entry.batch && entry.hash == hash && entry.text == text) return entry.batch;
  auto batch = Make(text);
  // A text is worth a copy when it comes a second time; most texts with an id in them do not.
  if (entry.hash == hash) {
    entry.text = text;
    entry.batch = batch;
  } else {
    entry.hash = hash;
    entry.batch.reset();
  }
  return batch;
}

std::shared_ptr<const CachedBatch> BatchCache::Make(std::string_view text) {
  // The last batch's memory is used again, unless somebody still holds it.
  if (!spare_ || spare_.use_count() > 1) spare_ = std::make_shared<CachedBatch>();
  const std::shared_ptr<CachedBatch> batch = spare_;
  batch->literals.clear();
  const bool shareable = ComputeFingerprint(text, fingerprint_);
  if (!shareable) fingerprint_.key = text;
  batch->program = FindProgram(fingerprint_.key);
  bool exchangeable = shareable;
  if (!batch->program) {
    auto parsed = std::make_shared<const Batch>(ParseBatch(text));
    exchangeable =
        shareable && parsed->literal_slots == static_cast<int>(fingerprint_.literals.size());
    batch->program = Program::FromBatch(std::move(parsed), exchangeable);
    // What cannot be shared is found again by its very text alone.
    if (shareable && !exchangeable) fingerprint_.key = text;
    Keep(fingerprint_.key, batch->program);
  }
  if (!batch->program->exchangeable()) return batch;
  batch->literals.reserve(fingerprint_.literals.size());
  for (const FingerprintLiteral& literal : fingerprint_.literals) {
    TypedValue& value = batch->literals.emplace_back();
    if (EvaluatePlainNumber(literal.form, literal.text, value)) continue;
    value = EvaluateLiteral(literal.form, LiteralText(literal, scratch_));
  }
  return batch;
}

std::shared_ptr<Program> BatchCache::FindProgram(const std::string& key) {
  const auto found = by_key_.find(key);
  if (found == by_key_.end()) return nullptr;
  programs_.splice(programs_.begin(), programs_, found->second);
  return programs_.front().program;
}

void BatchCache::Keep(const std::string& key, const std::shared_ptr<Program>& program) {
  if (by_key_.contains(key)) return;
  programs_.push_front(Entry{key, program});
  by_key_[programs_.front().key] = programs_.begin();
  if (programs_.size() <= kPrograms) return;
  by_key_.erase(programs_.back().key);
  programs_.pop_back();
}

}  // namespace tavcc::sql
