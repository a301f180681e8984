#include <gtest/gtest.h>

#include <string>

#include "support/objects.h"
#include "support/octets.h"
#include "support/tree.h"
#include "tessel/tessel.h"

namespace test {
namespace {

TEST(ExtensionValues, NamedBitsAreThoseOfTheOctetsFromTheFirst) {
  const struct {
    uint32_t bits;
    const char* encoding;
  } cases[] = {{0x06, "03 02 01 06"},       // '0000011'B
               {0x80FE, "03 03 07 FE 80"},  // '111111101'B
               {0, "03 01 00"},             // ''B
               {0x01000000, "03 05 00 00 00 00 01"}};
  for (const auto& c : cases) {
    const Bytes octets = FetchChecked(EncodeExtensionKeyUsage, c.bits);
    EXPECT_EQ(c.encoding, ToHex(octets));
    EXPECT_EQ(octets, FetchChecked(EncodeExtensionNetscapeCertificateType, c.bits));
    uint32_t bits = 0xEEEEEEEE;
    EXPECT_OK(Try(DecodeExtensionNetscapeCertificateType, octets, &bits));
    EXPECT_EQ(c.bits, bits);
  }
  uint32_t bits = 0;
  const Bytes wide = FromHex("03 06 00 01 02 03 04 05");
  EXPECT_EQ(0x04030201U, Get(DecodeExtensionKeyUsage, wide)) << "32 bits, and no more";
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, DecodeExtensionNetscapeCertificateType(wide.data(), 0, &bits));
}

TEST(ExtensionValues, OfOneNodeAreTheirContent) {
  const Bytes number = FromHex("00 80");
  const struct {
    decltype(&EncodeExtensionCrlNumber) encode;
    decltype(&DecodeExtensionCrlNumber) decode;
    const char* encoding;
  } cases[] = {
      {EncodeExtensionSubjectKeyIdentifier, DecodeExtensionSubjectKeyIdentifier, "04 02 00 80"},
      {EncodeExtensionCrlNumber, DecodeExtensionCrlNumber, "02 02 00 80"},
      {EncodeExtensionDeltaCrlIndicator, DecodeExtensionDeltaCrlIndicator, "02 02 00 80"},
  };
  for (const auto& c : cases) {
    const Bytes octets = FetchChecked(c.encode, number);
    EXPECT_EQ(c.encoding, ToHex(octets));
    EXPECT_EQ(number, FetchChecked(c.decode, octets));
  }

  for (const auto& [given, encoding] : {std::pair{1, "0A 01 01"}, {-1, "0A 01 FF"}, {128, "0A 02 00 80"}}) {
    const Bytes octets = FetchChecked(EncodeExtensionReasonCode, given);
    EXPECT_EQ(encoding, ToHex(octets));
    EXPECT_EQ(given, Get(DecodeExtensionReasonCode, octets));
  }
  int32_t reason = 0;
  const Bytes empty = FromHex("0A 00");
  EXPECT_STATUS(TESSEL_MALFORMED, DecodeExtensionReasonCode(empty.data(), 2, &reason));

  EXPECT_EQ(FromHex("18 0F") + ToBytes("20261121123059Z"),
            FetchChecked(EncodeExtensionInvalidityDate, TimeOf(2026, 11, 21)));
}

TEST(ExtensionValues, BasicConstraintsLeaveOutFalseAndNoPathLength) {
  constexpr uint32_t kNone = 0xFFFFFFFF;
  const struct {
    uint32_t cA;
    uint32_t pathLength;
    const char* encoding;
  } cases[] = {{1, kNone, "30 03 01 01 FF"},       // { TRUE }
               {7, 0, "30 06 01 01 FF 02 01 00"},  // { TRUE, 0 }
               {0, 300, "30 04 02 02 01 2C"}};     // { 300 }
  for (const auto& c : cases) {
    const Bytes octets = FetchChecked(EncodeExtensionBasicConstraints, c.cA, c.pathLength);
    EXPECT_EQ(c.encoding, ToHex(octets));
    uint8_t cA = 77;
    uint32_t pathLength = 77;
    EXPECT_OK(Try(DecodeExtensionBasicConstraints, octets, &cA, &pathLength));
    EXPECT_EQ(c.cA != 0 ? 0xFF : 0x00, cA);
    EXPECT_EQ(c.pathLength, pathLength);
  }
}

TEST(ExtensionValues, AuthorityKeyIdentifiersLeaveOutWhatIsNotGiven) {
  const Owned<X509GeneralNames> names = Make(CreateX509GeneralNames);
  Call(AddX509GeneralName, names, 4, FromHex("30 00"));
  const Bytes key = FromHex("01 02 03");
  const Bytes serial = FromHex("00 FF");
  // Null with a length, and a pointer without one, both leave a field out.
  EXPECT_EQ("30 00", ToHex(FetchChecked(EncodeExtensionAuthorityKeyIdentifier, nullptr, 3, nullptr, serial.data(), 0)));
  const Bytes octets = FetchChecked(EncodeExtensionAuthorityKeyIdentifier, key, names, serial);
  // { [0] '010203'H, [1] { directoryName { } }, [2] 255 }
  EXPECT_EQ("30 0F 80 03 01 02 03 A1 04 A4 02 30 00 82 02 00 FF", ToHex(octets));
  uint8_t buffer[8];
  const auto decode = [&](uint32_t keyCapacity, uint32_t serialCapacity, bool found) {
    Owned<X509GeneralNames> decoded;
    const uint32_t status = Try(DecodeExtensionAuthorityKeyIdentifier, octets, buffer, &keyCapacity, decoded.Out(),
                                buffer + 4, &serialCapacity);
    EXPECT_EQ(3U, keyCapacity);
    EXPECT_EQ(2U, serialCapacity);
    EXPECT_EQ(found, static_cast<bool>(decoded));
    return status;
  };
  EXPECT_OK(decode(4, 4, true));
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, decode(2, 4, false));
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, decode(4, 1, false));
}

