// Base64, PEM and SHA-1. Decoders of both sides read what tessel wrote.
#include <dlfcn.h>
#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/sha.h>

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "floor.h"
#include "table.h"
#include "tessel/base64.h"
#include "tessel/sha1.h"
#include "values/sha1.h"

namespace bench {
namespace {

using View = std::string_view;
// Returns its result, or nothing when it failed.
using Call = std::function<View()>;
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
uint8_t* OutOctets() { return Output(2 * kLarge); }
char* Out() { return reinterpret_cast<char*>(OutOctets()); }
View Result(bool isDone, size_t length) { return isDone ? View(Out(), length) : View(); }

// The interfaces want octets or characters, and counts of several types.
const uint8_t* OctetsOf(View view) { return reinterpret_cast<const uint8_t*>(view.data()); }
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

using OpensslSha1 = decltype(&SHA1);

// SHA1 of a second OpenSSL in this process, which was told when it was loaded that the processor has none of the
// instructions that only some have.
OpensslSha1 LoadPlainSha1() {
  setenv("OPENSSL_ia32cap", "0:0", 1);
  void* library = dlmopen(LM_ID_NEWLM, "libcrypto.so.3", RTLD_NOW | RTLD_LOCAL);
  unsetenv("OPENSSL_ia32cap");
  Require(library != nullptr, "a second OpenSSL cannot be loaded");
  void* function = dlsym(library, "SHA1");
  Require(function != nullptr, "the second OpenSSL has no SHA1");
  return reinterpret_cast<OpensslSha1>(function);
}

void DigestPortably(const uint8_t* data, size_t size, uint8_t* digest) {
  const tessel::Sha1Digest result = tessel::Sha1By(tessel::CompressSha1Portably, {data, size});
  std::copy(result.begin(), result.end(), digest);
}

// Whether line breaks are part of what a result is compared by: texts may have others, octets may not.
enum class LineBreaks : bool { kIgnored, kCompared };

bool IsSameResult(View first, View second, LineBreaks breaks) {
  if (breaks == LineBreaks::kCompared) return !first.empty() && first == second;
  const auto withoutBreaks = [](View view) {
    std::string text(view);
    std::erase_if(text, [](char c) { return c == '\r' || c == '\n'; });
    return text;
  };
  return !first.empty() && withoutBreaks(first) == withoutBreaks(second);
}

// An operation on one input whose sides have to have the same result.
class Comparison {
 public:
  // `octets` are those that the operation is about, not the characters of their text. Figures are for 1,000 of them.
  Comparison(const char* name, View octets, View expected, LineBreaks breaks = LineBreaks::kCompared)
      : expected_(expected),
        breaks_(breaks),
        operation_{std::string(name) + ", " + Grouped(octets.size()) + " octets",
                   static_cast<double>(octets.size()) / 1000} {
    AddMemcpy(octets);
  }

  void Tessel(const char* name, const char* remark, const Call& call) {
    AddSide({Kind::kTessel, std::string("tessel ") + name, remark}, call);
  }
  void Openssl(const char* name, const char* remark, const Call& call) {
    AddSide({Kind::kPeer, std::string("OpenSSL ") + name, remark}, call);
  }
  [[nodiscard]] const Operation& Get() const { return operation_; }

 private:
  void AddMemcpy(View octets) {
    const Octets input(OctetsOf(octets), octets.size());
    operation_.sides.push_back({CopyLabel(Kind::kFloor),
                                [input] {
                                  CopyOctets(input);
                                  return true;
                                },
                                [input] { return IsRightCopy(input); }});
  }
  void AddSide(Label label, const Call& call) {
    operation_.sides.push_back({std::move(label), [call] { return !call().empty(); },
                                [call, expected = expected_, breaks = breaks_] {
                                  ClearOutput();
                                  return IsSameResult(call(), expected, breaks);
                                }});
  }

