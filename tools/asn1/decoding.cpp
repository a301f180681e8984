#include "asn1/decoding.h"

#include <optional>
#include <string_view>
#include <utility>

#include "asn1/tags.h"
#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

using tessel::Outline;

// Where an element should begin, and how a reader comes there.
struct Place {
  Octets octets;  // they end with the innermost element around the place whose length counts, or with the input
  uint32_t offset = 0;
  std::optional<uint32_t> enclosing;  // the offset of that element
  std::string path;

  [[nodiscard]] Octets Rest() const { return octets.subspan(offset); }
  [[nodiscard]] std::string Limit() const {
    return enclosing ? Concat("the element at offset ", *enclosing) : std::string("the input");
  }
  [[nodiscard]] Fault Because(std::string reason) const { return {path, offset, std::move(reason)}; }
  [[nodiscard]] Fault WithoutEnd() const { return Because("the end-of-contents octets are missing"); }
};

bool IsExplicit(const Asn1Item& item) { return (item.flags & TESSEL_FLAG_EXPLICIT) != 0; }
bool IsOpen(const Asn1Item& item) { return item.kind == TESSEL_KIND_ANY && !IsExplicit(item); }
bool IsChoice(const Asn1Item& item) { return item.kind == TESSEL_KIND_CHOICE && !IsExplicit(item); }
bool IsList(const Asn1Item& item) { return item.kind == TESSEL_KIND_SEQUENCE_OF || item.kind == TESSEL_KIND_SET_OF; }

uint8_t TagClass(const Asn1Item& item) { return static_cast<uint8_t>(item.flags & TESSEL_CLASS_MASK); }
uint32_t UniversalTag(const Asn1Item& item) { return item.kind & 0x7F; }
uint32_t TagNumber(const Asn1Item& item) {
  return item.tagNumber < 0 ? UniversalTag(item) : static_cast<uint32_t>(item.tagNumber);
}
// Of a larger number decoders see 32 bits.
bool HasTag(const Element& header, const Asn1Item& item) {
  return header.tagClass == TagClass(item) && static_cast<uint32_t>(header.tagNumber) == TagNumber(item);
}

std::string Expected(const Asn1Item& item) {
  if (IsOpen(item)) return "an element";
  return IsChoice(item) ? "a CHOICE" : TagPhrase(TagClass(item), TagNumber(item));
}

// What keeps the header from being read; empty when nothing does.
std::string HeaderProblem(const Place& place, Element& header) {
  header.offset = place.offset;
  const uint32_t status = ReadHeader(place.Rest(), header);
  if (status == TESSEL_LENGTH_TOO_LARGE) return "the length takes more than 4 octets";
  return status == TESSEL_OK ? "" : Concat("tag and length run past the end of ", place.Limit());
}

std::string FormProblem(const Element& header) {
  return Concat(TagPhrase(header.tagClass, header.tagNumber), header.constructed ? " is constructed" : " is primitive");
}

// What makes the library take the element for another one, by its tag or its form.
std::string TagProblem(const Outline& outline, const Element& header, const Place& place) {
  const Asn1Item& item = *outline.item;
  const bool isEndOfContents = place.Rest()[0] == 0 && place.Rest()[1] == 0;
  const bool hasAnyTag = IsOpen(item) || IsChoice(item);
  if (isEndOfContents || !(hasAnyTag || HasTag(header, item))) {
    return Concat(Expected(item), " was expected, ", TagPhrase(header.tagClass, header.tagNumber), " is there");
  }
  const bool maySegment = item.kind == TESSEL_KIND_OCTET_STRING && header.indefinite;
  const bool isConstructed = IsExplicit(item) || outline.members != nullptr || (maySegment && header.constructed);
  if (hasAnyTag || header.constructed == isConstructed) return "";
  return FormProblem(header);
}

std::string LengthProblem(const Asn1Item& item, const Element& header, const Place& place) {
  if (header.indefinite) {
    const bool isAllowed = header.constructed || IsOpen(item);
    return isAllowed ? "" : Concat(TagPhrase(header.tagClass, header.tagNumber), " of indefinite length is primitive");
  }
  const size_t room = place.octets.size() - header.ContentOffset();
  if (header.contentLength <= room) return "";
  return Concat("the length of ", header.contentLength, " runs past the end of ", place.Limit(), ", which has ",
                OctetCount(room), " left");
}

// The library's answer at that place; `size` receives the octets of the element, 0 when it is absent and may be so.
uint32_t Decode(const Asn1Item& item, const Place& place, uint32_t& size) {
  tessel::Tree tree(item);
  return StatusOf(Asn1DecodeItem, place.Rest(), &item, tree.Out(), &size);
}

