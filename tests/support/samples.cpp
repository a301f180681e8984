#include "support/samples.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "pem.h"

namespace test {
namespace {

namespace fs = std::filesystem;

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void AddFolder(std::vector<Sample>& samples, const fs::path& folder) {
  std::error_code missing;
  for (const auto& entry : fs::directory_iterator(folder, missing)) {
    const std::string content = ReadFile(entry.path());
    tool::PemReader reader(content);
    tool::PemBlock block;
    if (reader.Next(block)) {
      samples.push_back({entry.path().string(), block.octets});
    } else {
      samples.push_back({entry.path().string(), Bytes(content.begin(), content.end())});
    }
  }
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

}  // namespace test
