#include "inputs.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "table.h"
#include "tessel_sides.h"

namespace bench {
namespace {

std::vector<uint8_t>& OutputVector() {
  static std::vector<uint8_t> output;
  return output;
}

constexpr const char* kCertificates = "/usr/share/ca-certificates/mozilla";

// Identifier octets.
constexpr char kInteger = 0x02;
constexpr char kBitString = 0x03;
constexpr char kOctetString = 0x04;
constexpr char kSequence = 0x30;
constexpr char kSet = 0x31;
constexpr char kUtcTime = 0x17;
constexpr char kUtf8String = 0x0C;
constexpr char kExtensions = static_cast<char>(0xA0);

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  Require(!text.empty(), path.string() + ": cannot be read");
  return text;
}

std::vector<uint8_t> ReadPem(const std::filesystem::path& path) {
  std::vector<uint8_t> octets;
  Require(tessel::Try(DecodePem, ReadFile(path), tessel::Into(octets)) == 0, path.string() + ": is no PEM");
  return octets;
}

std::vector<uint8_t> SerialNumberOf(const Certificate* certificate) {
  uint32_t length = 0;
  const uint8_t* octets = ptr_GetCertificateSerialNumber(certificate, &length);
  Require(octets != nullptr, "a certificate without a serial number");
  return {octets, octets + length};
}

std::time_t NotBeforeOf(const Certificate* certificate) {
  LibraryTime time{};
  Require(GetCertificateValidNotBefore(certificate, &time) == 0, "a certificate without notBefore");
  return SecondsOf(time);
}

// Empty when the certificate has none.
std::vector<uint8_t> BasicConstraintsOf(const Certificate* certificate) {
  std::vector<uint8_t> value;
  static_cast<void>(tessel::Try(GetCertificateExtensionValue, certificate, kBasicConstraints, tessel::Into(value)));
  return value;
}

CertificateInput ReadCertificate(const std::filesystem::path& path) {
  CertificateInput input{};
  input.octets = ReadPem(path);
  tessel::Owned<Certificate> certificate;
  Require(tessel::Try(DecodeCertificate, input.octets, certificate.Out()) == 0, path.string() + ": is no certificate");
  input.serialNumber = SerialNumberOf(certificate);
  input.notBefore = NotBeforeOf(certificate);
  input.basicConstraints = BasicConstraintsOf(certificate);
  return input;
}

// Some libraries leave out the zero in front of an INTEGER that would be negative without it.
Octets WithoutZeros(Octets number) {
  while (!number.empty() && number.front() == 0) number = number.subspan(1);
  return number;
}

// OBJECT IDENTIFIERs.
std::string ReasonCodeOid() { return "\x06\x03\x55\x1D\x15"; }
std::string CrlNumberOid() { return "\x06\x03\x55\x1D\x14"; }
std::string CommonNameOid() { return "\x06\x03\x55\x04\x03"; }
std::string Sha256WithRsaOid() { return "\x06\x09\x2A\x86\x48\x86\xF7\x0D\x01\x01\x0B"; }

std::string Extension(const std::string& oid, const std::string& value) {
  return Element(kSequence, oid + Element(kOctetString, value));
}

// The serial number begins with a bit 0 and a bit 1: positive, and in no fewer octets.
std::string RandomSerialNumber(std::mt19937_64& random) {
  std::string octets;
  for (int word = 0; word < 2; ++word) {
    uint64_t bits = random();
    for (int octet = 0; octet < 8; ++octet, bits >>= 8) octets += static_cast<char>(bits);
  }
  octets[0] = static_cast<char>((octets[0] & 0x3F) | 0x40);
  return octets;
}

std::string RevokedCertificates(size_t entries) {
  const std::string date = Element(kUtcTime, "240229120000Z");
  const std::string reason = Element(kSequence, Extension(ReasonCodeOid(), "\x0A\x01\x01"));
  std::mt19937_64 random(1);  // always the same
  std::string list;
  for (size_t i = 0; i < entries; ++i) {
    const std::string serial = Element(kInteger, RandomSerialNumber(random));
    list += Element(kSequence, serial + date + (i % 2 == 0 ? reason : ""));
  }
  return Element(kSequence, list);
}

std::string Issuer() {
  const std::string attribute = Element(kSequence, CommonNameOid() + Element(kUtf8String, "Benchmark"));
  return Element(kSequence, Element(kSet, attribute));
}

}  // namespace

