// Addresses of IP.
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>

#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

using Groups = std::array<uint16_t, 8>;

std::string DottedText(Octets octets) { return Concat(octets[0], '.', octets[1], '.', octets[2], '.', octets[3]); }

std::string GroupText(uint16_t group) {
  std::array<char, 4> digits{};
  const auto written = std::to_chars(digits.begin(), digits.end(), group, 16);
  return {digits.begin(), written.ptr};
}

struct Run {
  size_t start = 0;
  size_t length = 0;
};

// The first of the longest runs of zeros; one group alone is not shortened.
Run LongestZeros(const Groups& groups) {
  Run longest;
  Run run;
  for (size_t i = 0; i < groups.size(); ++i) {
    run = groups[i] != 0 ? Run{i + 1, 0} : Run{run.start, run.length + 1};
    if (run.length > longest.length) longest = run;
  }
  return longest.length > 1 ? longest : Run{groups.size(), 0};
}

std::string ColonText(Octets octets) {
  Groups groups{};
  for (size_t i = 0; i < groups.size(); ++i) groups[i] = static_cast<uint16_t>(octets[2 * i] << 8 | octets[2 * i + 1]);
  const Run zeros = LongestZeros(groups);
  std::string text;
  for (size_t i = 0; i < groups.size(); ++i) {
    if (i == zeros.start) text += "::";
    if (i >= zeros.start && i < zeros.start + zeros.length) continue;
    if (!text.empty() && text.back() != ':') text += ':';
    text += GroupText(groups[i]);
  }
  return text;
}

std::optional<int> PrefixLength(Octets mask) {
  int length = 0;
  bool ended = false;
  for (const uint8_t octet : mask) {
    const int ones = std::countl_one(octet);
    if (std::popcount(octet) != ones || (ended && ones != 0)) return std::nullopt;
    length += ones;
    ended = ended || ones < 8;
  }
  return length;
}

}  // namespace

std::optional<std::string> AddressText(Octets octets) {
  if (octets.size() == 4) return DottedText(octets);
  if (octets.size() == 16) return ColonText(octets);
  return std::nullopt;
}

std::optional<std::string> AddressRangeText(Octets octets) {
  const Octets mask = octets.subspan(octets.size() / 2);
  const std::optional<std::string> address = AddressText(octets.first(octets.size() / 2));
  const std::optional<std::string> maskText = AddressText(mask);
  if (!address || !maskText) return std::nullopt;
  const std::optional<int> prefix = PrefixLength(mask);
  return prefix ? Concat(*address, '/', *prefix) : Concat(*address, '/', *maskText);
}

}  // namespace tool
