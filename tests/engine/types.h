// Small types for the tests of the engine.
#pragma once

#include "tessel/asn1.hpp"
#include "tessel/time.hpp"

namespace test {

using namespace tessel;

constexpr Asn1Item Plain(uint32_t flags, uint32_t kind, int32_t tagNumber = kNoTagNumber) {
  return {flags, kind, tagNumber, 0, nullptr, 0, nullptr};
}

inline constexpr auto kOptionalInteger = Optional<kInteger>;
inline constexpr auto kDefaultInteger = Default<kInteger, kZero>;
inline constexpr auto kImplicitInteger = Implicit<1, kInteger>;
inline constexpr auto kExplicitInteger = Explicit<0, kInteger>;
inline constexpr auto kOptionalExplicitInteger = Optional<Explicit<0, kInteger>>;
inline constexpr auto kOptionalAny = Optional<kAny>;
inline constexpr auto kExplicitAny = Explicit<0, kAny>;
inline constexpr Asn1Item kExplicitWithoutTag = Plain(TESSEL_CLASS_CONTEXT | TESSEL_FLAG_EXPLICIT, TESSEL_KIND_INTEGER);
inline constexpr Asn1Item kTagZero = Plain(0, TESSEL_KIND_OCTET_STRING, 0);
inline constexpr Asn1Item kUnknownPrimitive = Plain(0, 7);
inline constexpr Asn1Item kUnknownConstructed = Plain(TESSEL_FLAG_CONSTRUCTED, 7);

// SEQUENCE { INTEGER, BOOLEAN DEFAULT FALSE, ANY OPTIONAL }
struct TestSequence {
  Asn1Value* number;
  Asn1Value* flag;
  Asn1Any* open;
};
inline constexpr auto kTestSequence = Sequence{
    Member<&TestSequence::number, kInteger>,
    Member<&TestSequence::flag, Default<kBoolean, kFalse>>,
    Member<&TestSequence::open, Optional<kAny>>,
};

// CHOICE { INTEGER, [1] IMPLICIT INTEGER, [2] EXPLICIT INTEGER, an open SEQUENCE, an open value without a tag }
struct TestChoice : Asn1Choice {
  enum : uint32_t { number, implicitNumber, explicitNumber, openSequence, open };
};
inline constexpr Item<Asn1Any> kOpenSequence{Plain(TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_ANY, TESSEL_KIND_SEQUENCE)};
inline constexpr auto kTestChoice =
    Choice<TestChoice, Alternative<TestChoice::number, kInteger>,
           Alternative<TestChoice::implicitNumber, Implicit<1, kInteger>>,
           Alternative<TestChoice::explicitNumber, Explicit<2, kInteger>>,
           Alternative<TestChoice::openSequence, kOpenSequence>, Alternative<TestChoice::open, kAny>>();
inline constexpr auto kOptionalChoice = Optional<kTestChoice>;
inline constexpr auto kExplicitChoice = Explicit<0, kTime>;

struct Values : ListOf<Asn1Value> {};
inline constexpr auto kIntegers = SequenceOf<Values, kInteger>();
inline constexpr auto kExplicitIntegers = SequenceOf<Values, kExplicitInteger>();
struct ListsOfValues : ListOf<Values> {};
inline constexpr auto kListsOfExplicitIntegers = SequenceOf<ListsOfValues, kExplicitIntegers>();
inline constexpr auto kIntegerSet = SetOf<Values, kInteger>();
inline constexpr auto kStrings = SequenceOf<Values, kOctetString>();
inline constexpr auto kStringSet = SetOf<Values, kOctetString>();
inline constexpr auto kOptionalIntegers = SequenceOf<Values, Optional<kInteger>>();
inline constexpr Asn1Item kListWithoutElement = Plain(TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_SEQUENCE_OF);

// [2] EXPLICIT with the universal class: 0x22.
inline constexpr const Asn1Item* kIntegerElement[] = {&kInteger};
inline constexpr Asn1Item kUniversalExplicitList{TESSEL_FLAG_CONSTRUCTED | TESSEL_FLAG_EXPLICIT | TESSEL_FLAG_OPTIONAL,
                                                 TESSEL_KIND_SEQUENCE_OF,
                                                 2,
                                                 0,
                                                 kIntegerElement,
                                                 1,
                                                 nullptr};

// SET { INTEGER }
struct TestSet {
  Asn1Value* number;
};
inline constexpr Asn1Item kTestSet{
    TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_SET, kNoTagNumber, sizeof(TestSet), kIntegerElement, 1, nullptr};

// Nest ::= SEQUENCE OF Nest
extern const Asn1Item kNest;
inline constexpr const Asn1Item* kNestElement[] = {&kNest};
inline constexpr Asn1Item kNest{
    TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_SEQUENCE_OF, kNoTagNumber, 0, kNestElement, 1, nullptr};

}  // namespace test
