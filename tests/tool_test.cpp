// The `tessel` command besides `show`: the element tree, files and the command line.
#include "support/tool.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

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
      {"0209008000000000000000", "INTEGER 0x008000000000000000"},
      {"010100", "BOOLEAN FALSE"},
      {"030305A0E0", "BIT STRING A0E0 (5 unused bits)"},
      {"0603550403", "OBJECT IDENTIFIER 2.5.4.3 (CN)"},
      {"06062A8FFFFFFF7F", "OBJECT IDENTIFIER 1.2.4294967295"},
      {"06062A9080808000", "OBJECT IDENTIFIER 2A9080808000 (not an identifier with arcs of 32 bits)"},
      {"0604558004 03", "OBJECT IDENTIFIER 55800403 (not an identifier with arcs of 32 bits)"},
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
      IsForWindows() ? ".: cannot be opened: Permission denied" : ".: cannot be read: Is a directory",
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
  Lines shown = SplitLines(result.out);
  std::erase_if(shown, [](const std::string& line) { return !line.starts_with("  "); });
  const Lines once = SplitLines(Shell("$tessel show " + samplePath + " | tail -n +2").out);
  Lines expected;
  for (int i = 0; i < 4; ++i) expected.insert(expected.end(), once.begin(), once.end());
  EXPECT_EQ(shown, expected);
}

TEST_F(ToolTest, CommandLine) {
  const std::pair<const char*, const char*> wrong[] = {{"", "tessel: a command is missing"},
                                                       {"show --all x", "tessel: there is no option --all"},
                                                       {"show --json", "tessel: the command show needs a file"},
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
}  // namespace test
