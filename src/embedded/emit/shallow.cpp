// Keeping SQLite's text shallow. Its parser has room for a hundred symbols that wait for their end:
// some twenty calls inside one another, or sixteen derived tables; and no tree of operators may be
// higher than a thousand.
//
// So the innermost part of a value that is too deep is computed before the rest and kept:
//
//   f(f(f(x)))  is  t_last(t_keep(0,f(f(x))),f(t_kept(0)))
//
// A derived table that is too deep inside others goes in front of the query, as WITH w0 AS (…), and
// a long chain of AND or OR becomes a tree.
#include <algorithm>
#include <utility>

#include "embedded/emit/emitter_impl.h"

namespace tavcc::sql {
namespace {

// Calls and operators in one another: five symbols each.
constexpr int kMostInside = 8;
// Derived tables in one another: six symbols each.
constexpr int kMostDerived = 5;
// Of SQLite's 127.
constexpr size_t kMostArguments = 100;
constexpr size_t kLongestChain = 100;

}  // namespace

std::string Emitter::Expression(const BoundExpression& expression, bool certain) {
  if (!inside_value_) return OutermostValue(expression, certain);
  const int siblings = std::exchange(height_, 0);
  std::string text = ValueOfKind(expression, certain);
  if (++height_ > kMostInside) text = KeepStep(std::move(text));
  height_ = std::max(siblings, height_);
  return text;
}

std::string Emitter::OutermostValue(const BoundExpression& expression, bool certain) {
  std::vector<std::string> outer = std::exchange(steps_, {});
  const int outer_height = std::exchange(height_, 0);
  inside_value_ = true;
  std::string text = WithSteps(Expression(expression, certain));
  inside_value_ = false;
  steps_ = std::move(outer);
  height_ = outer_height;
  return text;
}

std::string Emitter::KeepStep(std::string text) {
  const std::string place = std::to_string(kept_++);
  steps_.push_back("t_keep(" + place + ',' + text + ')');
  height_ = 0;
  return "t_kept(" + place + ')';
}

std::string Emitter::WithSteps(std::string text) {
  if (steps_.empty()) return text;
  std::string out = "t_last(";
  for (size_t i = 0; i < steps_.size(); ++i) {
    if (i > 0 && i % kMostArguments == 0) out = "t_last(" + out + "0),";
    out += steps_[i] + ',';
  }
  return out + text + ')';
}

std::string Emitter::DerivedTable(const BoundQuery& query) {
  ++derived_;
  std::string text = '(' + Query(query, true) + ')';
  if (derived_-- % kMostDerived != 0) return text;
  std::string name = 'w' + std::to_string(named_++);
  common_tables_.push_back(name + " AS " + text);
  return name;
}

std::string Emitter::TakeCommonTables() {
  std::string out;
  for (const std::string& derived : std::exchange(common_tables_, {})) {
    out += (out.empty() ? "WITH " : ",") + derived;
  }
  return out.empty() ? out : out + ' ';
}

// What is taken out of it may speak of the query around it, so that it stays within.
std::string Emitter::InOwnQuery(const std::function<std::string()>& query) {
  std::vector<std::string> outer = std::exchange(common_tables_, {});
  const int derived = std::exchange(derived_, 0);
  std::string text = InOwnStep(query);
  text.insert(0, TakeCommonTables());
  common_tables_ = std::move(outer);
  derived_ = derived;
  return text;
}

std::string Joined(std::span<const std::string> conditions, std::string_view word) {
  std::string out;
  if (conditions.size() > kLongestChain) {
    const size_t half = conditions.size() / 2;
    out = '(' + Joined(conditions.first(half), word) + ')';
    out += word;
    return out + '(' + Joined(conditions.subspan(half), word) + ')';
  }
  for (const std::string& condition : conditions) {
    if (!out.empty()) out += word;
    out += condition;
  }
  return out;
}

}  // namespace tavcc::sql
