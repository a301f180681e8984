#include "asn1/decoding.h"

namespace tool {

tessel::Tree Decode(const tessel::Outline& type, Octets octets, uint32_t* consumed) {
  tessel::Tree tree(*type.item);
  const uint32_t status =
      octets.empty() ? uint32_t{TESSEL_MALFORMED} : StatusOf(Asn1DecodeItem, octets, type.item, tree.Out(), consumed);
  if (status != TESSEL_OK) throw DecodingError(status, type, octets);
  return tree;
}

}  // namespace tool
