// Shapes that are hard on the engine: a large SET OF in the wrong order, and deep nesting. What counts is how the
// figures grow from one size to the next.
#include <list>
#include <string>

#include "floor.h"
#include "peers/peers.h"
#include "sides.h"
#include "table.h"
#include "tessel/asn1.hpp"
#include "tessel_sides.h"

namespace bench {
namespace {

struct OctetStringSet : tessel::ListOf<Asn1Value> {};
constexpr auto kOctetStringSet = tessel::SetOf<OctetStringSet, tessel::kOctetString>();

// Nest ::= SEQUENCE { INTEGER, Nest OPTIONAL }
struct Nest {
  Asn1Value* number;
  Nest* inner;
};
extern const Asn1Item kInnerNest;
constexpr const Asn1Item* kNestMembers[] = {&tessel::kInteger, &kInnerNest};
constexpr Asn1Item NestItem(uint32_t flags) {
  return {flags | TESSEL_FLAG_CONSTRUCTED,
          TESSEL_KIND_SEQUENCE,
          tessel::kNoTagNumber,
          sizeof(Nest),
          kNestMembers,
          2,
          nullptr};
}
constinit const Asn1Item kNest = NestItem(0);
constinit const Asn1Item kInnerNest = NestItem(TESSEL_FLAG_OPTIONAL);

Octets Encode(const tessel::Tree& tree) {
  return EncodeBySize([&tree](uint8_t* buffer, uint32_t* length) {
    return GetAsn1EncodedValue(tree.Root(), &tree.Item(), buffer, length);
  });
}

Label DecodingLabel() { return {Kind::kTessel, "tessel `Asn1DecodeItem`", "the whole tree, by a descriptor."}; }
Label EncodingLabel() {
  return {Kind::kTessel, "tessel `GetAsn1EncodedValue`",
          "encodes the tree, by a descriptor, with a null buffer and then with the buffer."};
}

// OpenSSL refuses more.
constexpr size_t kDeepestForOpenssl = 16;

void AddSet(const std::vector<SetInput>& inputs, size_t elements, std::vector<Operation>& operations) {
  Operation encode{"encode a SET OF " + Grouped(elements), static_cast<double>(elements)};
  AddEncoder(encode, EncodingLabel(), Hold(inputs, DecoderOf(kOctetStringSet)), Encode);
  openssl::AddSetEncoding(inputs, encode);
  AddWalk(encode, inputs);
  operations.push_back(std::move(encode));
}

void AddNest(const std::vector<NestInput>& inputs, std::vector<Operation>& operations) {
  const size_t levels = inputs.front().levels;
  const std::string depth = ", " + std::to_string(levels) + " deep";
  Operation decode{"decode, free" + depth, static_cast<double>(levels)};
  Operation encode{"encode" + depth, static_cast<double>(levels)};
  const auto decoder = DecoderOf(kNest);
  AddDecoder(decode, DecodingLabel(), inputs, decoder, [](const tessel::Tree& tree, const NestInput& input) {
    return std::ranges::equal(Encode(tree), input.octets);
  });
  AddEncoder(encode, EncodingLabel(), Hold(inputs, decoder), Encode);
  if (levels <= kDeepestForOpenssl) openssl::AddNest(inputs, decode, encode);
  AddWalk(decode, inputs);
  AddWalk(encode, inputs);
  operations.push_back(std::move(decode));
  operations.push_back(std::move(encode));
}

}  // namespace
}  // namespace bench

int main(int count, char** arguments) {
  using namespace bench;
  Initialize(count, arguments);
  std::vector<Operation> operations;
  // Lists, because what was added refers to them.
  std::list<std::vector<SetInput>> sets;
  for (const size_t elements : {size_t{1'000}, size_t{10'000}, size_t{100'000}, size_t{1'000'000}}) {
    AddSet(sets.emplace_back(1, MakeDescendingSet(elements)), elements, operations);
  }
  std::list<std::vector<NestInput>> nests;
  for (const size_t levels : {size_t{8}, size_t{16}, size_t{32}, size_t{64}}) {
    AddNest(nests.emplace_back(1, MakeNest(levels)), operations);
  }
  Print({"Shapes",
         "A SET OF OCTET STRING in descending order, which is to be sorted: figures are nanoseconds for one element, "
         "and may grow with the logarithm of their number. Nested SEQUENCEs: nanoseconds for one level, which should "
         "not grow.",
         "ns"},
        Measure(operations));
}
