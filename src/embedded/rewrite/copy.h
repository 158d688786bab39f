// Copies of parts of a bound tree.
#pragma once

#include <unordered_map>

#include "embedded/bind/bound.h"

namespace tavcc::sql {

// Copies one or several parts that belong together. A source that is copied is a source of its own,
// with a number of its own, and columns of the first one become columns of the copy. Columns of
// other sources stay what they are.
class TreeCopy {
 public:
  // `next_source`: the number of the statement's next source, which is counted on.
  explicit TreeCopy(int& next_source) : next_source_(next_source) {}

  // From now on the columns of `source`, a derived table, become the items of one of the blocks of
  // its query.
  void Show(const BoundSource& source, const BoundSelect& block) { shown_[&source] = &block; }

  std::unique_ptr<BoundSource> Copy(const BoundSource& source);
  BoundQueryPtr Copy(const BoundQuery& query);
  BoundExpressionPtr Copy(const BoundExpression& expression);
  BoundConditionPtr Copy(const BoundCondition& condition);

 private:
  template <class Node>
  void CopyInto(Node& copy, const Node& node);
  template <class T>
  void Assign(T& to, const T& from);
  template <class T>
  void Assign(std::unique_ptr<T>& to, const std::unique_ptr<T>& from);
  template <class T>
  void Assign(std::vector<T>& to, const std::vector<T>& from);
  template <class Node>
  std::unique_ptr<Node> CopyNode(const Node& node);
  std::unique_ptr<BoundFrom> Copy(const BoundFrom& from) { return CopyNode(from); }
  std::unique_ptr<BoundSelect> Copy(const BoundSelect& select) { return CopyNode(select); }
  const BoundSource* Now(const BoundSource* source) const;

  int& next_source_;
  std::unordered_map<const BoundSource*, const BoundSource*> copies_;
  std::unordered_map<const BoundSource*, const BoundSelect*> shown_;
  std::unordered_map<int, int> recursions_;  // recursive queries by number, and their copies'
};

}  // namespace tavcc::sql
