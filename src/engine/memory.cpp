#include "engine/memory.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

namespace tessel {

// The head of every block.
struct Block {
  Block* next;
};

namespace {

// The head of the first block. The root stands right behind it, so that each is found from the other.
struct alignas(kHeapAlignment) FirstBlock : Block {
  uint64_t generation;
  uint32_t encodedSize;
  // Whether the root has become a part of another tree.
  bool isTaken = false;
  // Checked builds look for this mark, by which they tell a root from other addresses.
  static constexpr uint16_t kMark = 0x7E55;
  uint16_t mark = kMark;
};
constexpr size_t kHeadSize = sizeof(FirstBlock);
static_assert(kHeadSize % kHeapAlignment == 0);

FirstBlock& BlockOf(void* root) {
  FirstBlock& block = static_cast<FirstBlock*>(root)[-1];
  Require(block.mark == FirstBlock::kMark);
  return block;
}
const FirstBlock& BlockOf(const void* root) { return BlockOf(const_cast<void*>(root)); }

// The generation of all trees. The number is even until a tree is changed, and odd until the next tree is decoded,
// which makes it even again. It has 64 bits, so it never comes to an earlier number.
std::atomic<uint64_t> generations{0};
constexpr uint64_t kNoGeneration = UINT64_MAX;

uint64_t PresentGeneration() {
  uint64_t now = generations.load(std::memory_order_relaxed);
  while (now % 2 != 0) {
    if (generations.compare_exchange_weak(now, now + 1, std::memory_order_relaxed)) return now + 1;
  }
  return now;
}

// Memory from malloc; null when there is none, or when it is not aligned to kHeapAlignment.
void* TakeBlock(size_t size) {
  void* block = std::malloc(size);
  if (reinterpret_cast<uintptr_t>(block) % kHeapAlignment == 0) return block;
  std::free(block);
  return nullptr;
}

constexpr size_t kSmallestRoom = 16 * kHeapAlignment;
constexpr size_t kLargestFirstRoom = 262144;
constexpr size_t kUsualRoom = 65536;
// How many octets of nodes are expected for each octet of the input: in the first block, and at most in later ones.
constexpr size_t kFirstRoomForOctet = sizeof(void*) == 8 ? 3 : 2;
constexpr double kLargestRoomForOctet = 16;

}  // namespace

void* AllocateOctets(size_t size) {
  // Some allocators align a small request to its own size only, so kHeapAlignment is the least that is asked for.
  // AddressSanitizer aligns every request, and must know the true size to find accesses beyond it.
  return TakeBlock(kSeparateNodes ? size : std::max(size, kHeapAlignment));
}

void NoteChange() {
  uint64_t now = generations.load(std::memory_order_relaxed);
  while (now % 2 == 0 && !generations.compare_exchange_weak(now, now + 1, std::memory_order_relaxed)) {
  }
}

bool IsUnchangedRoot(const void* node) {
  return node != nullptr && OwnsItsMemory(node) &&
         BlockOf(node).generation == generations.load(std::memory_order_relaxed);
}

uint32_t EncodedSizeOf(const void* node) { return IsUnchangedRoot(node) ? BlockOf(node).encodedSize : 0; }

bool CanBeTaken(const void* node) { return node == nullptr || (OwnsItsMemory(node) && !BlockOf(node).isTaken); }

void* NoteTaken(void* node) {
  Require(CanBeTaken(node));
  if (node != nullptr && OwnsItsMemory(node)) BlockOf(node).isTaken = true;
  return node;
}

void ReleaseRoot(void* node) {
  if (node == nullptr) return;
  Block* block = &BlockOf(node);
  while (block != nullptr) std::free(std::exchange(block, block->next));
}

Pool::Pool(size_t rootSize, Octets input)
    : room_(std::clamp(kFirstRoomForOctet * input.size(), kSmallestRoom, kLargestFirstRoom)) {
  if (rootSize <= kLargestNode && input.size() <= kLargestNode) Begin(RoundUp(rootSize), input);
}

Pool::~Pool() {
  if (!hasRoot_) std::free(first_);
}

bool Pool::Begin(size_t rootSize, Octets input) {
  const size_t withoutInput = kHeadSize + rootSize + sizeof(void*) + room_;
  auto* block = static_cast<uint8_t*>(TakeBlock(withoutInput + input.size()));
  if (block == nullptr) return false;
  first_ = new (block) FirstBlock{{nullptr}, input.empty() ? kNoGeneration : PresentGeneration(), 0};
  // No room is free (`low_` equals `high_`) until Root() has placed the root.
  low_ = high_ = block + withoutInput;
  if (!input.empty()) std::memcpy(high_, input.data(), input.size());
  input_ = {high_, input.size()};
  reached_ = high_;
  return true;
}

void* Pool::Root(size_t size) {
  if (first_ == nullptr && !Begin(size, {})) return nullptr;
  hasRoot_ = true;
  uint8_t* root = reinterpret_cast<uint8_t*>(first_) + kHeadSize;
  low_ = root + size + sizeof(void*);
  return root;
}

void Pool::SetEncodedSize(uint32_t size) { static_cast<FirstBlock*>(first_)->encodedSize = size; }

void* Pool::NodeInNewBlock(size_t size) {
  if (size > kLargestNode) return nullptr;
  if (!hasRoot_) return Root(size);
  if (size > kLargeNode) return AddBlock(size);
  return StartBlock(size) ? std::exchange(low_, low_ + size) : nullptr;
}

void* Pool::SeparateNode(size_t size) {
  if (size > kLargestNode) return nullptr;
  auto* block = static_cast<uint8_t*>(TakeBlock(kHeadSize + size));
  // The first node is the root. All others count as taken, because they are parts of its tree.
  return block == nullptr ? nullptr
                          : new (block) FirstBlock{{nullptr}, kNoGeneration, 0, std::exchange(hasRoot_, true)} + 1;
}

// The room of a new block, or null when there is no memory.
uint8_t* Pool::AddBlock(size_t room) {
  auto* block = static_cast<uint8_t*>(TakeBlock(sizeof(Block) + room));
  if (block == nullptr) return nullptr;
  first_->next = new (block) Block{first_->next};
  return block + sizeof(Block);
}

// Estimates how much room the rest of the tree will take. When decoding, each octet that is left of the input is
// expected to take as much as each octet before it. Otherwise it is twice the room of the newest block, but at most
// kUsualRoom, or a quarter of all room so far when that is more.
size_t Pool::RoomToCome() const {
  if (input_.empty()) return std::min(2 * room_, std::max(kUsualRoom, placed_ / 4));
  const auto read = static_cast<size_t>(reached_ - input_.data()) + 1;
  const size_t left = input_.size() - std::min(read, input_.size());
  const double forOctet = static_cast<double>(placed_) / static_cast<double>(read);
  const double room = static_cast<double>(left) * std::min(forOctet, kLargestRoomForOctet);
  return static_cast<size_t>(std::min(room, static_cast<double>(kLargestNode)));
}

bool Pool::StartBlock(size_t needed) {
  placed_ += room_;
  room_ = std::clamp(RoomToCome(), std::max(needed, kSmallestRoom), kLargestNode);
  uint8_t* room = AddBlock(room_);
  // The room was an estimate: when there is no memory for it, a block of the usual size may be enough.
  if (room == nullptr && room_ > kUsualRoom) room = AddBlock(room_ = kUsualRoom);
  if (room == nullptr) return false;
  low_ = room;
  high_ = room + room_;
  return true;
}

uint8_t* Pool::KeepLarge(Octets octets) {
  uint8_t* kept = nullptr;
  if (kSeparateNodes || octets.size() >= kLargeOctets) {
    kept = static_cast<uint8_t*>(AllocateOctets(octets.size()));
    NoteChange();
  } else if (StartBlock(octets.size() + 1)) {
    kept = PlaceOctets(octets.size());
  }
  if (kept != nullptr) std::memcpy(kept, octets.data(), octets.size());
  return kept;
}

uint8_t* Pool::MoveByOne(uint8_t* octets, size_t size) {
  std::memmove(octets - 1, octets, size);
  return octets - 1;
}

}  // namespace tessel
