// The elements of a BER encoding, one after the other, and the place where an encoding breaks.
#pragma once

#include <cstdint>
#include <deque>
#include <limits>
#include <optional>
#include <string>

#include "tessel/nodes.hpp"

namespace tool {

using tessel::ContentOf;
using tessel::Octets;

inline constexpr uint64_t kWideTagNumber = std::numeric_limits<uint64_t>::max();

struct Element {
  uint32_t offset = 0;
  uint32_t headerLength = 0;
  uint32_t contentLength = 0;  // 0 with indefinite length: nobody knows it before the end-of-contents octets
  uint32_t depth = 0;
  uint64_t tagNumber = 0;  // kWideTagNumber when it has more bits
  uint8_t tagClass = 0;
  bool constructed = false;
  bool indefinite = false;

  // True for the end-of-contents octets, the only element with this tag that a walk hands out.
  [[nodiscard]] bool IsEndOfContents() const;
  [[nodiscard]] uint32_t ContentOffset() const { return offset + headerLength; }
};

// The innermost value that does not decode, its place in the octets, and the reason, a sentence without its full stop.
struct Fault {
  std::string path;  // `tbsCertificate.extensions[3].critical`; empty for the whole value
  uint32_t offset = 0;
  std::string reason;

  // `tbsCertificate.version, offset 8: an INTEGER of no octets`
  [[nodiscard]] std::string Text() const;
};

// Walks over all elements in their order, into the constructed ones, and checks each content against what encloses it.
// The octets may hold several elements; there are fewer than 2^32 of them. The walk keeps its own stack, so the depth
// of the encoding is limited by the heap alone.
class Walk {
 public:
  explicit Walk(Octets octets) : octets_(octets) {}

  // False at the end, and where the encoding breaks.
  bool Next(Element& element);

  // How many elements enclose what comes next.
  [[nodiscard]] uint32_t Depth() const { return static_cast<uint32_t>(levels_.size()); }

  // Where and why the encoding broke.
  [[nodiscard]] const std::optional<Fault>& Break() const { return break_; }

 private:
  // A constructed element that is not finished. With indefinite length `end` is that of the enclosing element.
  struct Level {
    uint32_t start;
    uint32_t end;
    bool indefinite;
  };

  [[nodiscard]] uint32_t Limit() const {
    return levels_.empty() ? static_cast<uint32_t>(octets_.size()) : levels_.back().end;
  }
  [[nodiscard]] Octets Remaining() const { return octets_.subspan(position_, Limit() - position_); }
  bool FinishOctets();
  bool EnterHeader(Element& element);
  bool CloseIndefinite(const Element& element);
  bool CheckContent(const Element& element);
  void Enter(const Element& element);
  void CloseFinishedLevels();
  bool Fail(std::string reason);
  [[nodiscard]] std::string Enclosing() const;
  [[nodiscard]] std::string HeaderProblem(uint32_t status) const;

  Octets octets_;
  uint32_t position_ = 0;
  std::deque<Level> levels_;
  std::optional<Fault> break_;
};

// Where the elements break that the octets hold; nothing when all are sound.
std::optional<Fault> FindBreak(Octets octets);

// The element of definite length at the start of `octets`, when it lies within them.
std::optional<Element> ReadElement(Octets octets);

// The content of an element; empty for one of indefinite length.
Octets ContentOf(const Element& element, Octets octets);

// The content of the element at the start of `octets`, when it is a universal one of this type.
std::optional<Octets> ContentOfType(Octets octets, uint32_t tag);

// The same, and the element is taken off the front of `octets`.
std::optional<Octets> TakeContentOfType(Octets& octets, uint32_t tag);

// Reads the header at the start of `octets`, which are not empty, into an element without offset and depth. The status
// of GetAsn1ObjectInfo.
uint32_t ReadHeader(Octets octets, Element& element);

}  // namespace tool
