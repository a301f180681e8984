// Objects of every type. The first octet of an input tells the type, the rest is decoded.
#include <utility>

#include "getters.h"
#include "types.h"

namespace fuzz {
namespace {

// Owns an object of any type.
class Object {
 public:
  explicit Object(const Asn1Item& item) : item_(&item) {}
  ~Object() { FreeAsn1Object(item_, node_); }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  [[nodiscard]] void* Get() const { return node_; }
  uint32_t Decode(const Bytes& octets) {
    FreeAsn1Object(item_, std::exchange(node_, nullptr));
    uint32_t consumed = 0;
    const uint32_t status = Asn1DecodeItem(octets.data(), SizeOf(octets), item_, &node_, &consumed);
    // What is handed back with a failure is only there to be released.
    Require(status == TESSEL_OK ? node_ != nullptr && consumed <= octets.size() : consumed == 0);
    return status;
  }
  uint32_t Copy(const Object& source) {
    // The DEFAULT of an OPTIONAL item is copied when it is created.
    Asn1Item item = *item_;
    item.flags |= TESSEL_FLAG_OPTIONAL;
    item.defaultValue = source.Get();
    return CreateAsn1Object(&item, &node_, 0);
  }
  [[nodiscard]] std::optional<Bytes> Encode() const {
    return Fetch(
        [this](uint8_t* buffer, uint32_t* length) { return GetAsn1EncodedValue(node_, item_, buffer, length); });
  }

 private:
  const Asn1Item* item_;
  void* node_ = nullptr;
};

bool AreEqual(const Asn1Item& item, const Object& first, const Object& second) {
  uint32_t equal = 0;
  const uint32_t status = CompareAsn1Objects(&item, first.Get(), second.Get(), &equal);
  return status == TESSEL_UNSUPPORTED_KIND || (status == TESSEL_OK && equal == 1);
}

void Run(const Type& type, const Bytes& octets) {
  const Asn1Item& item = *type.item;
  Object object(item);
  if (object.Decode(octets) != TESSEL_OK) return;
  const auto encoding = object.Encode();
  Require(encoding.has_value());

  Object again(item);
  Require(again.Decode(*encoding) == TESSEL_OK);
  Require(again.Encode() == encoding);
  Object copy(item);
  // No type of the library holds a NULL, which cannot be copied.
  Require(copy.Copy(object) == TESSEL_OK);
  Require(copy.Encode() == encoding);
  // Not with what was decoded from DER: that is sorted.
  Require(AreEqual(item, object, copy));
  if (type.read != nullptr) type.read(object.Get());
  if (type.change == nullptr) return;
  type.change(object.Get());
  const auto changed = object.Encode();
  Require(!changed || again.Decode(*changed) == TESSEL_OK);
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
