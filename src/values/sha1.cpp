#include "values/sha1.h"

#include <algorithm>
#include <atomic>

#include "engine/status.h"
#include "tessel/sha1.h"

namespace tessel {
namespace {

// The fastest compression on this processor; null before the first use. Threads that look for it at the same time find
// the same.
constinit std::atomic<Sha1Compression*> fastest{nullptr};

Sha1Compression& FastestCompression() {
  Sha1Compression* found = fastest.load(std::memory_order_relaxed);
  if (found == nullptr) {
    found = FindSha1Instructions();
    if (found == nullptr) found = CompressSha1Portably;
    fastest.store(found, std::memory_order_relaxed);
  }
  return *found;
}

}  // namespace

Sha1Digest Sha1(Octets data) { return Sha1By(FastestCompression(), data); }

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL sha1(const uint8_t* data, uint32_t size, uint8_t* digest) {
  if (data == nullptr || digest == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const Sha1Digest result = Sha1({data, size});
  std::copy(result.begin(), result.end(), digest);
  return Status();
}
