// What no machine's noise can change: how many allocations an operation takes, and how much memory an object holds.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <vector>

#include "memory/heap.h"
#include "support/objects.h"
#include "support/octets.h"
#include "support/samples.h"
#include "tessel/tessel.h"

namespace test {
namespace {

Owned<Certificate> DecodeSample(const Bytes& octets) { return Make(DecodeCertificate, octets); }

// The samples that are certificates to the library.
std::vector<Bytes> Decodable() {
  std::vector<Bytes> all;
  for (const Sample& sample : ::test::Certificates()) {
    Owned<Certificate> certificate;
    if (Try(DecodeCertificate, sample.octets, certificate.Out()) == TESSEL_OK) all.push_back(sample.octets);
  }
  return all;
}

// The allocations of an operation on each certificate: of the one that takes most, and of all.
struct Allocations {
  uint64_t most = 0;
  uint64_t all = 0;
};

template <class Operation>
Allocations Count(const std::vector<Bytes>& certificates, Operation operation) {
  Allocations allocations;
  for (const Bytes& octets : certificates) {
    const HeapCount heap;
    operation(octets);
    allocations.most = std::max(allocations.most, heap.Allocations());
    allocations.all += heap.Allocations();
    EXPECT_EQ(0, heap.Held());
  }
  return allocations;
}

TEST(Allocations, ACertificateIsDecodedWithOneOrTwo) {
  const std::vector<Bytes> certificates = Decodable();
  ASSERT_GT(certificates.size(), 100U);
  const Allocations decoding = Count(certificates, DecodeSample);
  EXPECT_LE(decoding.most, 2U);
  EXPECT_LE(decoding.all, certificates.size() * 21 / 20);
}

TEST(Allocations, ACertificateIsCopiedWithFew) {
  const std::vector<Bytes> certificates = Decodable();
  std::vector<Owned<Certificate>> decoded;
  decoded.reserve(certificates.size());
  for (const Bytes& octets : certificates) decoded.push_back(DecodeSample(octets));
  size_t next = 0;
  const Allocations copying =
      Count(certificates, [&](const Bytes& /*octets*/) { return Make(CreateCertificateCopy, decoded[next++]); });
  EXPECT_LE(copying.all, certificates.size() * 3 / 2);
}

TEST(Allocations, EncodingIntoASmallBufferTakesNone) {
  std::array<uint8_t, 16384> buffer;
  for (const Bytes& octets : Decodable()) {
    if (octets.size() > buffer.size()) continue;
    const Owned<Certificate> certificate = DecodeSample(octets);
    const HeapCount heap;
    uint32_t length = 0;
    const uint32_t measuring = EncodeCertificate(certificate, nullptr, &length);
    length = static_cast<uint32_t>(buffer.size());
    const uint32_t writing = EncodeCertificate(certificate, buffer.data(), &length);
    const uint64_t allocations = heap.Allocations();
    EXPECT_OK(measuring);
    EXPECT_OK(writing);
    EXPECT_EQ(0U, allocations);
  }
}

TEST(Allocations, ReadingTakesNone) {
  const Bytes octets = ::test::Certificates().front().octets;
  const Owned<Certificate> certificate = DecodeSample(octets);
  const Owned<LibraryTime> time = TimeOf(2026, 1, 1);
  const Bytes basicConstraints = Counted("2.5.29.19");
  std::array<uint8_t, 4096> buffer;
  std::array<char, 1024> text;
  uint32_t length = 0;
  uint32_t number = 0;
  int32_t version = 0;
  uint8_t unused = 0;
  X509Name* name = nullptr;
  X509ExtensionsSlot* slot = nullptr;
  const auto room = [&] {
    length = static_cast<uint32_t>(buffer.size());
    return &length;
  };
  const auto textRoom = [&] {
    length = static_cast<uint32_t>(text.size());
    return &length;
  };

  const HeapCount heap;
  EXPECT_OK(GetCertificateVersion(certificate, &version));
  EXPECT_OK(GetCertificateSerialNumber(certificate, buffer.data(), room()));
  EXPECT_OK(GetCertificateIssuer(certificate, &name));
  EXPECT_OK(GetX509NameRdnCount(name, &number));
  EXPECT_OK(GetCertificateSubject(certificate, &name));
  EXPECT_OK(GetCertificateValidNotBefore(certificate, time));
  EXPECT_OK(GetCertificateValidNotAfter(certificate, time));
  EXPECT_OK(GetCertificatePublicKey(certificate, buffer.data(), room()));
  EXPECT_OK(GetCertificateSignature(certificate, buffer.data(), room()));
  EXPECT_OK(GetCertificateToBeSignedPart(certificate, buffer.data(), room()));
  EXPECT_OK(GetCertificateExtensions(certificate, &slot));
  EXPECT_OK(GetX509ExtensionsExtensionsCount(slot, &number));
  EXPECT_OK(GetCertificateExtensionValue(certificate, basicConstraints.data(), buffer.data(), room()));
  EXPECT_OK(GetCertificateCN(certificate, text.data(), textRoom()));
  EXPECT_STATUS(TESSEL_ABSENT, GetCertificateSubjectUniqueId(certificate, buffer.data(), room(), &unused));
  EXPECT_EQ(0U, heap.Allocations());
}

TEST(Allocations, ACrlEntryTakesAtMost200Octets) {
  constexpr int64_t kLargestEntry = sizeof(void*) == 8 ? 200 : 150;
  for (const uint32_t entries : {1000U, 20000U, 200000U}) {
    const Bytes octets = MakeCrl(entries);
    const HeapCount heap;
    Owned<X509Crl> crl;
    const uint32_t status = Try(DecodeX509Crl, octets, crl.Out());
    const int64_t held = heap.Held();
    const uint64_t allocations = heap.Allocations();
    crl.Reset();
    const int64_t left = heap.Held();
    ASSERT_OK(status);
    EXPECT_LE(held, kLargestEntry * entries) << entries;
    EXPECT_LE(allocations, 5U) << entries;
    EXPECT_EQ(0, left);
  }
}

// Whatever is attached to a decoded tree goes with it, although a tree that nothing was attached to is released without
// being looked at. Each change stands alone between decoding and releasing.
TEST(Allocations, WhatWasAttachedIsReleased) {
  const Bytes octets = ::test::Certificates().front().octets;
  const Bytes oid = Counted("1.2.3.4");
  const Bytes content(40, 0x11);
  const Owned<X509Name> name = Make(CreateX509Name);
  Call(AddX509NameEntry, name, content, 12, oid.data(), 1);
  const auto extensions = [](Certificate* certificate) { return Get(GetCertificateExtensions, certificate); };

  const std::function<uint32_t(Certificate*)> changes[] = {
      [&](Certificate* c) { return Try(SetCertificateSerialNumber, c, content); },
      [&](Certificate* c) { return SetCertificateVersion(c, 1); },
      [&](Certificate* c) { return SetCertificateSubject(c, name); },
      [&](Certificate* c) { return Try(SetCertificateSignature, c, content); },
      [&](Certificate* c) { return Try(SetCertificateSubjectUniqueId, c, content, 0); },
      [&](Certificate* c) { return Try(SetCertificateValidNotBefore, c, TimeOf(2026, 1, 1)); },
      [&](Certificate* c) { return Try(AddX509ExtensionsExtension, extensions(c), oid.data(), 1, content); },
      [&](Certificate* c) { return RemoveX509Extensions(extensions(c)); },
      [&](Certificate* c) { return Try(AddX509NameEntry, Get(GetCertificateSubject, c), content, 12, oid.data(), 1); },
  };
  for (size_t i = 0; i < std::size(changes); ++i) {
    const HeapCount heap;
    {
      const Owned<Certificate> changed = DecodeSample(octets);
      EXPECT_OK(changes[i](changed)) << i;
    }
    EXPECT_EQ(0, heap.Held()) << i;
    {
      // Nor is the size that it had before taken for the new one.
      const Owned<Certificate> changed = DecodeSample(octets);
      EXPECT_OK(changes[i](changed)) << i;
      EXPECT_NE(octets, Fetch(EncodeCertificate, changed)) << i;
    }
    {
      // A later tree does not hide that an earlier one was changed.
      const Owned<Certificate> changed = DecodeSample(octets);
      EXPECT_OK(changes[i](changed)) << i;
      const Owned<Certificate> later = DecodeSample(octets);
    }
    EXPECT_EQ(0, heap.Held()) << i;
  }
}

// A decoded tree that another took in goes with that one.
TEST(Allocations, WhatWasTakenInIsReleased) {
  const Bytes octets = ::test::Certificates().front().octets;
  const Bytes two = Der(0x30, octets + octets);
  const HeapCount heap;
  for (const uint32_t additions : {1U, 20U}) {
    Owned<::Certificates> list = Make(DecodeCertificates, two);
    for (uint32_t i = 0; i < additions; ++i) Call(AddCertificateToCertificates, list, DecodeSample(octets));
    EXPECT_EQ(2 + additions, Get(GetCertificatesCount, list));
    list.Reset();
    EXPECT_EQ(0, heap.Held());
  }
}

}  // namespace
}  // namespace test
