// Extensions and what they hold.

#include <string>
#include <string_view>
#include <utility>

#include "describe/describer.h"
#include "describe/primitives.h"
#include "describe/types.h"
#include "tessel/extension_values.hpp"
#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

using namespace tessel;

// ---- Named bits ----

template <const auto& names>
struct NamedBits : Asn1BitString {};
template <const auto& names>
constexpr auto kNamedBits = Primitive<NamedBits<names>>(TESSEL_KIND_BIT_STRING);
template <const auto& names>
Fact FactOf(const NamedBits<names>& bits) {
  return NamedBitsFact(bits, names);
}

constexpr std::string_view kKeyUsages[] = {
    "digitalSignature", "nonRepudiation", "keyEncipherment", "dataEncipherment", "keyAgreement",
    "keyCertSign",      "cRLSign",        "encipherOnly",    "decipherOnly",
};

constexpr std::string_view kNetscapeTypes[] = {
    "sslClient", "sslServer", "smime", "objectSigning", "reserved", "sslCA", "smimeCA", "objectSigningCA",
};

constexpr std::string_view kReasons[] = {
    "unused",          "keyCompromise",      "cACompromise", "affiliationChanged", "superseded", "cessationOfOperation",
    "certificateHold", "privilegeWithdrawn", "aACompromise",
};

Fact ReasonsFact(const Asn1BitString& bits) { return NamedBitsFact(bits, kReasons); }

// ---- Constraints ----

// SkipCerts ::= INTEGER: how many certificates may come before a constraint holds.
struct SkipCerts : Asn1Value {};
constexpr auto kSkipCerts = Primitive<SkipCerts>(TESSEL_KIND_INTEGER);

Fact FactOf(const SkipCerts& number) {
  Fact count = IntegerFact(ContentOf(number));
  count.text = Concat("after ", count.text, count.text == "1" ? " certificate" : " certificates");
  return count;
}

struct PolicyConstraints {
  SkipCerts* requireExplicitPolicy;
  SkipCerts* inhibitPolicyMapping;
};
constexpr auto kPolicyConstraints = Sequence{
    Member<&PolicyConstraints::requireExplicitPolicy, Optional<Implicit<0, kSkipCerts>>>,
    Member<&PolicyConstraints::inhibitPolicyMapping, Optional<Implicit<1, kSkipCerts>>>,
};

// A minimum of 0, the DEFAULT, is told where it is written.
struct GeneralSubtree {
  X509GeneralName* base;
  Asn1Value* minimum;
  Asn1Value* maximum;
};
constexpr auto kGeneralSubtree = Sequence{
    Member<&GeneralSubtree::base, kX509GeneralName>,
    Member<&GeneralSubtree::minimum, Optional<Implicit<0, kInteger>>>,
    Member<&GeneralSubtree::maximum, Optional<Implicit<1, kInteger>>>,
};

constexpr Sayings kSubtreeSayings{Say<&GeneralSubtree::base>{.tell = SubtreeBaseFact}};

Fact FactOf(const GeneralSubtree& subtree) {
  Fact fact = Describer<kSubtreeSayings>::DescribeParts(kGeneralSubtree, subtree);
  Fact& base = fact.parts.front();
  base.hidden = true;
  fact.label = SubtreeBaseFact(*subtree.base).label;
  fact.text = base.text;
  return fact;
}

struct GeneralSubtrees : ListOf<GeneralSubtree> {};
constexpr auto kGeneralSubtrees = SequenceOf<GeneralSubtrees, kGeneralSubtree>();

struct NameConstraints {
  GeneralSubtrees* permittedSubtrees;
  GeneralSubtrees* excludedSubtrees;
};
constexpr auto kNameConstraints = Sequence{
    Member<&NameConstraints::permittedSubtrees, Optional<Implicit<0, kGeneralSubtrees>>>,
    Member<&NameConstraints::excludedSubtrees, Optional<Implicit<1, kGeneralSubtrees>>>,
};

// ---- Other types that the library has no functions for ----

struct PolicyMapping {
  Asn1Oid* issuerDomainPolicy;
  Asn1Oid* subjectDomainPolicy;
};
constexpr auto kPolicyMapping = Sequence{
    Member<&PolicyMapping::issuerDomainPolicy, kOid>,
    Member<&PolicyMapping::subjectDomainPolicy, kOid>,
};

Fact FactOf(const PolicyMapping& mapping) {
  Fact fact = Describer<>::DescribeParts(kPolicyMapping, mapping);
  fact.HideParts();
  fact.text = Concat(fact.parts.front().text, " -> ", fact.parts.back().text);
  return fact;
}

struct PolicyMappings : ListOf<PolicyMapping> {};
constexpr auto kPolicyMappings = SequenceOf<PolicyMappings, kPolicyMapping>();

struct AttributeValues : ListOf<Asn1Any> {};
constexpr auto kAttributeValues = SetOf<AttributeValues, kAny>();

