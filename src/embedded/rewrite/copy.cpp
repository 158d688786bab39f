#include "embedded/rewrite/copy.h"

#include <utility>

#include "embedded/bind/parts.h"

namespace tavcc::sql {

const BoundSource* TreeCopy::Now(const BoundSource* source) const {
  const auto copy = copies_.find(source);
  return copy == copies_.end() ? source : copy->second;
}

// A node, or a value in one.
template <class T>
void TreeCopy::Assign(T& to, const T& from) {
  if constexpr (std::same_as<T, const BoundSource*>) {
    to = Now(from);
  } else if constexpr (HasParts<T>) {
    CopyInto(to, from);
  } else {
    to = from;
  }
}

template <class T>
void TreeCopy::Assign(std::unique_ptr<T>& to, const std::unique_ptr<T>& from) {
  to = from ? Copy(*from) : nullptr;
}

template <class T>
void TreeCopy::Assign(std::vector<T>& to, const std::vector<T>& from) {
  for (const T& part : from) Assign(to.emplace_back(), part);
}

template <class Node>
void TreeCopy::CopyInto(Node& copy, const Node& node) {
  const auto assign = [this](auto to, auto from) {
    std::apply(
        [&](auto&... part) {
          std::apply([&](const auto&... original) { (Assign(part, original), ...); }, from);
        },
        to);
  };
  assign(Parts(copy), Parts(node));
  assign(Marks(copy), Marks(node));
}

template <class Node>
std::unique_ptr<Node> TreeCopy::CopyNode(const Node& node) {
  auto copy = std::make_unique<Node>();
  CopyInto(*copy, node);
  return copy;
}

std::unique_ptr<BoundSource> TreeCopy::Copy(const BoundSource& source) {
  auto copy = std::make_unique<BoundSource>();
  copy->id = next_source_++;
  CopyInto(*copy, source);
  if (const auto recursion = recursions_.find(source.recursion); recursion != recursions_.end()) {
    copy->recursion = recursion->second;
  }
  copies_[&source] = copy.get();
  return copy;
}

BoundExpressionPtr TreeCopy::Copy(const BoundExpression& expression) {
  return OnKind(expression, [&]<class Node>(const Node& node) -> BoundExpressionPtr {
    if constexpr (std::same_as<Node, BoundColumn>) {
      if (const auto shown = shown_.find(node.source); shown != shown_.end()) {
        return Copy(*shown->second->items[static_cast<size_t>(node.column)].expression);
      }
    }
    auto copy = std::make_unique<Node>();
    CopyInto(*copy, node);
    copy->type = node.type;
    copy->nullable = node.nullable;
    return copy;
  });
}

BoundConditionPtr TreeCopy::Copy(const BoundCondition& condition) {
  return OnKind(condition,
                [&]<class Node>(const Node& node) -> BoundConditionPtr { return CopyNode(node); });
}

BoundQueryPtr TreeCopy::Copy(const BoundQuery& query) {
  if (query.recursion == 0) return CopyNode(query);
  const int number = recursions_[query.recursion] = next_source_++;
  BoundQueryPtr copy = CopyNode(query);
  copy->recursion = number;
  return copy;
}

}  // namespace tavcc::sql
