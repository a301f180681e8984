#include "x509/names.h"

#include <algorithm>
#include <string_view>

#include "engine/buffer.h"
#include "engine/choices.h"
#include "engine/codec.h"
#include "engine/header.h"
#include "engine/lists.h"
#include "engine/nodes.h"
#include "engine/path.h"
#include "engine/primitives.h"
#include "engine/tree_owner.h"
#include "tessel/nodes.hpp"
#include "values/oid.h"

using namespace tessel;

constinit const Asn1Item X509NameItem = kX509Name;
constinit const Asn1Item X509GeneralNameItem = kX509GeneralName;
constinit const Asn1Item X509GeneralNamesItem = kX509GeneralNames;
constinit const Asn1Item PKIFreeTextItem = kPKIFreeText;

namespace tessel {
namespace {

constexpr Path<&AttributeTypeAndValue::type> kType;
constexpr Path<&AttributeTypeAndValue::value> kValue;

}  // namespace

Status GetName(const Slot<NameChoice>& slot, X509Name** name) {
  if (name == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, slot.At());
  NameChoice* choice = nullptr;
  TRY(slot.Load(choice));
  if (choice->value == nullptr) {
    X509Name* empty = nullptr;
    TRY(Create(kX509Name, Leaves::kEmpty, &empty, slot.At()));
    // SetChoice can fail only in releasing the node of an alternative, and there is none.
    static_cast<void>(SetChoice(kNameChoice, *choice, 0, empty));
  }
  *name = static_cast<X509Name*>(choice->value);
  return Status();
}

X509Name* NameOrNull(const ReadSlot<NameChoice>& slot) {
  const NameChoice* choice = slot.OrNull();
  return choice == nullptr ? nullptr : static_cast<X509Name*>(choice->value);
}

Status SetName(const Slot<NameChoice>& slot, const X509Name* name, Ownership ownership) {
  if (name == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, slot.At());
  NameChoice* choice = nullptr;
  TRY(slot.Load(choice));
  if (ownership == Ownership::kTakes) {
    if (name != choice->value && !CanBeTaken(name)) return Fail(TESSEL_INVALID_ARGUMENT, slot.At());
    return name == choice->value ? Status() : SetChoice(kNameChoice, *choice, 0, const_cast<X509Name*>(name));
  }
  X509Name* copy = nullptr;
  TRY(Copy(kX509Name, name, &copy, slot.At()));
  return SetChoice(kNameChoice, *choice, 0, copy);
}

namespace {

// Whether the class and the constructed bit are such, and a descriptor can have the tag number.
bool IsElementTag(const ElementTag& tag) {
  return (tag.tagClass & ~kClassBits) == 0 && (tag.constructed & ~kConstructedBit) == 0 && tag.number <= INT32_MAX;
}

Status MakeAttribute(const uint8_t* oid, ElementTag tag, Octets content, TreeOwner<AttributeTypeAndValue>& attribute,
                     Caller at = {}) {
  Asn1Oid type = BorrowOid(oid);
  Asn1Any value{};
  const AttributeTypeAndValue source{&type, &value};
  TRY(Copy(kAttributeTypeAndValue, &source, attribute.Out(), at));
  return SetOpenValue(*attribute->value, tag, tag.number, content);
}

// The encoding of an attribute's value; empty when it is absent.
Octets EncodingOfValue(const AttributeTypeAndValue* attribute) {
  return attribute == nullptr || attribute->value == nullptr ? Octets() : ContentOf(*attribute->value);
}

// Compares the length octets and the content of two values, but not their identifier octets.
// DEVIATES: attribute types and string types do not count, and case and blanks do (RFC 5280, 7.1): programs find
// issuers so.
bool HaveSameValue(const AttributeTypeAndValue* first, const AttributeTypeAndValue* second) {
  const Octets one = EncodingOfValue(first);
  const Octets other = EncodingOfValue(second);
  if (one.empty() || other.empty()) return one.empty() && other.empty();
  return std::ranges::equal(one.subspan(1), other.subspan(1));
}

bool HaveSameValues(const RelativeDistinguishedName* first, const RelativeDistinguishedName* second) {
  if (first == nullptr || second == nullptr) return first == second;
  if (first->count != second->count) return false;
  for (uint32_t i = 0; i < first->count; ++i) {
    if (!HaveSameValue(first->At(i), second->At(i))) return false;
  }
  return true;
}

// The characters of NumericString, PrintableString and IA5String. Of IA5String those below the blank are left out.
bool IsNumeric(uint8_t c) { return (c >= '0' && c <= '9') || c == ' '; }
bool IsPrintable(uint8_t c) {
  constexpr std::string_view kSigns = "'()+,-./:=?";
  const bool isLetter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  return isLetter || IsNumeric(c) || kSigns.find(static_cast<char>(c)) != std::string_view::npos;
}
bool IsIa5(uint8_t c) { return c >= ' ' && c <= 127; }

// The universal tag of an alternative; 0 for open values, whose nodes hold a whole element.
uint32_t TagOfAlternative(uint32_t alternative) {
  const Asn1Item& item = *kX509GeneralName.members[alternative];
  return item.kind == TESSEL_KIND_ANY ? 0 : UniversalTag(item);
}

// A general name that borrows its value.
class BorrowedGeneralName {
 public:
  BorrowedGeneralName() = default;
  BorrowedGeneralName(const BorrowedGeneralName&) = delete;
  BorrowedGeneralName& operator=(const BorrowedGeneralName&) = delete;

