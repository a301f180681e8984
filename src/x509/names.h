// Names: distinguished names, general names and free text.
#pragma once

#include "engine/descriptor.h"
#include "engine/slot.h"
#include "engine/status.h"
#include "tessel/names.h"

// AttributeTypeAndValue ::= SEQUENCE { type OBJECT IDENTIFIER, value ANY }
struct AttributeTypeAndValue {
  Asn1Oid* type;
  Asn1Any* value;
};

// RelativeDistinguishedName ::= SET OF AttributeTypeAndValue
struct RelativeDistinguishedName : tessel::ListOf<AttributeTypeAndValue> {};

struct X509Name : tessel::ListOf<RelativeDistinguishedName> {};

struct X509GeneralName : Asn1Choice {};

struct X509GeneralNames : tessel::ListOf<X509GeneralName> {};

struct PKIFreeText : tessel::ListOf<Asn1Value> {};

namespace tessel {

inline constexpr auto kAttributeTypeAndValue = Sequence{
    Member<&AttributeTypeAndValue::type, kOid>,
    Member<&AttributeTypeAndValue::value, kAny>,
};

inline constexpr auto kRelativeDistinguishedName = SetOf<RelativeDistinguishedName, kAttributeTypeAndValue>();

inline constexpr auto kX509Name = SequenceOf<X509Name, kRelativeDistinguishedName>();

// DEVIATES: an x400Address is read only when it is primitive, where RFC 5280 (4.2.1.6) has a SEQUENCE: descriptor and
// nodes are public.
inline constexpr auto kX509GeneralName = Choice<X509GeneralName,                       //
                                                AlwaysConstructed<Implicit<0, kAny>>,  // otherName
                                                Implicit<1, kIa5String>,               // rfc822Name
                                                Implicit<2, kIa5String>,               // dNSName
                                                Implicit<3, kAny>,                     // x400Address
                                                Explicit<4, kAny>,                     // directoryName
                                                AlwaysConstructed<Implicit<5, kAny>>,  // ediPartyName
                                                Implicit<6, kIa5String>,               // uniformResourceIdentifier
                                                Implicit<7, kOctetString>,             // iPAddress
                                                Implicit<8, kOid>>();                  // registeredID

enum GeneralNameAlternative : uint32_t {
  kOtherName,
  kRfc822Name,
  kDnsName,
  kX400Address,
  kDirectoryName,
  kEdiPartyName,
  kUniformResourceIdentifier,
  kIpAddress,
  kRegisteredId,
};

inline constexpr auto kX509GeneralNames = SequenceOf<X509GeneralNames, kX509GeneralName>();

inline constexpr auto kPKIFreeText = SequenceOf<PKIFreeText, kUtf8String>();

// Where a certificate or CRL names somebody: Name ::= CHOICE { rdnSequence X509Name }
struct NameChoice : Asn1Choice {};
inline constexpr auto kName = Choice<NameChoice, kX509Name>();

// Lends the name of a member. When it holds none, an empty one is made.
Status GetName(const Slot<NameChoice>& slot, X509Name** name);

// The name of a member, or null when there is none.
X509Name* NameOrNull(const Slot<NameChoice>& slot);

// Puts a copy of a name in place of the one that a member holds, or, when it does not copy, the name itself.
enum class Ownership : bool { kTakes, kCopies };
Status SetName(const Slot<NameChoice>& slot, const X509Name* name, Ownership ownership = Ownership::kCopies);

}  // namespace tessel
