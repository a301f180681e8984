// CRLs: large ones decoded, encoded and copied, the memory that they take, and how both grow with their size.
#include <string>

#include "floor.h"
#include "heap.h"
#include "peers/peers.h"
#include "sides.h"
#include "table.h"
#include "tessel_sides.h"

namespace bench {
namespace {

constexpr size_t kEntries = 200'000;
constexpr size_t kFew = 1'000;
constexpr size_t kMany = 5'000'000;

using Value = tessel::Owned<X509Crl>;

Value Decode(Octets octets) {
  Value crl;
  DecodeX509Crl(octets.data(), SizeOf(octets), crl.Out());
  return crl;
}

Value Copy(const Value& crl) {
  Value copy;
  CreateX509CrlCopy(crl, copy.Out());
  return copy;
}

auto EncoderOf(const Value& crl) {
  return [&crl](uint8_t* buffer, uint32_t* length) { return EncodeX509Crl(crl, buffer, length); };
}

Octets Encode(const Value& crl) { return EncodeBySize(EncoderOf(crl)); }

Label Tessel(const char* name, const char* remark) { return {Kind::kTessel, std::string("tessel ") + name, remark}; }

void AddTessel(const std::vector<CrlInput>& inputs, CrlOperations& to) {
  const Label decoding = Tessel("`DecodeX509Crl`", "the whole tree, with a copy of all octets; the input may go.");
  AddDecoder(to.decode, decoding, inputs, Decode,
             [](const Value& crl, const CrlInput& input) { return std::ranges::equal(Encode(crl), input.octets); });
  AddHeapSide(to.heap, decoding, inputs.front().octets, Decode);
  const auto held = Hold(inputs, Decode);
  AddEncoder(to.encode,
             Tessel("`EncodeX509Crl`",
                    "with a null buffer, to learn the size, which is known as long as nothing is changed; and then "
                    "with the buffer, which encodes the tree."),
             held, Encode);
  AddEncoder(to.encode, Tessel("`EncodeX509Crl`, of a copy", "the same when the size has to be counted."),
             Hold(inputs, [](Octets octets) { return Copy(Decode(octets)); }), Encode);
  const size_t size = inputs.front().octets.size();
  AddEncoder(to.encode, Tessel("`EncodeX509Crl`, one call", "the second call alone."), held,
             [size](const Value& crl) { return EncodeInto(size, EncoderOf(crl)); });
  AddCopier(to.copy, Tessel("`CreateX509CrlCopy`", "copies the tree with all octets."), held, Copy, Encode);
}

void AddFloors(const std::vector<CrlInput>& inputs, CrlOperations& to) {
  for (Operation* operation : {&to.decode, &to.encode, &to.copy}) {
    AddWalk(*operation, inputs);
    AddCopy(*operation, Kind::kAside, inputs);
  }
  const size_t octets = inputs.front().octets.size();
  to.heap.sides.push_back(
      {{Kind::kFloor, "floor: the octets", "the CRL itself, as it is encoded."}, [octets] { return octets; }});
}

CrlOperations OperationsOn(const std::vector<CrlInput>& inputs) {
  const CrlInput& input = inputs.front();
  const std::string size = ", " + Grouped(input.entries) + " entries";
  CrlOperations operations{{"decode, free" + size}, {"encode: size, then octets" + size}, {"copy, free" + size}, {}};
  operations.heap.name = "decoded" + size;
  const auto items = static_cast<double>(input.entries);
  operations.decode.items = operations.encode.items = operations.copy.items = operations.heap.items = items;
  AddTessel(inputs, operations);
  AddFloors(inputs, operations);
  return operations;
}

void AddPeers(const std::vector<CrlInput>& inputs, CrlOperations& operations) {
  gnutls::AddCrls(inputs, operations);
  mbedtls::AddCrls(inputs, operations);
  nss::AddCrls(inputs, operations);
  openssl::AddCrls(inputs, operations);
  wolfssl::AddCrls(inputs, operations);
}

std::string Description(const CrlInput& input) {
  const uint64_t elements = CountElements(input.octets);
  return "Made here: serial numbers of 16 octets, and a reason code in each second entry; " +
         std::to_string(input.octets.size() / input.entries) + " octets and " +
         std::to_string(elements / input.entries) + " elements an entry. Figures are nanoseconds for one entry.";
}

// By operation, and then by size.
std::vector<Operation> TimesOf(const std::vector<CrlOperations>& sizes) {
  std::vector<Operation> operations;
  for (Operation CrlOperations::*operation : {&CrlOperations::decode, &CrlOperations::encode, &CrlOperations::copy}) {
    for (const CrlOperations& size : sizes) operations.push_back(size.*operation);
  }
  return operations;
}

}  // namespace
}  // namespace bench

int main(int count, char** arguments) {
  using namespace bench;
  const Options options = Initialize(count, arguments);
  const std::vector<CrlInput> few = {MakeCrl(kFew)};
  const std::vector<CrlInput> usual = {MakeCrl(kEntries)};
  const std::vector<CrlInput> many = options.isFull ? std::vector{MakeCrl(kMany)} : std::vector<CrlInput>();

  std::vector<CrlOperations> sizes = {OperationsOn(few), OperationsOn(usual)};
  AddPeers(few, sizes.front());
  AddPeers(usual, sizes.back());
  if (options.isFull) sizes.push_back(OperationsOn(many));

  std::vector<HeapOperation> heap;
  heap.reserve(sizes.size());
  for (const CrlOperations& size : sizes) heap.push_back(size.heap);
  const std::vector<Figure> octets = MeasureHeap(heap);
  Print({"CRLs", Description(usual.front()), "ns"}, Measure(TimesOf(sizes)));
  Print({"CRLs in memory", "Octets of the heap for one entry, while the decoded CRL is held.", "octets"}, octets);
}
