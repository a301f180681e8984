// Where CRLs are found: cRLDistributionPoints and freshestCRL.
#include <algorithm>
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

constexpr std::string_view kReasons[] = {
    "unused",          "keyCompromise",      "cACompromise", "affiliationChanged", "superseded", "cessationOfOperation",
    "certificateHold", "privilegeWithdrawn", "aACompromise",
};

// The library's distribution points have a whole name as relative name. These are those of RFC 5280, 4.2.1.13, whose
// relative name is one RDN:
//
// DistributionPoint ::= SEQUENCE {
//   distributionPoint [0] EXPLICIT DistributionPointName OPTIONAL,
//   reasons           [1] IMPLICIT BIT STRING OPTIONAL,
//   cRLIssuer         [2] IMPLICIT GeneralNames OPTIONAL }
// DistributionPointName ::= CHOICE {
//   fullName                [0] IMPLICIT GeneralNames,
//   nameRelativeToCRLIssuer [1] IMPLICIT SET OF SEQUENCE { type OBJECT IDENTIFIER, value ANY } }
constexpr Asn1Item kOid = Primitive(TESSEL_KIND_OBJECT_IDENTIFIER);
constexpr Asn1Item kAny = Primitive(TESSEL_KIND_ANY);
constexpr Members<2> kAttributeMembers = {&kOid, &kAny};
constexpr Asn1Item kAttribute = Sequence(kAttributeMembers);
constexpr Members<1> kRelativeNameElement = {&kAttribute};
constexpr Asn1Item kRelativeName = Implicit(1, ListOf(TESSEL_KIND_SET_OF, kRelativeNameElement));
const Members<1> kGeneralNamesElement = {&X509GeneralNameItem};
const Asn1Item kFullName = Implicit(0, ListOf(TESSEL_KIND_SEQUENCE_OF, kGeneralNamesElement));
const Members<2> kPointNameAlternatives = {&kFullName, &kRelativeName};
const Asn1Item kPointName = Optional(Explicit(0, Choice(kPointNameAlternatives)));
constexpr Asn1Item kReasonFlags = Optional(Implicit(1, Primitive(TESSEL_KIND_BIT_STRING)));
const Asn1Item kCrlIssuer = Optional(Implicit(2, ListOf(TESSEL_KIND_SEQUENCE_OF, kGeneralNamesElement)));
const Members<3> kPointMembers = {&kPointName, &kReasonFlags, &kCrlIssuer};
const Asn1Item kPoint = Sequence(kPointMembers);
const Members<1> kPointsElement = {&kPoint};
const Asn1Item kPoints = ListOf(TESSEL_KIND_SEQUENCE_OF, kPointsElement);
enum PointSlot : unsigned { kDistributionPoint, kPointReasons, kPointCrlIssuer };
enum PointNameAlternative : uint32_t { kIsFullName, kIsRelativeName };

Fact PointFact(const void* node, Fact (*describeRelativeName)(const Asn1Choice& name)) {
  Fact point = Fact::Object();
  const auto* name = static_cast<const Asn1Choice*>(Slot(node, kDistributionPoint));
  if (name != nullptr && name->value != nullptr) {
    if (name->index == kIsFullName) point.Add("fullName", {}, GeneralNamesFact(name->value));
    if (name->index == kIsRelativeName) point.Add("relativeName", "Relative name", describeRelativeName(*name));
  }
  Fact reasons = NamedBitsFact(Slot(node, kPointReasons), kReasons);
  if (reasons.HasParts()) point.Add("reasons", "Reasons", std::move(reasons));
  if (const void* issuer = Slot(node, kPointCrlIssuer); issuer != nullptr) {
    point.Add("crlIssuer", "CRL issuer", GeneralNamesFact(issuer));
  }
  point.TellIfEmpty();
  return point;
}

bool TakesMoreThanALine(const Fact& point) {
  size_t count = 0;
  return point.parts.size() != 1 || !point.parts.front().VisitParts([&count](const Fact&) { return ++count < 2; });
}

// Points are told apart by a heading when one of them takes more than a line.
Fact PointsFact(const void* list, Fact (*describeRelativeName)(const Asn1Choice& name)) {
  const auto describe = [=](const void* node) { return PointFact(node, describeRelativeName); };
  Fact points = ListFact(list, describe);
  const bool areShort = points.VisitParts([](const Fact& point) { return !TakesMoreThanALine(point); });
  if (Items(list).size() < 2 || areShort) return points;
  return Fact::List([=](const FactSink& sink) {
    size_t count = 0;
    return points.VisitParts([&](const Fact& point) {
      Fact headed = point;
      headed.label = Concat("Point ", ++count);
      return sink(headed);
    });
  });
}

Fact LibraryPointsFact(const void* list) {
  return PointsFact(list, [](const Asn1Choice& name) { return NameFact(name.value); });
}

Fact StandardPointsFact(const void* list) { return PointsFact(list, RelativeNameFact); }

const ExtensionReader kReaders[] = {
    {"2.5.29.31", &ExtensionCrlDistributionPointsItem, LibraryPointsFact},
    {"2.5.29.31", &kPoints, StandardPointsFact},
    {"2.5.29.46", &ExtensionCrlDistributionPointsItem, LibraryPointsFact},
    {"2.5.29.46", &kPoints, StandardPointsFact},
};

}  // namespace

std::span<const ExtensionReader> DistributionPointReaders() { return kReaders; }

}  // namespace tool
