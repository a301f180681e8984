// Texts put together from parts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

namespace tool {

template <typename Part>
void AppendPart(std::string& text, const Part& part) {
  if constexpr (std::is_same_v<Part, char>) {
    text += part;
  } else if constexpr (std::is_integral_v<Part>) {
    text += std::to_string(part);
  } else {
    text += std::string_view(part);
  }
}

// All parts, one after the other: texts and characters as they are, numbers in decimal.
template <typename... Parts>
std::string Concat(const Parts&... parts) {
  std::string text;
  (AppendPart(text, parts), ...);
  return text;
}

// "a CRL", "an OCSP request".
inline std::string WithArticle(std::string_view noun) {
  const bool isVowel = std::string_view("AEIOaeio").find(noun.front()) != std::string_view::npos;
  return Concat(isVowel ? "an " : "a ", noun);
}

// "1 octet", "2 octets".
inline std::string OctetCount(size_t count) { return Concat(count, count == 1 ? " octet" : " octets"); }

}  // namespace tool
