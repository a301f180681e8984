#include "command/input.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string_view>
#include <utility>

#include "command/file.h"
#include "command/report.h"
#include "tessel/pem.hpp"
#include "tessel/strings.hpp"
#include "texts/concat.h"

namespace tool {
namespace {

constexpr uint8_t kSequence = 0x30;

Octets OctetsOf(std::string_view text) { return {reinterpret_cast<const uint8_t*>(text.data()), text.size()}; }

std::string_view WithoutByteOrderMark(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  return text.starts_with(kMark) ? text.substr(kMark.size()) : text;
}

bool IsTextOctet(char c) { return static_cast<uint8_t>(c) >= 0x20 || (c >= '\t' && c <= '\r'); }

bool IsUtf8Text(std::string_view text) {
  if (!std::ranges::all_of(text, IsTextOctet)) return false;
  for (Octets rest = OctetsOf(text); !rest.empty();) {
    if (!tessel::IsCharacter(tessel::TakeCharacter(TESSEL_KIND_UTF8_STRING, rest))) return false;
  }
  return true;
}

// Sound BER may hold PEM as a text.
bool MayBePem(std::string_view text) {
  return text.find("-----BEGIN ") != std::string_view::npos && FindBreak(OctetsOf(text)).has_value();
}

bool IsBase64(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '+' || c == '/' ||
         c == '=' || c == ' ' || (c >= '\t' && c <= '\r');
}

// What Base64 without marker lines stands for, when that is an encoding, or begins as those of the kinds that are told
// from text do: any word of four letters is Base64.
std::optional<tessel::Bytes> DecodeBareBase64(std::string_view text) {
  if (!std::ranges::all_of(text, IsBase64)) return std::nullopt;
  std::optional<tessel::Bytes> octets = tessel::DecodeBase64(text);
  const bool isEncoding = octets && (octets->front() == kSequence || !FindBreak(*octets));
  return isEncoding ? std::move(octets) : std::nullopt;
}

// Whether encodings begin with such an octet: a primitive value, a SEQUENCE, SET or segmented string, or what a
// structure has under a context-specific tag. With those of applications begin words.
bool MayBeginBer(uint8_t identifier) {
  constexpr uint8_t kConstructed[] = {0x23, 0x24, kSequence, 0x31};
  const uint8_t form = identifier & 0xE0;
  const uint8_t number = identifier & 0x1F;
  if (number == 0x1F) return false;
  if (form == 0x20) return std::ranges::count(kConstructed, identifier) != 0;
  return (form == 0x00 && number != 0) || form == 0xA0;
}

// Whether octets are BER, or are meant to be and break somewhere. Most texts in UTF-16 would be sound BER.
bool LooksLikeBer(std::string_view text) {
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) return false;
  const bool isMeantToBe = MayBeginBer(static_cast<uint8_t>(text.front())) && !IsUtf8Text(text);
  return isMeantToBe || !FindBreak(OctetsOf(text));
}

// A label as it is told, of no more than 64 characters.
std::string LabelText(std::string_view label) {
  constexpr size_t kLongest = 64;
  constexpr std::string_view kMore = "...";
  std::string lower(label.substr(0, 5 * kLongest));
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  std::string shown = tessel::Printable(lower);
  std::u32string characters = *tessel::Characters(TESSEL_KIND_UTF8_STRING, OctetsOf(shown));
  if (characters.size() <= kLongest) return shown;
  characters.resize(kLongest - kMore.size());
  return *tessel::Utf8(characters) + std::string(kMore);
}

// "Proc-Type: 4,ENCRYPTED" (RFC 1421, 4.6.1.1)
bool IsEncrypted(std::string_view headers) {
  const std::string_view first = headers.substr(0, headers.find_first_of("\r\n"));
  return first.starts_with("Proc-Type:") && first.find("ENCRYPTED") != std::string_view::npos;
}

void HandleBlock(const Input& input, const tessel::PemBlock& block, InputHandler handle) {
  if (!block.problem.empty()) throw Refusal(block.problem);
  if (IsEncrypted(block.headers)) {
    const std::string_view kind = block.label.ends_with("KEY") ? "key" : "block";
    throw Refusal(
        Concat("this is an encrypted ", kind, ": its octets are no BER, so that tessel can show nothing of it"));
  }
  handle(input);
}

bool HandleBlocks(Input input, tessel::PemReader& reader, tessel::PemBlock block, InputHandler handle) {
  bool good = true;
  std::map<std::string_view, size_t> counts;
  const std::string file = input.where;
  for (std::optional<tessel::PemBlock> next = std::move(block); next; next = reader.Next()) {
    input.label = next->label;
    input.index = ++counts[next->label];
    input.line = next->line;
    input.octets = next->octets;
    input.where = Concat(file, ": ", LabelText(next->label), ' ', input.index, " (line ", next->line, ')');
    good = Attempt(input.where, [&] { HandleBlock(input, *next, handle); }) && good;
  }
  return good;
}

bool HandleOctets(Input input, Octets octets, InputHandler handle) {
  if (octets.empty()) throw Refusal("the file is empty");
  const std::string_view text(reinterpret_cast<const char*>(octets.data()), octets.size());
  const std::string_view plain = WithoutByteOrderMark(text);
  if (MayBePem(plain)) {
    tessel::PemReader reader(plain);
    if (auto block = reader.Next()) return HandleBlocks(std::move(input), reader, *std::move(block), handle);
  }
  const std::optional<tessel::Bytes> decoded = DecodeBareBase64(plain);
  if (!decoded && !LooksLikeBer(text)) throw Refusal("is neither PEM nor BER nor Base64 of BER");
  input.octets = decoded ? Octets(*decoded) : octets;
  handle(input);
  return true;
}

}  // namespace

bool HandleFile(const char* name, InputHandler handle) {
  std::string where;
  if (!Attempt("a file", [&] { where = tessel::Printable(name); })) return false;
  bool good = true;
  const bool isRead = Attempt(where, [&] {
    const FileOctets octets(name);
    Input input;
    input.where = where;
    input.file = tessel::Utf8(TESSEL_KIND_UTF8_STRING, OctetsOf(name)).value_or(where);
    good = HandleOctets(std::move(input), octets.Get(), handle);
  });
  return isRead && good;
}

}  // namespace tool
