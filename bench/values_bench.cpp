// Base64, PEM and SHA-1. Encoders of both sides write lines of 64 characters, unless "one line" is said; tessel ends
// them with CR LF, OpenSSL with LF. Decoders of both sides read what tessel wrote. Tessel writes into a buffer that is
// there already; the memory that OpenSSL's PEM functions make for their results is part of what they do.
#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/sha.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <random>
#include <string>
#include <string_view>

#include "table.h"
#include "tessel/base64.h"
#include "tessel/sha1.h"
#include "values/sha1.h"

namespace bench {
namespace {

using View = std::string_view;
using Context = std::unique_ptr<EVP_ENCODE_CTX, decltype(&EVP_ENCODE_CTX_free)>;
using Bio = std::unique_ptr<BIO, decltype(&BIO_free)>;

constexpr const char* kLabel = "CERTIFICATE";
// Ten million octets, about: whole lines of Base64 and whole blocks of SHA-1.
constexpr size_t kLarge = size_t{52083} * 192;
constexpr size_t kSizeOfCertificate = 1500;
constexpr size_t kSizeOfPublicKey = 294;

// Inputs stay where they are until the program ends. Results are all written in one place.
View Keep(std::string input) {
  static std::deque<std::string> inputs;
  return inputs.emplace_back(std::move(input));
}
char* Out() {
  static std::string out(2 * kLarge, '\0');
  return out.data();
}
View Result(bool isDone, size_t length) { return isDone ? View(Out(), length) : View(); }

// The interfaces want octets or characters, and counts of several types.
const uint8_t* OctetsOf(View view) { return reinterpret_cast<const uint8_t*>(view.data()); }
uint8_t* OutOctets() { return reinterpret_cast<uint8_t*>(Out()); }
uint32_t SizeOf(View view) { return static_cast<uint32_t>(view.size()); }
int IntSizeOf(View view) { return static_cast<int>(view.size()); }

View RandomOctets(size_t size) {
  std::string octets(size, '\0');
  std::generate(octets.begin(), octets.end(),
                [random = std::mt19937()]() mutable { return static_cast<char>(random()); });
  return Keep(std::move(octets));
}

template <class Decode>
Call TesselDecoding(Decode decode, View text) {
  return [=] {
    auto length = static_cast<uint32_t>(2 * kLarge);
    const uint32_t status = decode(text.data(), SizeOf(text), OutOctets(), &length);
    return Result(status == 0, length);
  };
}

Call TesselEncoding(View octets) {
  return [=] {
    auto length = static_cast<uint32_t>(2 * kLarge);
    const uint32_t status = EncodeToBase64(OctetsOf(octets), SizeOf(octets), Out(), &length);
    return Result(status == 0, length);
  };
}

Call TesselPemEncoding(View octets) {
  return [=] {
    auto length = static_cast<uint32_t>(2 * kLarge);
    const uint32_t status = EncodePem(OctetsOf(octets), SizeOf(octets), kLabel, Out(), &length);
    return Result(status == 0, length);
  };
}

Call OpensslEncoding(View octets) {
  return [=] {
    const Context context(EVP_ENCODE_CTX_new(), &EVP_ENCODE_CTX_free);
    int length = 0;
    int rest = 0;
    EVP_EncodeInit(context.get());
    EVP_EncodeUpdate(context.get(), OutOctets(), &length, OctetsOf(octets), IntSizeOf(octets));
    EVP_EncodeFinal(context.get(), OutOctets() + length, &rest);
    length += rest;
    return Result(length > 0, static_cast<size_t>(length));
  };
}

Call OpensslDecoding(View text) {
  return [=] {
    const Context context(EVP_ENCODE_CTX_new(), &EVP_ENCODE_CTX_free);
    int length = 0;
    int rest = 0;
    EVP_DecodeInit(context.get());
    const bool isDone = EVP_DecodeUpdate(context.get(), OutOctets(), &length, OctetsOf(text), IntSizeOf(text)) >= 0 &&
                        EVP_DecodeFinal(context.get(), OutOctets() + length, &rest) > 0;
    length += rest;
    return Result(isDone, static_cast<size_t>(length));
  };
}

// The two functions of OpenSSL that write or read one line.
template <class Function>
Call OpensslOneLine(Function function, View input) {
  return [=] {
    const int length = function(OutOctets(), OctetsOf(input), IntSizeOf(input));
    return Result(length > 0, static_cast<size_t>(length));
  };
}

Call OpensslPemEncoding(View octets) {
  return [=, bio = std::shared_ptr<BIO>()]() mutable {
    bio.reset(BIO_new(BIO_s_mem()), &BIO_free);
    PEM_write_bio(bio.get(), kLabel, "", OctetsOf(octets), IntSizeOf(octets));
    char* text = nullptr;
    const long length = BIO_get_mem_data(bio.get(), &text);
    return View(text, static_cast<size_t>(length));
  };
}

void FreeOpenssl(void* memory) { OPENSSL_free(memory); }

Call OpensslPemDecoding(View text) {
  return [=, result = std::shared_ptr<char>()]() mutable {
    const Bio bio(BIO_new_mem_buf(text.data(), IntSizeOf(text)), &BIO_free);
    char* name = nullptr;
    char* header = nullptr;
    uint8_t* octets = nullptr;
    long length = 0;
    PEM_read_bio(bio.get(), &name, &header, &octets, &length);
    FreeOpenssl(name);
    FreeOpenssl(header);
    result.reset(reinterpret_cast<char*>(octets), &FreeOpenssl);
    return View(result.get(), static_cast<size_t>(length));
  };
}

template <class Function>
Call Digesting(Function function, View octets) {
  return [=] {
    function(OctetsOf(octets), SizeOf(octets), OutOctets());
    return Result(true, SHA_DIGEST_LENGTH);
  };
}

void DigestPortably(const uint8_t* data, size_t size, uint8_t* digest) {
  const tessel::Sha1Digest result = tessel::Sha1By(tessel::CompressSha1Portably, {data, size});
  std::copy(result.begin(), result.end(), digest);
}

void AddBase64(View octets) {
  const Call encoding = TesselEncoding(octets);
  const View lines = Keep(std::string(encoding()));
  std::string oneLine(lines);
  std::erase_if(oneLine, [](char c) { return c == '\r' || c == '\n'; });
  const View line = Keep(oneLine);

  Add({"Base64: encode", octets.size(), encoding, OpensslEncoding(octets), "EVP_EncodeUpdate"});
  Add({"Base64: encode", octets.size(), encoding, OpensslOneLine(EVP_EncodeBlock, octets),
       "EVP_EncodeBlock, one line"});
  Add({"Base64: DecodeFromBase64", octets.size(), TesselDecoding(DecodeFromBase64, lines), OpensslDecoding(lines),
       "EVP_DecodeUpdate"});
  Add({"Base64: DecodePem", octets.size(), TesselDecoding(DecodePem, lines), OpensslDecoding(lines),
       "EVP_DecodeUpdate"});
  Add({"Base64: DecodePem, one line", octets.size(), TesselDecoding(DecodePem, line),
       OpensslOneLine(EVP_DecodeBlock, line), "EVP_DecodeBlock, one line"});
}

void AddPem(View octets) {
  const Call encoding = TesselPemEncoding(octets);
  const View text = Keep(std::string(encoding()));
  Add({"PEM: encode", octets.size(), encoding, OpensslPemEncoding(octets), "PEM_write_bio"});
  Add({"PEM: decode", octets.size(), TesselDecoding(DecodePem, text), OpensslPemDecoding(text), "PEM_read_bio"});
}

void AddSha1(View octets) {
  Add({"SHA-1", octets.size(), Digesting(sha1, octets), Digesting(SHA1, octets), "SHA1"});
  Add({"SHA-1, no special instructions", octets.size(), Digesting(DigestPortably, octets), Digesting(SHA1, octets),
       "SHA1", Processor::kPlain});
}

}  // namespace

void AddValues() {
  const View large = RandomOctets(kLarge);
  const View certificate = RandomOctets(kSizeOfCertificate);
  AddBase64(large);
  AddBase64(certificate);
  AddPem(large);
  AddPem(certificate);
  AddSha1(large);
  AddSha1(RandomOctets(kSizeOfPublicKey));
}

}  // namespace bench
