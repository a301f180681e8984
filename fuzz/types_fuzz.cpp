// Objects of every type. The first octet of an input tells the type, the rest is decoded.
#include "getters.h"
#include "support/copy.h"
#include "types.h"

namespace fuzz {
namespace {

using tessel::Tree;

uint32_t Decode(const Bytes& octets, Tree& tree) {
  uint32_t consumed = 0;
  const uint32_t status = tessel::Try(Asn1DecodeItem, octets, &tree.Item(), tree.Out(), &consumed);
  // What is handed back with a failure is only there to be released.
  Require(status == TESSEL_OK ? tree && consumed <= octets.size() : consumed == 0);
  return status;
}

std::optional<Bytes> Encode(const Tree& tree) { return FetchChecked(GetAsn1EncodedValue, tree.Root(), &tree.Item()); }

bool AreEqual(const Tree& first, const Tree& second) {
  uint32_t equal = 0;
  const uint32_t status = CompareAsn1Objects(&first.Item(), first.Root(), second.Root(), &equal);
  return status == TESSEL_UNSUPPORTED_KIND || (status == TESSEL_OK && equal == 1);
}

void Run(const Type& type, const Bytes& octets) {
  const Asn1Item& item = *type.item;
  Tree tree(item);
  if (Decode(octets, tree) != TESSEL_OK) return;
  const auto encoding = Encode(tree);
  Require(encoding.has_value());

  Tree again(item);
  Require(Decode(*encoding, again) == TESSEL_OK);
  Require(Encode(again) == encoding);
  Tree copy(item);
  // No type of the library holds a NULL, which cannot be copied.
  Require(test::Copy(item, tree.Root(), copy.Out()) == TESSEL_OK);
  Require(Encode(copy) == encoding);
  // Not with what was decoded from DER: that is sorted.
  Require(AreEqual(tree, copy));
  if (type.read != nullptr) type.read(tree.Root());
  if (type.change == nullptr) return;
  type.change(tree.Root());
  const auto changed = Encode(tree);
  Require(!changed || Decode(*changed, again) == TESSEL_OK);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(fuzz::Octets(data, size));
  const fuzz::Type& type = fuzz::Types()[input.Below(static_cast<uint32_t>(fuzz::Types().size()))];
  const fuzz::Bytes octets = input.Rest();
  fuzz::Run(type, octets);
  fuzz::ReadExtensionValue(octets);
  fuzz::ReadParameters(octets);
  return 0;
}
