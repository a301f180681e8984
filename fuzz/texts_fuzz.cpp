// Base64 and PEM, object identifiers, times, texts, keys. The first octet of an input tells which.
#include <array>
#include <memory>

#include "getters.h"

namespace fuzz {
namespace {

using Fetched = std::optional<Bytes>;

const char* Chars(const Bytes& octets) { return reinterpret_cast<const char*>(octets.data()); }

void RunBase64(Input& input) {
  const Bytes octets = input.Rest();
  const Fetched text = FetchText(
      [&](char* buffer, uint32_t* length) { return EncodeToBase64(octets.data(), SizeOf(octets), buffer, length); });
  Require(text.has_value());
  const Fetched back = Fetch([&](uint8_t* buffer, uint32_t* length) {
    return DecodeFromBase64(text->empty() ? "" : Chars(*text), SizeOf(*text), buffer, length);
  });
  Require(back == octets);
  // Whatever the text is: it decodes to something, within the memory that it is told to take.
  Require(Fetch([&](uint8_t* buffer, uint32_t* length) {
            return DecodeFromBase64(Chars(octets), SizeOf(octets), buffer, length);
          }).has_value());
}

void RunPem(Input& input) {
  const std::string label = input.Text();
  const Bytes octets = input.Rest();
  const Fetched decoded = Fetch(
      [&](uint8_t* buffer, uint32_t* length) { return DecodePem(Chars(octets), SizeOf(octets), buffer, length); });
  if (octets.empty()) return;
  const Fetched text = FetchText([&](char* buffer, uint32_t* length) {
    return EncodePem(octets.data(), SizeOf(octets), label.c_str(), buffer, length);
  });
  Require(text.has_value());
  const Fetched back =
      Fetch([&](uint8_t* buffer, uint32_t* length) { return DecodePem(Chars(*text), SizeOf(*text), buffer, length); });
  // A label can look like a marker.
  Require(back == octets || label.find('-') != std::string::npos || label.find('\n') != std::string::npos);
}

Fetched OidText(const Bytes& oid) {
  return FetchText([&](char* buffer, uint32_t* length) { return ConvertOidToString(oid.data(), buffer, length); });
}
Fetched OidOf(const std::string& text) {
  return Fetch([&](uint8_t* buffer, uint32_t* length) { return ConvertStringToOid(text.c_str(), buffer, length); });
}

void RunOid(Input& input) {
  const Bytes oid = input.Oid();
  const std::string text = input.Text();
  uint32_t id = 0;
  FindAlgIdByOid(oid.data(), &id);
  FindNameAttributeTypeIdByOid(oid.data(), &id);
  for (const auto get : {GetPublicKeyAlgorithmOid, GetNameAttributeTypeOid}) {
    Fetch([&](uint8_t* buffer, uint32_t* length) { return get(id, buffer, length); });
  }
  Require(IsOidEquals(oid.data(), oid.data()) == 1);
  const Fetched encoding =
      Fetch([&](uint8_t* buffer, uint32_t* length) { return EncodeAsn1Oid(oid.data(), buffer, length); });
  Require(encoding.has_value());
  Require(oid == Fetch([&](uint8_t* buffer, uint32_t* length) {
            return DecodeAsn1Oid(encoding->data(), SizeOf(*encoding), buffer, length);
          }));
  OidText(oid);
  // A text that was read is written in a form that is read the same, and written the same.
  const Fetched read = OidOf(text);
  if (!read) return;
  const Fetched written = OidText(*read);
  Require(written.has_value() && !written->empty() && written->back() == 0);
  const Fetched again = OidOf(Chars(*written));
  Require(again.has_value() && OidText(*again) == written);
}

void RunTime(Input& input) {
  LibraryTime* made = nullptr;
  Require(CreateLibraryTime(&made) == TESSEL_OK);
  const std::unique_ptr<LibraryTime, uint32_t(TESSEL_CALL*)(LibraryTime*)> time(made, FreeLibraryTime);
  LibraryPreciseTime* preciseMade = nullptr;
  Require(CreateLibraryPreciseTime(&preciseMade) == TESSEL_OK);
  const std::unique_ptr<LibraryPreciseTime, uint32_t(TESSEL_CALL*)(LibraryPreciseTime*)> precise(
      preciseMade, FreeLibraryPreciseTime);
  const uint32_t days = input.Number();
  std::array<uint32_t, 8> fields{};
  for (uint32_t& field : fields) field = input.Flag() ? input.Number() : input.Octet();
  SetLibraryTime(time.get(), fields[0], fields[1], 1900 + fields[2], fields[3], fields[4], fields[5]);
  SetLibraryPreciseTime(precise.get(), fields[0], fields[1], 1900 + fields[2], fields[3], fields[4], fields[5],
                        fields[6], fields[7]);
  AddDaysToLibTime(time.get(), days);
  AddDaysToLibPreciseTime(precise.get(), days);
  ReadTime(time.get());
  GetLibraryLocalPreciseTime(precise.get(), &fields[0], &fields[1], &fields[2], &fields[3], &fields[4], &fields[5],
                             &fields[6], &fields[7]);
  const Bytes octets = input.Rest();
  for (const auto decode : {DecodeTime, DecodeAsn1GeneralizedTime, DecodeExtensionInvalidityDate}) {
    if (decode(octets.data(), SizeOf(octets), time.get()) != TESSEL_OK) continue;
    ReadTime(time.get());
    LibraryTime again{};
    const Fetched encoding =
        Fetch([&](uint8_t* buffer, uint32_t* length) { return EncodeTime(time.get(), buffer, length); });
    // Years before 1950 have no form among the UTCTimes: theirs is that of a hundred years later.
    if (time->year < 1950) continue;
    Require(encoding && DecodeTime(encoding->data(), SizeOf(*encoding), &again) == TESSEL_OK);
    Require(CompareTime(&again, time.get()) == 0);
  }
}

void RunText(Input& input) {
  const std::string text = input.Text();
  const Bytes octets = input.Rest();
  uint32_t type = 0;
  DetermineSuitableStringType(octets.data(), SizeOf(octets), &type);
  Bytes utf8(2 * (text.size() + 10));
  uint32_t length = SizeOf(utf8);
  const uint32_t status = ConvertAnsiToUTF8(text.c_str(), reinterpret_cast<char*>(utf8.data()), &length);
  Require(status == TESSEL_OK || status == TESSEL_BUFFER_TOO_SMALL);
  Require(IsArrayEquals(octets.data(), SizeOf(octets), octets.data(), SizeOf(octets)) == TESSEL_OK);
  std::array<uint8_t, 20> digest{};
  sha1(octets.data(), SizeOf(octets), digest.data());
  for (const auto convert : {ConvertX509PublicKeyToArdek, ConvertArdekPublicKeyToX509, ConvertX509SignatureToArdek,
                             ConvertArdekSignatureToX509}) {
    Fetch([&](uint8_t* buffer, uint32_t* needed) { return convert(octets.data(), SizeOf(octets), buffer, needed); });
  }
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr void (*kRuns[])(fuzz::Input&) = {fuzz::RunBase64, fuzz::RunPem, fuzz::RunOid, fuzz::RunTime, fuzz::RunText};
  fuzz::Input input(fuzz::Octets(data, size));
  kRuns[input.Below(std::size(kRuns))](input);
  return 0;
}
