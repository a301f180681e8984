#include <gtest/gtest.h>

#include "support/objects.h"
#include "support/octets.h"
#include "support/tree.h"
#include "tessel/tessel.h"

namespace test {
namespace {

constexpr const char* kNull = "05 00";
// CryptoPro A, GOST R 34.11-94, and the DEFAULT encryption set left out.
constexpr const char* kSets2001 = "30 12 06 07 2A 85 03 02 02 23 01 06 07 2A 85 03 02 02 1E 01";
// TC26 512 A, GOST R 34.11-2012 of 512 bits, and the DEFAULT of 2012, which the schema of 2001 writes.
constexpr const char* kSets2012 =
    "30 20 06 09 2A 85 03 07 01 02 01 02 01 06 08 2A 85 03 07 01 01 02 03 06 09 2A 85 03 07 01 02 05 01 01";

struct Sets {
  uint32_t status;
  uint8_t mode = 77;
  uint32_t publicKey = 0;
  uint32_t digest = 0;
  uint32_t encryption = 0;
};

Sets DecodeSets(const Bytes& parameters) {
  Sets sets{};
  sets.status = Try(DecodeAlgorithmGostR34102001Parameters, Guarded(parameters), &sets.mode, &sets.publicKey,
                    &sets.digest, &sets.encryption);
  return sets;
}

TEST(GostParameters, AreWrittenAndReadByNumbers) {
  const struct {
    uint8_t mode;
    Sets sets;
    const char* encoding;
  } cases[] = {{0, {}, kNull}, {1, {0, 1, 1, 1, 1}, kSets2001}, {1, {0, 1, 10, 4, 9}, kSets2012}, {0xFF, {}, ""}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.encoding);
    const Bytes encoding = FetchChecked(EncodeAlgorithmGostR34102001Parameters, c.mode, c.sets.publicKey, c.sets.digest,
                                        c.sets.encryption);
    EXPECT_EQ(c.encoding, ToHex(encoding));
    const Sets decoded = DecodeSets(encoding);
    EXPECT_OK(decoded.status);
    EXPECT_EQ(c.mode, decoded.mode);
    EXPECT_EQ(c.sets.publicKey, decoded.publicKey);
    EXPECT_EQ(c.sets.digest, decoded.digest);
    EXPECT_EQ(c.sets.encryption, decoded.encryption);
  }
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AskSize(EncodeAlgorithmGostR34102001Parameters, 2, 1, 1, 1));
  EXPECT_STATUS(TESSEL_UNKNOWN_ID, AskSize(EncodeAlgorithmGostR34102001Parameters, 1, 13, 1, 1));
  // { 1.2.643.2.2.35.9, 1.2.643.2.2.30.1 }, { 1.2.643.2.2.35.1 }, and { 1.2, 1.2 } without its end.
  EXPECT_STATUS(TESSEL_UNKNOWN_OID,
                DecodeSets(FromHex("30 12 06 07 2A 85 03 02 02 23 09 06 07 2A 85 03 02 02 1E 01")).status);
  EXPECT_STATUS(TESSEL_MALFORMED, DecodeSets(FromHex("30 09 06 07 2A 85 03 02 02 23 01")).status);
  EXPECT_STATUS(TESSEL_MALFORMED, DecodeSets(FromHex("30 80 06 01 2A 06 01 2A 00")).status);
}

