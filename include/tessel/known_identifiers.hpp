// Names of well-known object identifiers: attribute types, algorithms, parameter sets, extensions and what they hold.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "tessel/object_identifier.hpp"

namespace tessel {

namespace detail {

struct KnownIdentifier {
  std::string_view dotted;
  std::string_view name;
};

inline constexpr KnownIdentifier kAttributeTypes[] = {
    {"2.5.4.3", "CN"},
    {"2.5.4.4", "SN"},
    {"2.5.4.5", "serialNumber"},
    {"2.5.4.6", "C"},
    {"2.5.4.7", "L"},
    {"2.5.4.8", "ST"},
    {"2.5.4.9", "street"},
    {"2.5.4.10", "O"},
    {"2.5.4.11", "OU"},
    {"2.5.4.12", "title"},
    {"2.5.4.13", "description"},
    {"2.5.4.15", "businessCategory"},
    {"2.5.4.16", "postalAddress"},
    {"2.5.4.17", "postalCode"},
    {"2.5.4.19", "physicalDeliveryOfficeName"},
    {"2.5.4.20", "telephoneNumber"},
    {"2.5.4.26", "registeredAddress"},
    {"2.5.4.41", "name"},
    {"2.5.4.42", "GN"},
    {"2.5.4.43", "initials"},
    {"2.5.4.44", "generationQualifier"},
    {"2.5.4.45", "x500UniqueIdentifier"},
    {"2.5.4.46", "dnQualifier"},
    {"2.5.4.65", "pseudonym"},
    {"2.5.4.97", "organizationIdentifier"},
    {"0.9.2342.19200300.100.1.1", "UID"},
    {"0.9.2342.19200300.100.1.25", "DC"},
    {"1.2.840.113549.1.9.1", "emailAddress"},
    {"1.2.840.113549.1.9.2", "unstructuredName"},
    {"1.2.840.113549.1.9.8", "unstructuredAddress"},
    {"1.3.6.1.4.1.311.60.2.1.1", "jurisdictionL"},
    {"1.3.6.1.4.1.311.60.2.1.2", "jurisdictionST"},
    {"1.3.6.1.4.1.311.60.2.1.3", "jurisdictionC"},
    {"1.2.643.3.131.1.1", "INN"},
    {"1.2.643.100.1", "OGRN"},
    {"1.2.643.100.3", "SNILS"},
    {"1.2.643.100.4", "INNLE"},
    {"1.2.643.100.5", "OGRNIP"},
};

inline constexpr KnownIdentifier kAlgorithms[] = {
    {"1.2.840.113549.1.1.1", "rsaEncryption"},
    {"1.2.840.113549.1.1.2", "md2WithRSAEncryption"},
    {"1.2.840.113549.1.1.4", "md5WithRSAEncryption"},
    {"1.2.840.113549.1.1.5", "sha1WithRSAEncryption"},
    {"1.2.840.113549.1.1.7", "RSAES-OAEP"},
    {"1.2.840.113549.1.1.8", "mgf1"},
    {"1.2.840.113549.1.1.10", "RSASSA-PSS"},
    {"1.2.840.113549.1.1.11", "sha256WithRSAEncryption"},
    {"1.2.840.113549.1.1.12", "sha384WithRSAEncryption"},
    {"1.2.840.113549.1.1.13", "sha512WithRSAEncryption"},
    {"1.2.840.113549.1.1.14", "sha224WithRSAEncryption"},
    {"1.2.840.10045.2.1", "EC"},
    {"1.2.840.10045.4.1", "ecdsa-with-SHA1"},
    {"1.2.840.10045.4.3.1", "ecdsa-with-SHA224"},
    {"1.2.840.10045.4.3.2", "ecdsa-with-SHA256"},
    {"1.2.840.10045.4.3.3", "ecdsa-with-SHA384"},
    {"1.2.840.10045.4.3.4", "ecdsa-with-SHA512"},
    {"1.2.840.10040.4.1", "DSA"},
    {"1.2.840.10040.4.3", "dsa-with-SHA1"},
    {"2.16.840.1.101.3.4.3.1", "dsa-with-SHA224"},
    {"2.16.840.1.101.3.4.3.2", "dsa-with-SHA256"},
    {"1.2.840.10046.2.1", "DH"},
    {"1.3.101.110", "X25519"},
    {"1.3.101.111", "X448"},
    {"1.3.101.112", "Ed25519"},
    {"1.3.101.113", "Ed448"},
    {"2.16.840.1.101.3.4.3.17", "ML-DSA-44"},
    {"2.16.840.1.101.3.4.3.18", "ML-DSA-65"},
    {"2.16.840.1.101.3.4.3.19", "ML-DSA-87"},
    {"2.16.840.1.101.3.4.3.20", "SLH-DSA-SHA2-128s"},
    {"2.16.840.1.101.3.4.3.21", "SLH-DSA-SHA2-128f"},
    {"2.16.840.1.101.3.4.3.22", "SLH-DSA-SHA2-192s"},
    {"2.16.840.1.101.3.4.3.23", "SLH-DSA-SHA2-192f"},
    {"2.16.840.1.101.3.4.3.24", "SLH-DSA-SHA2-256s"},
    {"2.16.840.1.101.3.4.3.25", "SLH-DSA-SHA2-256f"},
    {"2.16.840.1.101.3.4.3.26", "SLH-DSA-SHAKE-128s"},
    {"2.16.840.1.101.3.4.3.27", "SLH-DSA-SHAKE-128f"},
    {"2.16.840.1.101.3.4.3.28", "SLH-DSA-SHAKE-192s"},
    {"2.16.840.1.101.3.4.3.29", "SLH-DSA-SHAKE-192f"},
    {"2.16.840.1.101.3.4.3.30", "SLH-DSA-SHAKE-256s"},
    {"2.16.840.1.101.3.4.3.31", "SLH-DSA-SHAKE-256f"},
    {"2.16.840.1.101.3.4.4.1", "ML-KEM-512"},
    {"2.16.840.1.101.3.4.4.2", "ML-KEM-768"},
    {"2.16.840.1.101.3.4.4.3", "ML-KEM-1024"},
    {"1.2.840.113549.2.5", "MD5"},
    {"1.3.14.3.2.26", "SHA-1"},
    {"2.16.840.1.101.3.4.2.1", "SHA-256"},
    {"2.16.840.1.101.3.4.2.2", "SHA-384"},
    {"2.16.840.1.101.3.4.2.3", "SHA-512"},
    {"2.16.840.1.101.3.4.2.4", "SHA-224"},
    {"1.2.643.2.2.3", "GOST R 34.11-94 with GOST R 34.10-2001"},
    {"1.2.643.2.2.4", "GOST R 34.11-94 with GOST R 34.10-94"},
    {"1.2.643.2.2.9", "GOST R 34.11-94"},
    {"1.2.643.2.2.19", "GOST R 34.10-2001"},
    {"1.2.643.2.2.20", "GOST R 34.10-94"},
    {"1.2.643.2.2.21", "GOST 28147-89"},
    {"1.2.643.2.2.98", "GOST R 34.10-2001 DH"},
    {"1.2.643.7.1.1.1.1", "GOST R 34.10-2012 256"},
    {"1.2.643.7.1.1.1.2", "GOST R 34.10-2012 512"},
    {"1.2.643.7.1.1.2.2", "GOST R 34.11-2012 256"},
    {"1.2.643.7.1.1.2.3", "GOST R 34.11-2012 512"},
    {"1.2.643.7.1.1.3.2", "GOST R 34.10-2012 with GOST R 34.11-2012 256"},
    {"1.2.643.7.1.1.3.3", "GOST R 34.10-2012 with GOST R 34.11-2012 512"},
    {"1.2.643.7.1.1.6.1", "GOST R 34.10-2012 DH 256"},
    {"1.2.643.7.1.1.6.2", "GOST R 34.10-2012 DH 512"},
};

inline constexpr KnownIdentifier kParameterSets[] = {
    {"1.2.840.10045.3.1.1", "secp192r1"},
    {"1.2.840.10045.3.1.7", "secp256r1"},
    {"1.3.132.0.10", "secp256k1"},
    {"1.3.132.0.33", "secp224r1"},
    {"1.3.132.0.34", "secp384r1"},
    {"1.3.132.0.35", "secp521r1"},
    {"1.3.36.3.3.2.8.1.1.7", "brainpoolP256r1"},
    {"1.3.36.3.3.2.8.1.1.11", "brainpoolP384r1"},
    {"1.3.36.3.3.2.8.1.1.13", "brainpoolP512r1"},
    {"1.2.643.2.2.30.0", "id-GostR3411-94-TestParamSet"},
    {"1.2.643.2.2.30.1", "id-GostR3411-94-CryptoProParamSet"},
    {"1.2.643.2.2.31.0", "id-Gost28147-89-TestParamSet"},
    {"1.2.643.2.2.31.1", "id-Gost28147-89-CryptoPro-A-ParamSet"},
    {"1.2.643.2.2.31.2", "id-Gost28147-89-CryptoPro-B-ParamSet"},
    {"1.2.643.2.2.31.3", "id-Gost28147-89-CryptoPro-C-ParamSet"},
    {"1.2.643.2.2.31.4", "id-Gost28147-89-CryptoPro-D-ParamSet"},
    {"1.2.643.7.1.2.5.1.1", "id-tc26-gost-28147-param-Z"},
    {"1.2.643.2.2.35.0", "id-GostR3410-2001-TestParamSet"},
    {"1.2.643.2.2.35.1", "id-GostR3410-2001-CryptoPro-A-ParamSet"},
    {"1.2.643.2.2.35.2", "id-GostR3410-2001-CryptoPro-B-ParamSet"},
    {"1.2.643.2.2.35.3", "id-GostR3410-2001-CryptoPro-C-ParamSet"},
    {"1.2.643.2.2.36.0", "id-GostR3410-2001-CryptoPro-XchA-ParamSet"},
    {"1.2.643.2.2.36.1", "id-GostR3410-2001-CryptoPro-XchB-ParamSet"},
    {"1.2.643.7.1.2.1.1.1", "id-tc26-gost-3410-2012-256-paramSetA"},
    {"1.2.643.7.1.2.1.1.2", "id-tc26-gost-3410-2012-256-paramSetB"},
    {"1.2.643.7.1.2.1.1.3", "id-tc26-gost-3410-2012-256-paramSetC"},
    {"1.2.643.7.1.2.1.1.4", "id-tc26-gost-3410-2012-256-paramSetD"},
    {"1.2.643.7.1.2.1.2.0", "id-tc26-gost-3410-2012-512-paramSetTest"},
    {"1.2.643.7.1.2.1.2.1", "id-tc26-gost-3410-2012-512-paramSetA"},
    {"1.2.643.7.1.2.1.2.2", "id-tc26-gost-3410-2012-512-paramSetB"},
    {"1.2.643.7.1.2.1.2.3", "id-tc26-gost-3410-2012-512-paramSetC"},
};

inline constexpr KnownIdentifier kExtensions[] = {
    {"2.5.29.9", "subjectDirectoryAttributes"},
    {"2.5.29.14", "subjectKeyIdentifier"},
    {"2.5.29.15", "keyUsage"},
    {"2.5.29.16", "privateKeyUsagePeriod"},
    {"2.5.29.17", "subjectAltName"},
    {"2.5.29.18", "issuerAltName"},
    {"2.5.29.19", "basicConstraints"},
    {"2.5.29.20", "cRLNumber"},
    {"2.5.29.21", "reasonCode"},
    {"2.5.29.23", "holdInstructionCode"},
    {"2.5.29.24", "invalidityDate"},
    {"2.5.29.27", "deltaCRLIndicator"},
    {"2.5.29.28", "issuingDistributionPoint"},
    {"2.5.29.29", "certificateIssuer"},
    {"2.5.29.30", "nameConstraints"},
    {"2.5.29.31", "cRLDistributionPoints"},
    {"2.5.29.32", "certificatePolicies"},
    {"2.5.29.33", "policyMappings"},
    {"2.5.29.35", "authorityKeyIdentifier"},
    {"2.5.29.36", "policyConstraints"},
    {"2.5.29.37", "extKeyUsage"},
    {"2.5.29.46", "freshestCRL"},
    {"2.5.29.54", "inhibitAnyPolicy"},
    {"1.3.6.1.5.5.7.1.1", "authorityInfoAccess"},
    {"1.3.6.1.5.5.7.1.2", "biometricInfo"},
    {"1.3.6.1.5.5.7.1.3", "qcStatements"},
    {"1.3.6.1.5.5.7.1.7", "ipAddrBlocks"},
    {"1.3.6.1.5.5.7.1.8", "autonomousSysIds"},
    {"1.3.6.1.5.5.7.1.11", "subjectInfoAccess"},
    {"1.3.6.1.5.5.7.1.12", "logotype"},
    {"1.3.6.1.5.5.7.1.14", "proxyCertInfo"},
    {"1.3.6.1.5.5.7.1.24", "tlsFeature"},
    {"1.3.6.1.5.5.7.48.1.2", "ocspNonce"},
    {"1.3.6.1.5.5.7.48.1.5", "ocspNoCheck"},
    {"1.3.6.1.4.1.11129.2.4.2", "signedCertificateTimestamps"},
    {"1.3.6.1.4.1.11129.2.4.3", "certificateTransparencyPoison"},
    {"1.3.6.1.4.1.311.20.2", "microsoftCertificateTemplateName"},
    {"1.3.6.1.4.1.311.21.1", "microsoftCaVersion"},
    {"1.3.6.1.4.1.311.21.2", "microsoftPreviousCaCertificateHash"},
    {"1.3.6.1.4.1.311.21.7", "microsoftCertificateTemplate"},
    {"1.3.6.1.4.1.311.21.10", "microsoftApplicationPolicies"},
    {"1.2.840.113549.1.9.15", "smimeCapabilities"},
    {"1.2.840.113533.7.65.0", "entrustVersion"},
    {"2.16.840.1.113730.1.1", "netscapeCertType"},
    {"2.16.840.1.113730.1.2", "netscapeBaseUrl"},
    {"2.16.840.1.113730.1.3", "netscapeRevocationUrl"},
    {"2.16.840.1.113730.1.4", "netscapeCaRevocationUrl"},
    {"2.16.840.1.113730.1.8", "netscapeCaPolicyUrl"},
    {"2.16.840.1.113730.1.13", "netscapeComment"},
    {"1.2.643.100.111", "subjectSignTool"},
    {"1.2.643.100.112", "issuerSignTool"},
    {"1.2.643.100.114", "identificationKind"},
    {"1.2.643.3.123.3.1", "ardekKeyIdentifier"},
};

// What stands inside extensions.
inline constexpr KnownIdentifier kExtensionValues[] = {
    {"2.5.29.32.0", "anyPolicy"},
    {"2.23.140.1.1", "extended-validation"},
    {"2.23.140.1.2.1", "domain-validated"},
    {"2.23.140.1.2.2", "organization-validated"},
    {"2.23.140.1.2.3", "individual-validated"},
    {"2.23.140.1.3", "extended-validation-codesigning"},
    {"2.23.140.1.4.1", "code-signing-requirements"},
    {"2.5.29.37.0", "anyExtendedKeyUsage"},
    {"1.3.6.1.5.5.7.2.1", "cps"},
    {"1.3.6.1.5.5.7.2.2", "userNotice"},
    {"1.3.6.1.5.5.7.3.1", "serverAuth"},
    {"1.3.6.1.5.5.7.3.2", "clientAuth"},
    {"1.3.6.1.5.5.7.3.3", "codeSigning"},
    {"1.3.6.1.5.5.7.3.4", "emailProtection"},
    {"1.3.6.1.5.5.7.3.5", "ipsecEndSystem"},
    {"1.3.6.1.5.5.7.3.6", "ipsecTunnel"},
    {"1.3.6.1.5.5.7.3.7", "ipsecUser"},
    {"1.3.6.1.5.5.7.3.8", "timeStamping"},
    {"1.3.6.1.5.5.7.3.9", "OCSPSigning"},
    {"1.3.6.1.5.5.7.3.14", "eapOverLAN"},
    {"1.3.6.1.5.5.7.3.17", "ipsecIKE"},
    {"1.3.6.1.5.5.7.3.36", "documentSigning"},
    {"1.3.6.1.5.2.3.4", "pkinitClientAuth"},
    {"1.3.6.1.5.2.3.5", "pkinitKdc"},
    {"1.3.6.1.4.1.311.10.3.3", "microsoftServerGatedCrypto"},
    {"1.3.6.1.4.1.311.10.3.4", "microsoftEncryptedFileSystem"},
    {"1.3.6.1.4.1.311.10.3.12", "microsoftDocumentSigning"},
    {"1.3.6.1.4.1.311.20.2.2", "microsoftSmartcardLogon"},
    {"2.16.840.1.113730.4.1", "netscapeServerGatedCrypto"},
    {"1.3.6.1.5.5.7.48.1", "ocsp"},
    {"1.3.6.1.5.5.7.48.2", "caIssuers"},
    {"1.3.6.1.5.5.7.48.3", "timeStamping"},
    {"1.3.6.1.5.5.7.48.5", "caRepository"},
    {"1.3.6.1.4.1.311.20.2.3", "userPrincipalName"},
    {"1.3.6.1.5.2.2", "krb5PrincipalName"},
    {"1.3.6.1.5.5.7.8.3", "permanentIdentifier"},
    {"1.3.6.1.5.5.7.8.4", "hardwareModuleName"},
    {"1.3.6.1.5.5.7.8.5", "xmppAddr"},
    {"1.3.6.1.5.5.7.8.7", "srvName"},
    {"1.3.6.1.5.5.7.8.9", "smtpUTF8Mailbox"},
    {"1.3.6.1.5.5.7.9.1", "dateOfBirth"},
    {"1.3.6.1.5.5.7.9.2", "placeOfBirth"},
    {"1.3.6.1.5.5.7.9.3", "gender"},
    {"1.3.6.1.5.5.7.9.4", "countryOfCitizenship"},
    {"1.3.6.1.5.5.7.9.5", "countryOfResidence"},
    {"1.2.643.100.113.1", "classSignToolKC1"},
    {"1.2.643.100.113.2", "classSignToolKC2"},
    {"1.2.643.100.113.3", "classSignToolKC3"},
    {"1.2.643.100.113.4", "classSignToolKB1"},
    {"1.2.643.100.113.5", "classSignToolKB2"},
    {"1.2.643.100.113.6", "classSignToolKA1"},
};

template <size_t... sizes>
constexpr auto SortedIdentifiers(const KnownIdentifier (&... tables)[sizes]) {
  std::array<KnownIdentifier, (sizes + ...)> sorted{};
  auto end = sorted.begin();
  ((end = std::copy(tables, tables + sizes, end)), ...);
  std::sort(sorted.begin(), sorted.end(), [](const auto& one, const auto& other) { return one.dotted < other.dotted; });
  return sorted;
}

inline constexpr auto kKnownAttributeTypes = SortedIdentifiers(kAttributeTypes);
inline constexpr auto kKnownIdentifiers =
    SortedIdentifiers(kAttributeTypes, kAlgorithms, kParameterSets, kExtensions, kExtensionValues);

template <size_t size>
constexpr std::string_view NameIn(const std::array<KnownIdentifier, size>& sorted, std::string_view dotted) {
  const auto found = std::ranges::lower_bound(sorted, dotted, {}, &KnownIdentifier::dotted);
  return found == sorted.end() || found->dotted != dotted ? std::string_view() : found->name;
}

}  // namespace detail

// "keyUsage" for "2.5.29.15", "CN" for "2.5.4.3". Empty when the identifier has no name here.
constexpr std::string_view KnownName(std::string_view dotted) {
  return detail::NameIn(detail::kKnownIdentifiers, dotted);
}
inline std::string_view KnownName(const ObjectIdentifier& identifier) { return KnownName(identifier.Text()); }

}  // namespace tessel
