#include "tessel/key_identifiers.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "engine/buffer.h"
#include "engine/codec.h"
#include "engine/encoder.h"
#include "engine/nodes.h"
#include "engine/primitives.h"
#include "engine/tree_owner.h"
#include "tessel/extension_values.hpp"
#include "tessel/nodes.hpp"
#include "tessel/text.h"
#include "values/sha1.h"
#include "values/text.h"
#include "x509/certificate.h"
#include "x509/extensions.h"
#include "x509/names.h"

using namespace tessel;

namespace tessel {
namespace {

constexpr CountedOid kArdekKeyIdentifierOid = Oid("1.2.643.3.123.3.1");

// DEVIATES: larger values are refused, which no RFC asks for: callers know the status.
constexpr size_t kLargestExtensionValue = 1024;
constexpr size_t kLargestHashedKey = 512;
constexpr size_t kLargestSerialNumber = 64;
constexpr size_t kLargestArdekIdentifier = 138;

// Finds the value of a key identifier extension. `tooLarge` is the status of one above kLargestExtensionValue.
Status FindIdentifier(const Certificate* certificate, const CountedOid& oid, TesselStatus tooLarge, Octets& value,
                      Caller at = {}) {
  TRY(FindCertificateExtension(certificate, oid.Content(), value, at));
  return value.size() > kLargestExtensionValue ? Fail(tooLarge, at) : Status();
}

// Encodes a tree and stores it as the value of an extension.
Status ReplaceValue(const Slot<X509Extensions>& extensions, const CountedOid& oid, const Asn1Item& item,
                    const void* node) {
  TRY(extensions.Unreachable());
  Encoding value;
  TRY(value.Make(item, node));
  return ReplaceExtension(extensions, oid, value.Get());
}

// Does what GetCertificateSubjectKeyIdentifier does.
Status ReadKeyIdentifier(const Certificate* certificate, TesselStatus tooLarge, uint8_t* buffer, uint32_t* length,
                         Caller at = {}) {
  Octets value;
  TRY(FindIdentifier(certificate, kSubjectKeyIdentifierOid, tooLarge, value, at));
  return DecodeContent(kOctetString, value, buffer, length, at);
}

// The subject key identifier of a certificate. TESSEL_INTERNAL_BUFFER_TOO_SMALL: it has more than 32 octets.
struct KeyIdentifier {
  std::array<uint8_t, 32> octets;
  uint32_t length = static_cast<uint32_t>(octets.size());

  Status Read(const Certificate* certificate, Caller at = {}) {
    Status status = ReadKeyIdentifier(certificate, TESSEL_INTERNAL_BUFFER_TOO_SMALL, octets.data(), &length, at);
    return status == TESSEL_BUFFER_TOO_SMALL ? Fail(TESSEL_INTERNAL_BUFFER_TOO_SMALL, at) : status;
  }
  [[nodiscard]] Octets Get() const { return Octets(octets).first(length); }
};

bool IsGiven(const uint8_t* octets, uint32_t size) { return octets != nullptr && size != 0; }

}  // namespace
}  // namespace tessel

uint32_t TESSEL_CALL GetCertificateSubjectKeyIdentifier(const Certificate* certificate, uint8_t* buffer,
                                                        uint32_t* length) {
  // DEVIATES: the status of a value that is too large is another one here: programs test for it.
  return ReadKeyIdentifier(certificate, TESSEL_OUT_OF_MEMORY, buffer, length);
}

uint32_t TESSEL_CALL SetCertificateSubjectKeyIdentifier(Certificate* certificate) {
  Asn1BitString* key = nullptr;
  TRY(kCertificatePublicKey.In(certificate).Load(key));
  const Octets octets = ContentOf(*key);
  if (octets.empty()) return Fail(TESSEL_ABSENT);
  if (octets.size() > kLargestHashedKey) return Fail(TESSEL_INTERNAL_BUFFER_TOO_SMALL);
  const Sha1Digest digest = Sha1(octets);
  const Asn1Value identifier = Borrow(TESSEL_KIND_OCTET_STRING, digest);
  return ReplaceValue(kCertificateExtensions.In(certificate), kSubjectKeyIdentifierOid, kOctetString, &identifier);
}

