#include "pem.h"

#include <algorithm>
#include <optional>

#include "concat.h"
#include "tessel/tessel.h"
#include "text.h"

namespace tool {
namespace {

constexpr std::string_view kBegin = "-----BEGIN ";
constexpr std::string_view kEnd = "-----END ";
constexpr std::string_view kDashes = "-----";

std::string_view FirstLine(std::string_view text) { return text.substr(0, text.find('\n')); }

std::string_view WithoutTrailingSpace(std::string_view line) {
  const size_t last = line.find_last_not_of(" \t\r");
  return last == std::string_view::npos ? std::string_view() : line.substr(0, last + 1);
}

std::string_view WithoutByteOrderMark(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  return text.starts_with(kMark) ? text.substr(kMark.size()) : text;
}

std::optional<std::string_view> MarkerLabel(std::string_view line, std::string_view marker) {
  if (!line.starts_with(marker) || !line.ends_with(kDashes)) return std::nullopt;
  if (line.size() < marker.size() + kDashes.size()) return std::nullopt;
  return line.substr(marker.size(), line.size() - marker.size() - kDashes.size());
}

bool IsText(char c) {
  const auto octet = static_cast<uint8_t>(c);
  return octet >= 0x20 || c == '\t' || c == '\r';
}

bool IsBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

// Decodes a block that ends before its END line. False when what follows its BEGIN line is not Base64.
bool Decode(std::string_view block, std::vector<uint8_t>& octets) {
  const auto size = static_cast<uint32_t>(block.size());
  uint32_t length = 0;
  if (DecodePem(block.data(), size, nullptr, &length) != TESSEL_OK) return false;
  octets.resize(length);
  return DecodePem(block.data(), size, octets.data(), &length) == TESSEL_OK;
}

}  // namespace

bool LooksLikePem(std::string_view text) {
  text = WithoutByteOrderMark(text);
  while (!text.empty()) {
    const std::string_view line = FirstLine(text);
    if (!std::all_of(line.begin(), line.end(), IsText)) return false;
    if (MarkerLabel(WithoutTrailingSpace(line), kBegin)) return true;
    text.remove_prefix(std::min(line.size() + 1, text.size()));
  }
  return false;
}

PemReader::PemReader(std::string_view text) : text_(WithoutByteOrderMark(text)) {}

std::string_view PemReader::Line() const { return WithoutTrailingSpace(FirstLine(text_)); }

void PemReader::SkipLine() {
  text_.remove_prefix(std::min(FirstLine(text_).size() + 1, text_.size()));
  ++line_;
}

bool PemReader::Next(PemBlock& block) {
  for (; !AtEnd(); SkipLine()) {
    const std::optional<std::string_view> label = MarkerLabel(Line(), kBegin);
    if (!label) continue;
    block = PemBlock{*label, ++counts_[*label], line_, {}, {}};
    ReadBlock(block);
    return true;
  }
  return false;
}

void PemReader::ReadBlock(PemBlock& block) {
  const std::string_view fromBegin = text_;
  SkipLine();
  const size_t beginSize = fromBegin.size() - text_.size();
  const auto problemHere = [&](std::string_view what) { block.problem = Concat("line ", line_, ": ", what); };
  for (; !AtEnd(); SkipLine()) {
    const std::string_view line = Line();
    if (MarkerLabel(line, kBegin)) return problemHere("another block begins before the END line");
    if (!line.starts_with(kEnd)) continue;
    if (MarkerLabel(line, kEnd) != block.label) return problemHere("the END line does not fit the BEGIN line");
    const std::string_view untilEnd = fromBegin.substr(0, fromBegin.size() - text_.size());
    if (IsBlank(untilEnd.substr(beginSize)) || Decode(untilEnd, block.octets)) return;
    block.problem = "the text between the marker lines is not Base64";
    return;
  }
  block.problem = "the END line is missing";
}

}  // namespace tool
