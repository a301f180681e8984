// The library's memory. Everything that it keeps comes from here, over the heap of the C run-time.
//
// A tree that one call makes (decodes, creates, copies) costs one allocation or a few, not one a node: a Pool places
// its nodes and their contents in blocks that hang from the tree's root, and all the blocks go back to the heap when
// the root is released. What replaces a member later is an allocation of its own.
//
// Which of the two a pointer is can be read from its address. The heap aligns what it gives to two pointers' size
// (memory from one that does not is not used); whatever is placed inside a block is kept off that alignment. So
// releasing a pointer into a block does nothing, and releasing any other gives its memory back, without a header, a
// table or a look at the parent:
//
//     heap ->  | next block | root ... | node | node | ...      ... | octets | octets of the input |
//              ^            ^          ^                            ^
//              aligned      aligned:   odd: lives and dies          never aligned: the same
//                           owned      with the root
//
// Only the root of a tree may be handed to the caller as the caller's own, and a tree never takes in a part of another.
//
// A tree that was decoded, and not changed since, is all blocks: it is released without a look at its nodes, and the
// size of its encoding is known. Whatever changes a tree says so by NoteChange, which ends a generation; a tree remembers
// the generation in which it was decoded. Generations are the same for all trees, so that a change of one makes the
// others look changed too: that is slower, and never wrong.
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

// Far from the end of the address space, so that sums of sizes cannot wrap.
inline constexpr size_t kLargestNode = SIZE_MAX / 4;

// What malloc guarantees on every platform that the library is built for. A heap put in its place may not keep to it:
// blocks that are aligned to less are given back at once, as if there were no memory.
inline constexpr size_t kHeapAlignment = 2 * sizeof(void*);

inline bool OwnsItsMemory(const void* pointer) { return reinterpret_cast<uintptr_t>(pointer) % kHeapAlignment == 0; }

// Whether a node is an object of its own, which a tree may take. A part of another tree's blocks never is, and a root
// not any more after NoteTaken. Null, for a member that is left out, can be taken.
bool CanBeTaken(const void* node);
// Notes that a tree has taken the object, which can be null; returns it.
void* NoteTaken(void* node);
template <class Node>
Node* Taken(Node* node) {
  return static_cast<Node*>(NoteTaken(node));
}

// Octets and arrays on their own; null when there is no memory.
[[nodiscard]] void* AllocateOctets(size_t size);
// Releasing null or a pointer into a block does nothing.
inline void ReleaseOctets(void* octets) {
  if (OwnsItsMemory(octets)) std::free(octets);
}

// Ends the present generation, unless a change has ended it already; the next begins with the next tree that is decoded.
void NoteChange();
// Whether a root was made by decoding, and no tree was changed since.
bool IsUnchangedRoot(const void* node);
// The size of the encoding of an unchanged root; 0 when it is not known. The node must be one of the library's.
uint32_t EncodedSizeOf(const void* node);

// Releases a node; the root of a tree takes its blocks along.
void ReleaseRoot(void* node);
inline void ReleaseNode(void* node) {
  if (OwnsItsMemory(node)) ReleaseRoot(node);
}

// The first and the last octets, as many as Word has each; between them they may meet or overlap.
template <class Word>
inline void CopyEnds(uint8_t* to, const uint8_t* from, size_t size) {
  Word first;
  Word last;
  std::memcpy(&first, from, sizeof first);
  std::memcpy(&last, from + size - sizeof last, sizeof last);
  std::memcpy(to, &first, sizeof first);
  std::memcpy(to + size - sizeof last, &last, sizeof last);
}

// As memcpy; at once for the few octets that most contents have.
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

  // What EncodedSizeOf is to tell of the root.
  void SetEncodedSize(uint32_t size);

  // A node of `size` octets, 1 to kLargestNode, not initialised; null when there is no memory.
  [[nodiscard]] void* Node(size_t size) {
    if constexpr (kSeparateNodes) return SeparateNode(size);
    const size_t rounded = RoundUp(size);
    if (static_cast<size_t>(high_ - low_) < rounded) return NodeInNewBlock(rounded);
    // A large tree goes through memory that is in no cache: it is asked for before it is written.
    __builtin_prefetch(low_ + kAhead, 1);
    return std::exchange(low_, low_ + rounded);
  }

  // The same for an array of nodes. When it is large it has a block of its own, and takes nothing away from the nodes.
  [[nodiscard]] void* Array(uint32_t count) {
    if (size_t{count} > kLargestNode / sizeof(void*)) return nullptr;
    const size_t size = count * sizeof(void*);
    if constexpr (kSeparateNodes) return AllocateOctets(size);
    return size > kLargeNode ? AddBlock(size) : Node(size);
  }

  // A copy of `octets`, which must not be empty; null when there is no memory. A large copy is an allocation of its
  // own, so the node that holds the result must be released with its tree.
  [[nodiscard]] uint8_t* Keep(Octets octets) {
    const auto free = static_cast<size_t>(high_ - low_);
    if (kSeparateNodes || octets.size() >= free || octets.size() >= kLargeOctets) return KeepLarge(octets);
    uint8_t* kept = PlaceOctets(octets.size());
    CopyOctets(kept, octets.data(), octets.size());
    return kept;
  }

  // Keeps a content of the input where it stands. One at an aligned address is moved over the octet before it, which
  // must be the last of the element's own header.
  uint8_t* KeepInPlace(Octets content) {
    Require(content.data() > input_.data() && content.data() + content.size() <= input_.data() + input_.size());
    // The pool's own memory, seen as constant by those who read the input.
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

  // There must be room for one octet more, to step off an aligned address.
  uint8_t* PlaceOctets(size_t size) {
    high_ -= size;
    if (OwnsItsMemory(high_)) --high_;
    return high_;
  }

  static constexpr size_t kAhead = 1024;
  // From these sizes on, a place among others is not worth while.
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
  // How far the contents of the input have been kept.
  const uint8_t* reached_ = nullptr;
};

}  // namespace tessel
