// Extensions and lists of them.
#pragma once

#include "engine/slot.h"
#include "engine/status.h"
#include "tessel/extensions.hpp"
#include "values/oid.h"

namespace tessel {

inline constexpr CountedOid kSubjectKeyIdentifierOid = Oid("2.5.29.14");
inline constexpr CountedOid kCrlDistributionPointsOid = Oid("2.5.29.31");
inline constexpr CountedOid kAuthorityKeyIdentifierOid = Oid("2.5.29.35");

// The public slot and the member that it stands for are the same place.
X509ExtensionsSlot* PublicSlot(X509Extensions*& member);
Slot<X509Extensions> MemberOf(X509ExtensionsSlot* slot, Caller at = {});
ReadSlot<X509Extensions> MemberOf(const X509ExtensionsSlot* slot, Caller at = {});

// As FindX509Extension and GetX509ExtensionsExtensionValue; the octets are lent.
Status FindExtension(const ReadSlot<X509Extensions>& slot, Octets oid, uint32_t& index);
Status FindExtensionValue(const ReadSlot<X509Extensions>& slot, Octets oid, Octets& value);

// Adds an extension that is not critical, in place of all that have the same identifier. When it fails the slot is as
// it was.
Status ReplaceExtension(const Slot<X509Extensions>& slot, const CountedOid& oid, Octets value);

}  // namespace tessel
