#include "x509/certificate.h"

#include <array>
#include <cstring>

#include "engine/buffer.h"
#include "engine/codec.h"
#include "engine/encoder.h"
#include "engine/lists.h"
#include "engine/nodes.h"
#include "engine/path.h"
#include "engine/primitives.h"
#include "tessel/extension_lists.hpp"
#include "tessel/nodes.hpp"
#include "values/time.h"
#include "x509/algorithms.h"
#include "x509/name_text.h"

using namespace tessel;

namespace tessel {
namespace {

constexpr Path<&Certificate::tbsCertificate> kToBeSignedPart;
constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::version> kVersion;
constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::signature> kInnerSignatureAlgorithm;
constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::validity, &Validity::notBefore> kNotBefore;
constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::validity, &Validity::notAfter> kNotAfter;
constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::subject> kSubject;
constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::subjectPublicKeyInfo, &SubjectPublicKeyInfo::algorithm>
    kPublicKeyAlgorithm;
constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::issuerUniqueID> kIssuerUniqueId;
constexpr Path<&Certificate::tbsCertificate, &TbsCertificate::subjectUniqueID> kSubjectUniqueId;
constexpr Path<&Certificate::signatureAlgorithm> kOuterSignatureAlgorithm;
constexpr Path<&Certificate::signatureValue> kSignatureValue;

// The slot of a member beside the to-be-signed part. It is unreachable also when that part is absent.
template <class Member, class Handle>
auto InSigned(const Member& member, Handle* certificate, Caller at = {}) {
  auto slot = member.In(certificate, at);
  TbsCertificate* part = nullptr;
  const Status status = kToBeSignedPart.In(certificate, at).Load(part);
  return status.Failed() ? decltype(slot)(status, at) : slot;
}

// Null octets remove the member.
Status SetUniqueId(const Slot<Asn1BitString>& slot, const uint8_t* octets, uint32_t size, uint8_t unused) {
  return octets == nullptr ? Remove(slot, kBitString) : SetBits(slot, octets, size, unused);
}

// Sets the algorithm in the to-be-signed part and the one beside the signature.
Status SetSignatureAlgorithms(Certificate* certificate, const uint8_t* oid, Octets parameters, Caller at = {}) {
  return SetAlgorithms(kInnerSignatureAlgorithm.In(certificate, at), kOuterSignatureAlgorithm.In(certificate, at), oid,
                       parameters);
}

Status SetGostSignatureAlgorithms(Certificate* certificate, uint32_t id, uint8_t mode, const GostParameterSets& sets,
                                  Caller at = {}) {
  const Slot<AlgorithmIdentifier> inner = kInnerSignatureAlgorithm.In(certificate, at);
  TRY(inner.Unreachable());
  EncodedGostAlgorithm algorithm;
  TRY(algorithm.Make(id, mode, sets, at));
  return SetSignatureAlgorithms(certificate, algorithm.Oid(), algorithm.Parameters(), at);
}

// Reads the OCTET STRING that the subject's public key holds, when that has no more than `largest` octets.
Status GetWrappedKey(const Certificate* certificate, size_t largest, uint8_t* buffer, uint32_t* length,
                     Caller at = {}) {
  Asn1BitString* key = nullptr;
  TRY(kCertificatePublicKey.In(certificate, at).Load(key));
  const Octets encoding = ContentOf(*key);
  if (encoding.empty()) return Fail(TESSEL_ABSENT, at);
  if (encoding.size() > largest) return Fail(TESSEL_INTERNAL_BUFFER_TOO_SMALL, at);
  return DecodeContent(kOctetString, encoding, buffer, length, at);
}

}  // namespace

Status FindCertificateExtension(const Certificate* certificate, Octets oid, Octets& value, Caller at) {
  if (certificate == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  // DEVIATES: without a to-be-signed part other functions say TESSEL_ABSENT: programs that look for an extension test
  // for one status.
  if (certificate->tbsCertificate == nullptr) return Fail(TESSEL_NOT_FOUND, at);
  return FindExtensionValue(kCertificateExtensions.In(certificate, at), oid, value);
}

}  // namespace tessel

constinit const Asn1Item CertificateItem = kCertificate;
constinit const Asn1Item CertificatesItem = kCertificates;

uint32_t TESSEL_CALL DecodeCertificate(const uint8_t* data, uint32_t size, Certificate** certificate) {
  return Decode(kCertificate, data, size, certificate);
}

uint32_t TESSEL_CALL EncodeCertificate(const Certificate* certificate, uint8_t* buffer, uint32_t* length) {
  return EncodeObject(kCertificate, certificate, buffer, length);
}

uint32_t TESSEL_CALL CreateCertificate(Certificate** certificate) {
  return Create(kCertificate, Leaves::kEmpty, certificate);
}

uint32_t TESSEL_CALL CreateCertificateCopy(const Certificate* source, Certificate** copy) {
  return Copy(kCertificate, source, copy);
}

uint32_t TESSEL_CALL FreeCertificate(Certificate* certificate) { return Free(kCertificate, certificate); }

uint32_t TESSEL_CALL DecodeCertificates(const uint8_t* data, uint32_t size, Certificates** certificates) {
  return Decode(kCertificates, data, size, certificates);
}

uint32_t TESSEL_CALL EncodeCertificates(const Certificates* certificates, uint8_t* buffer, uint32_t* length) {
  return EncodeObject(kCertificates, certificates, buffer, length);
}

uint32_t TESSEL_CALL CreateCertificates(Certificates** certificates) {
  return Create(kCertificates, Leaves::kAbsent, certificates);
}

uint32_t TESSEL_CALL CreateCertificatesCopy(const Certificates* source, Certificates** copy) {
  return Copy(kCertificates, source, copy);
}

uint32_t TESSEL_CALL FreeCertificates(Certificates* certificates) { return Free(kCertificates, certificates); }

uint32_t TESSEL_CALL AddCertificateToCertificates(Certificates* certificates, Certificate* certificate) {
  return Add(certificates, certificate);
}

uint32_t TESSEL_CALL GetCertificatesCount(const Certificates* certificates, uint32_t* count) {
  return GetCount(certificates, count);
}

uint32_t TESSEL_CALL GetCertificatesCertificate(const Certificates* certificates, uint32_t index,
                                                Certificate** certificate) {
  return GetElement(certificates, index, certificate);
}

uint32_t TESSEL_CALL GetCertificateToBeSignedPart(const Certificate* certificate, uint8_t* buffer, uint32_t* length) {
  // DEVIATES: the octets are made anew, and of BER need not be those that were signed (RFC 5280, 4.1.1.3), for the tree
  // can be changed.
  return EncodeMember(kToBeSignedPart.In(certificate), kTbsCertificate, buffer, length);
}

// Members.

uint32_t TESSEL_CALL GetCertificateVersion(const Certificate* certificate, int32_t* version) {
  return GetNumber(kVersion.In(certificate), version);
}

uint32_t TESSEL_CALL SetCertificateVersion(Certificate* certificate, uint32_t version) {
  constexpr uint32_t kLargestVersion = 2;
  if (version > kLargestVersion) return Fail(TESSEL_INVALID_ARGUMENT);
  return SetNumber(kVersion.In(certificate), static_cast<int32_t>(version));
}

uint32_t TESSEL_CALL GetCertificateSerialNumber(const Certificate* certificate, uint8_t* buffer, uint32_t* length) {
  return GetContent(kCertificateSerialNumber.In(certificate), buffer, length);
}

uint32_t TESSEL_CALL SetCertificateSerialNumber(Certificate* certificate, const uint8_t* serial, uint32_t size) {
  return SetContent(kCertificateSerialNumber.In(certificate), TESSEL_KIND_INTEGER, serial, size);
}

const uint8_t* TESSEL_CALL ptr_GetCertificateSerialNumber(const Certificate* certificate, uint32_t* length) {
  const Asn1Value* serial = kCertificateSerialNumber.In(certificate).OrNull();
  if (serial == nullptr || length == nullptr) return nullptr;
  *length = serial->length;
  return serial->data;
}

uint32_t TESSEL_CALL GetCertificateIssuer(Certificate* certificate, X509Name** name) {
  return GetName(kCertificateIssuer.In(certificate), name);
}

uint32_t TESSEL_CALL GetCertificateSubject(Certificate* certificate, X509Name** name) {
  return GetName(kSubject.In(certificate), name);
}

uint32_t TESSEL_CALL SetCertificateIssuer(Certificate* certificate, const X509Name* name) {
  return SetName(kCertificateIssuer.In(certificate), name);
}

uint32_t TESSEL_CALL SetCertificateSubject(Certificate* certificate, const X509Name* name) {
  return SetName(kSubject.In(certificate), name);
}

uint32_t TESSEL_CALL SetCertificateIssuer_i(Certificate* certificate, X509Name* name, uint32_t copies) {
  return SetName(kCertificateIssuer.In(certificate), name, copies != 0 ? Ownership::kCopies : Ownership::kTakes);
}

uint32_t TESSEL_CALL SetCertificateSubject_i(Certificate* certificate, X509Name* name, uint32_t copies) {
  return SetName(kSubject.In(certificate), name, copies != 0 ? Ownership::kCopies : Ownership::kTakes);
}

uint32_t TESSEL_CALL GetCertificateValidNotBefore(const Certificate* certificate, LibraryTime* time) {
  return GetTime(kNotBefore.In(certificate), time);
}

uint32_t TESSEL_CALL GetCertificateValidNotAfter(const Certificate* certificate, LibraryTime* time) {
  return GetTime(kNotAfter.In(certificate), time);
}

uint32_t TESSEL_CALL SetCertificateValidNotBefore(Certificate* certificate, const LibraryTime* time) {
  return SetTime(kNotBefore.In(certificate), time);
}

uint32_t TESSEL_CALL SetCertificateValidNotAfter(Certificate* certificate, const LibraryTime* time) {
  return SetTime(kNotAfter.In(certificate), time);
}

uint32_t TESSEL_CALL GetCertificateIssuerUniqueId(const Certificate* certificate, uint8_t* buffer, uint32_t* length,
                                                  uint8_t* unused) {
  return GetBits(kIssuerUniqueId.In(certificate), buffer, length, unused);
}

uint32_t TESSEL_CALL GetCertificateSubjectUniqueId(const Certificate* certificate, uint8_t* buffer, uint32_t* length,
                                                   uint8_t* unused) {
  return GetBits(kSubjectUniqueId.In(certificate), buffer, length, unused);
}

uint32_t TESSEL_CALL SetCertificateIssuerUniqueId(Certificate* certificate, const uint8_t* octets, uint32_t size,
                                                  uint8_t unused) {
  return SetUniqueId(kIssuerUniqueId.In(certificate), octets, size, unused);
}

uint32_t TESSEL_CALL SetCertificateSubjectUniqueId(Certificate* certificate, const uint8_t* octets, uint32_t size,
                                                   uint8_t unused) {
  return SetUniqueId(kSubjectUniqueId.In(certificate), octets, size, unused);
}

uint32_t TESSEL_CALL GetCertificatePublicKey(const Certificate* certificate, uint8_t* buffer, uint32_t* length) {
  return GetBits(kCertificatePublicKey.In(certificate), buffer, length);
}

uint32_t TESSEL_CALL SetCertificatePublicKey(Certificate* certificate, const uint8_t* key, uint32_t size) {
  return SetBits(kCertificatePublicKey.In(certificate), key, size);
}

uint32_t TESSEL_CALL GetCertificatePublicKeyAlgorithmOidAndParameters(const Certificate* certificate, uint8_t* oid,
                                                                      uint32_t* oidLength, uint8_t* parameters,
                                                                      uint32_t* parametersLength) {
  return GetAlgorithm(kPublicKeyAlgorithm.In(certificate), {oid, oidLength, parameters, parametersLength});
}

uint32_t TESSEL_CALL SetCertificatePublicKeyAlgorithmOidAndParameters(Certificate* certificate, const uint8_t* oid,
                                                                      const uint8_t* parameters,
                                                                      uint32_t parametersSize) {
  return SetAlgorithm(kPublicKeyAlgorithm.In(certificate), oid, {parameters, parametersSize});
}

uint32_t TESSEL_CALL SetCertificatePublicKeyAlgorithmIdAndParameters(Certificate* certificate, uint32_t algorithm,
                                                                     const uint8_t* parameters,
                                                                     uint32_t parametersSize) {
  return SetAlgorithm(kPublicKeyAlgorithm.In(certificate), algorithm, {parameters, parametersSize});
}

uint32_t TESSEL_CALL GetCertificateSignatureAlgorithmOidAndParameters(const Certificate* certificate, uint8_t* oid,
                                                                      uint32_t* oidLength, uint8_t* parameters,
                                                                      uint32_t* parametersLength) {
  return GetAlgorithm(kInnerSignatureAlgorithm.In(certificate), {oid, oidLength, parameters, parametersLength});
}

uint32_t TESSEL_CALL SetCertificateSignatureAlgorithmOidAndParameters(Certificate* certificate, const uint8_t* oid,
                                                                      const uint8_t* parameters,
                                                                      uint32_t parametersSize) {
  return SetSignatureAlgorithms(certificate, oid, {parameters, parametersSize});
}

uint32_t TESSEL_CALL GetCertificateSignature(const Certificate* certificate, uint8_t* buffer, uint32_t* length) {
  return GetBits(InSigned(kSignatureValue, certificate), buffer, length);
}

uint32_t TESSEL_CALL SetCertificateSignature(Certificate* certificate, const uint8_t* signature, uint32_t size) {
  return SetBits(InSigned(kSignatureValue, certificate), signature, size);
}

// GOST R 34.10 keys and signatures.

uint32_t TESSEL_CALL SetCertificateGostR34102001SignatureAlgorithmID(Certificate* certificate, uint32_t algorithm,
                                                                     uint8_t mode) {
  if (mode != kNullParameters && mode != kNoParameters) return Fail(TESSEL_INVALID_ARGUMENT);
  return SetGostSignatureAlgorithms(certificate, algorithm, mode, {});
}

uint32_t TESSEL_CALL SetCertificateGostR34102001SignatureAlgorithmIDAndParameters(Certificate* certificate,
                                                                                  uint32_t algorithm, uint8_t mode,
                                                                                  uint32_t publicKeySet,
                                                                                  uint32_t digestSet,
                                                                                  uint32_t encryptionSet) {
  return SetGostSignatureAlgorithms(certificate, algorithm, mode, {publicKeySet, digestSet, encryptionSet});
}

uint32_t TESSEL_CALL SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters(Certificate* certificate,
                                                                                  uint32_t algorithm, uint8_t mode,
                                                                                  uint32_t publicKeySet,
                                                                                  uint32_t digestSet,
                                                                                  uint32_t encryptionSet) {
  return SetGostAlgorithm(kPublicKeyAlgorithm.In(certificate), algorithm, mode,
                          {publicKeySet, digestSet, encryptionSet});
}

uint32_t TESSEL_CALL SetCertificateGostR34102001PublicKey(Certificate* certificate, const uint8_t* key, uint32_t size) {
  if (key == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const Asn1Value octets = Borrow(TESSEL_KIND_OCTET_STRING, {key, size});
  std::array<uint8_t, 256> wrapped;
  uint32_t length = wrapped.size();
  Status status = Encode(kOctetString, &octets, wrapped.data(), &length);
  // The only failure that is possible here is a key too large for `wrapped`.
  if (status.Failed()) return Fail(TESSEL_INTERNAL_BUFFER_TOO_SMALL);
  return SetBits(kCertificatePublicKey.In(certificate), wrapped.data(), length);
}

uint32_t TESSEL_CALL GetCertificatePublicKeyGostR3410(const Certificate* certificate, uint8_t* buffer,
                                                      uint32_t* length) {
  constexpr size_t kLargestKey = 270;
  return GetWrappedKey(certificate, kLargestKey, buffer, length);
}

uint32_t TESSEL_CALL GetCertificateDecodedPublicKeyGostR34102012(const Certificate* certificate, uint8_t* buffer,
                                                                 uint32_t* length, uint32_t* publicKeySet,
                                                                 uint32_t* digestSet, uint32_t* encryptionSet) {
  constexpr size_t kLargestKey = 168;
  if (AnyNull(length, publicKeySet, digestSet, encryptionSet)) return Fail(TESSEL_INVALID_ARGUMENT);
  GostParameterSets sets;
  TRY(GetGostParameterSets(kPublicKeyAlgorithm.In(certificate), sets));
  *publicKeySet = sets.publicKey;
  *digestSet = sets.digest;
  *encryptionSet = sets.encryption;
  return GetWrappedKey(certificate, kLargestKey, buffer, length);
}

// Extensions.

uint32_t TESSEL_CALL GetCertificateExtensions(Certificate* certificate, X509ExtensionsSlot** slot) {
  if (slot == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const Slot<X509Extensions> extensions = kCertificateExtensions.In(certificate);
  TRY(extensions.Unreachable());
  *slot = PublicSlot(extensions.Member());
  return Status();
}

uint32_t TESSEL_CALL SetCertificateExtensions(Certificate* certificate, const X509ExtensionsSlot* slot) {
  return Store<X509Extensions>(kCertificateExtensions.In(certificate), kX509Extensions, MemberOf(slot).OrNull());
}

uint32_t TESSEL_CALL GetCertificateExtensionValue(const Certificate* certificate, const uint8_t* oid, uint8_t* buffer,
                                                  uint32_t* length) {
  if (oid == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  Octets value;
  TRY(FindCertificateExtension(certificate, OidContent(oid), value));
  return Deliver(value, buffer, length);
}

uint32_t TESSEL_CALL SetCertificateExtensionCrlDistributionPoints(Certificate* certificate, const char* uri) {
  constexpr size_t kLargestValue = 2048;
  if (uri == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const Slot<X509Extensions> extensions = kCertificateExtensions.In(certificate);
  TRY(extensions.Unreachable());
  // The size is checked before it goes into a node, because the length of a node has 32 bits.
  const size_t size = std::strlen(uri);
  // DEVIATES: the status tells of a buffer, though the caller has none: programs test for it.
  if (size > kLargestValue) return Fail(TESSEL_BUFFER_TOO_SMALL);

  Asn1Value text = Borrow(TESSEL_KIND_IA5_STRING, {reinterpret_cast<const uint8_t*>(uri), size});
  X509GeneralName generalName{{X509GeneralName::uniformResourceIdentifier, &text}};
  BorrowedList<X509GeneralNames> fullName(&generalName);
  DistributionPointName name{{DistributionPointName::fullName, fullName.Node()}};
  DistributionPoint point{&name, nullptr, nullptr};
  BorrowedList<ExtensionCrlDistributionPoints> points(&point);

  Encoding value;
  TRY(value.Make(kCrlDistributionPoints, points.Node()));
  if (value.Get().size() > kLargestValue) return Fail(TESSEL_BUFFER_TOO_SMALL);
  return ReplaceExtension(extensions, kCrlDistributionPointsOid, value.Get());
}

uint32_t TESSEL_CALL GetCertificateCN(const Certificate* certificate, char* buffer, uint32_t* length) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const ReadSlot<NameChoice> subject = kSubject.In(certificate);
  TRY(subject.Unreachable());
  NameText text;
  if (const Asn1Value* serial = kCertificateSerialNumber.In(certificate).OrNull(); serial != nullptr) {
    TRY(text.AppendSerialNumber(ContentOf(*serial)));
  }
  TRY(text.AppendCommonNames(NameOrNull(subject)));
  return text.DeliverTo(buffer, length);
}
