// Object identifiers: the counted form of the interface, nodes, and tables.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "engine/memory.h"
#include "engine/slot.h"
#include "engine/status.h"
#include "tessel/nodes.h"
#include "tessel/nodes.hpp"
#include "tessel/oid.h"

namespace tessel {

inline constexpr size_t kMaximumOidContent = 255;

// The content octets of a counted identifier.
constexpr Octets OidContent(const uint8_t* counted) { return {counted + 1, counted[0]}; }

// Delivers content octets as a counted identifier. TESSEL_MALFORMED: there are more than can be counted.
Status DeliverOid(Octets content, uint8_t* buffer, uint32_t* length, Caller at = {});

// A member as a counted identifier. Setting always stores a new node.
Status GetOid(const ReadSlot<Asn1Oid>& slot, uint8_t* buffer, uint32_t* length);
Status SetOid(const Slot<Asn1Oid>& slot, const uint8_t* counted);

// A counted identifier known when the library is compiled, written as text: Oid("2.5.4.3").
struct CountedOid {
  std::array<uint8_t, 16> octets{};

  [[nodiscard]] constexpr const uint8_t* Data() const { return octets.data(); }
  [[nodiscard]] constexpr Octets Content() const { return OidContent(Data()); }
};

namespace detail {

// Appends an arc in base 128, the most significant group first.
template <class Append>
constexpr void AppendArc(uint32_t arc, Append append) {
  for (unsigned shift = 28; shift > 0; shift -= 7) {
    if (arc >> shift != 0) append(static_cast<uint8_t>(0x80 | (arc >> shift & 0x7F)));
  }
  append(static_cast<uint8_t>(arc & 0x7F));
}

}  // namespace detail

consteval CountedOid Oid(std::string_view text) {
  CountedOid oid;
  const auto append = [&oid](uint8_t octet) { oid.octets[++oid.octets[0]] = octet; };
  uint32_t first = 0;
  for (size_t component = 0; !text.empty(); ++component) {
    const std::string_view digits = text.substr(0, text.find('.'));
    uint32_t arc = 0;
    for (const char digit : digits) arc = arc * 10 + static_cast<uint32_t>(digit - '0');
    if (component == 0) {
      first = arc;
    } else {
      detail::AppendArc(component == 1 ? first * 40 + arc : arc, append);
    }
    text.remove_prefix(digits.size() < text.size() ? digits.size() + 1 : digits.size());
  }
  return oid;
}

// A row of a table that gives identifiers numbers. Where an identifier or number stands twice, its first row counts.
struct OidRow {
  uint32_t id;
  CountedOid oid;
};
using OidTable = std::span<const OidRow>;

Status FindId(OidTable table, Octets content, uint32_t& id, Caller at = {});
Status FindOid(OidTable table, uint32_t id, const uint8_t*& counted, Caller at = {});

// The table of FindAlgIdByOid and GetPublicKeyAlgorithmOid.
OidTable AlgorithmTable();

}  // namespace tessel
