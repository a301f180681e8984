// PEM texts (RFC 7468) block by block, and Base64.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "tessel/octets.hpp"
#include "tessel/tessel.h"

namespace tessel {

namespace detail {

inline constexpr std::string_view kBlanks = " \t\r\n\v\f";

constexpr bool IsBlank(char c) { return kBlanks.find(c) != std::string_view::npos; }

constexpr std::string_view Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Fails as a vector does that cannot grow.
[[noreturn]] inline void FailForMemory() {
#ifdef __cpp_exceptions
  throw std::bad_alloc();
#else
  std::abort();
#endif
}

// Base64 in pieces, so that a long text takes no more memory than its octets.
class Base64Reader {
 public:
  // False when the text is not Base64, or goes on behind its padding.
  bool Read(std::string_view text) {
    octets_.reserve(text.size() / 4 * 3);
    for (const char c : text) {
      if (IsBlank(c)) continue;
      if (c == '-' || static_cast<uint8_t>(c) >= 0x80) return false;
      piece_[size_++] = c;
      if (size_ == piece_.size() && !Flush()) return false;
    }
    return Flush();
  }
  [[nodiscard]] Bytes& Result() { return octets_; }

 private:
  bool Flush() {
    if (size_ == 0) return true;
    if (isPadded_ || size_ % 4 != 0) return false;
    const size_t before = octets_.size();
    auto length = static_cast<uint32_t>(size_ / 4 * 3);
    octets_.resize(before + length);
    const auto size = static_cast<uint32_t>(size_);
    const uint32_t status = DecodePem(piece_.data(), size, octets_.data() + before, &length);
    if (status == TESSEL_OUT_OF_MEMORY) FailForMemory();
    if (status != TESSEL_OK) return false;
    octets_.resize(before + length);
    isPadded_ = length < size_ / 4 * 3;
    size_ = 0;
    return true;
  }

  Bytes octets_;
  std::array<char, 16384> piece_;
  size_t size_ = 0;
  bool isPadded_ = false;
};

}  // namespace detail

// Decodes Base64 with white space anywhere. Nothing when the text is something else or empty.
inline std::optional<Bytes> DecodeBase64(std::string_view text) {
  detail::Base64Reader reader;
  if (!reader.Read(text) || reader.Result().empty()) return std::nullopt;
  return std::move(reader.Result());
}

struct PemBlock {
  std::string_view label;    // a part of the text, of any length
  std::string_view headers;  // the lines "Proc-Type: 4,ENCRYPTED", ... that some blocks begin with (RFC 1421)
  size_t line = 0;           // that of the BEGIN line, from 1
  Bytes octets;
  std::string problem;  // why the block cannot be read; empty when it could
};

// Walks the blocks of a text, which must outlive the walk:
//
//   for (PemReader reader(text); std::optional<PemBlock> block = reader.Next();) ...
//
// Other text may stand around the blocks, lines may be indented, of any length and end in any way. A broken block does
// not hide those behind it.
class PemReader {
 public:
  explicit PemReader(std::string_view text) : rest_(text) {}
  // A temporary text would end before the walk begins.
  template <class Allocator>
  explicit PemReader(std::basic_string<char, std::char_traits<char>, Allocator>&& text) = delete;

  // Nothing when no block follows.
  std::optional<PemBlock> Next() {
    for (; !rest_.empty(); SkipLine()) {
      const std::optional<Marker> begin = ReadMarker(Line(), kBegin);
      if (!begin) continue;
      PemBlock block;
      block.label = begin->label;
      block.line = line_;
      const std::string_view body = TakeBody(*begin, block.problem);
      if (block.problem.empty()) ReadBody(body, block);
      return block;
    }
    return std::nullopt;
  }

 private:
  static constexpr std::string_view kBegin = "-----BEGIN ";
  static constexpr std::string_view kEnd = "-----END ";
  static constexpr std::string_view kDashes = "-----";
  static constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

  struct Marker {
    std::string_view label;
    std::string_view behind;  // the rest of the line
  };

  static std::optional<Marker> ReadMarker(std::string_view line, std::string_view marker) {
    if (!line.starts_with(marker)) return std::nullopt;
    line.remove_prefix(marker.size());
    const size_t end = line.find(kDashes);
    if (end == std::string_view::npos) return std::nullopt;
    return Marker{line.substr(0, end), line.substr(end + kDashes.size())};
  }

  [[nodiscard]] std::string_view RawLine() const { return rest_.substr(0, rest_.find_first_of("\r\n")); }
  // Files that are put together have byte order marks at the beginnings of lines.
  [[nodiscard]] std::string_view Line() const {
    const std::string_view line = detail::Trimmed(RawLine());
    return line.starts_with(kByteOrderMark) ? detail::Trimmed(line.substr(kByteOrderMark.size())) : line;
  }
  void SkipLine() {
    rest_.remove_prefix(RawLine().size());
    rest_.remove_prefix(rest_.starts_with("\r\n") ? 2 : (std::min)(rest_.size(), size_t{1}));
    ++line_;
  }
  void SkipTo(std::string_view behind) { rest_.remove_prefix(static_cast<size_t>(behind.data() - rest_.data())); }

  // Takes the lines up to the END line, or, where all is in one line, up to END in it.
  std::string_view TakeBody(const Marker& begin, std::string& problem) {
    if (const size_t end = begin.behind.find(kEnd); end != std::string_view::npos) {
      TakeEnd(begin, begin.behind.substr(end), problem);
      return begin.behind.substr(0, end);
    }
    const char* const start = begin.behind.data();
    for (SkipLine(); !rest_.empty(); SkipLine()) {
      const std::string_view line = Line();
      if (line.starts_with(kBegin)) {
        problem = AtLine("another block begins before the END line");
        return {};
      }
      if (!line.starts_with(kEnd)) continue;
      const std::string_view body(start, static_cast<size_t>(rest_.data() - start));
      TakeEnd(begin, line, problem);
      return body;
    }
    problem = "the END line is missing";
    return {};
  }

  // Takes the END marker. The next block may begin behind it in the same line.
  void TakeEnd(const Marker& begin, std::string_view line, std::string& problem) {
    const std::optional<Marker> end = ReadMarker(line, kEnd);
    if (!end || end->label != begin.label) problem = AtLine("the END line does not fit the BEGIN line");
    if (end) return SkipTo(end->behind);
    SkipLine();
  }

  [[nodiscard]] std::string AtLine(std::string_view what) const {
    std::string text = "line ";
    return text.append(std::to_string(line_)).append(": ").append(what);
  }

  static void ReadBody(std::string_view body, PemBlock& block) {
    body = detail::Trimmed(body);
    if (body.substr(0, body.find_first_of("\r\n")).find(':') != std::string_view::npos) TakeHeaders(body, block);
    if (body.empty()) {
      block.problem = block.headers.empty() ? "the block is empty" : "nothing follows the headers of the block";
    } else if (std::optional<Bytes> octets = DecodeBase64(body)) {
      block.octets = std::move(*octets);
    } else {
      block.problem = "the text between the marker lines is not Base64";
    }
  }

  // Headers end with an empty line.
  static void TakeHeaders(std::string_view& body, PemBlock& block) {
    PemReader lines(body);
    while (!lines.Line().empty()) lines.SkipLine();
    block.headers = detail::Trimmed(body.substr(0, body.size() - lines.rest_.size()));
    body = detail::Trimmed(lines.rest_);
  }

  std::string_view rest_;
  size_t line_ = 1;
};

}  // namespace tessel
