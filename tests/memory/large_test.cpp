// Sizes near 2^32 where memory would be needed and is refused, inputs and texts of as many octets, which take hardly
// any memory because their pages are all the same, and objects of hundreds of megabytes.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "engine/types.h"
#include "memory/heap.h"
#include "support/objects.h"
#include "support/octets.h"
#include "support/samples.h"
#include "support/tree.h"

namespace test {
namespace {

constexpr uint64_t kFourGiB = uint64_t{1} << 32;
constexpr size_t kMegabyte = 1000000;
// Far below what is asked for here, far above what the tests need.
constexpr size_t kModest = 64 * kMegabyte;

// Addresses without memory behind them, or none when there are not so many.
class Addresses {
 public:
  explicit Addresses(uint64_t size) : size_(static_cast<size_t>(size)) {
    if (size > SIZE_MAX) return;
    void* pages = mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (pages != MAP_FAILED) pages_ = static_cast<uint8_t*>(pages);
  }
  ~Addresses() {
    if (pages_ != nullptr) munmap(pages_, size_);
  }
  Addresses(const Addresses&) = delete;
  Addresses& operator=(const Addresses&) = delete;

  [[nodiscard]] uint8_t* Data() const { return pages_; }

  // Shows the same part of a file again and again, in which all octets are `octet`. What is written to it later is seen
  // at its own place only.
  void FillWith(uint8_t octet) {
    const Bytes part(size_t{1} << 20, octet);
    const int file = memfd_create("octets", 0);
    ASSERT_EQ(static_cast<ssize_t>(part.size()), write(file, part.data(), part.size()));
    for (size_t at = 0; at < size_; at += part.size()) {
      const size_t length = std::min(part.size(), size_ - at);
      ASSERT_NE(MAP_FAILED, mmap(pages_ + at, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_FIXED, file, 0));
    }
    close(file);
  }

 private:
  size_t size_;
  uint8_t* pages_ = nullptr;
};

// An input of 2^32 - 1 octets: some at its beginning, and zeros.
class LargeInputs : public testing::Test {
 protected:
  void SetUp() override {
    if (addresses_.Data() == nullptr) GTEST_SKIP() << "there are not so many addresses";
  }
  const uint8_t* Begin(const char* hex) {
    const Bytes octets = FromHex(hex);
    std::fill_n(addresses_.Data(), 64, uint8_t{0});
    std::ranges::copy(octets, addresses_.Data());
    return addresses_.Data();
  }

 private:
  Addresses addresses_{kFourGiB};
};

TEST_F(LargeInputs, HaveHeadersThatAreTold) {
  const struct {
    const char* octets;
    uint32_t size;
    bool asksIndefinite;
    uint32_t status;
    uint32_t contentLength;
    uint32_t headerLength;
  } cases[] = {
      {"04 84 FF FF FF F9", UINT32_MAX, false, TESSEL_OK, 0xFFFFFFF9, 6},
      {"04 84 FF FF FF F9", UINT32_MAX - 1, false, TESSEL_MALFORMED, 7, 7},
      {"04 84 FF FF FF FA", UINT32_MAX, false, TESSEL_MALFORMED, 7, 7},
      {"04 84 FF FF FF FF", UINT32_MAX, true, TESSEL_OK, UINT32_MAX, 6},
      {"30 80", UINT32_MAX, true, TESSEL_OK, UINT32_MAX - 2, 2},
      {"3F 8F FF FF FF 7F 84 FF FF FF F4", UINT32_MAX, false, TESSEL_OK, 0xFFFFFFF4, 11},
      {"3F 8F FF FF FF 7F 84 FF FF FF F5", UINT32_MAX, false, TESSEL_MALFORMED, 7, 7},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.octets);
    uint8_t octet = 0;
    uint32_t number = 0;
    uint32_t contentLength = 7;
    uint32_t headerLength = 7;
    EXPECT_STATUS(c.status, GetAsn1ObjectInfo(Begin(c.octets), c.size, &octet, &octet, &number, &contentLength,
                                              c.asksIndefinite ? &number : nullptr, &headerLength));
    EXPECT_EQ(c.contentLength, contentLength);
    EXPECT_EQ(c.headerLength, headerLength);
  }
}

TEST_F(LargeInputs, EndWhereTheirEndOfContentsIs) {
  const struct {
    const char* octets;
    uint32_t status;
    uint32_t contentLength;
  } cases[] = {
      {"30 80 04 84 FF FF FF F5", TESSEL_OK, UINT32_MAX - 2},
      {"30 80 30 80 04 84 FF FF FF F1", TESSEL_OK, UINT32_MAX - 2},
      {"30 80 04 84 FF FF FF F6", TESSEL_MALFORMED, 7},
      {"30 80 04 84 FF FF FF F7", TESSEL_INDEFINITE_LENGTH, 7},
      {"30 80 04 84 FF FF FF F8", TESSEL_MALFORMED, 7},
      {"30 80 04 84 FF FF FF FF", TESSEL_MALFORMED, 7},
      {"30 80 04 84 7F FF FF FF", TESSEL_OK, 0x7FFFFFFF + 8U},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.octets);
    Asn1Any any{};
    any.length = UINT32_MAX;
    any.data = const_cast<uint8_t*>(Begin(c.octets));
    uint8_t octet = 0;
    uint32_t number = 0;
    uint32_t contentLength = 7;
    EXPECT_STATUS(c.status, GetAsn1AnyInfo(&any, &octet, &octet, &number, &contentLength, &number));
    EXPECT_EQ(c.contentLength, contentLength);
  }
}

