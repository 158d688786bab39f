#include "embedded/run/batch_cache.h"

#include <algorithm>
#include <cstring>

#include "embedded/syntax/parser.h"

namespace tavcc::sql {
namespace {

// Longer texts are compiled anew each time: they are scripts, not statements.
constexpr size_t kLongestCached = 64 * 1024;

// The short way of most literals: an int of up to 9 digits, a decimal of up to 17 that is not led
// by a zero.
bool EvaluatePlainNumber(const FingerprintLiteral& literal, TypedValue& out) {
  const std::string_view text = literal.text;
  const bool decimal = literal.form == LiteralExpression::Form::kDecimal;
  if (decimal ? text.size() > 18 || text[0] < '1' : text.size() > 9) return false;
  int64_t value = 0;
  size_t point = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '.') {
      point = i;
      continue;
    }
    value = value * 10 + (text[i] - '0');
  }
  const auto digits = static_cast<int>(text.size());
  out.type = decimal ? DecimalType(digits - 1, digits - 1 - static_cast<int>(point))
                     : Type(TypeKind::kInt);
  out.value = StoredValue(value);
  return true;
}

}  // namespace

std::shared_ptr<const CachedBatch> BatchCache::Find(std::string_view text) {
  // The last batch's memory is used again, unless somebody still holds it.
  if (!spare_ || spare_.use_count() > 1) spare_ = std::make_shared<CachedBatch>();
  const std::shared_ptr<CachedBatch> batch = spare_;
  if (text.size() > kLongestCached) {
    batch->program = Program::FromBatch(std::make_shared<const Batch>(ParseBatch(text)));
    batch->literals.clear();
    return batch;
  }
  const Entry* entry = Look(text);
  batch->program = (entry ? *entry : Compile(text)).program;
  Evaluate(batch->literals);
  return batch;
}

const BatchCache::Entry* BatchCache::Look(std::string_view text) {
  Entry* found = text.size() < kPrefix ? nullptr : LookIn(BucketOf(text), text);
  if (!found) found = LookIn(buckets_.back(), text);
  if (found) found->used = ++clock_;
  return found;
}

BatchCache::Entry* BatchCache::LookIn(Bucket& bucket, std::string_view text) {
  for (auto& entry : bucket) {
    if (!entry->fingerprint.Matches(text, literals_)) continue;
    std::swap(entry, bucket.front());  // what was used last is looked at first
    return bucket.front().get();
  }
  return nullptr;
}

BatchCache::Bucket& BatchCache::BucketOf(std::string_view beginning) {
  if (beginning.size() < kPrefix) return buckets_.back();
  uint64_t words[2];
  static_assert(sizeof words == kPrefix);
  std::memcpy(words, beginning.data(), sizeof words);
  const uint64_t mixed = (words[0] ^ (words[1] * 0x9e3779b97f4a7c15)) * 0xbf58476d1ce4e5b9;
  return buckets_[mixed >> 56 & (kBuckets - 1)];
}

const BatchCache::Entry& BatchCache::Compile(std::string_view text) {
  auto entry = std::make_unique<Entry>(Entry{Fingerprint(text), nullptr, ++clock_});
  auto parsed = std::make_shared<const Batch>(ParseBatch(text));
  Fingerprint& fingerprint = entry->fingerprint;
  const bool exchangeable =
      fingerprint.shareable() && parsed->literal_slots == static_cast<int>(fingerprint.literals());
  if (!exchangeable) fingerprint.Pin();
  entry->program = Program::FromBatch(std::move(parsed), exchangeable);
  fingerprint.Matches(text, literals_);
  if (++count_ > kMostPrograms) DropOldest();
  return *BucketOf(fingerprint.Beginning()).emplace_back(std::move(entry));
}

void BatchCache::DropOldest() {
  Bucket* oldest = nullptr;
  size_t place = 0;
  for (Bucket& bucket : buckets_) {
    for (size_t i = 0; i < bucket.size(); ++i) {
      if (oldest && bucket[i]->used >= (*oldest)[place]->used) continue;
      oldest = &bucket;
      place = i;
    }
  }
  oldest->erase(oldest->begin() + static_cast<ptrdiff_t>(place));
  --count_;
}

void BatchCache::Evaluate(std::vector<TypedValue>& values) {
  using Form = LiteralExpression::Form;
  values.resize(literals_.size());
  for (size_t i = 0; i < literals_.size(); ++i) {
    const FingerprintLiteral& literal = literals_[i];
    TypedValue& value = values[i];
    if (literal.form == Form::kText || literal.form == Form::kNationalText) {
      value.type = TextLiteralType(literal.form, literal.units);
      value.value.SetText(LiteralText(literal, scratch_));
    } else if (literal.form == Form::kFloat || !EvaluatePlainNumber(literal, value)) {
      value = EvaluateLiteral(literal.form, literal.text);
    }
  }
}

}  // namespace tavcc::sql
