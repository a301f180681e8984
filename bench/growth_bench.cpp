// How the cost of an octet grows with the number of octets: shapes that are wide, deep or of indefinite length, some of
// them made to be hard on a decoder. No figure may grow by more than a logarithm, beside what memory itself costs.
#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "floor.h"
#include "heap.h"
#include "sides.h"
#include "support/copy.h"
#include "table.h"
#include "tessel/asn1.hpp"
#include "tessel_sides.h"

namespace bench {
namespace {

using namespace tessel;

struct Integers : ListOf<Asn1Value> {};
struct IntegerLists : ListOf<Integers> {};
constexpr auto kIntegers = SequenceOf<Integers, kInteger>();
constexpr auto kIntegerLists = SequenceOf<IntegerLists, kIntegers>();
constexpr auto kStringSet = SetOf<Integers, kOctetString>();

constexpr auto kWrappedInteger = Explicit<0, kInteger>;
constexpr auto kWrappedIntegers = SequenceOf<Integers, kWrappedInteger>();
constexpr auto kWrappedIntegerLists = SequenceOf<IntegerLists, kWrappedIntegers>();

// SEQUENCE { [1] INTEGER OPTIONAL, [2] INTEGER OPTIONAL, [3] INTEGER OPTIONAL, [4] INTEGER OPTIONAL }
struct OptionalIntegers {
  Asn1Value* first;
  Asn1Value* second;
  Asn1Value* third;
  Asn1Value* fourth;
};
constexpr auto kOptions = Sequence{
    Member<&OptionalIntegers::first, Optional<Implicit<1, kInteger>>>,
    Member<&OptionalIntegers::second, Optional<Implicit<2, kInteger>>>,
    Member<&OptionalIntegers::third, Optional<Implicit<3, kInteger>>>,
    Member<&OptionalIntegers::fourth, Optional<Implicit<4, kInteger>>>,
};

// Nest ::= SEQUENCE OF Nest
extern const Asn1Item kNest;
constexpr const Asn1Item* kNestElement[] = {&kNest};
constinit const Asn1Item kNest{
    TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_SEQUENCE_OF, kNoTagNumber, 0, kNestElement, 1, nullptr};

struct GrowthInput {
  std::vector<uint8_t> octets;
  // What it is encoded to.
  std::vector<uint8_t> der;
};
const std::vector<uint8_t>& DerOf(const GrowthInput& input) { return input.der; }

// Each of these makes an input of about so many octets.
using Make = GrowthInput (*)(size_t size);

constexpr char kSequenceTag = 0x30;
constexpr char kSetTag = 0x31;

std::string Octet(int octet) { return {static_cast<char>(octet)}; }
std::string Repeat(const std::string& text, size_t times) {
  std::string all;
  all.reserve(text.size() * times);
  for (size_t i = 0; i < times; ++i) all += text;
  return all;
}
std::string Fill(const std::string& element, size_t size) { return Repeat(element, size / element.size()); }
const std::string& Integer() {
  static const std::string octets = "\x02\x01\x05";
  return octets;
}
const std::string& Indefinite() {
  static const std::string octets = "\x30\x80";
  return octets;
}
const std::string& EndOfContents() {
  static const std::string octets(2, '\0');
  return octets;
}

GrowthInput Same(const std::string& octets) { return {VectorOf(octets), VectorOf(octets)}; }
GrowthInput Canonical(const std::string& octets, const std::string& der) { return {VectorOf(octets), VectorOf(der)}; }

GrowthInput MakeCrlOf(size_t size) {
  constexpr size_t kEntrySize = 44;
  const CrlInput crl = MakeCrl(std::max<size_t>(size / kEntrySize, 1));
  return {crl.octets, crl.octets};
}
GrowthInput MakeIntegers(size_t size) { return Same(Element(kSequenceTag, Fill(Integer(), size))); }
GrowthInput MakeEmptyElements(size_t size) {
  return Same(Element(kSequenceTag, Fill(Element(kSequenceTag, ""), size)));
}
GrowthInput MakeStringSet(size_t size) {
  constexpr size_t kElementSize = 22;
  SetInput set = MakeDescendingSet(size / kElementSize);
  return {std::move(set.octets), std::move(set.sorted)};
}
// As deep as the decoder goes, many beside each other.
GrowthInput MakeNests(size_t size) {
  constexpr size_t kDepth = 63;
  std::string nest;
  for (size_t level = 0; level < kDepth && nest.size() < size / 2; ++level) nest = Element(kSequenceTag, nest);
  return Same(Element(kSequenceTag, Fill(nest, size)));
}
GrowthInput MakeIndefiniteLists(size_t size) {
  const std::string list = Indefinite() + Integer() + EndOfContents();
  const size_t lists = size / list.size();
  return Canonical(Indefinite() + Repeat(list, lists) + EndOfContents(),
                   Element(kSequenceTag, Repeat(Element(kSequenceTag, Integer()), lists)));
}
// Each list has a wrapper that claims all that follows.
GrowthInput MakeClaimingLists(size_t size) {
  const std::string& end = EndOfContents();
  const std::string wrapped = Element('\xA0', Integer());
  std::string tail = end + Fill(Element('\x05', ""), size / 2);
  std::vector<std::string> lists;
  size_t following = tail.size();
  for (size_t left = size / 2; left > 16; left -= std::min(left, lists.back().size())) {
    const std::string wrapper = Header('\xA0', Integer().size() + end.size() + following);
    std::string& list = lists.emplace_back(Indefinite());
    list.append(wrapper).append(Integer()).append(end);
    following += lists.back().size();
  }
  std::reverse(lists.begin(), lists.end());
  std::string octets = Indefinite();
  for (const std::string& list : lists) octets += list;
  return Canonical(octets + tail, Element(kSequenceTag, Repeat(Element(kSequenceTag, wrapped), lists.size())));
}
GrowthInput MakeSegments(size_t size) {
  const std::string segment = Element('\x04', "x");
  const size_t segments = size / segment.size();
  return Canonical(Octet(0x24) + Octet(0x80) + Repeat(segment, segments) + EndOfContents(),
                   Element('\x04', std::string(segments, 'x')));
}
GrowthInput MakeWideOpenValue(size_t size) { return Same(Indefinite() + Fill(Integer(), size) + EndOfContents()); }
GrowthInput MakeDeepOpenValue(size_t size) {
  return Same(Fill(Indefinite(), size / 2) + Fill(EndOfContents(), size / 2));
}
GrowthInput MakeLongTag(size_t size) {
  const std::string tag = Octet(0xBF) + std::string(size, '\x81') + Octet(0x01) + Octet(0x00);
  return Canonical(Element(kSequenceTag, tag), Element(kSequenceTag, ""));
}
GrowthInput MakeEqualExtensions(size_t size) {
  return Same(Element(kSequenceTag, Fill("\x30\x09\x06\x03\x55\x1D\x0E\x04\x02\x01\x01", size)));
}

struct InputShape {
  const char* name;
  const Asn1Item& item;
  Make make;
  // Its elements are of definite length, within each other.
  bool isWalked = true;
  bool isCompared = true;
};

const InputShape kShapes[] = {
    {"CRL", X509CrlItem, MakeCrlOf, true, false},
    {"list of INTEGERs", kIntegers, MakeIntegers},
    {"list of empty lists", kIntegerLists, MakeEmptyElements},
    {"SET OF, descending", kStringSet, MakeStringSet},
    {"lists 64 deep", kNest, MakeNests},
    {"indefinite lists", kIntegerLists, MakeIndefiniteLists, false},
    {"lists that claim more", kWrappedIntegerLists, MakeClaimingLists, false},
    {"OCTET STRING of segments", kOctetString, MakeSegments, false},
    {"open value, wide", kAny, MakeWideOpenValue, false, false},
    {"open value, deep", kAny, MakeDeepOpenValue, false, false},
    {"long tag, OPTIONAL members", kOptions, MakeLongTag, true},
    {"extensions of one kind", X509ExtensionsItem, MakeEqualExtensions},
};

Tree Copy(const Tree& tree) {
  Tree copy(tree.Item());
  test::Copy(tree.Item(), tree.Root(), copy.Out());
  return copy;
}

Octets Encode(const Tree& tree, size_t size) {
  return EncodeInto(size, [&tree](uint8_t* buffer, uint32_t* length) {
    return GetAsn1EncodedValue(tree.Root(), &tree.Item(), buffer, length);
  });
}

bool AreEqual(const Tree& first, const Tree& second) {
  uint32_t equal = 0;
  return CompareAsn1Objects(&first.Item(), first.Root(), second.Root(), &equal) == 0 && equal == 1;
}

// Every second one stays.
bool RemoveExtensions(Octets octets) {
  static constexpr ObjectIdentifier kOid("2.5.29.14");
  X509ExtensionsSlot slot{};
  const bool isRemoved = DecodeX509Extensions(octets.data(), SizeOf(octets), &slot.list) == 0 &&
                         RemoveX509ExtensionsExtension2(&slot, kOid.Counted()) == 0;
  RemoveX509Extensions(&slot);
  return isRemoved;
}

Label Tessel() { return {Kind::kTessel, "tessel", ""}; }

std::vector<Operation> OperationsOn(const InputShape& shape, const std::vector<GrowthInput>& inputs) {
  const size_t derSize = DerOf(inputs.front()).size();
  const auto decoder = DecoderOf(shape.item);
  const auto encode = [derSize](const Tree& tree) { return Encode(tree, derSize); };
  std::vector<Operation> operations;
  const auto add = [&](const char* name) -> Operation& {
    return operations.emplace_back(Operation{name, static_cast<double>(inputs.front().octets.size())});
  };
  if (shape.isWalked) AddWalk(add("header walk"), inputs);
  AddDecoder(add("decode, free"), Tessel(), inputs, decoder, [encode](const Tree& tree, const GrowthInput& input) {
    return std::ranges::equal(encode(tree), DerOf(input));
  });
  const auto held = Hold(inputs, decoder);
  AddCopier(add("copy, free"), Tessel(), held, Copy, encode);
  if (shape.isCompared) {
    const auto other = Hold(inputs, decoder);
    const Work compare = [held, other] { return AreEqual(held->front().decoded, other->front().decoded); };
    add("compare").sides.push_back({Tessel(), compare, compare});
  }
  AddEncoder(add("encode"), Tessel(), held, encode);
  if (&shape.item == &X509ExtensionsItem) {
    const Work remove = [&inputs] { return RemoveExtensions(inputs.front().octets); };
    add("decode, remove, free").sides.push_back({Tessel(), remove, remove});
  }
  return operations;
}

double HeapFor(const InputShape& shape, const GrowthInput& input) {
  const size_t before = HeapInUse();
  const Tree tree = DecoderOf(shape.item)(input.octets);
  return static_cast<double>(HeapInUse() - before) / static_cast<double>(input.octets.size());
}

std::string NameOf(size_t size) {
  constexpr size_t kMegabyte = 1'000'000;
  return size < kMegabyte ? Grouped(size / 1'000) + " KB" : Grouped(size / kMegabyte) + " MB";
}

// Adds the rows of a shape: figures by operation, a column for each size.
void AddRows(const InputShape& shape, const std::vector<size_t>& sizes, Rows& rows) {
  std::map<std::string, size_t> places;
  const auto addFigure = [&](const std::string& operation, size_t column, double figure) {
    const auto [place, isNew] = places.try_emplace(operation, rows.size());
    if (isNew) rows.push_back({places.size() == 1 ? shape.name : "", operation});
    rows[place->second].resize(2 + column);
    rows[place->second].push_back(Rounded(figure));
  };
  for (size_t column = 0; column < sizes.size(); ++column) {
    const std::vector<GrowthInput> inputs = {shape.make(sizes[column])};
    for (const Figure& figure : Measure(OperationsOn(shape, inputs))) {
      addFigure(figure.operation, column, figure.value);
    }
    // Of the smallest, what the heap keeps for the next small blocks hides what is taken.
    if (column > 0) addFigure("heap", column, HeapFor(shape, inputs.front()));
  }
}

}  // namespace
}  // namespace bench

int main(int count, char** arguments) {
  using namespace bench;
  const Options options = Initialize(count, arguments);
  std::vector<size_t> sizes = {1'000, 10'000, 100'000, 1'000'000};
  if (options.isFull) sizes.insert(sizes.end(), {10'000'000, 100'000'000});
  Rows rows = {{"input", "operation"}};
  for (const size_t size : sizes) rows.front().push_back(NameOf(size));
  for (const InputShape& shape : kShapes) AddRows(shape, sizes, rows);
  PrintTable(
      "Growth",
      "Inputs of growing size: figures are nanoseconds for one octet of the input, and should not grow. \"heap\" "
      "is octets of the heap, while the decoded object is held, for one octet of the input.",
      rows, 2);
}
