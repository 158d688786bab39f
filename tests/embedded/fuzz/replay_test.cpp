// Sends every text that the fuzzer ever stumbled over, or might well, through the stages again.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "embedded/fuzz/fuzz_batch.h"
#include "support/source_dir.h"

namespace tavcc::sql {
namespace {

TEST(Fuzz, ReplaysItsFindings) {
  const std::filesystem::path folder = SourceDir() / "tests" / "embedded" / "fuzz" / "corpus";
  int count = 0;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    std::ifstream in(file.path(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    EXPECT_NO_THROW(FuzzBatch(text)) << file.path();
    ++count;
  }
  EXPECT_GT(count, 0);
}

}  // namespace
}  // namespace tavcc::sql
