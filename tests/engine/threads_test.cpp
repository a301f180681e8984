// Many threads at once: each with objects of its own, or handing one to another.
#include <gtest/gtest.h>

#include <atomic>
#include <deque>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/objects.h"
#include "support/octets.h"
#include "tessel/tessel.h"

namespace test {
namespace {

constexpr uint32_t kThreads = 8;
constexpr uint32_t kRounds = 200;

// Calls round(thread) many times in each of many threads, which begin together.
void OnThreads(const std::function<void(uint32_t)>& round) {
  std::atomic<bool> begins = false;
  std::vector<std::thread> threads;
  for (uint32_t thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&round, &begins, thread] {
      while (!begins) std::this_thread::yield();
      try {
        for (uint32_t i = 0; i < kRounds; ++i) round(thread);
      } catch (const tessel::Error& error) {
        ADD_FAILURE() << error.what();
      }
    });
  }
  begins = true;
  for (std::thread& thread : threads) thread.join();
}

// The serial number is 5, the issuer CN=one, the subject empty; valid in 2026; key and signature are no real ones.
const Bytes& Original() {
  static const Bytes octets = FromHex(
      "30 5E 30 48 02 01 05 30 05 06 03 2A 03 04 30 0E 31 0C 30 0A 06 03 55 04 03 0C 03 6F 6E 65 30 1E 17 0D 32 36 30"
      "31 30 31 30 30 30 30 30 30 5A 17 0D 32 37 30 31 30 31 30 30 30 30 30 30 5A 30 00 30 0A 30 05 06 03 2A 03 04 03"
      "01 00 30 05 06 03 2A 03 04 03 0B 00 01 02 03 04 05 06 07 08 09 0A");
  return octets;
}

Owned<Certificate> DecodeOriginal() { return Make(DecodeCertificate, Original()); }

// Changes the serial number, and tells the new encoding.
Bytes Change(Certificate* certificate, uint8_t serial) {
  Call(SetCertificateSerialNumber, certificate, Bytes{serial, 0x55});
  Bytes changed = Original();
  changed[1]++;
  changed[3]++;
  changed[5]++;
  changed[6] = serial;
  changed.insert(changed.begin() + 7, 0x55);
  return changed;
}

void UseCertificate(uint32_t thread) {
  const Owned<Certificate> certificate = DecodeOriginal();
  const Owned<Certificate> copy = Make(CreateCertificateCopy, certificate);
  const Bytes changed = Change(copy, static_cast<uint8_t>(thread + 1));
  EXPECT_EQ(changed, Fetch(EncodeCertificate, copy));
  EXPECT_EQ(Original(), Fetch(EncodeCertificate, certificate));
}

void UseCrl() {
  // Issued by CN=one; revokes the serial number 5 with the reason keyCompromise.
  static const Bytes octets = FromHex(
      "30 57 30 4A 30 05 06 03 2A 03 04 30 0E 31 0C 30 0A 06 03 55 04 03 0C 03 6F 6E 65 17 0D 32 36 30 31 30 31 "
      "30 30 30 30 30 30 5A 30 22 30 20 02 01 05 17 0D 32 36 30 31 30 31 30 30 30 30 30 30 5A 30 0C 30 0A 06 03 "
      "55 1D 15 04 03 0A 01 01 30 05 06 03 2A 03 04 03 02 00 01");
  EXPECT_EQ(octets, Fetch(EncodeX509Crl, Make(DecodeX509Crl, octets)));
}

// Threads may see each other's February, but each sees one of the two.
void UseTime() {
  const Owned<LibraryTime> leap = TimeOf(2024, 2, 28);
  Call(AddDaysToLibTime, leap, 1);
  EXPECT_EQ(29U, leap->day);
  const Owned<LibraryTime> common = TimeOf(2023, 2, 28);
  Call(AddDaysToLibTime, common, 1);
  EXPECT_EQ(common->month == 2 ? 29U : 1U, common->day);
}

void UseTexts(uint32_t thread) {
  const Bytes octets = Repeat({static_cast<uint8_t>(thread), 0xFE}, 100);
  EXPECT_EQ(octets, Fetch(DecodePem, Fetch(EncodePem, octets, "TEST")));
  Bytes digest(20);
  Call(sha1, Bytes(), digest.data());
  EXPECT_EQ("DA 39 A3 EE", ToHex(digest).substr(0, 11));
}

void UseName(uint32_t thread) {
  const Bytes oid = Counted("2.5.4." + std::to_string(thread));
  const Owned<X509Name> name = Make(CreateX509Name);
  Call(AddX509NameEntry, name, oid, TESSEL_KIND_UTF8_STRING, oid.data(), 1);
  EXPECT_OK(Try(CompareX509Names, name, Make(CopyX509Name, name)));
}

TEST(Threads, WithObjectsOfTheirOwnDoNotDisturbEachOther) {
  OnThreads([](uint32_t thread) {
    UseCertificate(thread);
    UseCrl();
    UseTime();
    UseTexts(thread);
    UseName(thread);
  });
}

TEST(Threads, FindTheModuleOfOneFailureAndTheLineOfAnother) {
  const std::function<void()> failures[] = {
      [] { static_cast<void>(CheckAsn1Boolean(nullptr)); },
      [] { static_cast<void>(DecodePem("", 0, nullptr, nullptr)); },
      [] { static_cast<void>(CreateX509Extension(nullptr, nullptr, 0, nullptr, 0)); },
      [] { static_cast<void>(AddDaysToLibTime(nullptr, 1)); },
  };
  std::set<std::string> modules;
  std::set<uint32_t> lines;
  for (const auto& fail : failures) {
    fail();
    uint32_t line = 0;
    modules.insert(GetLastFileErrorAsn(&line));
    lines.insert(line);
  }
  ASSERT_EQ(std::size(failures), modules.size());
  OnThreads([&](uint32_t thread) {
    failures[thread % std::size(failures)]();
    uint32_t line = 0;
    EXPECT_TRUE(modules.contains(GetLastFileErrorAsn(&line)));
    EXPECT_TRUE(lines.contains(line)) << line;
  });
}

// Made and perhaps changed in one thread, measured, encoded and released in another, while yet others begin and end
// trees.
TEST(Threads, HandObjectsOnUnharmed) {
  struct Parcel {
    Owned<Certificate> certificate;
    Bytes encoding;
  };
  std::mutex mutex;
  std::deque<Parcel> parcels;
  OnThreads([&](uint32_t thread) {
    Parcel parcel{DecodeOriginal(), Original()};
    if (thread % 2 == 0) parcel.encoding = Change(parcel.certificate, static_cast<uint8_t>(thread + 1));
    std::unique_lock lock(mutex);
    parcels.push_back(std::move(parcel));
    if (parcels.size() <= kThreads) return;
    const Parcel received = std::move(parcels.front());
    parcels.pop_front();
    lock.unlock();
    EXPECT_EQ(received.encoding, Fetch(EncodeCertificate, received.certificate));
  });
}

}  // namespace
}  // namespace test
