// The `tessel` command, run as its users run it and held against the openssl command line.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/octets.h"

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

std::string ReadAll(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

Lines SplitLines(const std::string& text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

struct Result {
  int status = -1;
  std::string out;
  std::string err;
};

// Each test has a folder of its own, in which its commands run.
class ToolTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "/tessel-tool-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder_ = pattern;
  }
  void TearDown() override { fs::remove_all(folder_); }

  void Write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ / name, std::ios::binary) << text;
  }
  void WriteHex(const std::string& name, const std::string& hex) const {
    const test::Bytes octets = test::FromHex(hex);
    Write(name, std::string(octets.begin(), octets.end()));
  }

  // $tessel in the command is the tool.
  [[nodiscard]] Result Shell(const std::string& command) const {
    const fs::path errors = folder_ / "stderr";
    const std::string setup = "cd '" + folder_.string() + "'; LC_ALL=C; export LC_ALL; tessel='" TESSEL_TOOL "'; ";
    Result result;
    FILE* pipe = popen((setup + "{ " + command + "\n} 2>'" + errors.string() + "'").c_str(), "r");
    if (pipe == nullptr) return result;
    std::array<char, 65536> chunk{};
    while (const size_t got = std::fread(chunk.data(), 1, chunk.size(), pipe)) result.out.append(chunk.data(), got);
    const int ended = pclose(pipe);
    if (WIFEXITED(ended)) result.status = WEXITSTATUS(ended);
    result.err = ReadAll(errors);
    return result;
  }

  fs::path folder_;
};

// ---- Certificates, as openssl sees them ----

// What is compared, in one text for each certificate.
std::string Facts(std::map<std::string, std::string>& fields, size_t extensions) {
  std::string facts;
  for (const char* name : {"serial", "issuer", "subject", "notBefore", "notAfter", "key"}) {
    facts += std::string(name) + "=" + fields[name] + "\n";
  }
  return facts + "extensions=" + std::to_string(extensions);
}

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
    text.replace(at, from.size(), to);
}

std::vector<std::string> FactsFromTessel(const std::string& out) {
  const std::map<std::string, std::string> names = {{"Serial number", "serial"}, {"Issuer", "issuer"},
                                                    {"Subject", "subject"},      {"Valid from", "notBefore"},
                                                    {"Valid until", "notAfter"}, {"Public key", "key"}};
  std::vector<std::string> all;
  std::map<std::string, std::string> fields;
  size_t extensions = 0;
  for (const std::string& line : SplitLines(out + "\n")) {
    if (line.empty()) {
      all.push_back(Facts(fields, extensions));
      fields.clear();
      extensions = 0;
    } else if (line.starts_with("    ")) {
      ++extensions;
    } else if (const size_t colon = line.find(':'); line.starts_with("  ") && colon != std::string::npos) {
      const auto name = names.find(line.substr(2, colon - 2));
      if (name == names.end()) continue;
      std::string& value = fields[name->second] = line.substr(line.find_first_not_of(' ', colon + 1));
      ReplaceAll(value, " (out of range)", "");
      ReplaceAll(value, ", (empty)", "");  // openssl passes over an empty set of attributes
      if (name->second == "key" && !value.starts_with("rsaEncryption")) value.clear();
    }
  }
  return all;
}

std::vector<std::string> FactsFromOpenssl(const std::string& out) {
  std::vector<std::string> all;
  std::map<std::string, std::string> fields;
  size_t extensions = 0;
  for (const std::string& line : SplitLines(out)) {
    const size_t equals = line.find('=');
    if (line == "--") {
      all.push_back(Facts(fields, extensions));
      fields.clear();
      extensions = 0;
    } else if (const size_t rsa = line.find("rsaEncryption"); rsa != std::string::npos) {
      fields["key"] = line.substr(rsa) + ", ";
    } else if (const size_t bits = line.find("Public-Key: ("); bits != std::string::npos) {
      if (!fields["key"].empty()) fields["key"] += line.substr(bits + 13, line.find(')') - bits - 13) + "s";
    } else if (line.starts_with("            ") && line[12] != ' ' && line.find("Public Key") == std::string::npos) {
      ++extensions;
    } else if (!line.starts_with(' ') && equals != std::string::npos) {
      std::string& value = fields[line.substr(0, equals)] = line.substr(equals + 1);
      if (line.starts_with("not")) ReplaceAll(value, "Z", " UTC");
      ReplaceAll(value, "   0-", "0000-");
      ReplaceAll(value, " + ", "+");
      if (value.empty()) value = "(empty)";
    }
  }
  return all;
}