struct Attribute {
  Asn1Oid* type;
  AttributeValues* values;
};
constexpr auto kAttribute = Sequence{Member<&Attribute::type, kOid>, Member<&Attribute::values, kAttributeValues>};

Fact FactOf(const Attribute& attribute) {
  Fact fact = OidFact(ContentOf(*attribute.type));
  fact.label = std::exchange(fact.text, {});
  fact.Add("values", {}, Describer<>::Describe(kAttributeValues, *attribute.values));
  return fact;
}

struct SubjectDirectoryAttributes : ListOf<Attribute> {};
constexpr auto kSubjectDirectoryAttributes = SequenceOf<SubjectDirectoryAttributes, kAttribute>();

// RFC 7633
struct Feature : Asn1Value {};
constexpr auto kFeature = Primitive<Feature>(TESSEL_KIND_INTEGER);

Fact FactOf(const Feature& feature) {
  Fact fact = IntegerFact(ContentOf(feature));
  if (fact.text == "5") fact.text = "status_request (5)";
  if (fact.text == "17") fact.text = "status_request_v2 (17)";
  return fact;
}

struct Features : ListOf<Feature> {};
constexpr auto kFeatures = SequenceOf<Features, kFeature>();

struct IssuerSignTool {
  Asn1Value* signTool;
  Asn1Value* cATool;
  Asn1Value* signToolCert;
  Asn1Value* cAToolCert;
};
constexpr auto kIssuerSignTool = Sequence{
    Member<&IssuerSignTool::signTool, kUtf8String>,
    Member<&IssuerSignTool::cATool, kUtf8String>,
    Member<&IssuerSignTool::signToolCert, kUtf8String>,
    Member<&IssuerSignTool::cAToolCert, kUtf8String>,
};

// ---- What is told in other words ----

constexpr Sayings kSayings{
    Say<&AuthorityKeyIdentifier::keyIdentifier>{.key = "keyId"},
    Say<&AuthorityKeyIdentifier::authorityCertIssuer>{.key = "issuer"},
    Say<&AuthorityKeyIdentifier::authorityCertSerialNumber>{.key = "serialNumber", .tell = SerialNumberFact},
    Say<&BasicConstraints::cA>{.key = "ca"},
    Say<&BasicConstraints::pathLenConstraint>{.key = "pathLength"},
    Say<&DistributionPoint::cRLIssuer>{.key = "crlIssuer"},
    Say<&DistributionPoint::distributionPoint>{.isOfParent = true},
    Say<&DistributionPoint::reasons>{.tell = ReasonsFact},
    Say<DistributionPointName::fullName>{.label = ""},
    Say<DistributionPointName::nameRelativeToCRLIssuer>{.key = "relativeName"},
    Say<&IssuerSignTool::signTool>{.label = "Signing tool"},
    Say<&IssuerSignTool::signToolCert>{.label = "Signing tool certified"},
    Say<&IssuerSignTool::cAToolCert>{.label = "CA tool certified"},
    Say<&NameConstraints::excludedSubtrees>{.key = "excluded"},
    Say<&NameConstraints::permittedSubtrees>{.key = "permitted"},
    Say<&PrivateKeyUsagePeriod::notAfter>{.label = "Valid until"},
    Say<&PrivateKeyUsagePeriod::notBefore>{.label = "Valid from"},
};

// ---- Distribution points ----

// The library's distribution points have a whole name as relative name. In these it is one RDN, as RFC 5280, 4.2.1.13
// has it.
constexpr auto kStandardPointName =
    Choice<DistributionPointName, Alternative<DistributionPointName::fullName, Implicit<0, kX509GeneralNames>>,
           Alternative<DistributionPointName::nameRelativeToCRLIssuer, Implicit<1, kRelativeDistinguishedName>>>();
constexpr auto kStandardPoint = Sequence{
    Member<&DistributionPoint::distributionPoint, Optional<Explicit<0, kStandardPointName>>>,
    Member<&DistributionPoint::reasons, Optional<Implicit<1, kBitString>>>,
    Member<&DistributionPoint::cRLIssuer, Optional<Implicit<2, kX509GeneralNames>>>,
};
struct StandardPoints : ListOf<DistributionPoint> {};
constexpr auto kStandardPoints = SequenceOf<StandardPoints, kStandardPoint>();

bool TakesMoreThanALine(const Fact& point) {
  size_t count = 0;
  return point.parts.size() != 1 || !point.parts.front().VisitParts([&count](const Fact&) { return ++count < 2; });
}

// Points are told apart by a heading when one of them takes more than a line.
template <const auto& item, class List>
Fact PointsFact(const List& list) {
  const auto describe = [](const DistributionPoint& point) { return Describer<kSayings>::Describe(item, point); };
  Fact points = ListFact(list, describe);
  const bool areShort = points.VisitParts([](const Fact& point) { return !TakesMoreThanALine(point); });
  if (list.count < 2 || areShort) return points;
  return Fact::List([=](const FactSink& sink) {
    size_t count = 0;
    return points.VisitParts([&](const Fact& point) {
      Fact headed = point;
      headed.label = Concat("Point ", ++count);
      return sink(headed);
    });
  });
}

