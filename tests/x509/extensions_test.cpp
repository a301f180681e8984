#include <gtest/gtest.h>

#include <ctime>
#include <string>

#include "support/objects.h"
#include "support/octets.h"
#include "tessel/tessel.h"

namespace test {
namespace {

// A slot of the caller's own.
class OwnedSlot {
 public:
  OwnedSlot() = default;
  ~OwnedSlot() { FreeX509Extensions(slot_.list); }
  OwnedSlot(const OwnedSlot&) = delete;
  OwnedSlot& operator=(const OwnedSlot&) = delete;

  operator X509ExtensionsSlot*() { return &slot_; }

  uint32_t Add(const char* oid, const Bytes& value, uint32_t critical = 0) {
    return AddX509ExtensionsExtension(&slot_, Counted(oid).data(), critical, value.data(), SizeOf(value));
  }
  uint32_t Remove(const char* oid) { return RemoveX509ExtensionsExtension2(&slot_, Counted(oid).data()); }
  // The values, in their order.
  std::string Values() {
    std::string values;
    uint32_t count = 0;
    EXPECT_EQ(0U, GetX509ExtensionsExtensionsCount(&slot_, &count));
    for (uint32_t i = 0; i < count; ++i) {
      Bytes oid(16);
      Bytes value(16);
      uint32_t oidLength = 16;
      uint32_t length = 16;
      uint32_t critical = 0;
      EXPECT_EQ(0U, GetX509ExtensionsExtension(&slot_, i, oid.data(), &oidLength, &critical, value.data(), &length));
      value.resize(length);
      values += (values.empty() ? "" : " ") + ToHex(value) + (critical != 0 ? "!" : "");
    }
    return values;
  }

