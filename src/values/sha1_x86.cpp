#include "values/sha1.h"

#if !defined(__x86_64__) && !defined(__i386__)

tessel::Sha1Compression* tessel::FindSha1Instructions() { return nullptr; }

#else

#include <cpuid.h>
#include <immintrin.h>

#include <utility>

// The attribute of functions that use the instructions. The rest of the library is compiled for any x86 processor.
#define TESSEL_SHA_TARGET gnu::target("sha,sse4.1")

namespace tessel {
namespace {

// The instructions do four rounds at a time on vectors of four words. In these the first word stands highest: `a` in
// the state, the earliest in the schedule.
struct State {
  __m128i abcd;
  // Where the next four rounds get `e` from. Before the first round it is the state's own `e` in the highest word,
  // later the `abcd` of four rounds ago, whose `a` has become `e`.
  __m128i e;
};
// Of the 20 vectors of the schedule the last four are kept: vector g stands at g % 4.
using Schedule = __m128i[4];

constexpr int kGroups = 20;

[[TESSEL_SHA_TARGET, gnu::always_inline]] inline __m128i AddWords(__m128i first, __m128i second) {
  using Words [[gnu::vector_size(16)]] = uint32_t;
  return reinterpret_cast<__m128i>(reinterpret_cast<Words>(first) + reinterpret_cast<Words>(second));
}

template <int kGroup>
[[TESSEL_SHA_TARGET, gnu::always_inline]] inline __m128i ScheduledWords(Schedule& words, const uint8_t* block) {
  __m128i& group = words[kGroup % 4];
  if constexpr (kGroup < 4) {
    const __m128i bigEndian = _mm_set_epi64x(0x0001020304050607, 0x08090A0B0C0D0E0F);
    group = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block) + kGroup);
    group = _mm_shuffle_epi8(group, bigEndian);
  } else {
    group = _mm_sha1msg1_epu32(group, words[(kGroup - 3) % 4]);
    group = _mm_xor_si128(group, words[(kGroup - 2) % 4]);
    group = _mm_sha1msg2_epu32(group, words[(kGroup - 1) % 4]);
  }
  return group;
}

template <int kGroup>
[[TESSEL_SHA_TARGET, gnu::always_inline]] inline void FourRounds(State& state, Schedule& words, const uint8_t* block) {
  const __m128i scheduled = ScheduledWords<kGroup>(words, block);
  const __m128i plusE = kGroup == 0 ? AddWords(state.e, scheduled) : _mm_sha1nexte_epu32(state.e, scheduled);
  state.e = state.abcd;
  state.abcd = _mm_sha1rnds4_epu32(state.abcd, plusE, kGroup / 5);
}

template <int... kEachGroup>
[[TESSEL_SHA_TARGET, gnu::always_inline]] inline void CompressBlock(State& state, const uint8_t* block,
                                                                    std::integer_sequence<int, kEachGroup...>) {
  const State before = state;
  Schedule words;
  (FourRounds<kEachGroup>(state, words, block), ...);
  state.e = _mm_sha1nexte_epu32(state.e, before.e);
  state.abcd = AddWords(state.abcd, before.abcd);
}

// Callers on 32-bit systems do not all align the stack as the vectors need it.
[[TESSEL_SHA_TARGET, gnu::force_align_arg_pointer]] void Compress(Sha1State& words, const uint8_t* blocks,
                                                                  size_t count) {
  constexpr int kReversed = 0x1B;
  auto* abcd = reinterpret_cast<__m128i*>(words.data());
  State state = {_mm_shuffle_epi32(_mm_loadu_si128(abcd), kReversed),
                 _mm_set_epi32(static_cast<int>(words[4]), 0, 0, 0)};
  for (; count > 0; --count, blocks += kSha1BlockSize) {
    CompressBlock(state, blocks, std::make_integer_sequence<int, kGroups>());
  }
  _mm_storeu_si128(abcd, _mm_shuffle_epi32(state.abcd, kReversed));
  words[4] = static_cast<uint32_t>(_mm_extract_epi32(state.e, 3));
}

// The instructions themselves, and the shuffles and the extraction around them (SSSE3 and SSE4.1).
bool HasInstructions() {
  constexpr unsigned kSsse3AndSse41 = bit_SSSE3 | bit_SSE4_1;
  unsigned eax = 0;
  unsigned ebx = 0;
  unsigned ecx = 0;
  unsigned edx = 0;
  if (__get_cpuid(1, &eax, &ebx, &ecx, &edx) == 0 || (ecx & kSsse3AndSse41) != kSsse3AndSse41) return false;
  return __get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) != 0 && (ebx & bit_SHA) != 0;
}

}  // namespace

Sha1Compression* FindSha1Instructions() { return HasInstructions() ? &Compress : nullptr; }

}  // namespace tessel

#endif
