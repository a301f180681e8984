// Times as members of trees: nodes read into records, and records made into nodes.
#pragma once

#include <cstdint>

#include "engine/slot.h"
#include "engine/status.h"
#include "tessel/asn1.hpp"
#include "tessel/nodes.h"
#include "tessel/time.h"
#include "tessel/time.hpp"
#include "values/time_text.h"

namespace tessel {

// Do what SetLibraryTime and SetLibraryPreciseTime do: fields before the first one that is out of range stay stored.
Status SetFields(LibraryTime* time, const LibraryTime& fields, Caller at = {});
Status SetFields(LibraryPreciseTime* time, const LibraryPreciseTime& fields, Caller at = {});

// Read a node into a record, by SetFields. A null handle is TESSEL_INVALID_ARGUMENT, no content TESSEL_MALFORMED,
// another alternative or a text of another form TESSEL_INVALID_CONTENT.
Status ReadTime(const Time& node, LibraryTime* time, Caller at = {});
Status ReadGeneralizedTime(const Asn1Value& node, LibraryTime* time, Caller at = {});
Status ReadPreciseTime(const Asn1Value& node, LibraryPreciseTime* time, Caller at = {});
// For the crlIssuedTime of a CrlValidatedId: a UTCTime of 13 octets, as every valid one is, is TESSEL_INVALID_CONTENT.
Status ReadCrlIssuedTime(const Asn1Value& node, LibraryTime* time, Caller at = {});

// A node that is made of a record, to be encoded or copied. It lives in the scope of this object and is no part of a
// tree.
class TimeNode {
 public:
  TimeNode() = default;
  TimeNode(const TimeNode&) = delete;
  TimeNode& operator=(const TimeNode&) = delete;

  // Set makes a UTCTime when the year is below 2050, otherwise a GeneralizedTime. A null handle is
  // TESSEL_INVALID_ARGUMENT; a null time, or a field too large for its place in the text, TESSEL_INVALID_TIME.
  Status Set(const LibraryTime* time, Caller at = {});
  Status SetGeneralized(const LibraryTime* time, Caller at = {});
  Status SetGeneralized(const LibraryPreciseTime* time, Caller at = {});

  [[nodiscard]] Time* AsTime() { return &choice_; }
  // The UTCTime or GeneralizedTime itself.
  [[nodiscard]] Asn1Value* AsValue() { return &value_; }

 private:
  template <class Record>
  Status Hold(Asn1Kind kind, const Record* time, TimeText (*format)(const Record&), Caller at);

  TimeText text_;
  Asn1Value value_{};
  Time choice_{};
};

// Members. Setting stores a new node; the statuses are those of TimeNode.
Status GetTime(const ReadSlot<Time>& slot, LibraryTime* time);
Status SetTime(const Slot<Time>& slot, const LibraryTime* time);

}  // namespace tessel