TEST(GostParameters, AreWrittenAndReadByIdentifiersWithTheDefaultOfTheirSchema) {
  const Bytes publicKey = Counted("1.2.643.7.1.2.1.2.1");
  const Bytes digest = Counted("1.2.643.7.1.1.2.3");
  const Bytes encryption = Counted("1.2.643.7.1.2.5.1.1");
  const auto encode = [&](uint32_t algorithm, uint8_t mode, const uint8_t* encryptionSet) {
    return ToHex(FetchChecked(EncodeAlgorithmGostR3410ParametersOid, algorithm, mode, publicKey.data(), digest.data(),
                              encryptionSet));
  };
  const std::string withoutEncryption = "30 15 06 09 2A 85 03 07 01 02 01 02 01 06 08 2A 85 03 07 01 01 02 03";
  EXPECT_EQ(kSets2012, encode(102, 1, encryption.data()));
  EXPECT_EQ(withoutEncryption, encode(3001, 1, encryption.data())) << "the DEFAULT of 2012";
  EXPECT_EQ(withoutEncryption, encode(102, 1, nullptr));
  EXPECT_EQ(kNull, encode(3000, 0, nullptr));

  // What is left out is another DEFAULT to each schema.
  const Bytes parameters = FromHex(withoutEncryption);
  uint8_t mode = 0;
  Bytes oids[3] = {Bytes(16), Bytes(16), Bytes(16)};
  const auto decode = [&](uint32_t algorithm, const Bytes& encoding, uint32_t capacity) {
    uint32_t lengths[3] = {16, capacity, 16};
    const uint32_t status = Try(DecodeAlgorithmGostR3410ParameterOids, algorithm, encoding, &mode, oids[0].data(),
                                &lengths[0], oids[1].data(), &lengths[1], oids[2].data(), &lengths[2]);
    for (int i = 0; i < 3; ++i) oids[i].resize(lengths[i]);
    return status;
  };
  EXPECT_OK(decode(3000, parameters, 16));
  EXPECT_EQ(publicKey, oids[0]);
  EXPECT_EQ(digest, oids[1]);
  EXPECT_EQ(encryption, oids[2]);
  for (Bytes& oid : oids) oid.assign(16, 0);
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, decode(102, parameters, 3));
  EXPECT_EQ(publicKey, oids[0]) << "the others are answered all the same";
  EXPECT_EQ(Counted("1.2.643.2.2.31.1"), oids[2]);
  EXPECT_OK(decode(102, FromHex(kNull), 16));
  EXPECT_EQ(0, mode);
  EXPECT_TRUE(oids[0].empty() && oids[1].empty() && oids[2].empty());
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, decode(103, parameters, 16));
}

TEST(Algorithms, AreReadAndSetInHalves) {
  const Owned<Certificate> certificate = Make(CreateCertificate);
  const Bytes oid = Counted("1.2.840.10045.2.1");
  const Bytes curve = FromHex("06 08 2A 86 48 CE 3D 03 01 07");  // 1.2.840.10045.3.1.7
  uint8_t buffer[32];
  // Parameters at the front, the identifier behind them.
  const auto get = [&](uint32_t oidCapacity, uint32_t capacity) {
    const uint32_t status =
        GetCertificatePublicKeyAlgorithmOidAndParameters(certificate, buffer + 16, &oidCapacity, buffer, &capacity);
    EXPECT_EQ(SizeOf(oid), oidCapacity);
    EXPECT_EQ(SizeOf(curve), capacity);
    return status;
  };
  Call(SetCertificatePublicKeyAlgorithmOidAndParameters, certificate, oid.data(), curve);
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, get(7, 10));
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, get(8, 9));
  EXPECT_OK(get(8, 10));
  EXPECT_EQ(curve, Bytes(buffer, buffer + 10));
  EXPECT_EQ(oid, Bytes(buffer + 16, buffer + 24));
  uint32_t length = 0;
  EXPECT_OK(GetCertificatePublicKeyAlgorithmOidAndParameters(certificate, nullptr, nullptr, nullptr, &length));
  EXPECT_EQ(10U, length);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT,
                GetCertificatePublicKeyAlgorithmOidAndParameters(certificate, buffer, nullptr, nullptr, &length));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT,
                GetCertificatePublicKeyAlgorithmOidAndParameters(certificate, nullptr, nullptr, buffer, nullptr));
  ASSERT_OK(SetCertificatePublicKeyAlgorithmOidAndParameters(certificate, oid.data(), curve.data(), 0))
      << "nothing is what a length of 0 says";
  EXPECT_OK(GetCertificatePublicKeyAlgorithmOidAndParameters(certificate, nullptr, nullptr, nullptr, &length));
  EXPECT_EQ(0U, length);
  EXPECT_OK(SetCertificatePublicKeyAlgorithmIdAndParameters(certificate, 1, curve.data(), 2));
  EXPECT_STATUS(TESSEL_UNKNOWN_ID, SetCertificatePublicKeyAlgorithmIdAndParameters(certificate, 5, nullptr, 0));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, SetCertificatePublicKeyAlgorithmIdAndParameters(nullptr, 5, nullptr, 0));
}

