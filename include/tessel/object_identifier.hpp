// Object identifiers: compared, written as text, told by their names.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tessel/octets.hpp"

namespace tessel {

// A counted identifier (oid.h) in memory of its own.
class ObjectIdentifier {
 public:
  static constexpr size_t kLargestContent = 255;

  // The empty identifier.
  constexpr ObjectIdentifier() = default;

  // ObjectIdentifier("2.5.29.15"), of a text that is known when the program is compiled: a wrong one does not compile.
  // Any other text is converted by ConvertStringToOid.
  consteval explicit ObjectIdentifier(std::string_view dotted) {
    if (!Parse(dotted)) NoDottedText();
  }

  // By the content octets of its DER; nothing when there are more than can be counted.
  static constexpr std::optional<ObjectIdentifier> OfContent(Octets content) {
    if (content.size() > kLargestContent) return std::nullopt;
    ObjectIdentifier identifier;
    identifier.counted_[0] = static_cast<uint8_t>(content.size());
    std::copy(content.begin(), content.end(), identifier.counted_.begin() + 1);
    return identifier;
  }

  // What functions of the C interface take: the count, then the content.
  [[nodiscard]] constexpr const uint8_t* Counted() const { return counted_.data(); }
  [[nodiscard]] constexpr Octets Content() const { return {counted_.data() + 1, counted_[0]}; }
  // Room for a function that writes a counted identifier.
  [[nodiscard]] constexpr std::span<uint8_t> Room() { return counted_; }

  // "2.5.29.15". Unlike ConvertOidToString this writes 2.999 as such. Empty when the content is no identifier, has arcs
  // of more than 64 bits, or has arcs with needless leading zero bits, by which one identifier could pass for another.
  [[nodiscard]] std::string Text() const {
    std::string text;
    for (Octets rest = Content(); !rest.empty();) {
      std::optional<uint64_t> arc = TakeArc(rest);
      if (!arc) return {};
      if (text.empty()) {
        const uint64_t first = std::min<uint64_t>(*arc / kArcsBelowFirst, kLargestFirstArc);
        text = std::to_string(first);
        *arc -= first * kArcsBelowFirst;
      }
      text += '.';
      text += std::to_string(*arc);
    }
    return text;
  }

  friend constexpr bool operator==(const ObjectIdentifier& one, const ObjectIdentifier& other) {
    return std::ranges::equal(one.Content(), other.Content());
  }

 private:
  static constexpr uint64_t kArcsBelowFirst = 40;
  static constexpr uint64_t kLargestFirstArc = 2;

  // Calling this function is a compile error, since it is not constexpr.
  static void NoDottedText() {}

  static std::optional<uint64_t> TakeArc(Octets& content) {
    if (content.front() == 0x80) return std::nullopt;
    uint64_t arc = 0;
    for (size_t i = 0; i < content.size() && arc >> 57 == 0; ++i) {
      arc = arc << 7 | (content[i] & 0x7F);
      if ((content[i] & 0x80) != 0) continue;
      content = content.subspan(i + 1);
      return arc;
    }
    return std::nullopt;
  }

  constexpr bool Parse(std::string_view dotted) {
    uint64_t first = 0;
    for (size_t place = 0;; ++place) {
      const std::string_view digits = dotted.substr(0, dotted.find('.'));
      uint64_t arc = 0;
      if (digits.empty() || digits.size() > 18 || (digits.size() > 1 && digits[0] == '0')) return false;
      for (const char digit : digits) {
        if (digit < '0' || digit > '9') return false;
        arc = arc * 10 + static_cast<uint64_t>(digit - '0');
      }
      if (place == 0 && arc > kLargestFirstArc) return false;
      if (place == 1 && first < kLargestFirstArc && arc >= kArcsBelowFirst) return false;
      if (place == 0) first = arc;
      if (place > 0 && !Append(place == 1 ? first * kArcsBelowFirst + arc : arc)) return false;
      if (digits.size() == dotted.size()) return place > 0;
      dotted.remove_prefix(digits.size() + 1);
    }
  }

  constexpr bool Append(uint64_t arc) {
    for (unsigned shift = 63; shift > 0; shift -= 7) {
      if (arc >> shift != 0 && !Append(static_cast<uint8_t>(0x80 | (arc >> shift & 0x7F)))) return false;
    }
    return Append(static_cast<uint8_t>(arc & 0x7F));
  }
  constexpr bool Append(uint8_t octet) {
    if (counted_[0] == kLargestContent) return false;
    counted_[++counted_[0]] = octet;
    return true;
  }

  std::array<uint8_t, 1 + kLargestContent> counted_{};
};

}  // namespace tessel