class CertificateTest : public ToolTest {
 protected:
  // Compares the files of a folder that this pattern of ls and the filter leave, shown in one call.
  void CompareFolder(const std::string& folder, const std::string& pattern, const std::string& form) const {
    // The openssl of today does not know the taxpayer number of an organisation yet.
    Write("openssl.cnf", "openssl_conf=init\n[init]\noid_section=oids\n[oids]\nINNLE=1.2.643.100.4\n");
    const std::string list = "cd '" + folder + "' && files=$(ls " + pattern + ") && ";
    const Result expected = Shell(
        "OPENSSL_CONF=$PWD/openssl.cnf; export OPENSSL_CONF; " + list + "for file in $files; do openssl x509 -inform " +
        form +
        " -in $file -noout -serial -issuer -subject -dates -dateopt iso_8601 -text -nameopt esc_2253,esc_ctrl,utf8,"
        "dump_unknown,dump_nostr,dump_der,sep_comma_plus_space,sname -certopt "
        "no_header,no_version,no_serial,no_signame,"
        "no_validity,no_subject,no_issuer,no_sigdump,no_aux || exit 1; echo --; done");
    ASSERT_EQ(expected.status, 0) << expected.err;
    const Result shown = Shell(list + "$tessel show $files");
    EXPECT_EQ(shown.status, 0) << shown.err;

    const std::vector<std::string> expectedFacts = FactsFromOpenssl(expected.out);
    const std::vector<std::string> shownFacts = FactsFromTessel(shown.out);
    const Lines names = SplitLines(Shell(list + "echo \"$files\"").out);
    ASSERT_GE(names.size(), 100U) << "the certificates to compare are missing in " << folder;
    ASSERT_EQ(expectedFacts.size(), names.size());
    ASSERT_EQ(shownFacts.size(), names.size());
    for (size_t i = 0; i < names.size(); ++i) EXPECT_EQ(shownFacts[i], expectedFacts[i]) << names[i];
  }
};

TEST_F(CertificateTest, RootsOfMozillaAreShownAsOpensslShowsThem) {
  CompareFolder("/usr/share/ca-certificates/mozilla", "*.crt", "PEM");
}

TEST_F(CertificateTest, CorpusIsShownAsOpensslShowsIt) {
  const std::string corpus = TESSEL_SOURCE_DIR "/../shared/corpus/cert";
  if (!fs::exists(corpus)) GTEST_SKIP() << "this machine has no corpus";
  // Left out: a BOOLEAN that the library refuses, control characters, which openssl hands to the terminal, and times
  // with an offset, which are told as they are written.
  CompareFolder(
      corpus, "*.der | grep -v -e extension_critical_3 -e t61string_126-160 -e v1_explicit_version -e parsecert4-time",
      "DER");
}

TEST_F(ToolTest, NamesCannotDriveATerminal) {
  const Result made = Shell(
      "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -keyout /dev/null -utf8 -out it.pem "
      "-multivalue-rdn -subj \"$(printf '/CN=\\033[2J\\302\\233\\342\\200\\256\\177x/O=#1, \"2\" <3>; "
      "/OU=a+L=\\320\\226')\"");
  ASSERT_EQ(made.status, 0) << made.err;
  const Result shown = Shell("$tessel show it.pem");
  EXPECT_EQ(shown.status, 0) << shown.err;
  EXPECT_NE(shown.out.find("Subject:             CN=\\1B[2J\\C2\\9B\\E2\\80\\AE\\7Fx, "
                           "O=\\#1\\, \\\"2\\\" \\<3\\>\\;\\ , OU=a+L=Ж\n"),
            std::string::npos)
      << shown.out;
  EXPECT_NE(shown.out.find("Public key:          EC, secp256r1\n"), std::string::npos) << shown.out;
  EXPECT_NE(shown.out.find("    basicConstraints, critical  30030101FF\n"), std::string::npos) << shown.out;
}

