// Makes seeds for the fuzz programs: make_seeds TO FROM... takes the certificates and CRLs of the folders FROM, DER or
// PEM, apart, and writes every part that an input may begin with into TO/PROGRAM. Folders that are not there are passed
// over.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "getters.h"
#include "types.h"

namespace fuzz {
namespace {

namespace fs = std::filesystem;

Bytes ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class Seeds {
 public:
  explicit Seeds(fs::path to) : to_(std::move(to)) {
    for (const char* program : {"calls", "certificates", "headers", "texts", "types"})
      fs::create_directories(to_ / program);
  }

  void Add(const Bytes& file) {
    const auto octets = FetchChecked(DecodePem, TextOf(file));
    const Bytes& object = octets ? *octets : file;
    AddObject(object);
    tessel::Owned<Certificate> certificate;
    if (tessel::Try(DecodeCertificate, object, certificate.Out()) == TESSEL_OK) AddParts(certificate, object);
  }

  [[nodiscard]] size_t Count() const { return count_; }

 private:
  void Write(const char* program, Bytes first, const Bytes& rest) {
    first.insert(first.end(), rest.begin(), rest.end());
    const std::string content(first.begin(), first.end());
    // Many parts are the same in many certificates.
    std::ofstream file(to_ / program / std::to_string(std::hash<std::string>()(content)), std::ios::binary);
    file << content;
    ++count_;
  }

  // As an object of each type that it can be decoded as.
  void AddObject(const Bytes& octets) {
    if (octets.size() < 2) return;
    for (size_t i = 0; i < Types().size(); ++i) {
      tessel::Tree tree(*Types()[i].item);
      if (tessel::Try(Asn1DecodeItem, octets, &tree.Item(), tree.Out(), nullptr) == TESSEL_OK) {
        Write("types", {static_cast<uint8_t>(i)}, octets);
      }
    }
    if (octets.size() > 256) return;
    Write("headers", {octets[0]}, octets);
    // DecodeTime and what is beside it: the third of the texts, behind its numbers.
    if (octets[0] == 0x17 || octets[0] == 0x18) Write("texts", Bytes(13, 3), octets);
  }

  void AddParts(Certificate* certificate, const Bytes& octets) {
    Write("certificates", {}, octets);
    Write("texts", {0}, octets);
    Write("texts", {1, 0}, *FetchChecked(EncodePem, octets, "CERTIFICATE"));
    AddCalls(octets);
    X509Name* subject = nullptr;
    GetCertificateSubject(certificate, &subject);
    AddObject(*FetchChecked(EncodeX509Name, subject));
    X509ExtensionsSlot* slot = nullptr;
    GetCertificateExtensions(certificate, &slot);
    uint32_t count = 0;
    GetX509ExtensionsExtensionsCount(slot, &count);
    for (uint32_t i = 0; i < count; ++i) AddExtension(slot, i);
  }

  // Larger values would take longer than all others together, and -max_len would cut them.
  static constexpr size_t kLargestValue = 65536;

  void AddExtension(const X509ExtensionsSlot* slot, uint32_t index) {
    Bytes oid;
    Bytes value;
    uint32_t critical = 0;
    if (tessel::Try(GetX509ExtensionsExtension, slot, index, tessel::Into(oid), &critical, tessel::Into(value)) != 0) {
      return;
    }
    if (value.size() > kLargestValue) return;
    AddObject(value);
    Write("texts", {2}, oid);
  }

  // Decodes the certificate to the first place, and copies, changes and reads it there.
  void AddCalls(const Bytes& octets) {
    if (octets.size() >= 0x8000) return;
    Bytes calls = {16, 0, static_cast<uint8_t>(0x80 | octets.size() >> 8), static_cast<uint8_t>(octets.size())};
    calls.insert(calls.end(), octets.begin(), octets.end());
    Write("calls", calls, {23, 0, 1, 63, 0, 64, 0, 1, 70, 1, 82, 0, 27, 0, 0, 83, 0});
  }

  const fs::path to_;
  size_t count_ = 0;
};

}  // namespace
}  // namespace fuzz

int main(int count, char** arguments) {
  if (count < 3) return 1;
  fuzz::Seeds seeds(arguments[1]);
  for (int i = 2; i < count; ++i) {
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(arguments[i], missing)) {
      if (entry.is_regular_file()) seeds.Add(fuzz::ReadFile(entry.path()));
    }
  }
  std::printf("%zu seeds\n", seeds.Count());
  return seeds.Count() == 0 ? 1 : 0;
}
