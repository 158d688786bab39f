#include "embedded/plan/plan.h"

#include <algorithm>

namespace tavcc::sql {
namespace {

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

void SetGuards(Plan& plan, const Catalog& catalog) {
  plan.epoch = catalog.epoch();
  for (size_t slot = 0; slot < plan.binding.dependences.size(); ++slot) {
    LiteralDependence& use = plan.binding.dependences[slot];
    if (plan.binding.type_dependents[slot] > 0) use = std::max(use, LiteralDependence::kType);
    const TypeKind kind = plan.literals[slot].type.kind;
    const bool one_type = kind == TypeKind::kInt || kind == TypeKind::kFloat;
    if (use > (one_type ? LiteralDependence::kType : LiteralDependence::kKind)) {
      plan.guarded.push_back(slot);
    }
  }
}

}  // namespace tavcc::sql