TEST_F(ToolTest, TimesAreTold) {
  const std::pair<const char*, const char*> times[] = {
      {"500101000000Z", "1950-01-01 00:00:00 UTC"},
      {"491231235959Z", "2049-12-31 23:59:59 UTC"},
      {"26010100+0130", "26010100+0130 (not a time as certificates have it)"},
      {"261301000000Z", "26-13-01 00:00:00 UTC (out of range)"},
      {"260101240000Z", "26-01-01 24:00:00 UTC (out of range)"},
      {"260101000000\n", "260101000000\\0A (not a time as certificates have it)"},
  };
  const Result made =
      Shell("openssl x509 -in " TESSEL_SOURCE_DIR "/samples/certificate.pem -outform DER -out good.der");
  ASSERT_EQ(made.status, 0) << made.err;
  for (const auto& [written, expected] : times) {
    std::string certificate = ReadAll(folder_ / "good.der");
    ReplaceAll(certificate, "260101000000Z", written);
    Write("it.der", certificate);
    const Result shown = Shell("$tessel show it.der");
    EXPECT_NE(shown.out.find(std::string("Valid from:          ") + expected + "\n"), std::string::npos) << shown.out;
  }
}

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
  WriteHex("indefinite.ber", "3080 3003020105 2480 0401AA 0401BB 0000 A180 3000 0000 0000");
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
      {"0A0180", "ENUMERATED -128"},
      {"0209008000000000000000", "INTEGER 0x008000000000000000"},
      {"010100", "BOOLEAN FALSE"},
      {"030305A0E0", "BIT STRING A0E0 (5 unused bits)"},
      {"0603550403", "OBJECT IDENTIFIER 2.5.4.3 (CN)"},
      {"06062A8FFFFFFF7F", "OBJECT IDENTIFIER 1.2.4294967295"},
      {"06062A9080808000", "OBJECT IDENTIFIER 2A9080808000 (not an identifier with arcs of 32 bits)"},
      {"0603883703", "OBJECT IDENTIFIER 26.39.3"},
      {"060B2B82808080808080808000",
       "OBJECT IDENTIFIER 2B82808080808080808000 (not an identifier with arcs of 32 bits)"},
      {"06032B0481", "OBJECT IDENTIFIER 2B0481 (not an identifier with arcs of 32 bits)"},
      {"0604558004 03", "OBJECT IDENTIFIER 55800403 (not an identifier with arcs of 32 bits)"},
      {"0C0841C3A9C080221B5C", R"(UTF8String "Aé\C0\80\"\1B\\")"},
      {"1E060416D83DDE00", R"(BMPString "Ж😀")"},
      {"1C0400000416", R"(UniversalString "Ж")"},
      {"1402E941", R"(TeletexString "éA")"},
      {"1302E941", R"(PrintableString "\E9A")"},
      {"170B3236303130313030305A0A", R"(UTCTime 260101000Z\0A)"},
      {"1000", "SEQUENCE (primitive)"},
      {"2400", "OCTET STRING (constructed)"},
      {"8201FF", "[2] FF"},
      {"5F8F7F00", "[APPLICATION 2047]"},
      {"DF9080808001 00", "[PRIVATE 4294967297]"},
      {"0421000102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F20",
       "OCTET STRING 000102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F... (33 octets)"},
  };
  for (const auto& [hex, expected] : elements) {
    WriteHex("it.ber", hex);
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
      {"30", 0, "offset 0: the length runs past the end of the input"},
      {"3003 0201", 0, "offset 0: the content of 3 octets runs past the end of the input, which has room for 2"},
      {"3003020105 3082", 2, "offset 5: the length runs past the end of the input"},
      {"3006 3002 0202 0102", 2,
       "offset 4: the content of 2 octets runs past the end of the element at offset 2, which has room for 0"},
      {"3080 3003 020201 0000", 2,
       "offset 4: the content of 2 octets runs past the end of the element at offset 2, which has room for 1"},
      {"3080 0208 01 0000", 1,
       "offset 2: the content of 8 octets runs past the end of the input, which has room for 3"},
      {"3080 020105", 2, "offset 5: the end-of-contents octets of the element at offset 0 are missing"},
      {"3006 3080 020105 00", 3, "offset 7: the length runs past the end of the element at offset 0"},
      {"3080 3002 0000 0000", 2,
       "offset 4: end-of-contents octets stand where no element of indefinite length is open"},
      {"3000 0000", 1, "offset 2: end-of-contents octets stand where no element of indefinite length is open"},
      {"3080 000100", 1, "offset 2: an element has the reserved universal tag number 0"},
      {"0480 0000", 0, "offset 0: a primitive element has an indefinite length"},
      {"0485 0000000001 FF", 0, "offset 0: the length takes 5 octets, at most 4 are supported"},
      {"0484 FFFFFFFF FF", 0,
       "offset 0: the content of 4294967295 octets runs past the end of the input, which has room for 1"},
      {"3003 1F8F8F 0101", 1, "offset 2: the tag number runs past the end of the element at offset 0"},
  };
  for (const Malformed& it : cases) {
    WriteHex("it.ber", it.hex);
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
  for (const char* command : {"tree", "show"}) {
    const Result result = Shell(limits + "$tessel " + command + " deep.ber >/dev/null");
    EXPECT_EQ(result.status, 1) << command;
    EXPECT_TRUE(result.err.starts_with("tessel: deep.ber: offset 20000000: ")) << result.err;
    EXPECT_TRUE(result.err.ends_with("octets of the element at offset 19999998 are missing\n")) << result.err;
  }
}

