#include "describe/describer.h"

#include <algorithm>
#include <string_view>

#include "texts/concat.h"

namespace tool {
namespace {

// Words that are written in capitals, also where a name has them in small letters.
constexpr std::string_view kAcronyms[] = {"ca", "crl", "id"};

bool IsCapital(char c) { return c >= 'A' && c <= 'Z'; }
char Small(char c) { return IsCapital(c) ? static_cast<char>(c - 'A' + 'a') : c; }
char Capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// How long the first word of a name is. Capitals in a row are one word, with the letter before them and without the
// last one, which begins the next word.
size_t WordLength(std::string_view name) {
  const auto end = std::find_if_not(name.begin() + 1, name.end(), IsCapital);
  const auto capitals = static_cast<size_t>(end - name.begin()) - 1;
  if (end == name.end()) return name.size();
  return capitals != 0 ? capitals : static_cast<size_t>(std::find_if(end, name.end(), IsCapital) - name.begin());
}

}  // namespace

std::string InWords(std::string_view name) {
  std::string text;
  while (!name.empty()) {
    std::string word(name.substr(0, WordLength(name)));
    name.remove_prefix(word.size());
    const bool hasCapitals = word.size() > 1 && IsCapital(word[1]);
    std::ranges::transform(word, word.begin(), Small);
    if (hasCapitals || std::ranges::count(kAcronyms, word) != 0) std::ranges::transform(word, word.begin(), Capital);
    if (text.empty()) word.front() = Capital(word.front());
    text += Concat(text.empty() ? "" : " ", word);
  }
  return text;
}

Fact DecodedFact(const Type& type, Octets octets, uint32_t* consumed) {
  uint32_t length = 0;
  tessel::Tree tree = Decode(*type.outline, octets, &length);
  if (consumed != nullptr) *consumed = length;
  Fact fact = type.describe(tree.Root(), octets.first(length));
  fact.Keep(std::move(tree));
  return fact;
}

Fact DecodedOrHexFact(const Type& type, Octets octets) {
  try {
    return DecodedFact(type, octets);
  } catch (const DecodingError&) {
    return UnreadFact(octets);
  }
}

}  // namespace tool
