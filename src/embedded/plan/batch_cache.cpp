#include "embedded/plan/batch_cache.h"

#include <algorithm>
#include <functional>
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
  const Entry* known = Find(text);
  const Entry& entry = known ? *known : Compile(text);
  if (batch.program != entry.program) batch.program = entry.program;
  Evaluate(batch.literals);
}

const BatchCache::Entry* BatchCache::Find(std::string_view text) {
  const Entry* found = text.size() < kPrefix ? nullptr : FindIn(BucketOf(text), text);
  return found ? found : FindIn(buckets_.back(), text);
}

const BatchCache::Entry* BatchCache::FindIn(Bucket& bucket, std::string_view text) {
  for (Entries::iterator& candidate : bucket) {
    if (!candidate->form.Matches(text, literals_)) continue;
    // What was used last is looked at first.
    std::swap(candidate, bucket.front());
    entries_.splice(entries_.begin(), entries_, bucket.front());
    return &entries_.front();
  }
  return nullptr;
}

BatchCache::Bucket& BatchCache::BucketOf(std::string_view beginning) {
  if (beginning.size() < kPrefix) return buckets_.back();
  return buckets_[std::hash<std::string_view>()(beginning.substr(0, kPrefix)) % kBuckets];
}

const BatchCache::Entry& BatchCache::Compile(std::string_view text) {
  auto parsed = std::make_shared<const Batch>(ParseBatch(text));
  Entry entry{TextForm(text, *parsed), nullptr};
  entry.program = compile_(std::move(parsed));
  entry.form.Matches(text, literals_);
  if (entries_.size() >= kMostPrograms) DropOldest();
  entries_.push_front(std::move(entry));
  BucketOf(entries_.front().form.Beginning()).push_back(entries_.begin());
  return entries_.front();
}

void BatchCache::DropOldest() {
  const Entries::iterator oldest = std::prev(entries_.end());
  std::erase(BucketOf(oldest->form.Beginning()), oldest);
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
