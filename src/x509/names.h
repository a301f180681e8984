// Name ::= SEQUENCE OF RelativeDistinguishedName (RFC 5280, 4.1.2.4).
#pragma once

#include "engine/descriptor.h"
#include "tessel/names.h"

// AttributeTypeAndValue ::= SEQUENCE { type OBJECT IDENTIFIER, value ANY }
struct AttributeTypeAndValue {
  Asn1Oid* type;
  Asn1Any* value;
};

// RelativeDistinguishedName ::= SET OF AttributeTypeAndValue
struct RelativeDistinguishedName : tessel::ListOf<AttributeTypeAndValue> {};

struct X509Name : tessel::ListOf<RelativeDistinguishedName> {};

namespace tessel {

inline constexpr auto kAttributeTypeAndValue = Sequence{
    Member<&AttributeTypeAndValue::type, kOid>,
    Member<&AttributeTypeAndValue::value, kAny>,
};

inline constexpr auto kRelativeDistinguishedName = SetOf<RelativeDistinguishedName, kAttributeTypeAndValue>();

inline constexpr auto kX509Name = SequenceOf<X509Name, kRelativeDistinguishedName>();

// Where a certificate or CRL names somebody: Name ::= CHOICE { rdnSequence X509Name }
struct NameChoice : Asn1Choice {};
inline constexpr auto kName = Choice<NameChoice, kX509Name>();

}  // namespace tessel
