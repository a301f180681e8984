// Base64 and PEM, object identifiers, times, texts, keys. The first octet of an input tells which.
#include <array>

#include "getters.h"

namespace fuzz {
namespace {

using tessel::Make;
using tessel::Owned;
using tessel::Try;
using Fetched = std::optional<Bytes>;

void RunBase64(Input& input) {
  const Bytes octets = input.Rest();
  const Fetched text = FetchChecked(EncodeToBase64, octets);
  Require(text.has_value());
  Require(FetchChecked(DecodeFromBase64, TextOf(*text)) == octets);
  // Whatever the text is: it decodes to something, within the memory that it is told to take.
  Require(FetchChecked(DecodeFromBase64, TextOf(octets)).has_value());
}

void RunPem(Input& input) {
  const std::string label = input.Text();
  const Bytes octets = input.Rest();
  FetchChecked(DecodePem, TextOf(octets));
  if (octets.empty()) return;
  const Fetched text = FetchChecked(EncodePem, octets, label);
  Require(text.has_value());
  const Fetched back = FetchChecked(DecodePem, TextOf(*text));
  // A label can look like a marker.
  Require(back == octets || label.find('-') != std::string::npos || label.find('\n') != std::string::npos);
}

void RunOid(Input& input) {
  const Bytes oid = input.Oid();
  const std::string text = input.Text();
  uint32_t id = 0;
  FindAlgIdByOid(oid.data(), &id);
  FindNameAttributeTypeIdByOid(oid.data(), &id);
  for (const auto get : {GetPublicKeyAlgorithmOid, GetNameAttributeTypeOid}) FetchChecked(get, id);
  Require(IsOidEquals(oid.data(), oid.data()) == 1);
  const Fetched encoding = FetchChecked(EncodeAsn1Oid, oid.data());
  Require(encoding.has_value());
  Require(oid == FetchChecked(DecodeAsn1Oid, *encoding));
  FetchChecked(ConvertOidToString, oid.data());
  // A text that was read is written in a form that is read the same, and written the same.
  const Fetched read = FetchChecked(ConvertStringToOid, text);
  if (!read) return;
  const Fetched written = FetchChecked(ConvertOidToString, read->data());
  Require(written.has_value() && !written->empty() && written->back() == 0);
  const Fetched again = FetchChecked(ConvertStringToOid, TextOf(*written).data());
  Require(again.has_value() && FetchChecked(ConvertOidToString, again->data()) == written);
}

void RunTime(Input& input) {
  const Owned<LibraryTime> time = Make(CreateLibraryTime);
  const Owned<LibraryPreciseTime> precise = Make(CreateLibraryPreciseTime);
  const uint32_t days = input.Number();
  std::array<uint32_t, 8> fields{};
  for (uint32_t& field : fields) field = input.Flag() ? input.Number() : input.Octet();
  SetLibraryTime(time, fields[0], fields[1], 1900 + fields[2], fields[3], fields[4], fields[5]);
  SetLibraryPreciseTime(precise, fields[0], fields[1], 1900 + fields[2], fields[3], fields[4], fields[5], fields[6],
                        fields[7]);
  AddDaysToLibTime(time, days);
  AddDaysToLibPreciseTime(precise, days);
  ReadTime(time);
  GetLibraryLocalPreciseTime(precise, &fields[0], &fields[1], &fields[2], &fields[3], &fields[4], &fields[5],
                             &fields[6], &fields[7]);
  const Bytes octets = input.Rest();
  for (const auto decode : {DecodeTime, DecodeAsn1GeneralizedTime, DecodeExtensionInvalidityDate}) {
    if (Try(decode, octets, time) != TESSEL_OK) continue;
    ReadTime(time);
    LibraryTime again{};
    const Fetched encoding = FetchChecked(EncodeTime, time);
    // Years before 1950 have no form among the UTCTimes: theirs is that of a hundred years later.
    if (time->year < 1950) continue;
    Require(encoding && Try(DecodeTime, *encoding, &again) == TESSEL_OK);
    Require(CompareTime(&again, time) == 0);
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
    FetchChecked(convert, octets);
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
