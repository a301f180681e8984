// A heap that aligns to less than the library counts on is a heap without memory.
#include <gtest/gtest.h>

#include "memory/heap.h"
#include "support/objects.h"
#include "support/octets.h"
#include "support/samples.h"
#include "tessel/tessel.h"

namespace test {
namespace {

TEST(MisalignedHeap, IsNotUsed) {
  const Bytes octets = ReadSample("certificate.pem");
  OwnedCertificate certificate;
  ASSERT_EQ(0U, DecodeCertificate(octets.data(), SizeOf(octets), certificate.Out()));
  const HeapCount heap;
  {
    const MisalignedHeap misaligned;
    Certificate* made = nullptr;
    EXPECT_EQ(TESSEL_OUT_OF_MEMORY, DecodeCertificate(octets.data(), SizeOf(octets), &made));
    EXPECT_EQ(TESSEL_OUT_OF_MEMORY, CreateCertificate(&made));
    EXPECT_EQ(TESSEL_OUT_OF_MEMORY, CreateCertificateCopy(certificate, &made));
    EXPECT_EQ(nullptr, made);
    EXPECT_EQ(TESSEL_OUT_OF_MEMORY, SetCertificateSerialNumber(certificate, octets.data(), 4));
    EXPECT_EQ(TESSEL_OUT_OF_MEMORY, SetCertificateSubjectKeyIdentifier(certificate));
    LibraryTime* time = nullptr;
    EXPECT_EQ(TESSEL_OUT_OF_MEMORY, CreateLibraryTime(&time));
    EXPECT_EQ(nullptr, AllocAsn1Integer(1));
    uint8_t* block = nullptr;
    uint32_t length = 0;
    EXPECT_EQ(TESSEL_OUT_OF_MEMORY, Asn1Encode(certificate.Get(), &CertificateItem, &block, &length));
  }
  EXPECT_EQ(0, heap.Held());
  Bytes encoded(octets.size());
  uint32_t length = SizeOf(encoded);
  EXPECT_EQ(0U, EncodeCertificate(certificate, encoded.data(), &length));
  EXPECT_EQ(octets, encoded);
}

}  // namespace
}  // namespace test
