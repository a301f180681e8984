#include "engine/memory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace tessel {

// The head of every block that nodes are placed in. In the first it stands before the root, which it is found from.
struct Pool::Block {
  Block* next;
};

namespace {

constexpr size_t kHeadSize = kHeapAlignment;
constexpr size_t kSmallestRoom = 16 * kHeapAlignment;
constexpr size_t kLargestRoom = 65536;
// Octets from this size on are not worth a place in a block.
constexpr size_t kLargeOctets = 1024;
// No single node or content may come near the end of the address space, so that the sums below cannot wrap.
constexpr size_t kLargestSize = SIZE_MAX / 4;

constexpr size_t RoundUp(size_t size) { return (size + kHeapAlignment - 1) & ~(kHeapAlignment - 1); }

}  // namespace

void* AllocateOctets(size_t size) {
  // Allocators align to what they are asked for, so a smaller request could come back less aligned.
  return std::malloc(std::max(size, kHeapAlignment));
}

void ReleaseOctets(void* octets) {
  if (OwnsItsMemory(octets)) std::free(octets);
}

void* GrowOctets(void* octets, size_t oldSize, size_t newSize) {
  if (octets != nullptr && OwnsItsMemory(octets)) return std::realloc(octets, newSize);
  void* grown = AllocateOctets(newSize);
  if (grown != nullptr && oldSize != 0) std::memcpy(grown, octets, oldSize);
  return grown;
}

void ReleaseNode(void* node) {
  if (node == nullptr || !OwnsItsMemory(node)) return;
  // The root stands right behind the head of its first block.
  void* block = static_cast<uint8_t*>(node) - kHeadSize;
  while (block != nullptr) {
    void* next = nullptr;
    std::memcpy(&next, block, sizeof next);
    std::free(block);
    block = next;
  }
}

Pool::Pool(Octets input) : input_(input), nextRoom_(std::clamp(3 * input.size(), kSmallestRoom, kLargestRoom)) {}

void* Pool::Node(size_t size) {
  if (size > kLargestSize) return nullptr;
  const size_t rounded = RoundUp(std::max<size_t>(size, 1));
  if (first_ == nullptr) return Root(rounded);
  if (static_cast<size_t>(high_ - low_) < rounded && !AddBlock(rounded)) return nullptr;
  uint8_t* node = low_;
  low_ += rounded;
  return node;
}

void* Pool::Root(size_t size) {
  if (input_.size() > kLargestSize) return nullptr;
  const size_t total = kHeadSize + size + sizeof(void*) + nextRoom_ + input_.size();
  auto* block = static_cast<uint8_t*>(std::malloc(total));
  if (block == nullptr) return nullptr;
  first_ = new (block) Block{nullptr};
  low_ = block + kHeadSize + size + sizeof(void*);
  high_ = block + total - input_.size();
  if (!input_.empty()) {
    inputCopy_ = high_;
    std::memcpy(inputCopy_, input_.data(), input_.size());
  }
  return block + kHeadSize;
}

bool Pool::AddBlock(size_t room) {
  nextRoom_ = std::clamp(2 * nextRoom_, kSmallestRoom, kLargestRoom);
  const size_t total = sizeof(Block) + std::max(room, nextRoom_);
  auto* block = static_cast<uint8_t*>(std::malloc(total));
  if (block == nullptr) return false;
  first_->next = new (block) Block{first_->next};
  low_ = block + sizeof(Block);
  high_ = block + total;
  return true;
}

uint8_t* Pool::Keep(Octets octets) {
  // Compared as numbers: the octets need not be part of the input.
  const size_t offset = reinterpret_cast<uintptr_t>(octets.data()) - reinterpret_cast<uintptr_t>(input_.data());
  if (offset < input_.size() && octets.size() <= input_.size() - offset && !OwnsItsMemory(inputCopy_ + offset)) {
    return inputCopy_ + offset;
  }
  uint8_t* kept =
      octets.size() < kLargeOctets ? PlaceOctets(octets.size()) : static_cast<uint8_t*>(AllocateOctets(octets.size()));
  if (kept != nullptr) std::memcpy(kept, octets.data(), octets.size());
  return kept;
}

uint8_t* Pool::PlaceOctets(size_t size) {
  // One octet more, to step off an aligned address.
  const size_t needed = size + 1;
  if (static_cast<size_t>(high_ - low_) < needed && !AddBlock(needed)) return nullptr;
  high_ -= size;
  if (OwnsItsMemory(high_)) --high_;
  return high_;
}

}  // namespace tessel
