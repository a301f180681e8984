#include <cstdint>
#include <optional>

#include "engine/codec.h"
#include "engine/nodes.h"
#include "engine/tree_owner.h"
#include "values/time.h"

namespace tessel {
namespace {

// The alternatives of Time.
constexpr uint32_t kUtcTimeIndex = 0;
constexpr uint32_t kGeneralizedTimeIndex = 1;

constexpr uint32_t kFirstGeneralizedYear = 2050;

bool IsNull(const LibraryTime& time) { return IsLibraryTimeNull(&time) != 0; }
bool IsNull(const LibraryPreciseTime& time) { return IsLibraryPreciseTimeNull(&time) != 0; }

template <class Record>
Status Read(const Asn1Value* node, std::optional<Record> (*parse)(Octets), Record* time, Site at) {
  if (time == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  if (node == nullptr || ContentOf(*node).empty()) return Fail(TESSEL_MALFORMED);
  const std::optional<Record> fields = parse(ContentOf(*node));
  return fields ? SetFields(time, *fields) : Fail(TESSEL_INVALID_CONTENT);
}

template <class Node>
Status DecodeAndRead(const Item<Node>& item, const uint8_t* data, uint32_t size, LibraryTime* time,
                     Status (*read)(const Node&, LibraryTime*, Site), Site at = {}) {
  if (time == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  TreeOwner<Node> tree(item);
  if (Status status = Decode(item, data, size, tree.Out(), at); status.Failed()) return status;
  return read(*tree.Get(), time, at);
}

}  // namespace

Status ReadTime(const Time& node, LibraryTime* time, Site at) {
  const auto* value = static_cast<const Asn1Value*>(node.value);
  if (node.index == kUtcTimeIndex) return Read(value, ParseUtcTime, time, at);
  if (node.index == kGeneralizedTimeIndex) return Read(value, ParseGeneralizedTime, time, at);
  return Fail(TESSEL_INVALID_CONTENT);
}

Status ReadGeneralizedTime(const Asn1Value& node, LibraryTime* time, Site at) {
  return Read(&node, ParseGeneralizedTime, time, at);
}

Status ReadPreciseTime(const Asn1Value& node, LibraryPreciseTime* time, Site at) {
  return Read(&node, ParsePreciseTime, time, at);
}

Status ReadCrlIssuedTime(const Asn1Value& node, LibraryTime* time, Site at) {
  return Read(&node, ParseCrlIssuedTime, time, at);
}

template <class Record>
Status TimeNode::Hold(Asn1Kind kind, const Record* time, TimeText (*format)(const Record&), Site at) {
  if (time == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  if (IsNull(*time)) return Fail(TESSEL_INVALID_TIME, at);
  text_ = format(*time);
  if (!text_.Fits()) return Fail(TESSEL_INVALID_TIME, at);
  value_ = {static_cast<uint32_t>(kind), text_.Length(), text_.Data()};
  choice_.index = kind == TESSEL_KIND_UTC_TIME ? kUtcTimeIndex : kGeneralizedTimeIndex;
  choice_.value = &value_;
  return Status();
}

Status TimeNode::Set(const LibraryTime* time, Site at) {
  // DEVIATES: a year before 1950 becomes a UTCTime too, which reads as 2000 to 2049 (RFC 5280, 4.1.2.5.1): the rule
  // that callers know is the year 2050 alone.
  if (time != nullptr && time->year >= kFirstGeneralizedYear) return SetGeneralized(time, at);
  return Hold(TESSEL_KIND_UTC_TIME, time, FormatUtcTime, at);
}

Status TimeNode::SetGeneralized(const LibraryTime* time, Site at) {
  return Hold(TESSEL_KIND_GENERALIZED_TIME, time, FormatGeneralizedTime, at);
}

Status TimeNode::SetGeneralized(const LibraryPreciseTime* time, Site at) {
  return Hold(TESSEL_KIND_GENERALIZED_TIME, time, FormatPreciseTime, at);
}

Status GetTime(const Slot<Time>& slot, LibraryTime* time) {
  Time* node = nullptr;
  if (Status status = slot.Load(node); status.Failed()) return status;
  return ReadTime(*node, time, slot.At());
}

Status SetTime(const Slot<Time>& slot, const LibraryTime* time) {
  TimeNode node;
  if (Status status = node.Set(time, slot.At()); status.Failed()) return status;
  return Store(slot, kTime, static_cast<const Time*>(node.AsTime()));
}

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL DecodeTime(const uint8_t* data, uint32_t size, LibraryTime* time) {
  return DecodeAndRead(kTime, data, size, time, ReadTime);
}

uint32_t TESSEL_CALL DecodeAsn1GeneralizedTime(const uint8_t* data, uint32_t size, LibraryTime* time) {
  return DecodeAndRead(kGeneralizedTime, data, size, time, ReadGeneralizedTime);
}

uint32_t TESSEL_CALL EncodeTime(const LibraryTime* time, uint8_t* buffer, uint32_t* length) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  TimeNode node;
  if (Status status = node.Set(time); status.Failed()) return status;
  return Encode(kTime, node.AsTime(), buffer, length);
}

uint32_t TESSEL_CALL EncodeAsn1GeneralizedTime(const LibraryTime* time, uint8_t* buffer, uint32_t* length) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  TimeNode node;
  if (Status status = node.SetGeneralized(time); status.Failed()) return status;
  return Encode(kGeneralizedTime, node.AsValue(), buffer, length);
}
