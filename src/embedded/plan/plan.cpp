#include "embedded/plan/plan.h"

#include <algorithm>

namespace tavcc::sql {
namespace {

// How many forms of one statement, for literals of different types, are kept at most.
constexpr size_t kMostPlans = 16;

bool SameLiteral(const TypedValue& known, const TypedValue& current, LiteralDependence use) {
  if (known.type != current.type) return false;
  if (use == LiteralDependence::kValue) return known.value == current.value;
  return use == LiteralDependence::kType || known.type.kind != TypeKind::kInt ||
         ConstantAsDecimal(known.value.integer()) == ConstantAsDecimal(current.value.integer());
}

}  // namespace

bool Plan::GuardsHold(std::span<const TypedValue> current) const {
  for (const size_t slot : guarded) {
    if (!SameLiteral(literals[slot], current[slot], binding.dependences[slot])) return false;
  }
  for (const LiteralTypeGuard& fit : binding.type_guards) {
    if (!fit.Includes(current[fit.slot].type)) return false;
  }
  return true;
}

bool Plan::NamesStillHold(const Catalog& catalog) {
  if (epoch == catalog.epoch()) return true;
  for (const Dependency& dependency : binding.dependencies) {
    if (dependency.table ? catalog.FindTable(dependency.name) != dependency.table
                         : catalog.Find(dependency.name) != dependency.object) {
      return false;
    }
  }
  epoch = catalog.epoch();
  return true;
}

Plan* PlanCache::FindGood(const Catalog& catalog, std::span<const TypedValue> literals) {
  for (size_t i = plans_.size(); i-- > 0;) {
    if (!plans_[i]->GuardsHold(literals)) continue;
    if (plans_[i]->NamesStillHold(catalog)) return plans_[i].get();
    plans_.erase(plans_.begin() + static_cast<ptrdiff_t>(i));
  }
  return nullptr;
}

Plan& PlanCache::Add(const Catalog& catalog, std::unique_ptr<Plan> plan) {
  plan->epoch = catalog.epoch();
  for (size_t slot = 0; slot < plan->binding.dependences.size(); ++slot) {
    LiteralDependence& use = plan->binding.dependences[slot];
    if (plan->binding.type_dependents[slot] > 0) use = std::max(use, LiteralDependence::kType);
    const TypeKind kind = plan->literals[slot].type.kind;
    const bool one_type = kind == TypeKind::kInt || kind == TypeKind::kFloat;
    if (use > (one_type ? LiteralDependence::kType : LiteralDependence::kKind))
      plan->guarded.push_back(slot);
  }
  if (plans_.size() >= kMostPlans) plans_.erase(plans_.begin());
  plans_.push_back(std::move(plan));
  return *plans_.back();
}

}  // namespace tavcc::sql
