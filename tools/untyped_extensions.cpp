// Values that the library has no functions for.
#include <string>
#include <string_view>
#include <utility>

#include "concat.h"
#include "describe_names.h"
#include "describe_values.h"
#include "descriptors.h"
#include "extension_readers.h"
#include "library.h"
#include "nodes.h"
#include "tessel/tessel.h"

namespace tool {
namespace {

constexpr Asn1Item kAny = Primitive(TESSEL_KIND_ANY);
constexpr Asn1Item kInteger = Primitive(TESSEL_KIND_INTEGER);
constexpr Asn1Item kOid = Primitive(TESSEL_KIND_OBJECT_IDENTIFIER);
constexpr Asn1Item kUtf8String = Primitive(TESSEL_KIND_UTF8_STRING);

// PolicyMappings ::= SEQUENCE OF SEQUENCE { issuerDomainPolicy OBJECT IDENTIFIER, subjectDomainPolicy ... }
constexpr Members<2> kPolicyMappingMembers = {&kOid, &kOid};
constexpr Asn1Item kPolicyMapping = Sequence(kPolicyMappingMembers);
constexpr Members<1> kPolicyMappingsElement = {&kPolicyMapping};
constexpr Asn1Item kPolicyMappings = ListOf(TESSEL_KIND_SEQUENCE_OF, kPolicyMappingsElement);
enum PolicyMappingSlot : unsigned { kIssuerPolicy, kSubjectPolicy };

// PolicyConstraints ::= SEQUENCE {
//   requireExplicitPolicy [0] IMPLICIT INTEGER OPTIONAL,
//   inhibitPolicyMapping  [1] IMPLICIT INTEGER OPTIONAL }
constexpr Asn1Item kRequireItem = Optional(Implicit(0, kInteger));
constexpr Asn1Item kInhibitItem = Optional(Implicit(1, kInteger));
constexpr Members<2> kPolicyConstraintsMembers = {&kRequireItem, &kInhibitItem};
constexpr Asn1Item kPolicyConstraints = Sequence(kPolicyConstraintsMembers);
enum PolicyConstraintsSlot : unsigned { kRequireExplicitPolicy, kInhibitPolicyMapping };

// NameConstraints ::= SEQUENCE {
//   permittedSubtrees [0] IMPLICIT SEQUENCE OF GeneralSubtree OPTIONAL,
//   excludedSubtrees  [1] IMPLICIT SEQUENCE OF GeneralSubtree OPTIONAL }
// GeneralSubtree ::= SEQUENCE {
//   base    GeneralName,
//   minimum [0] IMPLICIT INTEGER DEFAULT 0,
//   maximum [1] IMPLICIT INTEGER OPTIONAL }
const Members<3> kSubtreeMembers = {&X509GeneralNameItem, &kRequireItem, &kInhibitItem};
const Asn1Item kSubtree = Sequence(kSubtreeMembers);
const Members<1> kSubtreesElement = {&kSubtree};
const Asn1Item kSubtrees = ListOf(TESSEL_KIND_SEQUENCE_OF, kSubtreesElement);
const Asn1Item kPermittedItem = Optional(Implicit(0, kSubtrees));
const Asn1Item kExcludedItem = Optional(Implicit(1, kSubtrees));
const Members<2> kNameConstraintsMembers = {&kPermittedItem, &kExcludedItem};
const Asn1Item kNameConstraints = Sequence(kNameConstraintsMembers);
enum NameConstraintsSlot : unsigned { kPermitted, kExcluded };
enum SubtreeSlot : unsigned { kBase, kMinimum, kMaximum };

// SubjectDirectoryAttributes ::= SEQUENCE OF SEQUENCE { type OBJECT IDENTIFIER, values SET OF ANY }
constexpr Members<1> kAttributeValuesElement = {&kAny};
constexpr Asn1Item kAttributeValues = ListOf(TESSEL_KIND_SET_OF, kAttributeValuesElement);
constexpr Members<2> kAttributeMembers = {&kOid, &kAttributeValues};
constexpr Asn1Item kAttribute = Sequence(kAttributeMembers);
constexpr Members<1> kAttributesElement = {&kAttribute};
constexpr Asn1Item kAttributes = ListOf(TESSEL_KIND_SEQUENCE_OF, kAttributesElement);
enum AttributeSlot : unsigned { kAttributeType, kValues };

// Features ::= SEQUENCE OF INTEGER (RFC 7633)
constexpr Members<1> kFeaturesElement = {&kInteger};
constexpr Asn1Item kFeatures = ListOf(TESSEL_KIND_SEQUENCE_OF, kFeaturesElement);

// IssuerSignTool ::= SEQUENCE { signTool UTF8String, cATool UTF8String, signToolCert UTF8String, cAToolCert ... }
constexpr Members<4> kIssuerSignToolMembers = {&kUtf8String, &kUtf8String, &kUtf8String, &kUtf8String};
constexpr Asn1Item kIssuerSignTool = Sequence(kIssuerSignToolMembers);

// How many certificates may come before a constraint holds.
Fact SkipFact(const void* number) {
  Fact count = IntegerFact(Content(number));
  count.text = Concat("after ", count.text, count.text == "1" ? " certificate" : " certificates");
  return count;
}

void AddSkip(Fact& fact, std::string_view key, std::string_view label, const void* number) {
  if (number != nullptr) fact.Add(key, label, SkipFact(number));
}

void AddInteger(Fact& fact, std::string_view key, std::string_view label, const void* number) {
  if (number != nullptr) fact.Add(key, label, IntegerFact(Content(number)));
}

Fact SubtreeFact(const void* subtree) {
  Fact base = SubtreeBaseFact(static_cast<const X509GeneralName*>(Slot(subtree, kBase)));
  Fact fact = Fact::Object(base.text);
  fact.label = base.label;
  fact.Hide("base", std::move(base));
  AddInteger(fact, "minimum", "Minimum", Slot(subtree, kMinimum));
  AddInteger(fact, "maximum", "Maximum", Slot(subtree, kMaximum));
  return fact;
}

void AddSubtrees(Fact& fact, std::string_view key, std::string_view label, const void* subtrees) {
  if (subtrees == nullptr) return;
  Fact list = Fact::List();
  for (const void* subtree : Items(subtrees)) list.Append(SubtreeFact(subtree));
  list.TellIfEmpty();
  fact.Add(key, label, std::move(list));
}

Fact AttributeFact(const void* attribute) {
  Fact fact = OidFact(Content(Slot(attribute, kAttributeType)));
  fact.label = std::exchange(fact.text, {});
  Fact values = Fact::List();
  for (const void* value : Items(Slot(attribute, kValues))) values.Append(ElementFact(Content(value)));
  values.TellIfEmpty();
  fact.Add("values", {}, std::move(values));
  return fact;
}

Fact FeatureFact(const void* number) {
  Fact fact = IntegerFact(Content(number));
  if (fact.text == "5") fact.text = "status_request (5)";
  if (fact.text == "17") fact.text = "status_request_v2 (17)";
  return fact;
}

}  // namespace

uint32_t ReadPolicyMappings(Octets value, Fact& fact) {
  Tree mappings(kPolicyMappings);
  const uint32_t status = mappings.Decode(value);
  fact = Fact::List();
  for (const void* mapping : Items(mappings.Root())) {
    Fact issuer = OidFact(Content(Slot(mapping, kIssuerPolicy)));
    Fact subject = OidFact(Content(Slot(mapping, kSubjectPolicy)));
    Fact pair = Fact::Object(Concat(issuer.text, " -> ", subject.text));
    pair.Hide("issuerDomainPolicy", std::move(issuer));
    pair.Hide("subjectDomainPolicy", std::move(subject));
    fact.Append(std::move(pair));
  }
  fact.TellIfEmpty();
  return status;
}

uint32_t ReadPolicyConstraints(Octets value, Fact& fact) {
  Tree constraints(kPolicyConstraints);
  const uint32_t status = constraints.Decode(value);
  fact = Fact::Object();
  AddSkip(fact, "requireExplicitPolicy", "Require explicit policy", Slot(constraints.Root(), kRequireExplicitPolicy));
  AddSkip(fact, "inhibitPolicyMapping", "Inhibit policy mapping", Slot(constraints.Root(), kInhibitPolicyMapping));
  fact.TellIfEmpty();
  return status;
}

uint32_t ReadInhibitAnyPolicy(Octets value, Fact& fact) {
  Tree number(kInteger);
  const uint32_t status = number.Decode(value);
  fact = SkipFact(number.Root());
  return status;
}

uint32_t ReadNameConstraints(Octets value, Fact& fact) {
  Tree constraints(kNameConstraints);
  const uint32_t status = constraints.Decode(value);
  fact = Fact::Object();
  AddSubtrees(fact, "permitted", "Permitted", Slot(constraints.Root(), kPermitted));
  AddSubtrees(fact, "excluded", "Excluded", Slot(constraints.Root(), kExcluded));
  fact.TellIfEmpty();
  return status;
}

uint32_t ReadSubjectDirectoryAttributes(Octets value, Fact& fact) {
  Tree attributes(kAttributes);
  const uint32_t status = attributes.Decode(value);
  fact = Fact::List();
  for (const void* attribute : Items(attributes.Root())) fact.Append(AttributeFact(attribute));
  fact.TellIfEmpty();
  return status;
}

uint32_t ReadTlsFeatures(Octets value, Fact& fact) {
  Tree features(kFeatures);
  const uint32_t status = features.Decode(value);
  fact = Fact::List();
  for (const void* number : Items(features.Root())) fact.Append(FeatureFact(number));
  fact.TellIfEmpty();
  return status;
}

uint32_t ReadIssuerSignTool(Octets value, Fact& fact) {
  constexpr std::pair<std::string_view, std::string_view> kNames[] = {
      {"signTool", "Signing tool"},
      {"cATool", "CA tool"},
      {"signToolCert", "Signing tool certified"},
      {"cAToolCert", "CA tool certified"},
  };
  Tree tools(kIssuerSignTool);
  const uint32_t status = tools.Decode(value);
  fact = Fact::Object();
  unsigned slot = 0;
  for (const auto& [key, label] : kNames) {
    fact.Add(key, label, StringFact(TESSEL_KIND_UTF8_STRING, Content(Slot(tools.Root(), slot))));
    ++slot;
  }
  return status;
}

uint32_t ReadSingleValue(Octets value, Fact& fact) {
  fact = ElementFact(value);
  return TESSEL_OK;
}

}  // namespace tool
