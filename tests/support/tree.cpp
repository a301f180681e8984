#include "support/tree.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>

namespace test {

DecodeResult Decode(const Asn1Item& item, const Bytes& input) {
  const Guarded guarded(input);
  constexpr uint32_t kNotWritten = 0xABABABAB;
  DecodeResult result{0, kNotWritten, Tree(item)};
  result.status = tessel::Try(Asn1DecodeItem, guarded, &item, result.tree.Out(), &result.consumed);
  EXPECT_EQ(result.status != TESSEL_OK, result.consumed == kNotWritten);
  return result;
}

Tree TreeOf(const Asn1Item& item, std::string_view hex) {
  DecodeResult decoded = Decode(item, FromHex(hex));
  if (decoded.status != TESSEL_OK) throw tessel::Error(decoded.status);
  return std::move(decoded.tree);
}

EncodeResult Encode(const Asn1Item& item, const void* node) {
  EncodeResult result{};
  uint32_t size = 0;
  const uint32_t sizeStatus = Asn1Encode(node, &item, nullptr, &size);
  uint8_t* block = nullptr;
  uint32_t length = 0;
  result.status = Asn1Encode(node, &item, &block, &length);
  EXPECT_STATUS(sizeStatus, result.status);
  if (result.status != TESSEL_OK) return result;
  EXPECT_EQ(size, length);
  result.octets.assign(block, block + length);
  std::free(block);
  return result;
}

}  // namespace test
