// Facts about values of primitive types, by their content octets.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "ber.h"
#include "fact.h"

namespace tool {

// The content of the element at the start of `octets`, when it is a universal one of this type.
std::optional<Octets> ContentOfType(Octets octets, uint32_t tag);

// Octets in hexadecimal: people see the first ones of many.
Fact HexFact(Octets octets);

// The same for programs, as an object {"hex"}: what stands for a value that cannot be told by its type.
Fact UnreadFact(Octets octets);

// An object identifier by its name, where it has one.
Fact OidFact(Octets content);

// A character string of the universal type `tag`.
Fact StringFact(uint32_t tag, Octets content);

// An INTEGER or ENUMERATED.
Fact IntegerFact(Octets content);

// A UTCTime or GeneralizedTime. Programs get ISO 8601, or what is written when that is no time.
Fact TimeFact(uint32_t tag, Octets content);

// Any element, by its universal type; in hexadecimal where that tells nothing.
Fact ElementFact(Octets element);

// Named bits, in the form in which the library passes them (extension_values.h): the names of those that are set.
Fact NamedBitsFact(uint32_t bits, std::span<const std::string_view> names);

}  // namespace tool
