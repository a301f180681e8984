#include <algorithm>
#include <bit>
#include <utility>

#include "values/sha1.h"

namespace tessel {
namespace {

constexpr Sha1State kInitialState = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};

// The last block ends with the length in bits.
constexpr size_t kLengthSize = 8;

constexpr size_t kRounds = 80;
// Of the 80 words of the schedule the last 16 are kept: word t stands at t % 16.
using Schedule = std::array<uint32_t, 16>;

uint32_t BigEndianWord(const uint8_t* octets) {
  return uint32_t{octets[0]} << 24 | uint32_t{octets[1]} << 16 | uint32_t{octets[2]} << 8 | uint32_t{octets[3]};
}

template <size_t kRound>
uint32_t ScheduledWord(Schedule& words, const uint8_t* block) {
  uint32_t& word = words[kRound % 16];
  if constexpr (kRound < 16) {
    word = BigEndianWord(block + 4 * kRound);
  } else {
    word ^= words[(kRound - 3) % 16] ^ words[(kRound - 8) % 16] ^ words[(kRound - 14) % 16];
    word = std::rotl(word, 1);
  }
  return word;
}

// The function of the round and its constant.
template <size_t kRound>
uint32_t Mix(uint32_t b, uint32_t c, uint32_t d) {
  if constexpr (kRound < 20) {
    return (d ^ (b & (c ^ d))) + 0x5A827999;
  } else if constexpr (kRound < 40) {
    return (b ^ c ^ d) + 0x6ED9EBA1;
  } else if constexpr (kRound < 60) {
    // The majority: the two terms have no bit in common, so that their sum is their union.
    return (b & c) + (d & (b ^ c)) + 0x8F1BBCDC;
  } else {
    return (b ^ c ^ d) + 0xCA62C1D6;
  }
}

// The words of the state keep their places and change their roles: what is `a` in one round is `b` in the next. After
// five rounds, and so after all, each has the role that it began with.
template <size_t kRound>
[[gnu::always_inline]] inline void Round(Sha1State& state, Schedule& words, const uint8_t* block) {
  constexpr auto kPlace = [](size_t role) { return (role + kRounds - kRound) % 5; };
  const uint32_t a = state[kPlace(0)];
  uint32_t& b = state[kPlace(1)];
  uint32_t& e = state[kPlace(4)];
  e += std::rotl(a, 5) + Mix<kRound>(b, state[kPlace(2)], state[kPlace(3)]) + ScheduledWord<kRound>(words, block);
  b = std::rotl(b, 30);
}

template <size_t... kEachRound>
void CompressBlock(Sha1State& state, const uint8_t* block, std::index_sequence<kEachRound...>) {
  Sha1State next = state;
  Schedule words;
  (Round<kEachRound>(next, words, block), ...);
  for (size_t i = 0; i < state.size(); ++i) state[i] += next[i];
}

void PutBigEndian(uint64_t number, uint8_t* out, size_t size) {
  for (size_t i = size; i > 0; --i, number >>= 8) out[i - 1] = static_cast<uint8_t>(number);
}

}  // namespace

void CompressSha1Portably(Sha1State& state, const uint8_t* blocks, size_t count) {
  for (; count > 0; --count, blocks += kSha1BlockSize) {
    CompressBlock(state, blocks, std::make_index_sequence<kRounds>());
  }
}

Sha1Digest Sha1By(Sha1Compression& compress, Octets data) {
  Sha1State state = kInitialState;
  const size_t blocks = data.size() / kSha1BlockSize;
  compress(state, data.data(), blocks);

  const Octets rest = data.subspan(blocks * kSha1BlockSize);
  std::array<uint8_t, 2 * kSha1BlockSize> end{};
  *std::copy(rest.begin(), rest.end(), end.begin()) = 0x80;
  const size_t endBlocks = rest.size() < kSha1BlockSize - kLengthSize ? 1 : 2;
  PutBigEndian(uint64_t{data.size()} * 8, end.data() + endBlocks * kSha1BlockSize - kLengthSize, kLengthSize);
  compress(state, end.data(), endBlocks);

  Sha1Digest digest{};
  for (size_t i = 0; i < state.size(); ++i) PutBigEndian(state[i], digest.data() + 4 * i, 4);
  return digest;
}

}  // namespace tessel
