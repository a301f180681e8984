// The SHA-256 digest (FIPS 180-4).
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tool {

using Sha256Digest = std::array<uint8_t, 32>;

namespace sha256 {

constexpr size_t kBlockSize = 64;
using State = std::array<uint32_t, 8>;
using Block = std::span<const uint8_t, kBlockSize>;

constexpr State kStart = {0x6A09E667, 0xBB67AE85, 0x3C6EF372, 0xA54FF53A,
                          0x510E527F, 0x9B05688C, 0x1F83D9AB, 0x5BE0CD19};

constexpr std::array<uint32_t, 64> kRoundConstants = {
    0x428A2F98, 0x71374491, 0xB5C0FBCF, 0xE9B5DBA5, 0x3956C25B, 0x59F111F1, 0x923F82A4, 0xAB1C5ED5,
    0xD807AA98, 0x12835B01, 0x243185BE, 0x550C7DC3, 0x72BE5D74, 0x80DEB1FE, 0x9BDC06A7, 0xC19BF174,
    0xE49B69C1, 0xEFBE4786, 0x0FC19DC6, 0x240CA1CC, 0x2DE92C6F, 0x4A7484AA, 0x5CB0A9DC, 0x76F988DA,
    0x983E5152, 0xA831C66D, 0xB00327C8, 0xBF597FC7, 0xC6E00BF3, 0xD5A79147, 0x06CA6351, 0x14292967,
    0x27B70A85, 0x2E1B2138, 0x4D2C6DFC, 0x53380D13, 0x650A7354, 0x766A0ABB, 0x81C2C92E, 0x92722C85,
    0xA2BFE8A1, 0xA81A664B, 0xC24B8B70, 0xC76C51A3, 0xD192E819, 0xD6990624, 0xF40E3585, 0x106AA070,
    0x19A4C116, 0x1E376C08, 0x2748774C, 0x34B0BCB5, 0x391C0CB3, 0x4ED8AA4A, 0x5B9CCA4F, 0x682E6FF3,
    0x748F82EE, 0x78A5636F, 0x84C87814, 0x8CC70208, 0x90BEFFFA, 0xA4506CEB, 0xBEF9A3F7, 0xC67178F2,
};

constexpr std::array<uint32_t, 64> MessageSchedule(Block block) {
  std::array<uint32_t, 64> words{};
  for (size_t i = 0; i < kBlockSize; ++i) words[i / 4] = words[i / 4] << 8 | block[i];
  for (size_t i = 16; i < words.size(); ++i) {
    const uint32_t early = words[i - 15];
    const uint32_t late = words[i - 2];
    words[i] = words[i - 16] + (std::rotr(early, 7) ^ std::rotr(early, 18) ^ early >> 3) + words[i - 7] +
               (std::rotr(late, 17) ^ std::rotr(late, 19) ^ late >> 10);
  }
  return words;
}

constexpr void Update(State& state, Block block) {
  const std::array<uint32_t, 64> words = MessageSchedule(block);
  auto [a, b, c, d, e, f, g, h] = state;
  for (size_t i = 0; i < words.size(); ++i) {
    const uint32_t first = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) + ((e & f) ^ (~e & g)) +
                           kRoundConstants[i] + words[i];
    const uint32_t second = (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
    h = g;
    g = f;
    f = e;
    e = d + first;
    d = c;
    c = b;
    b = a;
    a = first + second;
  }
  const State mixed = {a, b, c, d, e, f, g, h};
  for (size_t i = 0; i < state.size(); ++i) state[i] += mixed[i];
}

// The last octets, a bit that ends them, zeros, and the number of all bits.
constexpr void Finish(State& state, std::span<const uint8_t> rest, uint64_t size) {
  std::array<uint8_t, 2 * kBlockSize> padded{};
  std::copy(rest.begin(), rest.end(), padded.begin());
  padded[rest.size()] = 0x80;
  const size_t end = rest.size() + 1 + sizeof size <= kBlockSize ? kBlockSize : 2 * kBlockSize;
  for (size_t i = 0; i < sizeof size; ++i) padded[end - 1 - i] = static_cast<uint8_t>(size * 8 >> 8 * i);
  for (size_t start = 0; start < end; start += kBlockSize) Update(state, Block(padded.begin() + start, kBlockSize));
}

}  // namespace sha256

constexpr Sha256Digest Sha256(std::span<const uint8_t> octets) {
  sha256::State state = sha256::kStart;
  std::span<const uint8_t> rest = octets;
  for (; rest.size() >= sha256::kBlockSize; rest = rest.subspan(sha256::kBlockSize)) {
    sha256::Update(state, rest.first<sha256::kBlockSize>());
  }
  sha256::Finish(state, rest, octets.size());
  Sha256Digest digest{};
  for (size_t i = 0; i < digest.size(); ++i) digest[i] = static_cast<uint8_t>(state[i / 4] >> (24 - 8 * (i % 4)));
  return digest;
}

}  // namespace tool
