// Extensions and lists of them as types (RFC 5280, 4.1).
#pragma once

#include "tessel/asn1.hpp"
#include "tessel/extensions.h"
#include "tessel/free.hpp"

struct X509Extension {
  Asn1Oid* extnID;
  Asn1Value* critical;
  Asn1Value* extnValue;
};

struct X509Extensions : tessel::ListOf<X509Extension> {};

namespace tessel {

inline constexpr auto kX509Extension = Sequence{
    Member<&X509Extension::extnID, kOid>,
    Member<&X509Extension::critical, Default<kBoolean, kFalse>>,
    Member<&X509Extension::extnValue, kOctetString>,
};

inline constexpr auto kX509Extensions = SequenceOf<X509Extensions, kX509Extension>();

template <>
inline constexpr auto kFreeFunction<X509Extension> = FreeX509Extension;
template <>
inline constexpr auto kFreeFunction<X509Extensions> = FreeX509Extensions;

}  // namespace tessel
