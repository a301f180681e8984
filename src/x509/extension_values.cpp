#include "x509/extension_values.h"

#include "engine/borrowed.h"
#include "engine/buffer.h"
#include "engine/codec.h"
#include "engine/nodes.h"
#include "engine/path.h"
#include "engine/primitives.h"
#include "engine/tree_owner.h"
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

// Reads a value of one node, and hands the node to `read`.
template <class Node, class Read>
Status DecodeValue(const Item<Node>& item, const uint8_t* data, uint32_t size, Read read, Site at = {}) {
  TreeOwner<Node> tree(item);
  if (Status status = Decode(item, data, size, tree.Out(), at); status.Failed()) return status;
  return read(*tree.Get());
}

Status EncodeNamedBits(uint32_t flags, uint8_t* buffer, uint32_t* length, Site at = {}) {
  return Encode(kBitString, &NamedBitsNode(flags).Node(), buffer, length, at);
}

Status DecodeNamedBits(const uint8_t* data, uint32_t size, uint32_t* flags, Site at = {}) {
  if (flags == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  const auto read = [flags](const Asn1BitString& bits) {
    *flags = NamedBitsOf(bits);
    return Status();
  };
  return DecodeValue(kBitString, data, size, read, at);
}

// A field that is absent has the length 0.
Status DeliverOptional(const Asn1Value* field, uint8_t* buffer, uint32_t* length, Site at = {}) {
  return Deliver(field == nullptr ? Octets() : ContentOf(*field), buffer, length, at);
}

Status DecodeUsageTime(const Asn1Value* field, LibraryTime* time) {
  if (field != nullptr) return ReadGeneralizedTime(*field, time);
  // It is refused, and so the record stays.
  // DEVIATES: a time that is absent leaves its record as it was, which callers rely on.
  static_cast<void>(SetLibraryTimeToNull(time));
  return Status();
}

// What a decoded issuing distribution point says about its name. It stands where no release takes anything away.
// DEVIATES: a name comes back as a pointer that tells its presence alone: the tree that holds it ends with the call,
// and callers only ask for null.
struct alignas(kHeapAlignment) PresenceMark {
  void* offTheHeapsAlignment = nullptr;
  Asn1List list = kEmptyList;
};
constexpr PresenceMark kPresent;

// A [1] that cannot be the BOOLEAN is the reasons: no value has a flag under this tag.
constexpr int32_t kNeverUsed = INT32_MAX;
constexpr const auto& kIssuingDistributionPointWithReasons =
    kIssuingDistributionPointWith<Default<Implicit<kNeverUsed, kBoolean>, kFalse>>;

Status DecodeIssuingDistributionPoint(const uint8_t* data, uint32_t size, TreeOwner<IssuingDistributionPoint>& point) {
  Status status = Decode(kIssuingDistributionPoint, data, size, point.Out());
  if (status != TESSEL_INVALID_CONTENT) return status;
  Status withReasons = Decode(kIssuingDistributionPointWithReasons, data, size, point.Out());
  if (withReasons == TESSEL_OUT_OF_MEMORY) return withReasons;
  // Empty reasons would look like the flag.
  const Asn1BitString* reasons = withReasons.Ok() ? point.Get()->onlySomeReasons : nullptr;
  return reasons != nullptr && reasons->length != 0 ? withReasons : status;
}

void TellFlag(const Asn1Value* field, uint8_t* flag, uint32_t* present) {
  const Octets content = field == nullptr ? Octets() : ContentOf(*field);
  *present = content.empty() ? 0 : 1;
  if (!content.empty()) *flag = content[0];
}

// A flag that is not given is left out.
Asn1Value* FlagOrNull(uint8_t flag, uint32_t present) { return present == 0 ? nullptr : BorrowBoolean(flag != 0); }

}  // namespace
}  // namespace tessel

// Values of one field.

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
  const auto read = [reason](const Asn1Value& value) {
    return ContentOf(value).empty() ? Fail(TESSEL_MALFORMED) : ReadInt32(value, reason);
  };
  return DecodeValue(kEnumerated, data, size, read);
}

uint32_t TESSEL_CALL EncodeExtensionInvalidityDate(const LibraryTime* time, uint8_t* buffer, uint32_t* length) {
  return EncodeAsn1GeneralizedTime(time, buffer, length);
}

uint32_t TESSEL_CALL DecodeExtensionInvalidityDate(const uint8_t* data, uint32_t size, LibraryTime* time) {
  return DecodeAsn1GeneralizedTime(data, size, time);
}

// SEQUENCEs of a few fields.

