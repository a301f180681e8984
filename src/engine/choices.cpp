#include "engine/choices.h"

#include <utility>

#include "engine/encoder.h"
#include "engine/header.h"
#include "engine/lifecycle.h"
#include "engine/nodes.h"
#include "tessel/asn1.hpp"
#include "tessel/primitives.h"

namespace tessel {

Status ClearChoice(const Asn1Item& item, Asn1Choice& choice) {
  if (choice.value == nullptr) return Status();
  if (choice.index >= item.memberCount) return Fail(TESSEL_INVALID_ARGUMENT);
  NoteChange();
  FreeTree(*item.members[choice.index], std::exchange(choice.value, nullptr));
  return Status();
}

Status SetChoice(const Asn1Item& item, Asn1Choice& choice, uint32_t index, void* value) {
  TRY(ClearChoice(item, choice));
  NoteChange();
  choice = {index, Taken(value)};
  return Status();
}

Status SetOpenValue(Asn1Any& any, ElementTag tag, uint32_t storedTag, Octets content) {
  // An OCTET STRING under the wanted tag encodes to just this element.
  const Asn1Item element{tag.tagClass | uint32_t{tag.constructed} << 8,
                         TESSEL_KIND_OCTET_STRING,
                         static_cast<int32_t>(tag.number),
                         0,
                         nullptr,
                         0,
                         nullptr};
  const Asn1Value value{tag.number, static_cast<uint32_t>(content.size()), const_cast<uint8_t*>(content.data())};
  uint32_t length = 0;
  TRY(MeasureTree(element, &value, length));
  Scratch<uint8_t> encoding(static_cast<uint8_t*>(AllocateOctets(length)));
  if (encoding == nullptr) return Fail(TESSEL_OUT_OF_MEMORY);
  TRY(WriteTree(element, &value, encoding.get(), length));
  NoteChange();
  ReleaseOctets(any.data);
  any.tag = storedTag;
  any.length = length;
  any.data = encoding.release();
  return Status();
}

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL GetAsn1ChoiceUnderlyingType(void** node, const Asn1Item** descriptor) {
  if (node == nullptr || descriptor == nullptr || *node == nullptr || *descriptor == nullptr) {
    return Fail(TESSEL_INVALID_ARGUMENT);
  }
  if ((*descriptor)->kind != TESSEL_KIND_CHOICE) return Fail(TESSEL_INVALID_ARGUMENT);
  const auto& choice = *static_cast<const Asn1Choice*>(*node);
  if (choice.index >= (*descriptor)->memberCount) return Fail(TESSEL_WRONG_ALTERNATIVE);
  if (!IsConsistent(**descriptor)) return Fail(TESSEL_INCONSISTENT_DESCRIPTOR);
  *descriptor = (*descriptor)->members[choice.index];
  *node = choice.value;
  return Status();
}

uint32_t TESSEL_CALL GetAsn1AnyInfo(const Asn1Any* any, uint8_t* tagClass, uint8_t* constructed, uint32_t* tagNumber,
                                    uint32_t* contentLength, uint32_t* headerLength) {
  if (any == nullptr || tagClass == nullptr || constructed == nullptr || tagNumber == nullptr ||
      contentLength == nullptr || headerLength == nullptr) {
    return Fail(TESSEL_INVALID_ARGUMENT);
  }
  const Octets encoding = ContentOf(*any);
  Header header{};
  TRY(ReadHeader(encoding, header));
  if (header.indefinite) {
    TRY(ScanIndefiniteContent(encoding.subspan(header.headerLength), header.contentLength));
  }
  *tagClass = header.tagClass;
  *constructed = header.constructed;
  *tagNumber = header.tagNumber;
  *contentLength = header.contentLength;
  *headerLength = header.headerLength;
  return Status();
}

uint32_t TESSEL_CALL GetAsn1AnyValue(const Asn1Any* any, uint8_t* buffer, uint32_t* length) {
  return GetAsn1Value(any, buffer, length);
}
