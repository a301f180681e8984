#include "pem.h"

#include <algorithm>
#include <optional>

#include "concat.h"
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

// The six bits that a base64 character stands for.
std::optional<uint32_t> Base64Bits(char c) {
  if (c >= 'A' && c <= 'Z') return static_cast<uint32_t>(c - 'A');
  if (c >= 'a' && c <= 'z') return static_cast<uint32_t>(c - 'a') + 26;
  if (c >= '0' && c <= '9') return static_cast<uint32_t>(c - '0') + 52;
  if (c == '+') return 62;
  if (c == '/') return 63;
  return std::nullopt;
}

// Decodes base64 as it comes, in any division into lines.
class Base64Decoder {
 public:
  explicit Base64Decoder(std::vector<uint8_t>& out) : out_(out) {}

  // What is wrong with the line; empty when nothing is.
  std::string Feed(std::string_view line) {
    for (const char c : line) {
      if (!Take(c)) return Concat("'", Printable({&c, 1}), "' is no base64 character here");
    }
    return {};
  }

  [[nodiscard]] bool Complete() const { return (characters_ + padding_) % 4 == 0; }

 private:
  bool Take(char c) {
    if (c == '=') {
      ++padding_;
      return characters_ % 4 >= 2 && characters_ % 4 + padding_ <= 4;
    }
    const std::optional<uint32_t> bits = Base64Bits(c);
    if (!bits || padding_ != 0) return false;
    group_ = group_ << 6 | *bits;
    if (++characters_ % 4 != 1) out_.push_back(static_cast<uint8_t>(group_ >> (4 - characters_ % 4) % 4 * 2));
    return true;
  }

  std::vector<uint8_t>& out_;
  uint32_t group_ = 0;
  size_t characters_ = 0;
  size_t padding_ = 0;
};

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
    SkipLine();
    ReadBody(block);
    return true;
  }
  return false;
}

void PemReader::ReadBody(PemBlock& block) {
  Base64Decoder decoder(block.octets);
  const auto problemHere = [&](std::string_view what) { block.problem = Concat("line ", line_, ": ", what); };
  for (; !AtEnd(); SkipLine()) {
    const std::string_view line = Line();
    if (MarkerLabel(line, kBegin)) return problemHere("another block begins before the END line");
    if (line.starts_with(kEnd)) {
      if (MarkerLabel(line, kEnd) != block.label) return problemHere("the END line does not fit the BEGIN line");
      if (!decoder.Complete()) return problemHere("the base64 text is incomplete");
      return;
    }
    const std::string wrong = decoder.Feed(line);
    if (!wrong.empty()) return problemHere(wrong);
  }
  block.problem = "the END line is missing";
}

}  // namespace tool
