// Certificates as types (RFC 5280, 4.1).
#pragma once

#include "tessel/algorithms.hpp"
#include "tessel/asn1.hpp"
#include "tessel/certificate.h"
#include "tessel/extensions.hpp"
#include "tessel/free.hpp"
#include "tessel/names.hpp"
#include "tessel/time.hpp"

namespace tessel {

struct Validity {
  Time* notBefore;
  Time* notAfter;
};
inline constexpr auto kValidity = Sequence{
    Member<&Validity::notBefore, kTime>,
    Member<&Validity::notAfter, kTime>,
};

struct TbsCertificate {
  Asn1Value* version;
  Asn1Value* serialNumber;
  AlgorithmIdentifier* signature;
  NameChoice* issuer;
  Validity* validity;
  NameChoice* subject;
  SubjectPublicKeyInfo* subjectPublicKeyInfo;
  Asn1BitString* issuerUniqueID;
  Asn1BitString* subjectUniqueID;
  X509Extensions* extensions;
};
inline constexpr auto kTbsCertificate = Sequence{
    Member<&TbsCertificate::version, Default<Explicit<0, kInteger>, kZero>>,
    Member<&TbsCertificate::serialNumber, kInteger>,
    Member<&TbsCertificate::signature, kAlgorithmIdentifier>,
    Member<&TbsCertificate::issuer, kNameChoice>,
    Member<&TbsCertificate::validity, kValidity>,
    Member<&TbsCertificate::subject, kNameChoice>,
    Member<&TbsCertificate::subjectPublicKeyInfo, kSubjectPublicKeyInfo>,
    Member<&TbsCertificate::issuerUniqueID, Optional<Implicit<1, kBitString>>>,
    Member<&TbsCertificate::subjectUniqueID, Optional<Implicit<2, kBitString>>>,
    Member<&TbsCertificate::extensions, Optional<Explicit<3, kX509Extensions>>>,
};

}  // namespace tessel

struct Certificate {
  tessel::TbsCertificate* tbsCertificate;
  AlgorithmIdentifier* signatureAlgorithm;
  Asn1BitString* signatureValue;
};

struct Certificates : tessel::ListOf<Certificate> {};

namespace tessel {

inline constexpr auto kCertificate = Sequence{
    Member<&Certificate::tbsCertificate, kTbsCertificate>,
    Member<&Certificate::signatureAlgorithm, kAlgorithmIdentifier>,
    Member<&Certificate::signatureValue, kBitString>,
};

inline constexpr auto kCertificates = SequenceOf<Certificates, kCertificate>();

template <>
inline constexpr auto kFreeFunction<Certificate> = FreeCertificate;
template <>
inline constexpr auto kFreeFunction<Certificates> = FreeCertificates;

}  // namespace tessel
