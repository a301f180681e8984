// Headers, open values and their ends, segments, lone values: the lowest layer, by itself.
#include <optional>

#include "getters.h"

namespace fuzz {
namespace {

using tessel::Tree;
using tessel::Try;

constexpr Asn1Item Primitive(uint32_t kind) { return {0, kind, -1, 0, nullptr, 0, nullptr}; }
constexpr Asn1Item kOpenValue = Primitive(TESSEL_KIND_ANY);
constexpr const Asn1Item* kOpenValueMember[] = {&kOpenValue};
constexpr Asn1Item Constructed(uint32_t kind) {
  return {TESSEL_FLAG_CONSTRUCTED, kind, -1, 0, kOpenValueMember, 1, nullptr};
}

constexpr Asn1Item kDescriptors[] = {
    kOpenValue,
    Primitive(TESSEL_KIND_OCTET_STRING),
    Primitive(TESSEL_KIND_BIT_STRING),
    Primitive(TESSEL_KIND_INTEGER),
    Primitive(TESSEL_KIND_NULL),
    Constructed(TESSEL_KIND_SEQUENCE_OF),
    Constructed(TESSEL_KIND_SET_OF),
    {TESSEL_CLASS_CONTEXT | TESSEL_FLAG_EXPLICIT, TESSEL_KIND_ANY, 0, 0, nullptr, 0, nullptr},
    {TESSEL_CLASS_CONTEXT | TESSEL_FLAG_EXPLICIT, TESSEL_KIND_OCTET_STRING, 1, 0, nullptr, 0, nullptr},
    {TESSEL_CLASS_CONTEXT | TESSEL_FLAG_EXPLICIT | TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_SET_OF, 200, 0,
     kOpenValueMember, 1, nullptr},
    {TESSEL_CLASS_CONTEXT, TESSEL_KIND_ANY, 3, 0, nullptr, 0, nullptr},
};

// The header, read once more and in another way: octet by octet, and wide enough for anything.
std::optional<Element> ReadSlowly(const Bytes& octets) {
  size_t at = 0;
  const auto next = [&]() -> int { return at < octets.size() ? octets[at++] : -1; };
  if (octets.size() < 2) return std::nullopt;
  const int identifier = next();
  Element element{static_cast<uint8_t>(identifier & 0xC0), static_cast<uint8_t>(identifier & 0x20)};
  element.tagNumber = identifier & 0x1F;
  if (element.tagNumber == 0x1F) {
    element.tagNumber = 0;
    int digit = 0x80;
    while ((digit & 0x80) != 0) {
      digit = next();
      if (digit < 0) return std::nullopt;
      element.tagNumber = element.tagNumber * 128 + (digit & 0x7F);
    }
  }
  const int length = next();
  if (length < 0 || length > 0x84) return std::nullopt;
  auto contentLength = static_cast<uint64_t>(length);
  if (length > 0x80) {
    contentLength = 0;
    for (int i = 0; i < length - 0x80; ++i) {
      const int octet = next();
      if (octet < 0) return std::nullopt;
      contentLength = contentLength * 256 + static_cast<uint64_t>(octet);
    }
  }
  element.indefinite = length == 0x80 ? 1 : 0;
  if (element.indefinite != 0) contentLength = octets.size() - at;
  element.contentLength = static_cast<uint32_t>(contentLength);
  element.headerLength = static_cast<uint32_t>(at);
  return element;
}

void RunHeader(const Bytes& octets) {
  const std::optional<Element> expected = ReadSlowly(octets);
  Element element;
  const uint32_t status = ReadHeader(octets, element);
  Require((status == TESSEL_OK) == expected.has_value());
  if (!expected) return;
  Require(element == *expected);
  Element whole;
  const uint32_t wholeStatus = GetAsn1ObjectInfo(octets.data(), SizeOf(octets), &whole.tagClass, &whole.constructed,
                                                 &whole.tagNumber, &whole.contentLength, nullptr, &whole.headerLength);
  const bool fits = uint64_t{element.headerLength} + element.contentLength <= octets.size();
  Require(wholeStatus == (fits ? TESSEL_OK : TESSEL_MALFORMED));
}

void RunOpenValue(const Bytes& octets) {
  const Asn1Any any{{0, SizeOf(octets), const_cast<uint8_t*>(octets.data())}};
  Element element;
  if (GetAsn1AnyInfo(&any, &element.tagClass, &element.constructed, &element.tagNumber, &element.contentLength,
                     &element.headerLength) == TESSEL_OK) {
    Require(element.headerLength <= octets.size());
  }

  Tree tree(kOpenValue);
  uint32_t consumed = 0;
  if (Try(Asn1DecodeItem, octets, &kOpenValue, tree.Out(), &consumed) != TESSEL_OK) return;
  const auto value = FetchChecked(GetAsn1AnyValue, &tree.As<Asn1Any>());
  Require(value == Copied(Octets(octets).first(consumed)));
  Require(consumed == element.headerLength + element.contentLength);
}

// By a descriptor from outside the library: what is read is written, and read the same.
void RunDescriptor(const Asn1Item& item, const Bytes& octets) {
  Tree tree(item);
  uint32_t consumed = 0;
  if (Try(Asn1DecodeItem, octets, &item, tree.Out(), &consumed) != TESSEL_OK) return;
  Require(consumed <= octets.size());
  const auto encoding = FetchChecked(GetAsn1EncodedValue, tree.Root(), &item);
  Require(encoding.has_value());
  ReadNode(item, tree.Root());
  Require(Try(Asn1DecodeItem, *encoding, &item, tree.Out(), &consumed) == TESSEL_OK);
  Require(consumed == encoding->size() && FetchChecked(GetAsn1EncodedValue, tree.Root(), &item) == encoding);
}

// What is decoded as a value of a universal type is encoded, and decoded again.
void RunLoneValue(uint32_t tag, const Bytes& octets) {
  const auto content = FetchChecked(DecodeAsn1PrimitiveValue, tag, octets);
  if (!content) return;
  const auto encoding = FetchChecked(EncodeAsn1PrimitiveValue, tag, *content);
  Require(encoding.has_value());
  Require(content == FetchChecked(DecodeAsn1PrimitiveValue, tag, *encoding));
}

void RunNumber(const Bytes& octets) {
  int32_t number = 0;
  if (Try(DecodeAsn1Int32, octets, &number) != TESSEL_OK) return;
  Require(number == tessel::Get(DecodeAsn1Int32, *FetchChecked(EncodeAsn1Int32, number)));
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(fuzz::Octets(data, size));
  const uint32_t tag = input.Octet();
  const fuzz::Bytes octets = input.Rest();
  fuzz::RunHeader(octets);
  fuzz::RunOpenValue(octets);
  fuzz::RunDescriptor(fuzz::kDescriptors[tag % std::size(fuzz::kDescriptors)], octets);
  fuzz::RunLoneValue(tag, octets);
  fuzz::RunNumber(octets);
  return 0;
}
