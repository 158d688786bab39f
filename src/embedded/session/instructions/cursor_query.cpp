// DECLARE CURSOR, and what a cursor asks its query.
#include <algorithm>

#include "embedded/bind/walk.h"
#include "embedded/catalog/names.h"
#include "embedded/rewrite/rewrite.h"
#include "embedded/session/cursor.h"
#include "embedded/session/engine.h"
#include "embedded/session/instructions/instructions.h"

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
  if (select.distinct || select.grouped || HasFullJoin(*select.from)) return false;
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
  auto comparison = std::make_unique<BoundComparison>();
  comparison->op = op;
  comparison->left = NumberOf(source);
  comparison->right = std::make_unique<BoundVariable>(
      Type(TypeKind::kBigInt), Binder::kRowParameters + static_cast<int>(parameter), "");
  return comparison;
}

BoundConditionPtr Both(BoundConditionPtr a, BoundConditionPtr b) {
  if (!a) return b;
  auto both = std::make_unique<BoundLogical>(BoundCondition::Kind::kAnd);
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

  void Prepare(Engine& engine, Frame& frame) override {
    PrepareDeferred(line(), [&] { Find(engine, frame, all_, [](BoundQuery&) {}); });
  }

  Flow Execute(Engine& engine, Frame& frame) override {
    const std::string folded = FoldName(statement_.name);
    if (engine.cursors().contains(folded)) Raise(16915, statement_.name);
    Prepare(engine, frame);
    Cursor& cursor = engine.cursors()[folded];
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
  CursorSight SightOf(Engine& engine, Frame& frame) override {
    using Sight = DeclareCursorStatement::Sight;
    BindResult unused;
    const BoundQueryPtr query = Bound(engine, frame, unused);
    if (statement_.sight == Sight::kStatic || !IsMadeOfRows(*query)) return CursorSight::kStatic;
    const bool keyset =
        statement_.sight == Sight::kKeyset || query->select->top || !query->order_by.empty();
    if (!keyset) return CursorSight::kDynamic;
    return HasUniqueKeys(*query) ? CursorSight::kKeyset : CursorSight::kStatic;
  }

  std::vector<TablePtr> Tables(Engine& engine, Frame& frame) override {
    BindResult unused;
    std::vector<TablePtr> tables;
    const BoundQueryPtr query = Bound(engine, frame, unused);
    for (const BoundSource* source : SourcesOf(*query)) tables.push_back(source->table);
    return tables;
  }

  std::shared_ptr<const ResultShape> Shape(Engine& engine, Frame& frame) override {
    return Find(engine, frame, all_, [](BoundQuery&) {}).shape;
  }

  Rows All(Engine& engine, Frame& frame) override {
    return ReadRows(engine, Find(engine, frame, all_, [](BoundQuery&) {}), frame);
  }

  std::vector<CursorKey> Keys(Engine& engine, Frame& frame) override {
    Plan& plan = Find(engine, frame, keys_, AddNumbers);
    std::vector<CursorKey> keys;
    PlanRun run(engine, plan, frame);
    while (run.Step()) {
      CursorKey& key = keys.emplace_back();
      for (int i = Columns(plan); i < run.ColumnCount(); ++i) key.push_back(run.Column(i));
    }
    return keys;
  }

  Rows Read(Engine& engine, Frame& frame, CursorSight sight, const CursorKey& key) override {
    const bool live = sight == CursorSight::kDynamic;
    Plan& plan = Find(engine, frame, read_, [&](BoundQuery& query) {
      AddNumbers(query);
      query.order_by.clear();
      query.select->top = {};
      size_t next = 0;
      BoundConditionPtr where = live ? std::move(query.select->where) : nullptr;
      TieToParameters(*query.select->from, next, where);
      query.select->where = std::move(where);
    });
    Rows rows{plan.shape, {}, 0};
    PlanRun run(engine, plan, frame, key);
    if (!run.Step()) return rows;
    for (size_t i = 0; i < key.size(); ++i) {
      const bool gone = run.Column(Columns(plan) + static_cast<int>(i)).IsNull();
      if (gone && !key[i].IsNull()) return rows;
    }
    Take(plan, run, rows);
    return rows;
  }

  Rows Step(Engine& engine, Frame& frame, bool forward, int64_t& number) override {
    Plan& plan = Find(engine, frame, forward ? next_ : prior_, [&](BoundQuery& query) {
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
    PlanRun run(engine, plan, frame, std::span(&from, 1));
    if (!run.Step()) return rows;
    number = run.Column(Columns(plan)).integer();
    Take(plan, run, rows);
    return rows;
  }

 private:
  static int Columns(const Plan& plan) { return static_cast<int>(plan.shape->types.size()); }

  static void Take(const Plan& plan, const PlanRun& run, Rows& rows) {
    for (size_t i = 0; i < plan.shape->types.size(); ++i) {
      run.ReadTyped(i, rows.cells.emplace_back());
    }
    rows.count = 1;
  }

  BoundQueryPtr Bound(Engine& engine, const Frame& frame, BindResult& result) {
    Binder binder(engine.catalog(), visible_.span(), frame.literals, result);
    return binder.BindQuery(*statement_.query);
  }

  template <class Change>
  Plan& Find(Engine& engine, const Frame& frame, PlanCache& plans, const Change& change) {
    return FindPlan(engine, frame, plans, [&](Plan& plan) {
      const BoundQueryPtr query = Bound(engine, frame, plan.binding);
      auto shape = std::make_shared<ResultShape>();
      for (const SourceColumn& column : query->columns) {
        shape->names.push_back(column.name);
        shape->types.push_back(column.type);
      }
      plan.shape = std::move(shape);
      change(*query);
      Rewrite(*query, plan.binding);
      plan.emitted = EmitQuery(*query);
    });
  }

  const DeclareCursorStatement& statement_;
  const DeclaredVariables visible_;
  const std::weak_ptr<Program> program_;
  PlanCache all_, keys_, read_, next_, prior_;
};

}  // namespace

InstructionPtr MakeDeclareCursor(const DeclareCursorStatement& statement, DeclaredVariables visible,
                                 std::weak_ptr<Program> program) {
  return std::make_unique<DeclareCursorInstruction>(statement, visible, std::move(program));
}

}  // namespace tavcc::sql
