#include "x509/name_text.h"

#include <algorithm>
#include <cstring>

#include "engine/buffer.h"
#include "engine/header.h"
#include "engine/nodes.h"
#include "values/oid.h"
#include "values/text.h"

namespace tessel {
namespace {

constexpr CountedOid kCommonName = Oid("2.5.4.3");

// Longer values and serial numbers are not read.
constexpr size_t kLargestValue = 1024;
constexpr size_t kLargestSerialNumber = 99;

const AttributeTypeAndValue* FindCommonName(const RelativeDistinguishedName* rdn) {
  for (uint32_t i = 0; rdn != nullptr && i < rdn->count; ++i) {
    const AttributeTypeAndValue* attribute = rdn->At(i);
    if (attribute == nullptr || attribute->type == nullptr) continue;
    if (std::ranges::equal(ContentOf(*attribute->type), kCommonName.Content())) return attribute;
  }
  return nullptr;
}

}  // namespace

Status NameText::Append(uint8_t character) {
  if (length_ + 1 == text_.size()) return Fail(TESSEL_BUFFER_TOO_SMALL);
  text_[length_++] = static_cast<char>(character);
  return Status();
}

Status NameText::AppendSerialNumber(Octets serial) {
  constexpr auto kIsCharacter = [](uint8_t octet) { return octet >= 32 && octet <= 122; };
  // DEVIATES: a serial number is shown when its octets are characters, and left out otherwise: programs compare texts
  // that they have shown.
  if (serial.size() > kLargestSerialNumber || !std::ranges::all_of(serial, kIsCharacter)) return Status();
  Status status;
  for (size_t i = 0; i < serial.size() && status.Ok(); ++i) status = Append(serial[i]);
  if (status.Ok()) status = Append(',');
  return status.Ok() ? Append(' ') : status;
}

Status NameText::AppendCommonNames(const X509Name* name) {
  for (uint32_t i = 0; name != nullptr && i < name->count; ++i) {
    const AttributeTypeAndValue* attribute = FindCommonName(name->At(i));
    if (attribute == nullptr || attribute->value == nullptr) continue;
    TRY(AppendValue(*attribute->value));
  }
  return Status();
}

Status NameText::AppendValue(const Asn1Any& value) {
  const Octets encoding = ContentOf(value);
  Header header{};
  TRY(ReadHeader(encoding, header));
  Octets content;
  TRY(ReadContent(encoding, header, content));
  if (content.size() > kLargestValue) return Fail(TESSEL_BUFFER_TOO_SMALL);
  Status status;
  if (header.tagNumber == TESSEL_KIND_UTF8_STRING) {
    for (uint8_t ansi = 0; status.Ok() && TakeAnsi(content, AnsiRepertoire::kLetters, ansi);) status = Append(ansi);
  } else if (header.tagNumber == TESSEL_KIND_BMP_STRING) {
    for (; status.Ok() && content.size() > 1; content = content.subspan(2)) {
      status = Append(AnsiOfUnit(static_cast<uint16_t>(content[0] << 8 | content[1])));
    }
  } else {
    // DEVIATES: another type, PrintableString too, becomes question marks: programs compare texts that they have shown.
    for (size_t i = 0; status.Ok() && i < content.size(); ++i) status = Append('?');
  }
  return status;
}

Status NameText::DeliverTo(char* buffer, uint32_t* length, Caller at) const {
  TRY(Offer(length_ + 1, buffer, length, at));
  if (buffer == nullptr) return Status();
  std::memcpy(buffer, text_.data(), length_);
  buffer[length_] = '\0';
  // DEVIATES: the NUL counts in the length that is asked for, but not in that of a text that was written: programs take
  // that for the text's.
  *length = length_;
  return Status();
}

}  // namespace tessel
