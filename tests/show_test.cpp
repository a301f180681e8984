// `tessel show`, held against the openssl command line.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/tool.h"

namespace test {
namespace {

namespace fs = std::filesystem;

// What is compared, in one text for each certificate.
std::string Facts(std::map<std::string, std::string>& fields, size_t extensions) {
  std::string facts;
  for (const char* name : {"serial", "issuer", "subject", "notBefore", "notAfter", "key", "sha256 Fingerprint"}) {
    facts += std::string(name) + "=" + fields[name] + "\n";
  }
  return facts + "extensions=" + std::to_string(extensions);
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
    } else if (const size_t exponent = line.find("Exponent: "); exponent != std::string::npos) {
      const std::string number = line.substr(exponent + 10, line.find(" (") - exponent - 10);
      if (number != "65537") fields["key"] += ", exponent " + number;
    } else if (line.starts_with("            ") && line[12] != ' ' && line.find("Public Key") == std::string::npos) {
      ++extensions;
    } else if (!line.starts_with(' ') && equals != std::string::npos) {
      std::string& value = fields[line.substr(0, equals)] = line.substr(equals + 1);
      if (line.starts_with("not")) ReplaceAll(value, "Z", " UTC");
      if (line.starts_with("sha256")) ReplaceAll(value, ":", "");
      ReplaceAll(value, "   0-", "0000-");
      ReplaceAll(value, " + ", "+");
      if (value.empty()) value = "(empty)";
    }
  }
  return all;
}

using Json = nlohmann::json;

std::vector<std::string> FactsFromJson(const std::string& out) {
  const Json list = Json::parse(out, nullptr, false);
  std::vector<std::string> all;
  for (const Json& it : list) {
    const Json& key = it["publicKey"];
    std::map<std::string, std::string> fields = {
        {"serial", it["serialNumber"]},     {"issuer", it["issuer"]["text"]},
        {"subject", it["subject"]["text"]}, {"notBefore", it["notBefore"]},
        {"notAfter", it["notAfter"]},       {"sha256 Fingerprint", it["fingerprints"]["sha256"]}};
    if (key["algorithm"].value("name", "") == "rsaEncryption") {
      fields["key"] =
          "rsaEncryption, " + (key.contains("bits") ? key["bits"].dump() + " bits" : key["octets"].dump() + " octets");
      const Json exponent = key.value("exponent", Json(65537));
      if (exponent != 65537) fields["key"] += ", exponent " + exponent.dump();
    }
    for (const char* time : {"notBefore", "notAfter"}) {
      std::string& text = fields[time];
      if (text.size() != 20) text = "odd";
      ReplaceAll(text, "T", " ");
      ReplaceAll(text, "Z", " UTC");
    }
    ReplaceAll(fields["subject"], ", (empty)", "");
    ReplaceAll(fields["issuer"], ", (empty)", "");
    all.push_back(Facts(fields, it.value("extensions", Json::array()).size()));
  }
  return all;
}

class ShowTest : public ToolTest {
 protected:
  // The JSON about files.
  [[nodiscard]] Json Shown(const std::string& files) const {
    return Json::parse(Shell("$tessel show --json " + files).out, nullptr, false);
  }
};

