// What the nodes of the parsed tree and of the bound tree have in common: a base for each sort of
// node (Expression, BoundCondition …), and one struct for each of its kinds.
#pragma once

#include <type_traits>

namespace tavcc::sql {

// The node of a kind says which it is in its type, and nowhere else.
template <class Base, typename Base::Kind kOwnKind>
struct NodeOf : Base {
  static constexpr typename Base::Kind kKind = kOwnKind;
  NodeOf() : Base(kKind) {}

 protected:
  template <class... Arguments>
  requires(sizeof...(Arguments) > 0) explicit NodeOf(const Arguments&... arguments)
      : Base(kKind, arguments...) {}
};

template <class Base, class Node>
using ConstAs = std::conditional_t<std::is_const_v<Base>, const Node, Node>;

// The node as one of this kind; null when it is of another.
template <class Node, class Base>
ConstAs<Base, Node>* As(Base& node) {
  return node.kind == Node::kKind ? &static_cast<ConstAs<Base, Node>&>(node) : nullptr;
}

// All kinds of a base.
template <class... Nodes>
struct Kinds {};

// Calls use(node) with the node as what its kind says that it is.
template <class First, class... Rest, class Base, class Use>
auto OnKindOf(Kinds<First, Rest...>, Base& node, const Use& use) {
  if constexpr (sizeof...(Rest) > 0) {
    if (node.kind != First::kKind) return OnKindOf(Kinds<Rest...>(), node, use);
  }
  return use(static_cast<ConstAs<Base, First>&>(node));
}

}  // namespace tavcc::sql
