#include "engine/lifecycle.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "engine/lists.h"
#include "engine/nodes.h"
#include "tessel/asn1.hpp"

namespace tessel {
namespace {

// How much room the first block of a new tree has beside its root. These are estimates, since the tree is not measured.
constexpr size_t kRoomForTree = 3584;
constexpr size_t kRoomForLeaf = 64;

size_t RoomBeside(const Asn1Item& item) {
  if (NodeLayoutOf(item) != NodeLayout::kSlotsNode || !IsConsistent(item)) return 0;
  for (uint32_t i = 0; i < item.memberCount; ++i) {
    if (NodeLayoutOf(*item.members[i]) == NodeLayout::kSlotsNode) return kRoomForTree;
  }
  return std::min<size_t>(item.memberCount, kRoomForTree / kRoomForLeaf) * kRoomForLeaf;
}

Made OutOfMemory(SourceLocation at = {}) { return {nullptr, Fail(TESSEL_OUT_OF_MEMORY, at)}; }

template <class Node>
Made Place(Pool& pool, const Node& value) {
  void* place = pool.Node(sizeof(Node));
  if (place == nullptr) return OutOfMemory();
  return {new (place) Node(value), Status()};
}

// Makes a node and fills its slots with what `make(plan of the member, index)` returns. After a failure the node is
// there, and its slots behind the member that failed are null.
template <class Make>
Made MakeSlots(Pool& pool, const Plan& plan, Make make) {
  MemberPlans members(plan);
  if (!members.AreConsistent()) return {nullptr, Fail(TESSEL_INCONSISTENT_DESCRIPTOR)};
  Made slots{NewSlots(pool, *plan.item), Status()};
  if (slots.node == nullptr) return OutOfMemory();
  for (uint32_t i = 0; i < members.Count(); ++i) {
    const Made member = slots.status.Ok() ? make(members[i], i) : Made();
    StoreSlot(slots.node, i, member.node);
    if (member.status.Failed()) slots.status = member.status;
  }
  return slots;
}

// Returns what was made. After a failure it releases that and returns no node.
Made WholeOrNothing(const Plan& plan, Made made) {
  if (made.status.Ok()) return made;
  FreeTree(plan, made.node);
  return {nullptr, made.status};
}

Made CreateInto(Pool& pool, const Plan& plan, Leaves leaves, uint32_t depth = 0);

// The depth is limited because a descriptor that contains itself, and is not OPTIONAL there, has no value that ends.
Made CreateMembers(Pool& pool, const Plan& plan, Leaves leaves, uint32_t depth = 0) {
  if (depth == kMaximumDepth) return {nullptr, Fail(TESSEL_INCONSISTENT_DESCRIPTOR)};
  const auto create = [&](const Plan& member, uint32_t) { return CreateInto(pool, member, leaves, depth + 1); };
  return MakeSlots(pool, plan, create);
}

Made CreateInto(Pool& pool, const Plan& plan, Leaves leaves, uint32_t depth) {
  const Asn1Item& item = *plan.item;
  if (IsOptional(item)) return item.defaultValue == nullptr ? Made() : CopyInto(pool, plan, item.defaultValue);
  switch (plan.layout) {
    case NodeLayout::kValueNode:
      return leaves == Leaves::kAbsent ? Made() : Place(pool, Asn1Value{});
    case NodeLayout::kBitStringNode:
      return leaves == Leaves::kAbsent ? Made() : Place(pool, Asn1BitString{});
    case NodeLayout::kOpenNode:
      return Place(pool, Asn1Value{});
    case NodeLayout::kChoiceNode:
      return Place(pool, Asn1Choice{});
    case NodeLayout::kListNode:
      return Place(pool, kEmptyList);
    case NodeLayout::kSlotsNode:
      return CreateMembers(pool, plan, leaves, depth);
    case NodeLayout::kNotAKind:
      break;
  }
  return {nullptr, Fail(TESSEL_UNSUPPORTED_KIND)};
}

Made CopyNode(Pool& pool, const Plan& plan, const void* source);

// Copies an Asn1Value or Asn1BitString, content and all.
template <class Node>
Made CopyContent(Pool& pool, const Node& source) {
  Made copy = Place(pool, source);
  if (copy.node == nullptr) return copy;
  const Octets content = ContentOf(source);
  uint8_t* kept = content.empty() ? nullptr : pool.Keep(content);
  static_cast<Node*>(copy.node)->data = kept;
  if (kept == nullptr && !content.empty()) copy.status = Fail(TESSEL_OUT_OF_MEMORY);
  return copy;
}

Made CopyChoice(Pool& pool, const Plan& plan, const Asn1Choice& source) {
  MemberPlans alternatives(plan);
  if (source.index >= alternatives.Count()) return {nullptr, Fail(TESSEL_WRONG_ALTERNATIVE)};
  if (!alternatives.AreConsistent()) return {nullptr, Fail(TESSEL_INCONSISTENT_DESCRIPTOR)};
  Made copy = Place(pool, Asn1Choice{source.index, nullptr});
  // A CHOICE without an alternative's node is copied as it is.
  if (copy.node == nullptr || source.value == nullptr) return copy;
  const Made value = CopyNode(pool, alternatives[source.index], source.value);
  static_cast<Asn1Choice*>(copy.node)->value = value.node;
  return {copy.node, value.status};
}

Made CopyList(Pool& pool, const Plan& plan, const Asn1List& source) {
  MemberPlans plans(plan);
  if (!plans.AreConsistent()) return {nullptr, Fail(TESSEL_INCONSISTENT_DESCRIPTOR)};
  const Plan& element = plans[0];
  // DEVIATES: a copy is sorted when it is written, even if its source is not to be, so that copies are DER.
  Asn1List* list = NewList(pool, source.count);
  if (list == nullptr) return OutOfMemory();
  Made copy{list, Status()};
  for (uint32_t i = 0; i < source.count && copy.status.Ok(); ++i) {
    Prefetch(source, i + kItemsAhead);
    const Made node = CopyNode(pool, element, source.items[i]);
    list->items[list->count++] = node.node;
    copy.status = node.status;
  }
  return copy;
}

Made CopySlots(Pool& pool, const Plan& plan, const void* source) {
  return MakeSlots(pool, plan, [&](const Plan& member, uint32_t index) {
    const void* node = LoadSlot(source, index);
    return node == nullptr ? Made() : CopyNode(pool, member, node);
  });
}

// Copies a node with all below it. After a failure the copy, if there is one, is in a state that can be released.
Made CopyNode(Pool& pool, const Plan& plan, const void* source) {
  if (source == nullptr) return {nullptr, Fail(TESSEL_INVALID_ARGUMENT)};
  // DEVIATES: a NULL is not copied: no type of the library has one (parameters are open values), and callers know the
  // status.
  if (IsValueLayout(plan.layout) && plan.kind != TESSEL_KIND_NULL) {
    return CopyContent(pool, *static_cast<const Asn1Value*>(source));
  }
  if (plan.layout == NodeLayout::kSlotsNode) return CopySlots(pool, plan, source);
  if (plan.layout == NodeLayout::kListNode) return CopyList(pool, plan, *static_cast<const Asn1List*>(source));
  if (plan.layout == NodeLayout::kChoiceNode) return CopyChoice(pool, plan, *static_cast<const Asn1Choice*>(source));
  if (plan.layout == NodeLayout::kBitStringNode) return CopyContent(pool, *static_cast<const Asn1BitString*>(source));
  return {nullptr, Fail(TESSEL_UNSUPPORTED_KIND)};
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
  if (!IsConsistent(item)) return Fail(TESSEL_INCONSISTENT_DESCRIPTOR);
  equal = first.count == second.count;
  for (uint32_t i = 0; equal && i < first.count; ++i) {
    TRY(CompareTrees(*item.members[0], first.items[i], second.items[i], equal));
  }
  return Status();
}

Status CompareSlots(const Asn1Item& item, const void* first, const void* second, bool& equal) {
  if (!IsConsistent(item)) return Fail(TESSEL_INCONSISTENT_DESCRIPTOR);
  equal = true;
  for (uint32_t i = 0; equal && i < item.memberCount; ++i) {
    TRY(CompareTrees(*item.members[i], LoadSlot(first, i), LoadSlot(second, i), equal));
  }
  return Status();
}

}  // namespace

Status CreateTree(const Plan& plan, void*& object, Leaves leaves) {
  Pool pool(RoomBeside(*plan.item));
  const Made made = WholeOrNothing(plan, CreateInto(pool, plan, leaves));
  // DEVIATES: a primitive root that is not wanted leaves the pointer as it was, by which callers know that nothing was
  // made.
  if (made.node != nullptr || made.status.Failed() || IsOptional(*plan.item)) object = made.node;
  return made.status;
}

Made CopyTree(const Plan& plan, const void* source) {
  Pool pool(RoomBeside(*plan.item));
  return CopyInto(pool, plan, source);
}

Made CopyInto(Pool& pool, const Plan& plan, const void* source) {
  return WholeOrNothing(plan, CopyNode(pool, plan, source));
}

namespace {

void FreeBranch(const Plan& plan, void* node);

// Releases a node with all below it. Most nodes are values, which are released here; FreeBranch releases all others.
inline void FreeNode(const Plan& plan, void* node) {
  if (node == nullptr) return;
  if (!IsValueLayout(plan.layout)) return FreeBranch(plan, node);
  uint8_t* data = static_cast<Asn1Value*>(node)->data;
  if (!OwnsItsMemory(node) && !OwnsItsMemory(data)) return;
  ReleaseOctets(data);
  ReleaseNode(node);
}

void FreeChoice(const Plan& plan, const Asn1Choice& choice) {
  MemberPlans alternatives(plan);
  if (choice.index < alternatives.Count() && alternatives.AreConsistent())
    FreeNode(alternatives[choice.index], choice.value);
}

void FreeList(const Plan& plan, Asn1List& list) {
  if (MemberPlans plans(plan); plans.AreConsistent()) {
    const Plan& element = plans[0];
    for (uint32_t i = 0; i < list.count; ++i) FreeNode(element, list.items[i]);
  }
  ReleaseArray(list);
}

// The layouts are tested in the order of their frequency: processors predict these branches better than a jump by a
// table.
void FreeBranch(const Plan& plan, void* node) {
  if (plan.layout == NodeLayout::kSlotsNode) {
    MemberPlans members(plan);
    const uint32_t count = members.AreConsistent() ? members.Count() : 0;
    for (uint32_t i = 0; i < count; ++i) {
      if (void* member = LoadSlot(node, i); member != nullptr) FreeNode(members[i], member);
    }
  } else if (plan.layout == NodeLayout::kListNode) {
    FreeList(plan, *static_cast<Asn1List*>(node));
  } else if (plan.layout == NodeLayout::kChoiceNode) {
    FreeChoice(plan, *static_cast<Asn1Choice*>(node));
  } else if (plan.layout == NodeLayout::kBitStringNode) {
    ReleaseOctets(static_cast<Asn1BitString*>(node)->data);
  } else {
    return;
  }
  ReleaseNode(node);
}

}  // namespace

void FreeTree(const Plan& plan, void* node) {
  if (plan.layout != NodeLayout::kNotAKind && IsUnchangedRoot(node)) return ReleaseRoot(node);
  FreeNode(plan, node);
}

Status CompareTrees(const Asn1Item& item, const void* first, const void* second, bool& equal) {
  if (first == nullptr || second == nullptr) {
    equal = first == second;
    return Status();
  }
  // DEVIATES: NULL, ENUMERATED, CHOICE and open values are not compared: callers know the status, and compare such
  // types member by member.
  if (item.kind == TESSEL_KIND_NULL || item.kind == TESSEL_KIND_ENUMERATED) return Fail(TESSEL_UNSUPPORTED_KIND);
  switch (NodeLayoutOf(item)) {
    case NodeLayout::kValueNode:
      return CompareValues(*static_cast<const Asn1Value*>(first), *static_cast<const Asn1Value*>(second), equal);
    case NodeLayout::kBitStringNode:
      return CompareBitStrings(*static_cast<const Asn1BitString*>(first), *static_cast<const Asn1BitString*>(second),
                               equal);
    case NodeLayout::kListNode:
      return CompareLists(item, *static_cast<const Asn1List*>(first), *static_cast<const Asn1List*>(second), equal);
    case NodeLayout::kSlotsNode:
      return CompareSlots(item, first, second, equal);
    case NodeLayout::kOpenNode:
    case NodeLayout::kChoiceNode:
    case NodeLayout::kNotAKind:
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
  if (!IsOptional(*descriptor) || NodeLayoutOf(*descriptor) != NodeLayout::kSlotsNode)
    return Fail(TESSEL_INVALID_ARGUMENT);
  Pool pool(RoomBeside(*descriptor));
  const Leaves leaves = withLeaves != 0 ? Leaves::kEmpty : Leaves::kAbsent;
  const Made made = WholeOrNothing(*descriptor, CreateMembers(pool, *descriptor, leaves));
  *object = made.node;
  return made.status;
}

uint32_t TESSEL_CALL FreeAsn1Object(const Asn1Item* descriptor, void* object) {
  if (descriptor != nullptr) FreeTree(*descriptor, object);
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
