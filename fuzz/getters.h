// Calls every function that reads an object of a type. What a function writes goes into memory that is just as large as
// the library was told.
#pragma once

#include <optional>

#include "input.h"
#include "tessel/tessel.h"

namespace fuzz {

// What read(buffer, length) delivers, asked in all the ways of the caller-buffer convention; nothing when it fails.
// What is delivered has the length that was told, unless it is a text, whose NUL may not count any more then.
template <class Read>
std::optional<Bytes> Fetch(Read read, bool isText = false) {
  uint32_t needed = 0;
  if (read(static_cast<uint8_t*>(nullptr), &needed) != TESSEL_OK) return std::nullopt;
  if (needed != 0) {
    Bytes small(needed - 1 + (needed == 1));
    uint32_t length = needed - 1;
    Require(read(small.data(), &length) == TESSEL_BUFFER_TOO_SMALL && length == needed);
  }
  Bytes octets(needed + (needed == 0));
  uint32_t length = needed;
  Require(read(octets.data(), &length) == TESSEL_OK && (length == needed || (isText && length < needed)));
  octets.resize(length);
  return octets;
}

// The same for a text.
template <class Read>
std::optional<Bytes> FetchText(Read read) {
  return Fetch([&](uint8_t* buffer, uint32_t* length) { return read(reinterpret_cast<char*>(buffer), length); }, true);
}

// What GetAsn1ObjectInfo tells.
struct Element {
  uint8_t tagClass = 0;
  uint8_t constructed = 0;
  uint32_t tagNumber = 0;
  uint32_t contentLength = 0;
  uint32_t indefinite = 0;
  uint32_t headerLength = 0;
  bool operator==(const Element&) const = default;
};
uint32_t ReadHeader(Octets octets, Element& element);

// What the type's own encode function writes. It may know the size of a decoded object without counting.
template <class Node>
void Encode(const Node* object, uint32_t(TESSEL_CALL* encode)(const Node*, uint8_t*, uint32_t*)) {
  Fetch([&](uint8_t* buffer, uint32_t* length) { return encode(object, buffer, length); });
}

// A node of a primitive type, or a list of them.
void ReadNode(const Asn1Item& item, const void* node);
void ReadTime(const LibraryTime* time);
void ReadName(const X509Name* name);
void ReadGeneralName(const X509GeneralName* name);
void ReadGeneralNames(const X509GeneralNames* names);
void ReadFreeText(const PKIFreeText* text);
void ReadExtension(const X509Extension* extension);
void ReadExtensions(const X509ExtensionsSlot* slot);
void ReadExtensionValue(const Bytes& value);
void ReadExtendedKeyUsage(const ExtensionExtendedKeyUsage* list);
void ReadAccessDescriptions(const ExtensionAuthorityInformationAccess* list);
void ReadDistributionPoints(const ExtensionCrlDistributionPoints* list);
void ReadPolicies(const ExtensionCertificatePolicies* list);
void ReadPublicKeyInfo(const SubjectPublicKeyInfo* info);
void ReadParameters(const Bytes& parameters);
// Not constant, because GetCertificateIssuer makes a name where there is none.
void ReadCertificate(Certificate* certificate);
void ReadCertificates(const Certificates* certificates);
void ReadCrl(const X509Crl* crl);
void ReadCrls(const X509Crls* crls);
void ReadRevokedCertificates(const X509RevokedCertificates* certificates);

}  // namespace fuzz
