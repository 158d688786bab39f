// The programs of texts that were run before, so that none is compiled twice: a text is looked up
// by its form (see TextForm). Of the programs the one that was not used for longest goes first.
#pragma once

#include <array>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/plan/text_form.h"
#include "embedded/types/stored_value.h"

namespace tavcc::sql {

class Program;

// Makes the program of a batch. Errors: those of the statements.
using CompileBatch = std::shared_ptr<Program> (*)(std::shared_ptr<const Batch> batch);

struct CachedBatch {
  std::shared_ptr<Program> program;
  std::vector<TypedValue> literals;  // by slot
};

class BatchCache {
 public:
  explicit BatchCache(CompileBatch compile) : compile_(compile) {}

  // Sets the text's program and its literals' values in `batch`, whose memory is used again.
  // Errors: those of the parser and of `compile`.
  void Find(std::string_view text, CachedBatch& batch);

 private:
  static constexpr size_t kMostPrograms = 512;
  static constexpr size_t kBuckets = 256;
  static constexpr size_t kPrefix = 16;  // bytes of a form's beginning that choose its bucket

  struct Entry {
    TextForm form;
    std::shared_ptr<Program> program;
  };
  using Entries = std::list<Entry>;
  using Bucket = std::vector<Entries::iterator>;

  const Entry* Find(std::string_view text);
  const Entry* FindIn(Bucket& bucket, std::string_view text);
  const Entry& Compile(std::string_view text);
  Bucket& BucketOf(std::string_view beginning);
  void DropOldest();
  void Evaluate(std::vector<TypedValue>& values);

  const CompileBatch compile_;
  std::array<Bucket, kBuckets + 1> buckets_;    // the last one is for forms with a short beginning
  Entries entries_;                             // the one used last first
  std::vector<ParameterizedLiteral> literals_;  // of the text at hand
  std::string scratch_;
};

}  // namespace tavcc::sql
