#include "engine/primitives.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "engine/buffer.h"
#include "engine/codec.h"
#include "engine/nodes.h"
#include "engine/owned_tree.h"

namespace tessel {
namespace {

// The octets of a number from the least to the most significant.
std::array<uint8_t, 4> LittleEndian(uint32_t number) {
  return {static_cast<uint8_t>(number), static_cast<uint8_t>(number >> 8), static_cast<uint8_t>(number >> 16),
          static_cast<uint8_t>(number >> 24)};
}

// A copy of the octets in a block of their own; null for none. False when there is no memory.
bool CopyOctets(Octets octets, uint8_t*& copy) {
  copy = nullptr;
  if (octets.empty()) return true;
  copy = static_cast<uint8_t*>(AllocateOctets(octets.size()));
  if (copy != nullptr) std::memcpy(copy, octets.data(), octets.size());
  return copy != nullptr;
}

// Asn1Value and Asn1BitString alike.
template <class Node>
void Replace(Node& node, uint8_t* data, uint32_t length) {
  ReleaseOctets(node.data);
  node.data = data;
  node.length = length;
}

// The descriptor of a primitive type whose content is plain octets, made of the low octet of a tag.
Status PlainType(uint32_t tag, Item<Asn1Value>& item) {
  item = {{0, tag & 0xFF, kNoTagNumber, 0, nullptr, 0, nullptr}};
  return ShapeOf(item) == Shape::kValueNode ? Status() : Fail(TESSEL_UNSUPPORTED_KIND);
}

}  // namespace

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

Status SetBits(Asn1BitString* bits, const uint8_t* octets, uint32_t length, uint8_t unused, TrailingZeros zeros) {
  constexpr uint8_t kMostUnusedBits = 7;
  if (bits == nullptr || octets == nullptr || unused > kMostUnusedBits) return Fail(TESSEL_INVALID_ARGUMENT);
  BitCount count{length, length == 0 ? uint8_t{0} : unused};
  if (zeros == TrailingZeros::kTrimmed) count = WithoutTrailingZeros({octets, length}, unused);
  uint8_t* copy = nullptr;
  if (!CopyOctets({octets, count.length}, copy)) return Fail(TESSEL_OUT_OF_MEMORY);
  if (copy != nullptr) copy[count.length - 1] &= static_cast<uint8_t>(0xFF << count.unused);
  Replace(*bits, copy, count.length);
  bits->unused = count.unused;
  return Status();
}

Status SetNamedBits(Asn1BitString* bits, uint32_t flags) {
  const std::array<uint8_t, 4> octets = LittleEndian(flags);
  return SetBits(bits, octets.data(), octets.size(), 0, TrailingZeros::kTrimmed);
}

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL GetAsn1Value(const Asn1Value* value, uint8_t* buffer, uint32_t* length) {
  if (value == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  if (value->data == nullptr && value->length != 0) return Fail(TESSEL_ABSENT);
  return Deliver(ContentOf(*value), buffer, length);
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
  if (status.Ok() && buffer != nullptr) std::reverse_copy(content.begin(), content.end(), buffer);
  return status;
}

uint32_t TESSEL_CALL GetAsn1Int32(const Asn1Value* value, int32_t* number) {
  if (value == nullptr || number == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  if (value->data == nullptr) return Fail(TESSEL_ABSENT);
  const Octets content = ContentOf(*value);
  if (content.size() > sizeof *number) return Fail(TESSEL_BUFFER_TOO_SMALL);
  uint32_t bits = !content.empty() && (content[0] & 0x80) != 0 ? UINT32_MAX : 0;
  for (const uint8_t octet : content) bits = bits << 8 | octet;
  *number = static_cast<int32_t>(bits);
  return Status();
}

uint32_t TESSEL_CALL GetAsn1Boolean(const Asn1Value* value, uint32_t* flag) {
  if (value == nullptr || flag == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  if (!IsBooleanContent(ContentOf(*value))) return Fail(TESSEL_INVALID_CONTENT);
  *flag = value->data[0] != 0 ? 1 : 0;
  return Status();
}

uint32_t TESSEL_CALL GetAsn1BitString(const Asn1BitString* bits, uint8_t* unused, uint8_t* buffer, uint32_t* length) {
  if (bits == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  if (bits->data == nullptr) return Fail(TESSEL_ABSENT);
  if (unused != nullptr) *unused = static_cast<uint8_t>(bits->unused);
  return Deliver(ContentOf(*bits), buffer, length);
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
  const std::array<uint8_t, 4> octets = LittleEndian(static_cast<uint32_t>(number));
  return SetAsn1Integer(value, octets.data(), octets.size());
}

Asn1Value* TESSEL_CALL AllocAsn1Integer(int32_t number) {
  OwnedTree value(kInteger, NewValue(TESSEL_KIND_INTEGER, {}));
  return value.Get() != nullptr && SetAsn1Int32(value.Get(), number) == TESSEL_OK ? value.Release() : nullptr;
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
  const OwnedTree value(kInteger, AllocAsn1Integer(number));
  if (value.Get() == nullptr) return Fail(TESSEL_OUT_OF_MEMORY);
  return Encode(kInteger, value.Get(), buffer, length);
}

uint32_t TESSEL_CALL DecodeAsn1Int32(const uint8_t* data, uint32_t size, int32_t* number) {
  if (number == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  OwnedTree value(kInteger);
  if (Status status = Decode(kInteger, data, size, value.Out()); status.Failed()) return status;
  return GetAsn1Int32(value.Get(), number);
}

uint32_t TESSEL_CALL EncodeAsn1PrimitiveValue(uint32_t tag, const uint8_t* content, uint32_t size, uint8_t* buffer,
                                              uint32_t* length) {
  if (content == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  Item<Asn1Value> item{};
  if (Status status = PlainType(tag, item); status.Failed()) return status;
  // Only read, so the caller's own octets serve as the content.
  const Asn1Value value{item.kind, size, const_cast<uint8_t*>(content)};
  return Encode(item, &value, buffer, length);
}

uint32_t TESSEL_CALL DecodeAsn1PrimitiveValue(uint32_t tag, const uint8_t* data, uint32_t size, uint8_t* buffer,
                                              uint32_t* length) {
  if (data == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  Item<Asn1Value> item{};
  if (Status status = PlainType(tag, item); status.Failed()) return status;
  OwnedTree value(item);
  if (Status status = Decode(item, data, size, value.Out()); status.Failed()) return status;
  return Deliver(ContentOf(*value.Get()), buffer, length);
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
