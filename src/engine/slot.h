// The member that a function is about, and what functions do with members of any type.
#pragma once

#include <cstdint>
#include <utility>

#include "engine/codec.h"
#include "engine/lifecycle.h"
#include "engine/require.h"
#include "engine/status.h"
#include "engine/tree_owner.h"
#include "tessel/asn1.hpp"
#include "tessel/nodes.h"

namespace tessel {

// The slot of a member that a function reads, or the status why the member cannot be reached. Slots are made by Path,
// and by functions that start from a handle. Every function below returns that status first.
template <class Node>
class ReadSlot {
 public:
  // A null node stands for a member that is absent.
  ReadSlot(Node* node, SourceLocation at) : node_(node), at_(at) {}
  ReadSlot(Status unreachable, SourceLocation at) : unreachable_(unreachable), at_(at) {}

  // The source location of the exported function for which the slot was made.
  [[nodiscard]] SourceLocation At() const { return at_; }
  [[nodiscard]] Status Unreachable() const { return unreachable_; }

  // The member's node. TESSEL_ABSENT: there is none.
  Status Load(Node*& node) const {
    TRY(unreachable_);
    if (node_ == nullptr) return Fail(TESSEL_ABSENT, at_);
    node = node_;
    return Status();
  }

  // The node, or null when it is absent or cannot be reached.
  [[nodiscard]] Node* OrNull() const { return node_; }

 private:
  Status unreachable_;
  Node* node_ = nullptr;
  SourceLocation at_;
};

// The slot of a member that a function changes.
template <class Node>
class Slot {
 public:
  Slot(Node*& member, SourceLocation at) : member_(&member), at_(at) {}
  Slot(Status unreachable, SourceLocation at) : unreachable_(unreachable), at_(at) {}

  operator ReadSlot<Node>() const {
    return unreachable_.Failed() ? ReadSlot<Node>(unreachable_, at_) : ReadSlot<Node>(*member_, at_);
  }
  [[nodiscard]] SourceLocation At() const { return at_; }
  [[nodiscard]] Status Unreachable() const { return unreachable_; }
  Status Load(Node*& node) const { return ReadSlot<Node>(*this).Load(node); }
  [[nodiscard]] Node* OrNull() const { return ReadSlot<Node>(*this).OrNull(); }

  // The pointer in the slot, which must be reachable.
  [[nodiscard]] Node*& Member() const {
    Require(unreachable_.Ok());
    return *member_;
  }

 private:
  Status unreachable_;
  Node** member_ = nullptr;
  SourceLocation at_;
};

// The slot that holds a handle itself. It is unreachable when the handle is null (TESSEL_INVALID_ARGUMENT).
template <class Node>
Slot<Node> SlotOf(Node*& handle, Caller at = {}) {
  return handle == nullptr ? Slot<Node>(Fail(TESSEL_INVALID_ARGUMENT, at), at) : Slot<Node>(handle, at);
}

// Puts a node, which is taken, into the slot, and releases the node that the slot held.
template <class Node>
Status Take(const Slot<Node>& slot, const TypeOf<Node>& item, Node* node) {
  TRY(slot.Unreachable());
  NoteChange();
  Node* held = std::exchange(slot.Member(), Taken(node));
  if (held != node) FreeTree(item, held);
  return Status();
}

template <class Node>
Status Remove(const Slot<Node>& slot, const TypeOf<Node>& item) {
  return Take<Node>(slot, item, nullptr);
}

// A copy of `source` that is to replace the node in a slot. With a null source, the member is to be removed.
template <class Node>
class Replacement {
 public:
  Replacement(const Slot<Node>& slot, const TypeOf<Node>& item, const Node* source) : slot_(slot), copy_(item) {
    made_ = slot.Unreachable();
    if (made_.Ok() && source != nullptr) made_ = Copy(item, source, copy_.Out(), slot.At());
  }

  // The failure to copy or to reach the slot, if there was one.
  [[nodiscard]] Status Made() const { return made_; }
  // Puts the copy into the slot. Made() must be a success.
  void Take() { static_cast<void>(tessel::Take(slot_, copy_.NodeType(), copy_.Release())); }

 private:
  Slot<Node> slot_;
  TreeOwner<Node> copy_;
  Status made_;
};

// Puts copies into several slots, or, after a failure, into none. All copies are made before the first slot is changed,
// so that a source can be a part of what the slots hold.
template <class... Replacements>
Status TakeAll(Replacements... replacements) {
  TRY(FirstFailure(replacements.Made()...));
  (replacements.Take(), ...);
  return Status();
}

// Puts a copy of `source`, which must not be null, into the slot.
template <class Node>
Status Store(const Slot<Node>& slot, const TypeOf<Node>& item, const Node* source) {
  if (slot.Unreachable().Ok() && source == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, slot.At());
  return TakeAll(Replacement<Node>(slot, item, source));
}

// Delivers the encoding of the member alone.
template <class Node>
Status EncodeMember(const ReadSlot<Node>& slot, const TypeOf<Node>& item, uint8_t* buffer, uint32_t* length) {
  Node* node = nullptr;
  TRY(slot.Load(node));
  return Encode(item, node, buffer, length, slot.At());
}

// Members of primitive types.

// An INTEGER, OCTET STRING, ... as content octets. Setting needs at least one octet, and a node, because it makes none.
Status GetContent(const ReadSlot<Asn1Value>& slot, uint8_t* buffer, uint32_t* length);
Status SetContent(const Slot<Asn1Value>& slot, Asn1Kind kind, const uint8_t* octets, uint32_t size);

// An INTEGER as a number. Setting stores a new node.
Status GetNumber(const ReadSlot<Asn1Value>& slot, int32_t* number);
Status SetNumber(const Slot<Asn1Value>& slot, int32_t number);

// A BIT STRING; `unused` can be null. Setting stores a new node.
Status GetBits(const ReadSlot<Asn1BitString>& slot, uint8_t* buffer, uint32_t* length, uint8_t* unused = nullptr);
Status SetBits(const Slot<Asn1BitString>& slot, const uint8_t* octets, uint32_t size, uint8_t unused = 0);

}  // namespace tessel
