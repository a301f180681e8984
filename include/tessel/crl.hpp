// Certificate revocation lists as types (RFC 5280, 5.1).
#pragma once

#include "tessel/algorithms.hpp"
#include "tessel/asn1.hpp"
#include "tessel/crl.h"
#include "tessel/extensions.hpp"
#include "tessel/free.hpp"
#include "tessel/names.hpp"
#include "tessel/time.hpp"

namespace tessel {

struct RevokedCertificate {
  Asn1Value* userCertificate;
  Time* revocationDate;
  X509Extensions* crlEntryExtensions;
};
inline constexpr auto kRevokedCertificate = Sequence{
    Member<&RevokedCertificate::userCertificate, kInteger>,
    Member<&RevokedCertificate::revocationDate, kTime>,
    Member<&RevokedCertificate::crlEntryExtensions, Optional<kX509Extensions>>,
};

}  // namespace tessel

struct X509RevokedCertificates : tessel::ListOf<tessel::RevokedCertificate> {};

namespace tessel {

inline constexpr auto kX509RevokedCertificates = SequenceOf<X509RevokedCertificates, kRevokedCertificate>();

struct TbsCertList {
  Asn1Value* version;
  AlgorithmIdentifier* signature;
  NameChoice* issuer;
  Time* thisUpdate;
  Time* nextUpdate;
  X509RevokedCertificates* revokedCertificates;
  X509Extensions* crlExtensions;
};
inline constexpr auto kTbsCertList = Sequence{
    Member<&TbsCertList::version, Optional<kInteger>>,
    Member<&TbsCertList::signature, kAlgorithmIdentifier>,
    Member<&TbsCertList::issuer, kNameChoice>,
    Member<&TbsCertList::thisUpdate, kTime>,
    Member<&TbsCertList::nextUpdate, Optional<kTime>>,
    Member<&TbsCertList::revokedCertificates, Optional<kX509RevokedCertificates>>,
    Member<&TbsCertList::crlExtensions, Optional<Explicit<0, kX509Extensions>>>,
};

}  // namespace tessel

struct X509Crl {
  tessel::TbsCertList* tbsCertList;
  AlgorithmIdentifier* signatureAlgorithm;
  Asn1BitString* signatureValue;
};

struct X509Crls : tessel::ListOf<X509Crl> {};

namespace tessel {

inline constexpr auto kX509Crl = Sequence{
    Member<&X509Crl::tbsCertList, kTbsCertList>,
    Member<&X509Crl::signatureAlgorithm, kAlgorithmIdentifier>,
    Member<&X509Crl::signatureValue, kBitString>,
};

inline constexpr auto kX509Crls = SequenceOf<X509Crls, kX509Crl>();

template <>
inline constexpr auto kFreeFunction<X509Crl> = FreeX509Crl;
template <>
inline constexpr auto kFreeFunction<X509Crls> = FreeX509Crls;
template <>
inline constexpr auto kFreeFunction<X509RevokedCertificates> = FreeX509RevokedCertificates;

}  // namespace tessel
