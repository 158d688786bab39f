// SELECT: returning rows, assigning variables, and making a table.
#include <algorithm>

#include "embedded/bind/walk.h"
#include "embedded/rewrite/rewrite.h"
#include "embedded/session/engine.h"
#include "embedded/session/instructions/instructions.h"

namespace tavcc::sql {
namespace {

const ObjectName* IntoOf(const Query& query) {
  if (!query.block) return IntoOf(*query.left);
  return query.block->into ? &*query.block->into : nullptr;
}

// Whether an assigning SELECT reads a variable that it assigns: then each row sees what the row
// before it assigned.
bool ReadsItsTargets(const BoundSelect& select) {
  bool reads = false;
  for (const auto& item : select.items) {
    ForEachExpression(*item.expression, [&](const BoundExpression& inner) {
      if (inner.kind != BoundExpression::Kind::kVariable) return;
      const int index = static_cast<const BoundVariable&>(inner).index;
      reads = reads || std::ranges::any_of(select.items, [&](const BoundItem& other) {
                return other.variable == index;
              });
    });
  }
  return reads && select.from != nullptr;
}

TablePtr TableFor(const std::string& name, const BoundQuery& query) {
  const bool single = query.select && query.select->from && query.select->from->source;
  std::vector<Column> columns;
  for (const SourceColumn& column : query.columns) {
    if (column.name.empty()) Raise(1038);
    Column made;
    made.name = column.name;
    made.type = column.type;
    made.nullable = column.nullable;
    made.identity = single && column.identity;
    columns.push_back(std::move(made));
  }
  return TableOfColumns(name, std::move(columns));
}

class SelectInstruction final : public Instruction {
 public:
  SelectInstruction(const SelectStatement& statement, DeclaredVariables visible)
      : Instruction(statement.line),
        query_(*statement.query),
        visible_(visible),
        into_(IntoOf(query_)) {
    if (into_ == nullptr || !query_.block) return;
    for (const SelectItem& item : query_.block->items) {
      if (item.form == SelectItem::Form::kAssignment) Raise(194);
    }
  }

  void Prepare(Engine& engine, Frame& frame) override {
    PrepareDeferred(line(), [&] { Find(engine, frame); });
  }

  Flow Execute(Engine& engine, Frame& frame) override {
    Plan& plan = Find(engine, frame);
    if (plan.into) {
      MakeTable(engine, frame, plan);
    } else if (!plan.targets.empty()) {
      Assign(engine, frame, plan);
    } else {
      Rows rows = ReadRows(engine, plan, frame);
      engine.row_count = static_cast<int64_t>(rows.count);
      engine.Return(std::move(rows));
    }
    return Flow::kNext;
  }

 private:
  Plan& Find(Engine& engine, const Frame& frame) {
    return FindPlan(engine, frame, plans_, [&](Plan& plan) { Compile(engine, frame, plan); });
  }
  void Compile(Engine& engine, const Frame& frame, Plan& plan);
  void CompileInto(Engine& engine, const Frame& frame, const TablePtr& table, Plan& plan);
  void Assign(Engine& engine, Frame& frame, Plan& plan);
  void MakeTable(Engine& engine, Frame& frame, Plan& plan);

  const Query& query_;
  const DeclaredVariables visible_;
  const ObjectName* const into_;
  PlanCache plans_;
  PlanCache into_plans_;
};

void SelectInstruction::Compile(Engine& engine, const Frame& frame, Plan& plan) {
  Binder binder(engine.catalog(), visible_.span(), frame.literals, plan.binding);
  const BoundQueryPtr query = binder.BindQuery(query_);
  if (into_ != nullptr) {
    if (into_->last().starts_with('@')) Raise(102, into_->last());
    plan.into = TableFor(into_->last(), *query);
    return;
  }
  auto shape = std::make_shared<ResultShape>();
  for (const SourceColumn& column : query->columns) {
    shape->names.push_back(column.name);
    shape->types.push_back(column.type);
  }
  plan.shape = std::move(shape);
  if (query->select) {
    for (const BoundItem& item : query->select->items) {
      if (item.variable >= 0) plan.targets.push_back(item.variable);
    }
  }
  plan.live = !plan.targets.empty() && ReadsItsTargets(*query->select);
  Rewrite(*query, plan.binding);
  plan.emitted = plan.live ? EmitAssigningQuery(*query) : EmitQuery(*query);
}

void SelectInstruction::CompileInto(Engine& engine, const Frame& frame, const TablePtr& table,
                                    Plan& plan) {
  Binder binder(engine.catalog(), visible_.span(), frame.literals, plan.binding);
  plan.table = table;
  BoundInsert bound = binder.BindInsertInto(table, binder.BindQuery(query_));
  Rewrite(bound, plan.binding);
  plan.columns = bound.columns;
  plan.emitted = EmitInsert(bound);
  plan.binding.dependencies.push_back(Dependency{*into_, table, nullptr});
}

void SelectInstruction::Assign(Engine& engine, Frame& frame, Plan& plan) {
  int64_t count = 0;
  plan.row.resize(plan.targets.size());
  const auto target = [&](size_t i) -> StoredValue& {
    return frame.variables[static_cast<size_t>(plan.targets[i])];
  };
  {
    PlanRun run(engine, plan, frame);
    if (plan.live) engine.live_frame = &frame;
    while (run.Step()) {
      ++count;
      for (size_t i = 0; i < plan.row.size(); ++i) {
        run.Read(static_cast<int>(i), plan.row[i]);
        if (plan.live) target(i) = plan.row[i];
      }
      if (plan.emitted.single_row) break;
    }
    engine.live_frame = nullptr;
  }
  // Parameters point into the variables while the statement runs.
  if (count > 0) {
    for (size_t i = 0; i < plan.row.size(); ++i) std::swap(target(i), plan.row[i]);
  }
  engine.row_count = count;
}

void SelectInstruction::MakeTable(Engine& engine, Frame& frame, Plan& plan) {
  StatementGuard guard(engine, !plan.into->IsTemporary());
  const TablePtr table = engine.catalog().CreateTable(plan.into);
  Plan& insert = FindPlan(engine, frame, into_plans_,
                          [&](Plan& made) { CompileInto(engine, frame, table, made); });
  RunWrite(engine, insert, frame);
  guard.Keep();
}

}  // namespace

Rows ReadRows(Engine& engine, Plan& plan, Frame& frame) {
  Rows rows{plan.shape, engine.recordsets().TakeCells(), 0};
  PlanRun run(engine, plan, frame);
  const size_t columns = plan.shape->types.size();
  while (run.Step()) {
    if (rows.count++ == 0) rows.cells.reserve(columns);
    for (size_t i = 0; i < columns; ++i) run.ReadTyped(i, rows.cells.emplace_back());
    if (plan.emitted.single_row) break;
  }
  return rows;
}

InstructionPtr MakeSelect(const SelectStatement& statement, DeclaredVariables visible) {
  return std::make_unique<SelectInstruction>(statement, visible);
}

}  // namespace tavcc::sql
