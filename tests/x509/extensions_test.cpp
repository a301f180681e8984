#include <gtest/gtest.h>

#include <ctime>
#include <string>

#include "support/objects.h"
#include "support/octets.h"
#include "tessel/tessel.h"

namespace test {
namespace {

constexpr ObjectIdentifier kSubjectKeyIdentifier("2.5.29.14");
constexpr ObjectIdentifier kKeyUsage("2.5.29.15");
constexpr ObjectIdentifier kBasicConstraints("2.5.29.19");

// A slot of the caller's own.
class Slot {
 public:
  Slot() = default;
  ~Slot() { FreeX509Extensions(slot_.list); }
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;

  X509ExtensionsSlot* Get() { return &slot_; }
  operator X509ExtensionsSlot*() { return &slot_; }
  X509ExtensionsSlot* operator->() { return &slot_; }

  uint32_t Add(const ObjectIdentifier& oid, const Bytes& value, uint32_t critical = 0) {
    return Try(AddX509ExtensionsExtension, &slot_, oid, critical, value);
  }
  uint32_t Remove(const ObjectIdentifier& oid) { return Try(RemoveX509ExtensionsExtension2, &slot_, oid); }
  // The values, in their order.
  std::string Values() {
    std::string values;
    const uint32_t count = tessel::Get(GetX509ExtensionsExtensionsCount, &slot_);
    for (uint32_t i = 0; i < count; ++i) {
      ObjectIdentifier oid;
      Bytes value;
      uint32_t critical = 0;
      Call(GetX509ExtensionsExtension, &slot_, i, Into(oid), &critical, Into(value));
      values += (values.empty() ? "" : " ") + ToHex(value) + (critical != 0 ? "!" : "");
    }
    return values;
  }

 private:
  X509ExtensionsSlot slot_{};
};

TEST(Extensions, AreAddedFoundAndRemoved) {
  Slot slot;
  uint32_t index = 77;
  EXPECT_EQ("", slot.Values()) << "no list is no extensions";
  EXPECT_STATUS(TESSEL_NOT_FOUND, Try(FindX509Extension, slot.Get(), kKeyUsage, &index));
  EXPECT_STATUS(TESSEL_ABSENT, RemoveX509ExtensionsExtension(slot, 0));
  EXPECT_OK(slot.Remove(kKeyUsage));
  EXPECT_OK(slot.Add(kSubjectKeyIdentifier, {1}));
  EXPECT_OK(slot.Add(kKeyUsage, {2}, 5));
  EXPECT_OK(slot.Add(kKeyUsage, {3}));
  EXPECT_EQ("01 02! 03", slot.Values());
  EXPECT_OK(Try(FindX509Extension, slot.Get(), kKeyUsage, &index));
  EXPECT_EQ(1U, index);
  EXPECT_EQ(Bytes{2}, FetchChecked(GetX509ExtensionsExtensionValue, slot.Get(), kKeyUsage));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, RemoveX509ExtensionsExtension(slot, 3));
  EXPECT_OK(RemoveX509ExtensionsExtension(slot, 0));
  EXPECT_EQ("02! 03", slot.Values());
  EXPECT_OK(ClearX509Extensions(slot));
  EXPECT_EQ("", slot.Values());
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, RemoveX509ExtensionsExtension(slot, 0)) << "the list is still there";
  EXPECT_OK(RemoveX509Extensions(slot));
  EXPECT_STATUS(TESSEL_ABSENT, RemoveX509ExtensionsExtension(slot, 0));
  EXPECT_OK(ClearX509Extensions(slot));
  EXPECT_OK(SetX509ExtensionsSorted(slot, 1));
}

// What follows a removed extension is passed over: as they are removed one by one, each removal followed by a step
// ahead.
TEST(Extensions, RemovalPassesOverWhatFollows) {
  for (const std::string runs : {"x", "xx", "xxx", "xxxx", "xaxx", "axxxxxa", "xxaxxxaxaax"}) {
    Slot slot;
    std::string left = runs;
    for (size_t i = 0; i < runs.size(); ++i) {
      EXPECT_OK(slot.Add(runs[i] == 'x' ? kKeyUsage : kSubjectKeyIdentifier, {static_cast<uint8_t>(i)}));
      left[i] = static_cast<char>(i);
    }
    for (size_t i = 0; i < left.size(); ++i) {
      if (runs[static_cast<size_t>(left[i])] == 'x') left.erase(i, 1);
    }
    EXPECT_OK(slot.Remove(kKeyUsage));
    std::string values = slot.Values();
    std::erase(values, ' ');
    EXPECT_EQ(FromHex(values), ToBytes(left)) << runs;
  }
}