class CertificateTest : public ToolTest {
 protected:
  // Compares the files of a folder that this pattern of ls and the filter leave, shown in one call.
  void CompareFolder(const std::string& folder, const std::string& pattern, const std::string& form) const {
    // The openssl of today does not know the taxpayer number of an organisation yet.
    Write("openssl.cnf", "openssl_conf=init\n[init]\noid_section=oids\n[oids]\nINNLE=1.2.643.100.4\n");
    const std::string list = "cd '" + folder + "' && files=$(ls " + pattern + ") && ";
    const Result expected = Shell("OPENSSL_CONF=$PWD/openssl.cnf; export OPENSSL_CONF; " + list +
                                  "for file in $files; do openssl x509 -inform " + form +
                                  " -in $file -noout -fingerprint -sha256 -serial -issuer -subject -dates -dateopt "
                                  "iso_8601 -text -nameopt esc_2253,esc_ctrl,utf8,"
                                  "dump_unknown,dump_nostr,dump_der,sep_comma_plus_space,sname -certopt "
                                  "no_header,no_version,no_serial,no_signame,"
                                  "no_validity,no_subject,no_issuer,no_sigdump,no_aux || exit 1; echo --; done");
    ASSERT_EQ(expected.status, 0) << expected.err;
    const Result shown = Shell(list + "$tessel show --json $files");
    EXPECT_EQ(shown.status, 0) << shown.err;

    const std::vector<std::string> expectedFacts = FactsFromOpenssl(expected.out);
    const std::vector<std::string> shownFacts = FactsFromJson(shown.out);
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

TEST_F(ToolTest, OddCertificatesAreShownOrRefusedAlikeInBothForms) {
  const std::string corpus = TESSEL_SOURCE_DIR "/../shared/corpus";
  if (!fs::exists(corpus)) GTEST_SKIP() << "this machine has no corpus";
  const std::string files = " '" + corpus + "'/cert/* '" + corpus + "'/malformed/*";
  const Result text = Shell("$tessel show" + files);
  const Result json = Shell("$tessel show --json" + files);
  EXPECT_EQ(text.status, 1);
  EXPECT_EQ(json.status, 1);
  EXPECT_EQ(json.err, text.err);
  const Lines lines = SplitLines(text.out);
  const auto shown = std::count_if(lines.begin(), lines.end(), [](auto& line) { return line.starts_with("  Serial"); });
  EXPECT_GT(shown, 400);
  EXPECT_EQ(FactsFromJson(json.out).size(), static_cast<size_t>(shown));
}

TEST_F(ShowTest, ACertificateIsLaidOutForPeople) {
  const std::string text = Shell("cd " TESSEL_SOURCE_DIR " && $tessel show samples/certificate.pem").out;
  EXPECT_EQ(text.substr(0, text.find("  Fingerprints")),
            R"(samples/certificate.pem: certificate 1 (line 1)
  Version:             3
  Serial number:       5AEE6C6421AD3C019E18E15A34669338
  Issuer:              C=RU, ST=77 г. Москва, L=Москва, O=ООО «Образец», OU=Удостоверяющий центр, CN=Образец Корневой УЦ
  Subject:             C=RU, ST=78 г. Санкт-Петербург, L=Санкт-Петербург, O=АО «Пример»\, филиал, CN=www.example.ru
  Valid from:          2026-01-01 00:00:00 UTC
  Valid until:         2056-01-01 00:00:00 UTC
  Public key:          EC, secp256r1
  Signature algorithm: sha256WithRSAEncryption
)");
}

TEST_F(ShowTest, GostKeysAreToldWithTheirParameterSets) {
  const std::string sample = TESSEL_SOURCE_DIR "/samples/gost.pem";
  const std::string expected = R"(  Public key:          GOST R 34.10-2012 256, 64 octets
    publicKeyParamSet: id-GostR3410-2001-CryptoPro-A-ParamSet
    digestParamSet:    GOST R 34.11-2012 256
    Consistency check: accepted
  Signature)";
  const Result shown = Shell("$tessel show " + sample);
  EXPECT_NE(shown.out.find(expected), std::string::npos) << shown.out;

  // The digest of the longer keys does not go with this one.
  ASSERT_EQ(Shell("openssl x509 -in " + sample + " -outform DER -out it.der").status, 0);
  std::string certificate = ReadAll(folder_ / "it.der");
  ReplaceAll(certificate, "\x2A\x85\x03\x07\x01\x01\x02\x02", "\x2A\x85\x03\x07\x01\x01\x02\x03");
  Write("it.der", certificate);
  const Json key = Shown("it.der").at(0).at("publicKey");
  EXPECT_EQ(key["octets"], 64);
  EXPECT_EQ(key["digestParamSet"], Json({{"oid", "1.2.643.7.1.1.2.3"}, {"name", "GOST R 34.11-2012 512"}}));
  EXPECT_EQ(key["consistent"], false);

  // Keys with most sets of RFC 9215 have no digest set, so that there is nothing to check.
  const Result made = Shell(
      "for it in 256:TCA 256:TCB 256:TCC 256:TCD 512:A 512:B 512:C; do openssl req -x509 -engine gost "
      "-newkey gost2012_${it%:*} -pkeyopt paramset:${it#*:} -nodes -keyout /dev/null -subj / -out it.pem && "
      "$tessel show it.pem | sed -n '/^  Public/,/^  Sig/p' || exit 1; done");
  ASSERT_EQ(made.status, 0) << made.err;
  std::string sets;
  const std::string checked = "\n    digestParamSet:    GOST R 34.11-2012 512\n    Consistency check: accepted";
  for (const std::string set : {"256:A", "256:B", "256:C", "256:D", "512:A", "512:B", "512:C"}) {
    const std::string bits = set.substr(0, 3);
    std::string told = R"(  Public key:          GOST R 34.10-2012 BITS, SIZE octets
    publicKeyParamSet: id-tc26-gost-3410-2012-BITS-paramSet)";
    told += set.back();
    if (set == "512:A" || set == "512:B") told += checked;
    told += "\n  Signature algorithm: GOST R 34.10-2012 with GOST R 34.11-2012 BITS\n";
    ReplaceAll(told, "BITS", bits);
    ReplaceAll(told, "SIZE", bits == "256" ? "64" : "128");
    sets += told;
  }
  EXPECT_EQ(made.out, sets);
}

