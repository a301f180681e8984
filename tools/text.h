// Octets and character strings as text that is safe to print.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ber.h"

namespace tool {

// What is escaped besides that which could drive a terminal or disguise the text, which always is.
enum class Escape {
  kNothing,
  kBackslash,  // so that an escaped octet is told from one that is written like that
  kQuotes,     // what would end or change a text between quotation marks
  kName        // what RFC 4514, 2.4 asks for in an attribute value
};

// Upper-case hexadecimal digits.
std::string Hex(Octets octets);

// The same, of the first octets only when there are many; then the number of all octets follows.
std::string ShortHex(Octets octets);

// The characters of a string of the universal type `tag`; an octet that is none is marked for EscapeText. Nothing when
// the type is no character string, or the length cannot be one of its type.
std::optional<std::u32string> Characters(uint32_t tag, Octets octets);

// UTF-8. What must not be printed as it is becomes a backslash and two hexadecimal digits for each of its octets.
std::string EscapeText(std::u32string_view text, Escape escape);

// The characters themselves, as UTF-8. Nothing when there are octets among them that are none.
std::optional<std::string> Utf8(std::u32string_view text);

// Text from outside that is UTF-8 in the usual case: a file name, a PEM label.
std::string Printable(std::string_view text);

}  // namespace tool