  View expected_;
  LineBreaks breaks_;
  Operation operation_;
};

Operation Base64Encoding(View octets) {
  const View text = Keep(std::string(OpensslEncoding(octets)()));
  Comparison comparison("Base64: encode", octets, text, LineBreaks::kIgnored);
  comparison.Tessel("`EncodeToBase64`", "lines of 64 characters that end with CR LF.", TesselEncoding(octets));
  comparison.Openssl("`EVP_EncodeUpdate`", "lines of 64 characters that end with LF.", OpensslEncoding(octets));
  comparison.Openssl("`EVP_EncodeBlock`", "one line without a break.", OpensslOneLine(EVP_EncodeBlock, octets));
  return comparison.Get();
}

Operation Base64Decoding(View octets) {
  const View lines = Keep(std::string(TesselEncoding(octets)()));
  Comparison comparison("Base64: decode", octets, octets);
  comparison.Tessel("`DecodeFromBase64`", "checks nothing: for texts of `EncodeToBase64` only.",
                    TesselDecoding(DecodeFromBase64, lines));
  comparison.Tessel("`DecodePem`", "checks the text.", TesselDecoding(DecodePem, lines));
  comparison.Openssl("`EVP_DecodeUpdate`", "checks the text.", OpensslDecoding(lines));
  return comparison.Get();
}

Operation Base64LineDecoding(View octets) {
  std::string text(TesselEncoding(octets)());
  std::erase_if(text, [](char c) { return c == '\r' || c == '\n'; });
  const View line = Keep(text);
  Comparison comparison("Base64: decode one line", octets, octets);
  comparison.Tessel("`DecodePem`", "checks the text.", TesselDecoding(DecodePem, line));
  comparison.Openssl("`EVP_DecodeBlock`", "checks the text; takes no line breaks.",
                     OpensslOneLine(EVP_DecodeBlock, line));
  return comparison.Get();
}

Operation PemEncoding(View octets) {
  const View text = Keep(std::string(OpensslPemEncoding(octets)()));
  Comparison comparison("PEM: encode", octets, text, LineBreaks::kIgnored);
  comparison.Tessel("`EncodePem`", "writes into a buffer that is there.", TesselPemEncoding(octets));
  comparison.Openssl("`PEM_write_bio`", "writes into a memory BIO that it allocates.", OpensslPemEncoding(octets));
  return comparison.Get();
}

Operation PemDecoding(View octets) {
  const View text = Keep(std::string(TesselPemEncoding(octets)()));
  Comparison comparison("PEM: decode", octets, octets);
  comparison.Tessel("`DecodePem`", "checks the text.", TesselDecoding(DecodePem, text));
  comparison.Openssl("`PEM_read_bio`",
                     "reads from a memory BIO, into blocks that it allocates; also returns the label.",
                     OpensslPemDecoding(text));
  return comparison.Get();
}

Operation Sha1(View octets) {
  const View digest = Keep(std::string(Digesting(SHA1, octets)()));
  Comparison comparison("SHA-1", octets, digest);
  comparison.Tessel("`sha1`", "with the processor's own instructions, where it has them.", Digesting(sha1, octets));
  comparison.Openssl("`SHA1`", "with the processor's own instructions, where it has them.", Digesting(SHA1, octets));
  return comparison.Get();
}

Operation PlainSha1(View octets, OpensslSha1 plainSha1) {
  const View digest = Keep(std::string(Digesting(SHA1, octets)()));
  Comparison comparison("SHA-1, plain processor", octets, digest);
  comparison.Tessel("portable", "what `sha1` does on processors without special instructions.",
                    Digesting(DigestPortably, octets));
  comparison.Openssl("`SHA1`, told that the processor is plain", "by `OPENSSL_ia32cap=0:0`; its own assembly code.",
                     Digesting(plainSha1, octets));
  return comparison.Get();
}

}  // namespace
}  // namespace bench

int main(int count, char** arguments) {
  using namespace bench;
  Initialize(count, arguments);
  const View large = RandomOctets(kLarge);
  const View certificate = RandomOctets(kSizeOfCertificate);
  const View publicKey = RandomOctets(kSizeOfPublicKey);
  const OpensslSha1 plainSha1 = LoadPlainSha1();
  const std::vector<Operation> operations = {
      Base64Encoding(large),       Base64Encoding(certificate),     Base64Decoding(large), Base64Decoding(certificate),
      Base64LineDecoding(large),   Base64LineDecoding(certificate), PemEncoding(large),    PemEncoding(certificate),
      PemDecoding(large),          PemDecoding(certificate),        Sha1(large),           Sha1(publicKey),
      PlainSha1(large, plainSha1), PlainSha1(publicKey, plainSha1)};
  Print({"Base64, PEM and SHA-1",
         "Figures are nanoseconds for 1,000 octets; those of Base64 and PEM are the octets that the text stands for.",
         "ns"},
        Measure(operations));
}
