// The programs of texts that were run before, so that none is compiled twice.
//
// Two levels: by the very text, and by the text without the values of its literals. Both are
// bounded; of the programs the one that was not used for longest goes first.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
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
  static constexpr size_t kTexts = 256;
  static constexpr size_t kPrograms = 512;

  struct Entry {
    std::string key;
    std::shared_ptr<Program> program;
  };
  struct TextEntry {
    size_t hash = 0;
    std::string text;
    std::shared_ptr<const CachedBatch> batch;
  };

  std::shared_ptr<const CachedBatch> Make(std::string_view text);
  std::shared_ptr<Program> FindProgram(const std::string& key);
  void Keep(const std::string& key, const std::shared_ptr<Program>& program);

  std::vector<TextEntry> texts_{kTexts};  // by hash; of two that meet the newer stays
  std::list<Entry> programs_;             // the one used last first
  std::unordered_map<std::string_view, std::list<Entry>::iterator> by_key_;
  Fingerprint fingerprint_;
  std::string scratch_;
  std::shared_ptr<CachedBatch> spare_;
};

}  // namespace tavcc::sql
