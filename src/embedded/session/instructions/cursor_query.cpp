// DECLARE CURSOR, and what a cursor asks its query.
#include <algorithm>

#include "embedded/bind/walk.h"
#include "embedded/catalog/names.h"
#include "embedded/rewrite/rewrite.h"
#include "embedded/session/cursor.h"
#include "embedded/session/instructions/instructions.h"
#include "embedded/session/session_context.h"

namespace tavcc::sql {
namespace {

std::vector<const BoundSource*> SourcesOf(const BoundQuery& query) {
  std::vector<const BoundSource*> sources;
  ForEachSource(*query.select->from,
                [&](const BoundSource& source) { sources.push_back(&source); });
  return sources;
}

bool HasFullJoin(const BoundFrom& from) {
  if (from.source) return false;
  return from.join == BoundFrom::Join::kFull || HasFullJoin(*from.left) || HasFullJoin(*from.right);
}

// Whether each row of the query is made of one row of each of its tables.
bool IsMadeOfRows(const BoundQuery& query) {
  if (!query.select || !query.select->from) return false;
  const BoundSelect& select = *query.select;
  if (select.distinct || select.grouped || select.windowed || HasFullJoin(*select.from))
    return false;
  return std::ranges::all_of(SourcesOf(query),
                             [](const BoundSource* source) { return source->table != nullptr; });
}

bool HasUniqueKeys(const BoundQuery& query) {
  return std::ranges::all_of(SourcesOf(query), [](const BoundSource* source) {
    return std::ranges::any_of(source->table->keys,
                               [](const Key& key) { return key.kind != Key::Kind::kIndex; });
  });
}

BoundExpressionPtr NumberOf(const BoundSource& source) {
  return std::make_unique<BoundColumn>(source, BoundColumn::kRowNumber);
}

BoundConditionPtr CompareNumber(const BoundSource& source, ComparisonOperator op,
                                size_t parameter) {
  return std::make_unique<BoundComparison>(
      op, NumberOf(source),
      std::make_unique<BoundRowParameter>(Type(TypeKind::kBigInt), static_cast<int>(parameter)));
}

BoundConditionPtr Both(BoundConditionPtr a, BoundConditionPtr b) {
  if (!a) return b;
  auto both = std::make_unique<BoundLogical>(LogicalOperator::kAnd);
  both->operands.push_back(std::move(a));
  both->operands.push_back(std::move(b));
  return both;
}

// The numbers of the rows, behind the query's own columns.
void AddNumbers(BoundQuery& query) {
  for (const BoundSource* source : SourcesOf(query)) {
    query.select->items.push_back({NumberOf(*source), "", -1});
  }
}

// Each source tied to a row parameter. What joined it no longer counts: the row has been found.
void TieToParameters(BoundFrom& from, size_t& next, BoundConditionPtr& where) {
  if (from.source) {
    where = Both(std::move(where), CompareNumber(*from.source, ComparisonOperator::kEqual, next++));
    return;
  }
  TieToParameters(*from.left, next, where);
  if (from.join != BoundFrom::Join::kLeft) {
    from.join = BoundFrom::Join::kCross;
    from.on = nullptr;
    TieToParameters(*from.right, next, where);
    return;
  }
  from.on = nullptr;
  TieToParameters(*from.right, next, from.on);
}

class DeclareCursorInstruction final : public Instruction, public CursorQuery {
 public:
  DeclareCursorInstruction(const DeclareCursorStatement& statement, DeclaredVariables visible,
                           std::weak_ptr<Program> program)
      : Instruction(statement.line),
        statement_(statement),
        visible_(visible),
        program_(std::move(program)) {}

  void Prepare(SessionContext& session, Frame& frame) override {
    PrepareDeferred(line(), [&] { Find(session, frame, all_, [](BoundQuery&) {}); });
  }

  Flow Execute(SessionContext& session, Frame& frame) override {
    const std::string folded = FoldName(statement_.name);
    if (session.cursors.contains(folded)) Raise(errors::kCursorExists, statement_.name);
    Prepare(session, frame);
    Cursor& cursor = session.cursors[folded];
    cursor.program = program_.lock();
    cursor.query = this;
    cursor.owner = statement_.local ? &frame : nullptr;
    cursor.scroll = statement_.scroll;
    cursor.read_only = statement_.read_only;
    // The query sees the variables as they are now, whenever it is opened.
    cursor.literals.assign(frame.literals.begin(), frame.literals.end());
    cursor.frame.variables = frame.variables;
    cursor.frame.literals = cursor.literals;
    return Flow::kNext;
  }

  // A query that is not made of rows is read whole; one in an order, or cut by TOP, keeps which
  // rows it has; and that needs keys to know them by.
  CursorSight SightOf(SessionContext& session, Frame& frame) override {
    using Sight = DeclareCursorStatement::Sight;
    BindResult unused;
    const BoundQueryPtr query = Bound(session, frame, unused);
    if (statement_.sight == Sight::kStatic || !IsMadeOfRows(*query)) return CursorSight::kStatic;
    const bool keyset =
        statement_.sight == Sight::kKeyset || query->select->top || !query->order_by.empty();
    if (!keyset) return CursorSight::kDynamic;
    return HasUniqueKeys(*query) ? CursorSight::kKeyset : CursorSight::kStatic;
  }

