// Names as text for people, in Windows-1251.
#pragma once

#include <array>
#include <cstdint>

#include "engine/memory.h"
#include "engine/status.h"
#include "tessel/nodes.h"
#include "x509/names.h"

namespace tessel {

// A text of limited length that is being written. TESSEL_BUFFER_TOO_SMALL: it would be longer.
class NameText {
 public:
  // Appends the serial number and ", " when all its octets are characters; otherwise nothing.
  Status AppendSerialNumber(Octets serial);
  // Appends the first common name of each RDN. A null name has none.
  Status AppendCommonNames(const X509Name* name);

  // Delivers the text with a NUL, which counts in the length that is needed, but not in that of the text written.
  Status DeliverTo(char* buffer, uint32_t* length, Caller at = {}) const;

 private:
  Status Append(uint8_t character);
  Status AppendValue(const Asn1Any& value);

  // Room for the NUL included.
  std::array<char, 1024> text_;
  uint32_t length_ = 0;
};

}  // namespace tessel
