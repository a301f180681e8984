// What the functions of every named type do by its descriptor: decode, encode, create, copy and free.
#pragma once

#include <cstdint>

#include "engine/decoder.h"
#include "engine/encoder.h"
#include "engine/lifecycle.h"
#include "engine/memory.h"
#include "engine/status.h"
#include "tessel/asn1.hpp"

namespace tessel {

template <class Node>
Status Decode(const TypeOf<Node>& item, const uint8_t* data, uint32_t size, Node** object, Caller at = {}) {
  if (data == nullptr || object == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  const Decoded decoded = DecodeTree(item, Octets(data, size));
  *object = static_cast<Node*>(decoded.node);
  return decoded.status;
}

template <class Node>
Status Encode(const TypeOf<Node>& item, const Node* object, uint8_t* buffer, uint32_t* length, Caller at = {}) {
  if (object == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  return EncodeTree(item, object, buffer, *length);
}

// Encodes an object of an opaque type, which the library has made. The size of its encoding is known when it is an
// unchanged root. Borrowed nodes must not be handed to this function.
template <class Node>
Status EncodeObject(const TypeOf<Node>& item, const Node* object, uint8_t* buffer, uint32_t* length, Caller at = {}) {
  if (object == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  const uint32_t size = buffer == nullptr ? EncodedSizeOf(object) : 0;
  if (size == 0) return EncodeTree(item, object, buffer, *length);
  *length = size;
  return Status();
}

template <class Node>
Status Create(const TypeOf<Node>& item, Leaves leaves, Node** object, Caller at = {}) {
  if (object == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  void* created = nullptr;
  Status status = CreateTree(item, created, leaves);
  *object = static_cast<Node*>(created);
  return status;
}

template <class Node>
Status Copy(const TypeOf<Node>& item, const Node* source, Node** copy, Caller at = {}) {
  if (source == nullptr || copy == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  const Made made = CopyTree(item, source);
  *copy = static_cast<Node*>(made.node);
  return made.status;
}

template <class Node>
Status Free(const TypeOf<Node>& item, Node* object) {
  FreeTree(item, object);
  return Status();
}

}  // namespace tessel