Fact FactOf(const StandardPoints& points) { return PointsFact<kStandardPoint>(points); }

// ---- The types by the identifiers of their extensions. Where one has several they are tried in this order. ----

struct ExtensionType {
  std::string_view dotted;
  const Type* type;
};

template <const auto& item>
constexpr const Type* kTypeOf = &kType<item, kSayings>;

constexpr ExtensionType kExtensionTypes[] = {
    {"2.5.29.9", kTypeOf<kSubjectDirectoryAttributes>},
    {"2.5.29.14", kTypeOf<kOctetString>},
    {"2.5.29.15", kTypeOf<kNamedBits<kKeyUsages>>},
    {"2.5.29.16", kTypeOf<kPrivateKeyUsagePeriod>},
    {"2.5.29.17", kTypeOf<kX509GeneralNames>},
    {"2.5.29.18", kTypeOf<kX509GeneralNames>},
    {"2.5.29.19", kTypeOf<kBasicConstraints>},
    {"2.5.29.30", kTypeOf<kNameConstraints>},
    {"2.5.29.31", kTypeOf<kCrlDistributionPoints>},
    {"2.5.29.31", kTypeOf<kStandardPoints>},
    {"2.5.29.32", kTypeOf<kCertificatePolicies>},
    {"2.5.29.33", kTypeOf<kPolicyMappings>},
    {"2.5.29.35", kTypeOf<kAuthorityKeyIdentifier>},
    {"2.5.29.36", kTypeOf<kPolicyConstraints>},
    {"2.5.29.37", kTypeOf<kExtendedKeyUsage>},
    {"2.5.29.46", kTypeOf<kCrlDistributionPoints>},
    {"2.5.29.46", kTypeOf<kStandardPoints>},
    {"2.5.29.54", kTypeOf<kSkipCerts>},
    {"1.3.6.1.5.5.7.1.1", kTypeOf<kAuthorityInformationAccess>},
    {"1.3.6.1.5.5.7.1.11", kTypeOf<kAuthorityInformationAccess>},
    {"1.3.6.1.5.5.7.1.24", kTypeOf<kFeatures>},
    {"1.3.6.1.5.5.7.48.1.5", kTypeOf<kAny>},
    {"1.3.6.1.4.1.11129.2.4.3", kTypeOf<kAny>},
    {"1.3.6.1.4.1.311.20.2", kTypeOf<kAny>},
    {"1.3.6.1.4.1.311.21.1", kTypeOf<kAny>},
    {"2.16.840.1.113730.1.1", kTypeOf<kNamedBits<kNetscapeTypes>>},
    {"2.16.840.1.113730.1.2", kTypeOf<kAny>},
    {"2.16.840.1.113730.1.3", kTypeOf<kAny>},
    {"2.16.840.1.113730.1.4", kTypeOf<kAny>},
    {"2.16.840.1.113730.1.8", kTypeOf<kAny>},
    {"2.16.840.1.113730.1.13", kTypeOf<kAny>},
    {"1.2.643.100.111", kTypeOf<kAny>},
    {"1.2.643.100.112", kTypeOf<kIssuerSignTool>},
    {"1.2.643.100.114", kTypeOf<kAny>},
    {"1.2.643.3.123.3.1", kTypeOf<kAny>},
};

void TellValue(Fact& fact, std::string_view dotted, Octets value) {
  std::string label;
  for (const ExtensionType& known : kExtensionTypes) {
    if (known.dotted != dotted) continue;
    try {
      uint32_t length = 0;
      fact.Add("value", {}, DecodedFact(*known.type, value, &length));
      // Decoders do not look at octets behind the element.
      const Octets trailing = value.subspan(length);
      if (!trailing.empty()) fact.Add("trailing", "Octets behind the value", HexFact(trailing));
      return;
    } catch (const DecodingError& error) {
      label = Concat("Does not decode (", error.Explained().Text(), ')');
    }
  }
  fact.Add("hex", label, HexFact(value));
}

}  // namespace

Fact FactOf(const X509Extension& extension) {
  const bool isCritical = ContentOf(*extension.critical).front() != 0;
  Fact fact = FactOf(*extension.extnID);
  if (isCritical) fact.text += ", critical";
  fact.Hide("critical", isCritical);
  TellValue(fact, OidText(ContentOf(*extension.extnID)), ContentOf(*extension.extnValue));
  return fact;
}

// A URI stands for itself beside the label of its purpose; any other general name is told with its kind.
Fact FactOf(const AccessDescription& access) {
  Fact method = FactOf(*access.accessMethod);
  Fact location = FactOf(*access.accessLocation);
  if (location.label != "URI") location.text = Concat(location.label, ": ", location.text);
  Fact fact = Fact::Object();
  fact.Add("location", method.text, std::move(location));
  fact.Hide("method", std::move(method));
  return fact;
}

Fact FactOf(const ExtensionCrlDistributionPoints& points) { return PointsFact<kDistributionPoint>(points); }

}  // namespace tool
