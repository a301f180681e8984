// Certificate (RFC 5280, 4.1).
#pragma once

#include "engine/path.h"
#include "tessel/certificate.hpp"
#include "x509/extensions.h"

namespace tessel {

// The members that more than one source file is about.
inline constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::serialNumber> kCertificateSerialNumber;
inline constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::issuer> kCertificateIssuer;
inline constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::subjectPublicKeyInfo,
                      &SubjectPublicKeyInfo::subjectPublicKey>
    kCertificatePublicKey;
inline constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::extensions> kCertificateExtensions;

// The value of an extension; lent. TESSEL_NOT_FOUND also when there is no to-be-signed part.
Status FindCertificateExtension(const Certificate* certificate, Octets oid, Octets& value, Caller at = {});

}  // namespace tessel
