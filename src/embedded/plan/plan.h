// Plans, and how a text finds the one that it runs by.
//
// A client sends texts that differ in numbers and names only: "… where FID=7", "… where FID=8".
// Each is compiled once, and what was compiled serves all of them. On the way from the text to
// SQLite:
//
// clang-format off
//
//   parameterized literal  The parser says which literals of a batch are parameters of it (see
//                          Batch::literals in syntax/ast.h), and numbers them.
//   text form              All else of the text, to the byte: text_form.h. Two texts of one form
//                          differ in nothing but the values of their parameterized literals.
//   batch cache            From the form of a text to its program: batch_cache.h. Neither the parser
//                          nor the binder runs for a text whose form is known.
//   plan guard             What the bound tree of a statement depends on, beyond its text: what the
//                          names in it stand for, and of some literals the type or the very value.
//                          The binder and the rewrites note it (BindResult in bind/binder.h).
//   plan                   A statement bound, rewritten, emitted, and prepared by SQLite.
//   plan cache             The plans of one statement, each with its guards; the first whose guards
//                          hold is run, and where none do, another is made.
//
// clang-format on
// So "where a=1.5" and "where a=10.25" share a program and a plan, "where a=1e3" has another form,
// and "select 1.5" and "select 10.25", whose results have different types, share a program with two
// plans.
#pragma once

#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "embedded/bind/binder.h"
#include "embedded/catalog/catalog.h"
#include "embedded/emit/emitter.h"

namespace tavcc::sql {

// What the plans of all statements have; each kind of statement has more (statement_plans.h).
struct Plan {
  BindResult binding;
  std::vector<TypedValue> literals;  // those it was compiled with
  // The slots of which more than the kind counts, which is the same for all runs of a program.
  std::vector<size_t> guarded;
  uint64_t epoch = 0;  // of the catalog when the names were last found to stand

  Emitted emitted;
  SqliteStatement statement;           // prepared when it is first run
  std::vector<StoredValue> converted;  // parameters that had to be converted, while it runs

  bool GuardsHold(std::span<const TypedValue> current) const;
  // Errors of none: false when a name has gone or stands for something else.
  bool NamesStillHold(const Catalog& catalog);
};

// How many forms of one statement, for literals of different types, are kept at most.
inline constexpr size_t kMostPlans = 16;

// The plans of one statement of a program.
template <class StatementPlan>
class PlanCache {
 public:
  // The plan for these values of the parameterized literals, made by compile(StatementPlan&) when
  // there is none that is good. Errors: those of `compile`.
  template <class Compile>
  StatementPlan& Find(const Catalog& catalog, std::span<const TypedValue> literals,
                      const Compile& compile) {
    for (size_t i = plans_.size(); i-- > 0;) {
      if (!plans_[i]->GuardsHold(literals)) continue;
      if (plans_[i]->NamesStillHold(catalog)) return *plans_[i];
      plans_.erase(plans_.begin() + static_cast<ptrdiff_t>(i));
    }
    auto plan = std::make_unique<StatementPlan>();
    plan->literals.assign(literals.begin(), literals.end());
    compile(*plan);
    SetGuards(*plan, catalog);
    if (plans_.size() >= kMostPlans) plans_.erase(plans_.begin());
    plans_.push_back(std::move(plan));
    return *plans_.back();
  }

 private:
  std::vector<std::unique_ptr<StatementPlan>> plans_;
};

// Of a plan that was just compiled.
void SetGuards(Plan& plan, const Catalog& catalog);

}  // namespace tavcc::sql
