#include "tessel/extension_values.hpp"

#include "engine/buffer.h"
#include "engine/codec.h"
#include "engine/nodes.h"
#include "engine/path.h"
#include "engine/primitives.h"
#include "engine/tree_owner.h"
#include "tessel/nodes.hpp"
#include "values/time.h"

using namespace tessel;

constinit const Asn1Item ExtensionBasicConstraintsItem = kBasicConstraints;
constinit const Asn1Item ExtensionAuthorityKeyIdentifierItem = kAuthorityKeyIdentifier;
constinit const Asn1Item ExtensionPrivateKeyUsagePeriodItem = kPrivateKeyUsagePeriod;
constinit const Asn1Item ExtensionIssuingDistributionPointItem = kIssuingDistributionPoint;

namespace tessel {
namespace {

constexpr uint32_t kNoPathLength = 0xFFFFFFFF;

constexpr Path<&BasicConstraints::cA> kCa;
constexpr Path<&BasicConstraints::pathLenConstraint> kPathLength;

Status EncodeNamedBits(uint32_t flags, uint8_t* buffer, uint32_t* length, Caller at = {}) {
  return Encode(kBitString, &NamedBitsNode(flags).Node(), buffer, length, at);
}

Status DecodeNamedBits(const uint8_t* data, uint32_t size, uint32_t* flags, Caller at = {}) {
  if (flags == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  TreeOwner bits(kBitString);
  TRY(Decode(kBitString, data, size, bits.Out(), at));
  *flags = NamedBitsOf(*bits.Get());
  return Status();
}

// Delivers the content of a member. A member that is absent has the length 0.
Status DeliverOptional(const Asn1Value* field, uint8_t* buffer, uint32_t* length, Caller at = {}) {
  return Deliver(field == nullptr ? Octets() : ContentOf(*field), buffer, length, at);
}

// DEVIATES: a time that is absent leaves its record as it was, which callers rely on.
Status ReadUsageTime(const Asn1Value* field, LibraryTime* time, Caller at = {}) {
  return field == nullptr ? Status() : ReadGeneralizedTime(*field, time, at);
}

// What callers get for the name of a decoded issuing distribution point: a pointer to an empty list. The list is kept
// off the heap's alignment, so that releasing it does nothing.
// DEVIATES: a name comes back as a pointer that tells its presence alone: the tree that holds it ends with the call,
// and callers only ask for null.
template <class List>
struct alignas(kHeapAlignment) PresenceMark {
  void* offTheHeapsAlignment = nullptr;
  List list{{kEmptyList}};
};
template <class List>
constexpr PresenceMark<List> kPresent;

// The type of a point with reasons. They have the tag [1] of onlyContainsUserCerts, which therefore gets a tag here
// that no value has.
constexpr int32_t kNeverUsed = INT32_MAX;
constexpr const auto& kIssuingDistributionPointWithReasons =
    kIssuingDistributionPointWith<Default<Implicit<kNeverUsed, kBoolean>, kFalse>>;

Status DecodeIssuingDistributionPoint(const uint8_t* data, uint32_t size, TreeOwner<IssuingDistributionPoint>& point,
                                      Caller at = {}) {
  Status status = Decode(kIssuingDistributionPoint, data, size, point.Out(), at);
  if (status != TESSEL_INVALID_CONTENT) return status;
  Status withReasons = Decode(kIssuingDistributionPointWithReasons, data, size, point.Out(), at);
  if (withReasons == TESSEL_OUT_OF_MEMORY) return withReasons;
  // A content of one octet is a flag with invalid content, rather than reasons without a bit.
  const Asn1BitString* reasons = withReasons.Ok() ? point.Get()->onlySomeReasons : nullptr;
  return reasons != nullptr && reasons->length != 0 ? withReasons : status;
}

void TellFlag(const Asn1Value* field, uint8_t* flag, uint32_t* present) {
  const Octets content = field == nullptr ? Octets() : ContentOf(*field);
  *present = content.empty() ? 0 : 1;
  if (!content.empty()) *flag = content[0];
}

// The member for a flag; null, which leaves it out, when it is not present.
Asn1Value* FlagOrNull(uint8_t flag, uint32_t present) { return present == 0 ? nullptr : BorrowBoolean(flag != 0); }

}  // namespace
}  // namespace tessel

// Values of one member.

uint32_t TESSEL_CALL EncodeExtensionKeyUsage(uint32_t usage, uint8_t* buffer, uint32_t* length) {
  return EncodeNamedBits(usage, buffer, length);
}

uint32_t TESSEL_CALL DecodeExtensionKeyUsage(const uint8_t* data, uint32_t size, uint32_t* usage) {
  return DecodeNamedBits(data, size, usage);
}

uint32_t TESSEL_CALL EncodeExtensionNetscapeCertificateType(uint32_t type, uint8_t* buffer, uint32_t* length) {
  return EncodeNamedBits(type, buffer, length);
}

uint32_t TESSEL_CALL DecodeExtensionNetscapeCertificateType(const uint8_t* data, uint32_t size, uint32_t* type) {
  return size == 0 ? Fail(TESSEL_INVALID_ARGUMENT) : DecodeNamedBits(data, size, type);
}

uint32_t TESSEL_CALL EncodeExtensionSubjectKeyIdentifier(const uint8_t* keyIdentifier, uint32_t size, uint8_t* buffer,
                                                         uint32_t* length) {
  return EncodeAsn1PrimitiveValue(TESSEL_KIND_OCTET_STRING, keyIdentifier, size, buffer, length);
}

uint32_t TESSEL_CALL DecodeExtensionSubjectKeyIdentifier(const uint8_t* data, uint32_t size, uint8_t* buffer,
                                                         uint32_t* length) {
  return DecodeAsn1PrimitiveValue(TESSEL_KIND_OCTET_STRING, data, size, buffer, length);
}

uint32_t TESSEL_CALL EncodeExtensionCrlNumber(const uint8_t* number, uint32_t size, uint8_t* buffer, uint32_t* length) {
  return EncodeAsn1PrimitiveValue(TESSEL_KIND_INTEGER, number, size, buffer, length);
}

uint32_t TESSEL_CALL DecodeExtensionCrlNumber(const uint8_t* data, uint32_t size, uint8_t* buffer, uint32_t* length) {
  return DecodeAsn1PrimitiveValue(TESSEL_KIND_INTEGER, data, size, buffer, length);
}

uint32_t TESSEL_CALL EncodeExtensionDeltaCrlIndicator(const uint8_t* number, uint32_t size, uint8_t* buffer,
                                                      uint32_t* length) {
  return EncodeExtensionCrlNumber(number, size, buffer, length);
}

uint32_t TESSEL_CALL DecodeExtensionDeltaCrlIndicator(const uint8_t* data, uint32_t size, uint8_t* buffer,
                                                      uint32_t* length) {
  return DecodeExtensionCrlNumber(data, size, buffer, length);
}

uint32_t TESSEL_CALL EncodeExtensionReasonCode(int32_t reason, uint8_t* buffer, uint32_t* length) {
  return Encode(kEnumerated, &NumberNode(TESSEL_KIND_ENUMERATED, reason).Node(), buffer, length);
}

uint32_t TESSEL_CALL DecodeExtensionReasonCode(const uint8_t* data, uint32_t size, int32_t* reason) {
  if (reason == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  TreeOwner code(kEnumerated);
  TRY(Decode(kEnumerated, data, size, code.Out()));
  return ContentOf(*code.Get()).empty() ? Fail(TESSEL_MALFORMED) : ReadInt32(*code.Get(), reason);
}

uint32_t TESSEL_CALL EncodeExtensionInvalidityDate(const LibraryTime* time, uint8_t* buffer, uint32_t* length) {
  return EncodeAsn1GeneralizedTime(time, buffer, length);
}

uint32_t TESSEL_CALL DecodeExtensionInvalidityDate(const uint8_t* data, uint32_t size, LibraryTime* time) {
  return DecodeAsn1GeneralizedTime(data, size, time);
}

// SEQUENCEs of a few members.

uint32_t TESSEL_CALL EncodeExtensionBasicConstraints(uint32_t cA, uint32_t pathLength, uint8_t* buffer,
                                                     uint32_t* length) {
  NumberNode number(TESSEL_KIND_INTEGER, static_cast<int32_t>(pathLength));
  const BasicConstraints constraints{BorrowBoolean(cA != 0), pathLength == kNoPathLength ? nullptr : number.Member()};
  return Encode(kBasicConstraints, &constraints, buffer, length);
}

uint32_t TESSEL_CALL DecodeExtensionBasicConstraints(const uint8_t* data, uint32_t size, uint8_t* cA,
                                                     uint32_t* pathLength) {
  if (cA == nullptr || pathLength == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  TreeOwner constraints(kBasicConstraints);
  TRY(Decode(kBasicConstraints, data, size, constraints.Out()));
  Asn1Value* flag = nullptr;
  TRY(kCa.In(constraints.Get()).Load(flag));
  int32_t number = -1;
  if (constraints->pathLenConstraint != nullptr) TRY(GetNumber(kPathLength.In(constraints.Get()), &number));
  // DEVIATES: TRUE is 0xFF, and 1 where a BOOLEAN is read alone: programs compare it.
  *cA = flag->data[0];
  *pathLength = static_cast<uint32_t>(number);
  return Status();
}

uint32_t TESSEL_CALL EncodeExtensionAuthorityKeyIdentifier(const uint8_t* keyIdentifier, uint32_t keyIdentifierSize,
                                                           const X509GeneralNames* names, const uint8_t* serial,
                                                           uint32_t serialSize, uint8_t* buffer, uint32_t* length) {
  Asn1Value key = Borrow(TESSEL_KIND_OCTET_STRING, {keyIdentifier, keyIdentifierSize});
  Asn1Value number = Borrow(TESSEL_KIND_INTEGER, {serial, serialSize});
  const AuthorityKeyIdentifier identifier{NullIfEmpty(key), const_cast<X509GeneralNames*>(names), NullIfEmpty(number)};
  return Encode(kAuthorityKeyIdentifier, &identifier, buffer, length);
}

uint32_t TESSEL_CALL DecodeExtensionAuthorityKeyIdentifier(const uint8_t* data, uint32_t size, uint8_t* keyIdentifier,
                                                           uint32_t* keyIdentifierLength, X509GeneralNames** names,
                                                           uint8_t* serial, uint32_t* serialLength) {
  if (AnyNull(keyIdentifierLength, names, serialLength)) return Fail(TESSEL_INVALID_ARGUMENT);
  *names = nullptr;
  TreeOwner identifier(kAuthorityKeyIdentifier);
  TRY(Decode(kAuthorityKeyIdentifier, data, size, identifier.Out()));
  const Status keyStatus = DeliverOptional(identifier->keyIdentifier, keyIdentifier, keyIdentifierLength);
  const Status serialStatus = DeliverOptional(identifier->authorityCertSerialNumber, serial, serialLength);
  TRY(FirstFailure(keyStatus, serialStatus));
  if (identifier->authorityCertIssuer == nullptr) return Status();
  return Copy(kX509GeneralNames, identifier->authorityCertIssuer, names);
}

uint32_t TESSEL_CALL EncodeExtensionPrivateKeyUsagePeriod(const LibraryTime* notBefore, const LibraryTime* notAfter,
                                                          uint8_t* buffer, uint32_t* length) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  TimeNode start;
  TimeNode end;
  PrivateKeyUsagePeriod period{};
  if (notBefore != nullptr) {
    TRY(start.SetGeneralized(notBefore));
    period.notBefore = start.AsValue();
  }
  if (notAfter != nullptr) {
    TRY(end.SetGeneralized(notAfter));
    period.notAfter = end.AsValue();
  }
  return Encode(kPrivateKeyUsagePeriod, &period, buffer, length);
}

uint32_t TESSEL_CALL DecodeExtensionPrivateKeyUsagePeriod(const uint8_t* data, uint32_t size, LibraryTime* notBefore,
                                                          LibraryTime* notAfter) {
  if (size == 0 || notBefore == nullptr || notAfter == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  TreeOwner period(kPrivateKeyUsagePeriod);
  TRY(Decode(kPrivateKeyUsagePeriod, data, size, period.Out()));
  TRY(ReadUsageTime(period->notBefore, notBefore));
  return ReadUsageTime(period->notAfter, notAfter);
}

uint32_t TESSEL_CALL EncodeExtensionIssuingDistributionPoint(
    const X509GeneralNames* fullName, const X509Name* relativeName, uint8_t onlyContainsUserCerts,
    uint32_t hasOnlyContainsUserCerts, uint8_t onlyContainsCACerts, uint32_t hasOnlyContainsCACerts,
    uint32_t onlySomeReasons, uint32_t hasOnlySomeReasons, uint8_t indirectCRL, uint32_t hasIndirectCRL,
    uint8_t onlyContainsAttributeCerts, uint32_t hasOnlyContainsAttributeCerts, uint8_t* buffer, uint32_t* length) {
  DistributionPointName name{{DistributionPointName::fullName, const_cast<X509GeneralNames*>(fullName)}};
  if (fullName == nullptr)
    name = {{DistributionPointName::nameRelativeToCRLIssuer, const_cast<X509Name*>(relativeName)}};
  NamedBitsNode reasons(onlySomeReasons);
  const IssuingDistributionPoint point{
      name.value == nullptr ? nullptr : &name,
      FlagOrNull(onlyContainsUserCerts, hasOnlyContainsUserCerts),
      FlagOrNull(onlyContainsCACerts, hasOnlyContainsCACerts),
      hasOnlySomeReasons == 0 ? nullptr : reasons.Member(),
      FlagOrNull(indirectCRL, hasIndirectCRL),
      FlagOrNull(onlyContainsAttributeCerts, hasOnlyContainsAttributeCerts),
  };
  return Encode<IssuingDistributionPoint>(kIssuingDistributionPoint, &point, buffer, length);
}

uint32_t TESSEL_CALL DecodeExtensionIssuingDistributionPoint(
    const uint8_t* data, uint32_t size, const X509GeneralNames** fullName, const X509Name** relativeName,
    uint8_t* onlyContainsUserCerts, uint32_t* hasOnlyContainsUserCerts, uint8_t* onlyContainsCACerts,
    uint32_t* hasOnlyContainsCACerts, uint32_t* onlySomeReasons, uint32_t* hasOnlySomeReasons, uint8_t* indirectCRL,
    uint32_t* hasIndirectCRL, uint8_t* onlyContainsAttributeCerts, uint32_t* hasOnlyContainsAttributeCerts) {
  if (size == 0 || AnyNull(fullName, relativeName, onlyContainsUserCerts, hasOnlyContainsUserCerts, onlyContainsCACerts,
                           hasOnlyContainsCACerts, onlySomeReasons, hasOnlySomeReasons, indirectCRL, hasIndirectCRL,
                           onlyContainsAttributeCerts, hasOnlyContainsAttributeCerts)) {
    return Fail(TESSEL_INVALID_ARGUMENT);
  }
  *fullName = nullptr;
  *relativeName = nullptr;
  *hasOnlyContainsUserCerts = *hasOnlyContainsCACerts = *hasOnlySomeReasons = *hasIndirectCRL =
      *hasOnlyContainsAttributeCerts = 0;
  TreeOwner<IssuingDistributionPoint> point(kIssuingDistributionPoint);
  TRY(DecodeIssuingDistributionPoint(data, size, point));
  if (const DistributionPointName* name = point->distributionPoint; name != nullptr) {
    if (name->index == DistributionPointName::fullName) {
      *fullName = &kPresent<X509GeneralNames>.list;
    } else {
      *relativeName = &kPresent<X509Name>.list;
    }
  }
  TellFlag(point->onlyContainsUserCerts, onlyContainsUserCerts, hasOnlyContainsUserCerts);
  TellFlag(point->onlyContainsCACerts, onlyContainsCACerts, hasOnlyContainsCACerts);
  TellFlag(point->indirectCRL, indirectCRL, hasIndirectCRL);
  TellFlag(point->onlyContainsAttributeCerts, onlyContainsAttributeCerts, hasOnlyContainsAttributeCerts);
  if (point->onlySomeReasons != nullptr) {
    *onlySomeReasons = NamedBitsOf(*point->onlySomeReasons);
    *hasOnlySomeReasons = 1;
  }
  return Status();
}
