// The C++ view of an installed tessel: the same octets come out that went in.
#include <tessel/tessel.h>

#include <fstream>
#include <iterator>
#include <vector>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  std::ifstream file(argv[1], std::ios::binary);
  const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
  const std::vector<uint8_t> data(content.begin(), content.end());
  Certificate* certificate = nullptr;
  if (DecodeCertificate(data.data(), static_cast<uint32_t>(data.size()), &certificate) != TESSEL_OK) return 1;
  std::vector<uint8_t> encoded(data.size());
  auto length = static_cast<uint32_t>(encoded.size());
  const uint32_t status = EncodeCertificate(certificate, encoded.data(), &length);
  FreeAsn1Object(&CertificateItem, certificate);
  return status == TESSEL_OK && encoded == data ? 0 : 1;
}
