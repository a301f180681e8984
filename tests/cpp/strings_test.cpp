#include "tessel/strings.hpp"

#include <gtest/gtest.h>

#include <string>

#include "support/octets.h"
#include "tessel/calls.hpp"

namespace test {
namespace {

using tessel::Call;
using tessel::ObjectIdentifier;

TEST(Strings, EachTypeIsReadByItsRepertoire) {
  const std::tuple<uint32_t, const char*, std::optional<std::string>> strings[] = {
      {TESSEL_KIND_UTF8_STRING, "D0 96 E2 82 AC F0 9F 98 80", "Ж€😀"},
      {TESSEL_KIND_UTF8_STRING, "C0 80", std::nullopt},
      {TESSEL_KIND_UTF8_STRING, "ED A0 80", std::nullopt},
      {TESSEL_KIND_PRINTABLE_STRING, "41 80", std::nullopt},
      {TESSEL_KIND_TELETEX_STRING, "41 E9", "Aé"},
      {TESSEL_KIND_BMP_STRING, "04 16 D8 3D DE 00", "Ж😀"},
      {TESSEL_KIND_BMP_STRING, "D8 3D 00 41", std::nullopt},
      {TESSEL_KIND_BMP_STRING, "04", std::nullopt},
      {TESSEL_KIND_UNIVERSAL_STRING, "00 01 F6 00", "😀"},
      {TESSEL_KIND_UNIVERSAL_STRING, "00 11 00 00", std::nullopt},
      {TESSEL_KIND_OCTET_STRING, "41", std::nullopt},
  };
  for (const auto& [tag, content, text] : strings) EXPECT_EQ(text, tessel::Utf8(tag, FromHex(content))) << content;
}

TEST(Strings, NamesAreWrittenByRfc4514) {
  const tessel::Owned<X509Name> name = tessel::Make(CreateX509Name);
  const auto add = [&name](std::string_view value, uint32_t tag, const ObjectIdentifier& type, bool newRdn) {
    Call(AddX509NameEntry, name, value, tag, type, newRdn);
  };
  EXPECT_EQ("", tessel::NameText(name));
  add("RU", TESSEL_KIND_PRINTABLE_STRING, ObjectIdentifier("2.5.4.6"), true);
  add("#1, \"2\" <3>; ", TESSEL_KIND_UTF8_STRING, ObjectIdentifier("2.5.4.10"), true);
  add("Ж", TESSEL_KIND_UTF8_STRING, ObjectIdentifier("2.5.4.3"), true);
  // a+b\, an escape sequence for terminals, and U+202E.
  const Bytes odd = FromHex("61 2B 62 5C 1B 5B 32 4A E2 80 AE");
  add({reinterpret_cast<const char*>(odd.data()), odd.size()}, TESSEL_KIND_UTF8_STRING, ObjectIdentifier("2.5.4.11"),
      false);
  add("x", TESSEL_KIND_UTF8_STRING, ObjectIdentifier("1.2.3.4"), true);
  add("x", TESSEL_KIND_UTF8_STRING, ObjectIdentifier("2.5.29.15"), true);
  add("x", TESSEL_KIND_UTF8_STRING, *ObjectIdentifier::OfContent(FromHex("88")), true);
  add("\x80", TESSEL_KIND_BIT_STRING, ObjectIdentifier("2.5.4.45"), true);
  add("a\xFF", TESSEL_KIND_UTF8_STRING, ObjectIdentifier("2.5.4.3"), true);
  EXPECT_EQ(R"(CN=#0C0261FF,x500UniqueIdentifier=#030180,#88=#0C0178,2.5.29.15=#0C0178,1.2.3.4=#0C0178,)"
            R"(CN=Ж+OU=a\+b\\\1B[2J\E2\80\AE,O=\#1\, \"2\" \<3\>\;\ ,C=RU)",
            tessel::NameText(name));
  EXPECT_EQ("", tessel::NameText(nullptr));
  EXPECT_EQ(R"(a\0A\E2\80\A8b)", tessel::Printable("a\n\xE2\x80\xA8"
                                                   "b"));
}

TEST(Strings, AnAttributeValueIsPrimitiveOnlyInAllItsOctets) {
  const auto value = [](const Bytes& element) { return tessel::NameAttribute{{}, element}.PrimitiveValue(); };
  EXPECT_EQ(1U, value(FromHex("0C 01 78"))->content.size());
  for (const char* element : {"", "0C", "0C 02 78", "0C 80 78", "2C 03 0C 01 78", "8C 01 78"}) {
    EXPECT_FALSE(value(FromHex(element))) << element;
  }
}

}  // namespace
}  // namespace test
