// The `tessel` command besides `show`: the element tree, files and the command line.
#include "support/tool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "support/octets.h"
#include "texts/sha256.h"

namespace test {
namespace {

// ---- The element tree ----

// Offset, header length, content length and depth of one element, as a line.
std::string Position(const std::string& offset, const std::string& header, const std::string& content, size_t depth) {
  return offset + " " + header + " " + content + " depth " + std::to_string(depth);
}

Lines PositionsFromTree(const std::string& out) {
  constexpr size_t kElementColumn = 26;
  Lines positions;
  for (const std::string& line : SplitLines(out)) {
    std::istringstream fields(line);
    std::string offset, header, content;
    fields >> offset >> header >> content;
    if (!line.starts_with(' ')) continue;
    positions.push_back(Position(offset, header, content, (line.find_first_not_of(' ', 24) - kElementColumn) / 2));
  }
  return positions;
}

Lines PositionsFromAsn1parse(const std::string& out) {
  Lines positions;
  for (std::string line : SplitLines(out)) {
    std::string offset, depth, header, content;
    for (const char* separator : {":d=", " hl=", " l="}) ReplaceAll(line, separator, " ");
    std::istringstream fields(line);
    fields >> offset >> depth >> header >> content;
    positions.push_back(Position(offset, header, content == "inf" ? "indefinite" : content, std::stoul(depth)));
  }
  return positions;
}

TEST_F(ToolTest, TreeHasTheElementsThatOpensslFinds) {
  Write("indefinite.ber", Text("3080 3003020105 2480 0401AA 0401BB 0000 A180 3000 0000 0000"));
  const Result tree =
      Shell("$tessel tree indefinite.ber " TESSEL_SOURCE_DIR "/samples/*.pem /usr/share/ca-certificates/mozilla/*");
  const Result parsed =
      Shell("openssl asn1parse -inform DER -in indefinite.ber && for file in " TESSEL_SOURCE_DIR
            "/samples/*.pem /usr/share/ca-certificates/mozilla/*; do openssl asn1parse -in $file || exit 1; done");
  EXPECT_EQ(tree.status, 0) << tree.err;
  ASSERT_EQ(parsed.status, 0) << parsed.err;
  const Lines shown = PositionsFromTree(tree.out);
  ASSERT_GT(shown.size(), 1000U);
  EXPECT_EQ(shown, PositionsFromAsn1parse(parsed.out));
}

TEST_F(ToolTest, TreeExplainsElements) {
  const std::map<std::string, std::string> elements = {
      {"02087FFFFFFFFFFFFFFF", "INTEGER 9223372036854775807"},
      {"02088000000000000000", "INTEGER -9223372036854775808"},
      {"0209008000000000000000", "INTEGER 0x008000000000000000"},
      {"010100", "BOOLEAN FALSE"},
      {"030305A0E0", "BIT STRING A0E0 (5 unused bits)"},
      {"0603550403", "OBJECT IDENTIFIER 2.5.4.3 (CN)"},
      {"0603883703", "OBJECT IDENTIFIER 2.999.3"},
      {"06062A9080808000", "OBJECT IDENTIFIER 1.2.4294967296"},
      {"0604558004 03", "OBJECT IDENTIFIER 55800403 (not an identifier, or too large a one)"},
      {"0C0841C3A9C080221B5C", R"(UTF8String "Aé\C0\80\"\1B\\")"},
      {"1E060416D83DDE00", R"(BMPString "Ж😀")"},
      {"1402E941", R"(TeletexString "éA")"},
      {"170B3236303130313030305A0A", R"(UTCTime 260101000Z\0A)"},
      {"1000", "SEQUENCE (primitive)"},
      {"8201FF", "[2] FF"},
      {"DF9080808001 00", "[PRIVATE 4294967297]"},
      {"0421000102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F20",
       "OCTET STRING 000102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F... (33 octets)"},
  };
  for (const auto& [hex, expected] : elements) {
    Write("it.ber", Text(hex));
    const Result tree = Shell("$tessel tree it.ber");
    EXPECT_EQ(tree.status, 0) << hex << ": " << tree.err;
    ASSERT_GT(tree.out.size(), 34U) << hex;
    EXPECT_EQ(tree.out.substr(33), expected + "\n") << hex;
  }
}

struct Malformed {
  const char* hex;
  size_t elements;  // how many are shown before the place where it breaks
  const char* error;
};

TEST_F(ToolTest, TreeTellsWhereAnEncodingBreaks) {
  const Malformed cases[] = {
      {"02", 0, "offset 0: the length runs past the end of the input"},
      {"3003 0201", 0, "offset 0: the content of 3 octets runs past the end of the input, which has room for 2"},
      {"3006 3002 0202 0102", 2,
       "offset 4: the content of 2 octets runs past the end of the element at offset 2, which has room for 0"},
      {"3080 3003 020201 0000", 2,
       "offset 4: the content of 2 octets runs past the end of the element at offset 2, which has room for 1"},
      {"3080 020105", 2, "offset 5: the end-of-contents octets of the element at offset 0 are missing"},
      {"3080 3002 0000 0000", 2,
       "offset 4: end-of-contents octets stand where no element of indefinite length is open"},
      {"3080 000100", 1, "offset 2: an element has the reserved universal tag number 0"},
      {"0480 0000", 0, "offset 0: a primitive element has an indefinite length"},
      {"0485 0000000001 FF", 0, "offset 0: the length takes 5 octets, at most 4 are supported"},
      {"0484 FFFFFFFF FF", 0,
       "offset 0: the content of 4294967295 octets runs past the end of the input, which has room for 1"},
      {"3003 1F8F8F 0101", 1, "offset 2: the tag number runs past the end of the element at offset 0"},
  };
  for (const Malformed& it : cases) {
    Write("it.ber", Text(it.hex));
    const Result tree = Shell("$tessel tree it.ber");
    EXPECT_EQ(tree.status, 1) << it.hex;
    EXPECT_EQ(tree.err, std::string("tessel: it.ber: ") + it.error + "\n") << it.hex;
    EXPECT_EQ(SplitLines(tree.out).size(), 1 + it.elements) << it.hex;
  }
}

TEST_F(ToolTest, TenMillionOpenLevelsAreNoProblem) {
  std::string nested;
  for (int i = 0; i < 10'000'000; ++i) nested += "\x30\x80";
  Write("deep.ber", nested);
  // The limits stop a tool that recurses, and one that spends more on each further level.
  const std::string limits = "ulimit -s 512; ulimit -t 60; ";
  const std::pair<const char*, const char*> commands[] = {
      {"tree", "offset 20000000: the end-of-contents octets of the element at offset 19999998 are missing"},
      {"show",
       "not a certificate: tbsCertificate.serialNumber, offset 4: an INTEGER was expected, a SEQUENCE is there; tessel "
       "tree shows its elements"}};
  for (const auto& [command, error] : commands) {
    const Result result = Shell(limits + "$tessel " + command + " deep.ber >/dev/null");
    EXPECT_EQ(result.status, 1) << command;
    EXPECT_EQ(result.err, std::string("tessel: deep.ber: ") + error + '\n');
  }
}

// ---- SHA-256 ----

template <size_t size>
constexpr tool::Sha256Digest Sha256Of(const char (&text)[size]) {
  std::array<uint8_t, size - 1> octets{};
  std::copy_n(text, size - 1, octets.begin());
  return tool::Sha256(octets);
}
static_assert(Sha256Of("abc") == tool::Sha256Digest{0xBA, 0x78, 0x16, 0xBF, 0x8F, 0x01, 0xCF, 0xEA, 0x41, 0x41, 0x40,
                                                    0xDE, 0x5D, 0xAE, 0x22, 0x23, 0xB0, 0x03, 0x61, 0xA3, 0x96, 0x17,
                                                    0x7A, 0x9C, 0xB4, 0x10, 0xFF, 0x61, 0xF2, 0x00, 0x15, 0xAD});

TEST_F(ToolTest, Sha256IsThatOfTheStandardAndOfOpenssl) {
  const auto hex = [](const tool::Sha256Digest& digest) { return ToHex({digest.begin(), digest.end()}); };
  EXPECT_EQ(hex(Sha256Of("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq")),
            "24 8D 6A 61 D2 06 38 B8 E5 C0 26 93 0C 3E 60 39 A3 3C E4 59 64 FF 21 67 F6 EC ED D4 19 DB 06 C1");
  std::string expected;
  for (size_t size = 0; size < 200; ++size) {
    const std::string text(size, static_cast<char>(size));
    Write(std::to_string(1000 + size), text);
    expected += hex(tool::Sha256(Bytes(text.begin(), text.end()))) + '\n';
  }
  ReplaceAll(expected, " ", "");
  EXPECT_EQ(Shell("openssl dgst -sha256 -r 1* | cut -c1-64 | tr a-f A-F").out, expected);
}

// ---- Memory ----

std::string Element(char identifier, const std::string& content) {
  std::string length;
  for (size_t left = content.size(); left != 0; left >>= 8) length.insert(0, 1, static_cast<char>(left));
  if (content.size() < 0x80) return std::string{identifier, static_cast<char>(content.size())} + content;
  return std::string{identifier, static_cast<char>(0x80 | length.size())} + length + content;
}

// A certificate with hardly more in it than an extension.
std::string CertificateWith(const std::string& identifier, const std::string& value) {
  const std::string members = Text(
      "A003020102 020101 300306012A 3000 301E 170D3236303130313030303030305A 170D3236303130313030303030305A 3000"
      "3008 300306012A 030100");
  const std::string extension = Element('\x30', identifier + Element('\x04', value));
  const std::string tbs = Element('\x30', members + Element('\xA3', Element('\x30', extension)));
  return Element('\x30', tbs + Text("300306012A 030100"));
}

TEST_F(ToolTest, MemoryIsThatOfTheFileAndItsTreeAndItsLackIsTold) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "sanitizers take address space of their own";
#endif
  if (IsForWindows()) GTEST_SKIP() << "Windows has no limit of this kind";
  constexpr size_t kSize = 64'000'000;
  std::string purposes;
  for (int i = 0; i < 1'000'000; ++i) purposes += "\x06\x01\x2A";
  Write("large.der", CertificateWith(Text("06032A0308"), std::string(kSize, 'x')));
  Write("many.der", CertificateWith(Text("0603551D25"), Element('\x30', purposes)));
  const auto limited = [this](size_t size, const std::string& command) {
    return Shell("ulimit -v " + std::to_string(size / 1024) + "; $tessel " + command);
  };
  const std::tuple<const char*, const char*, size_t> commands[] = {
      {"tree ", "many.der", 0},  {"show ", "many.der", 0},  {"show --json ", "many.der", 0},
      {"tree ", "large.der", 1}, {"show ", "large.der", 2}, {"show --json ", "large.der", 2}};
  for (const auto& [command, file, times] : commands) {
    const Result enough = limited((times * kSize) + 44'000'000, std::string(command) + file + " >/dev/null");
    EXPECT_EQ(enough.status, 0) << command << file << enough.err;
    if (times == 0) continue;
    const Result tooLittle = limited(times * kSize, std::string(command) + file);
    EXPECT_EQ(tooLittle.status, 1) << command;
    EXPECT_EQ(tooLittle.err, "tessel: large.der: there is not enough memory\n") << command;
  }
  const std::string sample = TESSEL_SOURCE_DIR "/samples/root.pem ";
  const Result json = limited(64'000'000, "show --json " + sample + "large.der " + sample);
  EXPECT_EQ(json.status, 1);
  EXPECT_EQ(json.err, "tessel: large.der: there is not enough memory\n");
  EXPECT_EQ(json.out, Shell("$tessel show --json " + sample + sample).out);
  // From where not even the loader gets what it wants, and tells that by 127, to where there is enough.
  EXPECT_EQ(Shell("for size in $(seq 4000 4 9000); do (ulimit -v $size; $tessel show " + sample +
                  "; echo $? >&3) >/dev/null 2>&1; done 3>&1 | sort -u | tr '\\n' ' '")
                .out,
            "0 1 127 ");
}

TEST_F(ToolTest, JsonIsWholeWhereverMemoryEnds) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "sanitizers take address space of their own";
#endif
  if (IsForWindows()) GTEST_SKIP() << "Windows has no limit of this kind";
  std::string names;
  for (int i = 0; i < 30'000; ++i) names += Element('\x82', "a.bc");
  Write("it.der", CertificateWith(Text("0603551D11"), Element('\x30', names)));
  const Result all =
      Shell("for size in $(seq 7500 20 10500); do (ulimit -v $size; $tessel show --json " TESSEL_SOURCE_DIR
            "/samples/root.pem it.der >json.$size); done");
  ASSERT_EQ(all.status, 0) << all.err;
  size_t failed = 0;
  size_t shown = 0;
  for (int size = 7500; size <= 10500; size += 20) {
    const std::string json = ReadAll(folder_ / ("json." + std::to_string(size)));
    if (json.empty()) continue;  // what failed is the loader
    ASSERT_TRUE(nlohmann::json::accept(json)) << size;
    ++(json.size() < 10'000 ? failed : shown);
  }
  EXPECT_LT(0U, failed);
  EXPECT_LT(0U, shown);
}

TEST_F(ToolTest, PeopleSeeTheBeginningOfALongText) {
  std::string shown = "a", text = "a";
  for (int i = 0; i < 2047; ++i) shown += "Ж";
  for (int i = 0; i < 3000; ++i) text += "Ж";
  const std::string comment = Element('\x0C', text);
  Write("it.der", CertificateWith(Text("06096086480186F842010D"), comment));
  Write("comment", comment);
  EXPECT_TRUE(Shell("$tessel show it.der").out.ends_with("      " + shown + "... (6001 octets)\n"));
  EXPECT_TRUE(Shell("$tessel tree comment").out.ends_with("UTF8String \"" + shown + "\"... (6001 octets)\n"));
  EXPECT_NE(Shell("$tessel show --json it.der").out.find("\"value\": \"" + text + "\"\n"), std::string::npos);
}

TEST_F(ToolTest, ValuesAreToldAsTheyAreWritten) {
  const std::tuple<const char*, const char*, const char*> values[] = {
      {"0603551D0F", "030207FF", "      digitalSignature\n"},
      {"0603551D0F", "0306008000000080", "      digitalSignature, bit 32\n"},
      {"0603551D0F", "030600FFFFFFFFFF", ", bit 30, bit 31... (5 octets)\n"},
      {"0603551D0E", "2480 040161 0000 4A4B", "      61\n      Octets behind the value: 4A4B\n"},
      {"0603551D10", "3011 800F32303233303232393030303030305A",
       "      Valid from: 2023-02-29 00:00:00 UTC (out of range)\n"},
      {"0603551D11", "300B A009 86022A03 A0030C0178", "      Other name: A00986022A03A0030C0178\n"},
      {"0603551D11", "3009 A007 06022A03 0C0178", "      Other name: A00706022A030C0178\n"},
  };
  for (const auto& [identifier, value, told] : values) {
    Write("it.der", CertificateWith(Text(identifier), Text(value)));
    const std::string shown = Shell("$tessel show it.der").out;
    EXPECT_TRUE(shown.ends_with(told)) << shown;
  }
}

// ---- Files and the command line ----

TEST_F(ToolTest, PemIsToldFromWhatStandsAroundIt) {
  const std::string sample = ReadAll(TESSEL_SOURCE_DIR "/samples/certificate.pem");
  const std::string shown = Shell("$tessel show " TESSEL_SOURCE_DIR "/samples/certificate.pem").out;
  const std::string below = shown.substr(shown.find('\n'));
  std::string commented = sample;
  ReplaceAll(commented, "BEGIN CERTIFICATE-----\n", "BEGIN CERTIFICATE-----\nComment: not ENCRYPTED\n\n");
  for (const std::string& file : {"a log \x1B[32mm\xFC\n" + sample, commented}) {
    Write("it", file);
    const Result result = Shell("$tessel show it");
    EXPECT_EQ(result.out.substr(result.out.find('\n')), below) << result.err;
  }
  // A text in sound BER, whose length makes a block of what stands before it.
  const std::string text = "x\n-----BEGIN CERTIFICATE-----\nMAA=\n";
  Write("it", Text("0C822526") + text + std::string(0x2526 - text.size(), 'y'));
  EXPECT_EQ(Shell("$tessel tree it").err, "");
}

TEST_F(ToolTest, ErrorsAreToldAndTheOtherInputsAreShown) {
  const std::string samplePath = TESSEL_SOURCE_DIR "/samples/certificate.pem";
  const std::string sample = ReadAll(samplePath);
  std::string windows = sample;
  ReplaceAll(windows, "\n", " \r\n\r\n ");
  std::string oneLine = sample;
  ReplaceAll(oneLine, "\n", "");
  const std::string begin = "-----BEGIN CERTIFICATE-----\n";
  const std::string end = "-----END CERTIFICATE-----\n";
  Write("empty", "");
  Write("integer.der", Text("020105"));
  Write("cut.pem", "0 text\n" + sample.substr(0, sample.find("-----END")));
  Write("many.pem", "\xEF\xBB\xBF" + begin + "MAA!\n" + end + begin + "M\nAA\n" + end + begin + "MA==\nMAA=\n" + end +
                        begin + end + begin + "MAA=\n" + begin + "MAMCAQ==\n" + end + begin +
                        "MAA=\n-----END KEY-----\n" + windows + "\ntext\n" + oneLine + '\n' + sample);
  ASSERT_EQ(Shell("openssl x509 -in " + samplePath +
                  " -outform DER -out good.der && "
                  "{ cat good.der; echo hello; } >long.der && head -c 900 good.der >short.der && "
                  "base64 -w 7 good.der | sed 's/^/ /' >bare && base64 short.der >short")
                .status,
            0);

  const Result result =
      Shell("$tessel show empty integer.der missing . cut.pem many.pem long.der short.der bare short - <good.der");
  EXPECT_EQ(result.status, 1);
  const std::string advice = "; tessel tree shows its elements";
  const std::string isShort =
      "not a certificate: offset 0: the length of 1284 runs past the end of the input, which has 896 octets left" +
      advice;
  const Lines errors = {
      "empty: the file is empty",
      "integer.der: not a certificate: offset 0: a SEQUENCE was expected, an INTEGER is there" + advice,
      "missing: cannot be opened: No such file or directory",
      IsForWindows() ? ".: cannot be opened: Permission denied" : ".: cannot be read: Is a directory",
      "cut.pem: certificate 1 (line 2): the END line is missing",
      "many.pem: certificate 1 (line 1): the text between the marker lines is not Base64",
      "many.pem: certificate 2 (line 4): the text between the marker lines is not Base64",
      "many.pem: certificate 3 (line 8): the text between the marker lines is not Base64",
      "many.pem: certificate 4 (line 12): the block is empty",
      "many.pem: certificate 5 (line 14): line 16: another block begins before the END line",
      ("many.pem: certificate 6 (line 16): not a certificate: offset 0: the length of 3 runs past the end of the "
       "input, "
       "which has 2 octets left" +
       advice),
      "many.pem: certificate 7 (line 19): line 21: the END line does not fit the BEGIN line",
      "long.der: offset 1288: the object is followed by 6 octets",
      "short.der: " + isShort,
      "short: " + isShort,
  };
  Lines told = SplitLines(result.err);
  for (std::string& line : told) line.erase(0, std::string("tessel: ").size());
  EXPECT_EQ(told, errors);
  Lines shown = SplitLines(result.out);
  std::erase_if(shown, [](const std::string& line) { return !line.starts_with("  "); });
  const Lines once = SplitLines(Shell("$tessel show " + samplePath + " | tail -n +2").out);
  Lines expected;
  for (int i = 0; i < 6; ++i) expected.insert(expected.end(), once.begin(), once.end());
  EXPECT_EQ(shown, expected);
  EXPECT_EQ(Shell("$tessel tree bare | tail -n +2").out, Shell("$tessel tree good.der | tail -n +2").out);
}

TEST_F(ToolTest, WhatIsNoEncodingIsCalledSo) {
  const std::string binaries[] = {Text("89504E470D0A1A0A0000000D49484452"), Text("1F8B0800000000000003"),
                                  Text("7F454C460201"), Text("FFFE30003000")};
  Lines files = {"hello\n", "password\n", " \n", "0 + 1\n", "-----BEGIN\n", "see -----BEGIN X-----\n", "gr\xFCn ist\n"};
  files.insert(files.end(), std::begin(binaries), std::end(binaries));
  for (const std::string& file : files) {
    Write("it", file);
    for (const char* command : {"$tessel show it", "$tessel tree it"}) {
      const Result result = Shell(command);
      EXPECT_EQ(result.status, 1) << file;
      EXPECT_EQ(result.out + result.err, "tessel: it: is neither PEM nor BER nor Base64 of BER\n") << file;
    }
  }
}

TEST_F(ToolTest, WhatIsNotShownYetIsTold) {
  const std::string yet = ", which tessel show does not show yet; tessel tree shows its elements";
  const std::string key = "this is an encrypted key: its octets are no BER, so that tessel can show nothing of it";
  const std::tuple<std::string, std::string, std::string> blocks[] = {
      {"RSA PRIVATE KEY", "Proc-Type: 4,ENCRYPTED\nDEK-Info: X,00\n\nMAA=", key},
      {"X509 CRL", "MAA=", "this is a CRL" + yet},
      {"NEW CERTIFICATE REQUEST", "MAA=", "this is a certificate request" + yet},
      {"TRUSTED CERTIFICATE", "MAA=", "this is a certificate with trust settings of OpenSSL" + yet},
      {"PKCS7", "MAA=", "this is a CMS message" + yet},
      {"OCSP RESPONSE", "MAA=", "this is an OCSP response" + yet},
      {"ENCRYPTED PRIVATE KEY", "MAA=", "this is an encrypted private key" + yet},
      {"PUBLIC KEY", "MAA=", "this is a public key" + yet},
      {"CMS", "MAQFAA==",
       "this is a CMS message, which tessel show does not show yet; its octets are no sound BER: offset 0: the content "
       "of 4 octets runs past the end of the input, which has room for 2"},
      {"A\x1B\xC2\x9B" + std::string(1000, 'B'), "MAA=", "this is a block of another kind" + yet},
  };
  std::string pem;
  Lines expected;
  for (const auto& [label, body, sentence] : blocks) {
    std::string block = "-----BEGIN LABEL-----\nBODY\n-----END LABEL-----\n";
    ReplaceAll(block, "LABEL", label);
    ReplaceAll(block, "BODY", body);
    pem += block;
    expected.push_back(sentence);
  }
  Write("it.pem", pem);
  Lines told = SplitLines(Shell("$tessel show it.pem").err);
  EXPECT_EQ(told.back().substr(0, 94), "tessel: it.pem: a\\1B\\C2\\9B" + std::string(51, 'b') + "... 1 (line 31): ");
  for (std::string& line : told) line.erase(0, line.find("): ") + 3);
  EXPECT_EQ(told, expected);
  EXPECT_TRUE(
      Shell("$tessel tree it.pem").err.starts_with("tessel: it.pem: rsa private key 1 (line 1): " + key + '\n'));

  const Result made = Shell(
      "openssl req -new -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -keyout key.pem -subj /CN=x -outform DER "
      "-out request && openssl pkey -in key.pem -outform DER -out key && "
      "openssl pkey -in key.pem -pubout -outform DER -out public && "
      "openssl pkcs8 -topk8 -in key.pem -passout pass:x -outform DER -out encrypted && "
      "openssl crl2pkcs7 -nocrl -outform DER -out message && openssl ts -query -data message -out query");
  ASSERT_EQ(made.status, 0) << made.err;
  std::string seen = Shell("$tessel show request key public encrypted message query").err;
  ReplaceAll(seen, yet, "");
  EXPECT_EQ(seen, R"(tessel: request: this seems to be a certificate request
tessel: key: this seems to be a private key
tessel: public: this seems to be a public key
tessel: encrypted: this seems to be an encrypted private key
tessel: message: this seems to be a CMS message
tessel: query: this seems to be a request for a time stamp
)");
}

TEST_F(ToolTest, CommandLine) {
  Write("draw", "");
  const std::pair<const char*, const char*> wrong[] = {
      {"", "a command is missing"},
      {"--all", "there is no option --all"},
      {"show --all x", "there is no option --all"},
      {"tree --json x", "there is no option --json"},
      {"show --json", "the command show needs a file"},
      {"drow x", "there is no command drow"},
      {"x.pem", "there is no command x.pem, but there is tessel show x.pem"},
      {"draw x", "there is no command draw, but there is tessel show draw"},
      {"\"$(printf 'a\\033')\"", "there is no command a\\1B"}};
  for (const auto& [arguments, sentence] : wrong) {
    const Result result = Shell(std::string("$tessel ") + arguments);
    EXPECT_EQ(result.status, 2) << arguments;
    EXPECT_EQ(result.out, "") << arguments;
    EXPECT_EQ(result.err, std::string("tessel: ") + sentence + "; see tessel --help\n");
  }
  for (const char* arguments : {"--help", "-h", "help", "show --help", "show -h x", "tree --help"}) {
    const Result help = Shell(std::string("$tessel ") + arguments);
    EXPECT_EQ(help.status, 0) << arguments;
    EXPECT_TRUE(help.out.starts_with("usage: tessel show FILE...")) << arguments;
  }
  const std::string sample = TESSEL_SOURCE_DIR "/samples/root.pem ";
  EXPECT_EQ(Shell("cp " + sample + "./--json; $tessel show --json -- --json >out").status, 0);
  const Result full = Shell("$tessel tree " + sample + ">/dev/full");
  EXPECT_EQ(full.status, 1);
  EXPECT_EQ(full.err, "tessel: standard output: cannot be written: No space left on device\n");
  const Result version = Shell("$tessel --version");
  EXPECT_EQ(version.status, 0);
  EXPECT_TRUE(version.out.starts_with("tessel " TESSEL_PROJECT_VERSION "\nTESSEL v1.0 ")) << version.out;
}

}  // namespace
}  // namespace test