TEST_F(LargeInputs, AreDecodedOrThereIsNoMemory) {
  const struct {
    const Asn1Item& item;
    const char* octets;
    uint32_t status;
    uint32_t consumed;
  } cases[] = {
      {kOctetString, "04 84 FF FF FF F9", TESSEL_OUT_OF_MEMORY, 7},
      {kOctetString, "04 84 FF FF FF FA", TESSEL_MALFORMED, 7},
      {kOctetString, "24 80 04 84 FF FF FF F5", TESSEL_OUT_OF_MEMORY, 7},
      {kOctetString, "24 80 04 84 FF FF FF F8", TESSEL_MALFORMED, 7},
      {kBitString, "03 84 FF FF FF F9", TESSEL_OUT_OF_MEMORY, 7},
      {kAny, "30 84 FF FF FF F9", TESSEL_OUT_OF_MEMORY, 7},
      {kAny, "30 80 04 84 FF FF FF F5", TESSEL_OUT_OF_MEMORY, 7},
      {kStrings, "30 84 FF FF FF F9 04 00", TESSEL_OUT_OF_MEMORY, 7},
      {kStrings, "30 80 04 84 FF FF FF F5", TESSEL_OUT_OF_MEMORY, 7},
      {kTestSequence, "30 80 02 01 05 04 84 FF FF FF F2", TESSEL_OUT_OF_MEMORY, 7},
      {kTestSequence, "30 80 02 01 05 04 84 FF FF FF FF", TESSEL_MALFORMED, 7},
      // The elements inside take no part in the length outside.
      {kExplicitInteger, "A0 84 FF FF FF F9 02 01 05", TESSEL_OK, 9},
      {kExplicitInteger, "A0 80 02 01 05 00 00", TESSEL_OK, 7},
      {kStrings, "30 80 04 00 00 00", TESSEL_OK, 6},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.octets);
    const HeapCount heap;
    {
      Tree tree(c.item);
      uint32_t consumed = 7;
      const LargestAllocation limit(kModest);
      EXPECT_STATUS(c.status, Asn1DecodeItem(Begin(c.octets), UINT32_MAX, &c.item, tree.Out(), &consumed));
      EXPECT_EQ(c.consumed, consumed);
      EXPECT_EQ(c.status != TESSEL_OK, tree.Root() == nullptr);
    }
    EXPECT_EQ(0, heap.Held());
  }
}

TEST_F(LargeInputs, HaveAResultAsLargeAsBase64) {
  uint32_t length = 0;
  EXPECT_OK(DecodeFromBase64(reinterpret_cast<const char*>(Begin("")), UINT32_MAX, nullptr, &length));
  EXPECT_EQ((uint64_t{UINT32_MAX} - uint64_t{UINT32_MAX} / 66 * 2) * 3 / 4, length);
}

