// The engine's view of a descriptor.
//
// A Plan holds the answers to what the engine asks about an item at every element. For the library's own descriptors
// the compiler makes the plans of all members, from the types of the descriptors (asn1.hpp). For a descriptor of a
// caller, the plan of a member is made each time the engine comes to that member. Both kinds of plans go through the
// same code.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "tessel/asn1.hpp"
#include "tessel/descriptor.h"
#include "tessel/nodes.h"

namespace tessel {

constexpr uint8_t TagClass(const Asn1Item& item) { return static_cast<uint8_t>(item.flags & TESSEL_CLASS_MASK); }
constexpr uint8_t ConstructedBit(const Asn1Item& item) { return static_cast<uint8_t>((item.flags >> 8) & 0x20); }
constexpr bool IsExplicit(const Asn1Item& item) { return (item.flags & TESSEL_FLAG_EXPLICIT) != 0; }
constexpr bool IsOptional(const Asn1Item& item) { return (item.flags & TESSEL_FLAG_OPTIONAL) != 0; }
constexpr uint32_t UniversalTag(const Asn1Item& item) { return item.kind & 0x7F; }

// The tag number with which the item's encoding begins: with an EXPLICIT tag, the number of its wrapper.
constexpr uint32_t OwnTag(const Asn1Item& item) {
  return item.tagNumber < 0 ? UniversalTag(item) : static_cast<uint32_t>(item.tagNumber);
}

// The one element descriptor of a SEQUENCE OF or SET OF, or null when the descriptor is inconsistent.
constexpr const Asn1Item* ElementOf(const Asn1Item& item) {
  return item.memberCount == 1 && item.members != nullptr ? item.members[0] : nullptr;
}

// Whether a descriptor does not contradict itself about its members: none is null, and a node has one slot for each.
// The library's own descriptors are consistent by construction; a caller's descriptor is checked before its members are
// used.
bool IsConsistent(const Asn1Item& item);

// How many descriptors may be nested in each other. A descriptor that contains itself could use up the stack otherwise:
// with this limit 128 KB are enough for every function. Types in use nest less than twenty deep.
inline constexpr uint32_t kMaximumDepth = 64;

// Which struct holds the values of a kind (nodes.h).
enum class NodeLayout : uint8_t {
  kNotAKind,
  kValueNode,
  kOpenNode,
  kBitStringNode,
  kChoiceNode,
  kListNode,
  kSlotsNode
};

constexpr bool IsValueLayout(NodeLayout layout) {
  return layout == NodeLayout::kValueNode || layout == NodeLayout::kOpenNode;
}

namespace detail {

inline constexpr uint32_t kKindCount = TESSEL_KIND_SET_OF + 1;

consteval std::array<NodeLayout, kKindCount> MakeNodeLayouts() {
  std::array<NodeLayout, kKindCount> layouts{};
  for (size_t kind : {1U, 2U, 4U, 5U, 6U, 10U, 12U, 30U}) layouts[kind] = NodeLayout::kValueNode;
  for (size_t kind = TESSEL_KIND_NUMERIC_STRING; kind <= TESSEL_KIND_UNIVERSAL_STRING; ++kind) {
    layouts[kind] = NodeLayout::kValueNode;
  }
  layouts[TESSEL_KIND_BIT_STRING] = NodeLayout::kBitStringNode;
  layouts[TESSEL_KIND_ANY] = NodeLayout::kOpenNode;
  layouts[TESSEL_KIND_CHOICE] = NodeLayout::kChoiceNode;
  layouts[TESSEL_KIND_SEQUENCE_OF] = layouts[TESSEL_KIND_SET_OF] = NodeLayout::kListNode;
  layouts[TESSEL_KIND_SEQUENCE] = layouts[TESSEL_KIND_SET] = NodeLayout::kSlotsNode;
  return layouts;
}

inline constexpr std::array<NodeLayout, kKindCount> kNodeLayouts = MakeNodeLayouts();

}  // namespace detail

constexpr NodeLayout NodeLayoutOf(const Asn1Item& item) {
  return item.kind < detail::kKindCount ? detail::kNodeLayouts[item.kind] : NodeLayout::kNotAKind;
}

// How an item is read and written when its identifier octet alone tells, or when it is a CHOICE or ANY without a tag.
// An item that needs a closer look has no form (kNone): it has a wrapper, a tag number that takes octets of its own, or
// a DEFAULT other than a BOOLEAN or INTEGER, it is a SET, or its flags do not fit its kind.
enum class Form : uint8_t { kNone, kChoice, kSlots, kList, kBits, kValue, kValueWithDefault, kOpen };

// Whether the nodes of items of the form are Asn1Value.
constexpr bool IsValueForm(Form form) { return form >= Form::kValue; }

// `hasDefault` tells whether the item has a DEFAULT, `isList` whether it has one element descriptor. Both are
// parameters, because with sanitizers g++ refuses to compare an address with null in a constant expression.
constexpr Form FormOf(const Asn1Item& item, bool hasDefault, bool isList) {
  constexpr uint32_t kSmallestHighTag = 31;
  if (IsExplicit(item)) return Form::kNone;
  const bool isConstructed = ConstructedBit(item) != 0;
  const bool isOwnOctet = OwnTag(item) < kSmallestHighTag && (OwnTag(item) | TagClass(item)) != 0;
  const auto unless = [](bool isOdd, Form form) { return isOdd ? Form::kNone : form; };
  switch (NodeLayoutOf(item)) {
    case NodeLayout::kOpenNode:
      return unless(hasDefault || TagClass(item) != TESSEL_CLASS_UNIVERSAL, Form::kOpen);
    case NodeLayout::kChoiceNode:
      return unless(hasDefault, Form::kChoice);
    case NodeLayout::kValueNode:
      if (isConstructed || !isOwnOctet) return Form::kNone;
      if (!hasDefault) return Form::kValue;
      return unless(item.kind > TESSEL_KIND_INTEGER || !IsOptional(item), Form::kValueWithDefault);
    case NodeLayout::kBitStringNode:
      return unless(hasDefault || isConstructed || !isOwnOctet, Form::kBits);
    case NodeLayout::kListNode:
      return unless(hasDefault || !isConstructed || !isOwnOctet || !isList, Form::kList);
    case NodeLayout::kSlotsNode:
      return unless(hasDefault || !isConstructed || !isOwnOctet || item.kind == TESSEL_KIND_SET, Form::kSlots);
    case NodeLayout::kNotAKind:
      break;
  }
  return Form::kNone;
}

// The identifier octet of an item that has a form and a tag of its own; kNoIdentifier, which no octet equals, for
// others.
inline constexpr uint16_t kNoIdentifier = 0x100;
constexpr uint16_t IdentifierOf(const Asn1Item& item, Form form) {
  if (form == Form::kNone || form == Form::kChoice || form == Form::kOpen) return kNoIdentifier;
  return static_cast<uint16_t>(TagClass(item) | ConstructedBit(item) | OwnTag(item));
}

struct Plan;

// A descriptor whose C++ type names the descriptors of its members (asn1.hpp).
template <class Descriptor>
concept TypedDescriptor = requires {
  typename Descriptor::Members;
};

namespace detail {

template <const auto&... items>
constexpr const Plan* PlansOf(ItemList<items...> members);
constexpr const Plan* PlansOf(ItemList<> /*members*/) { return nullptr; }

}  // namespace detail

struct Plan {
  Plan() = default;
  constexpr Plan(const Asn1Item& source)
      : Plan(source, nullptr, FormOf(source, source.defaultValue != nullptr, ElementOf(source) != nullptr)) {}
  template <class Node>
  constexpr Plan(const Item<Node>& source) : Plan(static_cast<const Asn1Item&>(source)) {}
  template <TypedDescriptor Descriptor>
  constexpr Plan(const Descriptor& source)
      : Plan(source, detail::PlansOf(typename Descriptor::Members()),
             FormOf(source, Descriptor::kHasDefault, source.memberCount == 1)) {}
  constexpr Plan(const Asn1Item& source, const Plan* memberPlans, Form itsForm)
      : item(&source),
        members(memberPlans),
        memberCount(source.memberCount),
        kind(source.kind),
        identifier(IdentifierOf(source, itsForm)),
        layout(NodeLayoutOf(source)),
        form(itsForm) {}

