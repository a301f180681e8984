#include "values/oid.h"

#include <algorithm>

#include "engine/buffer.h"
#include "engine/codec.h"
#include "engine/header.h"
#include "engine/nodes.h"
#include "engine/primitives.h"

namespace tessel {
namespace {

constexpr OidRow kNameAttributeTypes[] = {
    {1, Oid("2.5.4.3")},
    {2, Oid("2.5.4.10")},
    {3, Oid("2.5.4.11")},
    {4, Oid("2.5.4.6")},
    {5, Oid("2.5.4.8")},
    {6, Oid("2.5.4.7")},
    {7, Oid("1.2.840.113549.1.9.1")},
    {8, Oid("2.5.4.4")},
    {9, Oid("2.5.4.42")},
    {10, Oid("2.5.4.12")},
    {11, Oid("0.9.2342.19200300.100.1.25")},
    {12, Oid("2.5.4.1")},
    {13, Oid("1.3.6.1.5.5.7.9.1")},
    {14, Oid("2.5.4.36")},
    {15, Oid("2.5.4.13")},
    {16, Oid("1.3.6.1.5.5.7.9.3")},
    {17, Oid("2.5.4.44")},
    {18, Oid("2.5.4.43")},
    {19, Oid("1.3.6.1.4.1.42.2.11.2.1")},
    {20, Oid("1.3.6.1.5.5.7.9.2")},
    {21, Oid("2.5.4.16")},
    {22, Oid("2.5.4.17")},
    {23, Oid("2.5.4.65")},
    {24, Oid("2.5.4.5")},
    {25, Oid("2.5.4.9")},
    {26, Oid("0.9.2342.19200300.100.1.1")},
    {27, Oid("2.5.4.33")},
    {28, Oid("2.5.4.32")},
    {29, Oid("2.5.4.45")},
    {30, Oid("1.2.643.100.3")},
    {31, Oid("1.2.643.3.131.1.1")},
    {32, Oid("1.2.643.100.1")},
};

constexpr OidRow kAlgorithms[] = {
    {1, Oid("1.2.840.113549.1.1.1")}, {2, Oid("1.2.840.113549.1.1.2")}, {3, Oid("1.2.840.113549.1.1.4")},
    {4, Oid("1.2.840.113549.1.1.5")}, {100, Oid("1.2.643.2.2.3")},      {101, Oid("1.2.643.2.2.4")},
    {102, Oid("1.2.643.2.2.19")},     {103, Oid("1.2.643.2.2.20")},     {1000, Oid("1.2.643.2.2.21")},
    {2000, Oid("1.2.643.2.2.9")},     {3000, Oid("1.2.643.7.1.1.1.1")}, {3001, Oid("1.2.643.7.1.1.1.2")},
    {3002, Oid("1.2.643.7.1.1.3.2")}, {3003, Oid("1.2.643.7.1.1.3.3")},
};

// A dotted text that is being written. An octet of content makes at most nine characters of text, and the first two
// arcs and the NUL fit into thirty.
class OidText {
 public:
  void Append(uint32_t arc) {
    char digits[10];
    size_t count = 0;
    do {
      digits[count++] = static_cast<char>('0' + arc % 10);
      arc /= 10;
    } while (arc != 0);
    if (length_ != 0) text_[length_++] = '.';
    while (count > 0) text_[length_++] = digits[--count];
  }
  [[nodiscard]] std::string_view View() const { return {text_.data(), length_}; }

