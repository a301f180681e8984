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
  const Owned<Certificate> certificate = Make(DecodeCertificate, octets);
  const HeapCount heap;
  {
    const MisalignedHeap misaligned;
    Certificate* made = nullptr;
    EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, DecodeCertificate(octets.data(), SizeOf(octets), &made));
    EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, CreateCertificate(&made));
    EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, CreateCertificateCopy(certificate, &made));
    EXPECT_EQ(nullptr, made);
    EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, SetCertificateSerialNumber(certificate, octets.data(), 4));
    EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, SetCertificateSubjectKeyIdentifier(certificate));
    LibraryTime* time = nullptr;
    EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, CreateLibraryTime(&time));
    EXPECT_EQ(nullptr, AllocAsn1Integer(1));
    uint8_t* block = nullptr;
    uint32_t length = 0;
    EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, Asn1Encode(certificate.Get(), &CertificateItem, &block, &length));
  }
  EXPECT_EQ(0, heap.Held());
  EXPECT_EQ(octets, Fetch(EncodeCertificate, certificate));
}

}  // namespace
}  // namespace test