// For a type without members.
std::string ContentProblem(const Asn1Item& item, const Element& header, const Place& place) {
  if (header.indefinite) return "an element in it is broken, or the end-of-contents octets are missing";
  const Octets content = ContentOf(header, place.octets);
  const std::string type = TagPhrase(TESSEL_CLASS_UNIVERSAL, UniversalTag(item));
  if (content.empty()) return Concat(type, " of no octets");
  if (item.kind == TESSEL_KIND_BIT_STRING) return Concat(type, " with ", content.front(), " unused bits");
  const bool isInteger = item.kind == TESSEL_KIND_INTEGER;
  return Concat(type, isInteger ? " with a needless leading octet: " : " of ", ShortHex(content));
}

Fault ExplainElement(const Outline& outline, const Place& place);

Fault ExplainNamed(const Outline& outline, std::string_view name, Place place) {
  place.path += Concat(place.path.empty() ? "" : ".", name);
  return ExplainElement(outline, place);
}

Fault ExplainMembers(const Outline& outline, Place place) {
  for (uint32_t i = 0; i < outline.item->memberCount; ++i) {
    uint32_t size = 0;
    const Outline& member = *outline.members[i];
    if (Decode(*member.item, place, size) != TESSEL_OK) return ExplainNamed(member, outline.names[i], place);
    place.offset += size;
  }
  return place.WithoutEnd();
}

// One that fails has an element that does, or that is OPTIONAL and absent.
Fault ExplainList(const Outline& outline, Place place) {
  const Outline& element = *outline.members[0];
  uint32_t index = 0;
  for (uint32_t size = 0; Decode(*element.item, place, size) == TESSEL_OK && size != 0; ++index) place.offset += size;
  place.path += Concat('[', index, ']');
  return ExplainElement(element, place);
}

Fault ExplainChoice(const Outline& outline, const Element& header, const Place& place) {
  for (uint32_t i = 0; i < outline.item->memberCount; ++i) {
    const Asn1Item& item = *outline.members[i]->item;
    if (!HasTag(header, item)) continue;
    const bool isConstructed = (item.flags & (TESSEL_FLAG_CONSTRUCTED | TESSEL_FLAG_EXPLICIT)) != 0;
    if (header.constructed != isConstructed) return place.Because(FormProblem(header));
    return ExplainNamed(*outline.members[i], outline.names[i], place);
  }
  return place.Because(
      Concat("no alternative of the CHOICE begins with ", TagPhrase(header.tagClass, header.tagNumber)));
}

// What an EXPLICIT tag wraps has the tag of its type, and is not bound to the length of the wrapper.
Fault ExplainWrapped(const Outline& outline, Place place) {
  Asn1Item item = *outline.item;
  item.flags &= TESSEL_FLAG_CONSTRUCTED;
  item.tagNumber = tessel::kNoTagNumber;
  item.defaultValue = nullptr;
  uint32_t size = 0;
  if (Decode(item, place, size) != TESSEL_OK) return ExplainElement({&item, outline.members, outline.names}, place);
  place.offset += size;
  return place.WithoutEnd();
}

Fault ExplainElement(const Outline& outline, const Place& place) {
  const Asn1Item& item = *outline.item;
  const std::string expected = Expected(item);
  if (place.Rest().empty()) return place.Because(Concat(place.Limit(), " ends where ", expected, " was expected"));
  Element header;
  std::string problem = HeaderProblem(place, header);
  if (problem.empty()) problem = TagProblem(outline, header, place);
  if (problem.empty() && IsChoice(item)) return ExplainChoice(outline, header, place);
  if (problem.empty() && !IsExplicit(item)) problem = LengthProblem(item, header, place);
  if (!problem.empty()) return place.Because(std::move(problem));

  Place inside = place;
  inside.offset = header.ContentOffset();
  if (IsExplicit(item)) return ExplainWrapped(outline, std::move(inside));
  if (outline.members == nullptr) return place.Because(ContentProblem(item, header, place));
  if (!header.indefinite) {
    inside.octets = place.octets.first(inside.offset + header.contentLength);
    inside.enclosing = place.offset;
  }
  return IsList(item) ? ExplainList(outline, std::move(inside)) : ExplainMembers(outline, std::move(inside));
}

}  // namespace

Fault Explain(const Outline& outline, Octets octets) { return ExplainElement(outline, {octets, 0, std::nullopt, {}}); }

tessel::Tree Decode(const tessel::Outline& type, Octets octets, uint32_t* consumed) {
  tessel::Tree tree(*type.item);
  const uint32_t status =
      octets.empty() ? uint32_t{TESSEL_MALFORMED} : StatusOf(Asn1DecodeItem, octets, type.item, tree.Out(), consumed);
  if (status != TESSEL_OK) throw DecodingError(status, type, octets);
  return tree;
}

}  // namespace tool
