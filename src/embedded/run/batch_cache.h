// The programs of texts that were run before, so that none is compiled twice: a text is looked up
// by its form (see Fingerprint). Of the programs the one that was not used for longest goes first.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/run/program.h"
#include "embedded/syntax/fingerprint.h"

namespace tavcc::sql {

struct CachedBatch {
  std::shared_ptr<Program> program;
  std::vector<TypedValue> literals;  // by slot
};

class BatchCache {
 public:
  // The batch's program and its literals' values. Errors: those of the parser and of Program.
  std::shared_ptr<const CachedBatch> Find(std::string_view text);

 private:
  static constexpr size_t kMostPrograms = 512;
  static constexpr size_t kBuckets = 256;  // a power of two
  static constexpr size_t kPrefix = 16;    // bytes of a form's beginning that choose its bucket

  struct Entry {
    Fingerprint fingerprint;
    std::shared_ptr<Program> program;
    uint64_t used = 0;
  };
  using Bucket = std::vector<std::unique_ptr<Entry>>;

  const Entry* Look(std::string_view text);
  Entry* LookIn(Bucket& bucket, std::string_view text);
  const Entry& Compile(std::string_view text);
  Bucket& BucketOf(std::string_view beginning);
  void DropOldest();
  void Evaluate(std::vector<TypedValue>& values);

  std::array<Bucket, kBuckets + 1> buckets_;  // the last one is for forms with a short beginning
  size_t count_ = 0;
  uint64_t clock_ = 0;
  std::vector<FingerprintLiteral> literals_;  // of the text at hand
  std::string scratch_;
  std::shared_ptr<CachedBatch> spare_;
};

}  // namespace tavcc::sql
