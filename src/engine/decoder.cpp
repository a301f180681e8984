#include "engine/decoder.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "engine/header.h"
#include "engine/lifecycle.h"
#include "engine/lists.h"
#include "engine/nodes.h"
#include "engine/primitives.h"
#include "tessel/asn1.hpp"

namespace tessel {
namespace {

// Which tag an element must carry: its descriptor's, or, inside an EXPLICIT wrapper, the universal one of its kind.
enum class Tagging : uint8_t { kOwn, kUniversal };

// Which octet stands before octets that are kept: the last one of their own header, which is not needed any more, or
// another one, which may be in use.
enum class Before : uint8_t { kOwnHeader, kOther };

// Counts a descriptor as nested in others for as long as the object lives.
class Nesting {
 public:
  explicit Nesting(uint32_t& depth) : depth_(depth) { ++depth_; }
  ~Nesting() { --depth_; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;
  [[nodiscard]] bool IsTooDeep() const { return depth_ > kMaximumDepth; }

 private:
  uint32_t& depth_;
};

// The largest number of elements in the input: each has at least two octets.
uint32_t ElementsWithin(Octets input) { return static_cast<uint32_t>(input.size() / 2); }

Decoded Failure(Status status) { return {nullptr, 0, status}; }
Decoded OutOfMemory(SourceLocation at = {}) { return Failure(Fail(TESSEL_OUT_OF_MEMORY, at)); }

// Decodes one tree. Each function reads at the start of the octets that it is given and stays within them. After a
// failure it returns the node that it has made so far, if any, in a state that can be released. The tree is then
// released as a whole, by WholeOrNothing.
class Decoder {
 public:
  // With the first constructor contents are copied one by one. With the second the pool copies the whole input, and
  // contents stay in that copy.
  explicit Decoder(Octets input) : pool_(0), readsCopy_(false), uncounted_(ElementsWithin(input)) {}
  Decoder(size_t rootSize, Octets input)
      : pool_(rootSize, input), readsCopy_(true), uncounted_(ElementsWithin(input)) {}

  // Decodes the pool's copy of the input.
  Decoded Copied(const Plan& plan);
  Decoded Element(const Plan& plan, Octets input);

 private:
  Decoded AnyElement(const Plan& plan, Octets input);
  Decoded Wrapped(const Plan& plan, Octets input);
  Decoded Tagged(const Plan& plan, Octets input, Tagging tagging);
  Decoded ChosenElement(const Plan& plan, Octets input);
  Decoded Alternative(uint32_t index, const Plan& alternative, Octets input);
  Decoded OpenElement(const Plan& plan, Octets input, Tagging tagging);
  Decoded TypedElement(const Plan& plan, Octets input, Tagging tagging);
  Decoded Absent(const Plan& plan);

  Decoded Constructed(const Plan& plan, Octets content, bool indefinite);
  Decoded SegmentedString(Octets content, bool indefinite);
  Decoded List(const Plan& plan, Octets content, bool indefinite);
  uint32_t GuessCount(Octets content);
  Decoded ListElement(const Plan& element, Octets input, Asn1List& list);
  Decoded Slots(const Plan& plan, Octets content, bool indefinite);

  Decoded Primitive(const Plan& plan, Octets content);
  Decoded Value(uint32_t kind, Octets content);
  Decoded BitString(Octets content);
  template <class Node>
  Decoded Place(uint32_t tagOrUnused, Octets content, Before before = Before::kOwnHeader);
  uint8_t* Keep(Octets content, Before before);