// Removed one by one they would take hundreds of times as long as they take to be decoded.
TEST(Extensions, HundredsOfThousandsAreRemovedAtOnce) {
  constexpr uint32_t kCount = 400'000;
  const Bytes extension = FromHex("30 09 06 03 55 1D 0E 04 02 01 01");  // { subjectKeyIdentifier, '0101'H }
  const Bytes octets = Der(0x30, Repeat(extension, kCount));
  Slot slot;
  const std::clock_t start = std::clock();
  Call(DecodeX509Extensions, octets, &slot->list);
  const std::clock_t decoded = std::clock();
  EXPECT_OK(slot.Remove(kSubjectKeyIdentifier));
  EXPECT_LE(std::clock() - decoded, 20 * (decoded - start + 1));
  EXPECT_EQ(kCount / 2, Get(GetX509ExtensionsExtensionsCount, slot.Get()));
}

TEST(Extensions, KeepTheirOrderAndLeaveFalseOut) {
  Slot slot;
  EXPECT_OK(slot.Add(kKeyUsage, {2}, 1));
  EXPECT_OK(slot.Add(kSubjectKeyIdentifier, {1, 1}));
  EXPECT_OK(SetX509ExtensionsSorted(slot, 1));
  const Bytes octets = FetchChecked(EncodeX509Extensions, slot->list);
  // { { keyUsage, TRUE, '02'H }, { subjectKeyIdentifier, '0101'H } }
  EXPECT_EQ("30 18 30 0B 06 03 55 1D 0F 01 01 FF 04 01 02 30 09 06 03 55 1D 0E 04 02 01 01", ToHex(octets));
  Slot decoded;
  Call(DecodeX509Extensions, octets, &decoded->list);
  // An extension put into a decoded list, beside those that live in its block.
  EXPECT_OK(decoded.Add(kBasicConstraints, {}, 1));
  EXPECT_OK(RemoveX509ExtensionsExtension(decoded, 0));
  // { { subjectKeyIdentifier, '0101'H }, { basicConstraints, TRUE, ''H } }
  EXPECT_EQ("30 17 30 09 06 03 55 1D 0E 04 02 01 01 30 0A 06 03 55 1D 13 01 01 FF 04 00",
            ToHex(FetchChecked(EncodeX509Extensions, decoded->list)));
}

TEST(Extensions, AloneAreSetReadAndEncoded) {
  const Bytes oid = Counted("2.5.29.15");
  const Bytes value = FromHex("03 02 07 80");
  const Owned<X509Extension> extension = Make(CreateX509Extension, kKeyUsage, 0, value);
  // { keyUsage, '03020780'H }, and then { basicConstraints, TRUE, ''H }
  EXPECT_EQ("30 0B 06 03 55 1D 0F 04 04 03 02 07 80", ToHex(FetchChecked(EncodeX509Extension, extension)));
  EXPECT_OK(Try(SetX509Extension, extension, kBasicConstraints, 1, Bytes()));
  const Bytes octets = FetchChecked(EncodeX509Extension, extension);
  EXPECT_EQ("30 0A 06 03 55 1D 13 01 01 FF 04 00", ToHex(octets));
  const Owned<X509Extension> decoded = Make(DecodeX509Extension, octets);
  EXPECT_OK(Try(SetX509Extension, decoded, kKeyUsage, 0, value));

  uint32_t critical = 7;
  uint8_t oidBuffer[4];
  uint8_t buffer[4];
  const auto get = [&](uint32_t oidCapacity, uint32_t capacity) {
    return GetX509Extension(decoded, oidBuffer, &oidCapacity, &critical, buffer, &capacity);
  };
  EXPECT_OK(get(4, 4));
  EXPECT_EQ(value, Bytes(buffer, buffer + 4));
  EXPECT_EQ(oid, Bytes(oidBuffer, oidBuffer + 4));
  EXPECT_EQ(0U, critical);
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, get(4, 3));
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, get(3, 4));

  uint32_t number = 4;
  ExpectNullsRefused(GetX509Extension, decoded.Get(), Maybe<uint8_t*>{buffer}, &number, &number,
                     Maybe<uint8_t*>{buffer}, &number);
  X509ExtensionsSlot slot{};
  ExpectNullsRefused(AddX509ExtensionsExtension, &slot, oid.data(), 0U, value.data(), 4U);
  EXPECT_EQ(nullptr, slot.list) << "no list is made in vain";
}

}  // namespace
}  // namespace test
