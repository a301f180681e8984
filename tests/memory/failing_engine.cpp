// The scenarios of the engine and of the plain values.
#include <cstdlib>

#include "engine/types.h"
#include "memory/failing.h"
#include "support/objects.h"
#include "support/samples.h"
#include "support/tree.h"

namespace test {
namespace {

// Elements of all shapes, some of them with contents that the decoder cannot leave where they stand.
struct Shape {
  const Asn1Item* item;
  Bytes octets;
};
std::vector<Shape> Shapes() {
  const Bytes segments = FromHex("24 80 04 02 AA BB 04 01 CC 00 00");
  const Bytes large = FromHex("04 82 07 D0") + Bytes(2000, 0x55);
  // Ten elements, the largest first, so that writing them takes memory to note and to sort them.
  const Bytes set = FromHex("31 1E 02 01 09 02 01 08 02 01 07 02 01 06 02 01 05 02 01 04 02 01 03 02 01 02 02 01 01") +
                    FromHex("02 01 00");
  return {{&kInteger, FromHex("02 01 05")},
          {&kBitString, FromHex("03 02 00 AA")},
          {&kAny, FromHex("30 80 02 01 05 00 00")},
          {&kExplicitAny, FromHex("A0 80 02 01 05 00 00")},
          {&kOctetString, segments},
          {&kOctetString, large},
          {&kStrings, FromHex("30 80") + segments + large + FromHex("00 00")},
          {&kTestSequence, FromHex("30 80 02 01 05 01 01 FF 30 80 00 00 00 00")},
          {&kTestSequence, FromHex("30 03 02 01 05")},
          {&kTestChoice, FromHex("A2 03 02 01 05")},
          {&kExplicitChoice, FromHex("A0 03 17 01 31")},
          {&kIntegerSet, set},
          {&CertificateItem, ReadSample("certificate.pem")},
          {&X509CrlItem, MakeCrl(300)}};
}

void ElementsOfAnyType(Caller& caller) {
  for (const Shape& shape : Shapes()) {
    Tree tree(*shape.item);
    caller.Read(Asn1DecodeItem, shape.octets.data(), SizeOf(shape.octets), shape.item, caller.Into(tree), nullptr);
    uint8_t* block = nullptr;
    uint32_t length = 0;
    const auto again = [&block] {
      std::free(std::exchange(block, nullptr));
      return &block;
    };
    caller.Read(Asn1Encode, tree.Root(), shape.item, again, &length);
    caller.Note(Bytes(block, block + length));
    std::free(block);
    caller.Get(GetAsn1EncodedValue, tree.Root(), shape.item);
  }
}

void NewTrees(Caller& caller) {
  static constexpr auto kOptionalSequence = Optional<kTestSequence>;
  const Asn1Item* const items[] = {&kTestSequence,   &CertificateItem, &X509CrlItem, &kBitString,
                                   &kDefaultInteger, &kTestChoice,     &kStrings,    &kAny};
  for (const Asn1Item* item : items) {
    Tree tree(*item);
    caller.Read(CreateAsn1Object, item, caller.Into(tree), 1);
  }
  Tree tree(kOptionalSequence);
  caller.Read(CreateOptionalAsn1Sequence, &kOptionalSequence, caller.Into(tree), 1);
}

void Numbers(Caller& caller) {
  const Bytes octets = FromHex("05 00 01 00 00");
  for (Asn1Value* value : {caller.Change(AllocAsn1Integer, 70000), caller.Change(AllocAsn1Boolean, 1),
                           caller.Change(AllocAsn1Integer_s, octets.data(), SizeOf(octets))}) {
    const Tree owner(kInteger, value);
    caller.Watch([value] { return Encode(kInteger, value).octets; });
    caller.Change(SetAsn1Int32, value, 5);
    caller.Change(SetAsn1Integer, value, octets.data(), SizeOf(octets));
    caller.Note(Encode(kInteger, value).octets);
    caller.Watch(nullptr);
  }
  int32_t number = 0;
  const Bytes encoded = caller.Get(EncodeAsn1Int32, -70000);
  caller.Read(DecodeAsn1Int32, encoded.data(), SizeOf(encoded), &number);
  EXPECT_EQ(-70000, number);
}

void Strings(Caller& caller) {
  const Bytes text = ToBytes("12 34");
  const auto both = [&caller](const Bytes& encoded, auto decode) {
    caller.Get(decode, encoded.data(), SizeOf(encoded));
  };
  both(caller.Get(EncodeAsn1IA5String, text.data(), SizeOf(text)), DecodeAsn1IA5String);
  both(caller.Get(EncodeAsn1NumericString, text.data(), SizeOf(text)), DecodeAsn1NumericString);
  const Bytes encoded = caller.Get(EncodeAsn1PrimitiveValue, 12, text.data(), SizeOf(text));
  caller.Get(DecodeAsn1PrimitiveValue, 12, encoded.data(), SizeOf(encoded));
  caller.Get(EncodeAsn1Oid, Counted("1.2.643.2.2.19").data());
  const std::string pem = "-----BEGIN X-----\nAAECAwQF\n-----END X-----\n";
  caller.Get(DecodePem, pem.data(), static_cast<uint32_t>(pem.size()));
}

void ListsOfOctetStrings(Caller& caller) {
  Owned<OctetStrings> list;
  caller.Read(CreateOctetStrings, caller.Into(list));
  caller.Watch([&list] {
    uint32_t count = 0;
    EXPECT_EQ(0U, GetOctetStringsCount(list, &count));
    Bytes all;
    for (uint32_t i = 0; i < count; ++i) {
      Bytes one(2000);
      uint32_t length = 0;
      EXPECT_EQ(0U, GetOctetStringsValue(list, i, one.data(), &length));
      one.resize(length);
      all += one;
    }
    return all;
  });
  // More than the list's first array has room for, and than its second.
  for (uint32_t i = 0; i < 300; ++i) {
    const Bytes octets(i == 7 ? 1500 : 1 + i % 30, static_cast<uint8_t>(i));
    caller.Change(AddOctetStringsValue, list, octets.data(), SizeOf(octets));
  }
}

void Times(Caller& caller) {
  Owned<LibraryTime> time;
  Owned<LibraryPreciseTime> precise;
  Owned<Accuracy> accuracy;
  caller.Read(CreateLibraryTime, caller.Into(time));
  caller.Read(CreateLibraryPreciseTime, caller.Into(precise));
  caller.Read(CreateAccuracy, caller.Into(accuracy));
  EXPECT_EQ(0U, SetLibraryTime(time, 1, 2, 2026, 3, 4, 5));
  const Bytes utc = caller.Get(EncodeTime, time);
  const Bytes generalized = caller.Get(EncodeAsn1GeneralizedTime, time);
  caller.Read(DecodeTime, utc.data(), SizeOf(utc), time);
  caller.Read(DecodeAsn1GeneralizedTime, generalized.data(), SizeOf(generalized), time);
  caller.Get(EncodeTime, time);
}

}  // namespace

const std::vector<Scenario>& EngineScenarios() {
  static const std::vector<Scenario> scenarios = {
      {"ElementsOfAnyType", ElementsOfAnyType},     {"NewTrees", NewTrees}, {"Numbers", Numbers}, {"Strings", Strings},
      {"ListsOfOctetStrings", ListsOfOctetStrings}, {"Times", Times}};
  return scenarios;
}

}  // namespace test