TEST(Algorithms, OfAKeyAloneAreReadWithItAndWithoutIt) {
  // { { 1.2.3.4, 'AABB'H }, '55'H }
  const Bytes info = FromHex("30 0F 30 09 06 03 2A 03 04 04 02 AA BB 03 02 00 55");
  uint8_t oid[4];
  uint8_t key[1];
  uint8_t parameters[4];
  const auto decode = [&](uint32_t oidCapacity, uint32_t keyCapacity, uint32_t parametersCapacity) {
    return DecodeSubjectPublicKeyInfo(info.data(), SizeOf(info), oid, &oidCapacity, key, &keyCapacity, parameters,
                                      &parametersCapacity);
  };
  EXPECT_OK(decode(4, 1, 4));
  EXPECT_EQ("03 2A 03 04", ToHex(Bytes(oid, oid + 4)));
  EXPECT_EQ("04 02 AA BB", ToHex(Bytes(parameters, parameters + 4)));
  EXPECT_EQ(0x55, key[0]);
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, decode(0, 1, 4));
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, decode(4, 0, 4));
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, decode(4, 1, 0));
  // Each alone.
  uint32_t other = 0;
  const auto part = [&](auto... out) { return DecodeSubjectPublicKeyInfo(info.data(), SizeOf(info), out...); };
  EXPECT_EQ("03 2A 03 04",
            ToHex(FetchChecked([&](auto... to) { return part(to..., nullptr, &other, nullptr, nullptr); })));
  EXPECT_EQ("55", ToHex(FetchChecked([&](auto... to) { return part(nullptr, nullptr, to..., nullptr, nullptr); })));
  EXPECT_EQ("04 02 AA BB",
            ToHex(FetchChecked([&](auto... to) { return part(nullptr, nullptr, nullptr, &other, to...); })));

  const DecodeResult decoded = Decode(SubjectPublicKeyInfoItem, info);
  EXPECT_EQ("55", ToHex(FetchChecked(GetSubjectPublicKeyInfoPublicKey, &decoded.tree.As<SubjectPublicKeyInfo>())));
}

TEST(Algorithms, OfGostKeysBelongToTheirSets) {
  const Owned<Certificate> certificate = Make(CreateCertificate);
  const Bytes key(128, 0x5A);
  Call(SetCertificateGostR34102001PublicKey, certificate, key);
  uint32_t sets[3] = {};
  const auto check = [&](uint32_t algorithm, uint8_t mode, uint32_t publicKey, uint32_t digest) {
    Call(SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters, certificate, algorithm, mode, publicKey, digest,
         1);
    uint32_t length = 0;
    return GetCertificateDecodedPublicKeyGostR34102012(certificate, nullptr, &length, &sets[0], &sets[1], &sets[2]);
  };
  uint32_t accepted = 0;
  for (const uint32_t algorithm : {102U, 3000U, 3001U}) {
    for (uint32_t publicKey = 1; publicKey <= 12; ++publicKey) {
      for (uint32_t digest = 1; digest <= 4; ++digest) {
        const bool expected = algorithm == 102    ? publicKey <= 6 && digest <= 2
                              : algorithm == 3000 ? (publicKey <= 7 || publicKey == 9) && digest == 3
                                                  : (publicKey == 8 || publicKey >= 10) && digest == 4;
        ASSERT_STATUS(expected ? TESSEL_OK : TESSEL_INVALID_KEY, check(algorithm, 1, publicKey, digest))
            << algorithm << " " << publicKey << " " << digest;
        if (!expected) continue;
        ++accepted;
        EXPECT_TRUE(sets[0] == publicKey && sets[1] == digest && sets[2] == 1);
      }
    }
  }
  EXPECT_EQ(6U * 2 + 8 + 4, accepted);
  EXPECT_STATUS(TESSEL_INVALID_KEY, check(3000, 0, 7, 3));
  EXPECT_STATUS(TESSEL_INVALID_KEY, check(3000, 0xFF, 7, 3));
  EXPECT_STATUS(TESSEL_INVALID_KEY, check(1, 1, 7, 3)) << "RSA";
  Call(SetCertificatePublicKeyAlgorithmOidAndParameters, certificate, ObjectIdentifier("1.2.840.10045.2.1"), nullptr,
       0);
  uint32_t length = 0;
  EXPECT_STATUS(TESSEL_UNKNOWN_OID, GetCertificateDecodedPublicKeyGostR34102012(certificate, nullptr, &length, &sets[0],
                                                                                &sets[1], &sets[2]));
  EXPECT_EQ(key, FetchChecked(GetCertificatePublicKeyGostR3410, certificate));
  const Bytes wide(254, 1);
  EXPECT_STATUS(TESSEL_INTERNAL_BUFFER_TOO_SMALL, SetCertificateGostR34102001PublicKey(certificate, wide.data(), 254));
  EXPECT_OK(SetCertificateGostR34102001PublicKey(certificate, wide.data(), 253));
}

}  // namespace
}  // namespace test
