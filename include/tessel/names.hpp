// Names as types: distinguished names, general names and free text (RFC 5280, 4.1.2.4 and 4.2.1.6; RFC 4210, 5.1.1).
#pragma once

#include "tessel/asn1.hpp"
#include "tessel/free.hpp"
#include "tessel/names.h"

namespace tessel {

// AttributeTypeAndValue ::= SEQUENCE { type OBJECT IDENTIFIER, value ANY }
struct AttributeTypeAndValue {
  Asn1Oid* type;
  Asn1Any* value;
};
inline constexpr auto kAttributeTypeAndValue = Sequence{
    Member<&AttributeTypeAndValue::type, kOid>,
    Member<&AttributeTypeAndValue::value, kAny>,
};

struct RelativeDistinguishedName : ListOf<AttributeTypeAndValue> {};
inline constexpr auto kRelativeDistinguishedName = SetOf<RelativeDistinguishedName, kAttributeTypeAndValue>();

}  // namespace tessel

struct X509Name : tessel::ListOf<tessel::RelativeDistinguishedName> {};

struct X509GeneralName : Asn1Choice {
  enum : uint32_t {
    otherName,
    rfc822Name,
    dNSName,
    x400Address,
    directoryName,
    ediPartyName,
    uniformResourceIdentifier,
    iPAddress,
    registeredID
  };
};

struct X509GeneralNames : tessel::ListOf<X509GeneralName> {};

struct PKIFreeText : tessel::ListOf<Asn1Value> {};

namespace tessel {

inline constexpr auto kX509Name = SequenceOf<X509Name, kRelativeDistinguishedName>();

// Where a certificate or CRL names somebody: Name ::= CHOICE { rdnSequence RDNSequence }
struct NameChoice : Asn1Choice {
  enum : uint32_t { rdnSequence };
};
inline constexpr auto kNameChoice = Choice<NameChoice, Alternative<NameChoice::rdnSequence, kX509Name>>();

// DEVIATES: an x400Address is read only when it is primitive, where RFC 5280 (4.2.1.6) has a SEQUENCE: descriptor and
// nodes are public.
inline constexpr auto kX509GeneralName =
    Choice<X509GeneralName,  //
           Alternative<X509GeneralName::otherName, AlwaysConstructed<Implicit<0, kAny>>>,
           Alternative<X509GeneralName::rfc822Name, Implicit<1, kIa5String>>,
           Alternative<X509GeneralName::dNSName, Implicit<2, kIa5String>>,
           Alternative<X509GeneralName::x400Address, Implicit<3, kAny>>,
           Alternative<X509GeneralName::directoryName, Explicit<4, kAny>>,
           Alternative<X509GeneralName::ediPartyName, AlwaysConstructed<Implicit<5, kAny>>>,
           Alternative<X509GeneralName::uniformResourceIdentifier, Implicit<6, kIa5String>>,
           Alternative<X509GeneralName::iPAddress, Implicit<7, kOctetString>>,
           Alternative<X509GeneralName::registeredID, Implicit<8, kOid>>>();

inline constexpr auto kX509GeneralNames = SequenceOf<X509GeneralNames, kX509GeneralName>();

inline constexpr auto kPKIFreeText = SequenceOf<PKIFreeText, kUtf8String>();

template <>
inline constexpr auto kFreeFunction<X509Name> = FreeX509Name;
template <>
inline constexpr auto kFreeFunction<X509GeneralName> = FreeX509GeneralName;
template <>
inline constexpr auto kFreeFunction<X509GeneralNames> = FreeX509GeneralNames;
template <>
inline constexpr auto kFreeFunction<PKIFreeText> = FreePKIFreeText;

}  // namespace tessel
