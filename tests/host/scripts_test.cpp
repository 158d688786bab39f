// The scripts inside the library are the files beside its sources.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "host/schema.h"
#include "support/source_dir.h"

namespace tavcc {
namespace {

std::string FileText(const std::string& name) {
  std::ifstream file(SourceDir() / "src/host" / name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(Scripts, AreEmbeddedByteForByte) {
  EXPECT_EQ(SchemaScript(), FileText("schema.sql"));
  EXPECT_EQ(BaseScript(), FileText("base.sql"));
  EXPECT_EQ(SampleScript(), FileText("sample.sql"));
}

}  // namespace
}  // namespace tavcc
