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
#include <vector>

#include "embedded/bind/binder.h"
#include "embedded/catalog/catalog.h"
#include "embedded/emit/emitter.h"
#include "embedded/plan/result_shape.h"

namespace tavcc::sql {

struct Plan {
  BindResult binding;
  std::vector<TypedValue> literals;  // those it was compiled with
  // The slots of which more than the kind counts, which is the same for all runs of a program.
  std::vector<size_t> guarded;
  uint64_t epoch = 0;  // of the catalog when the names were last found to stand

  Emitted emitted;
  SqliteStatement statement;           // prepared when it is first run
  std::vector<StoredValue> converted;  // parameters that had to be converted, while it runs
  std::vector<StoredValue> row;        // of SELECT @v = …: the row read last, while it runs

  std::shared_ptr<const ResultShape> shape;  // of a query
  std::vector<int> targets;                  // of SELECT @v = …: variables by item
  bool live = false;                         // its rows read the variables that they assign
  TablePtr table;                            // of INSERT, UPDATE, DELETE
  std::vector<int> columns;                  // of INSERT: those that it writes, in their order;
                                             // of an UPDATE in steps: see there
  TablePtr into;                             // of SELECT … INTO: the table to be made
  bool draws_numbers = false;                // of INSERT: it writes the identity values itself
  bool updates = false;                      // UPDATE or DELETE, not INSERT

  bool GuardsHold(std::span<const TypedValue> current) const;
  // Errors of none: false when a name has gone or stands for something else.
  bool NamesStillHold(const Catalog& catalog);
};

// The plans of one statement of a program.
class PlanCache {
 public:
  // The plan for these values of the parameterized literals, made by compile(Plan&) when there is
  // none that is good. Errors: those of `compile`.
  template <class Compile>
  Plan& Find(const Catalog& catalog, std::span<const TypedValue> literals, const Compile& compile) {
    if (Plan* good = FindGood(catalog, literals)) return *good;
    auto plan = std::make_unique<Plan>();
    plan->literals.assign(literals.begin(), literals.end());
    compile(*plan);
    return Add(catalog, std::move(plan));
  }

 private:
  Plan* FindGood(const Catalog& catalog, std::span<const TypedValue> literals);
  Plan& Add(const Catalog& catalog, std::unique_ptr<Plan> plan);

  std::vector<std::unique_ptr<Plan>> plans_;
};

}  // namespace tavcc::sql
