// The batches of the corpus with pieces left out, doubled, exchanged and put in where they do not
// belong. The database answers or raises an error of the dialect; no word of SQLite's comes out,
// and a sound batch works afterwards.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <map>

#include "embedded/embedded.h"
#include "foundation/conversions.h"
#include "foundation/error.h"
#include "host/schema.h"
#include "scenario/json.h"
#include "support/seed.h"
#include "support/source_dir.h"

namespace tavcc::testing {
namespace {

constexpr const char* kPieces[] = {"select",
                                   "(",
                                   ")",
                                   ",",
                                   "'",
                                   "null",
                                   "from",
                                   "where",
                                   "1/0",
                                   "union all",
                                   "''",
                                   "N'x'",
                                   "#t",
                                   "@n",
                                   "case when",
                                   "end",
                                   "begin transaction",
                                   "rollback",
                                   "commit",
                                   "order by 1",
                                   "[x]",
                                   "99999999999999999999",
                                   "1e308",
                                   "t_Stock",
                                   "max(",
                                   "*",
                                   ";",
                                   "/*",
                                   "--",
                                   "exec('",
                                   "convert(int,",
                                   "in (",
                                   "\xff",
                                   "0x"};
constexpr std::string_view kForeignWords[] = {"internal error", "no such ", "syntax error",
                                              "malformed",      "std::",    "sqlite"};

// A batch is a text, or a list of its pieces.
void CollectBatches(const Json& json, std::vector<std::string>& batches) {
  for (const Json& element : json) CollectBatches(element, batches);
  for (const auto& [key, value] : json.items()) {
    if (key == "sql" || key == "query") {
      std::string text;
      if (value.is_string()) text = value.get<std::string>();
      for (const Json& piece : value) text += piece.get<std::string>();
      batches.push_back(text);
    } else {
      CollectBatches(value, batches);
    }
  }
}

std::vector<std::string> Corpus() {
  std::vector<std::string> batches;
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(SourceDir()) /
                                                               "tests/embedded/corpus")) {
    if (entry.path().extension() != ".json") continue;
    CollectBatches(ParseJson(ReadTextFile(entry.path().string())), batches);
  }
  return batches;
}

std::vector<std::string> Words(const std::string& text) {
  std::vector<std::string> words(1);
  for (const char c : text) {
    const bool letter = std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '@' ||
                        c == '#' || static_cast<unsigned char>(c) >= 0x80;
    if (!letter || words.back().empty()) words.emplace_back();
    words.back() += c;
    if (!letter) words.emplace_back();
  }
  return words;
}

std::string Mutated(const std::string& batch, Chance& chance) {
  std::vector<std::string> words = Words(batch);
  for (size_t i = 1 + chance.Below(3); i > 0; --i) {
    const size_t at = chance.Below(words.size());
    switch (chance.Below(4)) {
      case 0:
        words[at].clear();
        break;
      case 1:
        words[at] += " " + words[at];
        break;
      case 2:
        std::swap(words[at], words[chance.Below(words.size())]);
        break;
      default:
        words[at] = std::string(" ") + chance.Of(kPieces) + " ";
    }
  }
  std::string text;
  for (const std::string& word : words) text += word;
  return text;
}

class Target {
 public:
  ConnectionPtr Fresh() {
    session_.reset();
    sql::OpenOptions options;
    options.budget = 20'000;
    database_ = sql::Database::Open(options);
    database_->RunScript(SchemaScript());
    session_ = database_->NewSession();
    return session_;
  }

 private:
  std::shared_ptr<sql::Database> database_;
  ConnectionPtr session_;
};

TEST(MutatedBatches, AreAnsweredOrRefusedByTheDialect) {
  const uint32_t seed = Seed();
  const int count = TryAll() ? 200'000 : 1'500;
  constexpr int kBatchesOfDatabase = 500;
  const std::vector<std::string> corpus = Corpus();
  ASSERT_GT(corpus.size(), 100u);
  Chance chance(seed);
  Target target;
  ConnectionPtr session;
  std::map<int32_t, int> errors;
  int answered = 0;
  for (int i = 0; i < count; ++i) {
    if (i % kBatchesOfDatabase == 0) session = target.Fresh();
    const std::string batch = Mutated(chance.Of(corpus), chance);
    try {
      session->Execute(batch);
      ++answered;
    } catch (const AutomationError& error) {
      ++errors[error.number()];
      for (const std::string_view word : kForeignWords) {
        // The batch's own words come back in quotes.
        if (batch.find(word) != std::string::npos) continue;
        EXPECT_EQ(error.description().find(word), std::string::npos)
            << "seed " << seed << ", number " << i << ": " << error.description() << "\n"
            << batch;
      }
    }
    session->Execute("while @@trancount > 0 rollback");
    ASSERT_EQ(ToText(session->Execute("select 40+2")->Field(0)), "42");
  }
  std::printf("seed %u: %d mutated batches, %d answered, %zu kinds of errors\n", seed, count,
              answered, errors.size());
  EXPECT_GT(answered, 0);
  EXPECT_GT(errors.size(), 5u);
}

}  // namespace
}  // namespace tavcc::testing
