#include "extension_readers.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "concat.h"
#include "describe_names.h"
#include "describe_values.h"
#include "descriptors.h"
#include "library.h"
#include "nodes.h"
#include "text.h"
#include "values.h"

namespace tool {
namespace {

constexpr std::string_view kKeyUsages[] = {
    "digitalSignature", "nonRepudiation", "keyEncipherment", "dataEncipherment", "keyAgreement",
    "keyCertSign",      "cRLSign",        "encipherOnly",    "decipherOnly",
};

constexpr std::string_view kNetscapeTypes[] = {
    "sslClient", "sslServer", "smime", "objectSigning", "reserved", "sslCA", "smimeCA", "objectSigningCA",
};

constexpr uint32_t kNoPathLength = 0xFFFFFFFF;

enum PeriodSlot : unsigned { kNotBefore, kNotAfter };

void AddTime(Fact& fact, std::string_view key, std::string_view label, const void* time) {
  if (time != nullptr) fact.Add(key, label, TimeFact(TESSEL_KIND_GENERALIZED_TIME, Content(time)));
}

// A URI stands for itself beside the label of its purpose; any other general name is told with its kind.
Fact Unlabelled(Fact generalName) {
  if (generalName.label != "URI") generalName.text = Concat(generalName.label, ": ", generalName.text);
  return generalName;
}

// ---- Policies ----

// UserNotice ::= SEQUENCE {
//   noticeRef    SEQUENCE { organization DisplayText, noticeNumbers SEQUENCE OF INTEGER } OPTIONAL,
//   explicitText DisplayText OPTIONAL }
constexpr Asn1Item kInteger = Primitive(TESSEL_KIND_INTEGER);
constexpr Asn1Item kDisplayText = Primitive(TESSEL_KIND_ANY);
constexpr Asn1Item kOptionalDisplayText = Optional(kDisplayText);
constexpr Members<1> kIntegersElement = {&kInteger};
constexpr Asn1Item kIntegers = ListOf(TESSEL_KIND_SEQUENCE_OF, kIntegersElement);
constexpr Members<2> kNoticeReferenceMembers = {&kDisplayText, &kIntegers};
constexpr Asn1Item kNoticeReference = Optional(Sequence(kNoticeReferenceMembers));
constexpr Members<2> kUserNoticeMembers = {&kNoticeReference, &kOptionalDisplayText};
constexpr Asn1Item kUserNotice = Sequence(kUserNoticeMembers);
enum UserNoticeSlot : unsigned { kNoticeRef, kExplicitText };
enum NoticeReferenceSlot : unsigned { kOrganization, kNoticeNumbers };

Fact NoticeReferenceFact(const void* reference) {
  Fact organization = ElementFact(Content(Slot(reference, kOrganization)));
  Fact fact = Fact::Object(organization.text);
  Fact numbers = Fact::List();
  for (const void* number : Items(Slot(reference, kNoticeNumbers))) {
    numbers.Append(IntegerFact(Content(number)));
    fact.text += Concat(", ", numbers.parts.back().text);
  }
  fact.Hide("organization", std::move(organization));
  fact.Hide("noticeNumbers", std::move(numbers));
  return fact;
}

Fact UserNoticeFact(Octets encoded) {
  Tree notice(kUserNotice);
  if (notice.Decode(encoded) != TESSEL_OK) return UnreadFact(encoded);
  Fact fact = Fact::Object();
  if (const void* explicitText = Slot(notice.Root(), kExplicitText); explicitText != nullptr) {
    Fact text = ElementFact(Content(explicitText));
    fact.text = text.text;
    fact.Hide("explicitText", std::move(text));
  }
  if (const void* reference = Slot(notice.Root(), kNoticeRef); reference != nullptr) {
    fact.Add("noticeRef", "Reference", NoticeReferenceFact(reference));
  }
  fact.TellIfEmpty();
  return fact;
}

Fact QualifierFact(Octets type, Octets qualifier) {
  Fact fact = OidFact(type);
  const std::string name = std::exchange(fact.text, {});
  if (name == "cps") {
    fact.Add("value", "CPS", ElementFact(qualifier));
  } else if (name == "userNotice") {
    fact.Add("value", "User notice", UserNoticeFact(qualifier));
  } else {
    fact.Add("value", name, UnreadFact(qualifier));
  }
  return fact;
}

uint32_t ReadQualifier(const ExtensionCertificatePolicies* list, uint32_t policy, uint32_t index, Fact& qualifiers) {
  CountedOid type;
  uint32_t length = 0;
  uint32_t status = GetExtensionPolicyQualifier(list, policy, index, type.octets, &type.length, nullptr, &length);
  if (status != TESSEL_OK) return status;
  Bytes qualifier(length);
  type.length = sizeof type.octets;
  status = GetExtensionPolicyQualifier(list, policy, index, type.octets, &type.length, qualifier.data(), &length);
  if (status == TESSEL_OK) qualifiers.Append(QualifierFact(type.Content(), qualifier));
  return status;
}

uint32_t ReadPolicy(const ExtensionCertificatePolicies* list, uint32_t index, Fact& policies) {
  CountedOid policy;
  uint32_t count = 0;
  uint32_t status = GetExtensionPolicyInformation(list, index, policy.octets, &policy.length);
  if (status == TESSEL_OK) status = GetExtensionPolicyQualifiersCount(list, index, &count);
  if (status != TESSEL_OK) return status;
  Fact fact = OidFact(policy.Content());
  Fact qualifiers = Fact::List();
  for (uint32_t i = 0; i < count; ++i) {
    status = ReadQualifier(list, index, i, qualifiers);
    if (status != TESSEL_OK) return status;
  }
  if (count != 0) fact.Add("qualifiers", {}, std::move(qualifiers));
  policies.Append(std::move(fact));
  return TESSEL_OK;
}

}  // namespace

uint32_t ReadKeyUsage(Octets value, Fact& fact) {
  uint32_t bits = 0;
  const uint32_t status = DecodeExtensionKeyUsage(value.data(), SizeOf(value), &bits);
  fact = NamedBitsFact(bits, kKeyUsages);
  return status;
}

uint32_t ReadNetscapeCertificateType(Octets value, Fact& fact) {
  uint32_t bits = 0;
  const uint32_t status = DecodeExtensionNetscapeCertificateType(value.data(), SizeOf(value), &bits);
  fact = NamedBitsFact(bits, kNetscapeTypes);
  return status;
}

uint32_t ReadExtendedKeyUsage(Octets value, Fact& fact) {
  Owned<ExtensionExtendedKeyUsage> list(FreeExtensionExtendedKeyUsage);
  fact = Fact::List();
  const auto read = [&](uint32_t index) {
    CountedOid purpose;
    const uint32_t status = GetExtensionExtendedKeyUsage(list.Get(), index, purpose.octets, &purpose.length);
    fact.Append(OidFact(purpose.Content()));
    return status;
  };
  const uint32_t status =
      ForEach(value, list, DecodeExtensionExtendedKeyUsage, GetExtensionExtendedKeyUsageCount, read);
  fact.TellIfEmpty();
  return status;
}

uint32_t ReadBasicConstraints(Octets value, Fact& fact) {
  uint8_t ca = 0;
  uint32_t pathLength = 0;
  const uint32_t status = DecodeExtensionBasicConstraints(value.data(), SizeOf(value), &ca, &pathLength);
  fact = Fact::Object();
  fact.Add("ca", "CA", Fact::Flag(ca != 0));
  if (pathLength != kNoPathLength) {
    fact.Add("pathLength", "Path length", Fact::Of(std::to_string(pathLength), int64_t{pathLength}));
  }
  return status;
}

uint32_t ReadSubjectKeyIdentifier(Octets value, Fact& fact) {
  Bytes identifier;
  const uint32_t status = Fetch(identifier, [value](uint8_t* buffer, uint32_t* length) {
    return DecodeExtensionSubjectKeyIdentifier(value.data(), SizeOf(value), buffer, length);
  });
  fact = HexFact(identifier);
  return status;
}

uint32_t ReadAuthorityKeyIdentifier(Octets value, Fact& fact) {
  // No field is longer than the value.
  Bytes identifier(value.size());
  Bytes serial(value.size());
  uint32_t identifierLength = SizeOf(value);
  uint32_t serialLength = SizeOf(value);
  Owned<X509GeneralNames> issuer(FreeX509GeneralNames);
  const uint32_t status = DecodeExtensionAuthorityKeyIdentifier(
      value.data(), SizeOf(value), identifier.data(), &identifierLength, issuer.Out(), serial.data(), &serialLength);
  if (status != TESSEL_OK) return status;
  fact = Fact::Object();
  if (identifierLength != 0) fact.Add("keyId", "Key ID", HexFact(Octets(identifier).first(identifierLength)));
  if (issuer.Get() != nullptr) fact.Add("issuer", "Issuer", GeneralNamesFact(issuer.Get()));
  if (serialLength != 0) {
    const std::string text = SerialNumberText(Octets(serial).first(serialLength));
    fact.Add("serialNumber", "Serial number", Fact::Of(text, text));
  }
  fact.TellIfEmpty();
  return status;
}

uint32_t ReadGeneralNames(Octets value, Fact& fact) {
  Owned<X509GeneralNames> names(FreeX509GeneralNames);
  const uint32_t status = DecodeX509GeneralNames(value.data(), SizeOf(value), names.Out());
  fact = GeneralNamesFact(names.Get());
  return status;
}

uint32_t ReadInformationAccess(Octets value, Fact& fact) {
  Owned<ExtensionAuthorityInformationAccess> list(FreeExtensionAuthorityInformationAccess);
  fact = Fact::List();
  const auto read = [&](uint32_t index) {
    CountedOid method;
    X509GeneralName* location = nullptr;
    const uint32_t status =
        GetExtensionAuthorityInformationAccess(list.Get(), index, method.octets, &method.length, &location);
    Fact methodFact = OidFact(method.Content());
    Fact access = Fact::Object();
    const std::string label = methodFact.text;
    access.Hide("method", std::move(methodFact));
    access.Add("location", label, Unlabelled(GeneralNameFact(location)));
    fact.Append(std::move(access));
    return status;
  };
  const uint32_t status = ForEach(value, list, DecodeExtensionAuthorityInformationAccess,
                                  GetExtensionAuthorityInformationAccessCount, read);
  fact.TellIfEmpty();
  return status;
}

// By the descriptor, for times that the typed function does not take.
uint32_t ReadPrivateKeyUsagePeriod(Octets value, Fact& fact) {
  Tree period(ExtensionPrivateKeyUsagePeriodItem);
  const uint32_t status = period.Decode(value);
  fact = Fact::Object();
  AddTime(fact, "notBefore", "Valid from", Slot(period.Root(), kNotBefore));
  AddTime(fact, "notAfter", "Valid until", Slot(period.Root(), kNotAfter));
  fact.TellIfEmpty();
  return status;
}

uint32_t ReadCertificatePolicies(Octets value, Fact& fact) {
  Owned<ExtensionCertificatePolicies> list(FreeExtensionCertificatePolicies);
  fact = Fact::List();
  const auto read = [&](uint32_t index) { return ReadPolicy(list.Get(), index, fact); };
  const uint32_t status =
      ForEach(value, list, DecodeExtensionCertificatePolicies, GetExtensionPolicyInformationCount, read);
  fact.TellIfEmpty();
  return status;
}

}  // namespace tool
