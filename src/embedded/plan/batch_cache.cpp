#include "embedded/plan/batch_cache.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "embedded/syntax/parser.h"
#include "embedded/types/literals.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql {
namespace {

// Longer texts are compiled anew each time: they are scripts, not statements.
constexpr size_t kLongestCached = 64 * 1024;

}  // namespace

void BatchCache::Find(std::string_view text, CachedBatch& batch) {
  if (text.size() > kLongestCached) {
    batch.program = compile_(std::make_shared<const Batch>(ParseBatch(text)));
    batch.literals.clear();
    return;
  }
  const Entry* known = Look(text);
  const Entry& entry = known ? *known : Compile(text);
  if (batch.program != entry.program) batch.program = entry.program;
  Evaluate(batch.literals);
}

const BatchCache::Entry* BatchCache::Look(std::string_view text) {
  const Entry* found = text.size() < kPrefix ? nullptr : LookIn(BucketOf(text), text);
  return found ? found : LookIn(buckets_.back(), text);
}

const BatchCache::Entry* BatchCache::LookIn(Bucket& bucket, std::string_view text) {
  for (Candidate& candidate : bucket) {
    if (!MayBe(candidate, text) || !candidate.entry->form.Matches(text, literals_)) continue;
    // What was used last is looked at first.
    if (&candidate != &bucket.front()) std::swap(candidate, bucket.front());
    const Entries::iterator entry = bucket.front().entry;
    if (entry != entries_.begin()) entries_.splice(entries_.begin(), entries_, entry);
    return &*entry;
  }
  return nullptr;
}

// The last bytes before the first literal tell most forms apart that begin alike.
uint64_t BatchCache::TailOf(std::string_view beginning) {
  uint64_t tail = 0;
  if (beginning.size() < sizeof tail) return tail;
  std::memcpy(&tail, beginning.data() + beginning.size() - sizeof tail, sizeof tail);
  return tail;
}

bool BatchCache::MayBe(const Candidate& candidate, std::string_view text) {
  return text.size() >= candidate.beginning &&
         TailOf(text.substr(0, candidate.beginning)) == candidate.tail;
}

BatchCache::Bucket& BatchCache::BucketOf(std::string_view beginning) {
  if (beginning.size() < kPrefix) return buckets_.back();
  uint64_t words[2];
  static_assert(sizeof words == kPrefix);
  std::memcpy(words, beginning.data(), sizeof words);
  const uint64_t mixed = (words[0] ^ (words[1] * 0x9e3779b97f4a7c15)) * 0xbf58476d1ce4e5b9;
  return buckets_[static_cast<size_t>(mixed >> 56) & (kBuckets - 1)];
}

const BatchCache::Entry& BatchCache::Compile(std::string_view text) {
  auto parsed = std::make_shared<const Batch>(ParseBatch(text));
  Entry entry{TextForm(text, *parsed), nullptr};
  entry.program = compile_(std::move(parsed));
  entry.form.Matches(text, literals_);
  if (entries_.size() >= kMostPrograms) DropOldest();
  entries_.push_front(std::move(entry));
  const std::string_view beginning = entries_.front().form.Beginning();
  BucketOf(beginning).push_back({TailOf(beginning), beginning.size(), entries_.begin()});
  return entries_.front();
}

void BatchCache::DropOldest() {
  const Entries::iterator oldest = std::prev(entries_.end());
  std::erase_if(BucketOf(oldest->form.Beginning()),
                [&](const Candidate& candidate) { return candidate.entry == oldest; });
  entries_.erase(oldest);
}

void BatchCache::Evaluate(std::vector<TypedValue>& values) {
  using Form = LiteralExpression::Form;
  if (values.size() != literals_.size()) values.resize(literals_.size());
  TypedValue* value = values.data();
  for (const ParameterizedLiteral& literal : literals_) {
    if (literal.plain) {
      value->type = literal.form == Form::kInteger
                        ? kIntType
                        : DecimalType(std::max(literal.digits, 1), literal.scale);
      value->value.SetInteger(literal.number);
    } else if (literal.form == Form::kText || literal.form == Form::kNationalText) {
      value->type = TextLiteralType(literal.form, literal.units);
      value->value.SetText(literal.doubled ? LiteralText(literal, scratch_) : literal.text);
    } else {
      *value = EvaluateLiteral(literal.form, literal.text);
    }
    ++value;
  }
}

}  // namespace tavcc::sql
