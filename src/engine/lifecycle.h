// Making, copying, releasing and comparing any tree by its descriptor.
#pragma once

#include "engine/memory.h"
#include "engine/plan.h"
#include "engine/status.h"
#include "tessel/descriptor.h"
#include "tessel/lifecycle.h"
#include "tessel/nodes.h"

namespace tessel {

// Whether the mandatory primitives of a new tree are there (empty) or absent.
enum class Leaves : bool { kAbsent = false, kEmpty = true };

// Makes a new tree. `object` receives the root; null after a failure, and for an OPTIONAL item without a DEFAULT. It
// stays as it was when nothing is made: the root is a mandatory primitive, and leaves are absent.
Status CreateTree(const Plan& plan, void*& object, Leaves leaves);

// The result of making a node; returned in registers where the platform can.
struct Made {
  void* node = nullptr;
  Status status;
};

// Copies a tree. TESSEL_INVALID_ARGUMENT: `source` is null.
Made CopyTree(const Plan& plan, const void* source);

// Copies a tree into the pool of another one that is being made.
Made CopyInto(Pool& pool, const Plan& plan, const void* source);

// Releases a tree; null is allowed. Of a node inside the blocks of a larger tree, it releases only what has memory of
// its own, such as members that were replaced.
void FreeTree(const Plan& plan, void* node);

Status CompareTrees(const Asn1Item& item, const void* first, const void* second, bool& equal);

}  // namespace tessel