TEST_F(ShowTest, ParametersOfRsaPssAreTold) {
  const Result made = Shell(
      "openssl req -x509 -newkey rsa-pss -pkeyopt rsa_pss_keygen_md:sha256 -pkeyopt rsa_pss_keygen_mgf1_md:sha256 "
      "-pkeyopt rsa_pss_keygen_saltlen:32 -sha256 -sigopt rsa_pss_saltlen:33 -nodes -keyout /dev/null -subj / "
      "-out written.pem && openssl req -x509 -newkey rsa:2048 -sha1 -sigopt rsa_padding_mode:pss "
      "-sigopt rsa_pss_saltlen:20 -nodes -keyout /dev/null -subj / -out default.pem");
  ASSERT_EQ(made.status, 0) << made.err;
  EXPECT_EQ(Shell("$tessel show written.pem default.pem | grep -e 'Public key:' -e 'Signature algorithm:'").out,
            "  Public key:          RSASSA-PSS, SHA-256, mgf1 with SHA-256, salt of 32 octets, 2048 bits\n"
            "  Signature algorithm: RSASSA-PSS, SHA-256, mgf1 with SHA-256, salt of 33 octets\n"
            "  Public key:          rsaEncryption, 2048 bits\n"
            "  Signature algorithm: RSASSA-PSS, SHA-1, mgf1 with SHA-1, salt of 20 octets\n");
  EXPECT_EQ(Shown("default.pem").at(0).at("signatureAlgorithm").at("pss"), Json::parse(R"(
    {"hashAlgorithm": {"oid": "1.3.14.3.2.26", "name": "SHA-1"},
     "maskGenAlgorithm": {"oid": "1.2.840.113549.1.1.8", "name": "mgf1",
                          "hashAlgorithm": {"oid": "1.3.14.3.2.26", "name": "SHA-1"}},
     "saltLength": 20, "trailerField": 1})"));
}

std::string Indefinite(const std::string& element, size_t headerLength) {
  return "\x30\x80" + element.substr(headerLength) + std::string(2, '\0');
}

TEST_F(ShowTest, FingerprintsAreOfTheOctetsThatWereRead) {
  const Result made = Shell("in='-in " TESSEL_SOURCE_DIR
                            "/samples/certificate.pem'; openssl x509 $in -outform DER -out it.der && "
                            "openssl x509 $in -pubkey -noout | openssl pkey -pubin -outform DER -out key");
  ASSERT_EQ(made.status, 0) << made.err;
  const auto expectFingerprints = [this] {
    for (const std::string digest : {"sha1", "sha256"}) {
      const Json told = Shown("it.der").at(0).at("fingerprints");
      const Result expected =
          Shell("openssl dgst -r -" + digest + " it.der key | cut -d' ' -f1 | tr -d '\\n' | tr a-f A-F");
      const char* ofKey = digest == "sha1" ? "publicKeySha1" : "publicKeySha256";
      EXPECT_EQ(told.value(digest, "") + told.value(ofKey, ""), expected.out);
    }
  };
  expectFingerprints();
  const std::string key = ReadAll(folder_ / "key");
  std::string certificate = ReadAll(folder_ / "it.der");
  const size_t tbsEnd = 8 + (static_cast<uint8_t>(certificate[6]) << 8) + static_cast<uint8_t>(certificate[7]);
  // Octets that are no BER behind a time, over which decoders pass.
  std::string odd = certificate;
  ReplaceAll(odd, Text("180F") + "20560101000000Z", Text("180D") + "2056010100000\xFF\xFF");
  ASSERT_TRUE(odd != certificate);
  Write("it.der", odd);
  expectFingerprints();
  certificate = Indefinite(Indefinite(certificate.substr(4, tbsEnd - 4), 4) + certificate.substr(tbsEnd), 0);
  ReplaceAll(certificate, key, Indefinite(key, 2));
  Write("it.der", certificate);
  Write("key", Indefinite(key, 2));
  expectFingerprints();
}

constexpr const char* kEveryExtension = R"([req]
prompt = no
distinguished_name = name
[name]
C = RU
CN = All
[all]
basicConstraints = critical, CA:TRUE, pathlen:2
keyUsage = critical, keyCertSign, decipherOnly
extendedKeyUsage = serverAuth, 1.2.3.5
authorityKeyIdentifier = issuer:always
subjectKeyIdentifier = 0102
subjectAltName = DNS:a.example.ru, email:a@example.ru, URI:http://a.example.ru/, \
  IP:192.0.2.1, IP:2001:db8::1:0:0:1, RID:1.2.3.4, dirName:name, \
  otherName:1.3.6.1.4.1.311.20.2.3;UTF8:a@example.ru
2.5.29.18 = DER:3003020101
nameConstraints = permitted;DNS:.example.ru, permitted;IP:10.0.0.0/255.0.0.0, \
  permitted;IP:2001:db8::/ffff:ffff::, excluded;IP:10.0.0.0/255.0.255.0
certificatePolicies = 1.2.3.6, @policy
policyMappings = 1.2.3.6:1.2.3.7, anyPolicy:1.2.3.7
policyConstraints = requireExplicitPolicy:0, inhibitPolicyMapping:1
inhibitAnyPolicy = 3
crlDistributionPoints = point1, point2
freshestCRL = URI:http://c.example.ru/delta.crl
authorityInfoAccess = OCSP;URI:http://o.example.ru, caIssuers;DNS:d.example.ru
subjectInfoAccess = caRepository;URI:http://r.example.ru
2.5.29.16 = ASN1:SEQUENCE:period
2.5.29.9 = ASN1:SEQUENCE:attributes
nsCertType = client, sslCA
nsComment = a comment
tlsfeature = status_request, 99
1.2.3.8 = DER:01020304
1.2.643.100.114 = DER:0201000500
[policy]
policyIdentifier = 1.2.3.7
CPS.1 = http://p.example.ru/
userNotice.1 = @notice
[notice]
explicitText = UTF8:Read it
organization = Example
noticeNumbers = 1, 2
[point1]
fullname = URI:http://c.example.ru/1.crl, URI:http://c.example.ru/2.crl
[point2]
relativename = relative
CRLissuer = dirName:name
reasons = keyCompromise, CACompromise
[relative]
CN = Part 2
[period]
notBefore = IMPLICIT:0, GENERALIZEDTIME:20260101000000Z
[attributes]
birth = SEQUENCE:birth
[birth]
type = OID:1.3.6.1.5.5.7.9.1
values = SET:dates
[dates]
date = GENERALIZEDTIME:19711014120000Z
)";

