// A statement as it is run: bound, emitted, and prepared on the session's connection.
//
// A plan is good for a set of literals (those that differ from its own in nothing that the bound
// tree depends on) and as long as every name in it stands for what it stood for.
#pragma once

#include <memory>
#include <vector>

#include "embedded/bind/binder.h"
#include "embedded/catalog/catalog.h"
#include "embedded/emit/emitter.h"
#include "embedded/run/frame.h"

namespace tavcc::sql {

class Engine;

// The columns of a result, shared by its plan and the recordsets that came of it.
struct ResultShape {
  std::vector<std::string> names;
  std::vector<SqlType> types;
};

struct Plan {
  BindResult binding;
  std::vector<TypedValue> literals;  // those it was compiled with
  // The slots of which more than the kind counts, which is the same for all runs of a program.
  std::vector<size_t> particular;
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

  bool IsFor(std::span<const TypedValue> current) const;
  // Errors of none: false when a name has gone or stands for something else.
  bool Stands(const Catalog& catalog);
};

// The plans of one statement of a program.
class PlanCache {
 public:
  // The plan for the frame's literals, made by compile(Plan&) when there is none that is good.
  // Errors: those of the binder.
  template <class Compile>
  Plan& Find(Engine& engine, const Frame& frame, const Compile& compile) {
    if (Plan* good = FindGood(engine, frame)) return *good;
    auto plan = std::make_unique<Plan>();
    plan->literals.assign(frame.literals.begin(), frame.literals.end());
    compile(*plan);
    return Add(engine, std::move(plan));
  }

 private:
  Plan* FindGood(Engine& engine, const Frame& frame);
  Plan& Add(Engine& engine, std::unique_ptr<Plan> plan);

  std::vector<std::unique_ptr<Plan>> plans_;
};

// Runs a plan: binds its parameters, steps it, resets it whatever happens.
class PlanRun {
 public:
  // `row`: the values of the row parameters. Errors: those of conversions.
  PlanRun(Engine& engine, Plan& plan, const Frame& frame, std::span<const StoredValue> row = {});
  PlanRun(const PlanRun&) = delete;
  PlanRun& operator=(const PlanRun&) = delete;
  ~PlanRun();

  bool Step();
  int ColumnCount() const;
  StoredValue Column(int index) const;
  void Read(int index, StoredValue& out) const;  // the same, in the memory of `out`

 private:
  Engine& engine_;
  Plan& plan_;
};

}  // namespace tavcc::sql
