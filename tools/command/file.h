// Files in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "asn1/ber.h"

namespace tool {

// The octets of a file, in memory of little more than their size: files may be large.
class FileOctets {
 public:
  // Reads a file; the name `-` is standard input. Throws a Refusal when it cannot be read, or is larger than the
  // library can tell.
  explicit FileOctets(const char* name);

  [[nodiscard]] Octets Get() const { return {octets_.get(), size_}; }

 private:
  struct Free {
    void operator()(uint8_t* octets) const { std::free(octets); }
  };

  void Reallocate(size_t capacity);

  std::unique_ptr<uint8_t, Free> octets_;
  size_t size_ = 0;
};

}  // namespace tool
