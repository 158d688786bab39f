// One pass over a bound statement that may change it: what a rewrite is made of. A rewrite
// overrides what it looks at; the pass finds it wherever it stands, subqueries and derived tables
// included.
#pragma once

#include "embedded/bind/bound.h"

namespace tavcc::sql {

class StatementPass {
 public:
  virtual ~StatementPass() = default;

  void Run(BoundQuery& query);
  void Run(BoundInsert& insert);
  void Run(BoundUpdate& update);
  void Run(BoundDelete& remove);
  void Run(BoundValues& values);

 protected:
  // Statements, before what stands in them.
  virtual void OnUpdate(BoundUpdate&) {}
  virtual void OnDelete(BoundDelete&) {}
  // A query, before what stands in it.
  virtual void OnQuery(BoundQuery&) {}
  // A FROM clause and the WHERE beside it, before what stands in them. Not for a query without
  // FROM.
  virtual void OnBlock(BoundFrom& /*from*/, BoundConditionPtr& /*where*/) {}
  // A condition, after what stands in it.
  virtual void OnCondition(BoundConditionPtr&) {}

 private:
  void Walk(BoundExpression& expression);
  void Walk(BoundConditionPtr& condition);
  void Walk(BoundQuery& query) { Run(query); }
  void Walk(BoundSelect& select);
  void Walk(BoundFrom& from);
  void Walk(BoundSource& source);
  template <class Node>
  void WalkInside(Node& node);
  template <class Change>
  void WalkChange(Change& change);
};

}  // namespace tavcc::sql
