#include "asn1/ber.h"

#include <utility>

#include "tessel/calls.hpp"
#include "texts/concat.h"

namespace tool {
namespace {

// Takes the identifier octets from the front. Nothing: they do not end.
std::optional<uint64_t> TakeTagNumber(Octets& octets) {
  constexpr uint8_t kHighTagForm = 0x1F;
  const uint8_t low = octets.front() & kHighTagForm;
  octets = octets.subspan(1);
  if (low != kHighTagForm) return low;
  uint64_t number = 0;
  bool isWide = false;
  for (size_t i = 0; i < octets.size(); ++i) {
    isWide = isWide || (number >> 57) != 0;
    number = number << 7 | (octets[i] & 0x7F);
    if ((octets[i] & 0x80) != 0) continue;
    octets = octets.subspan(i + 1);
    return isWide ? kWideTagNumber : number;
  }
  return std::nullopt;
}

}  // namespace

uint32_t ReadHeader(Octets octets, Element& element) {
  uint8_t constructed = 0;
  uint32_t cutNumber = 0;
  uint32_t indefinite = 0;
  const uint32_t status = tessel::Try(GetAsn1ObjectInfo, octets, &element.tagClass, &constructed, &cutNumber,
                                      &element.contentLength, &indefinite, &element.headerLength);
  if (status != TESSEL_OK) return status;
  element.tagNumber = TakeTagNumber(octets).value_or(cutNumber);
  element.constructed = constructed != 0;
  element.indefinite = indefinite != 0;
  if (element.indefinite) element.contentLength = 0;
  return TESSEL_OK;
}

bool Element::IsEndOfContents() const { return tagClass == TESSEL_CLASS_UNIVERSAL && tagNumber == 0; }

bool Walk::Next(Element& element) {
  if (break_) return false;
  if (position_ == Limit()) return FinishOctets();
  if (!EnterHeader(element)) return false;
  if (element.IsEndOfContents()) return CloseIndefinite(element);
  if (!CheckContent(element)) return false;
  Enter(element);
  return true;
}

// Levels of definite length are closed as soon as they are full, so one that is still open here waits for its
// end-of-contents octets.
bool Walk::FinishOctets() {
  if (levels_.empty()) return false;
  return Fail(Concat("the end-of-contents octets of the element at offset ", levels_.back().start, " are missing"));
}

bool Walk::EnterHeader(Element& element) {
  element = Element{};
  element.offset = position_;
  element.depth = Depth();
  const uint32_t status = ReadHeader(Remaining(), element);
  return status == TESSEL_OK || Fail(HeaderProblem(status));
}

bool Walk::CloseIndefinite(const Element& element) {
  const bool twoZeroOctets = element.headerLength == 2 && octets_[position_] == 0 && octets_[position_ + 1] == 0;
  if (!twoZeroOctets) return Fail("an element has the reserved universal tag number 0");
  if (levels_.empty() || !levels_.back().indefinite) {
    return Fail("end-of-contents octets stand where no element of indefinite length is open");
  }
  levels_.pop_back();
  position_ += element.headerLength;
  CloseFinishedLevels();
  return true;
}

bool Walk::CheckContent(const Element& element) {
  if (element.indefinite) return element.constructed || Fail("a primitive element has an indefinite length");
  const uint32_t room = Limit() - element.ContentOffset();
  if (element.contentLength <= room) return true;
  return Fail(Concat("the content of ", OctetCount(element.contentLength), " runs past the end of ", Enclosing(),
                     ", which has room for ", room));
}

void Walk::Enter(const Element& element) {
  position_ = element.ContentOffset();
  if (element.indefinite) {
    levels_.push_back({element.offset, Limit(), true});
  } else if (element.constructed) {
    levels_.push_back({element.offset, position_ + element.contentLength, false});
  } else {
    position_ += element.contentLength;
  }
  CloseFinishedLevels();
}

void Walk::CloseFinishedLevels() {
  while (!levels_.empty() && !levels_.back().indefinite && levels_.back().end == position_) levels_.pop_back();
}

bool Walk::Fail(std::string reason) {
  break_ = Fault{{}, position_, std::move(reason)};
  return false;
}

// What sets the limit: the innermost element whose length is known.
std::string Walk::Enclosing() const {
  for (size_t i = levels_.size(); i > 0; --i) {
    const Level& level = levels_[i - 1];
    if (!level.indefinite) return Concat("the element at offset ", level.start);
  }
  return "the input";
}

std::string Walk::HeaderProblem(uint32_t status) const {
  Octets rest = Remaining();
  if (!TakeTagNumber(rest)) return Concat("the tag number runs past the end of ", Enclosing());
  if (status == TESSEL_LENGTH_TOO_LARGE && !rest.empty()) {
    return Concat("the length takes ", rest.front() & 0x7F, " octets, at most 4 are supported");
  }
  return Concat("the length runs past the end of ", Enclosing());
}

std::string Fault::Text() const { return Concat(path, path.empty() ? "" : ", ", "offset ", offset, ": ", reason); }

std::optional<Fault> FindBreak(Octets octets) {
  Walk walk(octets);
  for (Element element; walk.Next(element);) continue;
  return walk.Break();
}

std::optional<Element> ReadElement(Octets octets) {
  Element element;
  if (octets.empty() || ReadHeader(octets, element) != TESSEL_OK) return std::nullopt;
  const bool fits = element.contentLength <= octets.size() - element.headerLength;
  if (element.indefinite || !fits) return std::nullopt;
  return element;
}

Octets ContentOf(const Element& element, Octets octets) {
  return octets.subspan(element.ContentOffset(), element.contentLength);
}

std::optional<Octets> ContentOfType(Octets octets, uint32_t tag) {
  const std::optional<Element> element = ReadElement(octets);
  if (!element || element->tagClass != TESSEL_CLASS_UNIVERSAL || element->tagNumber != tag) return std::nullopt;
  return ContentOf(*element, octets);
}

std::optional<Octets> TakeContentOfType(Octets& octets, uint32_t tag) {
  const std::optional<Octets> content = ContentOfType(octets, tag);
  if (content) octets = octets.subspan(static_cast<size_t>(content->data() - octets.data()) + content->size());
  return content;
}

}  // namespace tool