// A text of so many characters, in the addresses; null when there are not so many.
const char* FillWithText(Addresses& addresses, uint64_t size) {
  if (addresses.Data() == nullptr) return nullptr;
  addresses.FillWith('a');
  addresses.Data()[size] = '\0';
  return reinterpret_cast<const char*>(addresses.Data());
}

TEST(LargeTexts, AreNotCutTo32Bits) {
  // Cut, it would have five characters.
  const uint64_t size = kFourGiB + 5;
  Addresses addresses(size + 1);
  const char* text = FillWithText(addresses, size);
  if (text == nullptr) GTEST_SKIP() << "there are not so many addresses";
  const Owned<Certificate> certificate = Make(CreateCertificate);
  uint32_t length = 0;
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, SetCertificateExtensionCrlDistributionPoints(certificate, text));
  EXPECT_STATUS(TESSEL_NOT_FOUND,
                GetCertificateExtensionValue(certificate, Counted("2.5.29.31").data(), nullptr, &length));
}

TEST(LargeTexts, GetTheLargestSuggestionThatThereIs) {
  // Twice as many and 20 are 2^32 + 2.
  const uint64_t size = kFourGiB / 2 - 9;
  Addresses addresses(size + 1);
  const char* text = FillWithText(addresses, size);
  if (text == nullptr) GTEST_SKIP() << "there are not so many addresses";
  char buffer[20];
  uint32_t length = sizeof buffer;
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, ConvertAnsiToUTF8(text, buffer, &length));
  EXPECT_EQ(UINT32_MAX, length);
}

// What is asked for here would be had from many systems, which do not count before it is used.
TEST(RefusedMemory, IsToldAndChangesNothing) {
  const LargestAllocation limit(kModest);
  const uint8_t octet = 5;
  const Asn1Value huge{TESSEL_KIND_OCTET_STRING, UINT32_MAX - 6, nullptr};
  uint8_t* block = nullptr;
  uint32_t length = 0;
  EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, Asn1Encode(&huge, &kOctetString, &block, &length));
  EXPECT_EQ(nullptr, block);
  EXPECT_EQ(nullptr, AllocAsn1Integer_s(&octet, UINT32_MAX));

  const Bytes octets = ReadSample("certificate.pem");
  const Owned<Certificate> certificate = Make(DecodeCertificate, octets);
  X509ExtensionsSlot* slot = Get(GetCertificateExtensions, certificate);
  X509Name* name = Get(GetCertificateSubject, certificate);
  const Bytes oid = Counted("1.2.3.4");
  const HeapCount heap;
  EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, SetCertificateSerialNumber(certificate, &octet, UINT32_MAX));
  EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, SetCertificateSignature(certificate, &octet, UINT32_MAX));
  EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, SetCertificatePublicKey(certificate, &octet, UINT32_MAX));
  EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, SetCertificateIssuerUniqueId(certificate, &octet, UINT32_MAX, 0));
  EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, AddX509NameEntry(name, &octet, UINT32_MAX - 6, 12, oid.data(), 0));
  EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, AddX509ExtensionsExtension(slot, oid.data(), 0, &octet, UINT32_MAX));
  EXPECT_EQ(0, heap.Held());
  EXPECT_EQ(octets, Fetch(EncodeCertificate, certificate));
}

// A list is public, so that its count can be anything. Items that the caller claims are not touched.
TEST(RefusedMemory, KeepsListsFromGrowing) {
  const LargestAllocation limit(kModest);
  const uint8_t octet = 5;
  const Owned<Certificate> certificate = Make(CreateCertificate);
  alignas(16) void* place[2] = {};
  // The largest capacity from which another follows, on 32 bits by the size of the array, and the one above.
  for (const uint32_t count : {715827749U, 715827750U, 2863311397U, 2863311398U, UINT32_MAX - 1, UINT32_MAX}) {
    SCOPED_TRACE(count);
    Asn1List list{count, place, count, nullptr, 1};
    auto* strings = reinterpret_cast<OctetStrings*>(&list);
    const HeapCount heap;
    EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, AddOctetStringsValue(strings, &octet, 1));
    EXPECT_STATUS(TESSEL_OUT_OF_MEMORY,
                  AddCertificateToCertificates(reinterpret_cast<::Certificates*>(&list), certificate));
    EXPECT_EQ(0, heap.Held());
    EXPECT_EQ(count, list.count);
    EXPECT_EQ(count, list.capacity);
    EXPECT_EQ(place, list.items);
  }
}