TEST(ExtensionValues, PrivateKeyUsagePeriodsHaveEitherTimeOrBoth) {
  const Owned<LibraryTime> start = TimeOf(2020, 1, 2);
  const Owned<LibraryTime> end = TimeOf(2026, 11, 21);
  const Owned<LibraryTime> first = TimeOf(1999, 1, 1);
  const Owned<LibraryTime> second = TimeOf(1999, 1, 1);
  const Owned<LibraryTime> untouched = TimeOf(1999, 1, 1);
  const Bytes octets = FetchChecked(EncodeExtensionPrivateKeyUsagePeriod, nullptr, end);
  EXPECT_EQ(FromHex("30 11 81 0F") + ToBytes("20261121123059Z"), octets);  // { [1] "20261121123059Z" }
  Call(DecodeExtensionPrivateKeyUsagePeriod, octets, first, second);
  EXPECT_EQ(0, CompareTime(first, untouched)) << "an absent field leaves its record";
  EXPECT_EQ(0, CompareTime(second, end));
  const Bytes both = FetchChecked(EncodeExtensionPrivateKeyUsagePeriod, start, end);
  Call(DecodeExtensionPrivateKeyUsagePeriod, both, first, second);
  EXPECT_EQ(0, CompareTime(first, start));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, DecodeExtensionPrivateKeyUsagePeriod(both.data(), 0, first, second));
  const Owned<LibraryTime> null = Make(CreateLibraryTime);
  EXPECT_STATUS(TESSEL_INVALID_TIME, AskSize(EncodeExtensionPrivateKeyUsagePeriod, null, end));
}

struct Point {
  uint32_t status;
  const X509GeneralNames* fullName;
  const X509Name* relativeName;
  std::string flags;
};

// Flags as value:presence, reasons among them.
Point DecodePoint(const Bytes& octets) {
  Point point{};
  uint8_t flags[4] = {0x77, 0x77, 0x77, 0x77};
  uint32_t present[4] = {9, 9, 9, 9};
  uint32_t reasons = 0x77;
  uint32_t hasReasons = 9;
  const Guarded input(octets);
  point.status = DecodeExtensionIssuingDistributionPoint(
      input.Data(), input.Size(), &point.fullName, &point.relativeName, &flags[0], &present[0], &flags[1], &present[1],
      &reasons, &hasReasons, &flags[2], &present[2], &flags[3], &present[3]);
  point.flags = ToHex({flags[0], flags[1], flags[2], flags[3]}) + " " + std::to_string(reasons) + ":" +
                std::to_string(hasReasons) + " " + std::to_string(present[0] + present[1] + present[2] + present[3]);
  return point;
}

TEST(ExtensionValues, IssuingDistributionPointsHaveTheirReasonsUnderTheTagOfAFlag) {
  const Owned<X509GeneralNames> names = Make(CreateX509GeneralNames);
  Call(AddX509GeneralName, names, 6, "u");
  const Owned<X509Name> relative = Make(CreateX509Name);
  const auto encode = [&](bool full, uint8_t userCerts, uint32_t reasons, uint8_t indirect) {
    return FetchChecked(EncodeExtensionIssuingDistributionPoint, full ? names.Get() : nullptr, relative, userCerts, 1,
                        0xFF, 0, reasons, reasons != 0 ? 1 : 0, indirect, indirect, 0xFF, 1);
  };
  // The full name goes first; the reasons are under [1], and read back with a TRUE [1] before them or without.
  const Bytes all = encode(true, 0xFF, 0x60, 1);
  // { [0] fullName { "u" }, [1] TRUE, [1] '011'B, [4] TRUE, [5] TRUE }
  EXPECT_EQ("30 14 A0 05 A0 03 86 01 75 81 01 FF 81 02 05 60 84 01 FF 85 01 FF", ToHex(all));
  Point point = DecodePoint(all);
  EXPECT_OK(point.status);
  EXPECT_NE(nullptr, point.fullName);
  EXPECT_EQ(nullptr, point.relativeName);
  EXPECT_EQ("FF 00 FF FF 96:1 4", point.flags);
  FreeX509GeneralNames(const_cast<X509GeneralNames*>(point.fullName));  // against the rules, and harmless

  const Bytes reasonsAlone = encode(false, 0, 0x60, 0);
  // { [0] nameRelativeToCRLIssuer { }, [1] '011'B, [5] TRUE }
  EXPECT_EQ("30 0B A0 02 A1 00 81 02 05 60 85 01 FF", ToHex(reasonsAlone));
  point = DecodePoint(reasonsAlone);
  EXPECT_OK(point.status);
  EXPECT_EQ(nullptr, point.fullName);
  EXPECT_NE(nullptr, point.relativeName);
  EXPECT_EQ("00 00 00 FF 96:1 4", point.flags);

  EXPECT_EQ("00 00 00 00 119:0 4", DecodePoint(FromHex("30 00")).flags);
  EXPECT_STATUS(TESSEL_INVALID_CONTENT, DecodePoint(FromHex("30 03 82 01 05")).status);
  EXPECT_STATUS(TESSEL_INVALID_CONTENT, DecodePoint(FromHex("30 03 81 01 01")).status) << "a flag, not reasons";
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, DecodePoint({}).status);
}

}  // namespace
}  // namespace test
