// Each rewrite by itself: the bound tree before it and after it, as data. A file beside this one
// has the cases of the rewrite of its name:
//
//   {"tables": "create table …", "cases": [{"sql": "…", "before": "…", "after": "…"}]}
//
// A text may be a list of pieces, joined as they stand. Without "after" the rewrite leaves the tree
// as it is.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "embedded/bind/binder.h"
#include "embedded/bind/describe.h"
#include "embedded/rewrite/read_once_variable.h"
#include "embedded/rewrite/rewrite.h"
#include "embedded/session/engine.h"
#include "embedded/syntax/parser.h"
#include "support/source_dir.h"
#include "support/without_rewrite.h"

namespace tavcc::sql {
namespace {

using Json = nlohmann::json;

std::string Joined(const Json& text) {
  if (text.is_string()) return text.get<std::string>();
  std::string out;
  for (const Json& piece : text) out += piece.get<std::string>();
  return out;
}

template <class T>
const T& To(const StatementPtr& statement) {
  return static_cast<const T&>(*statement);
}

struct BeforeAndAfter {
  std::string before, after;
};

template <class Bound>
BeforeAndAfter Rewritten(Bound& bound, BindResult& binding) {
  BeforeAndAfter out;
  out.before = Describe(bound);
  Rewrite(bound, binding);
  out.after = Describe(bound);
  return out;
}

BeforeAndAfter Rewritten(Engine& engine, const std::string& sql) {
  const Batch batch = ParseBatch(sql);
  BindResult result;
  Binder binder(engine.context().catalog, {}, {}, result);
  const StatementPtr& first = batch.statements.at(0);
  if (batch.statements.size() == 2) {
    BoundInsert insert = binder.BindInsert(To<InsertStatement>(first), false);
    BoundDelete remove = binder.BindDelete(To<DeleteStatement>(batch.statements[1]));
    BeforeAndAfter out{Describe(insert) + "; " + Describe(remove), {}};
    out.after = ReadInPlace(insert, remove) ? Describe(remove) : out.before;
    return out;
  }
  switch (first->kind) {
    case Statement::Kind::kUpdate: {
      BoundUpdate update = binder.BindUpdate(To<UpdateStatement>(first));
      return Rewritten(update, result);
    }
    case Statement::Kind::kDelete: {
      BoundDelete remove = binder.BindDelete(To<DeleteStatement>(first));
      return Rewritten(remove, result);
    }
    default:
      return Rewritten(*binder.BindQuery(*To<SelectStatement>(first).query), result);
  }
}

class OneRewrite : public ::testing::TestWithParam<std::string_view> {};

TEST_P(OneRewrite, ChangesTheTreeAsShown) {
  const auto path = SourceDir() / "tests/embedded/rewrite" / (std::string(GetParam()) + ".json");
  std::ifstream file(path);
  ASSERT_TRUE(file) << "no cases: " << path;
  const Json cases = Json::parse(file);
  const auto opened = std::make_unique<Engine>(StoreLocation{":memory:", false});
  Engine& engine = *opened;
  engine.RunBatch(Joined(cases["tables"]));
  ASSERT_TRUE(engine.errors().empty()) << engine.errors()[0].message;
  std::vector<std::string_view> others(RewriteNames().begin(), RewriteNames().end());
  std::erase(others, GetParam());
  const RewritesOff off(others);
  bool changes = false;
  for (const Json& one : cases["cases"]) {
    const std::string sql = Joined(one["sql"]);
    try {
      const BeforeAndAfter got = Rewritten(engine, sql);
      EXPECT_EQ(Joined(one["before"]), got.before) << sql;
      EXPECT_EQ(Joined(one.contains("after") ? one["after"] : one["before"]), got.after) << sql;
      changes = changes || got.before != got.after;
    } catch (const SqlError& error) {
      ADD_FAILURE() << sql << "\n  " << error.number << ": " << error.message;
    }
  }
  EXPECT_TRUE(changes) << "no case that the rewrite changes";
}

INSTANTIATE_TEST_SUITE_P(Rewrites, OneRewrite,
                         ::testing::ValuesIn(RewriteNames().begin(), RewriteNames().end()),
                         tavcc::testing::IdentifierOf);

TEST(Rewrites, AreOffOnlyWhileATestSaysSo) {
  EXPECT_TRUE(IsOn(RewriteRule::kAntiJoin));
  {
    const std::string_view names[] = {"anti-join"};
    const RewritesOff off(names);
    EXPECT_FALSE(IsOn(RewriteRule::kAntiJoin));
    EXPECT_TRUE(IsOn(RewriteRule::kSingleRow));
  }
  EXPECT_TRUE(IsOn(RewriteRule::kAntiJoin));
  const std::string_view unknown[] = {"no-such-rewrite"};
  EXPECT_THROW(RewritesOff{unknown}, std::invalid_argument);
}

}  // namespace
}  // namespace tavcc::sql
