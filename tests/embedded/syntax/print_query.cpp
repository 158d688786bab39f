// Queries and what they read from.
#include "embedded/syntax/print_impl.h"

namespace tavcc::sql {

void Printer::AddTop(const std::optional<TopClause>& top) {
  if (!top) return;
  Open("top");
  Add(top->count.get());
  if (top->percent) Word("percent");
  if (top->with_ties) Word("ties");
  Close();
}

void Printer::AddSources(const std::vector<TableSourcePtr>& sources) {
  if (sources.empty()) return;
  Open("from");
  for (const TableSourcePtr& source : sources) Add(*source);
  Close();
}

void Printer::AddWhere(const ConditionPtr& where) {
  if (!where) return;
  Open("where");
  Add(where.get());
  Close();
}

void Printer::Add(const SelectItem& item) {
  switch (item.form) {
    case SelectItem::Form::kStar:
      Add(item.qualifier);
      out_ += item.qualifier.parts.empty() ? "*" : ".*";
      return;
    case SelectItem::Form::kAssignment:
      Open("set");
      Word(item.variable);
      break;
    case SelectItem::Form::kExpression:
      if (item.alias.empty()) {
        Add(item.expression.get());
        return;
      }
      Open("as");
      Word(item.alias);
      break;
  }
  Add(item.expression.get());
  Close();
}

void Printer::Add(const SelectBlock& block) {
  Open("select");
  if (block.distinct) Word("distinct");
  AddTop(block.top);
  for (const SelectItem& item : block.items) Add(item);
  if (block.into) {
    Open("into");
    Add(*block.into);
    Close();
  }
  AddSources(block.from);
  AddWhere(block.where);
  if (!block.group_by.empty()) {
    Open("group");
    AddAll(block.group_by);
    Close();
  }
  if (block.having) {
    Open("having");
    Add(block.having.get());
    Close();
  }
  Close();
}

// (with (as name (columns) query) … what it stands before)
void Printer::AddWith(const WithClause& with) {
  Open("with");
  for (const CommonTable& table : with.tables) {
    Open("as");
    Word(table.name);
    if (!table.columns.empty()) Add(table.columns);
    Add(*table.query);
    Close();
  }
  if (with.max_recursion != WithClause{}.max_recursion) {
    Word("max-recursion " + std::to_string(with.max_recursion));
  }
}

void Printer::Add(const Query& query) {
  if (query.with.tables.empty()) return AddQuery(query);
  AddWith(query.with);
  AddQuery(query);
  Close();
}

void Printer::AddQuery(const Query& query) {
  if (!query.order_by.empty()) Open("order");
  if (query.block) {
    Add(*query.block);
  } else {
    constexpr std::string_view kWords[] = {"union", "union-all", "except", "intersect"};
    Open(kWords[static_cast<size_t>(query.set_operator)]);
    Add(*query.left);
    Add(*query.right);
    Close();
  }
  if (query.order_by.empty()) return;
  for (const OrderItem& item : query.order_by) Add(item);
  Close();
}

void Printer::Add(const OrderItem& item) {
  if (item.descending) Open("desc");
  Add(item.expression.get());
  if (item.descending) Close();
}

void Printer::Add(const FrameBound& bound) {
  constexpr std::string_view kWords[] = {"first", "before", "current", "after", "last"};
  const bool counted =
      bound.kind == FrameBound::Kind::kPreceding || bound.kind == FrameBound::Kind::kFollowing;
  Word(std::string(kWords[static_cast<size_t>(bound.kind)]) +
       (counted ? '-' + std::to_string(bound.rows) : ""));
}

// (over (partition a) (order b) (rows begin end)) in the call that it belongs to.
void Printer::AddOver(const WindowClause& over) {
  Open("over");
  if (!over.partition_by.empty()) {
    Open("partition");
    AddAll(over.partition_by);
    Close();
  }
  if (!over.order_by.empty()) {
    Open("order");
    for (const OrderItem& item : over.order_by) Add(item);
    Close();
  }
  if (over.frame) {
    Open(over.frame->range ? "range" : "rows");
    Add(over.frame->begin);
    Add(over.frame->end);
    Close();
  }
  Close();
}

void Printer::Add(const TableSource& source) {
  switch (source.kind) {
    case TableSource::Kind::kNamed: {
      const auto& table = To<NamedTable>(source);
      const bool bare = table.alias.empty() && table.hints.empty();
      if (!bare) Open(table.alias.empty() ? "table" : "as");
      if (!table.alias.empty()) Word(table.alias);
      Add(table.name);
      for (const std::string& hint : table.hints) Word(hint);
      if (!bare) Close();
      return;
    }
    case TableSource::Kind::kDerived: {
      const auto& table = To<DerivedTable>(source);
      Open("as");
      Word(table.alias);
      if (!table.columns.empty()) Add(table.columns);
      Add(*table.query);
      Close();
      return;
    }
    case TableSource::Kind::kJoin: {
      const auto& joined = To<JoinedTable>(source);
      constexpr std::string_view kWords[] = {"join", "left", "right", "full", "cross"};
      Open(kWords[static_cast<size_t>(joined.join)]);
      Add(*joined.left);
      Add(*joined.right);
      if (joined.on) Add(joined.on.get());
      Close();
      return;
    }
  }
}

}  // namespace tavcc::sql
