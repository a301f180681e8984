// Trees in tests, through the public interface.
#pragma once

#include <cstdint>
#include <utility>

#include "support/octets.h"
#include "tessel/tessel.h"

namespace test {

// Owns a tree of any type.
class Tree {
 public:
  explicit Tree(const Asn1Item& item, void* root = nullptr) : item_(&item), root_(root) {}
  ~Tree() { FreeAsn1Object(item_, root_); }
  Tree(Tree&& other) noexcept : item_(other.item_), root_(std::exchange(other.root_, nullptr)) {}
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;
  Tree& operator=(Tree&&) = delete;

  [[nodiscard]] const Asn1Item& Item() const { return *item_; }
  [[nodiscard]] void* Root() const { return root_; }
  [[nodiscard]] void** Out() { return &root_; }
  void Reset() { FreeAsn1Object(item_, std::exchange(root_, nullptr)); }
  template <class Node>
  [[nodiscard]] Node& As() const {
    return *static_cast<Node*>(root_);
  }

 private:
  const Asn1Item* item_;
  void* root_;
};

struct DecodeResult {
  uint32_t status;
  uint32_t consumed;
  Tree tree;
};

// Decodes from guarded memory that is gone when the function returns: nothing is read beyond the input, and the tree
// does not depend on it.
DecodeResult Decode(const Asn1Item& item, const Bytes& input);

struct EncodeResult {
  uint32_t status;
  Bytes octets;
};

EncodeResult Encode(const Asn1Item& item, const void* node);

// A deep copy, as the interface offers it for any type: the DEFAULT of an OPTIONAL item is copied when it is created.
uint32_t Copy(const Asn1Item& item, const void* source, void** copy);

}  // namespace test
