// PEM: base64 blocks between marker lines, with other text around them (RFC 7468).
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

struct PemBlock {
  std::string_view label;
  size_t ordinal = 0;  // its place among the blocks with the same label, from 1
  size_t line = 0;     // that of the BEGIN line, from 1
  std::vector<uint8_t> octets;
  std::string problem;  // why the block cannot be read; empty when it could
};

// True when the text has a BEGIN line with nothing but text before it. BER never gets that far.
bool LooksLikePem(std::string_view text);

// Reads the blocks in their order. A broken block does not hide those behind it.
class PemReader {
 public:
  explicit PemReader(std::string_view text);

  // False when no block follows.
  bool Next(PemBlock& block);

 private:
  // The line at the reader's place, without its end and the white space before that.
  [[nodiscard]] std::string_view Line() const;
  [[nodiscard]] bool AtEnd() const { return text_.empty(); }
  void SkipLine();
  // Reads the block whose BEGIN line is at the reader's place.
  void ReadBlock(PemBlock& block);

  std::string_view text_;  // what has not been read yet
  size_t line_ = 1;
  std::map<std::string_view, size_t> counts_;
};

}  // namespace tool
