// The statements that the rules send, and the scripts of the ERP schema, all parse; and what the
// fingerprint says of each of them agrees with the parser.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "embedded/error.h"
#include "embedded/syntax/fingerprint.h"
#include "embedded/syntax/parser.h"
#include "embedded/syntax/print.h"
#include "support/source_dir.h"

namespace tavcc::sql {
namespace {

std::vector<std::string> Batches(const std::string& file) {
  std::ifstream in(SourceDir() / file, std::ios::binary);
  EXPECT_TRUE(in.good()) << file;
  std::vector<std::string> batches(1);
  for (std::string line; std::getline(in, line);) {
    if (line == "GO" || line == "GO\r")
      batches.emplace_back();
    else
      batches.back() += line + "\n";
  }
  return batches;
}

std::vector<std::string> AllBatches() {
  std::vector<std::string> all;
  for (const char* file : {"tests/embedded/syntax/statements.sql", "src/host/schema.sql",
                           "src/host/base.sql", "src/host/sample.sql"})
    for (std::string& batch : Batches(file)) all.push_back(std::move(batch));
  return all;
}

TEST(Statements, AllParse) {
  const auto batches = AllBatches();
  ASSERT_GT(batches.size(), 100u);
  for (const std::string& text : batches) {
    try {
      ParseBatch(text);
    } catch (const SqlError& error) {
      ADD_FAILURE() << error.number << ", line " << error.line << ": " << error.message << "\n"
                    << text;
    }
  }
}

// The literal with its slot as the tree's printed form has it.
std::string Printed(const FingerprintLiteral& literal, size_t slot) {
  std::string text(literal.text);
  if (literal.form == LiteralExpression::Form::kText) text = "'" + text + "'";
  if (literal.form == LiteralExpression::Form::kNationalText) text = "N'" + text + "'";
  return text + "#" + std::to_string(slot);
}

TEST(Statements, FingerprintAgreesWithTheParser) {
  size_t shared = 0, literals = 0;
  std::vector<FingerprintLiteral> values;
  for (const std::string& text : AllBatches()) {
    const Batch batch = ParseBatch(text);
    const Fingerprint fingerprint(text);
    ASSERT_EQ(fingerprint.shareable(), batch.literal_slots >= 0) << text;
    if (batch.literal_slots < 0) continue;
    ++shared;
    ASSERT_TRUE(fingerprint.Matches(text, values)) << text;
    ASSERT_EQ(values.size(), static_cast<size_t>(batch.literal_slots)) << text;
    const std::string tree = Print(batch, PrintSlots::kYes);
    size_t at = 0;
    for (size_t i = 0; i < values.size(); ++i, ++literals) {
      const std::string printed = Printed(values[i], i);
      at = tree.find(printed);
      EXPECT_NE(at, std::string::npos) << printed << "\n" << tree;
    }
    EXPECT_EQ(tree.find("#" + std::to_string(values.size()) + ")"), std::string::npos);
  }
  EXPECT_GT(shared, 100u);
  EXPECT_GT(literals, 300u);
}

// The statements proper never need compiling twice.
TEST(Statements, AllCanShareTheirCompiledForm) {
  for (const std::string& text : Batches("tests/embedded/syntax/statements.sql"))
    EXPECT_TRUE(Fingerprint(text).shareable()) << text;
}

}  // namespace
}  // namespace tavcc::sql