 private:
  X509ExtensionsSlot slot_{};
};

TEST(Extensions, AreAddedFoundAndRemoved) {
  OwnedSlot slot;
  uint32_t index = 77;
  EXPECT_EQ("", slot.Values()) << "no list is no extensions";
  EXPECT_EQ(TESSEL_NOT_FOUND, FindX509Extension(slot, Counted("2.5.29.15").data(), &index));
  EXPECT_EQ(TESSEL_ABSENT, RemoveX509ExtensionsExtension(slot, 0));
  EXPECT_EQ(0U, slot.Remove("2.5.29.15"));
  EXPECT_EQ(0U, slot.Add("2.5.29.14", {1}));
  EXPECT_EQ(0U, slot.Add("2.5.29.15", {2}, 5));
  EXPECT_EQ(0U, slot.Add("2.5.29.15", {3}));
  EXPECT_EQ("01 02! 03", slot.Values());
  EXPECT_EQ(0U, FindX509Extension(slot, Counted("2.5.29.15").data(), &index));
  EXPECT_EQ(1U, index);
  EXPECT_EQ(Bytes{2}, Fetch([&](auto... out) {
              return GetX509ExtensionsExtensionValue(slot, Counted("2.5.29.15").data(), out...);
            }));
  EXPECT_EQ(TESSEL_INVALID_ARGUMENT, RemoveX509ExtensionsExtension(slot, 3));
  EXPECT_EQ(0U, RemoveX509ExtensionsExtension(slot, 0));
  EXPECT_EQ("02! 03", slot.Values());
  EXPECT_EQ(0U, ClearX509Extensions(slot));
  EXPECT_EQ("", slot.Values());
  EXPECT_EQ(TESSEL_INVALID_ARGUMENT, RemoveX509ExtensionsExtension(slot, 0)) << "the list is still there";
  EXPECT_EQ(0U, RemoveX509Extensions(slot));
  EXPECT_EQ(TESSEL_ABSENT, RemoveX509ExtensionsExtension(slot, 0));
  EXPECT_EQ(0U, ClearX509Extensions(slot));
  EXPECT_EQ(0U, SetX509ExtensionsSorted(slot, 1));
}

// What follows a removed extension is passed over: as they are removed one by one, each removal followed by a step
// ahead.
TEST(Extensions, RemovalPassesOverWhatFollows) {
  for (const std::string runs : {"x", "xx", "xxx", "xxxx", "xaxx", "axxxxxa", "xxaxxxaxaax"}) {
    OwnedSlot slot;
    std::string left = runs;
    for (size_t i = 0; i < runs.size(); ++i) {
      EXPECT_EQ(0U, slot.Add(runs[i] == 'x' ? "2.5.29.15" : "2.5.29.14", {static_cast<uint8_t>(i)}));
      left[i] = static_cast<char>(i);
    }
    for (size_t i = 0; i < left.size(); ++i) {
      if (runs[static_cast<size_t>(left[i])] == 'x') left.erase(i, 1);
    }
    EXPECT_EQ(0U, slot.Remove("2.5.29.15"));
    std::string values = slot.Values();
    std::erase(values, ' ');
    EXPECT_EQ(FromHex(values), ToBytes(left)) << runs;
  }
}

// Removed one by one they would take hundreds of times as long as they take to be decoded.
TEST(Extensions, HundredsOfThousandsAreRemovedAtOnce) {
  constexpr uint32_t kCount = 400'000;
  const Bytes extension = FromHex("30 09 06 03 55 1D 0E 04 02 01 01");
  const auto size = static_cast<uint32_t>(kCount * extension.size());
  Bytes octets = FromHex("30 84 00 00 00 00");
  for (uint32_t octet = 0; octet < 4; ++octet) octets[5 - octet] = static_cast<uint8_t>(size >> 8 * octet);
  octets += Repeat(extension, kCount);
  X509ExtensionsSlot slot{};
  const std::clock_t start = std::clock();
  ASSERT_EQ(0U, DecodeX509Extensions(octets.data(), SizeOf(octets), &slot.list));
  const std::clock_t decoded = std::clock();
  EXPECT_EQ(0U, RemoveX509ExtensionsExtension2(&slot, Counted("2.5.29.14").data()));
  EXPECT_LE(std::clock() - decoded, 20 * (decoded - start + 1));
  uint32_t count = 0;
  EXPECT_EQ(0U, GetX509ExtensionsExtensionsCount(&slot, &count));
  EXPECT_EQ(kCount / 2, count);
  EXPECT_EQ(0U, RemoveX509Extensions(&slot));
}

TEST(Extensions, KeepTheirOrderAndLeaveFalseOut) {
  OwnedSlot slot;
  EXPECT_EQ(0U, slot.Add("2.5.29.15", {2}, 1));
  EXPECT_EQ(0U, slot.Add("2.5.29.14", {1, 1}));
  EXPECT_EQ(0U, SetX509ExtensionsSorted(slot, 1));
  X509ExtensionsSlot* const lent = slot;
  const Bytes octets = FetchFrom(static_cast<const X509Extensions*>(lent->list), EncodeX509Extensions);
  EXPECT_EQ("30 18 30 0B 06 03 55 1D 0F 01 01 FF 04 01 02 30 09 06 03 55 1D 0E 04 02 01 01", ToHex(octets));
  X509ExtensionsSlot decoded{};
  ASSERT_EQ(0U, DecodeX509Extensions(octets.data(), SizeOf(octets), &decoded.list));
  // An extension put into a decoded list, beside those that live in its block.
  EXPECT_EQ(0U, AddX509ExtensionsExtension(&decoded, Counted("2.5.29.19").data(), 1, octets.data(), 0));
  EXPECT_EQ(0U, RemoveX509ExtensionsExtension(&decoded, 0));
  EXPECT_EQ("30 17 30 09 06 03 55 1D 0E 04 02 01 01 30 0A 06 03 55 1D 13 01 01 FF 04 00",
            ToHex(FetchFrom(static_cast<const X509Extensions*>(decoded.list), EncodeX509Extensions)));
  EXPECT_EQ(0U, RemoveX509Extensions(&decoded));
}

TEST(Extensions, Alone) {
  const Bytes oid = Counted("2.5.29.15");
  const Bytes value = FromHex("03 02 07 80");
  OwnedExtension extension;
  ASSERT_EQ(0U, CreateX509Extension(extension.Out(), oid.data(), 0, value.data(), SizeOf(value)));
  EXPECT_EQ("30 0B 06 03 55 1D 0F 04 04 03 02 07 80", ToHex(FetchFrom<X509Extension>(extension, EncodeX509Extension)));
  EXPECT_EQ(0U, SetX509Extension(extension, Counted("2.5.29.19").data(), 1, value.data(), 0));
  const Bytes octets = FetchFrom<X509Extension>(extension, EncodeX509Extension);
  EXPECT_EQ("30 0A 06 03 55 1D 13 01 01 FF 04 00", ToHex(octets));
  OwnedExtension decoded;
  ASSERT_EQ(0U, DecodeX509Extension(octets.data(), SizeOf(octets), decoded.Out()));
  EXPECT_EQ(0U, SetX509Extension(decoded, oid.data(), 0, value.data(), SizeOf(value)));

  uint32_t critical = 7;
  uint8_t oidBuffer[4];
  uint8_t buffer[4];
  const auto get = [&](uint32_t oidCapacity, uint32_t capacity) {
    return GetX509Extension(decoded, oidBuffer, &oidCapacity, &critical, buffer, &capacity);
  };
  EXPECT_EQ(0U, get(4, 4));
  EXPECT_EQ(value, Bytes(buffer, buffer + 4));
  EXPECT_EQ(oid, Bytes(oidBuffer, oidBuffer + 4));
  EXPECT_EQ(0U, critical);
  EXPECT_EQ(TESSEL_BUFFER_TOO_SMALL, get(4, 3));
  EXPECT_EQ(TESSEL_BUFFER_TOO_SMALL, get(3, 4));

  uint32_t number = 4;
  ExpectNullsRefused(GetX509Extension, static_cast<const X509Extension*>(decoded), Maybe<uint8_t*>{buffer}, &number,
                     &number, Maybe<uint8_t*>{buffer}, &number);
  X509ExtensionsSlot slot{};
  ExpectNullsRefused(AddX509ExtensionsExtension, &slot, oid.data(), 0U, value.data(), 4U);
  EXPECT_EQ(nullptr, slot.list) << "no list is made in vain";
}

}  // namespace
}  // namespace test
