// Certificates: Mozilla's bundle decoded, encoded, copied and read.
#include <optional>
#include <string>

#include "floor.h"
#include "peers/peers.h"
#include "sides.h"
#include "table.h"
#include "tessel_sides.h"

namespace bench {
namespace {

using Value = tessel::Owned<Certificate>;

Value Decode(Octets octets) {
  Value certificate;
  DecodeCertificate(octets.data(), SizeOf(octets), certificate.Out());
  return certificate;
}

Value Copy(const Value& certificate) {
  Value copy;
  CreateCertificateCopy(certificate, copy.Out());
  return copy;
}

auto EncoderOf(const Value& certificate) {
  return [&certificate](uint8_t* buffer, uint32_t* length) { return EncodeCertificate(certificate, buffer, length); };
}

constexpr size_t kLargeBuffer = 16384;

Octets Encode(const Value& certificate) { return EncodeBySize(EncoderOf(certificate)); }
Octets EncodeAtOnce(const Value& certificate) { return EncodeInto(kLargeBuffer, EncoderOf(certificate)); }

constexpr size_t kSmallBuffer = 100;

std::optional<Octets> ReadSerialNumber(const Value& certificate) {
  const Octets octets = EncodeInto(kSmallBuffer, [&certificate](uint8_t* buffer, uint32_t* length) {
    return GetCertificateSerialNumber(certificate, buffer, length);
  });
  return octets.empty() ? std::nullopt : std::optional(octets);
}

std::optional<LibraryTime> ReadNotBefore(const Value& certificate) {
  LibraryTime time{};
  if (GetCertificateValidNotBefore(certificate, &time) != 0) return std::nullopt;
  return time;
}

std::optional<Octets> FindBasicConstraints(const Value& certificate) {
  const Octets octets = EncodeInto(kSmallBuffer, [&certificate](uint8_t* buffer, uint32_t* length) {
    return GetCertificateExtensionValue(certificate, kBasicConstraints.Counted(), buffer, length);
  });
  return octets.empty() ? std::nullopt : std::optional(octets);
}

Label Tessel(const char* name, const char* remark) { return {Kind::kTessel, std::string("tessel ") + name, remark}; }

void AddTessel(const std::vector<CertificateInput>& inputs, CertificateOperations& to) {
  AddDecoder(to.decode, Tessel("`DecodeCertificate`", "the whole tree, with a copy of all octets; the input may go."),
             inputs, Decode, [](const Value& certificate, const CertificateInput& input) {
               return std::ranges::equal(Encode(certificate), input.octets);
             });
  const auto held = Hold(inputs, Decode);
  AddEncoder(to.encode,
             Tessel("`EncodeCertificate`",
                    "with a null buffer, to learn the size, which is known as long as nothing is changed; and then "
                    "with the buffer, which encodes the tree."),
             held, Encode);
  AddEncoder(to.encode, Tessel("`EncodeCertificate`, of a copy", "the same when the size has to be counted."),
             Hold(inputs, [](Octets octets) { return Copy(Decode(octets)); }), Encode);
  AddEncoder(to.encode, Tessel("`EncodeCertificate`, one call", "the second call alone, with a buffer of 16 KiB."),
             held, EncodeAtOnce);
  AddCopier(to.copy, Tessel("`CreateCertificateCopy`", "copies the tree with all octets."), held, Copy, Encode);
  AddReader(to.serialNumber, Tessel("`GetCertificateSerialNumber`", "copies the octets."), held, ReadSerialNumber,
            IsSerialNumber);
  AddReader(to.notBefore, Tessel("`GetCertificateValidNotBefore`", "reads the text into calendar fields."), held,
            ReadNotBefore,
            [](const LibraryTime& time, const CertificateInput& input) { return IsNotBefore(SecondsOf(time), input); });
  AddReader(to.extension, Tessel("`GetCertificateExtensionValue`", "finds by the identifier, and copies the value."),
            held, FindBasicConstraints, IsBasicConstraints);
}

void AddFloors(const std::vector<CertificateInput>& inputs, CertificateOperations& to) {
  for (Operation* operation : {&to.decode, &to.encode, &to.copy}) {
    AddWalk(*operation, inputs);
    AddCopy(*operation, Kind::kAside, inputs);
  }
  AddAllocations(to.decode, inputs);
}

CertificateOperations OperationsOn(const std::vector<CertificateInput>& inputs) {
  CertificateOperations operations;
  AddTessel(inputs, operations);
  gnutls::AddCertificates(inputs, operations);
  mbedtls::AddCertificates(inputs, operations);
  nss::AddCertificates(inputs, operations);
  openssl::AddCertificates(inputs, operations);
  wolfssl::AddCertificates(inputs, operations);
  AddFloors(inputs, operations);
  return operations;
}

std::string Description(const std::vector<CertificateInput>& inputs) {
  uint64_t octets = 0;
  uint64_t elements = 0;
  for (const CertificateInput& input : inputs) {
    octets += input.octets.size();
    elements += CountElements(input.octets);
  }
  return "The " + std::to_string(inputs.size()) +
         " certificates of Debian's ca-certificates, one after another: " + std::to_string(octets / inputs.size()) +
         " octets and " + std::to_string(elements / inputs.size()) +
         " elements each on average. Figures are nanoseconds for one certificate.";
}

}  // namespace
}  // namespace bench

int main(int count, char** arguments) {
  bench::Initialize(count, arguments);
  const std::vector<bench::CertificateInput> inputs = bench::ReadCertificates();
  bench::CertificateOperations named = bench::OperationsOn(inputs);
  std::vector<bench::Operation> operations = {named.decode,       named.encode,    named.copy,
                                              named.serialNumber, named.notBefore, named.extension};
  for (bench::Operation& operation : operations) operation.items = static_cast<double>(inputs.size());
  bench::Print({"Certificates", bench::Description(inputs), "ns"}, bench::Measure(operations));
}
