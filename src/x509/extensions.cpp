#include "x509/extensions.h"

#include <algorithm>

#include "engine/buffer.h"
#include "engine/codec.h"
#include "engine/lists.h"
#include "engine/nodes.h"
#include "engine/path.h"
#include "engine/primitives.h"
#include "engine/tree_owner.h"
#include "tessel/nodes.hpp"

using namespace tessel;

constinit const Asn1Item X509ExtensionItem = kX509Extension;
constinit const Asn1Item X509ExtensionsItem = kX509Extensions;

namespace tessel {
namespace {

constexpr Path<&X509Extension::extnID> kExtensionId;
constexpr Path<&X509Extension::critical> kCritical;
constexpr Path<&X509Extension::extnValue> kExtensionValue;

bool HasId(const X509Extension* extension, Octets oid) {
  return extension != nullptr && extension->extnID != nullptr && std::ranges::equal(ContentOf(*extension->extnID), oid);
}

// An extension that borrows its parts.
class BorrowedExtension {
 public:
  BorrowedExtension() = default;
  BorrowedExtension(const BorrowedExtension&) = delete;
  BorrowedExtension& operator=(const BorrowedExtension&) = delete;

  Status Make(const uint8_t* oid, bool critical, const uint8_t* value, uint32_t size, Caller at = {}) {
    if (oid == nullptr || value == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
    id_ = BorrowOid(oid);
    content_ = Borrow(TESSEL_KIND_OCTET_STRING, {value, size});
    extension_ = {&id_, BorrowBoolean(critical), &content_};
    return Status();
  }
  [[nodiscard]] const X509Extension& Node() const { return extension_; }

 private:
  Asn1Oid id_{};
  Asn1Value content_{};
  X509Extension extension_{};
};

Status AddExtension(const Slot<X509Extensions>& slot, const X509Extension& extension) {
  // DEVIATES: an extension that is there already is added again (RFC 5280, 4.2): which one is to stay is left to the
  // caller.
  return AddCopyTo(slot, kX509Extensions, kX509Extension, &extension);
}

}  // namespace

// A struct whose only member is a pointer has the address of that pointer. The library never uses the name of the
// member, so that only one type is used to access the pointer.
X509ExtensionsSlot* PublicSlot(X509Extensions*& member) { return reinterpret_cast<X509ExtensionsSlot*>(&member); }

Slot<X509Extensions> MemberOf(X509ExtensionsSlot* slot, Caller at) {
  if (slot == nullptr) return {Fail(TESSEL_INVALID_ARGUMENT, at), at};
  return {*reinterpret_cast<X509Extensions**>(slot), at};
}

ReadSlot<X509Extensions> MemberOf(const X509ExtensionsSlot* slot, Caller at) {
  if (slot == nullptr) return {Fail(TESSEL_INVALID_ARGUMENT, at), at};
  return {*reinterpret_cast<X509Extensions* const*>(slot), at};
}

Status FindExtension(const ReadSlot<X509Extensions>& slot, Octets oid, uint32_t& index) {
  TRY(slot.Unreachable());
  const X509Extensions* list = slot.OrNull();
  const uint32_t count = list == nullptr ? 0 : list->count;
  for (uint32_t i = 0; i < count; ++i) {
    if (!HasId(list->At(i), oid)) continue;
    index = i;
    return Status();
  }
  return Fail(TESSEL_NOT_FOUND, slot.At());
}

Status FindExtensionValue(const ReadSlot<X509Extensions>& slot, Octets oid, Octets& value) {
  uint32_t index = 0;
  TRY(FindExtension(slot, oid, index));
  Asn1Value* node = nullptr;
  TRY(kExtensionValue.In(ElementOf(slot, index)).Load(node));
  // An empty value has an address too, because decoding a null one would be TESSEL_INVALID_ARGUMENT and not
  // TESSEL_MALFORMED.
  static constexpr uint8_t kNothing = 0;
  value = node->length == 0 ? Octets(&kNothing, 0) : ContentOf(*node);
  return Status();
}

Status ReplaceExtension(const Slot<X509Extensions>& slot, const CountedOid& oid, Octets value) {
  TRY(slot.Unreachable());
  BorrowedExtension extension;
  TRY(extension.Make(oid.Data(), false, value.data(), static_cast<uint32_t>(value.size()), slot.At()));
  TRY(AddExtension(slot, extension.Node()));
  X509Extensions& list = *slot.Member();
  const uint32_t added = list.count - 1;
  RemoveIf(list, kX509Extension, [&](uint32_t i) { return i < added && HasId(list.At(i), oid.Content()); });
  return Status();
}

}  // namespace tessel

// A single extension.

uint32_t TESSEL_CALL CreateX509Extension(X509Extension** extension, const uint8_t* oid, uint32_t critical,
                                         const uint8_t* value, uint32_t size) {
  if (extension == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  *extension = nullptr;
  BorrowedExtension source;
  TRY(source.Make(oid, critical != 0, value, size));
  return Copy(kX509Extension, &source.Node(), extension);
}

uint32_t TESSEL_CALL SetX509Extension(X509Extension* extension, const uint8_t* oid, uint32_t critical,
                                      const uint8_t* value, uint32_t size) {
  if (extension == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  BorrowedExtension source;
  TRY(source.Make(oid, critical != 0, value, size));
  return TakeAll(Replacement<Asn1Oid>(kExtensionId.In(extension), kOid, source.Node().extnID),
                 Replacement<Asn1Value>(kCritical.In(extension), kBoolean, source.Node().critical),
                 Replacement<Asn1Value>(kExtensionValue.In(extension), kOctetString, source.Node().extnValue));
}

uint32_t TESSEL_CALL GetX509Extension(const X509Extension* extension, uint8_t* oid, uint32_t* oidLength,
                                      uint32_t* critical, uint8_t* value, uint32_t* valueLength) {
  if (AnyNull(oidLength, critical, valueLength)) return Fail(TESSEL_INVALID_ARGUMENT);
  Status oidStatus = GetOid(kExtensionId.In(extension), oid, oidLength);
  Status valueStatus = GetContent(kExtensionValue.In(extension), value, valueLength);
  Asn1Value* flag = nullptr;
  TRY(kCritical.In(extension).Load(flag));
  TRY(ReadBoolean(*flag, critical));
  return FirstFailure(oidStatus, valueStatus);
}

uint32_t TESSEL_CALL DecodeX509Extension(const uint8_t* data, uint32_t size, X509Extension** extension) {
  return Decode(kX509Extension, data, size, extension);
}
uint32_t TESSEL_CALL EncodeX509Extension(const X509Extension* extension, uint8_t* buffer, uint32_t* length) {
  return Encode(kX509Extension, extension, buffer, length);
}
uint32_t TESSEL_CALL FreeX509Extension(X509Extension* extension) { return Free(kX509Extension, extension); }

// A list of extensions.

uint32_t TESSEL_CALL CreateX509Extensions(X509Extensions** extensions) {
  return Create(kX509Extensions, Leaves::kEmpty, extensions);
}
uint32_t TESSEL_CALL DecodeX509Extensions(const uint8_t* data, uint32_t size, X509Extensions** extensions) {
  return Decode(kX509Extensions, data, size, extensions);
}
uint32_t TESSEL_CALL EncodeX509Extensions(const X509Extensions* extensions, uint8_t* buffer, uint32_t* length) {
  return Encode(kX509Extensions, extensions, buffer, length);
}
uint32_t TESSEL_CALL FreeX509Extensions(X509Extensions* extensions) { return Free(kX509Extensions, extensions); }

uint32_t TESSEL_CALL AddX509ExtensionsExtension(X509ExtensionsSlot* slot, const uint8_t* oid, uint32_t critical,
                                                const uint8_t* value, uint32_t size) {
  BorrowedExtension extension;
  TRY(extension.Make(oid, critical != 0, value, size));
  return AddExtension(MemberOf(slot), extension.Node());
}

uint32_t TESSEL_CALL FindX509Extension(const X509ExtensionsSlot* slot, const uint8_t* oid, uint32_t* index) {
  if (oid == nullptr || index == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  return FindExtension(MemberOf(slot), OidContent(oid), *index);
}

uint32_t TESSEL_CALL GetX509ExtensionsExtensionsCount(const X509ExtensionsSlot* slot, uint32_t* count) {
  if (slot == nullptr || count == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const X509Extensions* list = MemberOf(slot).OrNull();
  *count = list == nullptr ? 0 : list->count;
  return Status();
}

uint32_t TESSEL_CALL GetX509ExtensionsExtension(const X509ExtensionsSlot* slot, uint32_t index, uint8_t* oid,
                                                uint32_t* oidLength, uint32_t* critical, uint8_t* value,
                                                uint32_t* valueLength) {
  if (AnyNull(oidLength, critical, valueLength)) return Fail(TESSEL_INVALID_ARGUMENT);
  X509Extensions* list = nullptr;
  TRY(MemberOf(slot).Load(list));
  X509Extension* extension = nullptr;
  TRY(GetElement(list, index, &extension));
  return GetX509Extension(extension, oid, oidLength, critical, value, valueLength);
}

uint32_t TESSEL_CALL GetX509ExtensionsExtensionValue(const X509ExtensionsSlot* slot, const uint8_t* oid,
                                                     uint8_t* buffer, uint32_t* length) {
  if (oid == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  Octets value;
  TRY(FindExtensionValue(MemberOf(slot), OidContent(oid), value));
  return Deliver(value, buffer, length);
}

uint32_t TESSEL_CALL RemoveX509ExtensionsExtension(X509ExtensionsSlot* slot, uint32_t index) {
  X509Extensions* list = nullptr;
  TRY(MemberOf(slot).Load(list));
  return RemoveElement(list, kX509Extension, index);
}

uint32_t TESSEL_CALL RemoveX509ExtensionsExtension2(X509ExtensionsSlot* slot, const uint8_t* oid) {
  if (slot == nullptr || oid == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  X509Extensions* list = MemberOf(slot).OrNull();
  if (list == nullptr) return Status();
  // DEVIATES: the extension behind a removed one is passed over, so that of neighbours with the identifier some stay:
  // programs add one of each, and rely on what stays of others.
  bool isGone = false;
  RemoveIf(*list, kX509Extension, [&](uint32_t i) {
    isGone = !isGone && HasId(list->At(i), OidContent(oid));
    return isGone;
  });
  return Status();
}

uint32_t TESSEL_CALL RemoveX509Extensions(X509ExtensionsSlot* slot) { return Remove(MemberOf(slot), kX509Extensions); }

uint32_t TESSEL_CALL ClearX509Extensions(X509ExtensionsSlot* slot) {
  if (slot == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  if (X509Extensions* list = MemberOf(slot).OrNull(); list != nullptr) Clear(*list, kX509Extension);
  return Status();
}

uint32_t TESSEL_CALL SetX509ExtensionsSorted(X509ExtensionsSlot* slot, uint32_t sorted) {
  if (slot == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  // DEVIATES: `sorted` has no effect, for extensions are a SEQUENCE OF (RFC 5280, 4.1): programs call the function.
  SetAsn1ListSorted(MemberOf(slot).OrNull(), sorted);
  return Status();
}
