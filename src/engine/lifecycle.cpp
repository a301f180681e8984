#include "engine/lifecycle.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "engine/descriptor.h"
#include "engine/lists.h"
#include "engine/nodes.h"

namespace tessel {
namespace {

// What the first block of a new tree holds beside its root: by a guess, since the tree is not measured.
constexpr size_t kRoomForTree = 1024;
constexpr size_t kRoomForLeaf = 64;

size_t RoomBeside(const Asn1Item& item) {
  if (ShapeOf(item) != Shape::kSlotsNode) return 0;
  for (uint32_t i = 0; i < item.memberCount; ++i) {
    if (ShapeOf(*item.members[i]) == Shape::kSlotsNode) return kRoomForTree;
  }
  return item.memberCount * kRoomForLeaf;
}

template <class Node>
Status Place(Pool& pool, const Node& value, void*& node) {
  void* place = pool.Node(sizeof(Node));
  if (place == nullptr) return Fail(TESSEL_OUT_OF_MEMORY);
  node = new (place) Node(value);
  return Status();
}

Status PlaceSlots(Pool& pool, const Asn1Item& item, void*& node) {
  node = pool.Node(item.nodeSize);
  if (node == nullptr) return Fail(TESSEL_OUT_OF_MEMORY);
  std::memset(node, 0, item.nodeSize);
  return Status();
}

Status CreateInto(Pool& pool, const Asn1Item& item, void*& node, Leaves leaves);

Status CreateMembers(Pool& pool, const Asn1Item& item, void*& node, Leaves leaves) {
  if (Status status = PlaceSlots(pool, item, node); status.Failed()) return status;
  for (uint32_t i = 0; i < item.memberCount; ++i) {
    void* member = nullptr;
    if (Status status = CreateInto(pool, *item.members[i], member, leaves); status.Failed()) {
      FreeTree(&item, node);
      node = nullptr;
      return status;
    }
    StoreSlot(node, i, member);
  }
  return Status();
}

Status CreateInto(Pool& pool, const Asn1Item& item, void*& node, Leaves leaves) {
  if (IsOptional(item)) {
    node = nullptr;
    return item.defaultValue == nullptr ? Status() : CopyInto(pool, item, item.defaultValue, node);
  }
  switch (ShapeOf(item)) {
    case Shape::kValueNode:
      return leaves == Leaves::kAbsent ? Status() : Place(pool, Asn1Value{}, node);
    case Shape::kBitStringNode:
      return leaves == Leaves::kAbsent ? Status() : Place(pool, Asn1BitString{}, node);
    case Shape::kOpenNode:
      return Place(pool, Asn1Value{}, node);
    case Shape::kChoiceNode:
      return Place(pool, Asn1Choice{}, node);
    case Shape::kListNode:
      return Place(pool, kEmptyList, node);
    case Shape::kSlotsNode:
      return CreateMembers(pool, item, node, leaves);
    case Shape::kNotAKind:
      break;
  }
  return Fail(TESSEL_UNSUPPORTED_KIND);
}

// Copies an Asn1Value or Asn1BitString, content and all.
template <class Node>
Status CopyContent(Pool& pool, const void* source, void*& copy) {
  Node value = *static_cast<const Node*>(source);
  const Octets content = ContentOf(value);
  value.data = nullptr;
  if (Status status = Place(pool, value, copy); status.Failed()) return status;
  if (content.empty()) return Status();
  auto* placed = static_cast<Node*>(copy);
  placed->data = pool.Keep(content);
  return placed->data != nullptr ? Status() : Fail(TESSEL_OUT_OF_MEMORY);
}

Status CopyChoice(Pool& pool, const Asn1Item& item, const Asn1Choice& source, void*& copy) {
  if (source.index >= item.memberCount) return Fail(TESSEL_WRONG_ALTERNATIVE);
  if (Status status = Place(pool, Asn1Choice{source.index, nullptr}, copy); status.Failed()) return status;
  // A choice that has not been made yet is copied as it is.
  if (source.value == nullptr) return Status();
  return CopyInto(pool, *item.members[source.index], source.value, static_cast<Asn1Choice*>(copy)->value);
}

Status CopyList(Pool& pool, const Asn1Item& item, const Asn1List& source, void*& copy) {
  const Asn1Item* element = ElementOf(item);
  if (element == nullptr) return Fail(TESSEL_INCONSISTENT_DESCRIPTOR);
  if (Status status = Place(pool, kEmptyList, copy); status.Failed()) return status;
  auto& list = *static_cast<Asn1List*>(copy);
  for (uint32_t i = 0; i < source.count; ++i) {
    void* node = nullptr;
    Status status = CopyInto(pool, *element, source.items[i], node);
    if (status.Ok()) status = AppendTo(list, node, pool);
    if (status.Failed()) {
      FreeTree(element, node);
      return status;
    }
  }
  return Status();
}

Status CopySlots(Pool& pool, const Asn1Item& item, const void* source, void*& copy) {
  if (Status status = PlaceSlots(pool, item, copy); status.Failed()) return status;
  for (uint32_t i = 0; i < item.memberCount; ++i) {
    const void* member = LoadSlot(source, i);
    if (member == nullptr) continue;
    void* node = nullptr;
    if (Status status = CopyInto(pool, *item.members[i], member, node); status.Failed()) return status;
    StoreSlot(copy, i, node);
  }
  return Status();
}

// Leaves what it has made in `copy`, complete or not, so that one place can release it.
Status CopyNode(Pool& pool, const Asn1Item& item, const void* source, void*& copy) {
  if (item.kind == TESSEL_KIND_NULL) return Fail(TESSEL_UNSUPPORTED_KIND);
  switch (ShapeOf(item)) {
    case Shape::kValueNode:
    case Shape::kOpenNode:
      return CopyContent<Asn1Value>(pool, source, copy);
    case Shape::kBitStringNode:
      return CopyContent<Asn1BitString>(pool, source, copy);
    case Shape::kChoiceNode:
      return CopyChoice(pool, item, *static_cast<const Asn1Choice*>(source), copy);
    case Shape::kListNode:
      return CopyList(pool, item, *static_cast<const Asn1List*>(source), copy);
    case Shape::kSlotsNode:
      return CopySlots(pool, item, source, copy);
    case Shape::kNotAKind:
      break;
  }
  return Fail(TESSEL_UNSUPPORTED_KIND);
}

Status CompareBitStrings(const Asn1BitString& first, const Asn1BitString& second, bool& equal) {
  equal = std::ranges::equal(ContentOf(first), ContentOf(second)) && first.unused == second.unused;
  return Status();
}

Status CompareValues(const Asn1Value& first, const Asn1Value& second, bool& equal) {
  equal = first.length == second.length && std::ranges::equal(ContentOf(first), ContentOf(second));
  return Status();
}

Status CompareLists(const Asn1Item& item, const Asn1List& first, const Asn1List& second, bool& equal) {
  const Asn1Item* element = ElementOf(item);
  if (element == nullptr) return Fail(TESSEL_INCONSISTENT_DESCRIPTOR);
  equal = first.count == second.count;
  for (uint32_t i = 0; equal && i < first.count; ++i) {
    if (Status status = CompareTrees(*element, first.items[i], second.items[i], equal); status.Failed()) return status;
  }
  return Status();
}

Status CompareSlots(const Asn1Item& item, const void* first, const void* second, bool& equal) {
  equal = true;
  for (uint32_t i = 0; equal && i < item.memberCount; ++i) {
    Status status = CompareTrees(*item.members[i], LoadSlot(first, i), LoadSlot(second, i), equal);
    if (status.Failed()) return status;
  }
  return Status();
}

}  // namespace

Status CreateTree(const Asn1Item& item, void*& object, Leaves leaves) {
  Pool pool(RoomBeside(item));
  Status status = CreateInto(pool, item, object, leaves);
  if (status.Failed()) object = nullptr;
  return status;
}

Status CopyTree(const Asn1Item& item, const void* source, void*& copy) {
  Pool pool(RoomBeside(item));
  return CopyInto(pool, item, source, copy);
}

Status CopyInto(Pool& pool, const Asn1Item& item, const void* source, void*& copy) {
  copy = nullptr;
  if (source == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  Status status = CopyNode(pool, item, source, copy);
  if (status.Failed()) {
    FreeTree(&item, copy);
    copy = nullptr;
  }
  return status;
}

void FreeTree(const Asn1Item* item, void* node) {
  if (item == nullptr || node == nullptr) return;
  switch (ShapeOf(*item)) {
    case Shape::kValueNode:
    case Shape::kOpenNode:
      ReleaseOctets(static_cast<Asn1Value*>(node)->data);
      break;
    case Shape::kBitStringNode:
      ReleaseOctets(static_cast<Asn1BitString*>(node)->data);
      break;
    case Shape::kChoiceNode: {
      const auto& choice = *static_cast<Asn1Choice*>(node);
      if (choice.index < item->memberCount) FreeTree(item->members[choice.index], choice.value);
      break;
    }
    case Shape::kListNode: {
      const auto& list = *static_cast<Asn1List*>(node);
      for (uint32_t i = 0; i < list.count; ++i) FreeTree(ElementOf(*item), list.items[i]);
      ReleaseOctets(list.items);
      break;
    }
    case Shape::kSlotsNode:
      for (uint32_t i = 0; i < item->memberCount; ++i) FreeTree(item->members[i], LoadSlot(node, i));
      break;
    case Shape::kNotAKind:
      return;
  }
  ReleaseNode(node);
}

Status CompareTrees(const Asn1Item& item, const void* first, const void* second, bool& equal) {
  if (first == nullptr || second == nullptr) {
    equal = first == second;
    return Status();
  }
  if (item.kind == TESSEL_KIND_NULL || item.kind == TESSEL_KIND_ENUMERATED) return Fail(TESSEL_UNSUPPORTED_KIND);
  switch (ShapeOf(item)) {
    case Shape::kValueNode:
      return CompareValues(*static_cast<const Asn1Value*>(first), *static_cast<const Asn1Value*>(second), equal);
    case Shape::kBitStringNode:
      return CompareBitStrings(*static_cast<const Asn1BitString*>(first), *static_cast<const Asn1BitString*>(second),
                               equal);
    case Shape::kListNode:
      return CompareLists(item, *static_cast<const Asn1List*>(first), *static_cast<const Asn1List*>(second), equal);
    case Shape::kSlotsNode:
      return CompareSlots(item, first, second, equal);
    case Shape::kOpenNode:
    case Shape::kChoiceNode:
    case Shape::kNotAKind:
      break;
  }
  return Fail(TESSEL_UNSUPPORTED_KIND);
}

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL CreateAsn1Object(const Asn1Item* descriptor, void** object, uint32_t withLeaves) {
  if (descriptor == nullptr || object == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  return CreateTree(*descriptor, *object, withLeaves != 0 ? Leaves::kEmpty : Leaves::kAbsent);
}

uint32_t TESSEL_CALL CreateOptionalAsn1Sequence(const Asn1Item* descriptor, void** object, uint32_t withLeaves) {
  if (descriptor == nullptr || object == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  if (!IsOptional(*descriptor) || ShapeOf(*descriptor) != Shape::kSlotsNode) return Fail(TESSEL_INVALID_ARGUMENT);
  Pool pool(RoomBeside(*descriptor));
  return CreateMembers(pool, *descriptor, *object, withLeaves != 0 ? Leaves::kEmpty : Leaves::kAbsent);
}

uint32_t TESSEL_CALL FreeAsn1Object(const Asn1Item* descriptor, void* object) {
  FreeTree(descriptor, object);
  return Status();
}

uint32_t TESSEL_CALL CompareAsn1Objects(const Asn1Item* descriptor, const void* first, const void* second,
                                        uint32_t* equal) {
  if (descriptor == nullptr || equal == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  bool isEqual = false;
  Status status = CompareTrees(*descriptor, first, second, isEqual);
  if (status.Ok()) *equal = isEqual ? 1 : 0;
  return status;
}