  Status Make(uint32_t alternative, const uint8_t* value, uint32_t size, Caller at = {}) {
    if (value == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
    if (alternative >= kX509GeneralName.memberCount) return Fail(TESSEL_WRONG_ALTERNATIVE, at);
    const uint32_t tag = TagOfAlternative(alternative);
    if (tag == 0 && size == 0) return Fail(TESSEL_INVALID_ARGUMENT, at);
    value_ = alternative == X509GeneralName::registeredID ? BorrowOid(value)
                                                          : Borrow(tag == 0 ? value[0] : tag, {value, size});
    name_ = {{alternative, &value_}};
    return Status();
  }
  [[nodiscard]] const X509GeneralName& Node() const { return name_; }

 private:
  Asn1Value value_{};
  X509GeneralName name_{};
};
// DEVIATES: an open value is handed in with its own tag, but reads with the alternative's tag once it was decoded: open
// values stay as they were read.

}  // namespace
}  // namespace tessel

uint32_t TESSEL_CALL CreateX509Name(X509Name** name) { return Create(kX509Name, Leaves::kEmpty, name); }
uint32_t TESSEL_CALL CreateX509GeneralName(X509GeneralName** name) {
  return Create(kX509GeneralName, Leaves::kEmpty, name);
}
uint32_t TESSEL_CALL CreateX509GeneralNames(X509GeneralNames** names) {
  return Create(kX509GeneralNames, Leaves::kEmpty, names);
}
uint32_t TESSEL_CALL CreatePKIFreeText(PKIFreeText** text) { return Create(kPKIFreeText, Leaves::kEmpty, text); }

uint32_t TESSEL_CALL CopyX509Name(const X509Name* source, X509Name** copy) { return Copy(kX509Name, source, copy); }
uint32_t TESSEL_CALL CreateX509GeneralNameCopy(const X509GeneralName* source, X509GeneralName** copy) {
  return Copy(kX509GeneralName, source, copy);
}
uint32_t TESSEL_CALL CopyX509GeneralNames(const X509GeneralNames* source, X509GeneralNames** copy) {
  return Copy(kX509GeneralNames, source, copy);
}
uint32_t TESSEL_CALL CreatePKIFreeTextCopy(const PKIFreeText* source, PKIFreeText** copy) {
  return Copy(kPKIFreeText, source, copy);
}

uint32_t TESSEL_CALL DecodeX509Name(const uint8_t* data, uint32_t size, X509Name** name) {
  return Decode(kX509Name, data, size, name);
}
uint32_t TESSEL_CALL DecodeX509GeneralNames(const uint8_t* data, uint32_t size, X509GeneralNames** names) {
  return Decode(kX509GeneralNames, data, size, names);
}
uint32_t TESSEL_CALL DecodePKIFreeText(const uint8_t* data, uint32_t size, PKIFreeText** text) {
  return Decode(kPKIFreeText, data, size, text);
}

uint32_t TESSEL_CALL EncodeX509Name(const X509Name* name, uint8_t* buffer, uint32_t* length) {
  return Encode(kX509Name, name, buffer, length);
}
uint32_t TESSEL_CALL EncodeX509GeneralNames(const X509GeneralNames* names, uint8_t* buffer, uint32_t* length) {
  return Encode(kX509GeneralNames, names, buffer, length);
}
uint32_t TESSEL_CALL EncodePKIFreeText(const PKIFreeText* text, uint8_t* buffer, uint32_t* length) {
  return Encode(kPKIFreeText, text, buffer, length);
}

uint32_t TESSEL_CALL FreeX509Name(X509Name* name) { return Free(kX509Name, name); }
uint32_t TESSEL_CALL FreeX509GeneralName(X509GeneralName* name) { return Free(kX509GeneralName, name); }
uint32_t TESSEL_CALL FreeX509GeneralNames(X509GeneralNames* names) { return Free(kX509GeneralNames, names); }
uint32_t TESSEL_CALL FreePKIFreeText(PKIFreeText* text) { return Free(kPKIFreeText, text); }

// Distinguished names.

uint32_t TESSEL_CALL ClearX509Name(X509Name* name) {
  if (name == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  Clear(*name, kRelativeDistinguishedName);
  return Status();
}

uint32_t TESSEL_CALL GetX509NameRdnCount(const X509Name* name, uint32_t* count) { return GetCount(name, count); }

uint32_t TESSEL_CALL GetX509NameEntryCount(const X509Name* name, uint32_t rdn, uint32_t* count) {
  RelativeDistinguishedName* attributes = nullptr;
  TRY(GetElement(name, rdn, &attributes));
  return GetCount(attributes, count);
}

uint32_t TESSEL_CALL AddX509NameEntry(X509Name* name, const uint8_t* value, uint32_t size, uint32_t stringType,
                                      const uint8_t* oid, uint32_t newRdn) {
  return AddX509NameEntryExt(name, value, size, TESSEL_CLASS_UNIVERSAL, 0, stringType, oid, newRdn);
}

uint32_t TESSEL_CALL AddX509NameEntryExt(X509Name* name, const uint8_t* value, uint32_t size, uint8_t tagClass,
                                         uint8_t constructed, uint32_t stringType, const uint8_t* oid,
                                         uint32_t newRdn) {
  const ElementTag tag{tagClass, constructed, stringType};
  if (AnyNull(name, value, oid) || !IsElementTag(tag)) return Fail(TESSEL_INVALID_ARGUMENT);
  RelativeDistinguishedName* last = nullptr;
  if (newRdn == 0) TRY(GetElement(name, name->count - 1, &last));
  TreeOwner attribute(kAttributeTypeAndValue);
  TRY(MakeAttribute(oid, tag, {value, size}, attribute));
  if (last != nullptr) return AddNew(*last, std::move(attribute));
  TreeOwner rdn(kRelativeDistinguishedName);
  TRY(Create(kRelativeDistinguishedName, Leaves::kEmpty, rdn.Out()));
  TRY(AddNew(*rdn.Get(), std::move(attribute)));
  return AddNew(*name, std::move(rdn));
}

uint32_t TESSEL_CALL GetX509NameEntry(const X509Name* name, uint32_t rdn, uint32_t entry, uint8_t* buffer,
                                      uint32_t* length, uint32_t* stringType, uint8_t* oid, uint32_t* oidLength) {
  uint8_t tagClass = 0;
  uint8_t constructed = 0;
  return GetX509NameEntryExt(name, rdn, entry, buffer, length, &tagClass, &constructed, stringType, oid, oidLength);
}

uint32_t TESSEL_CALL GetX509NameEntryExt(const X509Name* name, uint32_t rdn, uint32_t entry, uint8_t* buffer,
                                         uint32_t* length, uint8_t* tagClass, uint8_t* constructed,
                                         uint32_t* stringType, uint8_t* oid, uint32_t* oidLength) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  RelativeDistinguishedName* attributes = nullptr;
  TRY(GetElement(name, rdn, &attributes));
  Asn1Any* value = nullptr;
  TRY(kValue.In(ElementOf(attributes, entry)).Load(value));
  const uint32_t capacity = *length;
  uint32_t headerLength = 0;
  // GetAsn1AnyInfo also refuses null pointers.
  const uint32_t info = GetAsn1AnyInfo(value, tagClass, constructed, stringType, length, &headerLength);
  if (info != TESSEL_OK) return info;
  if (*length > value->length - headerLength) return Fail(TESSEL_MALFORMED);
  Status status = GetOid(kType.In(ElementOf(attributes, entry)), oid, oidLength);
  if (status.Failed() || (buffer == nullptr && oid == nullptr)) return status;
  if (buffer == nullptr || oid == nullptr || capacity < *length) return Fail(TESSEL_BUFFER_TOO_SMALL);
  std::copy_n(value->data + headerLength, *length, buffer);
  return Status();
}

uint32_t TESSEL_CALL DeleteX509NameEntry(X509Name* name, uint32_t rdn, uint32_t entry) {
  RelativeDistinguishedName* attributes = nullptr;
  TRY(GetElement(name, rdn, &attributes));
  if (attributes->count <= 1 && entry == 0) return RemoveElement(name, kRelativeDistinguishedName, rdn);
  return RemoveElement(attributes, kAttributeTypeAndValue, entry);
}

uint32_t TESSEL_CALL CompareX509Names(const X509Name* first, const X509Name* second) {
  if (first == nullptr || second == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  // DEVIATES: a name that never had an RDN is absent, not equal to another: by this callers tell what was never set.
  if (first->items == nullptr || second->items == nullptr) return Fail(TESSEL_ABSENT);
  if (first->count != second->count) return Fail(TESSEL_DIFFERENT);
  for (uint32_t i = 0; i < first->count; ++i) {
    if (!HaveSameValues(first->At(i), second->At(i))) return Fail(TESSEL_DIFFERENT);
  }
  return Status();
}

uint32_t TESSEL_CALL DetermineSuitableStringType(const uint8_t* text, uint32_t length, uint32_t* stringType) {
  if (text == nullptr || stringType == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const Octets all(text, length);
  if (!std::ranges::all_of(all, IsIa5)) {
    *stringType = TESSEL_KIND_UTF8_STRING;
  } else if (std::ranges::all_of(all, IsNumeric)) {
    // DEVIATES: the narrowest type is told even where RFC 5280 (4.1.2.4) does not have it, for the caller alone knows
    // the attribute.
    *stringType = TESSEL_KIND_NUMERIC_STRING;
  } else if (std::ranges::all_of(all, IsPrintable)) {
    *stringType = TESSEL_KIND_PRINTABLE_STRING;
  } else {
    *stringType = TESSEL_KIND_IA5_STRING;
  }
  return Status();
}

// General names.

uint32_t TESSEL_CALL AddX509GeneralName(X509GeneralNames* names, uint32_t alternative, const uint8_t* value,
                                        uint32_t size) {
  if (names == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  BorrowedGeneralName name;
  TRY(name.Make(alternative, value, size));
  return AddCopy(*names, kX509GeneralName, &name.Node());
}

uint32_t TESSEL_CALL AllocX509GeneralNameValue(X509GeneralName** name, uint32_t alternative, const uint8_t* value,
                                               uint32_t size) {
  if (name == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  *name = nullptr;
  BorrowedGeneralName source;
  TRY(source.Make(alternative, value, size));
  return Copy(kX509GeneralName, &source.Node(), name);
}

uint32_t TESSEL_CALL GetX509GeneralNameCount(const X509GeneralNames* names, uint32_t* count) {
  return GetCount(names, count);
}

uint32_t TESSEL_CALL GetX509GeneralName(const X509GeneralNames* names, uint32_t index, uint32_t* alternative,
                                        uint8_t* buffer, uint32_t* length) {
  X509GeneralName* name = nullptr;
  TRY(GetElement(names, index, &name));
  return GetX509GeneralNameValue(name, alternative, buffer, length);
}

uint32_t TESSEL_CALL GetX509GeneralNameValue(const X509GeneralName* name, uint32_t* alternative, uint8_t* buffer,
                                             uint32_t* length) {
  if (AnyNull(name, alternative, length)) return Fail(TESSEL_INVALID_ARGUMENT);
  *alternative = name->index;
  if (name->index >= kX509GeneralName.memberCount) return Fail(TESSEL_WRONG_ALTERNATIVE);
  const auto* value = static_cast<const Asn1Value*>(name->value);
  if (value == nullptr) return Fail(TESSEL_ABSENT);
  return name->index == X509GeneralName::registeredID ? DeliverOid(ContentOf(*value), buffer, length)
                                                      : ReadValue(*value, buffer, length);
}

uint32_t TESSEL_CALL GetX509NameFromGeneralNames(const X509GeneralNames* names, X509Name** name) {
  if (names == nullptr || name == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  *name = nullptr;
  for (uint32_t i = 0; i < names->count; ++i) {
    const X509GeneralName* candidate = names->At(i);
    if (candidate == nullptr || candidate->index != X509GeneralName::directoryName || candidate->value == nullptr)
      continue;
    const Octets encoding = ContentOf(*static_cast<const Asn1Value*>(candidate->value));
    if (encoding.empty()) continue;
    Status status = Decode(kX509Name, encoding.data(), static_cast<uint32_t>(encoding.size()), name);
    if (status.Ok() || status == TESSEL_OUT_OF_MEMORY) return status;
  }
  return Fail(TESSEL_NOT_FOUND);
}

// Free text.

uint32_t TESSEL_CALL AddPKIFreeTextString(PKIFreeText* text, const uint8_t* utf8, uint32_t size) {
  if (text == nullptr || utf8 == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const Asn1Value source = Borrow(TESSEL_KIND_UTF8_STRING, {utf8, size});
  return AddCopy(*text, kUtf8String, &source);
}

uint32_t TESSEL_CALL GetPKIFreeTextStringCount(const PKIFreeText* text, uint32_t* count) {
  return GetCount(text, count);
}

uint32_t TESSEL_CALL GetPKIFreeTextString(const PKIFreeText* text, uint32_t index, uint8_t* buffer, uint32_t* length) {
  Asn1Value* string = nullptr;
  TRY(GetElement(text, index, &string));
  return ReadValue(*string, buffer, length);
}