TEST_F(ShowTest, EveryExtensionIsDecoded) {
  Write("all.cnf", kEveryExtension);
  const Result made = Shell(
      "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -keyout /dev/null -utf8 -set_serial 10 "
      "-config all.cnf -extensions all -out it.pem");
  ASSERT_EQ(made.status, 0) << made.err;
  const std::string text = Shell("$tessel show it.pem").out;
  EXPECT_EQ(text.substr(text.find("  Extensions:")), R"(  Extensions:
    basicConstraints, critical
      CA:          yes
      Path length: 2
    keyUsage, critical
      keyCertSign, decipherOnly
    extKeyUsage
      serverAuth
      1.2.3.5
    authorityKeyIdentifier
      Issuer:        Name: C=RU, CN=All
      Serial number: 0A
    subjectKeyIdentifier
      0102
    subjectAltName
      DNS:           a.example.ru
      Email:         a@example.ru
      URI:           http://a.example.ru/
      IP:            192.0.2.1
      IP:            2001:db8::1:0:0:1
      Registered ID: 1.2.3.4
      Name:          C=RU, CN=All
      Other name:    userPrincipalName, a@example.ru
    issuerAltName
      Does not decode ([0], offset 2: no alternative of the CHOICE begins with an INTEGER): 3003020101
    nameConstraints
      Permitted:
        DNS: .example.ru
        IP:  10.0.0.0/8
        IP:  2001:db8::/32
      Excluded: IP: 10.0.0.0/255.0.255.0
    certificatePolicies
      1.2.3.6
      1.2.3.7
        CPS:         http://p.example.ru/
        User notice: Read it
          Reference: Example, 1, 2
    policyMappings
      1.2.3.6 -> 1.2.3.7
      anyPolicy -> 1.2.3.7
    policyConstraints
      Require explicit policy: after 0 certificates
      Inhibit policy mapping:  after 1 certificate
    inhibitAnyPolicy
      after 3 certificates
    cRLDistributionPoints
      Point 1:
        URI: http://c.example.ru/1.crl
        URI: http://c.example.ru/2.crl
      Point 2:
        Relative name: CN=Part 2
        Reasons:       keyCompromise, cACompromise
        CRL issuer:    Name: C=RU, CN=All
    freshestCRL
      URI: http://c.example.ru/delta.crl
    authorityInfoAccess
      ocsp:      http://o.example.ru
      caIssuers: DNS: d.example.ru
    subjectInfoAccess
      caRepository: http://r.example.ru
    privateKeyUsagePeriod
      Valid from: 2026-01-01 00:00:00 UTC
    subjectDirectoryAttributes
      dateOfBirth: 1971-10-14 12:00:00 UTC
    netscapeCertType
      sslClient, sslCA
    netscapeComment
      a comment
    tlsFeature
      status_request (5)
      99
    1.2.3.8
      01020304
    identificationKind
      0
      Octets behind the value: 0500
)");

  const Json json = Shown("it.pem");
  std::map<std::string, Json> values;
  for (const Json& extension : json.at(0).at("extensions")) {
    values[extension.at("oid")] = extension.value("value", extension.value("hex", Json()));
  }
  const std::map<std::string, const char*> expected = {
      {"2.5.29.15", R"(["keyCertSign", "decipherOnly"])"},
      {"2.5.29.18", R"("3003020101")"},
      {"2.5.29.32",
       R"([{"oid": "1.2.3.6"},
           {"oid": "1.2.3.7",
            "qualifiers": [{"oid": "1.3.6.1.5.5.7.2.1", "name": "cps", "value": "http://p.example.ru/"},
                           {"oid": "1.3.6.1.5.5.7.2.2", "name": "userNotice",
                            "value": {"explicitText": "Read it",
                                      "noticeRef": {"organization": "Example", "noticeNumbers": [1, 2]}}}]}])"},
      {"1.2.3.8", R"("01020304")"},
  };
  for (const auto& [oid, value] : expected) EXPECT_EQ(values[oid], Json::parse(value)) << oid;
}

