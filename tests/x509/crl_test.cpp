#include <gtest/gtest.h>

#include "support/damage.h"
#include "support/objects.h"
#include "support/octets.h"
#include "support/samples.h"
#include "tessel/tessel.h"

namespace test {
namespace {

// The input is gone before the CRL is used, and the CRL before its copy.
void ExpectRoundTrip(const Bytes& octets) {
  Owned<X509Crl> crl = Make(DecodeX509Crl, Guarded(octets));
  EXPECT_EQ(octets, FetchChecked(EncodeX509Crl, crl));
  const Owned<X509Crl> copy = Make(CreateX509CrlCopy, crl);
  crl.Reset();
  EXPECT_EQ(octets, FetchChecked(EncodeX509Crl, copy));
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

TEST(Crl, DamageIsSurvived) { ExpectDamageIsSurvived(X509CrlItem, MakeCrl(2), DecodeX509Crl, EncodeX509Crl); }

TEST(Crl, ListsHoldWhatTheyAreGiven) {
  const Bytes both = Der(0x30, MakeCrl(1) + MakeCrl(2));
  const Owned<X509Crls> crls = Make(DecodeX509Crls, both);
  EXPECT_EQ(both, FetchChecked(EncodeX509Crls, Make(CreateX509CrlsCopy, crls)));

  EXPECT_EQ("30 00", ToHex(FetchChecked(EncodeX509Crls, Make(CreateX509Crls))));
  EXPECT_EQ("30 00", ToHex(FetchChecked(EncodeX509RevokedCertificates, Make(CreateX509RevokedCertificates))));
}

TEST(Crl, NewOnesCannotBeEncoded) {
  const Owned<X509Crl> crl = Make(CreateX509Crl);
  EXPECT_STATUS(TESSEL_ABSENT, AskSize(EncodeX509Crl, crl));
}

}  // namespace
}  // namespace test
