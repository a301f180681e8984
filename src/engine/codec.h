// The codec and lifecycle functions that every named type has, over its descriptor.
#pragma once

#include <cstdint>

#include "engine/decoder.h"
#include "engine/descriptor.h"
#include "engine/encoder.h"
#include "engine/lifecycle.h"
#include "engine/status.h"

namespace tessel {

template <class Node>
Status Decode(const Item<Node>& item, const uint8_t* data, uint32_t size, Node** object, Site at = {}) {
  if (data == nullptr || object == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  Decoded decoded;
  Status status = DecodeTree(item, Octets(data, size), decoded);
  *object = static_cast<Node*>(decoded.node);
  return status;
}

template <class Node>
Status Encode(const Item<Node>& item, const Node* object, uint8_t* buffer, uint32_t* length, Site at = {}) {
  if (object == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  return EncodeTree(item, object, buffer, *length);
}

template <class Node>
Status Create(const Item<Node>& item, Leaves leaves, Node** object, Site at = {}) {
  if (object == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  void* created = nullptr;
  Status status = CreateTree(item, created, leaves);
  *object = static_cast<Node*>(created);
  return status;
}

template <class Node>
Status Copy(const Item<Node>& item, const Node* source, Node** copy, Site at = {}) {
  if (source == nullptr || copy == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  void* copied = nullptr;
  Status status = CopyTree(item, source, copied);
  *copy = static_cast<Node*>(copied);
  return status;
}

template <class Node>
Status Free(const Item<Node>& item, Node* object) {
  FreeTree(&item, object);
  return Status();
}

}  // namespace tessel
