// Facts about values of primitive types, by their content octets. They lend these octets.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "asn1/ber.h"
#include "facts/fact.h"
#include "tessel/nodes.hpp"
#include "tessel/strings.hpp"

namespace tool {

// Hexadecimal digits of all octets.
LentText HexText(Octets octets);

// The characters of a string of the universal type `tag`. Without an escape all of them must be characters.
LentText StringText(uint32_t tag, Octets content, std::optional<tessel::Escape> escape = std::nullopt);

// Octets in hexadecimal: people see the first ones of many.
Fact HexFact(Octets octets);

// The same for programs, as an object {"hex"}: what stands for a value that cannot be told by its type.
Fact UnreadFact(Octets octets);

// An object identifier by its name, where it has one.
Fact OidFact(Octets content);

// An INTEGER or ENUMERATED.
Fact IntegerFact(Octets content);

// An INTEGER as serial numbers are told: hexadecimal digits of the magnitude, after a minus sign when it is negative.
Fact SerialNumberFact(const Asn1Value& number);

// Any element, by its universal type; in hexadecimal where that tells nothing.
Fact ElementFact(Octets element);

// A BIT STRING of named bits: the names of those that are set. People see those of the first octets.
Fact NamedBitsFact(const Asn1BitString& bits, std::span<const std::string_view> names);

// A value of a primitive kind; in hexadecimal where that tells nothing.
Fact ValueFact(uint32_t kind, Octets content);

inline Fact FactOf(const Asn1Oid& identifier) { return OidFact(ContentOf(identifier)); }
inline Fact FactOf(const Asn1Any& element) { return ElementFact(ContentOf(element)); }
Fact FactOf(const Asn1BitString& bits);

}  // namespace tool
