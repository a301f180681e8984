// The library's memory. Everything that it keeps comes from here, over the heap of the C run-time.
//
// A tree that one call makes (decodes, creates, copies) costs one allocation or a few, not one a node: a Pool places
// its nodes and their contents in blocks that hang from the tree's root, and all the blocks go back to the heap when
// the root is released. What replaces a member later is an allocation of its own.
//
// Whether a pointer leads into a block or to an allocation of its own can be read from its address. The heap aligns its
// memory to the size of two pointers (memory that is aligned to less is not used). Whatever is placed inside a block is
// kept off that alignment. So releasing a pointer into a block does nothing, and releasing any other gives its memory
// back. Neither takes a header, a table or a look at the parent:
//
//     heap ->  | next block | root ... | node | node | ...      ... | octets | octets of the input |
//              ^            ^          ^                            ^
//              aligned      aligned:   not aligned: released        not aligned: released
//                           released   with the root                with the root
//
// A caller can own only the root of a tree, and a tree never takes a part of another tree.
//
// A tree that was decoded, and not changed since, consists of blocks only: it is released without a visit to its nodes,
// and the size of its encoding is known. Whatever changes a tree calls NoteChange, which ends a generation; a tree
// remembers the generation in which it was decoded. All trees share one generation, so a change of one makes all others
// count as changed too: they are then handled node by node, which is slower but correct.
//
// Built with TESSEL_SEPARATE_NODES, every node and every content is an allocation of its own: nothing is fast then, but
// AddressSanitizer sees where each begins and ends, and when it is released. The fuzz programs are built both ways.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <utility>

#include "engine/require.h"
#include "tessel/octets.hpp"

namespace tessel {

#ifdef TESSEL_SEPARATE_NODES
inline constexpr bool kSeparateNodes = true;
#else
inline constexpr bool kSeparateNodes = false;
#endif

// The largest size of a node. It is so far from the end of the address space that sums of sizes cannot wrap.
inline constexpr size_t kLargestNode = SIZE_MAX / 4;

// The alignment that malloc guarantees on every platform that the library is built for. A replaced malloc may align to
// less: such memory is given back at once, as if there were none.
inline constexpr size_t kHeapAlignment = 2 * sizeof(void*);

inline bool OwnsItsMemory(const void* pointer) { return reinterpret_cast<uintptr_t>(pointer) % kHeapAlignment == 0; }

// Whether a tree may take the node: it is a root that no tree has taken yet, or null, for a member that is left out. A
// part of another tree's blocks cannot be taken.
bool CanBeTaken(const void* node);
// Notes that a tree has taken the object, which can be null; returns it.
void* NoteTaken(void* node);
template <class Node>
Node* Taken(Node* node) {
  return static_cast<Node*>(NoteTaken(node));
}

// Memory for octets or an array, outside of all pools; null when there is none.
[[nodiscard]] void* AllocateOctets(size_t size);
// Releasing null or a pointer into a block does nothing.
inline void ReleaseOctets(void* octets) {
  if (OwnsItsMemory(octets)) std::free(octets);
}

// Ends the present generation, unless a change has ended it already. The next one begins when a tree is decoded.
void NoteChange();
// Whether a node is a root that was made by decoding, and no tree was changed since.
bool IsUnchangedRoot(const void* node);
// The size of the encoding of an unchanged root; 0 when it is not known. The node must be one of the library's.
uint32_t EncodedSizeOf(const void* node);

// ReleaseRoot releases a root with all blocks of its tree. ReleaseNode does so too, but does nothing inside a block.
void ReleaseRoot(void* node);
inline void ReleaseNode(void* node) {
  if (OwnsItsMemory(node)) ReleaseRoot(node);
}

// Copies the first and the last octets, as many as a Word has each. The two may overlap, so together they copy any size
// from one Word to two.
template <class Word>
inline void CopyEnds(uint8_t* to, const uint8_t* from, size_t size) {
  Word first;
  Word last;
  std::memcpy(&first, from, sizeof first);
  std::memcpy(&last, from + size - sizeof last, sizeof last);
  std::memcpy(to, &first, sizeof first);
  std::memcpy(to + size - sizeof last, &last, sizeof last);
}

// Copies as memcpy does, but without a call for the few octets that most contents have.
inline void CopyOctets(uint8_t* to, const uint8_t* from, size_t size) {
  if (size > 16) {
    std::memcpy(to, from, size);
  } else if (size >= 8) {
    CopyEnds<uint64_t>(to, from, size);
  } else if (size >= 4) {
    CopyEnds<uint32_t>(to, from, size);
  } else if (size >= 2) {
    CopyEnds<uint16_t>(to, from, size);
  } else if (size == 1) {
    *to = *from;
  }
}

struct OctetsDeleter {
  void operator()(void* octets) const { ReleaseOctets(octets); }
};
// Work memory that ends with its scope.
template <class T>
using Scratch = std::unique_ptr<T[], OctetsDeleter>;

struct Block;

// Places the nodes and contents of one new tree. The first node is the root, and owns the pool's blocks from then on;
// after the root was released the pool must not be used again.
class Pool {
 public:
  // The first block will have `room` octets beside the root.
  explicit Pool(size_t room) : room_(room) {}
  // For decoding: the first block also holds a copy of the input, which is not empty, and room for a root of `rootSize`
  // octets and for the nodes that such an input usually makes.
  Pool(size_t rootSize, Octets input);
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;
  ~Pool();

