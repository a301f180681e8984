#include "describe/extension_readers.h"

#include <string>
#include <string_view>
#include <utility>

#include "asn1/decoding.h"
#include "describe/descriptors.h"
#include "describe/names.h"
#include "describe/nodes.h"
#include "describe/primitives.h"
#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

constexpr std::string_view kKeyUsages[] = {
    "digitalSignature", "nonRepudiation", "keyEncipherment", "dataEncipherment", "keyAgreement",
    "keyCertSign",      "cRLSign",        "encipherOnly",    "decipherOnly",
};

constexpr std::string_view kNetscapeTypes[] = {
    "sslClient", "sslServer", "smime", "objectSigning", "reserved", "sslCA", "smimeCA", "objectSigningCA",
};

constexpr Asn1Item kBits = Primitive(TESSEL_KIND_BIT_STRING);
constexpr Asn1Item kOctets = Primitive(TESSEL_KIND_OCTET_STRING);

enum ConstraintsSlot : unsigned { kCa, kPathLength };
enum KeyIdentifierSlot : unsigned { kKeyId, kIssuer, kSerialNumber };
enum AccessSlot : unsigned { kMethod, kLocation };
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
enum PolicySlot : unsigned { kPolicyIdentifier, kQualifiers };
enum QualifierSlot : unsigned { kQualifierId, kQualifier };

Fact NumberFact(const void* number) { return IntegerFact(Content(number)); }

Fact NoticeReferenceFact(const void* reference) {
  Fact organization = ElementFact(Content(Slot(reference, kOrganization)));
  Fact fact = Fact::Object(organization.text);
  const void* numbers = Slot(reference, kNoticeNumbers);
  for (const void* number : Items(numbers)) fact.text += Concat(", ", IntegerText(Content(number)));
  fact.Hide("organization", std::move(organization));
  fact.Hide("noticeNumbers", ListFact(numbers, NumberFact));
  return fact;
}

Fact UserNoticeFact(const void* notice) {
  Fact fact = Fact::Object();
  if (const void* explicitText = Slot(notice, kExplicitText); explicitText != nullptr) {
    Fact text = ElementFact(Content(explicitText));
    fact.text = text.text;
    fact.Hide("explicitText", std::move(text));
  }
  if (const void* reference = Slot(notice, kNoticeRef); reference != nullptr) {
    fact.Add("noticeRef", "Reference", NoticeReferenceFact(reference));
  }
  fact.TellIfEmpty();
  return fact;
}

Fact ReadUserNotice(Octets encoded) {
  try {
    return DecodedFact(kUserNotice, encoded, UserNoticeFact);
  } catch (const DecodingError&) {
    return UnreadFact(encoded);
  }
}

Fact QualifierFact(const void* node) {
  const Octets qualifier = Content(Slot(node, kQualifier));
  Fact fact = OidFact(Content(Slot(node, kQualifierId)));
  const std::string name = std::exchange(fact.text, {});
  const std::string dotted = OidText(Content(Slot(node, kQualifierId)));
  if (dotted == "1.3.6.1.5.5.7.2.1") {
    fact.Add("value", "CPS", ElementFact(qualifier));
  } else if (dotted == "1.3.6.1.5.5.7.2.2") {
    fact.Add("value", "User notice", ReadUserNotice(qualifier));
  } else {
    fact.Add("value", name, UnreadFact(qualifier));
  }
  return fact;
}

Fact PolicyFact(const void* policy) {
  Fact fact = OidFact(Content(Slot(policy, kPolicyIdentifier)));
  const void* qualifiers = Slot(policy, kQualifiers);
  if (!Items(qualifiers).empty()) fact.Add("qualifiers", {}, ListFact(qualifiers, QualifierFact));
  return fact;
}

Fact PoliciesFact(const void* policies) { return ListFact(policies, PolicyFact); }

// ---- Other values ----

Fact KeyUsageFact(const void* bits) { return NamedBitsFact(bits, kKeyUsages); }

Fact NetscapeTypeFact(const void* bits) { return NamedBitsFact(bits, kNetscapeTypes); }