TEST_F(ShowTest, NamesCannotDriveATerminal) {
  const Result made = Shell(
      "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -keyout /dev/null -utf8 -out it.pem "
      "-multivalue-rdn -subj \"$(printf '/CN=\\033[2J\\302\\233\\342\\200\\256\\363\\240\\201\\201\\177x/O=#1, \"2\" "
      "<3>; "
      "/OU=a+L=\\320\\226')\"");
  ASSERT_EQ(made.status, 0) << made.err;
  const Result shown = Shell("$tessel show it.pem");
  EXPECT_NE(shown.out.find("Subject:             CN=\\1B[2J\\C2\\9B\\E2\\80\\AE\\F3\\A0\\81\\81\\7Fx, "
                           "O=\\#1\\, \\\"2\\\" \\<3\\>\\;\\ , OU=a+L=Ж\n"),
            std::string::npos)
      << shown.out;
  const std::string json = Shell("$tessel show --json it.pem").out;
  EXPECT_NE(json.find(R"("value": "\u001B[2J\u009B\u202E\uDB40\uDC41\u007Fx")"), std::string::npos) << json;
  EXPECT_NE(
      json.find(R"(CN=\\1B[2J\\C2\\9B\\E2\\80\\AE\\F3\\A0\\81\\81\\7Fx, O=\\#1\\, \\\"2\\\" \\<3\\>\\;\\ , OU=a+L=Ж")"),
      std::string::npos)
      << json;
}

TEST_F(ShowTest, JsonTellsWhereAnObjectStands) {
  const std::string pem = ReadAll(TESSEL_SOURCE_DIR "/samples/root.pem");
  const std::string name = IsForWindows() ? "it.pem" : "Ж\"\x1B.pem";
  Write(name, "\n" + pem + "-----BEGIN X-----\n" + pem + pem);
  const Result shown = Shell("openssl x509 -in *.pem -outform DER | $tessel show --json *.pem -");
  Json places;
  for (const Json& it : Json::parse(shown.out, nullptr, false)) {
    places.push_back({it.at("file"), it.at("index"), it.at("line")});
  }
  const size_t lines = SplitLines(pem).size();
  EXPECT_EQ(places, Json({{name, 1, 2}, {name, 2, 3 + lines}, {name, 3, 3 + 2 * lines}, {"-", 1, nullptr}}));
  EXPECT_TRUE(IsForWindows() || shown.out.find(R"("Ж\"\u001B.pem")") != std::string::npos) << shown.out;
}

TEST_F(ShowTest, TimesAreTold) {
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

}  // namespace
}  // namespace test