  const Asn1Item* item;
  // One plan for each member of the item; null when the compiler has made none.
  const Plan* members;
  uint32_t memberCount;
  uint32_t kind;
  uint16_t identifier;
  NodeLayout layout;
  Form form;
};

namespace detail {

template <const auto&... items>
inline constexpr Plan kPlans[] = {Plan(items)...};

template <const auto&... items>
constexpr const Plan* PlansOf(ItemList<items...> /*members*/) {
  return kPlans<items...>;
}

}  // namespace detail

// The plan of a descriptor whose nodes are of NodeType. As a parameter it makes sure that descriptor and node fit.
template <class NodeType>
struct Type : Plan {
  template <std::derived_from<Item<NodeType>> Descriptor>
  constexpr Type(const Descriptor& descriptor) : Plan(descriptor) {}
};
// The type of such a parameter when Node is deduced from another argument.
template <class Node>
using TypeOf = std::type_identity_t<Type<Node>>;

// The plans of an item's members.
class MemberPlans {
 public:
  // NOLINTNEXTLINE(clang-analyzer-optin.cplusplus.UninitializedObject)
  explicit MemberPlans(const Plan& plan) : plans_(plan.members), count_(plan.memberCount), item_(plan.item) {}

  // Whether the plans may be asked for.
  [[nodiscard]] bool AreConsistent() const { return plans_ != nullptr || IsConsistent(*item_); }
  [[nodiscard]] uint32_t Count() const { return count_; }
  // The plan is valid until the next one is asked for.
  const Plan& operator[](uint32_t i) { return plans_ != nullptr ? plans_[i] : Make(i); }

 private:
  [[gnu::noinline]] const Plan& Make(uint32_t i) {
    made_ = Plan(*item_->members[i]);
    return made_;
  }

  const Plan* const plans_;
  const uint32_t count_;
  const Asn1Item* const item_;
  Plan made_;  // set by Make, which most descriptors never need
};

// Callers of 32-bit builds are promised that descriptors and nodes are fields of 32 bits each, without a gap.
static_assert(sizeof(Asn1Item) == 5 * sizeof(uint32_t) + 2 * sizeof(void*) + (sizeof(void*) == 8 ? 4 : 0));
static_assert(offsetof(Asn1Item, members) == 16);
static_assert(sizeof(Asn1Oid) == sizeof(Asn1Value) && sizeof(Asn1Any) == sizeof(Asn1Value));
static_assert(sizeof(void*) != 4 || (sizeof(Asn1Value) == 12 && offsetof(Asn1Value, data) == 8));
static_assert(sizeof(void*) != 4 || (sizeof(Asn1BitString) == 12 && offsetof(Asn1BitString, data) == 8));
static_assert(sizeof(void*) != 4 || (sizeof(Asn1Choice) == 8 && offsetof(Asn1Choice, value) == 4));
static_assert(sizeof(void*) != 4 ||
              (sizeof(Asn1List) == 20 && offsetof(Asn1List, items) == 4 && offsetof(Asn1List, capacity) == 8 &&
               offsetof(Asn1List, compare) == 12 && offsetof(Asn1List, sorted) == 16));

}  // namespace tessel
