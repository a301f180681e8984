// SHA-1 (FIPS 180-4), by which key identifiers are made. Nothing in the library relies on SHA-1 being secure.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "engine/memory.h"

namespace tessel {

using Sha1Digest = std::array<uint8_t, 20>;

Sha1Digest Sha1(Octets data);

// Sha1 is built on functions that compress whole blocks into the state.
inline constexpr size_t kSha1BlockSize = 64;
using Sha1State = std::array<uint32_t, 5>;
using Sha1Compression = void(Sha1State& state, const uint8_t* blocks, size_t count);

// On any processor.
Sha1Compression CompressSha1Portably;

// By the SHA instructions of the x86 processor that this runs on; null when it has none. Asks the processor, which
// takes a while.
Sha1Compression* FindSha1Instructions();

Sha1Digest Sha1By(Sha1Compression& compress, Octets data);

}  // namespace tessel
