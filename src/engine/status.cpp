#include "engine/status.h"

#include <atomic>
#include <cstring>

namespace tessel {
namespace {

// DEVIATES: the banner names 32 bits and a date, whatever the build is: programs know the library by this text.
constexpr char kBanner[] = "TESSEL v1.0 (32bit) 05/02/2019 (R.3729) (c) Korvane";

// Two independent cells, so that concurrent failures are free of data races; a reader may still see a mixed pair.
// DEVIATES: the place is one for the whole process, and success leaves it, for programs ask for it later and elsewhere.
std::atomic<const char*> lastModule{nullptr};
std::atomic<uint32_t> lastLine{UINT32_MAX};

}  // namespace

void RecordFailure(SourceLocation at) {
  lastModule.store(at.module, std::memory_order_relaxed);
  lastLine.store(at.line, std::memory_order_relaxed);
}

}  // namespace tessel

using namespace tessel;

const char* TESSEL_CALL GetLastFileErrorAsn(uint32_t* line) {
  if (line != nullptr) *line = lastLine.load(std::memory_order_relaxed);
  return lastModule.load(std::memory_order_relaxed);
}

uint32_t TESSEL_CALL GetVersionInfo(char* buffer, uint32_t* length) {
  // DEVIATES: there is no question for the length, and on success the NUL does not count: programs take it for that of
  // the text.
  if (buffer == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const uint32_t capacity = *length;
  *length = sizeof kBanner;
  if (capacity < sizeof kBanner) return Fail(TESSEL_BUFFER_TOO_SMALL);
  std::memcpy(buffer, kBanner, sizeof kBanner);
  *length = sizeof kBanner - 1;
  return Status();
}
