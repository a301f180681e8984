#include "tessel/object_identifier.hpp"

#include <gtest/gtest.h>

#include <string>

#include "support/octets.h"
#include "tessel/known_identifiers.hpp"

namespace test {
namespace {

using tessel::ObjectIdentifier;

TEST(ObjectIdentifier, TextAndContentBelongTogether) {
  const std::pair<ObjectIdentifier, const char*> pairs[] = {
      {ObjectIdentifier("0.39"), "27"},
      {ObjectIdentifier("1.0"), "28"},
      {ObjectIdentifier("2.5.29.15"), "55 1D 0F"},
      {ObjectIdentifier("2.999.3"), "88 37 03"},
      {ObjectIdentifier("1.2.643.7.1.2.1.1.1"), "2A 85 03 07 01 02 01 01 01"},
      {ObjectIdentifier("2.16.840.1.101.3.4.2.1"), "60 86 48 01 65 03 04 02 01"},
      {ObjectIdentifier("1.3.999999999999999999"), "2B 8D F0 AD D6 BA BB 8F FF 7F"},
  };
  for (const auto& [identifier, content] : pairs) {
    EXPECT_EQ(FromHex(content), Bytes(identifier.Content().begin(), identifier.Content().end()));
    EXPECT_EQ(identifier, ObjectIdentifier::OfContent(FromHex(content)));
  }
  EXPECT_EQ("2.999.3", pairs[3].first.Text());
  EXPECT_EQ("1.3.999999999999999999", pairs[6].first.Text());
  EXPECT_EQ("0.39", pairs[0].first.Text());
}

TEST(ObjectIdentifier, ContentThatIsNoneHasNoText) {
  for (const char* content : {"", "88", "2B 80 01", "2B 01 80", "2B FF FF FF FF FF FF FF FF FF FF 7F"}) {
    EXPECT_EQ("", ObjectIdentifier::OfContent(FromHex(content))->Text()) << content;
  }
  EXPECT_FALSE(ObjectIdentifier::OfContent(Bytes(256, 1)));
}

TEST(ObjectIdentifier, WellKnownOnesHaveNames) {
  EXPECT_EQ("keyUsage", tessel::KnownName(ObjectIdentifier("2.5.29.15")));
  EXPECT_EQ("INN", tessel::KnownName("1.2.643.3.131.1.1"));
  EXPECT_EQ("", tessel::KnownName(ObjectIdentifier("1.2.3")));
  EXPECT_EQ("", tessel::KnownName(ObjectIdentifier()));
}

}  // namespace
}  // namespace test
