// Where CRLs are found: cRLDistributionPoints and freshestCRL.
#include <algorithm>
#include <string_view>
#include <utility>

#include "concat.h"
#include "describe_names.h"
#include "describe_values.h"
#include "descriptors.h"
#include "extension_readers.h"
#include "library.h"
#include "nodes.h"

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

void AddFullName(Fact& point, const void* names) {
  if (names != nullptr) point.Add("fullName", {}, GeneralNamesFact(static_cast<const X509GeneralNames*>(names)));
}

void AddRelativeName(Fact& point, Fact name) { point.Add("relativeName", "Relative name", std::move(name)); }

void AddReasons(Fact& point, uint32_t reasons) {
  if (reasons != 0) point.Add("reasons", "Reasons", NamedBitsFact(reasons, kReasons));
}

void AddIssuer(Fact& point, const void* names) {
  if (names == nullptr) return;
  point.Add("crlIssuer", "CRL issuer", GeneralNamesFact(static_cast<const X509GeneralNames*>(names)));
}

uint32_t ReadLibraryPoint(const ExtensionCrlDistributionPoints* list, uint32_t index, Fact& points) {
  X509GeneralNames* fullName = nullptr;
  X509Name* relativeName = nullptr;
  uint32_t reasons = 0;
  X509GeneralNames* issuer = nullptr;
  const uint32_t status = GetExtensionCrlDistributionPoint(list, index, &fullName, &relativeName, &reasons, &issuer);
  if (status != TESSEL_OK) return status;
  Fact point = Fact::Object();
  AddFullName(point, fullName);
  if (relativeName != nullptr) AddRelativeName(point, NameFact(relativeName));
  AddReasons(point, reasons);
  AddIssuer(point, issuer);
  points.Append(std::move(point));
  return TESSEL_OK;
}

uint32_t ReadLibraryPoints(Octets value, Fact& points) {
  Owned<ExtensionCrlDistributionPoints> list(FreeExtensionCrlDistributionPoints);
  const auto read = [&](uint32_t index) { return ReadLibraryPoint(list.Get(), index, points); };
  return ForEach(value, list, DecodeExtensionCrlDistributionPoints, GetExtensionCrlDistributionPointsCount, read);
}

uint32_t NamedBits(Octets octets) {
  uint32_t bits = 0;
  for (size_t i = 0; i < std::min(octets.size(), sizeof bits); ++i) bits |= uint32_t{octets[i]} << (8 * i);
  return bits;
}

Fact StandardPoint(const void* node) {
  Fact point = Fact::Object();
  const Alternative name = Chosen(Slot(node, kDistributionPoint));
  if (name.index == kIsFullName) AddFullName(point, name.value);
  if (name.index == kIsRelativeName) AddRelativeName(point, RelativeNameFact(name.value));
  AddReasons(point, NamedBits(BitStringContent(Slot(node, kPointReasons))));
  AddIssuer(point, Slot(node, kPointCrlIssuer));
  return point;
}

uint32_t ReadStandardPoints(Octets value, Fact& points) {
  Tree tree(kPoints);
  const uint32_t status = tree.Decode(value);
  for (const void* node : Items(tree.Root())) points.Append(StandardPoint(node));
  return status;
}

// Points are told apart by a heading when one of them takes more than a line.
void AddHeadings(Fact& points) {
  const auto isLong = [](const Fact& point) { return point.parts.size() != 1 || point.parts[0].parts.size() > 1; };
  if (points.parts.size() < 2 || std::none_of(points.parts.begin(), points.parts.end(), isLong)) return;
  for (size_t i = 0; i < points.parts.size(); ++i) points.parts[i].label = Concat("Point ", i + 1);
}

}  // namespace

uint32_t ReadCrlDistributionPoints(Octets value, Fact& fact) {
  fact = Fact::List();
  uint32_t status = ReadLibraryPoints(value, fact);
  if (status != TESSEL_OK) {
    fact = Fact::List();
    status = ReadStandardPoints(value, fact);
  }
  for (Fact& point : fact.parts) point.TellIfEmpty();
  fact.TellIfEmpty();
  AddHeadings(fact);
  return status;
}

}  // namespace tool