  Pool pool_;
  const bool readsCopy_;
  // How many octets of the input are certain to be written again when the tree is encoded. A function that is not
  // certain of its octets does not count them. Unless all are counted, the size of the encoding is not known.
  uint32_t kept_ = 0;
  // How many elements GuessCount may still count.
  uint32_t uncounted_;
  uint32_t depth_ = 0;
};

// Does what ReadBehindIdentifier does when the input begins with the item's own identifier octet. Otherwise returns 0.
inline uint32_t ReadOwnHeader(const Plan& plan, Octets input, Octets& content) {
  if (input.size() < 2 || input[0] != plan.identifier) return 0;
  return ReadBehindIdentifier(input, content);
}

// Whether a header is written as DER has it (X.690, 10.1).
bool IsMinimal(const Header& header) {
  uint32_t length = 2;
  for (uint32_t tag = header.tagNumber; header.tagNumber >= kHighTagNumber && tag != 0; tag >>= 7) ++length;
  for (uint32_t left = header.contentLength; header.contentLength >= kLongLength && left != 0; left >>= 8) ++length;
  return !header.indefinite && header.headerLength == length;
}

// Whether a node is certain to be written again. A node that equals its DEFAULT is not written. Only BOOLEAN and
// INTEGER are compared with their DEFAULT; nodes of other kinds that have one are not certain.
inline bool IsWritten(const Plan& plan, const void* node) {
  if (node == nullptr) return false;
  if (plan.item->defaultValue == nullptr) return true;
  const bool isNumber = plan.layout == NodeLayout::kValueNode && plan.kind <= TESSEL_KIND_INTEGER;
  return isNumber && !EqualsDefault(plan, *static_cast<const Asn1Value*>(node));
}

// Nearly all elements have the identifier octet of their item and a length as DER has it. They are decoded here, by the
// form of the item. All others are decoded by AnyElement, which could decode these too, but is slower.
[[gnu::always_inline]] inline Decoded Decoder::Element(const Plan& plan, Octets input) {
  Octets content;
  const uint32_t headerLength = ReadOwnHeader(plan, input, content);
  if (headerLength == 0) return AnyElement(plan, input);
  Decoded decoded;
  if (IsValueForm(plan.form)) {
    decoded = Value(plan.kind, content);
    decoded.consumed += headerLength;
    if (plan.form != Form::kValueWithDefault || IsWritten(plan, decoded.node)) kept_ += decoded.consumed;
    return decoded;
  }
  if (plan.form == Form::kSlots) {
    decoded = Slots(plan, content, false);
  } else {
    decoded = plan.form == Form::kList ? List(plan, content, false) : BitString(content);
  }
  kept_ += headerLength;
  decoded.consumed += headerLength;
  return decoded;
}

// Not inlined, to keep what is rare out of the loops that read members and elements.
[[gnu::noinline]] Decoded Decoder::AnyElement(const Plan& plan, Octets input) {
  if (input.empty()) return Absent(plan);
  const bool isWrapped = plan.form == Form::kNone && IsExplicit(*plan.item);
  return isWrapped ? Wrapped(plan, input) : Tagged(plan, input, Tagging::kOwn);
}

Decoded Decoder::Wrapped(const Plan& plan, Octets input) {
  const Asn1Item& item = *plan.item;
  if (item.tagNumber < 0) return Failure(Fail(TESSEL_INCONSISTENT_DESCRIPTOR));
  Header outer;
  if (Status status = ReadHeader(input, outer); status.Failed()) return Failure(status);
  if (outer.tagNumber != OwnTag(item) || outer.tagClass != TagClass(item) || outer.constructed == 0) {
    return Absent(plan);
  }

  // DEVIATES: the element in a wrapper may be longer or shorter than the wrapper says (X.690, 8.14.2), so that what
  // could be read so far stays readable.
  const Octets inside = input.subspan(outer.headerLength);
  Decoded inner = Tagged(plan, inside, Tagging::kUniversal);
  if (inner.status.Failed()) return inner;
  if (outer.indefinite) {
    if (!StartsWithEndOfContents(inside.subspan(inner.consumed))) {
      inner.status = Fail(TESSEL_INDEFINITE_LENGTH);
      return inner;
    }
    inner.consumed += kEndOfContentsSize;
  }
  // DEVIATES: the wrapper of an OPTIONAL item may hold another element, which is read as what follows the item, so that
  // what could be read so far stays readable.
  // A wrapper is not written when there is no node for what it holds, nor when that node equals the DEFAULT.
  const bool isWrittenAlike = IsMinimal(outer) && inner.consumed == outer.contentLength && IsWritten(plan, inner.node);
  if (isWrittenAlike) kept_ += outer.headerLength;
  inner.consumed += outer.headerLength;
  return inner;
}

Decoded Decoder::Absent(const Plan& plan) {
  const Asn1Item& item = *plan.item;
  if (!IsOptional(item)) return Failure(Fail(TESSEL_MALFORMED));
  if (item.defaultValue == nullptr) return Decoded();
  const Made value = CopyInto(pool_, plan, item.defaultValue);
  return {value.node, 0, value.status};
}

bool Matches(const Header& header, uint8_t tagClass, uint32_t tagNumber) {
  return header.tagClass == tagClass && header.tagNumber == tagNumber;
}

bool MatchesAlternative(const Header& header, uint8_t identifier, const Plan& plan) {
  if (plan.identifier != kNoIdentifier) return identifier == plan.identifier;
  const Asn1Item& alternative = *plan.item;
  const uint8_t constructed = IsExplicit(alternative) ? kConstructedBit : ConstructedBit(alternative);
  // DEVIATES: an open value without a tag number is found by the tag of BOOLEAN, the low bits of its kind, as callers'
  // descriptors know it.
  return Matches(header, TagClass(alternative), OwnTag(alternative)) && header.constructed == constructed;
}

inline Decoded Decoder::Tagged(const Plan& plan, Octets input, Tagging tagging) {
  if (plan.layout == NodeLayout::kChoiceNode) return ChosenElement(plan, input);
  if (plan.layout == NodeLayout::kOpenNode) return OpenElement(plan, input, tagging);
  return TypedElement(plan, input, tagging);
}

Decoded Decoder::TypedElement(const Plan& plan, Octets input, Tagging tagging) {
  const Asn1Item& item = *plan.item;
  Header header;
  if (Status status = ReadHeader(input, header); status.Failed()) return Failure(status);
  // End-of-contents octets are never an element, even when they match the tag of the item.
  if (StartsWithEndOfContents(input)) return Absent(plan);

  const bool own = tagging == Tagging::kOwn;
  const bool matches =
      own ? Matches(header, TagClass(item), OwnTag(item)) : Matches(header, TESSEL_CLASS_UNIVERSAL, UniversalTag(item));
  // DEVIATES: of strings in segments (X.690, 8.6.4, 8.7.3) only an OCTET STRING of indefinite length is read: DER, in
  // which the types here are written, has none.
  const bool mayBeSegmented = item.kind == TESSEL_KIND_OCTET_STRING || item.kind == TESSEL_KIND_BIT_STRING;
  const bool rightForm = header.constructed == ConstructedBit(item) || (header.indefinite && mayBeSegmented);
  if (!matches || !rightForm) return Absent(plan);

  Octets content;
  if (Status status = ReadContent(input, header, content); status.Failed()) return Failure(status);
  Decoded decoded;
  if (header.constructed != 0) {
    decoded = Constructed(plan, content, header.indefinite);
  } else {
    decoded = header.indefinite ? Failure(Fail(TESSEL_INDEFINITE_LENGTH)) : Primitive(plan, content);
  }
  // Inside a wrapper the node is not compared with the DEFAULT: Wrapped does that.
  const bool isWrittenAlike =
      IsMinimal(header) && item.kind != TESSEL_KIND_SET && (!own || IsWritten(plan, decoded.node));
  if (isWrittenAlike)
    kept_ += header.headerLength + (header.constructed == 0 && IsValueLayout(plan.layout) ? decoded.consumed : 0);
  decoded.consumed += header.headerLength;
  return decoded;
}

Decoded Decoder::ChosenElement(const Plan& plan, Octets input) {
  MemberPlans alternatives(plan);
  if (!alternatives.AreConsistent()) return Failure(Fail(TESSEL_INCONSISTENT_DESCRIPTOR));
  // The first alternative is tried before the header is read, because most values are of it.
  if (!input.empty() && alternatives.Count() != 0 && input[0] == alternatives[0].identifier) {
    return Alternative(0, alternatives[0], input);
  }
  Header header;
  if (Status status = ReadHeader(input, header); status.Failed()) return Failure(status);
  if (StartsWithEndOfContents(input)) return Absent(plan);
  for (uint32_t i = 0; i < alternatives.Count(); ++i) {
    const Plan& alternative = alternatives[i];
    if (MatchesAlternative(header, input[0], alternative)) return Alternative(i, alternative, input);
  }
  return Absent(plan);
}

inline Decoded Decoder::Alternative(uint32_t index, const Plan& alternative, Octets input) {
  const Nesting nesting(depth_);
  if (nesting.IsTooDeep()) return Failure(Fail(TESSEL_MALFORMED));
  void* place = pool_.Node(sizeof(Asn1Choice));
  if (place == nullptr) return OutOfMemory();
  auto* choice = new (place) Asn1Choice{index, nullptr};
  const Decoded value = Element(alternative, input);
  choice->value = value.node;
  return {choice, value.consumed, value.status};
}

Decoded Decoder::OpenElement(const Plan& plan, Octets input, Tagging tagging) {
  Header header;
  if (Status status = ReadHeader(input, header); status.Failed()) return Failure(status);
  if (StartsWithEndOfContents(input)) return Absent(plan);
  Octets content;
  if (Status status = ReadContent(input, header, content); status.Failed()) return Failure(status);
  uint32_t size = header.contentLength;
  if (header.indefinite) {
    if (Status status = ScanIndefiniteContent(content, size); status.Failed()) return Failure(status);
  }
  // An open value whose item has a tag of its own may be written with another identifier, so it is not counted.
  if (plan.form == Form::kOpen || tagging == Tagging::kUniversal) kept_ += header.headerLength + size;
  return Place<Asn1Value>(header.tagNumber, input.first(header.headerLength + size), Before::kOther);
}

// The functions from here on decode a content. Their `consumed` is how much of the content they used: all of it, unless
// the length is indefinite.

Decoded Decoder::Constructed(const Plan& plan, Octets content, bool indefinite) {
  if (plan.layout == NodeLayout::kSlotsNode) return Slots(plan, content, indefinite);
  if (plan.layout == NodeLayout::kListNode) return List(plan, content, indefinite);
  if (plan.kind == TESSEL_KIND_OCTET_STRING) return SegmentedString(content, indefinite);
  return Failure(Fail(TESSEL_INVALID_ARGUMENT));
}

// Whether `rest`, the unread end of a content, holds no further element: it is empty, or, with indefinite length,
// begins with the end-of-contents octets (X.690, 8.1.5).
bool Ends(Octets rest, bool indefinite) { return indefinite ? StartsWithEndOfContents(rest) : rest.empty(); }

// How much of a content was used when `rest` is left. With indefinite length the end-of-contents octets in `rest` count
// too.
uint32_t Used(Octets content, Octets rest, bool indefinite) {
  const bool hasEnd = indefinite && !rest.empty();
  return static_cast<uint32_t>(content.size() - rest.size()) + (hasEnd ? kEndOfContentsSize : 0);
}

// Calls `use` with the content of each segment. Segments are not descended into.
template <class Use>
Decoded WalkSegments(Octets content, bool indefinite, Use use) {
  Octets rest = content;
  while (!Ends(rest, indefinite)) {
    Header header;
    if (Status status = ReadHeader(rest, header); status.Failed()) return Failure(status);
    // DEVIATES: of a segment only the tag number counts, and one in segments itself is taken as it stands (X.690,
    // 8.7.3.2), so that nesting needs no stack.
    if (header.tagNumber != TESSEL_KIND_OCTET_STRING) return Failure(Fail(TESSEL_WRONG_SEGMENT));
    Octets segment;
    if (Status status = ReadContent(rest, header, segment); status.Failed()) return Failure(status);
    use(segment);
    rest = rest.subspan(header.headerLength + segment.size());
  }
  return {nullptr, Used(content, rest, indefinite), Status()};
}

Decoded Decoder::SegmentedString(Octets content, bool indefinite) {
  uint32_t length = 0;
  Decoded decoded =
      WalkSegments(content, indefinite, [&length](Octets segment) { length += static_cast<uint32_t>(segment.size()); });
  if (decoded.status.Failed()) return decoded;

  void* place = pool_.Node(sizeof(Asn1Value));
  if (place == nullptr) return OutOfMemory();
  decoded.node = new (place) Asn1Value{TESSEL_KIND_OCTET_STRING, 0, nullptr};
  Scratch<uint8_t> data(length == 0 ? nullptr : static_cast<uint8_t*>(AllocateOctets(length)));
  if (data == nullptr && length != 0) return {decoded.node, 0, Fail(TESSEL_OUT_OF_MEMORY)};
  NoteChange();
  uint8_t* to = data.get();
  WalkSegments(content, indefinite, [&to](Octets segment) { to = std::copy(segment.begin(), segment.end(), to); });
  decoded.node = new (place) Asn1Value{TESSEL_KIND_OCTET_STRING, length, data.release()};
  return decoded;
}

Decoded Decoder::List(const Plan& plan, Octets content, bool indefinite) {
  MemberPlans plans(plan);
  if (!plans.AreConsistent()) return Failure(Fail(TESSEL_INCONSISTENT_DESCRIPTOR));
  const Nesting nesting(depth_);
  if (nesting.IsTooDeep()) return Failure(Fail(TESSEL_MALFORMED));
  Asn1List* list = NewList(pool_, GuessCount(content));
  if (list == nullptr) return OutOfMemory();
  const Plan& element = plans[0];
  Octets rest = content;
  // DEVIATES: a list of indefinite length may end with the input, without end-of-contents octets (X.690, 8.1.5), so
  // that what could be read so far stays readable.
  while (!rest.empty() && !Ends(rest, indefinite)) {
    const Decoded found = ListElement(element, rest, *list);
    if (found.status.Failed()) return {list, 0, found.status};
    rest = rest.subspan(found.consumed);
  }
  return {list, Used(content, rest, indefinite), Status()};
}

// How many elements the list seems to have, for the size of its array. A list of indefinite length may seem longer than
// it is, when a wrapper in it tells a length that leads the count past the end of the list. So that many such lists do
// not each count all that follows them, all lists together count no more elements than the input can hold.
inline uint32_t Decoder::GuessCount(Octets content) {
  const uint32_t count = StartsWithEndOfContents(content) ? 0 : CountElements(content, uncounted_);
  uncounted_ -= std::min(count, uncounted_);
  return count;
}

// Decodes an element and appends its node to the list, also after a failure, because the list is then released with it.
inline Decoded Decoder::ListElement(const Plan& element, Octets input, Asn1List& list) {
  if (input.size() < 2) return Failure(Fail(TESSEL_MALFORMED));
  if (const Status status = MakeRoom(list); status.Failed()) return Failure(status);
  Decoded found = Element(element, input);
  if (found.status.Ok() || found.node != nullptr) list.items[list.count++] = found.node;
  // An element that takes no octets (an OPTIONAL item that is absent) is refused: the loop would find it again at the
  // same octet and never end.
  if (found.status.Ok() && found.consumed == 0) found.status = Fail(TESSEL_MALFORMED);
  return found;
}

// Completes a node of which only the first slots are filled before a failure: the others become null.
Decoded Unfinished(const Plan& plan, void* node, uint32_t filled, Status status) {
  for (uint32_t i = filled; i < plan.item->memberCount; ++i) StoreSlot(node, i, nullptr);
  return {node, 0, status};
}

Decoded Decoder::Slots(const Plan& plan, Octets content, bool indefinite) {
  MemberPlans members(plan);
  if (!members.AreConsistent()) return Failure(Fail(TESSEL_INCONSISTENT_DESCRIPTOR));
  const Nesting nesting(depth_);
  if (nesting.IsTooDeep()) return Failure(Fail(TESSEL_MALFORMED));
  void* node = NewSlots(pool_, *plan.item);
  if (node == nullptr) return OutOfMemory();
  Octets rest = content;
  for (uint32_t i = 0; i < members.Count(); ++i) {
    // DEVIATES: members of a SET are read in the order of the descriptor only (X.690, 8.11): no type of the library is
    // a SET.
    const Decoded member = Element(members[i], rest);
    StoreSlot(node, i, member.node);
    if (member.status.Failed()) return Unfinished(plan, node, i + 1, member.status);
    rest = rest.subspan(member.consumed);
  }
  // DEVIATES: octets behind the last member are skipped when the length is definite, so that types which have got more
  // members since are read.
  if (!indefinite) return {node, static_cast<uint32_t>(content.size()), Status()};
  if (StartsWithEndOfContents(rest)) return {node, Used(content, rest, indefinite), Status()};
  return {node, 0, Fail(TESSEL_INDEFINITE_LENGTH)};
}

Decoded Decoder::Primitive(const Plan& plan, Octets content) {
  if (plan.layout == NodeLayout::kBitStringNode) return BitString(content);
  return plan.layout == NodeLayout::kValueNode ? Value(plan.kind, content) : Failure(Fail(TESSEL_UNSUPPORTED_KIND));
}

inline Decoded Decoder::Value(uint32_t kind, Octets content) {
  // DEVIATES: a BOOLEAN must be DER, although BER has other values for TRUE (X.690, 8.2.2), while other contents may be
  // anything, a NULL with octets too (8.8.2): whoever reads a member judges it.
  const bool valid = kind > TESSEL_KIND_INTEGER ||
                     (kind == TESSEL_KIND_INTEGER ? IsIntegerContent(content) : IsBooleanContent(content));
  Decoded value = Place<Asn1Value>(kind, content);
  if (!valid && value.status.Ok()) value.status = Fail(TESSEL_INVALID_CONTENT);
  return value;
}

Decoded Decoder::BitString(Octets content) {
  constexpr uint8_t kMostUnusedBits = 7;
  if (content.empty() || content[0] > kMostUnusedBits) return Failure(Fail(TESSEL_MALFORMED));
  Decoded bits = Place<Asn1BitString>(content[0], content.subspan(1));
  bits.consumed = static_cast<uint32_t>(content.size());
  kept_ += bits.consumed;
  return bits;
}

// Makes an Asn1Value or Asn1BitString with its content, whose length is what it consumes.
template <class Node>
inline Decoded Decoder::Place(uint32_t tagOrUnused, Octets content, Before before) {
  void* place = pool_.Node(sizeof(Node));
  if (place == nullptr) return OutOfMemory();
  uint8_t* data = content.empty() ? nullptr : Keep(content, before);
  const auto length = static_cast<uint32_t>(content.size());
  auto* node = new (place) Node{tagOrUnused, length, data};
  const bool isWhole = data != nullptr || content.empty();
  return {node, length, isWhole ? Status() : Fail(TESSEL_OUT_OF_MEMORY)};
}

inline uint8_t* Decoder::Keep(Octets content, Before before) {
  const bool staysInCopy = readsCopy_ && (before == Before::kOwnHeader || !OwnsItsMemory(content.data()));
  return staysInCopy ? pool_.KeepInPlace(content) : pool_.Keep(content);
}

Decoded Decoder::Copied(const Plan& plan) {
  // The copy is empty when there was no memory for it.
  const Octets input = pool_.Input();
  if (input.empty()) return OutOfMemory();
  const Decoded decoded = Element(plan, input);
  if (decoded.status.Ok() && kept_ == decoded.consumed) pool_.SetEncodedSize(kept_);
  return decoded;
}

// The element when it is to be copied as a whole, otherwise nothing. It is copied when it is a SEQUENCE or list of
// definite length. Of other elements the length may be unknown, or they may use octets beyond it.
Octets ElementToCopy(const Plan& plan, Octets input) {
  Octets content;
  const bool isConstructed = plan.form == Form::kSlots || plan.form == Form::kList;
  const uint32_t headerLength =
      isConstructed && MemberPlans(plan).AreConsistent() ? ReadOwnHeader(plan, input, content) : 0;
  return headerLength == 0 ? Octets() : input.first(headerLength + content.size());
}

Decoded DecodeSomething(const Plan& plan, Octets input) {
  const Octets element = ElementToCopy(plan, input);
  if (kSeparateNodes || element.empty()) return Decoder(input).Element(plan, input);
  // Only the descriptor of a SEQUENCE tells the size of its node. The node of a list takes at most kLargestListNode.
  const size_t slotsSize = plan.form == Form::kSlots ? plan.item->nodeSize : 0;
  return Decoder(std::max(slotsSize, kLargestListNode), element).Copied(plan);
}

// Releases what was made before a failure. A root that is a value with invalid content is kept.
Decoded WholeOrNothing(const Plan& plan, Decoded decoded) {
  const bool isInvalidValue = decoded.status == TESSEL_INVALID_CONTENT && IsValueLayout(plan.layout);
  if (decoded.status.Ok() || isInvalidValue) return decoded;
  FreeTree(plan, decoded.node);
  return Failure(decoded.status);
}

}  // namespace

Decoded DecodeTree(const Plan& plan, Octets input) { return WholeOrNothing(plan, DecodeSomething(plan, input)); }

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL Asn1DecodeItem(const uint8_t* data, uint32_t size, const Asn1Item* descriptor, void** object,
                                    uint32_t* consumed) {
  if (data == nullptr || descriptor == nullptr || object == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const Decoded decoded = DecodeTree(*descriptor, Octets(data, size));
  // DEVIATES: octets behind the element are not looked at, for callers who read one after another, and a root with
  // invalid content goes out with the failure, for those who look at it.
  *object = decoded.node;
  if (decoded.status.Ok() && consumed != nullptr) *consumed = decoded.consumed;
  return decoded.status;
}
