#include "embedded/rewrite/conditions.h"

#include <iterator>
#include <utility>

#include "embedded/bind/walk.h"

namespace tavcc::sql {
namespace {

void SplitConjuncts(BoundConditionPtr condition, std::vector<BoundConditionPtr>& out) {
  BoundLogical* const all = AsConjunction(*condition);
  if (all == nullptr) return out.push_back(std::move(condition));
  for (auto& operand : all->operands) SplitConjuncts(std::move(operand), out);
}

}  // namespace

std::vector<BoundConditionPtr> SplitConjuncts(BoundConditionPtr condition) {
  std::vector<BoundConditionPtr> out;
  if (condition) SplitConjuncts(std::move(condition), out);
  return out;
}

BoundConditionPtr All(std::vector<BoundConditionPtr> conditions) {
  if (conditions.empty()) return nullptr;
  if (conditions.size() == 1) return std::move(conditions.front());
  auto all = std::make_unique<BoundLogical>(LogicalOperator::kAnd);
  all->operands = std::move(conditions);
  return all;
}

void AddInFront(BoundConditionPtr& where, BoundConditionPtr condition) {
  std::vector<BoundConditionPtr> all = SplitConjuncts(std::move(where));
  all.insert(all.begin(), std::move(condition));
  where = All(std::move(all));
}

void AddBehind(BoundConditionPtr& where, BoundConditionPtr condition) {
  std::vector<BoundConditionPtr> all = SplitConjuncts(std::move(where));
  all.push_back(std::move(condition));
  where = All(std::move(all));
}

}  // namespace tavcc::sql
