// The rewrites: from a bound tree to one that answers the same and that SQLite answers faster.
//
// Each stands in a source of its own, whose head says what it does, when it may, and how a
// statement looks before and after it. They run one after the other, in the order of
// RewriteNames(). None is needed for an answer: a test can switch off each of them.
//
// What a rewrite builds on a literal's value, it notes in `binding`, so that the statement is
// compiled anew for another value.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "embedded/bind/binder.h"

namespace tavcc::sql {

void Rewrite(BoundQuery& query, BindResult& binding);
void Rewrite(BoundInsert& insert, BindResult& binding);
void Rewrite(BoundUpdate& update, BindResult& binding);
void Rewrite(BoundDelete& remove, BindResult& binding);
void Rewrite(BoundValues& values, BindResult& binding);

enum class RewriteRule : uint8_t {
  kReadOnceVariable,
  kAntiJoin,
  kCommonConjuncts,
  kSemiJoinReduction,
  kImpliedIndexFilter,
  kSingleRow,
  kUpdateInPlace,
};

// In the order in which they run.
std::span<const std::string_view> RewriteNames();

bool IsOn(RewriteRule rule);

// For tests: while one of these lives, the named rewrites are off in statements that are compiled,
// in all sessions of the process. They do not nest. An unknown name is an error of the test.
class RewritesOff {
 public:
  explicit RewritesOff(std::span<const std::string_view> names);
  RewritesOff(const RewritesOff&) = delete;
  RewritesOff& operator=(const RewritesOff&) = delete;
  ~RewritesOff();
};

}  // namespace tavcc::sql