  // The copy of the input; empty when there was no memory.
  [[nodiscard]] Octets Input() const { return input_; }

  // Sets what EncodedSizeOf tells of the root.
  void SetEncodedSize(uint32_t size);

  // A node of `size` octets, 1 to kLargestNode, not initialised; null when there is no memory.
  [[nodiscard]] void* Node(size_t size) {
    if constexpr (kSeparateNodes) return SeparateNode(size);
    const size_t rounded = RoundUp(size);
    if (static_cast<size_t>(high_ - low_) < rounded) return NodeInNewBlock(rounded);
    // The memory of the nodes to come is in no cache when the tree is large: fetching it begins before they are
    // written.
    __builtin_prefetch(low_ + kAhead, 1);
    return std::exchange(low_, low_ + rounded);
  }

  // An array of `count` pointers to nodes, not initialised; null when there is no memory. A large array has a block of
  // its own, so that it does not use up the room for nodes.
  [[nodiscard]] void* Array(uint32_t count) {
    if (size_t{count} > kLargestNode / sizeof(void*)) return nullptr;
    const size_t size = count * sizeof(void*);
    if constexpr (kSeparateNodes) return AllocateOctets(size);
    return size > kLargeNode ? AddBlock(size) : Node(size);
  }

  // A copy of `octets`, which must not be empty; null when there is no memory. A large copy is an allocation of its
  // own, which ReleaseOctets must release when the node that points to it is released.
  [[nodiscard]] uint8_t* Keep(Octets octets) {
    const auto free = static_cast<size_t>(high_ - low_);
    if (kSeparateNodes || octets.size() >= free || octets.size() >= kLargeOctets) return KeepLarge(octets);
    uint8_t* kept = PlaceOctets(octets.size());
    CopyOctets(kept, octets.data(), octets.size());
    return kept;
  }

  // Keeps a content where it stands in the copy of the input. A content at an aligned address would look like an
  // allocation of its own, so it is moved over the octet before it, which must be the last of the element's own header.
  uint8_t* KeepInPlace(Octets content) {
    Require(content.data() > input_.data() && content.data() + content.size() <= input_.data() + input_.size());
    // The input is the pool's own memory, which is constant only to those who read the input.
    auto* octets = const_cast<uint8_t*>(content.data());
    reached_ = octets;
    return OwnsItsMemory(octets) ? MoveByOne(octets, content.size()) : octets;
  }

 private:
  static constexpr size_t RoundUp(size_t size) { return (size + kHeapAlignment - 1) & ~(kHeapAlignment - 1); }
  static uint8_t* MoveByOne(uint8_t* octets, size_t size);
  bool Begin(size_t rootSize, Octets input);
  void* Root(size_t size);
  void* NodeInNewBlock(size_t size);
  void* SeparateNode(size_t size);
  uint8_t* AddBlock(size_t room);
  [[nodiscard]] size_t RoomToCome() const;
  bool StartBlock(size_t needed);
  uint8_t* KeepLarge(Octets octets);

  // Places octets at the end of the free room. One octet more than `size` must be free: it is used to avoid an aligned
  // address.
  uint8_t* PlaceOctets(size_t size) {
    high_ -= size;
    if (OwnsItsMemory(high_)) --high_;
    return high_;
  }

  static constexpr size_t kAhead = 1024;
  // Octets and nodes from these sizes on have memory of their own, because they would use up the room of many small
  // ones.
  static constexpr size_t kLargeOctets = 1024;
  static constexpr size_t kLargeNode = 16384;

  Block* first_ = nullptr;
  bool hasRoot_ = false;
  // What is free in the newest block: nodes are placed upwards from `low_`, octets downwards from `high_`.
  uint8_t* low_ = nullptr;
  uint8_t* high_ = nullptr;
  // The room of the newest block, and of all blocks before it.
  size_t room_;
  size_t placed_ = 0;
  Octets input_;
  // Where the content of the input that was kept last begins, by which RoomToCome knows how much of the input has been
  // read.
  const uint8_t* reached_ = nullptr;
};

}  // namespace tessel