uint32_t TESSEL_CALL EncodeExtensionBasicConstraints(uint32_t cA, uint32_t pathLength, uint8_t* buffer,
                                                     uint32_t* length) {
  NumberNode number(TESSEL_KIND_INTEGER, static_cast<int32_t>(pathLength));
  const BasicConstraints constraints{BorrowBoolean(cA != 0), pathLength == kNoPathLength ? nullptr : number.Member()};
  return Encode(kBasicConstraints, &constraints, buffer, length);
}

uint32_t TESSEL_CALL DecodeExtensionBasicConstraints(const uint8_t* data, uint32_t size, uint8_t* cA,
                                                     uint32_t* pathLength) {
  if (cA == nullptr || pathLength == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const auto read = [cA, pathLength](const BasicConstraints& constraints) {
    Asn1Value* flag = nullptr;
    if (Status status = kCa.In(&constraints).Load(flag); status.Failed()) return status;
    int32_t number = -1;
    if (constraints.pathLenConstraint != nullptr) {
      if (Status status = GetNumber(kPathLength.In(&constraints), &number); status.Failed()) return status;
    }
    // DEVIATES: TRUE is 0xFF, and 1 where a BOOLEAN is read alone: programs compare it.
    *cA = flag->data[0];
    *pathLength = static_cast<uint32_t>(number);
    return Status();
  };
  return DecodeValue(kBasicConstraints, data, size, read);
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
  const auto read = [=](const AuthorityKeyIdentifier& identifier) {
    Status keyStatus = DeliverOptional(identifier.keyIdentifier, keyIdentifier, keyIdentifierLength);
    Status serialStatus = DeliverOptional(identifier.authorityCertSerialNumber, serial, serialLength);
    if (keyStatus.Failed()) return keyStatus;
    if (serialStatus.Failed() || identifier.authorityCertIssuer == nullptr) return serialStatus;
    return Copy(kX509GeneralNames, identifier.authorityCertIssuer, names);
  };
  return DecodeValue(kAuthorityKeyIdentifier, data, size, read);
}

uint32_t TESSEL_CALL EncodeExtensionPrivateKeyUsagePeriod(const LibraryTime* notBefore, const LibraryTime* notAfter,
                                                          uint8_t* buffer, uint32_t* length) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  TimeNode start;
  TimeNode end;
  PrivateKeyUsagePeriod period{};
  if (notBefore != nullptr) {
    if (Status status = start.SetGeneralized(notBefore); status.Failed()) return status;
    period.notBefore = start.AsValue();
  }
  if (notAfter != nullptr) {
    if (Status status = end.SetGeneralized(notAfter); status.Failed()) return status;
    period.notAfter = end.AsValue();
  }
  return Encode(kPrivateKeyUsagePeriod, &period, buffer, length);
}

uint32_t TESSEL_CALL DecodeExtensionPrivateKeyUsagePeriod(const uint8_t* data, uint32_t size, LibraryTime* notBefore,
                                                          LibraryTime* notAfter) {
  if (size == 0 || notBefore == nullptr || notAfter == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const auto read = [notBefore, notAfter](const PrivateKeyUsagePeriod& period) {
    Status status = DecodeUsageTime(period.notBefore, notBefore);
    return status.Failed() ? status : DecodeUsageTime(period.notAfter, notAfter);
  };
  return DecodeValue(kPrivateKeyUsagePeriod, data, size, read);
}

uint32_t TESSEL_CALL EncodeExtensionIssuingDistributionPoint(
    const X509GeneralNames* fullName, const X509Name* relativeName, uint8_t onlyContainsUserCerts,
    uint32_t hasOnlyContainsUserCerts, uint8_t onlyContainsCACerts, uint32_t hasOnlyContainsCACerts,
    uint32_t onlySomeReasons, uint32_t hasOnlySomeReasons, uint8_t indirectCRL, uint32_t hasIndirectCRL,
    uint8_t onlyContainsAttributeCerts, uint32_t hasOnlyContainsAttributeCerts, uint8_t* buffer, uint32_t* length) {
  DistributionPointName name{{kFullName, const_cast<X509GeneralNames*>(fullName)}};
  if (fullName == nullptr) name = {{kNameRelativeToCrlIssuer, const_cast<X509Name*>(relativeName)}};
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
  if (Status status = DecodeIssuingDistributionPoint(data, size, point); status.Failed()) return status;
  if (const DistributionPointName* name = point->distributionPoint; name != nullptr) {
    if (name->index == kFullName) {
      *fullName = static_cast<const X509GeneralNames*>(&kPresent.list);
    } else {
      *relativeName = static_cast<const X509Name*>(&kPresent.list);
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
