#include "support/samples.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "tessel/pem.hpp"

namespace test {
namespace {

namespace fs = std::filesystem;

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The octets of a file, which are its first PEM block when it has one.
Bytes ReadObject(const fs::path& path) {
  const std::string content = ReadFile(path);
  const std::optional<tessel::PemBlock> block = tessel::PemReader(content).Next();
  return block ? block->octets : Bytes(content.begin(), content.end());
}

void AddFolder(std::vector<Sample>& samples, const fs::path& folder) {
  std::error_code missing;
  for (const auto& entry : fs::directory_iterator(folder, missing)) {
    samples.push_back({entry.path().string(), ReadObject(entry.path())});
  }
}

// { INTEGER, UTCTime "261121120000Z" }, in every second with the reason keyCompromise.
Bytes RevokedCertificate(uint32_t index) {
  Bytes serial(16, 0x5A);
  for (size_t i = 0; i < 4; ++i) serial[1 + i] = static_cast<uint8_t>(index >> 8 * i);
  const Bytes time = FromHex("17 0D 32 36 31 31 32 31 31 32 30 30 30 30 5A");
  const Bytes reason = FromHex("30 0C 30 0A 06 03 55 1D 15 04 03 0A 01 01");
  const Bytes entry = Der(0x02, serial) + time;
  return Der(0x30, index % 2 == 0 ? entry : entry + reason);
}

}  // namespace

const std::vector<Sample>& Certificates() {
  static const std::vector<Sample> samples = [] {
    std::vector<Sample> all;
    AddFolder(all, "/usr/share/ca-certificates/mozilla");
    AddFolder(all, TESSEL_SOURCE_DIR "/../shared/corpus/cert");
    return all;
  }();
  return samples;
}

const std::vector<Sample>& Crls() {
  static const std::vector<Sample> samples = [] {
    std::vector<Sample> all;
    AddFolder(all, TESSEL_SOURCE_DIR "/../shared/corpus/crl");
    return all;
  }();
  return samples;
}

Bytes ReadSample(const std::string& file) { return ReadObject(TESSEL_SOURCE_DIR "/samples/" + file); }

Bytes MakeCrl(uint32_t entries) {
  // sha256WithRSAEncryption, CN=Test, and the same time twice.
  const Bytes algorithm = FromHex("30 0D 06 09 2A 86 48 86 F7 0D 01 01 0B 05 00");
  const Bytes name = FromHex("30 0F 31 0D 30 0B 06 03 55 04 03 0C 04 54 65 73 74");
  const Bytes time = FromHex("17 0D 32 36 31 31 32 31 31 32 30 30 30 30 5A");
  Bytes list;
  for (uint32_t i = 0; i < entries; ++i) list += RevokedCertificate(i);
  const Bytes tbs = FromHex("02 01 01") + algorithm + name + time + time + Der(0x30, list);
  return Der(0x30, Der(0x30, tbs) + algorithm + Der(0x03, Bytes(257, 0)));
}

}  // namespace test
