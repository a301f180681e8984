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

// A new tree. `object` is written on success, and not even then when the root is a primitive without leaves.
Status CreateTree(const Plan& plan, void*& object, Leaves leaves);

// A node, unless its status is a failure; returned in registers where the platform can.
struct Made {
  void* node = nullptr;
  Status status;
};

// A deep copy of a tree that is there.
Made CopyTree(const Plan& plan, const void* source);

// The same into the pool of a tree in the making.
Made CopyInto(Pool& pool, const Plan& plan, const void* source);

// Null is allowed. Inside the blocks of a larger tree it releases what members have been replaced with.
void FreeTree(const Plan& plan, void* node);

Status CompareTrees(const Asn1Item& item, const void* first, const void* second, bool& equal);

}  // namespace tessel
