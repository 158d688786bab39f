// SELECT: returning rows, assigning variables, and making a table.
#include <algorithm>

#include "embedded/bind/walk.h"
#include "embedded/rewrite/rewrite.h"
#include "embedded/session/instructions/instructions.h"
#include "embedded/session/session_context.h"

namespace tavcc::sql {
namespace {

const ObjectName* FindInto(const Query& query) {
  if (!query.block) return FindInto(*query.left);
  return query.block->into ? &*query.block->into : nullptr;
}

// Whether an assigning SELECT reads a variable that it assigns: then each row sees what the row
// before it assigned.
bool ReadsItsTargets(const BoundSelect& select) {
  bool reads = false;
  for (const auto& item : select.items) {
    ForEachExpression(*item.expression, [&](const BoundExpression& inner) {
      const auto* variable = As<BoundVariable>(inner);
      if (variable == nullptr) return;
      reads = reads || std::ranges::find(select.items, variable->index, &BoundItem::variable) !=
                           select.items.end();
    });
  }
  return reads && select.from != nullptr;
}

TablePtr TableFor(const std::string& name, const BoundQuery& query) {
  const bool single = query.select && query.select->from && query.select->from->source;
  std::vector<Column> columns;
  for (const SourceColumn& column : query.columns) {
    if (column.name.empty()) Raise(errors::kEmptyName);
    Column made;
    made.name = column.name;
    made.type = column.type;
    made.nullable = column.nullable;
    made.identity = single && column.identity;
    columns.push_back(std::move(made));
  }
  return TableOfColumns(name, std::move(columns));
}

// The two ways in which a SELECT's query is bound: alone, and as the rows of an INSERT.
class QueryInstruction : public Instruction {
 public:
  QueryInstruction(const SelectStatement& statement, DeclaredVariables visible)
      : Instruction(statement.line), query_(*statement.query), visible_(visible) {}

 protected:
  Binder NewBinder(SessionContext& session, const Frame& frame, Plan& plan) const {
    return Binder(session.catalog, visible_.span(), frame.literals, plan.binding);
  }

  const Query& query_;

 private:
  const DeclaredVariables visible_;
};

// Tells the reader of each row when SQLite gives it. The number of rows.
int64_t ReportRows(SessionContext& session, QueryPlan& plan, Frame& frame, BatchReader& reader) {
  int64_t count = 0;
  std::vector<StoredValue> cells(plan.shape->types.size());
  PlanRun run(session, plan, frame);
  // An error before the first row leaves no result.
  bool more = run.Step();
  ReportResult(reader, *plan.shape, [&](RowReport& report) {
    while (more) {
      ++count;
      for (size_t i = 0; i < cells.size(); ++i) run.ReadTyped(i, *plan.shape, cells[i]);
      report.Send(cells);
      more = !plan.emitted.single_row && run.Step();
    }
  });
  return count;
}

class SelectInstruction final : public QueryInstruction {
 public:
  using QueryInstruction::QueryInstruction;

  void Prepare(SessionContext& session, Frame& frame) override {
    PrepareDeferred(line(), [&] { Find(session, frame); });
  }

  bool CountsRows() const override { return true; }
  Flow Execute(SessionContext& session, Frame& frame) override {
    QueryPlan& plan = Find(session, frame);
    if (BatchReader* const reader = session.results.reader()) {
      session.state.row_count = ReportRows(session, plan, frame, *reader);
      return Flow::kNext;
    }
    Rows rows = ReadRows(session, plan, frame);
    session.state.row_count = static_cast<int64_t>(rows.count);
    session.results.Add(std::move(rows));
    return Flow::kNext;
  }

 private:
  QueryPlan& Find(SessionContext& session, const Frame& frame) {
    return FindPlan(session, frame, plans_, [&](QueryPlan& plan) {
      const BoundQueryPtr query = NewBinder(session, frame, plan).BindQuery(query_);
      plan.shape = ShapeOf(*query);
      Rewrite(*query, plan.binding);
      plan.emitted = EmitQuery(*query);
    });
  }

  PlanCache<QueryPlan> plans_;
};

// SELECT @v = …
class AssigningSelectInstruction final : public QueryInstruction {
 public:
  using QueryInstruction::QueryInstruction;

  void Prepare(SessionContext& session, Frame& frame) override {
    PrepareDeferred(line(), [&] { Find(session, frame); });
  }

  Flow Execute(SessionContext& session, Frame& frame) override {
    AssigningPlan& plan = Find(session, frame);
    const int64_t count = ReadLast(session, frame, plan);
    // Parameters point into the variables while the statement runs.
    for (size_t i = 0; count > 0 && i < plan.row.size(); ++i) {
      std::swap(TargetOf(plan, i, frame), plan.row[i]);
    }
    session.state.row_count = count;
    return Flow::kNext;
  }

