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
  template <class T>
  std::unique_ptr<T> Copy(const std::unique_ptr<T>& tree) {
    return tree ? Copy(*tree) : nullptr;
  }
  template <class T>
  std::vector<std::unique_ptr<T>> Copy(const std::vector<std::unique_ptr<T>>& trees) {
    std::vector<std::unique_ptr<T>> out;
    for (const auto& tree : trees) out.push_back(Copy(tree));
    return out;
  }
  BoundExpressionPtr CopyKind(const BoundExpression& expression);
  BoundExpressionPtr CopyColumn(const BoundColumn& column);
  BoundExpressionPtr CopyConvert(const BoundConvert& convert);
  BoundExpressionPtr CopyCall(const BoundCall& call);
  BoundExpressionPtr CopyCase(const BoundCase& chosen);
  BoundExpressionPtr CopyAggregate(const BoundAggregate& aggregate);
  BoundConditionPtr CopyIn(const BoundCondition& condition);
  BoundFromPtr Copy(const BoundFrom& from);
  std::unique_ptr<BoundSelect> Copy(const BoundSelect& select);
  const BoundSource* Now(const BoundSource* source) const;

  int& next_source_;
  std::unordered_map<const BoundSource*, const BoundSource*> copies_;
  std::unordered_map<const BoundSource*, const BoundSelect*> shown_;
};

}  // namespace tavcc::sql
