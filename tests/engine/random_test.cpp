// Random values of random types, rendered as DER and as one of their BER forms by a writer of the test's own: the
// library must read both as the same tree and write the DER.
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <random>

#include "support/octets.h"
#include "support/tree.h"
#include "types.h"

namespace test {
namespace {

class Generator {
 public:
  explicit Generator(uint32_t seed) : random_(seed) {}

  // A random type. Members and alternatives carry tags of their own, so that no value is ambiguous.
  const Asn1Item& Type(uint32_t depth);

  struct Rendering {
    Bytes der;
    Bytes ber;
  };
  Rendering Value(const Asn1Item& item);

  uint32_t Below(uint32_t bound) { return static_cast<uint32_t>(random_() % bound); }

 private:
  const Asn1Item& Store(const Asn1Item& item) { return items_.emplace_back(item); }
  const Asn1Item& Tagged(const Asn1Item& item, int32_t tagNumber);
  const Asn1Item& Constructed(uint32_t kind, uint32_t count, uint32_t depth);

  Rendering Content(const Asn1Item& item);
  Bytes PrimitiveContent(const Asn1Item& item);
  Bytes RandomOctets(uint32_t length);
  Bytes Identifier(uint32_t classAndConstructed, uint32_t tagNumber);
  Rendering Element(uint32_t classAndConstructed, uint32_t tagNumber, const Rendering& content);

