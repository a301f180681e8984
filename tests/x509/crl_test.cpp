#include <gtest/gtest.h>

#include "support/damage.h"
#include "support/objects.h"
#include "support/octets.h"
#include "support/samples.h"
#include "tessel/tessel.h"

namespace test {
namespace {

// The input is gone before the CRL is used.
OwnedCrl DecodeCrl(const Bytes& octets) {
  const Guarded input(octets);
  OwnedCrl crl;
  EXPECT_EQ(0U, DecodeX509Crl(input.Data(), input.Size(), crl.Out()));
  return crl;
}

void ExpectRoundTrip(const Bytes& octets) {
  OwnedCrl copy;
  {
    const OwnedCrl crl = DecodeCrl(octets);
    EXPECT_EQ(octets, FetchFrom<X509Crl>(crl, EncodeX509Crl));
    ASSERT_EQ(0U, CreateX509CrlCopy(crl, copy.Out()));
  }
  EXPECT_EQ(octets, FetchFrom<X509Crl>(copy, EncodeX509Crl));
}

TEST(Crl, RealOnesSurviveTheRoundTrip) {
  for (const Sample& sample : Crls()) {
    SCOPED_TRACE(sample.file);
    ExpectRoundTrip(sample.octets);
  }
}

TEST(Crl, MadeOnesSurviveTheRoundTrip) {
  // More entries than an array, a block and a scratch buffer hold.
  for (const uint32_t entries : {1U, 2U, 17U, 400U, 5000U}) ExpectRoundTrip(MakeCrl(entries));
}

TEST(Crl, DamageIsSurvived) { ExpectDamageIsSurvived<OwnedCrl>(X509CrlItem, MakeCrl(2), DecodeX509Crl, EncodeX509Crl); }

TEST(Crl, ListsHoldWhatTheyAreGiven) {
  const Bytes first = MakeCrl(1);
  const Bytes second = MakeCrl(2);
  const Bytes content = first + second;
  const Bytes both =
      Bytes{0x30, 0x82, static_cast<uint8_t>(content.size() >> 8), static_cast<uint8_t>(content.size())} + content;
  Owned<X509Crls, FreeX509Crls> crls;
  ASSERT_EQ(0U, DecodeX509Crls(both.data(), SizeOf(both), crls.Out()));
  Owned<X509Crls, FreeX509Crls> copy;
  ASSERT_EQ(0U, CreateX509CrlsCopy(crls, copy.Out()));
  EXPECT_EQ(both, FetchFrom<X509Crls>(copy, EncodeX509Crls));

  Owned<X509Crls, FreeX509Crls> empty;
  ASSERT_EQ(0U, CreateX509Crls(empty.Out()));
  EXPECT_EQ("30 00", ToHex(FetchFrom<X509Crls>(empty, EncodeX509Crls)));
  Owned<X509RevokedCertificates, FreeX509RevokedCertificates> revoked;
  ASSERT_EQ(0U, CreateX509RevokedCertificates(revoked.Out()));
  EXPECT_EQ("30 00", ToHex(FetchFrom<X509RevokedCertificates>(revoked, EncodeX509RevokedCertificates)));
}

TEST(Crl, NewOnesAreIncomplete) {
  OwnedCrl crl;
  ASSERT_EQ(0U, CreateX509Crl(crl.Out()));
  uint32_t length = 0;
  EXPECT_EQ(TESSEL_ABSENT, EncodeX509Crl(crl, nullptr, &length));
}

}  // namespace
}  // namespace test