 private:
  std::array<char, 9 * kMaximumOidContent + 30> text_;
  size_t length_ = 0;
};

// Calls `use` with each arc of a content. The first two arcs come as one number (X.690, 8.19.4).
template <class Use>
Status ForEachArc(Octets content, Use use) {
  uint32_t arc = 0;
  for (const uint8_t octet : content) {
    // DEVIATES: arcs wrap at 32 bits and may begin with 0x80 (X.690, 8.19.2), for programs compare texts that they have
    // stored.
    arc = arc << 7 | (octet & 0x7F);
    if ((octet & 0x80) != 0) continue;
    use(arc);
    arc = 0;
  }
  // DEVIATES: a last arc that does not end is left out as long as it is 0, for programs compare texts that they have
  // stored.
  return arc == 0 ? Status() : Fail(TESSEL_INVALID_ARGUMENT);
}

// Reads a component of a dotted text. False when it is 0 but not written "0", as a component without digits is.
bool ReadComponent(std::string_view component, uint32_t& arc) {
  std::string_view rest = component;
  while (!rest.empty() && (rest[0] == ' ' || (rest[0] >= '\t' && rest[0] <= '\r'))) rest.remove_prefix(1);
  const bool negative = !rest.empty() && rest[0] == '-';
  if (negative || (!rest.empty() && rest[0] == '+')) rest.remove_prefix(1);
  // DEVIATES: a component is read as C reads an int, with blanks, a sign, what follows the digits, and wrapping:
  // callers know it so.
  arc = 0;
  for (; !rest.empty() && rest[0] >= '0' && rest[0] <= '9'; rest.remove_prefix(1)) {
    arc = arc * 10 + static_cast<uint32_t>(rest[0] - '0');
  }
  if (negative) arc = 0U - arc;
  return arc != 0 || component == "0";
}

// A counted identifier that is being written. `full` tells that there was no room for an octet.
struct OidBuilder {
  std::array<uint8_t, 1 + kMaximumOidContent> counted{};
  bool full = false;