  std::mt19937 random_;
  std::deque<Asn1Item> items_;
  std::deque<std::vector<const Asn1Item*>> members_;
};

constexpr uint32_t kPrimitiveKinds[] = {1, 2, 3, 4, 5, 6, 10, 12, 19, 23, 28, 30};

const Asn1Item& Generator::Type(uint32_t depth) {
  if (depth == 0 || Below(4) == 0) return Store(Plain(0, kPrimitiveKinds[Below(std::size(kPrimitiveKinds))]));
  switch (Below(5)) {
    case 0:
      return Constructed(TESSEL_KIND_SEQUENCE_OF, 1, depth);
    case 1:
      return Constructed(TESSEL_KIND_SET_OF, 1, depth);
    case 2:
      return Constructed(TESSEL_KIND_CHOICE, 1 + Below(4), depth);
    case 3:
      return Store(kAny);
    default:
      return Constructed(TESSEL_KIND_SEQUENCE, 1 + Below(6), depth);
  }
}

const Asn1Item& Generator::Constructed(uint32_t kind, uint32_t count, uint32_t depth) {
  std::vector<const Asn1Item*> members;
  const bool isList = kind == TESSEL_KIND_SEQUENCE_OF || kind == TESSEL_KIND_SET_OF;
  const uint32_t stride = 1 + Below(40);
  for (uint32_t i = 0; i < count; ++i) {
    const Asn1Item& member = Type(depth - 1);
    members.push_back(isList ? &member : &Tagged(member, static_cast<int32_t>(i * stride)));
    if (kind == TESSEL_KIND_SEQUENCE && Below(3) == 0) {
      items_.back().flags |= TESSEL_FLAG_OPTIONAL;
      if (members.back()->kind == TESSEL_KIND_INTEGER) items_.back().defaultValue = &kZero;
    }
  }
  const auto& stored = members_.emplace_back(std::move(members));
  const auto nodeSize = static_cast<uint32_t>(kind == TESSEL_KIND_SEQUENCE ? count * sizeof(void*) : 0);
  return Store({TESSEL_FLAG_CONSTRUCTED, kind, kNoTagNumber, nodeSize, stored.data(), count, nullptr});
}

const Asn1Item& Generator::Tagged(const Asn1Item& item, int32_t tagNumber) {
  Asn1Item tagged = item;
  tagged.tagNumber = tagNumber;
  tagged.flags |= TESSEL_CLASS_CONTEXT;
  if (item.kind == TESSEL_KIND_CHOICE || item.kind == TESSEL_KIND_ANY || Below(2) == 0) {
    tagged.flags |= TESSEL_FLAG_EXPLICIT;
  }
  return Store(tagged);
}

Bytes Generator::RandomOctets(uint32_t length) {
  Bytes octets(length);
  for (uint8_t& octet : octets) octet = static_cast<uint8_t>(random_());
  return octets;
}

Bytes Generator::PrimitiveContent(const Asn1Item& item) {
  switch (item.kind) {
    case TESSEL_KIND_BOOLEAN:
      return {static_cast<uint8_t>(Below(2) == 0 ? 0x00 : 0xFF)};
    case TESSEL_KIND_INTEGER: {
      if (Below(4) == 0) return {0};
      Bytes octets = RandomOctets(1 + Below(20));
      octets[0] = static_cast<uint8_t>(1 + Below(0x7F));
      return octets;
    }
    case TESSEL_KIND_BIT_STRING:
      return Bytes{static_cast<uint8_t>(Below(8))} + RandomOctets(Below(200));
    default:
      return RandomOctets(Below(8) == 0 ? Below(3000) : Below(20));
  }
}

Bytes Generator::Identifier(uint32_t classAndConstructed, uint32_t tagNumber) {
  if (tagNumber < 31) return {static_cast<uint8_t>(classAndConstructed | tagNumber)};
  Bytes octets{static_cast<uint8_t>(classAndConstructed | 31)};
  for (uint32_t shift = 28; shift > 0; shift -= 7) {
    if (tagNumber >> shift != 0) octets.push_back(static_cast<uint8_t>(0x80 | (tagNumber >> shift & 0x7F)));
  }
  octets.push_back(tagNumber & 0x7F);
  return octets;
}

Generator::Rendering Generator::Element(uint32_t classAndConstructed, uint32_t tagNumber, const Rendering& content) {
  const Bytes identifier = Identifier(classAndConstructed, tagNumber);
  const auto definite = [](const Bytes& octets, size_t spare) {
    Bytes length;
    for (size_t left = octets.size(); left != 0; left >>= 8) length.insert(length.begin(), static_cast<uint8_t>(left));
    if (spare == 0 && octets.size() < 128) return Bytes{static_cast<uint8_t>(octets.size())} + octets;
    while (length.size() < spare) length.insert(length.begin(), 0);
    return Bytes{static_cast<uint8_t>(0x80 | length.size())} + length + octets;
  };
  Rendering element{identifier + definite(content.der, 0), {}};
  if ((classAndConstructed & 0x20) != 0 && Below(2) == 0) {
    element.ber = identifier + Bytes{0x80} + content.ber + Bytes{0, 0};
  } else {
    element.ber = identifier + definite(content.ber, Below(3) == 0 ? 1 + Below(4) : 0);
  }
  return element;
}

Generator::Rendering Generator::Content(const Asn1Item& item) {
  Rendering content;
  switch (item.kind) {
    case TESSEL_KIND_SEQUENCE:
      for (uint32_t i = 0; i < item.memberCount; ++i) {
        const Rendering member = Value(*item.members[i]);
        content.der += member.der;
        content.ber += member.ber;
      }
      return content;
    case TESSEL_KIND_SEQUENCE_OF:
    case TESSEL_KIND_SET_OF: {
      std::vector<Bytes> elements;
      for (uint32_t count = Below(14); count > 0; --count) {
        const Rendering element = Value(*item.members[0]);
        elements.push_back(element.der);
        content.ber += element.ber;
      }
      if (item.kind == TESSEL_KIND_SET_OF) std::sort(elements.begin(), elements.end());
      for (const Bytes& element : elements) content.der += element;
      return content;
    }
    default:
      content.der = PrimitiveContent(item);
      content.ber = content.der;
      return content;
  }
}

Generator::Rendering Generator::Value(const Asn1Item& item) {
  if (IsOptional(item) && Below(2) == 0) return {};
  Rendering content;
  if (item.kind == TESSEL_KIND_CHOICE) {
    content = Value(*item.members[Below(item.memberCount)]);
  } else if (item.kind == TESSEL_KIND_ANY) {
    // An open value is kept as it is, so both renderings are the same octets.
    const Rendering inside = Element(0x20, 16, Element(0, 4, {RandomOctets(Below(40)), RandomOctets(0)}));
    content = {inside.der, inside.der};
  } else {
    content = Content(item);
    const bool isDefault = item.defaultValue != nullptr && content.der == Bytes{0};
    const uint32_t constructed = ConstructedBit(item);
    if (!IsExplicit(item)) {
      content = Element(TagClass(item) | constructed, OwnTag(item), content);
    } else {
      content = Element(constructed, UniversalTag(item), content);
    }
    if (isDefault) {
      const Bytes ber = IsExplicit(item) ? Element(TagClass(item) | 0x20U, OwnTag(item), content).ber : content.ber;
      return {{}, ber};
    }
  }
  return IsExplicit(item) ? Element(TagClass(item) | 0x20U, OwnTag(item), content) : content;
}

void CheckRoundTrip(const Asn1Item& item, const Generator::Rendering& value) {
  for (const Bytes* input : {&value.der, &value.ber}) {
    const DecodeResult decoded = Decode(item, *input + Bytes{0x55, 0x55});
    ASSERT_EQ(0U, decoded.status) << ToHex(*input);
    ASSERT_EQ(input->size(), decoded.consumed);
    const EncodeResult encoded = Encode(item, decoded.tree.Root());
    ASSERT_EQ(0U, encoded.status);
    ASSERT_EQ(ToHex(value.der), ToHex(encoded.octets));

    Tree copy(item);
    const uint32_t status = Copy(item, decoded.tree.Root(), copy.Out());
    if (status == TESSEL_UNSUPPORTED_KIND) continue;  // a NULL somewhere
    ASSERT_EQ(0U, status);
    ASSERT_EQ(value.der, Encode(item, copy.Root()).octets);
  }
}

TEST(Random, TreesRoundTrip) {
  for (uint32_t seed = 1; seed <= 1500; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Generator generator(seed);
    const Asn1Item& item = generator.Type(5);
    CheckRoundTrip(item, generator.Value(item));
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace test
