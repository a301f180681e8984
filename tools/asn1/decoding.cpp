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

tessel::Tree Decode(const Asn1Item& item, Octets octets, uint32_t* consumed) {
  tessel::Tree tree(item);
  const uint32_t status = StatusOf(Asn1DecodeItem, octets, &item, tree.Out(), consumed);
  if (status != TESSEL_OK) throw DecodingError(status);
  return tree;
}

Fact DecodedFact(const Asn1Item& item, Octets octets, Fact (*describe)(const void* root), uint32_t* consumed) {
  tessel::Tree tree = Decode(item, octets, consumed);
  Fact fact = describe(tree.Root());
  fact.Keep(std::move(tree));
  return fact;
}

}  // namespace tool
