#include "asn1/decoding.h"

namespace tool {

std::string_view DecodingError::Problem() const {
  switch (Status()) {
    case TESSEL_INVALID_ARGUMENT:
      return "an element is constructed whose type must be primitive";
    case TESSEL_INVALID_CONTENT:
      return "a BOOLEAN or INTEGER has a content that its type does not allow";
    default:
      return tessel::StatusText(Status());
  }
}

tessel::Tree Decode(const tessel::Outline& type, Octets octets, uint32_t* consumed) {
  tessel::Tree tree(*type.item);
  const uint32_t status =
      octets.empty() ? uint32_t{TESSEL_MALFORMED} : StatusOf(Asn1DecodeItem, octets, type.item, tree.Out(), consumed);
  if (status != TESSEL_OK) throw DecodingError(status);
  return tree;
}

}  // namespace tool
