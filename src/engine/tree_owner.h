// The owner of a tree, which is released at the end of the owner's scope.
#pragma once

#include <utility>

#include "engine/lifecycle.h"
#include "engine/plan.h"

namespace tessel {

template <class Node>
class TreeOwner {
 public:
  explicit TreeOwner(const TypeOf<Node>& type, Node* root = nullptr) : type_(type), root_(root) {}
  ~TreeOwner() { FreeTree(type_, root_); }
  TreeOwner(TreeOwner&& other) noexcept : type_(other.type_), root_(other.Release()) {}
  TreeOwner(const TreeOwner&) = delete;
  TreeOwner& operator=(const TreeOwner&) = delete;
  TreeOwner& operator=(TreeOwner&&) = delete;

  [[nodiscard]] const Type<Node>& NodeType() const { return type_; }
  [[nodiscard]] Node* Get() const { return root_; }
  Node* operator->() const { return root_; }
  // For a function that makes the tree.
  [[nodiscard]] Node** Out() { return &root_; }
  // Gives the tree away.
  [[nodiscard]] Node* Release() { return std::exchange(root_, nullptr); }

 private:
  Type<Node> type_;
  Node* root_;
};

template <class Descriptor>
TreeOwner(const Descriptor&) -> TreeOwner<typename Descriptor::Node>;
template <class Descriptor>
TreeOwner(const Descriptor&, typename Descriptor::Node*) -> TreeOwner<typename Descriptor::Node>;

}  // namespace tessel
