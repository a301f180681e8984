#include "x509/algorithms.h"

#include <algorithm>
#include <array>

#include "engine/buffer.h"
#include "engine/codec.h"
#include "engine/nodes.h"
#include "engine/path.h"
#include "engine/primitives.h"
#include "engine/tree_owner.h"
#include "tessel/nodes.hpp"

using namespace tessel;

constinit const Asn1Item AlgorithmIdentifierItem = kAlgorithmIdentifier;
constinit const Asn1Item SubjectPublicKeyInfoItem = kSubjectPublicKeyInfo;
constinit const Asn1Item AlgorithmGostR34102001ParametersItem = kAlgorithmGostR34102001Parameters;
constinit const Asn1Item AlgorithmGostR34102012ParametersItem = kAlgorithmGostR34102012Parameters;

namespace tessel {
namespace {

constexpr Path<&AlgorithmIdentifier::algorithm> kAlgorithm;
constexpr Path<&AlgorithmIdentifier::parameters> kParameters;
constexpr Path<&SubjectPublicKeyInfo::algorithm> kKeyAlgorithm;
constexpr Path<&SubjectPublicKeyInfo::subjectPublicKey> kKey;
constexpr Path<&AlgorithmGostR3410Parameters::publicKeyParamSet> kPublicKeyParamSet;
constexpr Path<&AlgorithmGostR3410Parameters::digestParamSet> kDigestParamSet;
constexpr Path<&AlgorithmGostR3410Parameters::encryptionParamSet> kEncryptionParamSet;

constexpr OidRow kPublicKeySets[] = {
    {6, Oid("1.2.643.2.2.35.0")},     {1, Oid("1.2.643.2.2.35.1")},     {2, Oid("1.2.643.2.2.35.2")},
    {3, Oid("1.2.643.2.2.35.3")},     {4, Oid("1.2.643.2.2.36.0")},     {5, Oid("1.2.643.2.2.36.1")},
    {7, Oid("1.2.643.7.1.2.1.1.0")},  {9, Oid("1.2.643.7.1.2.1.1.1")},  {8, Oid("1.2.643.7.1.2.1.2.0")},
    {10, Oid("1.2.643.7.1.2.1.2.1")}, {11, Oid("1.2.643.7.1.2.1.2.2")}, {12, Oid("1.2.643.7.1.2.1.2.3")},
};

constexpr OidRow kDigestSets[] = {
    {2, Oid("1.2.643.2.2.30.0")},
    {1, Oid("1.2.643.2.2.30.1")},
    {3, Oid("1.2.643.7.1.1.2.2")},
    {4, Oid("1.2.643.7.1.1.2.3")},
};

constexpr OidRow kEncryptionSets[] = {
    {8, Oid("1.2.643.2.2.31.0")}, {1, Oid("1.2.643.2.2.31.1")}, {2, Oid("1.2.643.2.2.31.2")},
    {3, Oid("1.2.643.2.2.31.3")}, {4, Oid("1.2.643.2.2.31.4")}, {5, Oid("1.2.643.2.2.31.5")},
    {6, Oid("1.2.643.2.2.31.6")}, {7, Oid("1.2.643.2.2.31.7")}, {9, Oid("1.2.643.7.1.2.5.1.1")},
};

// Which parameter sets the keys of an algorithm may have: bit n stands for the set with the number n.
constexpr uint32_t Numbers(std::initializer_list<uint32_t> numbers) {
  uint32_t bits = 0;
  for (const uint32_t number : numbers) bits |= 1U << number;
  return bits;
}
struct GostKeyKind {
  uint32_t algorithm;
  uint32_t publicKeySets;
  uint32_t digestSets;
};
constexpr GostKeyKind kGostKeyKinds[] = {
    {kGostR34102001, Numbers({1, 2, 3, 4, 5, 6}), Numbers({1, 2})},
    {kGostR34102012With256Bits, Numbers({1, 2, 3, 4, 5, 6, 7, 9}), Numbers({3})},
    {kGostR34102012With512Bits, Numbers({8, 10, 11, 12}), Numbers({4})},
};

constexpr uint8_t kNull[] = {TESSEL_KIND_NULL, 0};

GostParametersMode ModeOf(Octets parameters) {
  if (parameters.empty()) return kNoParameters;
  return std::ranges::equal(parameters, kNull) ? kNullParameters : kParameterSets;
}

// The type of an algorithm's parameters, or null for an algorithm that is none of GOST R 34.10.
const Item<AlgorithmGostR3410Parameters>* GostParametersOf(uint32_t algorithm) {
  switch (algorithm) {
    case kGostR34102001:
      return &kAlgorithmGostR34102001Parameters;
    case kGostR34102012With256Bits:
    case kGostR34102012With512Bits:
      return &kAlgorithmGostR34102012Parameters;
    default:
      return nullptr;
  }
}

Status FindSet(OidTable table, const ReadSlot<Asn1Oid>& slot, uint32_t& id) {
  Asn1Oid* oid = nullptr;
  TRY(slot.Load(oid));
  return FindId(table, ContentOf(*oid), id, slot.At());
}

// Decodes parameters. TESSEL_MALFORMED: they are no SEQUENCE of parameter sets, whatever the decoder finds wrong.
Status DecodeParameters(const TypeOf<AlgorithmGostR3410Parameters>& item, Octets parameters,
                        TreeOwner<AlgorithmGostR3410Parameters>& tree, Caller at = {}) {
  // DEVIATES: a digest set is required, which RFC 9215 (4.2) leaves out of newer keys, and an encryption set is read:
  // both types have the members of the type of 2001, and are public.
  Status status = Decode(item, parameters.data(), static_cast<uint32_t>(parameters.size()), tree.Out(), at);
  return status.Ok() || status == TESSEL_OUT_OF_MEMORY ? status : Fail(TESSEL_MALFORMED, at);
}

// Decodes parameters to the numbers of their sets, by the type of 2001 for all algorithms.
Status DecodeSets(Octets parameters, GostParameterSets& sets, Caller at = {}) {
  // DEVIATES: an encryption set that is left out has the number of the DEFAULT of 2001, of a key of 2012 too: programs
  // compare it.
  TreeOwner<AlgorithmGostR3410Parameters> tree(kAlgorithmGostR34102001Parameters);
  TRY(DecodeParameters(kAlgorithmGostR34102001Parameters, parameters, tree, at));
  TRY(FindSet(kPublicKeySets, kPublicKeyParamSet.In(tree.Get(), at), sets.publicKey));
  TRY(FindSet(kDigestSets, kDigestParamSet.In(tree.Get(), at), sets.digest));
  return FindSet(kEncryptionSets, kEncryptionParamSet.In(tree.Get(), at), sets.encryption);
}

struct GostSetOids {
  const uint8_t* publicKey = nullptr;
  const uint8_t* digest = nullptr;
  const uint8_t* encryption = nullptr;
};

Status FindSetOids(const GostParameterSets& sets, GostSetOids& oids, Caller at = {}) {
  TRY(FindOid(kPublicKeySets, sets.publicKey, oids.publicKey, at));
  TRY(FindOid(kDigestSets, sets.digest, oids.digest, at));
  return FindOid(kEncryptionSets, sets.encryption, oids.encryption, at);
}

Status EncodeSets(const TypeOf<AlgorithmGostR3410Parameters>& item, const GostSetOids& oids, uint8_t* buffer,
                  uint32_t* length, Caller at) {
  if (oids.publicKey == nullptr || oids.digest == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  Asn1Oid publicKey = BorrowOid(oids.publicKey);
  Asn1Oid digest = BorrowOid(oids.digest);
  Asn1Oid encryption = oids.encryption == nullptr ? Asn1Oid() : BorrowOid(oids.encryption);
  const AlgorithmGostR3410Parameters parameters{&publicKey, &digest,
                                                oids.encryption == nullptr ? nullptr : &encryption};
  return Encode(item, &parameters, buffer, length, at);
}

Status EncodeGostParameters(uint32_t algorithm, uint8_t mode, const GostSetOids& oids, uint8_t* buffer,
                            uint32_t* length, Caller at = {}) {
  const Item<AlgorithmGostR3410Parameters>* item = GostParametersOf(algorithm);
  if (item == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  switch (mode) {
    case kNullParameters:
      return Deliver(kNull, buffer, length, at);
    case kParameterSets:
      return EncodeSets(*item, oids, buffer, length, at);
    case kNoParameters:
      return Deliver({}, buffer, length, at);
    default:
      return Fail(TESSEL_INVALID_ARGUMENT, at);
  }
}

Status EncodeGostParameters(uint8_t mode, const GostParameterSets& sets, uint8_t* buffer, uint32_t* length,
                            Caller at = {}) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  GostSetOids oids;
  if (mode == kParameterSets) {
    TRY(FindSetOids(sets, oids, at));
  }
  return EncodeGostParameters(kGostR34102001, mode, oids, buffer, length, at);
}

}  // namespace

AlgorithmHalves GetAlgorithmHalves(const ReadSlot<AlgorithmIdentifier>& slot, const AlgorithmBuffers& to) {
  AlgorithmIdentifier* identifier = nullptr;
  if (Status status = slot.Load(identifier); status.Failed()) return {status, status};
  AlgorithmHalves halves;
  if (to.oid != nullptr || to.oidLength != nullptr) {
    halves.oid = GetOid(kAlgorithm.In(identifier, slot.At()), to.oid, to.oidLength);
  }
  if (to.parameters != nullptr || to.parametersLength != nullptr) {
    const Octets parameters = identifier->parameters == nullptr ? Octets() : ContentOf(*identifier->parameters);
    halves.parameters = Deliver(parameters, to.parameters, to.parametersLength, slot.At());
  }
  return halves;
}

Status GetAlgorithm(const ReadSlot<AlgorithmIdentifier>& slot, const AlgorithmBuffers& to) {
  const AlgorithmHalves halves = GetAlgorithmHalves(slot, to);
  if (halves.parameters == TESSEL_BUFFER_TOO_SMALL) return halves.parameters;
  return FirstFailure(halves.oid, halves.parameters);
}

namespace {

// Copies that are to replace both members of an algorithm identifier. Null parameters remove that member.
class AlgorithmReplacement {
 public:
  AlgorithmReplacement(const Slot<AlgorithmIdentifier>& slot, const Asn1Oid& oid, const Asn1Any* parameters)
      : oid_(kAlgorithm.In(slot), kOid, &oid), parameters_(kParameters.In(slot), kAny, parameters) {}

