// Calls every function that reads an object of a type.
#pragma once

#include <optional>

#include "input.h"
#include "support/buffers.h"
#include "tessel/tessel.h"

namespace fuzz {

// What a function delivers by the convention for buffers, which is tried in all its ways; nothing when it fails. Either
// read(buffer, length), or a function that ends with them and its other arguments.
template <class... Arguments>
std::optional<Bytes> FetchChecked(const Arguments&... arguments) {
  const auto require = [](bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    Require(holds, file, line);
  };
  Bytes octets;
  if (test::FetchInAllWays(require, octets, arguments...) != TESSEL_OK) return std::nullopt;
  return Copied(octets);
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
  FetchChecked(encode, object);
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
