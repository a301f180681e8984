#include "engine/plan.h"

#include <algorithm>

namespace tessel {
namespace {

bool HasRightCount(const Asn1Item& item) {
  if (NodeLayoutOf(item) == NodeLayout::kListNode) return item.memberCount == 1;
  if (NodeLayoutOf(item) == NodeLayout::kSlotsNode) return item.nodeSize == uint64_t{item.memberCount} * sizeof(void*);
  return true;
}

}  // namespace

bool IsConsistent(const Asn1Item& item) {
  if (!HasRightCount(item)) return false;
  if (item.members == nullptr) return item.memberCount == 0;
  return std::find(item.members, item.members + item.memberCount, nullptr) == item.members + item.memberCount;
}

}  // namespace tessel