  std::vector<TablePtr> Tables(SessionContext& session, Frame& frame) override {
    BindResult unused;
    std::vector<TablePtr> tables;
    const BoundQueryPtr query = Bound(session, frame, unused);
    for (const BoundSource* source : SourcesOf(*query)) tables.push_back(source->table);
    return tables;
  }

  std::shared_ptr<const ResultShape> Shape(SessionContext& session, Frame& frame) override {
    return Find(session, frame, all_, [](BoundQuery&) {}).shape;
  }

  Rows All(SessionContext& session, Frame& frame) override {
    return ReadRows(session, Find(session, frame, all_, [](BoundQuery&) {}), frame);
  }

  std::vector<CursorKey> Keys(SessionContext& session, Frame& frame) override {
    QueryPlan& plan = Find(session, frame, keys_, AddNumbers);
    std::vector<CursorKey> keys;
    PlanRun run(session, plan, frame);
    while (run.Step()) {
      CursorKey& key = keys.emplace_back();
      for (int i = Columns(plan); i < run.ColumnCount(); ++i) key.push_back(run.Column(i));
    }
    return keys;
  }

  Rows Read(SessionContext& session, Frame& frame, CursorSight sight,
            const CursorKey& key) override {
    const bool live = sight == CursorSight::kDynamic;
    QueryPlan& plan = Find(session, frame, read_, [&](BoundQuery& query) {
      AddNumbers(query);
      query.order_by.clear();
      query.select->top = {};
      size_t next = 0;
      BoundConditionPtr where = live ? std::move(query.select->where) : nullptr;
      TieToParameters(*query.select->from, next, where);
      query.select->where = std::move(where);
    });
    Rows rows{plan.shape, {}, 0};
    PlanRun run(session, plan, frame, key);
    if (!run.Step()) return rows;
    for (size_t i = 0; i < key.size(); ++i) {
      const bool gone = run.Column(Columns(plan) + static_cast<int>(i)).IsNull();
      if (gone && !key[i].IsNull()) return rows;
    }
    ReadRow(plan, run, rows);
    return rows;
  }

  Rows Step(SessionContext& session, Frame& frame, bool forward, int64_t& number) override {
    QueryPlan& plan = Find(session, frame, forward ? next_ : prior_, [&](BoundQuery& query) {
      AddNumbers(query);
      const BoundSource& source = *query.select->from->source;
      const auto op = forward ? ComparisonOperator::kGreater : ComparisonOperator::kLess;
      query.select->where = Both(std::move(query.select->where), CompareNumber(source, op, 0));
      BoundOrder order;
      order.expression = NumberOf(source);
      order.type = order.expression->type;
      order.descending = !forward;
      query.order_by.push_back(std::move(order));
    });
    Rows rows{plan.shape, {}, 0};
    const StoredValue from(number);
    PlanRun run(session, plan, frame, std::span(&from, 1));
    if (!run.Step()) return rows;
    number = run.Column(Columns(plan)).integer();
    ReadRow(plan, run, rows);
    return rows;
  }

 private:
  static int Columns(const QueryPlan& plan) { return static_cast<int>(plan.shape->types.size()); }

  static void ReadRow(const QueryPlan& plan, const PlanRun& run, Rows& rows) {
    for (size_t i = 0; i < plan.shape->types.size(); ++i) {
      run.ReadTyped(i, *plan.shape, rows.cells.emplace_back());
    }
    rows.count = 1;
  }

  BoundQueryPtr Bound(SessionContext& session, const Frame& frame, BindResult& result) {
    Binder binder(session.catalog, visible_.span(), frame.literals, result);
    return binder.BindQuery(*statement_.query);
  }

  template <class Change>
  QueryPlan& Find(SessionContext& session, const Frame& frame, PlanCache<QueryPlan>& plans,
                  const Change& change) {
    return FindPlan(session, frame, plans, [&](QueryPlan& plan) {
      const BoundQueryPtr query = Bound(session, frame, plan.binding);
      plan.shape = ShapeOf(*query);
      change(*query);
      Rewrite(*query, plan.binding);
      plan.emitted = EmitQuery(*query);
    });
  }

  const DeclareCursorStatement& statement_;
  const DeclaredVariables visible_;
  const std::weak_ptr<Program> program_;
  PlanCache<QueryPlan> all_, keys_, read_, next_, prior_;
};

}  // namespace

InstructionPtr MakeDeclareCursor(const DeclareCursorStatement& statement, DeclaredVariables visible,
                                 std::weak_ptr<Program> program) {
  return std::make_unique<DeclareCursorInstruction>(statement, visible, std::move(program));
}

}  // namespace tavcc::sql
