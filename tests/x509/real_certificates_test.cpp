// What every getter reads from real certificates, beside what openssl sees in them.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/host.h"
#include "support/objects.h"
#include "support/openssl.h"
#include "support/samples.h"
#include "tessel/tessel.h"

namespace test {
namespace {

Bytes CountedOf(const Element& oid) { return Bytes{static_cast<uint8_t>(oid.content.size())} + oid.content; }

// The octets of a BIT STRING.
Bytes BitsOf(const Element& element) { return {element.content.begin() + 1, element.content.end()}; }

// What openssl sees in a certificate.
struct Seen {
  explicit Seen(const Element& whole) : signature(BitsOf(whole.children.at(2))) {
    for (const Element& member : whole.children[0].children) {
      const uint8_t tag = member.whole[0];
      (tag >= 0x80 ? tagged[tag] : mandatory.emplace_back()) = member;
    }
    keyAlgorithm = mandatory.at(5).children.at(0).children;
    key = BitsOf(mandatory[5].children.at(1));
    if (!tagged.contains(0xA3)) return;
    for (const Element& extension : tagged[0xA3].children[0].children) {
      extensions.push_back(extension.children);
      values.emplace(CountedOf(extension.children[0]), extension.children.back().content);
    }
  }

  std::vector<Element> mandatory;
  std::map<uint8_t, Element> tagged;
  std::vector<Element> keyAlgorithm;
  Bytes key;
  Bytes signature;
  std::vector<std::vector<Element>> extensions;
  std::map<Bytes, Bytes> values;  // of the first extension with an identifier
  // Inside of the octets of extensions.
  std::optional<Element> subjectKeyIdentifier;
  std::optional<Element> authorityKeyIdentifier;
};

// All at once, for openssl takes longer to start than to read them.
std::vector<Seen> AskOpenssl() {
  const Openssl openssl;
  Bytes all;
  for (const Sample& sample : ::test::Certificates()) all += sample.octets;
  std::vector<Seen> certificates;
  for (const Element& element : openssl.Parse(all)) certificates.emplace_back(element);

  Bytes inside;
  std::vector<std::optional<Element>*> places;
  const auto lookInside = [&](const Bytes& octets, std::optional<Element>& place) {
    if (octets.empty()) return;
    inside += octets;
    places.push_back(&place);
  };
  for (Seen& seen : certificates) {
    lookInside(seen.values[Counted("2.5.29.14")], seen.subjectKeyIdentifier);
    lookInside(seen.values[Counted("2.5.29.35")], seen.authorityKeyIdentifier);
  }
  const std::vector<Element> elements = openssl.Parse(inside);
  EXPECT_EQ(places.size(), elements.size());
  for (size_t i = 0; i < elements.size(); ++i) *places.at(i) = elements[i];
  return certificates;
}

// A getter delivers the octets, or tells that there are none.
void ExpectOctets(const std::optional<Bytes>& octets, uint32_t statusWithout, auto get) {
  uint32_t size = 0;
  if (octets) {
    EXPECT_EQ(*octets, FetchChecked(get));
  } else {
    EXPECT_STATUS(statusWithout, get(static_cast<uint8_t*>(nullptr), &size));
  }
}

void ExpectTime(const Element& seen, const Certificate* certificate, auto get) {
  std::string text(seen.content.begin(), seen.content.end());
  const bool isUtcTime = seen.whole[0] == 0x17;
  if (isUtcTime) text.insert(0, text < "5" ? "20" : "19");
  const bool inRange = text >= "1900" && text < "2101";
  LibraryTime time{};
  ASSERT_STATUS(inRange ? TESSEL_OK : TESSEL_INVALID_TIME, get(certificate, &time)) << text;
  if (!inRange) return;
  std::array<char, 64> read{};
  std::snprintf(read.data(), read.size(), "%04u%02u%02u%02u%02u%02u", time.year, time.month, time.day, time.hour,
                time.minute, time.second);
  // An offset from UTC is not looked at.
  EXPECT_EQ(text.substr(0, 14), read.data());
}

void ExpectAlgorithm(const std::vector<Element>& seen, const Certificate* certificate, auto get) {
  EXPECT_EQ(CountedOf(seen[0]), FetchChecked([=](auto... out) { return get(certificate, out..., nullptr, nullptr); }));
  EXPECT_EQ(seen.size() > 1 ? seen[1].whole : Bytes(), FetchChecked(get, certificate, nullptr, nullptr));
}

void ExpectUniqueId(const Seen& seen, uint8_t tag, const Certificate* certificate, auto get) {
  const auto found = seen.tagged.find(tag);
  const bool there = found != seen.tagged.end();
  uint8_t unused = 0;
  ExpectOctets(there ? std::optional(BitsOf(found->second)) : std::nullopt, TESSEL_ABSENT,
               [&](auto... out) { return get(certificate, out..., &unused); });
  EXPECT_EQ(there ? found->second.content[0] : 0, unused);
}

void ExpectExtensions(const Seen& seen, Certificate* certificate) {
  const X509ExtensionsSlot* slot = Get(GetCertificateExtensions, certificate);
  ASSERT_EQ(seen.extensions.size(), Get(GetX509ExtensionsExtensionsCount, slot));
  for (uint32_t i = 0; i < seen.extensions.size(); ++i) {
    const std::vector<Element>& parts = seen.extensions[i];
    const Bytes oid = CountedOf(parts[0]);
    uint32_t critical = 7;
    uint32_t other = 0;
    EXPECT_EQ(oid, FetchChecked([&](auto... out) {
                return GetX509ExtensionsExtension(slot, i, out..., &critical, nullptr, &other);
              }));
    EXPECT_EQ(parts.size() == 3 && parts[1].content == Bytes{0xFF} ? 1U : 0U, critical);
    EXPECT_EQ(parts.back().content, FetchChecked(GetX509ExtensionsExtension, slot, i, nullptr, &other, &critical));
    EXPECT_EQ(seen.values.at(oid), FetchChecked(GetCertificateExtensionValue, certificate, oid.data()));
  }
}

void ExpectMembers(const Seen& seen, Certificate* certificate) {
  EXPECT_EQ(seen.tagged.contains(0xA0) ? seen.tagged.at(0xA0).children[0].content[0] : 0,
            Get(GetCertificateVersion, certificate));
  const Bytes& serial = seen.mandatory[0].content;
  EXPECT_EQ(serial, FetchChecked(GetCertificateSerialNumber, certificate));
  uint32_t length = 0;
  const uint8_t* lent = ptr_GetCertificateSerialNumber(certificate, &length);
  EXPECT_EQ(serial, Bytes(lent, lent + length));
  ExpectAlgorithm(seen.mandatory[1].children, certificate, GetCertificateSignatureAlgorithmOidAndParameters);
  EXPECT_EQ(seen.mandatory[2].whole, FetchChecked(EncodeX509Name, Get(GetCertificateIssuer, certificate)));
  ExpectTime(seen.mandatory[3].children[0], certificate, GetCertificateValidNotBefore);
  ExpectTime(seen.mandatory[3].children[1], certificate, GetCertificateValidNotAfter);
  EXPECT_EQ(seen.mandatory[4].whole, FetchChecked(EncodeX509Name, Get(GetCertificateSubject, certificate)));
  ExpectAlgorithm(seen.keyAlgorithm, certificate, GetCertificatePublicKeyAlgorithmOidAndParameters);
  EXPECT_EQ(seen.key, FetchChecked(GetCertificatePublicKey, certificate));
  ExpectUniqueId(seen, 0x81, certificate, GetCertificateIssuerUniqueId);
  ExpectUniqueId(seen, 0x82, certificate, GetCertificateSubjectUniqueId);
  // One of them is an empty BIT STRING.
  ExpectOctets(seen.signature.empty() ? std::nullopt : std::optional(seen.signature), TESSEL_ABSENT,
               [=](auto... out) { return GetCertificateSignature(certificate, out...); });
}

void ExpectKeyIdentifiers(const Seen& seen, const Certificate* certificate) {
  const std::optional<Element>& subject = seen.subjectKeyIdentifier;
  ExpectOctets(subject ? std::optional(subject->content) : std::nullopt, TESSEL_NOT_FOUND,
               [=](auto... out) { return GetCertificateSubjectKeyIdentifier(certificate, out...); });

  Owned<X509Name> issuer;
  uint32_t other = 0;
  const auto get = [&](uint8_t* key, uint32_t* keyLength, uint8_t* serial, uint32_t* serialLength) {
    return GetCertificateAuthorityKeyIdentifier2(certificate, key, keyLength, issuer.Out(), serial, serialLength);
  };
  const std::optional<Element>& authority = seen.authorityKeyIdentifier;
  std::map<uint8_t, Element> fields;
  if (authority) {
    for (const Element& field : authority->children) fields[field.whole[0]] = field;
  }
  const auto octets = [&](uint8_t tag) { return authority ? std::optional(fields[tag].content) : std::nullopt; };
  ExpectOctets(octets(0x80), TESSEL_NOT_FOUND, [&](auto... out) { return get(out..., nullptr, &other); });
  ExpectOctets(octets(0x82), TESSEL_NOT_FOUND, [&](auto... out) { return get(nullptr, &other, out...); });
  ASSERT_EQ(fields.contains(0xA1), static_cast<bool>(issuer));
  // Its names are one directoryName.
  if (!issuer) return;
  EXPECT_EQ(fields[0xA1].children.at(0).children.at(0).whole, FetchChecked(EncodeX509Name, issuer));
}

void ExpectGostSets(const Seen& seen, const Certificate* certificate) {
  static const std::map<Bytes, uint32_t> numbers = {
      {Counted("1.2.643.2.2.35.1"), 1},    {Counted("1.2.643.2.2.35.2"), 2},     {Counted("1.2.643.2.2.36.0"), 4},
      {Counted("1.2.643.7.1.2.1.1.1"), 9}, {Counted("1.2.643.7.1.2.1.2.1"), 10}, {Counted("1.2.643.7.1.2.1.2.2"), 11},
      {Counted("1.2.643.2.2.30.1"), 1},    {Counted("1.2.643.7.1.1.2.2"), 3},    {Counted("1.2.643.7.1.1.2.3"), 4},
      {Counted("1.2.643.2.2.31.1"), 1}};
  static const std::set<Bytes> gost = {Counted("1.2.643.2.2.19"), Counted("1.2.643.7.1.1.1.1"),
                                       Counted("1.2.643.7.1.1.1.2")};
  uint32_t sets[3] = {};
  uint32_t length = 0;
  const uint32_t status =
      GetCertificateDecodedPublicKeyGostR34102012(certificate, nullptr, &length, &sets[0], &sets[1], &sets[2]);
  ASSERT_EQ(gost.contains(CountedOf(seen.keyAlgorithm[0])), status == TESSEL_OK);
  if (status != TESSEL_OK) return;
  const std::vector<Element>& parameters = seen.keyAlgorithm.at(1).children;
  EXPECT_EQ(numbers.at(CountedOf(parameters.at(0))), sets[0]);
  EXPECT_EQ(numbers.at(CountedOf(parameters.at(1))), sets[1]);
  // By the DEFAULT of GOST R 34.10-2001, whatever the algorithm.
  EXPECT_EQ(parameters.size() > 2 ? numbers.at(CountedOf(parameters[2])) : 1U, sets[2]);
}

TEST(RealCertificates, ReadAsOpensslSeesThem) {
  TESSEL_TEST_NEEDS_HOST();
  const std::vector<Sample>& samples = ::test::Certificates();
  ASSERT_GT(samples.size(), 100U) << "the package ca-certificates is not installed";
  const std::vector<Seen> seen = AskOpenssl();
  ASSERT_EQ(samples.size(), seen.size());
  for (size_t i = 0; i < samples.size(); ++i) {
    SCOPED_TRACE(samples[i].file);
    Owned<Certificate> certificate;
    const uint32_t status = Try(DecodeCertificate, samples[i].octets, certificate.Out());
    // It has a flag that is neither true nor false, which openssl does not mind.
    const bool refused = samples[i].file.find("extension_critical_3") != std::string::npos;
    ASSERT_STATUS(refused ? TESSEL_INVALID_CONTENT : TESSEL_OK, status);
    if (refused) continue;
    ExpectMembers(seen[i], certificate);
    ExpectExtensions(seen[i], certificate);
    ExpectKeyIdentifiers(seen[i], certificate);
    ExpectGostSets(seen[i], certificate);
  }
}

}  // namespace
}  // namespace test
