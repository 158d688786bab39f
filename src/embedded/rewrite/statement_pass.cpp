#include "embedded/rewrite/statement_pass.h"

#include "embedded/bind/parts.h"

namespace tavcc::sql {

template <class Node>
void StatementPass::WalkInside(Node& node) {
  ForEachTree(node, [&](auto& part) { Walk(part); });
}

void StatementPass::Run(BoundQuery& query) {
  OnQuery(query);
  WalkInside(query);
}

void StatementPass::Run(BoundInsert& insert) {
  for (const auto& row : insert.rows) {
    for (const auto& value : row) Walk(*value);
  }
  if (insert.query) Run(*insert.query);
}

void StatementPass::Run(BoundUpdate& update) {
  OnUpdate(update);
  WalkChange(update);
  for (const auto& assignment : update.assignments) Walk(*assignment.value);
}

void StatementPass::Run(BoundDelete& remove) {
  OnDelete(remove);
  WalkChange(remove);
}

void StatementPass::Run(BoundValues& values) {
  for (const auto& value : values.values) Walk(*value);
  if (values.condition) Walk(values.condition);
}

template <class Change>
void StatementPass::WalkChange(Change& change) {
  OnBlock(*change.from, change.where);
  if (change.top) Walk(*change.top.count);
  Walk(*change.from);
  if (change.where) Walk(change.where);
}

void StatementPass::Walk(BoundSelect& select) {
  if (select.from) OnBlock(*select.from, select.where);
  WalkInside(select);
}

void StatementPass::Walk(BoundFrom& from) {
  WalkInside(from);
}

void StatementPass::Walk(BoundSource& source) {
  WalkInside(source);
}

void StatementPass::Walk(BoundExpression& expression) {
  OnKind(expression, [this](auto& node) { WalkInside(node); });
}

void StatementPass::Walk(BoundConditionPtr& condition) {
  OnKind(*condition, [this](auto& node) { WalkInside(node); });
  OnCondition(condition);
}

}  // namespace tavcc::sql
