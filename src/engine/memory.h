// The library's memory. Everything that it keeps comes from here, over the heap of the C run-time.
//
// A tree that one call makes (decodes, creates, copies) costs one allocation or a few, not one a node: a Pool places
// its nodes and their contents in blocks that hang from the tree's root, and all the blocks go back to the heap when
// the root is released. What replaces a member later is an allocation of its own.
//
// Which of the two a pointer is can be read from its address. The heap aligns what it gives to two pointers' size;
// whatever is placed inside a block is kept off that alignment. So releasing a pointer into a block does nothing, and
// releasing any other gives its memory back, without a header, a table or a look at the parent:
//
//     heap ->  | next block | root ... | node | node | ...      ... | octets | octets of the input |
//              ^            ^          ^                            ^
//              aligned      aligned:   odd: lives and dies          never aligned: the same
//                           owned      with the root
//
// Only the root of a tree may be handed to the caller as the caller's own, and a tree never takes in a part of another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace tessel {

using Octets = std::span<const uint8_t>;

// What malloc guarantees on every platform that the library is built for.
inline constexpr size_t kHeapAlignment = 2 * sizeof(void*);

inline bool OwnsItsMemory(const void* pointer) { return reinterpret_cast<uintptr_t>(pointer) % kHeapAlignment == 0; }

// Octets and arrays on their own; null when there is no memory. Releasing null or a pointer into a block does nothing.
[[nodiscard]] void* AllocateOctets(size_t size);
void ReleaseOctets(void* octets);

// Returns a block of `newSize` with the first `oldSize` octets of the old one, which is then gone; when there is no
// memory, null, and the old block stays as it was.
[[nodiscard]] void* GrowOctets(void* octets, size_t oldSize, size_t newSize);

// Releases a node; the root of a tree takes its blocks along.
void ReleaseNode(void* node);

struct OctetsDeleter {
  void operator()(void* octets) const { ReleaseOctets(octets); }
};
// Work memory that ends with its scope.
template <class T>
using Scratch = std::unique_ptr<T[], OctetsDeleter>;

// Places the nodes and contents of one new tree. The first node is the root, and owns the pool's blocks from then on:
// the pool itself has nothing to release, and after the root was released it must not be used again.
class Pool {
 public:
  // The first block will have `room` octets beside the root.
  explicit Pool(size_t room) : nextRoom_(room) {}
  // For decoding: the first block will also hold a copy of `input`, and room for the nodes that it usually makes.
  explicit Pool(Octets input);

  // A node of `size` octets, not initialised; null when there is no memory.
  [[nodiscard]] void* Node(size_t size);
  // A copy of `octets`, which must not be empty; null when there is no memory. Part of the pool's input is not copied
  // again. A large copy is an allocation of its own, so the node that holds the result must be released with its tree.
  [[nodiscard]] uint8_t* Keep(Octets octets);

 private:
  struct Block;

  bool AddBlock(size_t room);
  void* Root(size_t size);
  uint8_t* PlaceOctets(size_t size);

  Octets input_;
  uint8_t* inputCopy_ = nullptr;
  Block* first_ = nullptr;
  // What is free in the newest block: nodes are placed upwards from `low_`, octets downwards from `high_`.
  uint8_t* low_ = nullptr;
  uint8_t* high_ = nullptr;
  size_t nextRoom_;
};

}  // namespace tessel