std::string Header(char identifier, size_t length) {
  std::string header(1, identifier);
  if (length < 0x80) return header + static_cast<char>(length);
  std::string octets;
  for (; length != 0; length >>= 8) octets.insert(octets.begin(), static_cast<char>(length));
  return header + static_cast<char>(0x80 + octets.size()) + octets;
}

std::string Element(char identifier, const std::string& content) {
  return Header(identifier, content.size()) + content;
}

std::vector<uint8_t> VectorOf(std::string_view text) { return {text.begin(), text.end()}; }

uint8_t* Output(size_t size) {
  std::vector<uint8_t>& output = OutputVector();
  if (output.size() < size) output.resize(size);
  return output.data();
}

void ClearOutput() { std::ranges::fill(OutputVector(), uint8_t{0xEE}); }

bool IsSerialNumber(Octets found, const CertificateInput& input) {
  return std::ranges::equal(WithoutZeros(found), WithoutZeros(input.serialNumber));
}

bool IsNotBefore(std::time_t found, const CertificateInput& input) { return found == input.notBefore; }

bool IsBasicConstraints(Octets found, const CertificateInput& input) {
  return std::ranges::equal(found, input.basicConstraints);
}

std::vector<CertificateInput> ReadCertificates() {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(kCertificates)) paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  std::vector<CertificateInput> inputs;
  inputs.reserve(paths.size());
  for (const std::filesystem::path& path : paths) inputs.push_back(ReadCertificate(path));
  std::erase_if(inputs, [](const CertificateInput& input) { return input.basicConstraints.empty(); });
  Require(!inputs.empty(), std::string(kCertificates) + ": no certificates");
  return inputs;
}

CrlInput MakeCrl(size_t entries) {
  const std::string algorithm = Element(kSequence, Sha256WithRsaOid() + std::string("\x05\x00", 2));
  const std::string extensions = Element(kSequence, Extension(CrlNumberOid(), "\x02\x01\x01"));
  const std::string toBeSigned =
      Element(kSequence, Element(kInteger, "\x01") + algorithm + Issuer() + Element(kUtcTime, "240301000000Z") +
                             Element(kUtcTime, "240308000000Z") + RevokedCertificates(entries) +
                             Element(kExtensions, extensions));
  const std::string signature = std::string(1, '\0') + std::string(256, '\x5A');
  return {VectorOf(Element(kSequence, toBeSigned + algorithm + Element(kBitString, signature))), entries};
}

SetInput MakeDescendingSet(size_t elements) {
  const std::string common(12, '\x11');
  std::vector<std::string> strings;
  for (uint64_t number = elements; number-- > 0;) {
    std::string octets;
    for (int shift = 56; shift >= 0; shift -= 8) octets += static_cast<char>(number >> shift);
    strings.push_back(Element(kOctetString, common + octets));
  }
  const auto set = [&strings] {
    std::string content;
    for (const std::string& element : strings) content += element;
    return VectorOf(Element(kSet, content));
  };
  SetInput input;
  input.octets = set();
  std::reverse(strings.begin(), strings.end());
  input.sorted = set();
  return input;
}

NestInput MakeNest(size_t levels) {
  std::string nest;
  for (size_t level = 0; level < levels; ++level) {
    nest.insert(0, Element(kInteger, "\x07"));
    nest = Element(kSequence, nest);
  }
  return {VectorOf(nest), levels};
}

}  // namespace bench
