// X509Crl, the CertificateList of RFC 5280, 5.1.
#pragma once

#include "engine/descriptor.h"
#include "tessel/crl.h"
#include "values/time.h"
#include "x509/algorithms.h"
#include "x509/extensions.h"
#include "x509/names.h"

struct RevokedCertificate {
  Asn1Value* userCertificate;
  Time* revocationDate;
  X509Extensions* crlEntryExtensions;
};

struct X509RevokedCertificates : tessel::ListOf<RevokedCertificate> {};

struct TbsCertList {
  Asn1Value* version;
  AlgorithmIdentifier* signature;
  tessel::NameChoice* issuer;
  Time* thisUpdate;
  Time* nextUpdate;
  X509RevokedCertificates* revokedCertificates;
  X509Extensions* crlExtensions;
};

struct X509Crl {
  TbsCertList* tbsCertList;
  AlgorithmIdentifier* signatureAlgorithm;
  Asn1BitString* signatureValue;
};

struct X509Crls : tessel::ListOf<X509Crl> {};

namespace tessel {

inline constexpr auto kRevokedCertificate = Sequence{
    Member<&RevokedCertificate::userCertificate, kInteger>,
    Member<&RevokedCertificate::revocationDate, kTime>,
    Member<&RevokedCertificate::crlEntryExtensions, Optional<kX509Extensions>>,
};

inline constexpr auto kX509RevokedCertificates = SequenceOf<X509RevokedCertificates, kRevokedCertificate>();

inline constexpr auto kTbsCertList = Sequence{
    Member<&TbsCertList::version, Optional<kInteger>>,
    Member<&TbsCertList::signature, kAlgorithmIdentifier>,
    Member<&TbsCertList::issuer, kName>,
    Member<&TbsCertList::thisUpdate, kTime>,
    Member<&TbsCertList::nextUpdate, Optional<kTime>>,
    Member<&TbsCertList::revokedCertificates, Optional<kX509RevokedCertificates>>,
    Member<&TbsCertList::crlExtensions, Optional<Explicit<0, kX509Extensions>>>,
};

inline constexpr auto kX509Crl = Sequence{
    Member<&X509Crl::tbsCertList, kTbsCertList>,
    Member<&X509Crl::signatureAlgorithm, kAlgorithmIdentifier>,
    Member<&X509Crl::signatureValue, kBitString>,
};

inline constexpr auto kX509Crls = SequenceOf<X509Crls, kX509Crl>();

}  // namespace tessel
