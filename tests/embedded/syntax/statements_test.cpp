// The statements that the rules send, and the scripts of the ERP schema, all parse; and the form of
// each finds the literals that the parser numbered.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "embedded/error.h"
#include "embedded/plan/text_form.h"
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
std::string Printed(const ParameterizedLiteral& literal, size_t slot) {
  std::string text(literal.text);
  if (literal.form == LiteralExpression::Form::kText) text = "'" + text + "'";
  if (literal.form == LiteralExpression::Form::kNationalText) text = "N'" + text + "'";
  return text + "#" + std::to_string(slot);
}

TEST(Statements, FormsHaveTheLiteralsOfTheTree) {
  size_t shared = 0, literals = 0;
  std::vector<ParameterizedLiteral> values;
  for (const std::string& text : AllBatches()) {
    const Batch batch = ParseBatch(text);
    if (!batch.shareable) continue;
    ++shared;
    ASSERT_TRUE(TextForm(text, batch).Matches(text, values)) << text;
    ASSERT_EQ(values.size(), batch.literals.size()) << text;
    const std::string tree = Print(batch, PrintSlots::kYes);
    for (size_t i = 0; i < values.size(); ++i, ++literals) {
      const std::string printed = Printed(values[i], i);
      EXPECT_NE(tree.find(printed), std::string::npos) << printed << "\n" << tree;
    }
    EXPECT_EQ(tree.find("#" + std::to_string(values.size()) + ")"), std::string::npos);
  }
  EXPECT_GT(shared, 100u);
  EXPECT_GT(literals, 300u);
}

// The statements proper never need compiling twice.
TEST(Statements, AllCanShareTheirCompiledForm) {
  for (const std::string& text : Batches("tests/embedded/syntax/statements.sql"))
    EXPECT_TRUE(ParseBatch(text).shareable) << text;
}

}  // namespace
}  // namespace tavcc::sql
