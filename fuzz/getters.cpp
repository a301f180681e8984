#include "getters.h"

#include <array>

namespace fuzz {
namespace {

// Elements of a list beyond these are as the others, and one list of many would take all the time.
constexpr uint32_t kMostElements = 64;

// What count(&number) tells; nothing when it fails.
template <class Count>
uint32_t CountOf(Count count) {
  uint32_t number = 0;
  return count(&number) == TESSEL_OK ? std::min(number, kMostElements) : 0;
}

// Two buffers that a function fills at once: read(first, firstLength, second, secondLength).
template <class Read>
void FetchPair(Read read) {
  uint32_t firstLength = 0;
  uint32_t secondLength = 0;
  if (read(nullptr, &firstLength, nullptr, &secondLength) != TESSEL_OK) return;
  const uint32_t firstNeeded = firstLength;
  const uint32_t secondNeeded = secondLength;
  Bytes first(firstLength + (firstLength == 0));
  Bytes second(secondLength + (secondLength == 0));
  Require(read(first.data(), &firstLength, second.data(), &secondLength) == TESSEL_OK);
  Require(firstLength == firstNeeded && secondLength == secondNeeded);
  if (secondNeeded == 0) return;
  secondLength = secondNeeded - 1;
  Require(read(first.data(), &firstLength, second.data(), &secondLength) == TESSEL_BUFFER_TOO_SMALL);
  Require(secondLength == secondNeeded);
}

void ReadNameEntry(const X509Name* name, uint32_t rdn, uint32_t entry) {
  uint32_t stringType = 0;
  FetchPair([&](uint8_t* value, uint32_t* length, uint8_t* oid, uint32_t* oidLength) {
    return GetX509NameEntry(name, rdn, entry, value, length, &stringType, oid, oidLength);
  });
  uint8_t tagClass = 0;
  uint8_t constructed = 0;
  FetchPair([&](uint8_t* value, uint32_t* length, uint8_t* oid, uint32_t* oidLength) {
    return GetX509NameEntryExt(name, rdn, entry, value, length, &tagClass, &constructed, &stringType, oid, oidLength);
  });
}

}  // namespace

uint32_t ReadHeader(Octets octets, Element& element) {
  return GetAsn1ObjectInfo(octets.data(), static_cast<uint32_t>(octets.size()), &element.tagClass, &element.constructed,
                           &element.tagNumber, &element.contentLength, &element.indefinite, &element.headerLength);
}

void ReadNode(const Asn1Item& item, const void* node) {
  if (item.kind == TESSEL_KIND_SEQUENCE_OF || item.kind == TESSEL_KIND_SET_OF) {
    const auto* list = static_cast<const Asn1List*>(node);
    const uint32_t number = std::min(GetAsn1ListLength(list), kMostElements);
    void* element = nullptr;
    for (uint32_t i = 0; i < number; ++i) {
      Require(GetAsn1ListItem(list, i, &element) == TESSEL_OK);
      ReadNode(*item.members[0], element);
    }
    Require(GetAsn1ListItem(list, GetAsn1ListLength(list), &element) == TESSEL_INVALID_ARGUMENT);
    return;
  }
  if (item.kind == TESSEL_KIND_BIT_STRING) {
    uint8_t unused = 0;
    FetchChecked([&](uint8_t* buffer, uint32_t* length) {
      return GetAsn1BitString(static_cast<const Asn1BitString*>(node), &unused, buffer, length);
    });
    Require(unused < 8);
    return;
  }
  const auto* value = static_cast<const Asn1Value*>(node);
  const auto content =
      FetchChecked([&](uint8_t* buffer, uint32_t* length) { return GetAsn1Value(value, buffer, length); });
  Require(content && content->size() == GetAsn1ValueLength(value));
  uint32_t type = 0;
  FetchChecked([&](uint8_t* buffer, uint32_t* length) { return GetAsn1ValueAndType(value, &type, buffer, length); });
  FetchChecked([&](uint8_t* buffer, uint32_t* length) { return GetAsn1Integer(value, buffer, length); });
  int32_t number = 0;
  GetAsn1Int32(value, &number);
  uint32_t flag = 0;
  Require(CheckAsn1Boolean(value) != TESSEL_OK || GetAsn1Boolean(value, &flag) == TESSEL_OK);
  Require(item.kind != TESSEL_KIND_INTEGER || CheckAsn1Integer(value) == TESSEL_OK);
}

void ReadTime(const LibraryTime* time) {
  std::array<uint32_t, 6> parts{};
  GetLibraryTime(time, &parts[0], &parts[1], &parts[2], &parts[3], &parts[4], &parts[5]);
  GetLibraryLocalTime(time, &parts[0], &parts[1], &parts[2], &parts[3], &parts[4], &parts[5]);
  IsLibraryTimeNull(time);
  Require(CompareTime(time, time) == 0 && TestTimeValidity(time, time, time) == 0);
  FetchChecked([&](uint8_t* buffer, uint32_t* length) { return EncodeTime(time, buffer, length); });
  FetchChecked([&](uint8_t* buffer, uint32_t* length) { return EncodeExtensionInvalidityDate(time, buffer, length); });
  FetchChecked([&](uint8_t* buffer, uint32_t* length) {
    return EncodeExtensionPrivateKeyUsagePeriod(time, time, buffer, length);
  });
}

void ReadName(const X509Name* name) {
  const uint32_t rdns = CountOf([&](uint32_t* count) { return GetX509NameRdnCount(name, count); });
  for (uint32_t rdn = 0; rdn <= rdns; ++rdn) {
    const uint32_t entries = CountOf([&](uint32_t* count) { return GetX509NameEntryCount(name, rdn, count); });
    for (uint32_t entry = 0; entry <= entries; ++entry) ReadNameEntry(name, rdn, entry);
  }
  if (rdns != 0) Require(CompareX509Names(name, name) == TESSEL_OK);
  Encode(name, EncodeX509Name);
}

void ReadGeneralName(const X509GeneralName* name) {
  uint32_t alternative = 0;
  FetchChecked(
      [&](uint8_t* buffer, uint32_t* length) { return GetX509GeneralNameValue(name, &alternative, buffer, length); });
}

void ReadGeneralNames(const X509GeneralNames* names) {
  const uint32_t number = CountOf([&](uint32_t* count) { return GetX509GeneralNameCount(names, count); });
  for (uint32_t i = 0; i <= number; ++i) {
    uint32_t alternative = 0;
    FetchChecked(
        [&](uint8_t* buffer, uint32_t* length) { return GetX509GeneralName(names, i, &alternative, buffer, length); });
  }
  X509Name* name = nullptr;
  if (GetX509NameFromGeneralNames(names, &name) == TESSEL_OK) ReadName(name);
  FreeX509Name(name);
  Encode(names, EncodeX509GeneralNames);
}

void ReadFreeText(const PKIFreeText* text) {
  const uint32_t number = CountOf([&](uint32_t* count) { return GetPKIFreeTextStringCount(text, count); });
  for (uint32_t i = 0; i <= number; ++i) {
    FetchChecked([&](uint8_t* buffer, uint32_t* length) { return GetPKIFreeTextString(text, i, buffer, length); });
  }
  Encode(text, EncodePKIFreeText);
}

void ReadExtension(const X509Extension* extension) {
  uint32_t critical = 0;
  FetchPair([&](uint8_t* oid, uint32_t* oidLength, uint8_t* value, uint32_t* valueLength) {
    return GetX509Extension(extension, oid, oidLength, &critical, value, valueLength);
  });
  Encode(extension, EncodeX509Extension);
}

void ReadExtensions(const X509ExtensionsSlot* slot) {
  const uint32_t number = CountOf([&](uint32_t* count) { return GetX509ExtensionsExtensionsCount(slot, count); });
  for (uint32_t i = 0; i <= number; ++i) {
    Bytes oid(256);
    uint32_t oidLength = SizeOf(oid);
    uint32_t critical = 0;
    uint32_t valueLength = 0;
    if (GetX509ExtensionsExtension(slot, i, oid.data(), &oidLength, &critical, nullptr, &valueLength) != TESSEL_OK) {
      continue;
    }
    uint32_t index = 0;
    Require(FindX509Extension(slot, oid.data(), &index) == TESSEL_OK && index <= i);
    const auto value = FetchChecked([&](uint8_t* buffer, uint32_t* length) {
      return GetX509ExtensionsExtensionValue(slot, oid.data(), buffer, length);
    });
    if (value) ReadExtensionValue(*value);
  }
  if (slot != nullptr) Encode(slot->list, EncodeX509Extensions);
}

// By every decoder, whatever the extension was.
void ReadExtensionValue(const Bytes& value) {
  const uint8_t* data = value.data();
  const uint32_t size = SizeOf(value);
  const tessel::Owned<LibraryTime> before = tessel::Make(CreateLibraryTime);
  const tessel::Owned<LibraryTime> after = tessel::Make(CreateLibraryTime);
  uint32_t number = 0;
  int32_t reason = 0;
  std::array<uint8_t, 8> flags{};
  std::array<uint32_t, 8> present{};
  const X509GeneralNames* fullName = nullptr;
  const X509Name* relativeName = nullptr;
  DecodeExtensionKeyUsage(data, size, &number);
  DecodeExtensionNetscapeCertificateType(data, size, &number);
  DecodeExtensionBasicConstraints(data, size, flags.data(), &number);
  DecodeExtensionReasonCode(data, size, &reason);
  if (DecodeExtensionInvalidityDate(data, size, before) == TESSEL_OK) ReadTime(before);
  DecodeExtensionPrivateKeyUsagePeriod(data, size, before, after);
  DecodeExtensionIssuingDistributionPoint(data, size, &fullName, &relativeName, &flags[0], &present[0], &flags[1],
                                          &present[1], &number, &present[2], &flags[2], &present[3], &flags[3],
                                          &present[4]);
  for (const auto decode :
       {DecodeExtensionSubjectKeyIdentifier, DecodeExtensionCrlNumber, DecodeExtensionDeltaCrlIndicator,
        DecodeAsn1IA5String, DecodeAsn1NumericString, DecodeAsn1Oid}) {
    FetchChecked([&](uint8_t* buffer, uint32_t* length) { return decode(data, size, buffer, length); });
  }
  FetchPair([&](uint8_t* keyIdentifier, uint32_t* keyIdentifierLength, uint8_t* serial, uint32_t* serialLength) {
    X509GeneralNames* names = nullptr;
    const uint32_t status = DecodeExtensionAuthorityKeyIdentifier(data, size, keyIdentifier, keyIdentifierLength,
                                                                  &names, serial, serialLength);
    Require(status == TESSEL_OK || names == nullptr);
    FreeX509GeneralNames(names);
    return status;
  });
}

void ReadExtendedKeyUsage(const ExtensionExtendedKeyUsage* list) {
  const uint32_t number = CountOf([&](uint32_t* count) { return GetExtensionExtendedKeyUsageCount(list, count); });
  for (uint32_t i = 0; i <= number; ++i) {
    FetchChecked(
        [&](uint8_t* buffer, uint32_t* length) { return GetExtensionExtendedKeyUsage(list, i, buffer, length); });
  }
  Encode(list, EncodeExtensionExtendedKeyUsage);
}

void ReadAccessDescriptions(const ExtensionAuthorityInformationAccess* list) {
  const uint32_t number =
      CountOf([&](uint32_t* count) { return GetExtensionAuthorityInformationAccessCount(list, count); });
  for (uint32_t i = 0; i <= number; ++i) {
    X509GeneralName* location = nullptr;
    FetchChecked([&](uint8_t* buffer, uint32_t* length) {
      return GetExtensionAuthorityInformationAccess(list, i, buffer, length, &location);
    });
    ReadGeneralName(location);
  }
  Encode(list, EncodeExtensionAuthorityInformationAccess);
}

void ReadDistributionPoints(const ExtensionCrlDistributionPoints* list) {
  const uint32_t number = CountOf([&](uint32_t* count) { return GetExtensionCrlDistributionPointsCount(list, count); });
  for (uint32_t i = 0; i <= number; ++i) {
    X509GeneralNames* fullName = nullptr;
    X509Name* relativeName = nullptr;
    X509GeneralNames* issuer = nullptr;
    uint32_t reasons = 0;
    GetExtensionCrlDistributionPoint(list, i, &fullName, &relativeName, &reasons, &issuer);
    ReadGeneralNames(fullName);
    ReadName(relativeName);
    ReadGeneralNames(issuer);
  }
  Encode(list, EncodeExtensionCrlDistributionPoints);
}

void ReadPolicies(const ExtensionCertificatePolicies* list) {
  const uint32_t number = CountOf([&](uint32_t* count) { return GetExtensionPolicyInformationCount(list, count); });
  for (uint32_t i = 0; i <= number; ++i) {
    FetchChecked(
        [&](uint8_t* buffer, uint32_t* length) { return GetExtensionPolicyInformation(list, i, buffer, length); });
    const uint32_t qualifiers =
        CountOf([&](uint32_t* count) { return GetExtensionPolicyQualifiersCount(list, i, count); });
    for (uint32_t q = 0; q <= qualifiers; ++q) {
      FetchPair([&](uint8_t* oid, uint32_t* oidLength, uint8_t* qualifier, uint32_t* qualifierLength) {
        return GetExtensionPolicyQualifier(list, i, q, oid, oidLength, qualifier, qualifierLength);
      });
    }
  }
  Encode(list, EncodeExtensionCertificatePolicies);
}

void ReadPublicKeyInfo(const SubjectPublicKeyInfo* info) {
  FetchChecked(
      [&](uint8_t* buffer, uint32_t* length) { return GetSubjectPublicKeyInfoPublicKey(info, buffer, length); });
}

void ReadParameters(const Bytes& parameters) {
  uint8_t mode = 0;
  std::array<uint32_t, 3> sets{};
  const uint32_t status = DecodeAlgorithmGostR34102001Parameters(parameters.data(), SizeOf(parameters), &mode, &sets[0],
                                                                 &sets[1], &sets[2]);
  if (status == TESSEL_OK) {
    Require(FetchChecked([&](uint8_t* buffer, uint32_t* length) {
              return EncodeAlgorithmGostR34102001Parameters(mode, sets[0], sets[1], sets[2], buffer, length);
            }).has_value());
  }
  for (const uint32_t algorithm : {102U, 3000U, 3001U}) {
    std::array<Bytes, 3> oids{Bytes(256), Bytes(256), Bytes(256)};
    std::array<uint32_t, 3> lengths{256, 256, 256};
    const uint32_t oidStatus =
        DecodeAlgorithmGostR3410ParameterOids(algorithm, parameters.data(), SizeOf(parameters), &mode, oids[0].data(),
                                              &lengths[0], oids[1].data(), &lengths[1], oids[2].data(), &lengths[2]);
    if (oidStatus != TESSEL_OK) continue;
    Require(FetchChecked([&](uint8_t* buffer, uint32_t* length) {
              return EncodeAlgorithmGostR3410ParametersOid(algorithm, mode, oids[0].data(), oids[1].data(),
                                                           oids[2].data(), buffer, length);
            }).has_value());
  }
}

// What follows may make and change other objects: after that the size of this one has to be counted.
void ReadCertificate(Certificate* certificate) {
  Encode(certificate, EncodeCertificate);
  int32_t version = 0;
  GetCertificateVersion(certificate, &version);
  for (const auto get :
       {GetCertificateSerialNumber, GetCertificatePublicKey, GetCertificateSignature, GetCertificateToBeSignedPart,
        GetCertificatePublicKeyGostR3410, GetCertificateSubjectKeyIdentifier}) {
    FetchChecked([&](uint8_t* buffer, uint32_t* length) { return get(certificate, buffer, length); });
  }
  for (const auto get : {GetCertificateIssuerUniqueId, GetCertificateSubjectUniqueId}) {
    uint8_t unused = 0;
    FetchChecked([&](uint8_t* buffer, uint32_t* length) { return get(certificate, buffer, length, &unused); });
  }
  for (const auto get : {GetCertificateIssuer, GetCertificateSubject}) {
    X509Name* name = nullptr;
    if (get(certificate, &name) == TESSEL_OK) ReadName(name);
  }
  const tessel::Owned<LibraryTime> time = tessel::Make(CreateLibraryTime);
  for (const auto get : {GetCertificateValidNotBefore, GetCertificateValidNotAfter}) {
    if (get(certificate, time) == TESSEL_OK) ReadTime(time);
  }
  for (const auto get :
       {GetCertificatePublicKeyAlgorithmOidAndParameters, GetCertificateSignatureAlgorithmOidAndParameters}) {
    FetchPair([&](uint8_t* oid, uint32_t* oidLength, uint8_t* parameters, uint32_t* parametersLength) {
      return get(certificate, oid, oidLength, parameters, parametersLength);
    });
  }
  uint32_t serialLength = 0;
  const uint8_t* serial = ptr_GetCertificateSerialNumber(certificate, &serialLength);
  X509Name* subject = nullptr;
  if (GetCertificateSubject(certificate, &subject) == TESSEL_OK) {
    IsCertificateCorrespondToAuthKeyIdent(certificate, nullptr, 0, subject, serial, serialLength);
  }
  IsCertificateCorrespondToAuthKeyIdent(certificate, serial, serialLength, nullptr, nullptr, 0);

  std::array<uint32_t, 3> sets{};
  FetchChecked([&](uint8_t* buffer, uint32_t* length) {
    return GetCertificateDecodedPublicKeyGostR34102012(certificate, buffer, length, &sets[0], &sets[1], &sets[2]);
  });
  FetchPair([&](uint8_t* identifier, uint32_t* identifierLength, uint8_t* number, uint32_t* numberLength) {
    X509GeneralNames* names = nullptr;
    const uint32_t status =
        GetCertificateAuthorityKeyIdentifier(certificate, identifier, identifierLength, &names, number, numberLength);
    ReadGeneralNames(names);
    FreeX509GeneralNames(names);
    return status;
  });
  FetchPair([&](uint8_t* identifier, uint32_t* identifierLength, uint8_t* number, uint32_t* numberLength) {
    X509Name* name = nullptr;
    const uint32_t status =
        GetCertificateAuthorityKeyIdentifier2(certificate, identifier, identifierLength, &name, number, numberLength);
    FreeX509Name(name);
    return status;
  });
  FetchChecked(GetCertificateCN, certificate);
  FetchChecked(GetArdekIdentifierFromCertificate, certificate);

  X509ExtensionsSlot* slot = nullptr;
  if (GetCertificateExtensions(certificate, &slot) == TESSEL_OK) ReadExtensions(slot);
}

void ReadCertificates(const Certificates* certificates) {
  Encode(certificates, EncodeCertificates);
  const uint32_t number = CountOf([&](uint32_t* count) { return GetCertificatesCount(certificates, count); });
  for (uint32_t i = 0; i <= number; ++i) {
    Certificate* certificate = nullptr;
    if (GetCertificatesCertificate(certificates, i, &certificate) == TESSEL_OK) ReadCertificate(certificate);
  }
}

void ReadCrl(const X509Crl* crl) { Encode(crl, EncodeX509Crl); }
void ReadCrls(const X509Crls* crls) { Encode(crls, EncodeX509Crls); }
void ReadRevokedCertificates(const X509RevokedCertificates* certificates) {
  Encode(certificates, EncodeX509RevokedCertificates);
}

}  // namespace fuzz