 private:
  AssigningPlan& Find(SessionContext& session, const Frame& frame) {
    return FindPlan(session, frame, plans_, [&](AssigningPlan& plan) {
      const BoundQueryPtr query = NewBinder(session, frame, plan).BindQuery(query_);
      for (const BoundItem& item : query->select->items) plan.targets.push_back(item.variable);
      plan.row.resize(plan.targets.size());
      plan.live = ReadsItsTargets(*query->select);
      Rewrite(*query, plan.binding);
      plan.emitted = plan.live ? EmitAssigningQuery(*query) : EmitQuery(*query);
    });
  }

  static StoredValue& TargetOf(const AssigningPlan& plan, size_t item, Frame& frame) {
    return frame.variables[static_cast<size_t>(plan.targets[item])];
  }

  // Reads all rows, and leaves the last in the plan. The number of rows.
  static int64_t ReadLast(SessionContext& session, Frame& frame, AssigningPlan& plan) {
    int64_t count = 0;
    PlanRun run(session, plan, frame);
    if (plan.live) session.state.live_frame = &frame;
    while (run.Step()) {
      ++count;
      for (size_t i = 0; i < plan.row.size(); ++i) {
        run.Read(static_cast<int>(i), plan.row[i]);
        if (plan.live) TargetOf(plan, i, frame) = plan.row[i];
      }
      if (plan.emitted.single_row) break;
    }
    session.state.live_frame = nullptr;
    return count;
  }

  PlanCache<AssigningPlan> plans_;
};

// SELECT … INTO: makes the table, then inserts the rows.
class SelectIntoInstruction final : public QueryInstruction {
 public:
  SelectIntoInstruction(const SelectStatement& statement, DeclaredVariables visible)
      : QueryInstruction(statement, visible), into_(*FindInto(query_)) {}

  void Prepare(SessionContext& session, Frame& frame) override {
    PrepareDeferred(line(), [&] { FindTable(session, frame); });
  }

  bool CountsRows() const override { return true; }
  Flow Execute(SessionContext& session, Frame& frame) override {
    const TablePtr definition = FindTable(session, frame).definition;
    StatementGuard guard(session.transaction, !definition->IsTemporary());
    const TablePtr table = session.catalog.CreateTable(definition);
    RunInsert(session, FindRows(session, frame, table), frame);
    guard.Commit();
    return Flow::kNext;
  }

 private:
  IntoPlan& FindTable(SessionContext& session, const Frame& frame) {
    return FindPlan(session, frame, tables_, [&](IntoPlan& plan) {
      const BoundQueryPtr query = NewBinder(session, frame, plan).BindQuery(query_);
      if (into_.last().starts_with('@')) Raise(errors::kSyntaxNear, into_.last());
      plan.definition = TableFor(into_.last(), *query);
    });
  }

  InsertPlan& FindRows(SessionContext& session, const Frame& frame, const TablePtr& table) {
    return FindPlan(session, frame, rows_, [&](InsertPlan& plan) {
      Binder binder = NewBinder(session, frame, plan);
      plan.table = table;
      BoundInsert bound = binder.BindInsertInto(table, binder.BindQuery(query_));
      Rewrite(bound, plan.binding);
      plan.columns = bound.columns;
      plan.emitted = EmitInsert(bound);
      plan.binding.dependencies.push_back(Dependency{into_, table, nullptr});
    });
  }

  const ObjectName& into_;
  PlanCache<IntoPlan> tables_;
  PlanCache<InsertPlan> rows_;
};

bool IsAssigning(const Query& query) {
  return query.block && std::ranges::any_of(query.block->items, [](const SelectItem& item) {
           return item.form == SelectItem::Form::kAssignment;
         });
}

}  // namespace

std::shared_ptr<const ResultShape> ShapeOf(const BoundQuery& query) {
  auto shape = std::make_shared<ResultShape>();
  for (const SourceColumn& column : query.columns) {
    shape->names.push_back(column.name);
    shape->types.push_back(column.type);
  }
  return shape;
}

Rows ReadRows(SessionContext& session, QueryPlan& plan, Frame& frame) {
  Rows rows{plan.shape, session.results.recordsets().TakeCells(), 0};
  PlanRun run(session, plan, frame);
  const size_t columns = plan.shape->types.size();
  while (run.Step()) {
    if (rows.count++ == 0) rows.cells.reserve(columns);
    for (size_t i = 0; i < columns; ++i) run.ReadTyped(i, *plan.shape, rows.cells.emplace_back());
    if (plan.emitted.single_row) break;
  }
  return rows;
}

InstructionPtr MakeInstruction(const SelectStatement& statement, DeclaredVariables visible) {
  const bool assigning = IsAssigning(*statement.query);
  if (FindInto(*statement.query) != nullptr) {
    if (assigning) Raise(errors::kSelectIntoAssigns);
    return std::make_unique<SelectIntoInstruction>(statement, visible);
  }
  if (assigning) return std::make_unique<AssigningSelectInstruction>(statement, visible);
  return std::make_unique<SelectInstruction>(statement, visible);
}

}  // namespace tavcc::sql
