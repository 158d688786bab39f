#include "embedded/bind/same.h"

#include <algorithm>
#include <utility>

#include "embedded/bind/parts.h"

namespace tavcc::sql {
namespace {

class Comparer {
 public:
  bool Same(const BoundExpression& a, const BoundExpression& b) {
    return &a == &b || (a.type == b.type && SameKind(a, b));
  }
  bool Same(const BoundCondition& a, const BoundCondition& b) { return &a == &b || SameKind(a, b); }

  // A node, or a value in one.
  template <class T>
  bool Same(const T& a, const T& b) {
    if constexpr (HasParts<const T>) {
      return SameParts(a, b);
    } else {
      return a == b;
    }
  }

 private:
  template <class Tree>
  bool SameKind(const Tree& a, const Tree& b) {
    return a.kind == b.kind &&
           OnKind(a, [&](const auto& node) { return Same(node, static_cast<decltype(node)>(b)); });
  }
  template <class Node>
  bool SameParts(const Node& a, const Node& b) {
    return std::apply(
        [&](const auto&... of_a) {
          return std::apply([&](const auto&... of_b) { return (Same(of_a, of_b) && ...); },
                            Parts(b));
        },
        Parts(a));
  }
  // Both are absent, or both say the same.
  template <class T>
  bool Same(const std::unique_ptr<T>& a, const std::unique_ptr<T>& b) {
    return a && b ? Same(*a, *b) : !a && !b;
  }
  template <class T>
  bool Same(const std::vector<T>& a, const std::vector<T>& b) {
    return std::ranges::equal(a, b, [&](const T& x, const T& y) { return Same(x, y); });
  }
  bool Same(const BoundSource* a, const BoundSource* b) {
    return a == b || std::ranges::find(inner_, std::pair(a, b)) != inner_.end();
  }
  bool Same(const BoundSource& a, const BoundSource& b) {
    if (!SameParts(a, b)) return false;
    inner_.emplace_back(&a, &b);
    return true;
  }

  // The sources of the subqueries at hand, by their places.
  std::vector<std::pair<const BoundSource*, const BoundSource*>> inner_;
};

}  // namespace

bool AreSame(const BoundExpression& a, const BoundExpression& b) {
  return Comparer().Same(a, b);
}

bool AreSame(const BoundCondition& a, const BoundCondition& b) {
  return Comparer().Same(a, b);
}

bool AreSame(const BoundQuery& a, const BoundQuery& b) {
  return Comparer().Same(a, b);
}

}  // namespace tavcc::sql
