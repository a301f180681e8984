#include "text.h"

#include "concat.h"
#include "tessel/tessel.h"

namespace tool {
namespace {

constexpr size_t kShownOctets = 32;

// Marks an octet that is not (part of) a character. No character reaches that far.
constexpr char32_t kRawOctet = 0x80000000;
constexpr char32_t kLastCharacter = 0x10FFFF;

bool IsSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

void AppendHex(std::string& out, uint8_t octet) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  out += kDigits[octet >> 4];
  out += kDigits[octet & 0x0F];
}

// The octets that a UTF-8 sequence has by its first one; 0 when none starts so.
size_t Utf8Length(uint8_t first) {
  if (first < 0x80) return 1;
  if (first < 0xC2) return 0;
  if (first < 0xE0) return 2;
  if (first < 0xF0) return 3;
  return first < 0xF5 ? 4 : 0;
}

// Takes one character from the front, or one raw octet where the encoding is wrong.
char32_t TakeUtf8(Octets& octets) {
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const uint8_t first = octets.front();
  const size_t length = Utf8Length(first);
  char32_t c = length == 1 ? first : first & (0x7FU >> length);
  bool valid = length != 0 && length <= octets.size();
  for (size_t i = 1; valid && i < length; ++i) {
    valid = (octets[i] & 0xC0) == 0x80;
    c = c << 6 | (octets[i] & 0x3F);
  }
  valid = valid && c >= kSmallest[length] && c <= kLastCharacter && !IsSurrogate(c);
  octets = octets.subspan(valid ? length : 1);
  return valid ? c : kRawOctet | first;
}

std::u32string FromUtf8(Octets octets) {
  std::u32string text;
  while (!octets.empty()) text += TakeUtf8(octets);
  return text;
}

// One octet a character, up to and including `last`.
std::u32string FromSingleOctets(Octets octets, char32_t last) {
  std::u32string text;
  for (const uint8_t octet : octets) text += octet <= last ? char32_t{octet} : kRawOctet | octet;
  return text;
}

// Big-endian units of `size` octets. A pair of surrogates, which BMPString does not have but some writers put in it, is
// the character that it means in UTF-16.
std::u32string FromUnits(Octets octets, size_t size) {
  std::u32string text;
  for (; !octets.empty(); octets = octets.subspan(size)) {
    char32_t c = 0;
    for (const uint8_t octet : octets.first(size)) c = c << 8 | octet;
    const bool pair = size == 2 && (c & 0xFC00) == 0xDC00 && !text.empty() && (text.back() & 0xFFFFFC00) == 0xD800;
    if (pair) {
      text.back() = 0x10000 + ((text.back() & 0x3FF) << 10 | (c & 0x3FF));
    } else if (c <= kLastCharacter) {
      text += c;
    } else {
      for (const uint8_t octet : octets.first(size)) text.push_back(kRawOctet | octet);
    }
  }
  return text;
}

void AppendUtf8(std::string& out, char32_t c) {
  const auto put = [&out](char32_t octet) { out += static_cast<char>(static_cast<uint8_t>(octet)); };
  if (c < 0x80) return put(c);
  if (c < 0x800) {
    put(0xC0 | c >> 6);
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3F));
  } else {
    put(0xF0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3F));
    put(0x80 | (c >> 6 & 0x3F));
  }
  put(0x80 | (c & 0x3F));
}

// Controls drive a terminal; line separators and the marks of text direction make it show other than what is written.
bool IsDangerous(char32_t c) {
  if (c < 0x20 || (c >= 0x7F && c <= 0x9F) || IsSurrogate(c)) return true;
  if (c == 0x061C || c == 0x200E || c == 0x200F || c == 0xFEFF) return true;
  return (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

void AppendHexEscaped(std::string& out, char32_t c) {
  std::string octets;
  if ((c & kRawOctet) != 0) {
    octets += static_cast<char>(static_cast<uint8_t>(c));
  } else {
    AppendUtf8(octets, c);
  }
  for (const char octet : octets) {
    out += '\\';
    AppendHex(out, static_cast<uint8_t>(octet));
  }
}

bool NeedsBackslash(std::u32string_view text, size_t at, Escape escape) {
  const char32_t c = text[at];
  if (escape == Escape::kNothing) return false;
  if (c == '\\' || (c == '"' && escape != Escape::kBackslash)) return true;
  if (escape == Escape::kBackslash || escape == Escape::kQuotes) return false;
  const bool first = at == 0;
  const bool last = at + 1 == text.size();
  if (c == ' ') return first || last;
  if (c == '#') return first;
  return c == '+' || c == ',' || c == ';' || c == '<' || c == '>';
}

Octets AsOctets(std::string_view text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};  // chars are octets, signed or not
}

}  // namespace

std::string Hex(Octets octets) {
  std::string out;
  out.reserve(octets.size() * 2);
  for (const uint8_t octet : octets) AppendHex(out, octet);
  return out;
}

std::string ShortHex(Octets octets) {
  if (octets.size() <= kShownOctets) return Hex(octets);
  return Concat(Hex(octets.first(kShownOctets)), "... (", OctetCount(octets.size()), ")");
}

std::optional<std::u32string> Characters(uint32_t tag, Octets octets) {
  switch (tag) {
    case TESSEL_KIND_UTF8_STRING:
      return FromUtf8(octets);
    case TESSEL_KIND_TELETEX_STRING:
      return FromSingleOctets(octets, 0xFF);  // what nearly all writers mean by it
    case TESSEL_KIND_NUMERIC_STRING:
    case TESSEL_KIND_PRINTABLE_STRING:
    case TESSEL_KIND_IA5_STRING:
    case TESSEL_KIND_VISIBLE_STRING:
    case TESSEL_KIND_UTC_TIME:
    case TESSEL_KIND_GENERALIZED_TIME:
      return FromSingleOctets(octets, 0x7F);
    case TESSEL_KIND_BMP_STRING:
      if (octets.size() % 2 != 0) return std::nullopt;
      return FromUnits(octets, 2);
    case TESSEL_KIND_UNIVERSAL_STRING:
      if (octets.size() % 4 != 0) return std::nullopt;
      return FromUnits(octets, 4);
    default:
      return std::nullopt;
  }
}

std::string EscapeText(std::u32string_view text, Escape escape) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if ((text[i] & kRawOctet) != 0 || IsDangerous(text[i])) {
      AppendHexEscaped(out, text[i]);
      continue;
    }
    if (NeedsBackslash(text, i, escape)) out += '\\';
    AppendUtf8(out, text[i]);
  }
  return out;
}

std::optional<std::string> Utf8(std::u32string_view text) {
  std::string out;
  for (const char32_t c : text) {
    if (c > kLastCharacter || IsSurrogate(c)) return std::nullopt;
    AppendUtf8(out, c);
  }
  return out;
}

std::string Printable(std::string_view text) { return EscapeText(FromUtf8(AsOctets(text)), Escape::kNothing); }

}  // namespace tool