// ---- Files and the command line ----

TEST_F(ToolTest, ErrorsAreToldAndTheOtherInputsAreShown) {
  const std::string samplePath = TESSEL_SOURCE_DIR "/samples/certificate.pem";
  const std::string sample = ReadAll(samplePath);
  std::string windows = sample;
  ReplaceAll(windows, "\n", " \r\n\r\n");
  const std::string begin = "-----BEGIN CERTIFICATE-----\n";
  const std::string end = "-----END CERTIFICATE-----\n";
  Write("empty", "");
  Write("text", "hello\n");
  WriteHex("integer.der", "020105");
  Write("cut.pem", "0 text\n" + sample.substr(0, sample.find("-----END")));
  Write("many.pem", "\xEF\xBB\xBF" + begin + "MAA!\n" + end + begin + "M\nAA\n" + end + begin + "MA==\nMAA=\n" + end +
                        begin + end + begin + "MAA=\n" + begin + "MAMCAQ==\n" + end +
                        "text\n-----BEGIN KEY-----\nMAA=\n-----END KEY-----\n" + begin + "MAA=\n-----END KEY-----\n" +
                        windows + "text\n" + sample);
  ASSERT_EQ(Shell("openssl x509 -in " + samplePath +
                  " -outform DER -out good.der && cat good.der text >long.der && "
                  "head -c 900 good.der >short.der")
                .status,
            0);

  const Result result =
      Shell("$tessel show empty text integer.der missing . cut.pem many.pem long.der short.der - <good.der");
  EXPECT_EQ(result.status, 1);
  const Lines errors = {
      "empty: the file is empty",
      ("text: offset 0: an element is malformed or missing: the content of 101 octets runs past the end of the input, "
       "which has room for 4"),
      "integer.der: offset 0: not a certificate: an element is malformed or missing",
      "missing: cannot be opened: No such file or directory",
      ".: cannot be read: Is a directory",
      "cut.pem: certificate 1 (line 2): the END line is missing",
      "many.pem: certificate 1 (line 1): the text between the marker lines is not Base64",
      "many.pem: certificate 2 (line 4): the text between the marker lines is not Base64",
      "many.pem: certificate 3 (line 8): the text between the marker lines is not Base64",
      "many.pem: certificate 4 (line 12): the block is empty",
      "many.pem: certificate 5 (line 14): line 16: another block begins before the END line",
      ("many.pem: certificate 6 (line 16): offset 0: an element is malformed or missing: the content of 3 octets runs "
       "past the end of the input, which has room for 2"),
      "many.pem: key 1 (line 20): blocks labelled \"KEY\" are not supported",
      "many.pem: certificate 7 (line 23): line 25: the END line does not fit the BEGIN line",
      "long.der: offset 1288: the object is followed by 6 octets",
      ("short.der: offset 0: an element is malformed or missing: the content of 1284 octets runs past the end of the "
       "input, which has room for 896"),
  };
  Lines told = SplitLines(result.err);
  for (std::string& line : told) line.erase(0, std::string("tessel: ").size());
  EXPECT_EQ(told, errors);
  const std::vector<std::string> shown = FactsFromTessel(result.out);
  const std::vector<std::string> expected = FactsFromTessel(Shell("$tessel show " + samplePath).out);
  EXPECT_EQ(shown, std::vector<std::string>(4, expected.at(0))) << result.out;
}

TEST_F(ToolTest, CommandLine) {
  const std::pair<const char*, const char*> wrong[] = {{"", "tessel: a command is missing"},
                                                       {"tree", "tessel: the command tree needs a file"},
                                                       {"show --all x", "tessel: there is no option --all"},
                                                       {"draw x", "tessel: there is no command draw"}};
  for (const auto& [arguments, sentence] : wrong) {
    const Result result = Shell(std::string("$tessel ") + arguments);
    EXPECT_EQ(result.status, 2) << arguments;
    EXPECT_EQ(result.out, "") << arguments;
    EXPECT_TRUE(result.err.starts_with(std::string(sentence) + "\nusage: tessel show FILE...")) << result.err;
  }
  const Result help = Shell("$tessel --help");
  EXPECT_EQ(help.status, 0);
  EXPECT_TRUE(help.out.starts_with("usage: ")) << help.out;
  const Result full = Shell("$tessel tree " TESSEL_SOURCE_DIR "/samples/root.pem >/dev/full");
  EXPECT_EQ(full.status, 1);
  EXPECT_EQ(full.err, "tessel: standard output: cannot be written: No space left on device\n");
  const Result version = Shell("$tessel --version");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(SplitLines(version.out).size(), 1U) << version.out;
}

}  // namespace