  [[nodiscard]] Status Made() const { return FirstFailure(oid_.Made(), parameters_.Made()); }
  void Take() {
    oid_.Take();
    parameters_.Take();
  }

 private:
  Replacement<Asn1Oid> oid_;
  Replacement<Asn1Any> parameters_;
};

template <class... Slots>
Status SetAll(const uint8_t* oid, Octets parameters, SourceLocation at, const Slots&... slots) {
  if (oid == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  const Asn1Oid identifier = BorrowOid(oid);
  const bool isGiven = parameters.data() != nullptr && !parameters.empty();
  const Asn1Any value = isGiven ? BorrowOpenValue(parameters) : Asn1Any();
  return TakeAll(AlgorithmReplacement(slots, identifier, isGiven ? &value : nullptr)...);
}

}  // namespace

Status SetAlgorithm(const Slot<AlgorithmIdentifier>& slot, const uint8_t* oid, Octets parameters) {
  return SetAll(oid, parameters, slot.At(), slot);
}

Status SetAlgorithm(const Slot<AlgorithmIdentifier>& slot, uint32_t id, Octets parameters) {
  TRY(slot.Unreachable());
  const uint8_t* oid = nullptr;
  TRY(FindOid(AlgorithmTable(), id, oid, slot.At()));
  return SetAlgorithm(slot, oid, parameters);
}

Status SetAlgorithms(const Slot<AlgorithmIdentifier>& one, const Slot<AlgorithmIdentifier>& other, const uint8_t* oid,
                     Octets parameters) {
  return SetAll(oid, parameters, one.At(), one, other);
}

Status EncodedGostAlgorithm::Make(uint32_t id, uint8_t mode, const GostParameterSets& sets, Caller at) {
  length_ = static_cast<uint32_t>(parameters_.size());
  TRY(EncodeGostParameters(mode, sets, parameters_.data(), &length_, at));
  return FindOid(AlgorithmTable(), id, oid_, at);
}

Status SetGostAlgorithm(const Slot<AlgorithmIdentifier>& slot, uint32_t id, uint8_t mode,
                        const GostParameterSets& sets) {
  TRY(slot.Unreachable());
  EncodedGostAlgorithm algorithm;
  TRY(algorithm.Make(id, mode, sets, slot.At()));
  return SetAlgorithm(slot, algorithm.Oid(), algorithm.Parameters());
}

Status GetGostParameterSets(const ReadSlot<AlgorithmIdentifier>& slot, GostParameterSets& sets) {
  AlgorithmIdentifier* identifier = nullptr;
  TRY(slot.Load(identifier));
  std::array<uint8_t, 100> oid;
  std::array<uint8_t, 100> parameters;
  uint32_t oidLength = oid.size();
  uint32_t parametersLength = parameters.size();
  Status status = GetAlgorithm(slot, {oid.data(), &oidLength, parameters.data(), &parametersLength});
  if (status == TESSEL_BUFFER_TOO_SMALL) return Fail(TESSEL_INTERNAL_BUFFER_TOO_SMALL, slot.At());
  TRY(status);

  uint32_t algorithm = 0;
  TRY(FindId(AlgorithmTable(), OidContent(oid.data()), algorithm, slot.At()));
  const auto* kind = std::ranges::find(kGostKeyKinds, algorithm, &GostKeyKind::algorithm);
  const Octets encoding = Octets(parameters).first(parametersLength);
  if (kind == std::end(kGostKeyKinds) || ModeOf(encoding) != kParameterSets) return Fail(TESSEL_INVALID_KEY, slot.At());
  TRY(DecodeSets(encoding, sets, slot.At()));
  const bool accepted = (kind->publicKeySets >> sets.publicKey & 1) != 0 && (kind->digestSets >> sets.digest & 1) != 0;
  return accepted ? Status() : Fail(TESSEL_INVALID_KEY, slot.At());
}

}  // namespace tessel

uint32_t TESSEL_CALL DecodeSubjectPublicKeyInfo(const uint8_t* data, uint32_t size, uint8_t* oid, uint32_t* oidLength,
                                                uint8_t* key, uint32_t* keyLength, uint8_t* parameters,
                                                uint32_t* parametersLength) {
  if (keyLength == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  TreeOwner<SubjectPublicKeyInfo> info(kSubjectPublicKeyInfo);
  TRY(Decode(kSubjectPublicKeyInfo, data, size, info.Out()));
  const AlgorithmHalves halves =
      GetAlgorithmHalves(kKeyAlgorithm.In(info.Get()), {oid, oidLength, parameters, parametersLength});
  Status keyStatus = GetBits(kKey.In(info.Get()), key, keyLength);
  return FirstFailure(keyStatus, halves.parameters, halves.oid);
}

uint32_t TESSEL_CALL GetSubjectPublicKeyInfoPublicKey(const SubjectPublicKeyInfo* info, uint8_t* buffer,
                                                      uint32_t* length) {
  return GetBits(kKey.In(info), buffer, length);
}

uint32_t TESSEL_CALL DecodeAlgorithmGostR34102001Parameters(const uint8_t* parameters, uint32_t size, uint8_t* mode,
                                                            uint32_t* publicKeySet, uint32_t* digestSet,
                                                            uint32_t* encryptionSet) {
  if (mode == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const Octets encoding(parameters, parameters == nullptr ? 0 : size);
  *mode = ModeOf(encoding);
  if (*mode != kParameterSets) return Status();
  if (AnyNull(publicKeySet, digestSet, encryptionSet)) return Fail(TESSEL_INVALID_ARGUMENT);
  GostParameterSets sets;
  TRY(DecodeSets(encoding, sets));
  *publicKeySet = sets.publicKey;
  *digestSet = sets.digest;
  *encryptionSet = sets.encryption;
  return Status();
}

uint32_t TESSEL_CALL DecodeAlgorithmGostR3410ParameterOids(uint32_t algorithm, const uint8_t* parameters, uint32_t size,
                                                           uint8_t* mode, uint8_t* publicKeySet,
                                                           uint32_t* publicKeySetLength, uint8_t* digestSet,
                                                           uint32_t* digestSetLength, uint8_t* encryptionSet,
                                                           uint32_t* encryptionSetLength) {
  const Item<AlgorithmGostR3410Parameters>* item = GostParametersOf(algorithm);
  if (AnyNull(item, mode, publicKeySetLength, digestSetLength, encryptionSetLength))
    return Fail(TESSEL_INVALID_ARGUMENT);
  const Octets encoding(parameters, parameters == nullptr ? 0 : size);
  *mode = ModeOf(encoding);
  if (*mode != kParameterSets) {
    *publicKeySetLength = *digestSetLength = *encryptionSetLength = 0;
    return Status();
  }
  TreeOwner<AlgorithmGostR3410Parameters> tree(*item);
  TRY(DecodeParameters(*item, encoding, tree));
  Status publicKey = GetOid(kPublicKeyParamSet.In(tree.Get()), publicKeySet, publicKeySetLength);
  Status digest = GetOid(kDigestParamSet.In(tree.Get()), digestSet, digestSetLength);
  Status encryption = GetOid(kEncryptionParamSet.In(tree.Get()), encryptionSet, encryptionSetLength);
  return FirstFailure(encryption, digest, publicKey);
}

uint32_t TESSEL_CALL DecodeAlgorithmGostR34102001ParameterOids(const uint8_t* parameters, uint32_t size, uint8_t* mode,
                                                               uint8_t* publicKeySet, uint32_t* publicKeySetLength,
                                                               uint8_t* digestSet, uint32_t* digestSetLength,
                                                               uint8_t* encryptionSet, uint32_t* encryptionSetLength) {
  return DecodeAlgorithmGostR3410ParameterOids(kGostR34102001, parameters, size, mode, publicKeySet, publicKeySetLength,
                                               digestSet, digestSetLength, encryptionSet, encryptionSetLength);
}

uint32_t TESSEL_CALL DecodeAlgorithmGostR34102012ParameterOids(const uint8_t* parameters, uint32_t size, uint8_t* mode,
                                                               uint8_t* publicKeySet, uint32_t* publicKeySetLength,
                                                               uint8_t* digestSet, uint32_t* digestSetLength,
                                                               uint8_t* encryptionSet, uint32_t* encryptionSetLength) {
  return DecodeAlgorithmGostR3410ParameterOids(kGostR34102012With256Bits, parameters, size, mode, publicKeySet,
                                               publicKeySetLength, digestSet, digestSetLength, encryptionSet,
                                               encryptionSetLength);
}

uint32_t TESSEL_CALL EncodeAlgorithmGostR34102001Parameters(uint8_t mode, uint32_t publicKeySet, uint32_t digestSet,
                                                            uint32_t encryptionSet, uint8_t* buffer, uint32_t* length) {
  return EncodeGostParameters(mode, {publicKeySet, digestSet, encryptionSet}, buffer, length);
}

uint32_t TESSEL_CALL EncodeAlgorithmGostR3410ParametersOid(uint32_t algorithm, uint8_t mode,
                                                           const uint8_t* publicKeySet, const uint8_t* digestSet,
                                                           const uint8_t* encryptionSet, uint8_t* buffer,
                                                           uint32_t* length) {
  return EncodeGostParameters(algorithm, mode, {publicKeySet, digestSet, encryptionSet}, buffer, length);
}

uint32_t TESSEL_CALL EncodeAlgorithmGostR34102001ParametersOid(uint8_t mode, const uint8_t* publicKeySet,
                                                               const uint8_t* digestSet, const uint8_t* encryptionSet,
                                                               uint8_t* buffer, uint32_t* length) {
  return EncodeGostParameters(kGostR34102001, mode, {publicKeySet, digestSet, encryptionSet}, buffer, length);
}

uint32_t TESSEL_CALL EncodeAlgorithmGostR34102012ParametersOid(uint8_t mode, const uint8_t* publicKeySet,
                                                               const uint8_t* digestSet, const uint8_t* encryptionSet,
                                                               uint8_t* buffer, uint32_t* length) {
  return EncodeGostParameters(kGostR34102012With256Bits, mode, {publicKeySet, digestSet, encryptionSet}, buffer,
                              length);
}

uint32_t TESSEL_CALL SetAlgorithmGostR34102001AndParameters(AlgorithmIdentifier* identifier, uint32_t algorithm,
                                                            uint8_t mode, uint32_t publicKeySet, uint32_t digestSet,
                                                            uint32_t encryptionSet) {
  return SetGostAlgorithm(SlotOf(identifier), algorithm, mode, {publicKeySet, digestSet, encryptionSet});
}
