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

// Convert between the slot of the interface and the member's pointer, which stand at the same address.
X509ExtensionsSlot* PublicSlot(X509Extensions*& member);
Slot<X509Extensions> MemberOf(X509ExtensionsSlot* slot, Caller at = {});
ReadSlot<X509Extensions> MemberOf(const X509ExtensionsSlot* slot, Caller at = {});

// Do what FindX509Extension and GetX509ExtensionsExtensionValue do, but lend the octets of the value.
Status FindExtension(const ReadSlot<X509Extensions>& slot, Octets oid, uint32_t& index);
Status FindExtensionValue(const ReadSlot<X509Extensions>& slot, Octets oid, Octets& value);

// Adds an extension that is not critical, in place of all that have the same identifier. After a failure the slot is
// unchanged.
Status ReplaceExtension(const Slot<X509Extensions>& slot, const CountedOid& oid, Octets value);

}  // namespace tessel
