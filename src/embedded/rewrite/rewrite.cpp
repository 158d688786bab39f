#include "embedded/rewrite/rewrite.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <stdexcept>
#include <string>

#include "embedded/rewrite/rules.h"

namespace tavcc::sql {
namespace {

using MakePass = std::unique_ptr<StatementPass> (*)(BindResult& binding);

struct Entry {
  RewriteRule rule;
  std::string_view name;
  MakePass make;  // null for the one that looks at two statements: see read_once_variable.h
};

// clang-format off
constexpr auto kRewrites = std::to_array<Entry>({
    {RewriteRule::kReadOnceVariable,   "read-once-variable",   nullptr},
    // Before the semi-joins, which may narrow the tables that are left.
    {RewriteRule::kAntiJoin,           "anti-join",            AntiJoinPass},
    {RewriteRule::kCommonConjuncts,    "common-conjuncts",     CommonConjunctsPass},
    {RewriteRule::kSemiJoinReduction,  "semi-join-reduction",  SemiJoinReductionPass},
    // Behind those that move conditions to other blocks.
    {RewriteRule::kImpliedIndexFilter, "implied-index-filter", ImpliedIndexFilterPass},
    {RewriteRule::kSingleRow,          "single-row",           SingleRowPass},
    {RewriteRule::kUpdateInPlace,      "update-in-place",      UpdateInPlacePass},
});
// clang-format on

constexpr auto kNames = [] {
  std::array<std::string_view, kRewrites.size()> names;
  std::ranges::transform(kRewrites, names.begin(), &Entry::name);
  return names;
}();

std::atomic<unsigned> off{0};  // a bit for each rule

unsigned Bit(RewriteRule rule) {
  return 1U << static_cast<unsigned>(rule);
}

template <class Bound>
void RunAll(Bound& bound, BindResult& binding) {
  for (const Entry& entry : kRewrites) {
    if (entry.make != nullptr && IsOn(entry.rule)) entry.make(binding)->Run(bound);
  }
}

}  // namespace

void Rewrite(BoundQuery& query, BindResult& binding) {
  RunAll(query, binding);
}

void Rewrite(BoundInsert& insert, BindResult& binding) {
  RunAll(insert, binding);
}

void Rewrite(BoundUpdate& update, BindResult& binding) {
  RunAll(update, binding);
}

void Rewrite(BoundDelete& remove, BindResult& binding) {
  RunAll(remove, binding);
}

void Rewrite(BoundValues& values, BindResult& binding) {
  RunAll(values, binding);
}

std::span<const std::string_view> RewriteNames() {
  return kNames;
}

bool IsOn(RewriteRule rule) {
  return (off & Bit(rule)) == 0;
}

RewritesOff::RewritesOff(std::span<const std::string_view> names) {
  unsigned bits = 0;
  for (const std::string_view name : names) {
    const auto found = std::ranges::find(kRewrites, name, &Entry::name);
    if (found == kRewrites.end()) throw std::invalid_argument("no rewrite " + std::string(name));
    bits |= Bit(found->rule);
  }
  off = bits;
}

RewritesOff::~RewritesOff() {
  off = 0;
}

}  // namespace tavcc::sql
