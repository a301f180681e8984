// A tree that ends with its scope.
#pragma once

#include <utility>

#include "engine/descriptor.h"
#include "engine/lifecycle.h"

namespace tessel {

template <class Node>
class TreeOwner {
 public:
  explicit TreeOwner(const tessel::Item<Node>& item, Node* root = nullptr) : item_(&item), root_(root) {}
  ~TreeOwner() { FreeTree(*item_, root_); }
  TreeOwner(TreeOwner&& other) noexcept : item_(other.item_), root_(other.Release()) {}
  TreeOwner(const TreeOwner&) = delete;
  TreeOwner& operator=(const TreeOwner&) = delete;
  TreeOwner& operator=(TreeOwner&&) = delete;

  [[nodiscard]] const tessel::Item<Node>& Item() const { return *item_; }
  [[nodiscard]] Node* Get() const { return root_; }
  Node* operator->() const { return root_; }
  // For a function that makes the tree.
  [[nodiscard]] Node** Out() { return &root_; }
  // Gives the tree away.
  [[nodiscard]] Node* Release() { return std::exchange(root_, nullptr); }

 private:
  const tessel::Item<Node>* item_;
  Node* root_;
};

}  // namespace tessel
