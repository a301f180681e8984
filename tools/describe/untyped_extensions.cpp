// Values that the library has no functions for.
#include <string>
#include <string_view>
#include <utility>

#include "describe/descriptors.h"
#include "describe/extension_readers.h"
#include "describe/names.h"
#include "describe/nodes.h"
#include "describe/primitives.h"
#include "texts/concat.h"

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
  Fact base = SubtreeBaseFact(Slot(subtree, kBase));
  Fact fact = Fact::Object(base.text);
  fact.label = base.label;
  fact.Hide("base", std::move(base));
  AddInteger(fact, "minimum", "Minimum", Slot(subtree, kMinimum));
  AddInteger(fact, "maximum", "Maximum", Slot(subtree, kMaximum));
  return fact;
}

void AddSubtrees(Fact& fact, std::string_view key, std::string_view label, const void* subtrees) {
  if (subtrees == nullptr) return;
  Fact list = ListFact(subtrees, SubtreeFact);
  list.TellIfEmpty();
  fact.Add(key, label, std::move(list));
}

Fact AttributeFact(const void* attribute) {
  Fact fact = OidFact(Content(Slot(attribute, kAttributeType)));
  fact.label = std::exchange(fact.text, {});
  Fact values = ListFact(Slot(attribute, kValues), [](const void* value) { return ElementFact(Content(value)); });
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

Fact MappingFact(const void* mapping) {
  Fact issuer = OidFact(Content(Slot(mapping, kIssuerPolicy)));
  Fact subject = OidFact(Content(Slot(mapping, kSubjectPolicy)));
  Fact pair = Fact::Object(Concat(issuer.text, " -> ", subject.text));
  pair.Hide("issuerDomainPolicy", std::move(issuer));
  pair.Hide("subjectDomainPolicy", std::move(subject));
  return pair;
}

Fact MappingsFact(const void* mappings) { return ListFact(mappings, MappingFact); }

Fact PolicyConstraintsFact(const void* constraints) {
  Fact fact = Fact::Object();
  AddSkip(fact, "requireExplicitPolicy", "Require explicit policy", Slot(constraints, kRequireExplicitPolicy));
  AddSkip(fact, "inhibitPolicyMapping", "Inhibit policy mapping", Slot(constraints, kInhibitPolicyMapping));
  return fact;
}

Fact NameConstraintsFact(const void* constraints) {
  Fact fact = Fact::Object();
  AddSubtrees(fact, "permitted", "Permitted", Slot(constraints, kPermitted));
  AddSubtrees(fact, "excluded", "Excluded", Slot(constraints, kExcluded));
  return fact;
}

Fact AttributesFact(const void* attributes) { return ListFact(attributes, AttributeFact); }

Fact FeaturesFact(const void* features) { return ListFact(features, FeatureFact); }

Fact IssuerSignToolFact(const void* tools) {
  constexpr std::pair<std::string_view, std::string_view> kNames[] = {
      {"signTool", "Signing tool"},
      {"cATool", "CA tool"},
      {"signToolCert", "Signing tool certified"},
      {"cAToolCert", "CA tool certified"},
  };
  Fact fact = Fact::Object();
  unsigned slot = 0;
  for (const auto& [key, label] : kNames) {
    fact.Add(key, label, StringFact(TESSEL_KIND_UTF8_STRING, Content(Slot(tools, slot))));
    ++slot;
  }
  return fact;
}

const ExtensionReader kReaders[] = {
    {"2.5.29.9", &kAttributes, AttributesFact},
    {"2.5.29.30", &kNameConstraints, NameConstraintsFact},
    {"2.5.29.33", &kPolicyMappings, MappingsFact},
    {"2.5.29.36", &kPolicyConstraints, PolicyConstraintsFact},
    {"2.5.29.54", &kInteger, SkipFact},
    {"1.3.6.1.5.5.7.1.24", &kFeatures, FeaturesFact},
    {"1.2.643.100.112", &kIssuerSignTool, IssuerSignToolFact},
};

}  // namespace

std::span<const ExtensionReader> UntypedReaders() { return kReaders; }

}  // namespace tool
