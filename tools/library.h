// Calls to the library: objects that end with their scope, and octets that are fetched from it.
#pragma once

#include <cstdint>
#include <vector>

#include "ber.h"
#include "tessel/tessel.h"

namespace tool {

using Bytes = std::vector<uint8_t>;

inline uint32_t SizeOf(Octets octets) { return static_cast<uint32_t>(octets.size()); }

// An object that the library hands out through a pointer to its handle.
template <typename Object>
class Owned {
 public:
  using FreeFunction = uint32_t(TESSEL_CALL*)(Object*);

  explicit Owned(FreeFunction free) : free_(free) {}
  ~Owned() { free_(object_); }
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;

  Object** Out() { return &object_; }
  [[nodiscard]] Object* Get() const { return object_; }

 private:
  FreeFunction free_;
  Object* object_ = nullptr;
};

// A tree of nodes (nodes.h), for types that the library has no functions for.
class Tree {
 public:
  explicit Tree(const Asn1Item& item) : item_(item) {}
  ~Tree() { FreeAsn1Object(&item_, root_); }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;

  uint32_t Decode(Octets octets) { return Asn1DecodeItem(octets.data(), SizeOf(octets), &item_, &root_, nullptr); }
  [[nodiscard]] const void* Root() const { return root_; }

 private:
  const Asn1Item& item_;
  void* root_ = nullptr;
};

// Calls `call(buffer, length)` for the length and then for the octets.
template <typename Call>
uint32_t Fetch(Bytes& octets, Call call) {
  uint32_t length = 0;
  octets.clear();
  const uint32_t status = call(nullptr, &length);
  if (status != TESSEL_OK || length == 0) return status;
  octets.resize(length);
  return call(octets.data(), &length);
}

// Decodes a list, and calls `each(index)` for its elements until one fails.
template <typename List, typename Each>
uint32_t ForEach(Octets value, Owned<List>& list, uint32_t(TESSEL_CALL* decode)(const uint8_t*, uint32_t, List**),
                 uint32_t(TESSEL_CALL* getCount)(const List*, uint32_t*), Each each) {
  uint32_t count = 0;
  uint32_t status = decode(value.data(), SizeOf(value), list.Out());
  if (status == TESSEL_OK) status = getCount(list.Get(), &count);
  for (uint32_t i = 0; status == TESSEL_OK && i < count; ++i) status = each(i);
  return status;
}

// Room for a counted identifier (oid.h).
struct CountedOid {
  uint8_t octets[UINT8_MAX + 1] = {};
  uint32_t length = sizeof octets;

  [[nodiscard]] Octets Content() const { return {octets + 1, octets[0]}; }
};

}  // namespace tool