Fact PurposesFact(const void* purposes) {
  return ListFact(purposes, [](const void* purpose) { return OidFact(Content(purpose)); });
}

Fact ConstraintsFact(const void* constraints) {
  Fact fact = Fact::Object();
  fact.Add("ca", "CA", Fact::Flag(Content(Slot(constraints, kCa)).front() != 0));
  if (const void* pathLength = Slot(constraints, kPathLength); pathLength != nullptr) {
    fact.Add("pathLength", "Path length", IntegerFact(Content(pathLength)));
  }
  return fact;
}

Fact SubjectKeyFact(const void* identifier) { return HexFact(Content(identifier)); }

Fact AuthorityKeyFact(const void* identifier) {
  Fact fact = Fact::Object();
  if (const void* keyId = Slot(identifier, kKeyId); keyId != nullptr) {
    fact.Add("keyId", "Key ID", HexFact(Content(keyId)));
  }
  if (const void* issuer = Slot(identifier, kIssuer); issuer != nullptr) {
    fact.Add("issuer", "Issuer", GeneralNamesFact(issuer));
  }
  if (const void* number = Slot(identifier, kSerialNumber); number != nullptr) {
    fact.Add("serialNumber", "Serial number", SerialNumberFact(Content(number)));
  }
  return fact;
}

Fact AccessFact(const void* description) {
  Fact method = OidFact(Content(Slot(description, kMethod)));
  Fact access = Fact::Object();
  access.Add("location", method.text, Unlabelled(GeneralNameFact(Slot(description, kLocation))));
  access.Hide("method", std::move(method));
  return access;
}

Fact AccessesFact(const void* descriptions) { return ListFact(descriptions, AccessFact); }

Fact PeriodFact(const void* period) {
  Fact fact = Fact::Object();
  AddTime(fact, "notBefore", "Valid from", Slot(period, kNotBefore));
  AddTime(fact, "notAfter", "Valid until", Slot(period, kNotAfter));
  return fact;
}

const ExtensionReader kReaders[] = {
    {"2.5.29.14", &kOctets, SubjectKeyFact},
    {"2.5.29.15", &kBits, KeyUsageFact},
    {"2.5.29.16", &ExtensionPrivateKeyUsagePeriodItem, PeriodFact},
    {"2.5.29.17", &X509GeneralNamesItem, GeneralNamesFact},
    {"2.5.29.18", &X509GeneralNamesItem, GeneralNamesFact},
    {"2.5.29.19", &ExtensionBasicConstraintsItem, ConstraintsFact},
    {"2.5.29.32", &ExtensionCertificatePoliciesItem, PoliciesFact},
    {"2.5.29.35", &ExtensionAuthorityKeyIdentifierItem, AuthorityKeyFact},
    {"2.5.29.37", &ExtensionExtendedKeyUsageItem, PurposesFact},
    {"1.3.6.1.5.5.7.1.1", &ExtensionAuthorityInformationAccessItem, AccessesFact},
    {"1.3.6.1.5.5.7.1.11", &ExtensionAuthorityInformationAccessItem, AccessesFact},
    {"1.3.6.1.5.5.7.48.1.5", nullptr, nullptr},
    {"1.3.6.1.4.1.11129.2.4.3", nullptr, nullptr},
    {"1.3.6.1.4.1.311.20.2", nullptr, nullptr},
    {"1.3.6.1.4.1.311.21.1", nullptr, nullptr},
    {"2.16.840.1.113730.1.1", &kBits, NetscapeTypeFact},
    {"2.16.840.1.113730.1.2", nullptr, nullptr},
    {"2.16.840.1.113730.1.3", nullptr, nullptr},
    {"2.16.840.1.113730.1.4", nullptr, nullptr},
    {"2.16.840.1.113730.1.8", nullptr, nullptr},
    {"2.16.840.1.113730.1.13", nullptr, nullptr},
    {"1.2.643.100.111", nullptr, nullptr},
    {"1.2.643.100.114", nullptr, nullptr},
    {"1.2.643.3.123.3.1", nullptr, nullptr},
};

}  // namespace

std::span<const ExtensionReader> StandardReaders() { return kReaders; }

}  // namespace tool