  void Append(uint32_t arc) {
    detail::AppendArc(arc, [this](uint8_t octet) {
      full = full || counted[0] == kMaximumOidContent;
      if (!full) counted[++counted[0]] = octet;
    });
  }
};

// Splits the text and appends its arcs, the first two as one number. False when the text is wrong or too long.
bool AppendArcs(std::string_view text, OidBuilder& oid) {
  uint32_t first = 0;
  for (size_t component = 0;; ++component) {
    const size_t end = std::min(text.find('.'), text.size());
    uint32_t arc = 0;
    if (!ReadComponent(text.substr(0, end), arc)) return false;
    // DEVIATES: the first two arcs are not held to their ranges (X.690, 8.19.4), and a second that is missing is 0:
    // callers know it so.
    if (component != 0) oid.Append(component == 1 ? first * 40 + arc : arc);
    first = arc;
    if (oid.full) return false;
    if (end == text.size()) {
      if (component == 0) oid.Append(first * 40);
      return true;
    }
    text.remove_prefix(end + 1);
  }
}

}  // namespace

Status DeliverOid(Octets content, uint8_t* buffer, uint32_t* length, Caller at) {
  if (content.size() > kMaximumOidContent) return Fail(TESSEL_MALFORMED, at);
  TRY(Offer(content.size() + 1, buffer, length, at));
  if (buffer == nullptr) return Status();
  buffer[0] = static_cast<uint8_t>(content.size());
  std::copy(content.begin(), content.end(), buffer + 1);
  return Status();
}

Status GetOid(const ReadSlot<Asn1Oid>& slot, uint8_t* buffer, uint32_t* length) {
  Asn1Oid* oid = nullptr;
  TRY(slot.Load(oid));
  return DeliverOid(ContentOf(*oid), buffer, length, slot.At());
}

Status SetOid(const Slot<Asn1Oid>& slot, const uint8_t* counted) {
  if (counted == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, slot.At());
  const Asn1Oid source = BorrowOid(counted);
  return Store(slot, kOid, &source);
}

Status FindId(OidTable table, Octets content, uint32_t& id, Caller at) {
  for (const OidRow& row : table) {
    if (!std::ranges::equal(row.oid.Content(), content)) continue;
    id = row.id;
    return Status();
  }
  return Fail(TESSEL_UNKNOWN_OID, at);
}

Status FindOid(OidTable table, uint32_t id, const uint8_t*& counted, Caller at) {
  for (const OidRow& row : table) {
    if (row.id != id) continue;
    counted = row.oid.Data();
    return Status();
  }
  return Fail(TESSEL_UNKNOWN_ID, at);
}

OidTable AlgorithmTable() { return kAlgorithms; }

namespace {

Status TellId(OidTable table, const uint8_t* counted, uint32_t* id, Caller at = {}) {
  if (counted == nullptr || id == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  return FindId(table, OidContent(counted), *id, at);
}

Status DeliverOidOf(OidTable table, uint32_t id, uint8_t* buffer, uint32_t* length, Caller at = {}) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  const uint8_t* counted = nullptr;
  TRY(FindOid(table, id, counted, at));
  return DeliverOid(OidContent(counted), buffer, length, at);
}

}  // namespace
}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL ConvertOidToString(const uint8_t* oid, char* text, uint32_t* length) {
  if (oid == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  OidText dotted;
  Status status = ForEachArc(OidContent(oid), [&dotted](uint32_t arc) {
    if (dotted.View().empty()) {
      // DEVIATES: the first number is split by 40 whatever it is, so that 2.999 is told as 26.39 (X.690, 8.19.4), for
      // programs compare texts that they have stored.
      dotted.Append(arc / 40);
      arc %= 40;
    }
    dotted.Append(arc);
  });
  if (status.Failed()) return status;
  // DEVIATES: the empty identifier has a text, which is that of another, so that a program that shows any identifier
  // can show it.
  return DeliverText(dotted.View().empty() ? "0.0" : dotted.View(), text, length);
}

uint32_t TESSEL_CALL ConvertStringToOid(const char* text, uint8_t* buffer, uint32_t* length) {
  if (text == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  OidBuilder oid;
  if (*text != '\0' && !AppendArcs(text, oid)) return Fail(TESSEL_INVALID_ARGUMENT);
  return DeliverOid(OidContent(oid.counted.data()), buffer, length);
}

uint32_t TESSEL_CALL DecodeAsn1Oid(const uint8_t* data, uint32_t size, uint8_t* buffer, uint32_t* length) {
  if (data == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const Octets input(data, size);
  Header header{};
  TRY(ReadHeader(input, header));
  if (header.indefinite) return Fail(TESSEL_INDEFINITE_LENGTH);
  // DEVIATES: neither the constructed bit nor the content is looked at (X.690, 8.19.1), so that what could be read so
  // far stays readable.
  if (header.tagClass != TESSEL_CLASS_UNIVERSAL || header.tagNumber != TESSEL_KIND_OBJECT_IDENTIFIER) {
    return Fail(TESSEL_MALFORMED);
  }
  Octets content;
  TRY(ReadContent(input, header, content));
  return DeliverOid(content, buffer, length);
}

uint32_t TESSEL_CALL EncodeAsn1Oid(const uint8_t* oid, uint8_t* buffer, uint32_t* length) {
  if (oid == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  return EncodeAsn1PrimitiveValue(TESSEL_KIND_OBJECT_IDENTIFIER, oid + 1, oid[0], buffer, length);
}

uint32_t TESSEL_CALL IsOidEquals(const uint8_t* first, const uint8_t* second) {
  if (first == nullptr || second == nullptr) return 0;
  return std::ranges::equal(OidContent(first), OidContent(second)) ? 1 : 0;
}

uint32_t TESSEL_CALL IsOidAndAsn1ObjectIdentifierEquals(const uint8_t* oid, const Asn1Oid* node) {
  if (oid == nullptr || node == nullptr) return 0;
  return std::ranges::equal(OidContent(oid), ContentOf(*node)) ? 1 : 0;
}

uint32_t TESSEL_CALL FindNameAttributeTypeIdByOid(const uint8_t* oid, uint32_t* id) {
  return TellId(kNameAttributeTypes, oid, id);
}

uint32_t TESSEL_CALL GetNameAttributeTypeOid(uint32_t id, uint8_t* buffer, uint32_t* length) {
  return DeliverOidOf(kNameAttributeTypes, id, buffer, length);
}

uint32_t TESSEL_CALL FindAlgIdByOid(const uint8_t* oid, uint32_t* id) { return TellId(kAlgorithms, oid, id); }

uint32_t TESSEL_CALL GetPublicKeyAlgorithmOid(uint32_t id, uint8_t* buffer, uint32_t* length) {
  return DeliverOidOf(kAlgorithms, id, buffer, length);
}