const Bytes kAlgorithm = FromHex("30 0A 06 08 2A 86 48 CE 3D 04 03 02");  // { 1.2.840.10045.4.3.2 }

Bytes Header(uint8_t identifier, size_t size) {
  Bytes octets = {identifier, 0x84};
  for (int shift = 24; shift >= 0; shift -= 8) octets.push_back(static_cast<uint8_t>(size >> shift));
  return octets;
}

// Decodes, looks at the object, encodes, copies and encodes again, with no more than `held` octets for an object.
template <class Object, class Look>
void ExpectRoundTrip(const Bytes& octets, int64_t held, uint32_t (*decode)(const uint8_t*, uint32_t, Object**),
                     uint32_t (*encode)(const Object*, uint8_t*, uint32_t*), uint32_t (*copy)(const Object*, Object**),
                     Look look) {
  Bytes encoded(octets.size());
  const auto expectEncoding = [&](const Object* object) {
    std::ranges::fill(encoded, uint8_t{0xEE});
    uint32_t length = SizeOf(encoded);
    EXPECT_OK(encode(object, encoded.data(), &length));
    EXPECT_TRUE(octets == encoded);
  };
  const HeapCount heap;
  {
    Owned<Object> decoded = Make(decode, octets);
    EXPECT_LE(heap.Held(), held);
    look(decoded);
    expectEncoding(decoded);
    const Owned<Object> copied = Make(copy, decoded);
    EXPECT_LE(heap.Held(), 2 * held);
    decoded.Reset();
    expectEncoding(copied);
  }
  EXPECT_EQ(0, heap.Held());
}

TEST(LargeObjects, HaveContentsOf300Megabytes) {
  constexpr size_t kContent = 300 * kMegabyte;
  const Bytes sample = ReadSample("certificate.pem");
  const Owned<Certificate> certificate = Make(DecodeCertificate, sample);
  const Bytes beside = Fetch(GetCertificateToBeSignedPart, certificate) + kAlgorithm;
  Bytes octets = Header(0x30, beside.size() + 6 + kContent);
  octets.reserve(octets.size() + beside.size() + 6 + kContent);
  octets += beside + Header(0x03, kContent);
  octets.resize(octets.size() + kContent);
  const auto look = [](const Certificate* large) {
    uint32_t length = 0;
    EXPECT_OK(GetCertificateSignature(large, nullptr, &length));
    EXPECT_EQ(kContent - 1, length);
  };
  ExpectRoundTrip(octets, int64_t{kContent} + kMegabyte, DecodeCertificate, EncodeCertificate, CreateCertificateCopy,
                  look);
}

TEST(LargeObjects, HaveMillionsOfElements) {
  constexpr size_t kEntries = 3000000;
  constexpr int64_t kLargestEntry = sizeof(void*) == 8 ? 120 : 90;
  // { 5, "261121120000Z" }
  const Bytes entry = FromHex("30 12 02 01 05 17 0D 32 36 31 31 32 31 31 32 30 30 30 30 5A");
  const Bytes before = kAlgorithm + FromHex("30 00 17 0D 32 36 31 31 32 31 31 32 30 30 30 30 5A");
  const Bytes after = kAlgorithm + FromHex("03 02 00 AA");
  const size_t listSize = kEntries * entry.size();
  Bytes octets = Header(0x30, 6 + before.size() + 6 + listSize + after.size());
  octets.reserve(octets.size() + 6 + before.size() + 6 + listSize + after.size());
  octets += Header(0x30, before.size() + 6 + listSize) + before + Header(0x30, listSize);
  for (size_t i = 0; i < kEntries; ++i) octets += entry;
  octets += after;
  const auto look = [&octets](const X509Crl* large) {
    uint32_t length = 0;
    EXPECT_OK(EncodeX509Crl(large, nullptr, &length));
    EXPECT_EQ(octets.size(), length);
  };
  ExpectRoundTrip(octets, kLargestEntry * kEntries, DecodeX509Crl, EncodeX509Crl, CreateX509CrlCopy, look);
}

}  // namespace
}  // namespace test
