#include <cstdint>
#include <optional>

#include "engine/codec.h"
#include "engine/nodes.h"
#include "engine/tree_owner.h"
#include "values/time.h"

namespace tessel {
namespace {

constexpr uint32_t kFirstGeneralizedYear = 2050;

bool IsNull(const LibraryTime& time) { return IsLibraryTimeNull(&time) != 0; }
bool IsNull(const LibraryPreciseTime& time) { return IsLibraryPreciseTimeNull(&time) != 0; }

template <class Record>
Status Read(const Asn1Value* node, std::optional<Record> (*parse)(Octets), Record* time, Caller at) {
  if (time == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  if (node == nullptr || ContentOf(*node).empty()) return Fail(TESSEL_MALFORMED, at);
  const std::optional<Record> fields = parse(ContentOf(*node));
  return fields ? SetFields(time, *fields, at) : Fail(TESSEL_INVALID_CONTENT, at);
}

template <class Node>
Status DecodeAndRead(const Type<Node>& type, const uint8_t* data, uint32_t size, LibraryTime* time,
                     Status (*read)(const Node&, LibraryTime*, Caller), Caller at = {}) {
  if (time == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  TreeOwner<Node> tree(type);
  TRY(Decode(type, data, size, tree.Out(), at));
  return read(*tree.Get(), time, at);
}

}  // namespace

Status ReadTime(const Time& node, LibraryTime* time, Caller at) {
  const auto* value = static_cast<const Asn1Value*>(node.value);
  if (node.index == Time::utcTime) return Read(value, ParseUtcTime, time, at);
  if (node.index == Time::generalTime) return Read(value, ParseGeneralizedTime, time, at);
  return Fail(TESSEL_INVALID_CONTENT, at);
}

Status ReadGeneralizedTime(const Asn1Value& node, LibraryTime* time, Caller at) {
  return Read(&node, ParseGeneralizedTime, time, at);
}

Status ReadPreciseTime(const Asn1Value& node, LibraryPreciseTime* time, Caller at) {
  return Read(&node, ParsePreciseTime, time, at);
}

Status ReadCrlIssuedTime(const Asn1Value& node, LibraryTime* time, Caller at) {
  return Read(&node, ParseCrlIssuedTime, time, at);
}

template <class Record>
Status TimeNode::Hold(Asn1Kind kind, const Record* time, TimeText (*format)(const Record&), Caller at) {
  if (time == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  if (IsNull(*time)) return Fail(TESSEL_INVALID_TIME, at);
  text_ = format(*time);
  if (!text_.Fits()) return Fail(TESSEL_INVALID_TIME, at);
  value_ = {static_cast<uint32_t>(kind), text_.Length(), text_.Data()};
  choice_.index = kind == TESSEL_KIND_UTC_TIME ? Time::utcTime : Time::generalTime;
  choice_.value = &value_;
  return Status();
}

Status TimeNode::Set(const LibraryTime* time, Caller at) {
  // DEVIATES: a year before 1950 becomes a UTCTime too, which reads as 2000 to 2049 (RFC 5280, 4.1.2.5.1): the rule
  // that callers know is the year 2050 alone.
  if (time != nullptr && time->year >= kFirstGeneralizedYear) return SetGeneralized(time, at);
  return Hold(TESSEL_KIND_UTC_TIME, time, FormatUtcTime, at);
}

Status TimeNode::SetGeneralized(const LibraryTime* time, Caller at) {
  return Hold(TESSEL_KIND_GENERALIZED_TIME, time, FormatGeneralizedTime, at);
}

Status TimeNode::SetGeneralized(const LibraryPreciseTime* time, Caller at) {
  return Hold(TESSEL_KIND_GENERALIZED_TIME, time, FormatPreciseTime, at);
}

Status GetTime(const ReadSlot<Time>& slot, LibraryTime* time) {
  Time* node = nullptr;
  TRY(slot.Load(node));
  return ReadTime(*node, time, slot.At());
}

Status SetTime(const Slot<Time>& slot, const LibraryTime* time) {
  TimeNode node;
  TRY(node.Set(time, slot.At()));
  return Store(slot, kTime, static_cast<const Time*>(node.AsTime()));
}

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL DecodeTime(const uint8_t* data, uint32_t size, LibraryTime* time) {
  return DecodeAndRead<Time>(kTime, data, size, time, ReadTime);
}

uint32_t TESSEL_CALL DecodeAsn1GeneralizedTime(const uint8_t* data, uint32_t size, LibraryTime* time) {
  return DecodeAndRead<Asn1Value>(kGeneralizedTime, data, size, time, ReadGeneralizedTime);
}

uint32_t TESSEL_CALL EncodeTime(const LibraryTime* time, uint8_t* buffer, uint32_t* length) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  TimeNode node;
  TRY(node.Set(time));
  return Encode(kTime, node.AsTime(), buffer, length);
}

uint32_t TESSEL_CALL EncodeAsn1GeneralizedTime(const LibraryTime* time, uint8_t* buffer, uint32_t* length) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  TimeNode node;
  TRY(node.SetGeneralized(time));
  return Encode(kGeneralizedTime, node.AsValue(), buffer, length);
}
