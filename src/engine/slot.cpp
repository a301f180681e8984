#include "engine/slot.h"

#include "engine/primitives.h"
#include "engine/tree_owner.h"
#include "tessel/nodes.hpp"

namespace tessel {

Status GetContent(const ReadSlot<Asn1Value>& slot, uint8_t* buffer, uint32_t* length) {
  Asn1Value* value = nullptr;
  TRY(slot.Load(value));
  return ReadValue(*value, buffer, length, slot.At());
}

Status SetContent(const Slot<Asn1Value>& slot, Asn1Kind kind, const uint8_t* octets, uint32_t size) {
  Asn1Value* value = nullptr;
  TRY(slot.Load(value));
  if (octets == nullptr || size == 0) return Fail(TESSEL_INVALID_ARGUMENT, slot.At());
  return SetContent(*value, static_cast<uint32_t>(kind), {octets, size});
}

Status GetNumber(const ReadSlot<Asn1Value>& slot, int32_t* number) {
  Asn1Value* value = nullptr;
  TRY(slot.Load(value));
  return ReadInt32(*value, number, slot.At());
}

Status SetNumber(const Slot<Asn1Value>& slot, int32_t number) {
  return Store(slot, kInteger, &NumberNode(TESSEL_KIND_INTEGER, number).Node());
}

Status GetBits(const ReadSlot<Asn1BitString>& slot, uint8_t* buffer, uint32_t* length, uint8_t* unused) {
  Asn1BitString* bits = nullptr;
  TRY(slot.Load(bits));
  return ReadBits(*bits, buffer, length, unused, slot.At());
}

Status SetBits(const Slot<Asn1BitString>& slot, const uint8_t* octets, uint32_t size, uint8_t unused) {
  TRY(slot.Unreachable());
  const Asn1BitString none{};
  TreeOwner<Asn1BitString> bits(kBitString);
  TRY(Copy(kBitString, &none, bits.Out(), slot.At()));
  TRY(SetBits(*bits.Get(), octets, size, unused, slot.At()));
  return Take(slot, kBitString, bits.Release());
}

}  // namespace tessel
