#include "engine/primitives.h"

#include <algorithm>
#include <cstring>

#include "engine/buffer.h"
#include "engine/codec.h"
#include "engine/nodes.h"
#include "engine/tree_owner.h"
#include "tessel/nodes.hpp"

namespace tessel {
namespace {

// Copies the octets into memory of their own; the copy of none is null. False when there is no memory.
bool CopyOctets(Octets octets, uint8_t*& copy) {
  copy = nullptr;
  if (octets.empty()) return true;
  copy = static_cast<uint8_t*>(AllocateOctets(octets.size()));
  if (copy != nullptr) std::memcpy(copy, octets.data(), octets.size());
  return copy != nullptr;
}

// Replaces the octets of an Asn1Value or Asn1BitString by `data`, which the node takes.
template <class Node>
void Replace(Node& node, uint8_t* data, uint32_t length) {
  NoteChange();
  ReleaseOctets(node.data);
  node.data = data;
  node.length = length;
}

// Makes the descriptor of the primitive type with the universal tag number in the low octet of `tag`.
// TESSEL_UNSUPPORTED_KIND: its nodes are not Asn1Value.
Status PlainType(uint32_t tag, Item<Asn1Value>& item) {
  item = {{0, tag & 0xFF, kNoTagNumber, 0, nullptr, 0, nullptr}};
  return NodeLayoutOf(item) == NodeLayout::kValueNode ? Status() : Fail(TESSEL_UNSUPPORTED_KIND);
}

}  // namespace

Status ReadValue(const Asn1Value& value, uint8_t* buffer, uint32_t* length, Caller at) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  if (value.data == nullptr && value.length != 0) return Fail(TESSEL_ABSENT, at);
  return Deliver(ContentOf(value), buffer, length, at);
}

Status ReadInt32(const Asn1Value& value, int32_t* number, Caller at) {
  if (number == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  if (value.data == nullptr) return Fail(TESSEL_ABSENT, at);
  const Octets content = ContentOf(value);
  if (content.size() > sizeof *number) return Fail(TESSEL_BUFFER_TOO_SMALL, at);
  uint32_t bits = !content.empty() && (content[0] & 0x80) != 0 ? UINT32_MAX : 0;
  for (const uint8_t octet : content) bits = bits << 8 | octet;
  *number = static_cast<int32_t>(bits);
  return Status();
}

Status ReadBoolean(const Asn1Value& value, uint32_t* flag, Caller at) {
  if (flag == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  if (!IsBooleanContent(ContentOf(value))) return Fail(TESSEL_INVALID_CONTENT, at);
  *flag = value.data[0] != 0 ? 1 : 0;
  return Status();
}

Status ReadBits(const Asn1BitString& bits, uint8_t* buffer, uint32_t* length, uint8_t* unused, Caller at) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  // DEVIATES: an empty BIT STRING is absent, as an empty INTEGER is, by which callers tell what was never set; an empty
  // string is not.
  if (bits.data == nullptr) return Fail(TESSEL_ABSENT, at);
  if (unused != nullptr) *unused = static_cast<uint8_t>(bits.unused);
  return Deliver(ContentOf(bits), buffer, length, at);
}

Status DecodeContent(const Type<Asn1Value>& item, Octets encoding, uint8_t* buffer, uint32_t* length, Caller at) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  TreeOwner<Asn1Value> value(item);
  TRY(Decode(item, encoding.data(), static_cast<uint32_t>(encoding.size()), value.Out(), at));
  return Deliver(ContentOf(*value.Get()), buffer, length, at);
}

Asn1Value* NewValue(uint32_t tag, Octets content) {
  void* node = nullptr;
  if (CreateTree(kInteger, node, Leaves::kEmpty).Failed()) return nullptr;
  auto* value = static_cast<Asn1Value*>(node);
  if (SetContent(*value, tag, content).Ok()) return value;
  ReleaseNode(node);
  return nullptr;
}