uint32_t TESSEL_CALL GetCertificateAuthorityKeyIdentifier(const Certificate* certificate, uint8_t* keyIdentifier,
                                                          uint32_t* keyIdentifierLength, X509GeneralNames** names,
                                                          uint8_t* serial, uint32_t* serialLength) {
  if (names == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  *names = nullptr;
  Octets value;
  TRY(FindIdentifier(certificate, kAuthorityKeyIdentifierOid, TESSEL_INTERNAL_BUFFER_TOO_SMALL, value));
  return DecodeExtensionAuthorityKeyIdentifier(value.data(), static_cast<uint32_t>(value.size()), keyIdentifier,
                                               keyIdentifierLength, names, serial, serialLength);
}

uint32_t TESSEL_CALL GetCertificateAuthorityKeyIdentifier2(const Certificate* certificate, uint8_t* keyIdentifier,
                                                           uint32_t* keyIdentifierLength, X509Name** name,
                                                           uint8_t* serial, uint32_t* serialLength) {
  if (name == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  *name = nullptr;
  TreeOwner<X509GeneralNames> names(kX509GeneralNames);
  const uint32_t status = GetCertificateAuthorityKeyIdentifier(certificate, keyIdentifier, keyIdentifierLength,
                                                               names.Out(), serial, serialLength);
  if (status != TESSEL_OK || names.Get() == nullptr) return status;
  return GetX509NameFromGeneralNames(names.Get(), name);
}

uint32_t TESSEL_CALL SetCertificateAuthorityKeyIdentifier2(Certificate* certificate, const uint8_t* keyIdentifier,
                                                           uint32_t keyIdentifierSize, const X509Name* issuer,
                                                           const uint8_t* serial, uint32_t serialSize) {
  const bool pointsToKey = IsGiven(keyIdentifier, keyIdentifierSize);
  const bool pointsToCertificate = issuer != nullptr && IsGiven(serial, serialSize);
  if (certificate == nullptr || (!pointsToKey && !pointsToCertificate)) return Fail(TESSEL_INVALID_ARGUMENT);

  Asn1Value key = Borrow(TESSEL_KIND_OCTET_STRING, {keyIdentifier, keyIdentifierSize});
  Asn1Value number = Borrow(TESSEL_KIND_INTEGER, {serial, serialSize});
  Encoding encodedIssuer;
  Asn1Any directoryName{};
  if (issuer != nullptr) {
    TRY(encodedIssuer.Make(kX509Name, issuer));
    directoryName = BorrowOpenValue(encodedIssuer.Get());
  }
  X509GeneralName generalName{{X509GeneralName::directoryName, &directoryName}};
  BorrowedList<X509GeneralNames> names(&generalName);
  const AuthorityKeyIdentifier identifier{NullIfEmpty(key), issuer == nullptr ? nullptr : names.Node(),
                                          NullIfEmpty(number)};
  return ReplaceValue(kCertificateExtensions.In(certificate), kAuthorityKeyIdentifierOid, kAuthorityKeyIdentifier,
                      &identifier);
}

uint32_t TESSEL_CALL SetCertificateAuthorityKeyIdentifier(Certificate* certificate, const Certificate* issuer) {
  if (certificate == nullptr || issuer == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  KeyIdentifier key;
  Status read = key.Read(issuer);
  // After any other failure the issuer counts as one without a key identifier.
  if (read == TESSEL_OUT_OF_MEMORY) return read;
  if (read.Failed()) key.length = 0;
  Asn1Value* serial = nullptr;
  TRY(kCertificateSerialNumber.In(issuer).Load(serial));
  if (serial->length > kLargestSerialNumber) return Fail(TESSEL_INTERNAL_BUFFER_TOO_SMALL);
  const X509Name* name = NameOrNull(kCertificateIssuer.In(issuer));
  return SetCertificateAuthorityKeyIdentifier2(certificate, key.octets.data(), key.length, name, serial->data,
                                               serial->length);
}

uint32_t TESSEL_CALL IsCertificateCorrespondToAuthKeyIdent(const Certificate* certificate, const uint8_t* keyIdentifier,
                                                           uint32_t keyIdentifierSize, const X509Name* issuer,
                                                           const uint8_t* serial, uint32_t serialSize) {
  const bool pointsToKey = IsGiven(keyIdentifier, keyIdentifierSize);
  if (certificate == nullptr || (!pointsToKey && issuer == nullptr && !IsGiven(serial, serialSize))) {
    return Fail(TESSEL_INVALID_ARGUMENT);
  }
  // DEVIATES: a key identifier that is given is all that is compared, issuer and serial number are not: programs find
  // issuers so.
  if (pointsToKey) {
    KeyIdentifier key;
    TRY(key.Read(certificate));
    return std::ranges::equal(key.Get(), Octets(keyIdentifier, keyIdentifierSize)) ? Status() : Fail(TESSEL_DIFFERENT);
  }
  const Asn1Value* number = kCertificateSerialNumber.In(certificate).OrNull();
  if (number == nullptr || number->data == nullptr) return Fail(TESSEL_INVALID_CONTENT);
  const Octets given(serial, serial == nullptr ? 0 : serialSize);
  if (!std::ranges::equal(ContentOf(*number), given)) return Fail(TESSEL_DIFFERENT);
  const X509Name* name = NameOrNull(kCertificateIssuer.In(certificate));
  return name == nullptr ? Fail(TESSEL_ABSENT) : CompareX509Names(name, issuer);
}

uint32_t TESSEL_CALL SetCertificateArdekKeyIdentifier(Certificate* certificate, const char* text) {
  if (text == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  std::array<char, kLargestArdekIdentifier> utf8;
  uint32_t length = utf8.size();
  const uint32_t converted = ConvertAnsiToUTF8(text, utf8.data(), &length);
  if (converted == TESSEL_BUFFER_TOO_SMALL) return Fail(TESSEL_INTERNAL_BUFFER_TOO_SMALL);
  if (converted != TESSEL_OK) return converted;
  const Asn1Value string = Borrow(TESSEL_KIND_UTF8_STRING, {reinterpret_cast<const uint8_t*>(utf8.data()), length});
  uint32_t encodedLength = 0;
  TRY(MeasureTree(kUtf8String, &string, encodedLength));
  if (encodedLength > kLargestArdekIdentifier) return Fail(TESSEL_INTERNAL_BUFFER_TOO_SMALL);
  return ReplaceValue(kCertificateExtensions.In(certificate), kArdekKeyIdentifierOid, kUtf8String, &string);
}

uint32_t TESSEL_CALL GetArdekIdentifierFromCertificate(const Certificate* certificate, char* buffer, uint32_t* length) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  Octets value;
  TRY(FindCertificateExtension(certificate, kArdekKeyIdentifierOid.Content(), value));
  TreeOwner string(kUtf8String);
  TRY(Decode(kUtf8String, value.data(), static_cast<uint32_t>(value.size()), string.Out()));
  Octets utf8 = ContentOf(*string.Get());
  // DEVIATES: the length that is asked for is that of UTF-8, and the text is shorter: programs bring the room that they
  // are told.
  TRY(Offer(utf8.size(), buffer, length));
  if (buffer == nullptr) return Status();
  *length = 0;
  for (uint8_t ansi = 0; TakeAnsi(utf8, AnsiRepertoire::kAll, ansi);) buffer[(*length)++] = static_cast<char>(ansi);
  return Status();
}
