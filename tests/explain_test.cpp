// Why octets do not decode.
#include <gtest/gtest.h>

#include "asn1/decoding.h"
#include "support/octets.h"
#include "support/samples.h"
#include "support/tree.h"
#include "tessel/certificate.hpp"
#include "texts/concat.h"

namespace test {
namespace {

using namespace tessel;

// Row ::= SEQUENCE { number [0] EXPLICIT INTEGER, bits BIT STRING }
struct Row {
  Asn1Value* number;
  Asn1BitString* bits;
};
constexpr auto kRow = Sequence{
    Member<&Row::number, Explicit<0, kInteger>>,
    Member<&Row::bits, kBitString>,
};
struct Flags : ListOf<Asn1Value> {};
constexpr auto kFlags = SetOf<Flags, Optional<kBoolean>>();

template <const auto& item>
std::string FaultOf(const Bytes& octets) {
  EXPECT_NE(Decode(item, octets).status, TESSEL_OK);
  const tool::Fault fault = tool::Explain(kOutline<item>, octets);
  return tool::Concat(fault.path, fault.path.empty() ? "" : ", ", "offset ", fault.offset, ": ", fault.reason);
}
template <const auto& item>
std::string FaultOf(const char* hex) {
  return FaultOf<item>(FromHex(hex));
}

TEST(Explain, NamesTheMemberThePlaceAndTheReason) {
  EXPECT_EQ(FaultOf<kRow>(""), "offset 0: the input ends where a SEQUENCE was expected");
  EXPECT_EQ(FaultOf<kRow>("02 01 05"), "offset 0: a SEQUENCE was expected, an INTEGER is there");
  EXPECT_EQ(FaultOf<kRow>("30 85 01 01 01 01 01"), "offset 0: the length takes more than 4 octets");
  EXPECT_EQ(FaultOf<kInteger>("02 05 01"),
            "offset 0: the length of 5 runs past the end of the input, which has 1 octet left");
  EXPECT_EQ(FaultOf<kInteger>("02"), "offset 0: tag and length run past the end of the input");
  EXPECT_EQ(FaultOf<kInteger>("02 00"), "offset 0: an INTEGER of no octets");
  EXPECT_EQ(FaultOf<kRow>("30 00"), "number, offset 2: the element at offset 0 ends where [0] was expected");
  EXPECT_EQ(FaultOf<kAny>("30 80"), "offset 0: an element in it is broken, or the end-of-contents octets are missing");
  EXPECT_EQ(FaultOf<kRow>("30 02 80 00"), "number, offset 2: [0] is primitive");
  EXPECT_EQ(FaultOf<kInteger>("02 02 00 05"), "offset 0: an INTEGER with a needless leading octet: 0005");
  EXPECT_EQ(FaultOf<kRow>("30 05 A0 03 0C 01 41"), "number, offset 4: an INTEGER was expected, a UTF8String is there");
  EXPECT_EQ(FaultOf<kRow>("30 08 A0 80 02 01 05 04 00 00"), "number, offset 7: the end-of-contents octets are missing");
  EXPECT_EQ(FaultOf<kRow>("30 08 A0 03 02 01 05 03 01 09"), "bits, offset 7: a BIT STRING with 9 unused bits");
  EXPECT_EQ(FaultOf<kRow>("30 80 A0 03 02 01 05 03 01 00"), "offset 10: the end-of-contents octets are missing");
  EXPECT_EQ(FaultOf<kOctetString>("24 03 04 01 00"), "offset 0: an OCTET STRING is constructed");
  EXPECT_EQ(FaultOf<kOctetString>("04 80 00 00"), "offset 0: an OCTET STRING of indefinite length is primitive");
  EXPECT_EQ(FaultOf<kBoolean>("01 21 000000000000000000000000000000000000000000000000000000000000000000"),
            "offset 0: a BOOLEAN of 0000000000000000000000000000000000000000000000000000000000000000... (33 octets)");
  EXPECT_EQ(FaultOf<kFlags>("31 05 01 01 FF 05 00"), "[1], offset 5: a BOOLEAN was expected, a NULL is there");
  EXPECT_EQ(FaultOf<kX509GeneralNames>("30 05 82 01 41 80 00"), "[1], offset 5: [0] is primitive");
  EXPECT_EQ(FaultOf<kTime>("0C 00"), "offset 0: no alternative of the CHOICE begins with a UTF8String");
}

TEST(Explain, LeadsIntoCertificates) {
  const Bytes original = ReadSample("certificate.pem");
  const auto faultWith = [&](size_t at, uint8_t value) {
    Bytes octets = original;
    octets[at] = value;
    return FaultOf<kCertificate>(octets);
  };
  EXPECT_EQ(faultWith(8, 0xA1), "tbsCertificate.serialNumber, offset 8: an INTEGER was expected, [1] is there");
  EXPECT_EQ(faultWith(62, 0x30),
            "tbsCertificate.issuer.rdnSequence[1], offset 62: a SET was expected, a SEQUENCE is there");
  EXPECT_EQ(faultWith(578, 0x03), "tbsCertificate.extensions[1].critical, offset 576: a BOOLEAN of 03");
  EXPECT_EQ(faultWith(901, 0x02),
            "signatureValue, offset 899: the length of 641 runs past the end of the element at offset 0, which has 385 "
            "octets left");
}

TEST(Explain, FindsThePlaceOfAnyDamage) {
  const Bytes original = ReadSample("certificate.pem");
  uint32_t refused = 0;
  tool::Walk walk(original);
  tool::Element element;  // the innermost that has the octet in its header or its content
  tool::Element next;
  walk.Next(next);
  for (size_t at = 0; at < original.size(); ++at) {
    if (at == next.offset) {
      element = next;
      walk.Next(next);
    }
    for (const unsigned value : {0x00U, 0xFFU, original[at] ^ 0x01U, original[at] ^ 0x20U}) {
      Bytes octets = original;
      octets[at] = static_cast<uint8_t>(value);
      if (Decode(kCertificate, octets).status == TESSEL_OK) continue;
      const tool::Fault fault = tool::Explain(kOutline<kCertificate>, octets);
      ++refused;
      EXPECT_FALSE(fault.reason.empty()) << at;
      EXPECT_GE(fault.offset, element.offset) << at << fault.reason;
      // With another length, or a longer tag, the element may be taken all the same, and what follows it be refused.
      const bool isShortTag = at == element.offset && (value & 0x1F) != 0x1F;
      const bool isBound = isShortTag || at >= element.ContentOffset();
      EXPECT_LE(fault.offset, isBound ? at : octets.size()) << at << fault.reason;
    }
  }
  EXPECT_GT(refused, 500U);
}

// A certificate of version 1, whose outer lengths are indefinite, so that what is cut off shows where the cut is. It
// has no EXPLICIT tags, because the library does not look at their lengths.
TEST(Explain, FindsWhereOctetsAreCut) {
  const Bytes sample = ReadSample("certificate.pem");
  const Bytes octets = FromHex("30 80 30 80") + Bytes(sample.begin() + 13, sample.begin() + 547) + FromHex("00 00") +
                       Bytes(sample.begin() + 884, sample.end()) + FromHex("00 00");
  ASSERT_EQ(Decode(kCertificate, octets).status, TESSEL_OK);
  for (size_t size = 1; size < octets.size(); ++size) {
    const Bytes begin(octets.begin(), octets.begin() + static_cast<ptrdiff_t>(size));
    EXPECT_EQ(tool::Explain(kOutline<kCertificate>, begin).offset, tool::FindBreak(begin)->offset) << size;
  }
}

}  // namespace
}  // namespace test