Status SetContent(Asn1Value& value, uint32_t tag, Octets content) {
  uint8_t* copy = nullptr;
  if (!CopyOctets(content, copy)) return Fail(TESSEL_OUT_OF_MEMORY);
  Replace(value, copy, static_cast<uint32_t>(content.size()));
  value.tag = tag;
  return Status();
}

Status SetBits(Asn1BitString& bits, const uint8_t* octets, uint32_t length, uint8_t unused, Caller at) {
  constexpr uint8_t kMostUnusedBits = 7;
  if (octets == nullptr || unused > kMostUnusedBits) return Fail(TESSEL_INVALID_ARGUMENT, at);
  uint8_t* copy = nullptr;
  if (!CopyOctets({octets, length}, copy)) return Fail(TESSEL_OUT_OF_MEMORY, at);
  if (copy != nullptr) copy[length - 1] &= static_cast<uint8_t>(0xFF << unused);
  Replace(bits, copy, length);
  bits.unused = copy == nullptr ? 0 : unused;
  return Status();
}

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL GetAsn1Value(const Asn1Value* value, uint8_t* buffer, uint32_t* length) {
  return value == nullptr ? Fail(TESSEL_INVALID_ARGUMENT) : ReadValue(*value, buffer, length);
}

uint32_t TESSEL_CALL GetAsn1ValueAndType(const Asn1Value* value, uint32_t* type, uint8_t* buffer, uint32_t* length) {
  if (value == nullptr || type == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  if (value->data == nullptr) return Fail(TESSEL_ABSENT);
  Status status = Deliver(ContentOf(*value), buffer, length);
  if (status.Ok() && buffer != nullptr) *type = value->tag;
  return status;
}

uint32_t TESSEL_CALL GetAsn1ValueLength(const Asn1Value* value) { return value == nullptr ? 0 : value->length; }

uint32_t TESSEL_CALL GetAsn1EncodedValue(const void* node, const Asn1Item* descriptor, uint8_t* buffer,
                                         uint32_t* length) {
  if (node == nullptr || descriptor == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  return EncodeTree(*descriptor, node, buffer, *length);
}

uint32_t TESSEL_CALL GetAsn1Integer(const Asn1Value* value, uint8_t* buffer, uint32_t* length) {
  if (value == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  if (value->data == nullptr) return Fail(TESSEL_ABSENT);
  const Octets content = ContentOf(*value);
  Status status = Offer(content.size(), buffer, length);
  // DEVIATES: numbers are little-endian here, and big-endian in functions of certificates and CRLs: programs hold both
  // so.
  if (status.Ok() && buffer != nullptr) std::reverse_copy(content.begin(), content.end(), buffer);
  return status;
}

uint32_t TESSEL_CALL GetAsn1Int32(const Asn1Value* value, int32_t* number) {
  return value == nullptr ? Fail(TESSEL_INVALID_ARGUMENT) : ReadInt32(*value, number);
}

uint32_t TESSEL_CALL GetAsn1Boolean(const Asn1Value* value, uint32_t* flag) {
  return value == nullptr ? Fail(TESSEL_INVALID_ARGUMENT) : ReadBoolean(*value, flag);
}

uint32_t TESSEL_CALL GetAsn1BitString(const Asn1BitString* bits, uint8_t* unused, uint8_t* buffer, uint32_t* length) {
  return bits == nullptr ? Fail(TESSEL_INVALID_ARGUMENT) : ReadBits(*bits, buffer, length, unused);
}

uint32_t TESSEL_CALL SetAsn1Integer(Asn1Value* value, const uint8_t* octets, uint32_t length) {
  if (value == nullptr || octets == nullptr || length == 0) return Fail(TESSEL_INVALID_ARGUMENT);
  while (length > 1 && IsRedundant(octets[length - 1], octets[length - 2])) --length;
  Scratch<uint8_t> content(static_cast<uint8_t*>(AllocateOctets(length)));
  if (content == nullptr) return Fail(TESSEL_OUT_OF_MEMORY);
  std::reverse_copy(octets, octets + length, content.get());
  Replace(*value, content.release(), length);
  value->tag = TESSEL_KIND_INTEGER;
  return Status();
}

uint32_t TESSEL_CALL SetAsn1Int32(Asn1Value* value, int32_t number) {
  if (value == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const NumberNode source(TESSEL_KIND_INTEGER, number);
  return SetContent(*value, TESSEL_KIND_INTEGER, ContentOf(source.Node()));
}

Asn1Value* TESSEL_CALL AllocAsn1Integer(int32_t number) {
  return NewValue(TESSEL_KIND_INTEGER, ContentOf(NumberNode(TESSEL_KIND_INTEGER, number).Node()));
}

Asn1Value* TESSEL_CALL AllocAsn1Integer_s(const uint8_t* octets, uint32_t length) {
  return octets == nullptr ? nullptr : NewValue(TESSEL_KIND_INTEGER, {octets, length});
}

Asn1Value* TESSEL_CALL AllocAsn1Boolean(uint32_t flag) {
  const uint8_t content = flag != 0 ? 0xFF : 0x00;
  return NewValue(TESSEL_KIND_BOOLEAN, {&content, 1});
}

uint32_t TESSEL_CALL CheckAsn1Boolean(const Asn1Value* value) {
  if (value == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  if (value->tag != TESSEL_KIND_BOOLEAN || !IsBooleanContent(ContentOf(*value))) return Fail(TESSEL_INVALID_CONTENT);
  return Status();
}

uint32_t TESSEL_CALL CheckAsn1Integer(const Asn1Value* value) {
  if (value == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  if (value->tag != TESSEL_KIND_INTEGER || !IsIntegerContent(ContentOf(*value))) return Fail(TESSEL_INVALID_CONTENT);
  return Status();
}

uint32_t TESSEL_CALL EncodeAsn1Int32(int32_t number, uint8_t* buffer, uint32_t* length) {
  return Encode(kInteger, &NumberNode(TESSEL_KIND_INTEGER, number).Node(), buffer, length);
}

uint32_t TESSEL_CALL DecodeAsn1Int32(const uint8_t* data, uint32_t size, int32_t* number) {
  if (number == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  TreeOwner value(kInteger);
  TRY(Decode(kInteger, data, size, value.Out()));
  return GetAsn1Int32(value.Get(), number);
}

uint32_t TESSEL_CALL EncodeAsn1PrimitiveValue(uint32_t tag, const uint8_t* content, uint32_t size, uint8_t* buffer,
                                              uint32_t* length) {
  if (content == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  Item<Asn1Value> item{};
  TRY(PlainType(tag, item));
  const Asn1Value value = Borrow(item.kind, {content, size});
  return Encode(item, &value, buffer, length);
}

uint32_t TESSEL_CALL DecodeAsn1PrimitiveValue(uint32_t tag, const uint8_t* data, uint32_t size, uint8_t* buffer,
                                              uint32_t* length) {
  if (data == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  Item<Asn1Value> item{};
  TRY(PlainType(tag, item));
  return DecodeContent(item, {data, size}, buffer, length);
}

uint32_t TESSEL_CALL EncodeAsn1IA5String(const uint8_t* content, uint32_t size, uint8_t* buffer, uint32_t* length) {
  return EncodeAsn1PrimitiveValue(TESSEL_KIND_IA5_STRING, content, size, buffer, length);
}

uint32_t TESSEL_CALL DecodeAsn1IA5String(const uint8_t* data, uint32_t size, uint8_t* buffer, uint32_t* length) {
  return DecodeAsn1PrimitiveValue(TESSEL_KIND_IA5_STRING, data, size, buffer, length);
}

uint32_t TESSEL_CALL EncodeAsn1NumericString(const uint8_t* content, uint32_t size, uint8_t* buffer, uint32_t* length) {
  return EncodeAsn1PrimitiveValue(TESSEL_KIND_NUMERIC_STRING, content, size, buffer, length);
}

uint32_t TESSEL_CALL DecodeAsn1NumericString(const uint8_t* data, uint32_t size, uint8_t* buffer, uint32_t* length) {
  return DecodeAsn1PrimitiveValue(TESSEL_KIND_NUMERIC_STRING, data, size, buffer, length);
}
