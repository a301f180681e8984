// Descriptors that callers write: wrong ones, and ones that contain themselves.
#include <gtest/gtest.h>

#include <functional>

#include "support/octets.h"
#include "support/tree.h"
#include "tessel/tessel.h"
#include "types.h"

#if !defined(_WIN32) && !defined(__SANITIZE_ADDRESS__)
#include <pthread.h>
#define TESSEL_TEST_CAN_LIMIT_THE_STACK
#endif

namespace test {
namespace {

constexpr uint32_t kSlot = sizeof(void*);
constexpr const Asn1Item* kNumbers[] = {&kInteger, &kInteger};
constexpr const Asn1Item* kNumberAndNull[] = {&kInteger, nullptr};

constexpr Asn1Item Sequence(uint32_t nodeSize, const Asn1Item* const* members, uint32_t count) {
  return {TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_SEQUENCE, kNoTagNumber, nodeSize, members, count, nullptr};
}
// [0] EXPLICIT
constexpr Asn1Item Wrapped(Asn1Item item, uint32_t flags) {
  item.flags |= TESSEL_CLASS_CONTEXT | TESSEL_FLAG_EXPLICIT | flags;
  item.tagNumber = 0;
  return item;
}

TEST(Descriptors, ThatContradictThemselvesAreRefusedByEveryOperation) {
  const Asn1Item wrong[] = {
      Sequence(kSlot, kNumbers, 2),      Sequence(0, kNumbers, 2),
      Sequence(3 * kSlot, kNumbers, 2),  Sequence(2 * kSlot + 1, kNumbers, 2),
      Sequence(2 * kSlot, nullptr, 2),   Sequence(2 * kSlot, kNumberAndNull, 2),
      Sequence(UINT32_MAX, kNumbers, 2), Sequence(2 * kSlot, kNumbers, 2 + (1U << 31)),
  };
  // What is large enough for all of them.
  Asn1Value number{TESSEL_KIND_INTEGER, 0, nullptr};
  void* node[] = {&number, &number, &number};
  for (const Asn1Item& item : wrong) {
    SCOPED_TRACE(std::to_string(item.nodeSize) + " octets, " + std::to_string(item.memberCount) + " members");
    const Asn1Item* element[] = {&item};
    const Asn1Item list{TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_SEQUENCE_OF, kNoTagNumber, 0, element, 1, nullptr};
    EXPECT_STATUS(TESSEL_INCONSISTENT_DESCRIPTOR, Decode(item, FromHex("30 06 02 01 01 02 01 02")).status);  // { 1, 2 }
    EXPECT_STATUS(TESSEL_INCONSISTENT_DESCRIPTOR,
                  Decode(list, FromHex("30 08 30 06 02 01 01 02 01 02")).status);  // { { 1, 2 } }
    EXPECT_STATUS(TESSEL_INCONSISTENT_DESCRIPTOR, Encode(item, node).status);
    void* object = nullptr;
    EXPECT_STATUS(TESSEL_INCONSISTENT_DESCRIPTOR, CreateAsn1Object(&item, &object, 1));
    EXPECT_STATUS(TESSEL_INCONSISTENT_DESCRIPTOR, Copy(item, node, &object));
    EXPECT_EQ(nullptr, object);
    uint32_t equal = 0;
    EXPECT_STATUS(TESSEL_INCONSISTENT_DESCRIPTOR, CompareAsn1Objects(&item, node, node, &equal));
  }
}

TEST(Descriptors, OfAListHaveNoNodeSize) {
  const Asn1Item* element[] = {&kInteger};
  const Asn1Item item{TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_SEQUENCE_OF, kNoTagNumber, UINT32_MAX, element, 1, nullptr};
  // So much memory is not asked for.
  EXPECT_OK(Decode(item, FromHex("30 03 02 01 01")).status);
}

TEST(Descriptors, OfAChoiceWithoutAnAlternativeAreRefused) {
  const Asn1Item item{TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_CHOICE, kNoTagNumber, 0, kNumberAndNull, 2, nullptr};
  EXPECT_STATUS(TESSEL_INCONSISTENT_DESCRIPTOR, Decode(item, FromHex("04 00")).status);
  Asn1Choice choice{1, &choice};
  EXPECT_STATUS(TESSEL_INCONSISTENT_DESCRIPTOR, Encode(item, &choice).status);
  void* node = &choice;
  EXPECT_STATUS(TESSEL_INCONSISTENT_DESCRIPTOR, Copy(item, node, &node));
  node = &choice;
  const Asn1Item* descriptor = &item;
  EXPECT_STATUS(TESSEL_INCONSISTENT_DESCRIPTOR, GetAsn1ChoiceUnderlyingType(&node, &descriptor));
  EXPECT_EQ(&item, descriptor);
}

// Types that contain themselves, and how a value of so many levels is encoded.
extern const Asn1Item kTower;
extern const Asn1Item kInnerTower;
constexpr const Asn1Item* kTowerMembers[] = {&kInnerTower};
// Tower ::= SEQUENCE { inner [0] EXPLICIT Tower OPTIONAL }
constexpr Asn1Item kTower = Sequence(kSlot, kTowerMembers, 1);
constexpr Asn1Item kInnerTower = Wrapped(kTower, TESSEL_FLAG_OPTIONAL);

extern const Asn1Item kPair;
constexpr const Asn1Item* kPairElement[] = {&kPair};
// Pair ::= SET OF Pair, two of them in each
constexpr Asn1Item kPair{TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_SET_OF, kNoTagNumber, 0, kPairElement, 1, nullptr};

extern const Asn1Item kInnerChain;
constexpr const Asn1Item* kChainAlternatives[] = {&kInnerChain, &kNull};
// Chain ::= CHOICE { [0] EXPLICIT Chain, NULL }
constexpr Asn1Item kChain{TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_CHOICE, kNoTagNumber, 0, kChainAlternatives, 2, nullptr};
constexpr Asn1Item kInnerChain = Wrapped(kChain, 0);

Bytes Tower(size_t levels) {
  Bytes encoding = FromHex("30 00");
  for (size_t i = 1; i < levels; ++i) encoding = Der(0x30, Der(0xA0, encoding));
  return encoding;
}
Bytes Pairs(size_t levels) {
  Bytes encoding = FromHex("31 00");
  for (size_t i = 1; i < levels; ++i) encoding = Der(0x31, FromHex("31 00") + encoding);
  return encoding;
}
Bytes Chain(size_t levels) {
  Bytes encoding = FromHex("05 00");
  for (size_t i = 1; i < levels; ++i) encoding = Der(0xA0, encoding);
  return encoding;
}

struct Recursion {
  const Asn1Item& item;
  Bytes (*encode)(size_t levels);
};
const Recursion kRecursions[] = {{kTower, Tower}, {kPair, Pairs}, {kChain, Chain}};

// Every operation on the deepest value that is read.
void UseTheDeepest(const Recursion& recursion) {
  constexpr size_t kMostLevels = 64;
  EXPECT_STATUS(TESSEL_MALFORMED, Decode(recursion.item, recursion.encode(kMostLevels + 1)).status);
  const Bytes encoding = recursion.encode(kMostLevels);
  const DecodeResult decoded = Decode(recursion.item, encoding);
  ASSERT_OK(decoded.status);
  EXPECT_EQ(encoding, Encode(recursion.item, decoded.tree.Root()).octets);
  Bytes buffer(encoding.size());
  auto length = static_cast<uint32_t>(buffer.size());
  EXPECT_OK(GetAsn1EncodedValue(decoded.tree.Root(), &recursion.item, buffer.data(), &length));
  Tree copy(recursion.item);
  if (Copy(recursion.item, decoded.tree.Root(), copy.Out()) != TESSEL_OK) return;  // a NULL cannot be copied
  EXPECT_EQ(encoding, Encode(recursion.item, copy.Root()).octets);
  uint32_t equal = 0;
  EXPECT_OK(CompareAsn1Objects(&recursion.item, decoded.tree.Root(), copy.Root(), &equal));
  EXPECT_EQ(1U, equal);
}

TEST(Descriptors, ThatContainThemselvesAreReadToADepth) {
  for (const Recursion& recursion : kRecursions) UseTheDeepest(recursion);
}

#ifdef TESSEL_TEST_CAN_LIMIT_THE_STACK
TEST(Descriptors, ThatContainThemselvesNeedNoMoreThan128KilobytesOfStack) {
  constexpr size_t kStack = size_t{128} << 10;
  pthread_attr_t attributes;
  ASSERT_EQ(0, pthread_attr_init(&attributes));
  ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, kStack));
  for (const Recursion& recursion : kRecursions) {
    pthread_t thread{};
    const auto run = [](void* it) -> void* {
      UseTheDeepest(*static_cast<const Recursion*>(it));
      return nullptr;
    };
    ASSERT_EQ(0, pthread_create(&thread, &attributes, run, const_cast<Recursion*>(&recursion)));
    pthread_join(thread, nullptr);
  }
  pthread_attr_destroy(&attributes);
}
#endif

// Endless ::= SEQUENCE { INTEGER, Endless }
extern const Asn1Item kEndless;
constexpr const Asn1Item* kEndlessMembers[] = {&kInteger, &kEndless};
constexpr Asn1Item kEndless = Sequence(2 * kSlot, kEndlessMembers, 2);

TEST(Descriptors, WithoutAValueThatEndsAreNotCreated) {
  void* object = nullptr;
  EXPECT_STATUS(TESSEL_INCONSISTENT_DESCRIPTOR, CreateAsn1Object(&kEndless, &object, 1));
  EXPECT_EQ(nullptr, object);
  EXPECT_STATUS(TESSEL_MALFORMED, Decode(kEndless, Repeat(FromHex("30 80 02 01 00"), 100000)).status);
}

}  // namespace
}  // namespace test
