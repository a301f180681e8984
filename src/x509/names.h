// Names: distinguished names, general names and free text.
#pragma once

#include "engine/slot.h"
#include "engine/status.h"
#include "tessel/names.hpp"

namespace tessel {

// Lends the name of a member. When it holds none, an empty one is made.
Status GetName(const Slot<NameChoice>& slot, X509Name** name);

// The name of a member, or null when there is none.
X509Name* NameOrNull(const ReadSlot<NameChoice>& slot);

// Puts a copy of a name in place of the one that a member holds, or, when it does not copy, the name itself.
enum class Ownership : bool { kTakes, kCopies };
Status SetName(const Slot<NameChoice>& slot, const X509Name* name, Ownership ownership = Ownership::kCopies);

}  // namespace tessel
