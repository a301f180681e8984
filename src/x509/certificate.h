// Certificate (RFC 5280, 4.1).
#pragma once

#include "engine/descriptor.h"
#include "engine/path.h"
#include "tessel/certificate.h"
#include "values/time.h"
#include "x509/algorithms.h"
#include "x509/extensions.h"
#include "x509/names.h"

struct Validity {
  Time* notBefore;
  Time* notAfter;
};

struct TbsCertificate {
  Asn1Value* version;
  Asn1Value* serialNumber;
  AlgorithmIdentifier* signature;
  tessel::NameChoice* issuer;
  Validity* validity;
  tessel::NameChoice* subject;
  SubjectPublicKeyInfo* subjectPublicKeyInfo;
  Asn1BitString* issuerUniqueID;
  Asn1BitString* subjectUniqueID;
  X509Extensions* extensions;
};

struct Certificate {
  TbsCertificate* tbsCertificate;
  AlgorithmIdentifier* signatureAlgorithm;
  Asn1BitString* signatureValue;
};

struct Certificates : tessel::ListOf<Certificate> {};

namespace tessel {

inline constexpr auto kValidity = Sequence{
    Member<&Validity::notBefore, kTime>,
    Member<&Validity::notAfter, kTime>,
};

inline constexpr auto kTbsCertificate = Sequence{
    Member<&TbsCertificate::version, Default<Explicit<0, kInteger>, kZero>>,
    Member<&TbsCertificate::serialNumber, kInteger>,
    Member<&TbsCertificate::signature, kAlgorithmIdentifier>,
    Member<&TbsCertificate::issuer, kName>,
    Member<&TbsCertificate::validity, kValidity>,
    Member<&TbsCertificate::subject, kName>,
    Member<&TbsCertificate::subjectPublicKeyInfo, kSubjectPublicKeyInfo>,
    Member<&TbsCertificate::issuerUniqueID, Optional<Implicit<1, kBitString>>>,
    Member<&TbsCertificate::subjectUniqueID, Optional<Implicit<2, kBitString>>>,
    Member<&TbsCertificate::extensions, Optional<Explicit<3, kX509Extensions>>>,
};

inline constexpr auto kCertificate = Sequence{
    Member<&Certificate::tbsCertificate, kTbsCertificate>,
    Member<&Certificate::signatureAlgorithm, kAlgorithmIdentifier>,
    Member<&Certificate::signatureValue, kBitString>,
};

inline constexpr auto kCertificates = SequenceOf<Certificates, kCertificate>();

// The members that more than one source file is about.
inline constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::serialNumber> kCertificateSerialNumber;
inline constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::issuer> kCertificateIssuer;
inline constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::subjectPublicKeyInfo,
                      &SubjectPublicKeyInfo::subjectPublicKey>
    kCertificatePublicKey;
inline constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::extensions> kCertificateExtensions;

// The value of an extension; lent. TESSEL_NOT_FOUND also when there is no to-be-signed part.
Status FindCertificateExtension(const Certificate* certificate, Octets oid, Octets& value, Site at = {});

}  // namespace tessel
