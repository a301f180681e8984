// The scenarios of certificates, CRLs and what they are made of.
#include "memory/failing.h"
#include "support/objects.h"
#include "support/samples.h"

namespace test {
namespace {

const Bytes kUri = ToBytes("http://example.ru/");
const Bytes kOneOctet = {0x05};

// A closure that encodes an object, to watch it.
template <class Type>
auto EncodingOf(const Owned<Type>& object, uint32_t (*encode)(const Type*, uint8_t*, uint32_t*)) {
  return [&object, encode] { return Fetch(encode, object); };
}

// What all types have: a new object, one that is decoded and encoded. The last one stays.
template <class Object, class Create, class Decode, class Encode>
void MakeAndEncode(Caller& caller, Owned<Object>& object, Create create, Decode decode, Encode encode,
                   const Bytes& octets) {
  caller.Read(create, caller.Into(object));
  caller.Read(decode, octets.data(), SizeOf(octets), caller.Into(object));
  caller.Get(encode, object.Get());
}

// The same of an empty list, which is then watched while `add` appends to it so often that it grows, and encoded.
template <class List, class Create, class Decode, class Encode, class Add>
void MakeAndFill(Caller& caller, Owned<List>& list, Create create, Decode decode, Encode encode, Add add) {
  MakeAndEncode(caller, list, create, decode, encode, FromHex("30 00"));
  caller.Watch(EncodingOf(list, encode));
  for (int i = 0; i < 12; ++i) add();
  caller.Get(encode, list);
}

// A SEQUENCE OF two elements.
Bytes TwoOf(const Bytes& element) {
  const size_t size = 2 * element.size();
  return Bytes{0x30, 0x83, static_cast<uint8_t>(size >> 16), static_cast<uint8_t>(size >> 8),
               static_cast<uint8_t>(size)} +
         element + element;
}

Owned<X509GeneralNames> UriNames() {
  Owned<X509GeneralNames> names;
  EXPECT_EQ(0U, CreateX509GeneralNames(names.Out()));
  EXPECT_EQ(0U, AddX509GeneralName(names, 6, kUri.data(), SizeOf(kUri)));
  return names;
}

Owned<Certificate> DecodeSample() {
  const Bytes octets = ReadSample("certificate.pem");
  Owned<Certificate> certificate;
  EXPECT_EQ(0U, DecodeCertificate(octets.data(), SizeOf(octets), certificate.Out()));
  return certificate;
}

X509Name* SubjectOf(Certificate* certificate) {
  X509Name* subject = nullptr;
  EXPECT_EQ(0U, GetCertificateSubject(certificate, &subject));
  return subject;
}

X509ExtensionsSlot* ExtensionsOf(Certificate* certificate) {
  X509ExtensionsSlot* slot = nullptr;
  EXPECT_EQ(0U, GetCertificateExtensions(certificate, &slot));
  return slot;
}

void WholeCertificates(Caller& caller) {
  const Bytes octets = ReadSample("certificate.pem");
  Owned<Certificate> certificate;
  MakeAndEncode(caller, certificate, CreateCertificate, DecodeCertificate, EncodeCertificate, octets);
  caller.Get(GetCertificateToBeSignedPart, certificate);
  Owned<::Certificates> list;
  MakeAndEncode(caller, list, CreateCertificates, DecodeCertificates, EncodeCertificates, TwoOf(octets));
  Owned<::Certificates> copy;
  caller.Read(CreateCertificatesCopy, list, caller.Into(copy));
  caller.Watch(EncodingOf(copy, EncodeCertificates));
  for (int i = 0; i < 20; ++i) {
    Owned<Certificate> added;
    caller.Read(CreateCertificateCopy, certificate, caller.Into(added));
    caller.Change(AddCertificateToCertificates, copy, added);
    static_cast<void>(added.Release());
  }
  caller.Note(EncodingOf(copy, EncodeCertificates)());
}

void MembersOfCertificates(Caller& caller) {
  Owned<Certificate> certificate = DecodeSample();
  caller.Watch(EncodingOf(certificate, EncodeCertificate));
  const Bytes octets(64, 0x11);
  const Owned<LibraryTime> time = TimeOf(2055, 1, 2);
  Owned<X509Name> name;
  caller.Read(CopyX509Name, SubjectOf(certificate), caller.Into(name));
  for (int i = 0; i < 2; ++i) {
    caller.Change(SetCertificateVersion, certificate, 1);
    caller.Change(SetCertificateSerialNumber, certificate, octets.data(), SizeOf(octets));
    caller.Change(SetCertificateIssuer, certificate, name);
    caller.Change(SetCertificateSubject, certificate, name);
    caller.Change(SetCertificateIssuer_i, certificate, name, 1);
    caller.Change(SetCertificateSubject_i, certificate, name, 1);
    caller.Change(SetCertificateValidNotBefore, certificate, time);
    caller.Change(SetCertificateValidNotAfter, certificate, time);
    caller.Change(SetCertificateIssuerUniqueId, certificate, octets.data(), SizeOf(octets), 3);
    caller.Change(SetCertificateSubjectUniqueId, certificate, octets.data(), SizeOf(octets), 0);
    caller.Change(SetCertificatePublicKey, certificate, octets.data(), SizeOf(octets));
    caller.Change(SetCertificateSignature, certificate, octets.data(), SizeOf(octets));
    caller.Change(SetCertificateExtensionCrlDistributionPoints, certificate, "http://example.ru/crl");
    Owned<Certificate> other = DecodeSample();
    caller.Change(SetCertificateExtensions, certificate, ExtensionsOf(other));
  }
  caller.Get(EncodeCertificate, certificate);
  Owned<Certificate> empty;
  caller.Watch(nullptr);
  caller.Read(CreateCertificate, caller.Into(empty));
  X509Name* lent = nullptr;
  caller.Change(GetCertificateIssuer, empty, &lent);
  caller.Change(GetCertificateSubject, empty, &lent);
}

// When memory does not suffice, the algorithm can be the new one and its parameters the old ones, and the algorithm in
// the to-be-signed part the new one and the one beside the signature the old one.
void Algorithms(Caller& caller) {
  Owned<Certificate> certificate = DecodeSample();
  caller.Watch(EncodingOf(certificate, EncodeCertificate));
  const Bytes oid = Counted("1.2.840.10045.4.3.2");
  const Bytes parameters = FromHex("05 00");
  caller.Change(SetCertificatePublicKeyAlgorithmOidAndParameters, certificate, oid.data(), parameters.data(), 2);
  caller.Change(SetCertificatePublicKeyAlgorithmIdAndParameters, certificate, 1, parameters.data(), 2);
  caller.Change(SetCertificateSignatureAlgorithmOidAndParameters, certificate, oid.data(), parameters.data(), 2);
  caller.Change(SetCertificateGostR34102001SignatureAlgorithmID, certificate, 3002, 0);
  caller.Change(SetCertificateGostR34102001SignatureAlgorithmIDAndParameters, certificate, 3002, 1, 1, 3, 1);
  caller.Change(SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters, certificate, 3000, 1, 1, 3, 1);
  const Bytes key(64, 0x22);
  caller.Change(SetCertificateGostR34102001PublicKey, certificate, key.data(), SizeOf(key));
  EXPECT_EQ(key, caller.Get(GetCertificatePublicKeyGostR3410, certificate));
  uint32_t length = 0;
  uint32_t sets[3] = {};
  Bytes buffer(Caller::kCapacity);
  caller.Read(GetCertificateDecodedPublicKeyGostR34102012, certificate, buffer.data(), Caller::Capacity(length),
              &sets[0], &sets[1], &sets[2]);
  caller.Note(EncodingOf(certificate, EncodeCertificate)());
}

void AlgorithmValues(Caller& caller) {
  uint8_t mode = 0;
  uint32_t sets[3] = {};
  Bytes buffers[3] = {Bytes(Caller::kCapacity), Bytes(Caller::kCapacity), Bytes(Caller::kCapacity)};
  uint32_t lengths[3] = {};
  const auto capacity = [&lengths](size_t i) { return Caller::Capacity(lengths[i]); };
  const Bytes encoded = caller.Get(EncodeAlgorithmGostR34102001Parameters, 1, 1, 1, 2);
  const uint8_t* data = encoded.data();
  caller.Read(DecodeAlgorithmGostR34102001Parameters, data, SizeOf(encoded), &mode, &sets[0], &sets[1], &sets[2]);
  EXPECT_EQ(2U, sets[2]);
  caller.Read(DecodeAlgorithmGostR3410ParameterOids, 102, data, SizeOf(encoded), &mode, buffers[0].data(), capacity(0),
              buffers[1].data(), capacity(1), buffers[2].data(), capacity(2));
  for (const auto decode : {DecodeAlgorithmGostR34102001ParameterOids, DecodeAlgorithmGostR34102012ParameterOids}) {
    caller.Read(decode, data, SizeOf(encoded), &mode, buffers[0].data(), capacity(0), buffers[1].data(), capacity(1),
                buffers[2].data(), capacity(2));
  }
  caller.Get(EncodeAlgorithmGostR3410ParametersOid, 102, 1, buffers[0].data(), buffers[1].data(), buffers[2].data());
  for (const auto encode : {EncodeAlgorithmGostR34102001ParametersOid, EncodeAlgorithmGostR34102012ParametersOid}) {
    caller.Get(encode, 1, buffers[0].data(), buffers[1].data(), buffers[2].data());
  }

  const Bytes info = FromHex("30 0F 30 09 06 07 2A 86 48 CE 3D 02 01 03 02 00 04");
  caller.Read(DecodeSubjectPublicKeyInfo, info.data(), SizeOf(info), buffers[0].data(), capacity(0), buffers[1].data(),
              capacity(1), buffers[2].data(), capacity(2));
  // An identifier of the caller's own.
  AlgorithmIdentifier* identifier = nullptr;
  caller.Read(
      CreateAsn1Object, &AlgorithmIdentifierItem,
      [&identifier] {
        FreeAsn1Object(&AlgorithmIdentifierItem, identifier);
        return reinterpret_cast<void**>(&identifier);
      },
      1);
  // As for those of certificates above.
  caller.Change(SetAlgorithmGostR34102001AndParameters, identifier, 102, 1, 1, 1, 2);
  caller.Get(GetAsn1EncodedValue, identifier, &AlgorithmIdentifierItem);
  FreeAsn1Object(&AlgorithmIdentifierItem, identifier);
}

void Names(Caller& caller) {
  Owned<X509Name> name;
  // One RDN, which is empty.
  MakeAndEncode(caller, name, CreateX509Name, DecodeX509Name, EncodeX509Name, FromHex("30 02 31 00"));
  caller.Watch(EncodingOf(name, EncodeX509Name));
  const Bytes type = Counted("2.5.4.3");
  // More than the RDN's first array has room for, in falling order.
  for (uint8_t i = 30; i > 0; --i) caller.Change(AddX509NameEntry, name, &i, 1, 12, type.data(), 0);
  Owned<X509Name> copy;
  caller.Read(CopyX509Name, name, caller.Into(copy));
  caller.Get(EncodeX509Name, copy);
  caller.Change(AddX509NameEntry, name, kUri.data(), SizeOf(kUri), 12, type.data(), 1);
  caller.Change(AddX509NameEntryExt, name, kUri.data(), SizeOf(kUri), 0x80, 0, 12, type.data(), 1);
}

void GeneralNames(Caller& caller) {
  Owned<X509GeneralName> one;
  caller.Read(CreateX509GeneralName, caller.Into(one));
  caller.Read(AllocX509GeneralNameValue, caller.Into(one), 6, kUri.data(), SizeOf(kUri));
  Owned<X509GeneralName> copy;
  caller.Read(CreateX509GeneralNameCopy, one, caller.Into(copy));
  Owned<X509GeneralNames> names;
  caller.Read(CreateX509GeneralNames, caller.Into(names));
  caller.Watch(EncodingOf(names, EncodeX509GeneralNames));
  Owned<Certificate> certificate = DecodeSample();
  const Bytes directoryName = Fetch(EncodeX509Name, SubjectOf(certificate));
  // The first directory name is not an X509Name, and so passed over.
  caller.Change(AddX509GeneralName, names, 4, FromHex("02 01 05").data(), 3);
  caller.Change(AddX509GeneralName, names, 4, directoryName.data(), SizeOf(directoryName));
  for (int i = 0; i < 20; ++i) caller.Change(AddX509GeneralName, names, 6, kUri.data(), SizeOf(kUri));
  const Bytes encoded = caller.Get(EncodeX509GeneralNames, names);
  Owned<X509GeneralNames> decoded;
  caller.Read(DecodeX509GeneralNames, encoded.data(), SizeOf(encoded), caller.Into(decoded));
  caller.Read(CopyX509GeneralNames, names, caller.Into(decoded));
  Owned<X509Name> name;
  caller.Read(GetX509NameFromGeneralNames, decoded, caller.Into(name));
  EXPECT_EQ(directoryName, caller.Get(EncodeX509Name, name));

  Owned<PKIFreeText> text;
  MakeAndEncode(caller, text, CreatePKIFreeText, DecodePKIFreeText, EncodePKIFreeText, FromHex("30 03 0C 01 41"));
  Owned<PKIFreeText> textCopy;
  caller.Read(CreatePKIFreeTextCopy, text, caller.Into(textCopy));
  caller.Change(AddPKIFreeTextString, textCopy, kUri.data(), SizeOf(kUri));
  caller.Get(EncodePKIFreeText, textCopy);
}

void KeyIdentifiers(Caller& caller) {
  Owned<Certificate> issuer = DecodeSample();
  Owned<Certificate> certificate = DecodeSample();
  EXPECT_EQ(0U, RemoveX509Extensions(ExtensionsOf(certificate)));
  caller.Watch(EncodingOf(certificate, EncodeCertificate));
  caller.Change(SetCertificateArdekKeyIdentifier, certificate, "text");
  caller.Get(GetArdekIdentifierFromCertificate, certificate);
  caller.Change(SetCertificateSubjectKeyIdentifier, certificate);
  const Bytes key = caller.Get(GetCertificateSubjectKeyIdentifier, certificate);
  caller.Change(SetCertificateAuthorityKeyIdentifier2, certificate, key.data(), SizeOf(key), SubjectOf(issuer),
                kOneOctet.data(), 1);
  caller.Change(SetCertificateAuthorityKeyIdentifier, certificate, issuer);
  Bytes buffers[2] = {Bytes(Caller::kCapacity), Bytes(Caller::kCapacity)};
  uint32_t lengths[2] = {};
  Owned<X509GeneralNames> names;
  caller.Read(GetCertificateAuthorityKeyIdentifier, certificate, buffers[0].data(), Caller::Capacity(lengths[0]),
              caller.Into(names), buffers[1].data(), Caller::Capacity(lengths[1]));
  Owned<X509Name> name;
  caller.Read(GetCertificateAuthorityKeyIdentifier2, certificate, buffers[0].data(), Caller::Capacity(lengths[0]),
              caller.Into(name), buffers[1].data(), Caller::Capacity(lengths[1]));
  caller.Get(EncodeX509Name, name);
  caller.Read(IsCertificateCorrespondToAuthKeyIdent, issuer, buffers[0].data(), lengths[0], nullptr, nullptr, 0);
  caller.Note(EncodingOf(certificate, EncodeCertificate)());
}

void Extensions(Caller& caller) {
  const Bytes oid = Counted("1.2.3.4");
  const Bytes value(1500, 0x33);
  Owned<X509Extension> extension;
  caller.Read(CreateX509Extension, caller.Into(extension), oid.data(), 1, value.data(), SizeOf(value));
  // When memory does not suffice, the first of three values can be new and the others old.
  caller.Change(SetX509Extension, extension, oid.data(), 1, kOneOctet.data(), 1);
  const Bytes encoded = caller.Get(EncodeX509Extension, extension);
  caller.Read(DecodeX509Extension, encoded.data(), SizeOf(encoded), caller.Into(extension));

  Owned<X509Extensions> list;
  MakeAndEncode(caller, list, CreateX509Extensions, DecodeX509Extensions, EncodeX509Extensions, TwoOf(encoded));
  X509ExtensionsSlot slot = {list};
  caller.Watch(EncodingOf(list, EncodeX509Extensions));
  for (int i = 0; i < 20; ++i) caller.Change(AddX509ExtensionsExtension, &slot, oid.data(), 1, kOneOctet.data(), 1);
  caller.Get(EncodeX509Extensions, list);
  // Where there is no list yet one is made.
  Owned<X509Extensions> made;
  X509ExtensionsSlot none = {nullptr};
  caller.Watch([&none] { return Bytes{static_cast<uint8_t>(none.list == nullptr)}; });
  caller.Change(AddX509ExtensionsExtension, &none, oid.data(), 0, value.data(), SizeOf(value));
  made.Reset(none.list);
  caller.Get(EncodeX509Extensions, made);
}

void ExtensionValues(Caller& caller) {
  uint32_t number = 0;
  uint8_t flag = 0;
  const auto flags = [&](auto encode, auto decode) {
    const Bytes encoded = caller.Get(encode, 0x8006U);
    caller.Read(decode, encoded.data(), SizeOf(encoded), &number);
    EXPECT_EQ(0x8006U, number);
  };
  flags(EncodeExtensionKeyUsage, DecodeExtensionKeyUsage);
  flags(EncodeExtensionNetscapeCertificateType, DecodeExtensionNetscapeCertificateType);
  const auto octets = [&](auto encode, auto decode) {
    const Bytes encoded = caller.Get(encode, kOneOctet.data(), 1U);
    EXPECT_EQ(kOneOctet, caller.Get(decode, encoded.data(), SizeOf(encoded)));
  };
  octets(EncodeExtensionSubjectKeyIdentifier, DecodeExtensionSubjectKeyIdentifier);
  octets(EncodeExtensionCrlNumber, DecodeExtensionCrlNumber);
  octets(EncodeExtensionDeltaCrlIndicator, DecodeExtensionDeltaCrlIndicator);

  int32_t reason = 0;
  Bytes encoded = caller.Get(EncodeExtensionReasonCode, 8);
  caller.Read(DecodeExtensionReasonCode, encoded.data(), SizeOf(encoded), &reason);
  const Owned<LibraryTime> time = TimeOf(2026, 1, 2);
  const Owned<LibraryTime> end = TimeOf(2027, 1, 2);
  encoded = caller.Get(EncodeExtensionInvalidityDate, time);
  caller.Read(DecodeExtensionInvalidityDate, encoded.data(), SizeOf(encoded), time);
  encoded = caller.Get(EncodeExtensionPrivateKeyUsagePeriod, time, end);
  caller.Read(DecodeExtensionPrivateKeyUsagePeriod, encoded.data(), SizeOf(encoded), time, end);
  encoded = caller.Get(EncodeExtensionBasicConstraints, 1, 3);
  caller.Read(DecodeExtensionBasicConstraints, encoded.data(), SizeOf(encoded), &flag, &number);

  const Owned<X509GeneralNames> names = UriNames();
  encoded = caller.Get(EncodeExtensionAuthorityKeyIdentifier, kOneOctet.data(), 1, names, kOneOctet.data(), 1);
  Bytes buffers[2] = {Bytes(Caller::kCapacity), Bytes(Caller::kCapacity)};
  uint32_t lengths[2] = {};
  Owned<X509GeneralNames> decoded;
  caller.Read(DecodeExtensionAuthorityKeyIdentifier, encoded.data(), SizeOf(encoded), buffers[0].data(),
              Caller::Capacity(lengths[0]), caller.Into(decoded), buffers[1].data(), Caller::Capacity(lengths[1]));
  EXPECT_EQ(Fetch(EncodeX509GeneralNames, names), caller.Get(EncodeX509GeneralNames, decoded));

  // The reasons without a flag before them are read in a second attempt.
  encoded = caller.Get(EncodeExtensionIssuingDistributionPoint, names, nullptr, 0, 0, 0, 0, 0x40, 1, 0, 0, 0, 0);
  const X509GeneralNames* fullName = nullptr;
  const X509Name* relativeName = nullptr;
  uint32_t present[5] = {};
  caller.Read(DecodeExtensionIssuingDistributionPoint, encoded.data(), SizeOf(encoded), &fullName, &relativeName, &flag,
              &present[0], &flag, &present[1], &number, &present[2], &flag, &present[3], &flag, &present[4]);
  EXPECT_EQ(0x40U, number);
}

void ExtensionLists(Caller& caller) {
  const Bytes oid = Counted("1.3.6.1.5.5.7.3.1");
  Owned<ExtensionExtendedKeyUsage> purposes;
  MakeAndFill(caller, purposes, CreateExtensionExtendedKeyUsage, DecodeExtensionExtendedKeyUsage,
              EncodeExtensionExtendedKeyUsage,
              [&] { caller.Change(AddExtensionExtendedKeyUsage, purposes, oid.data()); });

  const auto location = caller.Taken([] {
    Owned<X509GeneralName> name;
    EXPECT_EQ(0U, AllocX509GeneralNameValue(name.Out(), 6, kUri.data(), SizeOf(kUri)));
    return name.Release();
  });
  Owned<ExtensionAuthorityInformationAccess> access;
  MakeAndFill(caller, access, CreateExtensionAuthorityInformationAccess, DecodeExtensionAuthorityInformationAccess,
              EncodeExtensionAuthorityInformationAccess,
              [&] { caller.Change(AddExtensionAuthorityInformationAccess, access, oid.data(), location); });

  const auto names = caller.Taken([] { return UriNames().Release(); });
  const auto relative = caller.Taken([] {
    Owned<X509Name> name;
    EXPECT_EQ(0U, CreateX509Name(name.Out()));
    return name.Release();
  });
  Owned<ExtensionCrlDistributionPoints> points;
  MakeAndFill(caller, points, CreateExtensionCrlDistributionPoints, DecodeExtensionCrlDistributionPoints,
              EncodeExtensionCrlDistributionPoints, [&] {
                caller.Change(AddExtensionCrlDistributionPoint, points, names, nullptr, 0x40, names);
                caller.Change(AddExtensionCrlDistributionPoint, points, nullptr, relative, 0, nullptr);
              });

  Owned<ExtensionCertificatePolicies> policies;
  uint32_t index = 0;
  MakeAndFill(caller, policies, CreateExtensionCertificatePolicies, DecodeExtensionCertificatePolicies,
              EncodeExtensionCertificatePolicies,
              [&] { caller.Change(AddExtensionPolicyInformation, policies, oid.data(), &index); });
  // With what this adds the list cannot be encoded any more.
  caller.Watch([&policies] {
    uint32_t count = 0;
    EXPECT_EQ(0U, GetExtensionPolicyQualifiersCount(policies, 0, &count));
    return Bytes{static_cast<uint8_t>(count)};
  });
  for (int i = 0; i < 12; ++i) caller.Change(AddExtensionPolicyQualifier, policies, 0, oid.data(), oid.data(), 1);
}

void Crls(Caller& caller) {
  const Bytes octets = MakeCrl(300);
  Owned<X509Crl> crl;
  MakeAndEncode(caller, crl, CreateX509Crl, DecodeX509Crl, EncodeX509Crl, octets);
  Owned<X509Crl> copy;
  caller.Read(CreateX509CrlCopy, crl, caller.Into(copy));
  EXPECT_EQ(octets, caller.Get(EncodeX509Crl, copy));
  Owned<X509Crls> list;
  MakeAndEncode(caller, list, CreateX509Crls, DecodeX509Crls, EncodeX509Crls, TwoOf(octets));
  Owned<X509Crls> listCopy;
  caller.Read(CreateX509CrlsCopy, list, caller.Into(listCopy));
  Owned<X509RevokedCertificates> revoked;
  caller.Read(CreateX509RevokedCertificates, caller.Into(revoked));
  caller.Get(EncodeX509RevokedCertificates, revoked);
}

}  // namespace

const std::vector<Scenario>& X509Scenarios() {
  static const std::vector<Scenario> scenarios = {{"WholeCertificates", WholeCertificates},
                                                  {"MembersOfCertificates", MembersOfCertificates},
                                                  {"Algorithms", Algorithms},
                                                  {"AlgorithmValues", AlgorithmValues},
                                                  {"Names", Names},
                                                  {"GeneralNames", GeneralNames},
                                                  {"KeyIdentifiers", KeyIdentifiers},
                                                  {"Extensions", Extensions},
                                                  {"ExtensionValues", ExtensionValues},
                                                  {"ExtensionLists", ExtensionLists},
                                                  {"Crls", Crls}};
  return scenarios;
}

}  // namespace test
